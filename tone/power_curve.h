// Powers with a fixed exponent, in double lanes, close enough to the library's pow to tell in nearly all lanes what pow
// would give after rounding; only the others, less than one in a thousand, need a call of it.
#pragma once

#include <limits>

#include "frame/lanes/convert.h"
#include "frame/lanes/lookup.h"
#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

struct PowerFunction {  // ((x + shift) scale)^exponent
  double exponent, shift, scale;
};

// x^exponent for constants, by its series about the nearest of 64 numbers a binade.
class ExactPower {
 public:
  static constexpr int intervals = 64;

  constexpr explicit ExactPower(double exponent) {
    for (int k = 1; k < terms; ++k) b_[k] = b_[k - 1] * (exponent - (k - 1)) / k;
    for (int i = 0; i < intervals; ++i) grid_[i + 1] = grid_[i] * nearOne(1.0L / (intervals + i));
  }

  constexpr long double operator()(long double x) const {
    long double scale = 1;
    for (; x < 1; x *= 2) scale /= grid_[intervals];
    for (; x >= 2; x /= 2) scale *= grid_[intervals];
    const int i = static_cast<int>((x - 1) * intervals);
    return scale * grid_[i] *
           nearOne((x - 1) * intervals / (intervals + i) - static_cast<long double>(i) / (intervals + i));
  }
  // The binomial coefficient of the exponent.
  constexpr long double binomial(int k) const { return b_[k]; }
  // The coefficients of (1 + r)^exponent up to r^5 for |r| <= q: the terms in r^6 and r^7 are replaced by the lower
  // powers nearest to them, with Chebyshev polynomials.
  constexpr std::array<long double, 6> upToFifth(long double q) const {
    const long double qq = q * q;
    return {1 + b_[6] * qq * qq * qq / 32,    b_[1] + b_[7] * qq * qq * qq * 7 / 64,
            b_[2] - b_[6] * qq * qq * 9 / 16, b_[3] - b_[7] * qq * qq * 7 / 8,
            b_[4] + b_[6] * qq * 3 / 2,       b_[5] + b_[7] * qq * 7 / 4};
  }

 private:
  static constexpr int terms = 12;

  // (1 + r)^exponent for r up to 1/64.
  constexpr long double nearOne(long double r) const {
    long double sum = 0;
    for (int k = terms; k > 0; --k) sum = sum * r + b_[k - 1];
    return sum;
  }

  long double b_[terms] = {1};
  long double grid_[intervals + 1] = {1};  // (1 + i/64)^exponent
};

// ---- Cubics in memory ----

// The function for x from 2^LowestBinade to below 2^(LowestBinade + Binades), as a cubic on each of 64 intervals a
// binade.
//
// About the middle c of an interval, with r = (x - c) / (c + shift) and the binomial coefficients b(k) of the exponent,
// the function is f(c) (1 + b(1) r + b(2) r^2 + ...), and |r| is at most some q. The terms in r^4 and r^5 are replaced
// by the lower powers nearest to them, with Chebyshev polynomials. The relative error that is left is at most |b(4)|
// q^4 / 8 + |b(5)| q^5 / 16 + |b(6)| q^6 + ...
template <int LowestBinade, int Binades>
struct PowerCurve {
  static constexpr int intervalBits = 6, intervals = 1 << intervalBits;
  static constexpr double first = 1.0 / (1 << -LowestBinade), beyond = first * (1 << Binades);

  // The upper bits of a double tell its interval, and so, shifted down, the place of its cubic in bytes.
  static constexpr int startBits = 52 - intervalBits, cubicBits = 5;
  static constexpr std::size_t firstOffset = std::size_t{1023 + LowestBinade} << (intervalBits + cubicBits);

  // c0 + c1 t + c2 t^2 + c3 t^3, with t the distance from the start of the interval.
  using Cubic = std::array<double, 4>;

  PowerFunction function;
  // The largest relative error, rounded up by a tenth to cover the errors of rounding here, in the library's pow and in
  // what a caller makes of either.
  double relativeBound;
  // The last one, from beyond on, gives NaN.
  std::array<Cubic, intervals * Binades + 1> cubics{};

