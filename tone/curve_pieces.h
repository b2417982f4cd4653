// The transfer curve in pieces of single precision: for each of many short intervals the value at its middle, in two
// floats, and what the curve does about it. The sum is known far below the last place of a float, so that nearly always
// it tells the float nearest to the curve, or nearest integer, at a fraction of the cost of a power.
#pragma once

#include <stdexcept>

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
  static constexpr float first = std::bit_cast<float>((127 + LowestBinade) << 23),
                         beyond = std::bit_cast<float>((127 + LowestBinade + Binades) << 23);
  static constexpr float integerBase = leading == Leading::nearestInteger ? 0x1p23F : 0.0F;

  // value + rest + slope u + bend u^2, with u the distance from the middle.
  struct alignas(16) Piece {
    float value, rest, slope, bend;
  };

  // The last one, from beyond on, gives NaN.
  std::array<Piece, intervals * Binades + 1> pieces{};
  // The error of the sum of all terms but the first is at most this share of those in u.
  float relativeBound = 0.0F;

  constexpr CurvePieces(const TransferCurve& curve, double unit) {
    const ExactPower power(curve.power.exponent);
    const auto b = [&](int k) { return power.binomial(k); };
    for (std::size_t k = 0; k + 1 < pieces.size(); ++k) {
      long double h = std::bit_cast<float>((127 + LowestBinade - 1 - IntervalBits) << 23);
      for (std::size_t e = intervals; e <= k; e += intervals) h *= 2;
      const long double c = h * (2 * (intervals + k % intervals) + 1), base = c / unit + curve.power.shift;
      const long double p = unit * curve.gain * power(base * curve.power.scale), perBase = 1.0L / (base * unit);
      // The term in u^3 is replaced by the multiple of u nearest to it as a share of u.
      const long double value = p - unit * curve.offset, cubic = b(3) * h * h * perBase * perBase / 2,
                        slope = p * perBase * (b(1) + cubic), bend = p * perBase * perBase * b(2);
      if constexpr (leading == Leading::nearestInteger) {
        const auto integer = static_cast<int>(value + 0.5L);
        pieces[k] = {integerBase + static_cast<float>(integer), static_cast<float>(value - integer),
                     static_cast<float>(slope), static_cast<float>(bend)};
      } else {
        const auto nearest = static_cast<float>(value);
        const auto rest = static_cast<float>(value - nearest);
        pieces[k] = {nearest, rest, static_cast<float>(slope), static_cast<float>(bend)};
        cover(pieces[k], h / (1 << (startBits - 1)), cubic / b(1), p);
      }
    }
    pieces.back().value = std::numeric_limits<float>::quiet_NaN();
  }

  // The middle of the interval, as bits.
  template <int N>
  ZIM_INLINE static Lane<Zim32s, N> middle(Lane<Zim32f, N> x) {
    using Bits = Lane<Zim32s, N>;
    return (bitsAs<Zim32s>(x) & Bits(-1 << startBits)) | Bits(1 << (startBits - 1));
  }

 private:
  // Raises the bound to what this piece needs, where one unit of last place of x is the least u but 0. Of the terms in
  // u, three roundings are a share, and so is the term in u^3. Of the sum with rest there are two, and rest has one of
  // its own. What pow and the steps after it may differ by is below 2^-50 of power times gain.
  constexpr void cover(const Piece& piece, long double leastU, long double cubicShare, long double power) {
    constexpr long double rounding = 0x1p-24L;
    const auto magnitude = [](long double v) { return v < 0 ? -v : v; };
    const long double apart = 3 * rounding * magnitude(piece.rest) + 0x1p-50L * power;
    // At u = 0 the sum is rest itself, and value the result: no bound, but no doubt either.
    const long double halfUnit = (piece.value - std::bit_cast<float>(std::bit_cast<Zim32s>(piece.value) - 1)) / 2.0L;
    if (magnitude(piece.rest) + apart >= halfUnit) throw std::logic_error("a middle in doubt");
    const long double share = 1.01L * (5 * rounding + magnitude(cubicShare) + apart / (piece.slope * leastU));
    if (share > relativeBound) relativeBound = static_cast<float>(share);
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

// A curve at x: the value of its interval, and all else, which is uncertain by the bound, of either sign.
template <int N>
struct CurveSum {
  Lane<Zim32f, N> value, rest, bound;
};

// The offsets of the pieces for x, at least first, but for a constant. Those of several registers are best stored
// before the first of them is summed: a sum waits for its offsets to come back from memory.
template <class Curve, int N>
ZIM_INLINE void storeOffsets(Zim32s* offsets, Lane<Zim32f, N> x) {
  if constexpr (Lane<Zim32f, N>::form == Form::split) {
    storeOffsets<Curve>(offsets, x.v.lo);
    storeOffsets<Curve>(offsets + N / 2, x.v.hi);
  } else {
    const auto bits = (Register)(Curve::middle(x) >> (Curve::startBits - 4)).v;
    forChannels<kParts>(
        [&](auto h) ZIM_LAMBDA { _mm_store_si128(reinterpret_cast<__m128i*>(offsets + 4 * h), partOf<h>(bits)); });
  }
}

// The curve at x, a register, with its offsets. From beyond on the value is NaN.
template <int LowestBinade, int Binades, int IntervalBits, Leading leading, int N>
ZIM_INLINE CurveSum<N> sumOfPieces(const CurvePieces<LowestBinade, Binades, IntervalBits, leading>& curve,
                                   const Zim32s* offsets, Lane<Zim32f, N> x) {
  using Curve = CurvePieces<LowestBinade, Binades, IntervalBits, leading>;
  static_assert(sizeof(typename Curve::Piece) == 16);
  // The bit that makes the middle counts as half a piece.
  constexpr std::ptrdiff_t firstOffset =
      (std::ptrdiff_t{127 + LowestBinade} << (IntervalBits + 4)) + std::ptrdiff_t{sizeof(typename Curve::Piece) / 2};
  const auto* const pieces = reinterpret_cast<const std::byte*>(curve.pieces.data());
  const auto& [value, rest, slope, bend] = loadColumns<N>(perChannel<N>([&](auto i) ZIM_LAMBDA {
    return reinterpret_cast<const float*>(pieces + (std::ptrdiff_t{offsets[i]} - firstOffset));
  }));
  const auto u = x - bitsAs<Zim32f>(Curve::middle(x)), change = (bend * u + slope) * u;
  return {value, change + rest, change * curve.relativeBound};
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
