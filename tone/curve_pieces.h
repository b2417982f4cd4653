// The transfer curve in pieces of single precision: for each of many short intervals the value at its middle, in two
// floats, and what the curve does about it. The sum is known far below the last place of a float, so that nearly always
// it tells the float nearest to the curve, or nearest integer, at a fraction of the cost of a power.
#pragma once

#include "tone/power_curve.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

struct TransferCurve {  // gain * power - offset
  PowerFunction power;
  double gain, offset;
};

// What is summed first, and exact but for the last rounding.
enum class Leading {
  nearestFloat,   // the value at the middle as a float
  nearestInteger  // as an integer, and 2^23: the sum is rounded to an integer, at once
};

// The curve times unit, of x by unit, for x from 2^LowestBinade to below 2^(LowestBinade + Binades).
template <int LowestBinade, int Binades, int IntervalBits, Leading leading>
struct CurvePieces {
  static constexpr int intervals = 1 << IntervalBits, startBits = 23 - IntervalBits;
  // Wide registers have more samples that can be in doubt: for them the sum is made finer, in more steps.
  static constexpr bool slopeInTwo = kParts > 1 && leading == Leading::nearestFloat;
  static constexpr float first = std::bit_cast<float>((127 + LowestBinade) << 23),
                         beyond = std::bit_cast<float>((127 + LowestBinade + Binades) << 23);
  static constexpr float integerBase = leading == Leading::nearestInteger ? 0x1p23F : 0.0F;

  // value + rest + slope u + bend u^2, with u the distance from the middle.
  struct alignas(16) Piece {
    float value, rest, slope, bend;
  };

  // The last one, from beyond on, gives NaN.
  std::array<Piece, intervals * Binades + 1> pieces{};
  // The error of all terms but the first is at most this share of slope times middle.
  float relativeBound;

  constexpr CurvePieces(const TransferCurve& curve, double unit) : relativeBound(bound(curve.power.exponent)) {
    const ExactPower power(curve.power.exponent);
    const auto b = [&](int k) { return power.binomial(k); };
    for (std::size_t k = 0; k + 1 < pieces.size(); ++k) {
      long double h = std::bit_cast<float>((127 + LowestBinade - 1 - IntervalBits) << 23);
      for (std::size_t e = intervals; e <= k; e += intervals) h *= 2;
      const long double c = h * (2 * (intervals + k % intervals) + 1), base = c / unit + curve.power.shift;
      const long double p = unit * curve.gain * power(base * curve.power.scale), perBase = 1.0L / (base * unit);
      // The term in u^3 is replaced by the lower power nearest to it.
      const long double value = p - unit * curve.offset,
                        slope = p * perBase * (b(1) + b(3) * h * h * perBase * perBase * 3 / 4),
                        bend = p * perBase * perBase * b(2);
      if constexpr (leading == Leading::nearestInteger) {
        const auto integer = static_cast<int>(value + 0.5L);
        pieces[k] = {integerBase + static_cast<float>(integer), static_cast<float>(value - integer),
                     static_cast<float>(slope), static_cast<float>(bend)};
      } else {
        const auto nearest = static_cast<float>(value);
        pieces[k] = {nearest, static_cast<float>(value - nearest), static_cast<float>(slope), static_cast<float>(bend)};
      }
    }
    pieces.back().value = std::numeric_limits<float>::quiet_NaN();
  }

 private:
  // About the middle, slope u is at most q of slope times middle; of the term in u^3, at most b(3) / exponent q^3, a
  // quarter is left. With slope in two its own rounding is all that counts besides, and otherwise five roundings, with
  // what they make of one another, are of about that size.
  static constexpr float bound(double exponent) {
    const double q = 1.0 / (2 * intervals + 1), third = (exponent - 1) * (exponent - 2) / 6;
    const double roundings = slopeInTwo ? 1.01 * 0x1p-24 * q + 0x1p-40 : 5.5 * 0x1p-24 * q;
    return static_cast<float>(roundings + (third < 0 ? -third : third) * q * q * q * 0.26);
  }
};

// Four floats at each of the addresses, by columns.
template <int N>
ZIM_INLINE Pixels<Zim32f, N, 4> loadColumns(const std::array<const float*, N>& rows) {
  using Column = Lane<Zim32f, N>;
  static_assert(Column::form == Form::whole);
  const auto load = [&](std::size_t row) ZIM_LAMBDA {
    return fromParts([&](int h) ZIM_LAMBDA {
      return load128(reinterpret_cast<const std::byte*>(rows[row + 4 * static_cast<std::size_t>(h)]));
    });
  };
  const Register r0 = load(0), r1 = load(1), r2 = load(2), r3 = load(3);
  const auto of = [](Register bits) ZIM_LAMBDA { return Column::of((typename Column::Value)bits); };
  const Register lower01 = unpackLow<4>(r0, r1), lower23 = unpackLow<4>(r2, r3);
  const Register upper01 = unpackHigh<4>(r0, r1), upper23 = unpackHigh<4>(r2, r3);
  return {of(unpackLow<8>(lower01, lower23)), of(unpackHigh<8>(lower01, lower23)), of(unpackLow<8>(upper01, upper23)),
          of(unpackHigh<8>(upper01, upper23))};
}

// A curve at x: the value of its interval, or near to x, and all else, which is uncertain by the bound.
template <int N>
struct CurveSum {
  Lane<Zim32f, N> value, rest, bound;
};

// From beyond on the value is NaN. x is at least first.
template <int LowestBinade, int Binades, int IntervalBits, Leading leading, int N>
ZIM_INLINE CurveSum<N> sumOfPieces(const CurvePieces<LowestBinade, Binades, IntervalBits, leading>& curve,
                                   Lane<Zim32f, N> x) {
  using Curve = CurvePieces<LowestBinade, Binades, IntervalBits, leading>;
  using Bits = Lane<Zim32s, N>;
  static_assert(sizeof(typename Curve::Piece) == 16);
  const auto start = bitsAs<Zim32s>(x) & Bits(-1 << Curve::startBits);
  const auto middle = bitsAs<Zim32f>(start | Bits(1 << (Curve::startBits - 1)));
  alignas(16) std::array<Zim32s, N> offsets;
  const auto bits = (Register)(start >> (Curve::startBits - 4)).v;
  forChannels<kParts>(
      [&](auto h) ZIM_LAMBDA { _mm_store_si128(reinterpret_cast<__m128i*>(&offsets[4 * h]), partOf<h>(bits)); });
  // All offsets are on their way through memory before the first piece is used.
  asm("" : "+m"(offsets));
  constexpr std::ptrdiff_t firstOffset = std::ptrdiff_t{127 + LowestBinade} << (IntervalBits + 4);
  const auto* const pieces = reinterpret_cast<const std::byte*>(curve.pieces.data());
  const auto& [value, rest, slope, bend] = loadColumns<N>(perChannel<N>([&](auto i) ZIM_LAMBDA {
    return reinterpret_cast<const float*>(pieces + (std::ptrdiff_t{offsets[i]} - firstOffset));
  }));
  const auto u = x - middle, bound = slope * middle * curve.relativeBound;
  if constexpr (Curve::slopeInTwo) {
    // As many bits of slope as leave the product with u exact.
    const auto upper = bitsAs<Zim32f>(bitsAs<Zim32s>(slope) & Bits(-1 << (Curve::startBits - 1)));
    const auto step = upper * u, sum = value + step;
    return {sum, ((bend * u + (slope - upper)) * u + rest) + (step - (sum - value)), bound};
  } else {
    return {value, (bend * u + slope) * u + rest, bound};
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