  constexpr PowerCurve(PowerFunction f, double bound) : function(f), relativeBound(bound) {
    const ExactPower power(f.exponent);
    const auto b = [&](int k) { return power.binomial(k); };
    for (std::size_t k = 0; k + 1 < cubics.size(); ++k) {
      long double h = first / (2 * intervals);
      for (std::size_t e = intervals; e <= k; e += intervals) h *= 2;
      const long double c = h * (2 * (intervals + k % intervals) + 1), base = c + f.shift, q = h / base;
      const long double middle = power(base * f.scale);
      // Coefficients in x - c, then in t = x - c + h.
      const long double u0 = middle * (1 - b(4) * q * q * q * q / 8),
                        u1 = middle * (b(1) - b(5) * q * q * q * q * 5 / 16) / base,
                        u2 = middle * (b(2) + b(4) * q * q) / (base * base),
                        u3 = middle * (b(3) + b(5) * q * q * 5 / 4) / (base * base * base);
      cubics[k] = {static_cast<double>(u0 - h * (u1 - h * (u2 - h * u3))),
                   static_cast<double>(u1 - h * (2 * u2 - h * 3 * u3)), static_cast<double>(u2 - h * 3 * u3),
                   static_cast<double>(u3)};
    }
    cubics.back().fill(std::numeric_limits<double>::quiet_NaN());
  }
};

// Four doubles at each of the addresses, by columns.
template <int N>
ZIM_INLINE Pixels<Zim64f, N, 4> loadColumns(const std::array<const double*, N>& rows) {
  using Column = Lane<Zim64f, N>;
  if constexpr (Column::form == Form::split) {
    const auto half = [&](auto first) ZIM_LAMBDA {
      return loadColumns<N / 2>(perChannel<N / 2>([&](auto i) ZIM_LAMBDA { return rows[first + i]; }));
    };
    const auto lo = half(0U), hi = half(0U + N / 2);
    return perChannel<4>([&](auto c) ZIM_LAMBDA { return Column::join(lo[c], hi[c]); });
  } else {
    const auto pair = [&](int column) ZIM_LAMBDA {
      const auto load = [&](std::size_t row) ZIM_LAMBDA {
        return fromParts([&](int h) ZIM_LAMBDA {
          return load128(reinterpret_cast<const std::byte*>(rows[row + 2 * static_cast<std::size_t>(h)] + column));
        });
      };
      const Register even = load(0), odd = load(1);
      return std::array{Column::of((typename Column::Value)unpackLow<8>(even, odd)),
                        Column::of((typename Column::Value)unpackHigh<8>(even, odd))};
    };
    const auto lower = pair(0), upper = pair(2);
    return {lower[0], lower[1], upper[0], upper[1]};
  }
}

// The offsets of cubics in the table from the starts of their intervals, but for a constant. Each number stored holds
// those of two lanes, a register apart.
template <class Power, int N>
ZIM_INLINE void storeOffsets(std::uint64_t* offsets, Lane<std::uint64_t, N> start) {
  constexpr int part = kLanes<Zim64f>;
  if constexpr (N > 2 * part) {
    storeOffsets<Power>(offsets, start.v.lo);
    storeOffsets<Power>(offsets + N / 4, start.v.hi);
  } else {
    constexpr int shift = Power::startBits - Power::cubicBits;
    store<std::uint64_t, part, 1>(reinterpret_cast<std::byte*>(offsets),
                                  {start.v.lo >> shift | start.v.hi >> (shift - 32)});
  }
}

// The values at t of the cubics at these offsets.
template <class Power, int N>
ZIM_INLINE Lane<Zim64f, N> cubicsAt(const Power& curve, const std::uint64_t* offsets, Lane<Zim64f, N> t) {
  constexpr int part = kLanes<Zim64f>;
  if constexpr (N > 2 * part) {
    return Lane<Zim64f, N>::join(cubicsAt(curve, offsets, t.v.lo), cubicsAt(curve, offsets + N / 4, t.v.hi));
  } else {
    const auto rows = perChannel<N>([&](auto i) ZIM_LAMBDA {
      const std::uint64_t both = offsets[i % part];
      const std::size_t offset = i < part ? static_cast<std::uint32_t>(both) : both >> 32;
      return reinterpret_cast<const double*>(reinterpret_cast<const std::byte*>(curve.cubics.data()) +
                                             (offset - Power::firstOffset));
    });
    const auto& [c0, c1, c2, c3] = loadColumns<N>(rows);
    return ((c3 * t + c2) * t + c1) * t + c0;
  }
}

// The function within its relative bound; NaN from beyond on. x is at least first.
template <int LowestBinade, int Binades, int N>
ZIM_INLINE Lane<Zim64f, N> approximatePower(const PowerCurve<LowestBinade, Binades>& curve, Lane<Zim64f, N> x) {
  using Curve = PowerCurve<LowestBinade, Binades>;
  using Bits = Lane<std::uint64_t, N>;
  const auto inside = smaller(Lane<Zim64f, N>(Curve::beyond), x);
  const auto start = bitsAs<std::uint64_t>(inside) & Bits(~std::uint64_t{0} << Curve::startBits);
  const auto t = x - bitsAs<Zim64f>(start);
  std::array<std::uint64_t, N / 2> offsets;
  storeOffsets<Curve>(offsets.data(), start);
  // All offsets are on their way through memory before the first cubic is used: taken out of registers in between, as
  // compilers would have it, they keep the processor waiting.
  asm("" : "+m"(offsets));
  return cubicsAt(curve, offsets.data(), t);
}

