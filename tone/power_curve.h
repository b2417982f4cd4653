// Powers with a fixed exponent, in double lanes, close enough to the library's pow to tell in nearly all lanes what pow
// would give after rounding; only the others, less than one in a thousand, need a call of it.
#pragma once

#include <limits>

#include "frame/lanes/convert.h"
#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

struct PowerFunction {  // ((x + shift) scale)^exponent
  double exponent, shift, scale;
};

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
    constexpr int terms = 12;
    long double b[terms] = {1};
    for (int k = 1; k < terms; ++k) b[k] = b[k - 1] * (f.exponent - (k - 1)) / k;
    // (1 + r)^exponent for r up to 1/64.
    const auto nearOne = [&](long double r) {
      long double sum = 0;
      for (int k = terms; k > 0; --k) sum = sum * r + b[k - 1];
      return sum;
    };
    long double grid[intervals + 1] = {1};  // (1 + i/64)^exponent
    for (int i = 0; i < intervals; ++i) grid[i + 1] = grid[i] * nearOne(1.0L / (intervals + i));
    const auto power = [&](long double x) {
      long double scale = 1;
      for (; x < 1; x *= 2) scale /= grid[intervals];
      for (; x >= 2; x /= 2) scale *= grid[intervals];
      const int i = static_cast<int>((x - 1) * intervals);
      return scale * grid[i] *
             nearOne((x - 1) * intervals / (intervals + i) - static_cast<long double>(i) / (intervals + i));
    };
    for (std::size_t k = 0; k + 1 < cubics.size(); ++k) {
      long double h = first / (2 * intervals);
      for (std::size_t e = intervals; e <= k; e += intervals) h *= 2;
      const long double c = h * (2 * (intervals + k % intervals) + 1), base = c + f.shift, q = h / base;
      const long double middle = power(base * f.scale);
      // Coefficients in x - c, then in t = x - c + h.
      const long double u0 = middle * (1 - b[4] * q * q * q * q / 8),
                        u1 = middle * (b[1] - b[5] * q * q * q * q * 5 / 16) / base,
                        u2 = middle * (b[2] + b[4] * q * q) / (base * base),
                        u3 = middle * (b[3] + b[5] * q * q * 5 / 4) / (base * base * base);
      cubics[k] = {static_cast<double>(u0 - h * (u1 - h * (u2 - h * u3))),
                   static_cast<double>(u1 - h * (2 * u2 - h * 3 * u3)), static_cast<double>(u2 - h * 3 * u3),
                   static_cast<double>(u3)};
    }
    cubics.back().fill(std::numeric_limits<double>::quiet_NaN());
  }
};

// The errors are at most 1.86e-11 and 6.2e-12.
inline constexpr PowerCurve<-6, 7> kForwardPower({0.45, 0.0, 1.0}, 2.1e-11);
inline constexpr PowerCurve<-4, 5> kInversePower({2.2222222222222223, 0.099, 0.9099181073703366}, 7e-12);

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
  using Power = PowerCurve<LowestBinade, Binades>;
  using Bits = Lane<std::uint64_t, N>;
  const auto inside = smaller(Lane<Zim64f, N>(Power::beyond), x);
  const auto start = bitsAs<std::uint64_t>(inside) & Bits(~std::uint64_t{0} << Power::startBits);
  const auto t = x - bitsAs<Zim64f>(start);
  std::array<std::uint64_t, N / 2> offsets;
  storeOffsets<Power>(offsets.data(), start);
  // All offsets are on their way through memory before the first cubic is used: taken out of registers in between, as
  // compilers would have it, they keep the processor waiting.
  asm("" : "+m"(offsets));
  return cubicsAt(curve, offsets.data(), t);
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