// ---- Factors in registers ----

// The same function where tables of 16 doubles stay in registers (AVX-512). With z = x + shift = 2^e m, and c the
// middle of the sixteenth of a binade in which m lies, it is
//     (2^e scale)^exponent c^exponent (1 + r)^exponent,   r = m / c - 1, |r| <= q = 1 / 33
// The last factor is its series up to r^5. With the binomial coefficients b(k) of the exponent the relative error is at
// most (|b(6)| q^6 / 32 + |b(7)| q^7 / 64 + |b(8)| q^8 + ...) (1 - q)^-exponent.
template <int LowestBinade, int Binades>
struct PowerFactors {
  static constexpr int intervals = 16;
  static constexpr double first = 1.0 / (1 << -LowestBinade), beyond = first * (1 << Binades);
  static constexpr std::size_t degree = 5;

  PowerFunction function;
  double relativeBound;  // as above
  double end = 1.0;      // the power of two that no z of x below beyond reaches
  std::array<double, 16> inverse{}, ofStep{}, ofBinade{};
  std::array<double, degree + 1> series{};

  constexpr PowerFactors(PowerFunction f, double bound) : function(f), relativeBound(bound) {
    const ExactPower power(f.exponent);
    for (int i = 0; i < 16; ++i) {
      const auto k = static_cast<std::size_t>(i);
      inverse[k] = static_cast<double>(32.0L / (2 * i + 33));
      ofStep[k] = static_cast<double>(power(1.0L / inverse[k]));
    }
    while (end < beyond + f.shift) end *= 2;
    // Binades by the lowest bits of their exponent. From the end on there is none: NaN.
    ofBinade.fill(std::numeric_limits<double>::quiet_NaN());
    int exponent = 1023;
    double binade = 1.0;
    while (binade > first + f.shift) binade /= 2, --exponent;
    for (; binade < end; binade *= 2, ++exponent) {
      ofBinade[static_cast<std::size_t>(exponent % 16)] = static_cast<double>(power(binade * f.scale));
    }
    const auto exact = power.upToFifth(1.0L / 33);
    for (std::size_t k = 0; k <= degree; ++k) series[k] = static_cast<double>(exact[k]);
  }
};

// The function within its relative bound; NaN, or within it as well, from beyond on. x is at least first.
template <int LowestBinade, int Binades, int N>
ZIM_INLINE Lane<Zim64f, N> approximatePower(const PowerFactors<LowestBinade, Binades>& curve, Lane<Zim64f, N> x) {
  using Doubles = Lane<Zim64f, N>;
  using Bits = Lane<std::uint64_t, N>;
  const auto z = smaller(Doubles(curve.end), curve.function.shift == 0.0 ? x : x + curve.function.shift);
  const auto bits = bitsAs<std::uint64_t>(z);
  const auto m = bitsAs<Zim64f>((bits & Bits(0x000FFFFFFFFFFFFF)) | Bits(0x3FF0000000000000));
  const auto step = bits >> 48, binade = bits >> 52;
  const auto r = m * lookUpLowBits(curve.inverse, step) - 1.0;
  constexpr std::size_t degree = PowerFactors<LowestBinade, Binades>::degree;
  Doubles sum = curve.series[degree];
  forChannels<degree>([&](auto i) ZIM_LAMBDA { sum = sum * r + curve.series[degree - 1 - i]; });
  return lookUpLowBits(curve.ofStep, step) * lookUpLowBits(curve.ofBinade, binade) * sum;
}

// ---- The form of this build ----

template <int LowestBinade, int Binades>
using Power = std::conditional_t<kParts == 4, PowerFactors<LowestBinade, Binades>, PowerCurve<LowestBinade, Binades>>;

// What is proven is a tenth less: 1.86e-11 and 6.2e-12 of cubics, 5.56e-13 and 8.5e-14 of factors.
inline constexpr Power<-6, 7> kForwardPower({0.45, 0.0, 1.0}, kParts == 4 ? 6.2e-13 : 2.1e-11);
inline constexpr Power<-4, 5> kInversePower({2.2222222222222223, 0.099, 0.9099181073703366},
                                            kParts == 4 ? 1e-13 : 7e-12);

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
