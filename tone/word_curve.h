// The transfer curve of words where tables of 32 floats stay in registers (AVX-512): for each of 32 intervals the value
// at a middle, an integer and the rest, and how the curve goes on from there, in single precision.
#pragma once

#include "tone/curve_pieces.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// The curve times 65535, of x by 65535, where z = x + shift has its intervals: 2^IntervalBits a binade, from the binade
// of 2^LowestBinade on.
//
// About the middle c, with r = (x - c) / (c + shift), it is
//     value at c + slope (x - c) (1 + s(2)/b(1) r + s(3)/b(1) r^2 + ...)
// where s are the coefficients of the power up to r^5, and b(1) is its exponent.
template <int LowestBinade, int IntervalBits>
struct WordCurve {
  static constexpr std::size_t intervals = 32, degree = 4;
  using Table = std::array<float, intervals>;

  // How far sums are from the curve: no word is further off than 0.00059 forward, 0.00069 back.
  static constexpr float bound = 0x1.7p-11F;
  // What is so little above the middle between two integers that a float does not tell counts as the middle, and may go
  // down to an even integer.
  static constexpr float tieBound = 0x1p-9F;
  static constexpr float roundingBase = 0x1.8p23F;

  float shift;
  Table middle{}, inverse{}, slope{};
  Table low{};                              // the rest of the value, less both bounds
  std::array<Zim32s, intervals> integer{};  // less the bits of roundingBase
  std::array<float, degree + 1> series{};

  constexpr explicit WordCurve(const TransferCurve& curve) : shift(static_cast<float>(curve.power.shift * kUnit)) {
    const ExactPower power(curve.power.exponent);
    const auto exact = power.upToFifth(1.0L / ((2 << IntervalBits) + 1));
    const long double exponent = power.binomial(1);
    long double start = 1 << LowestBinade, width = start / (1 << IntervalBits);
    for (std::size_t k = 0; k < intervals; ++k, start += width) {
      if (k > 0 && k % (1 << IntervalBits) == 0) width *= 2;
      const auto c = static_cast<int>(start + width / 2 - shift);
      const long double base = c / kUnit + curve.power.shift, perUnit = 1.0L / (base * kUnit);
      const long double p = kUnit * curve.gain * power(base * curve.power.scale);
      const long double value = p * exact[0] - kUnit * curve.offset;
      const int nearest = static_cast<int>(value + 0.5L);
      const std::size_t at = placeOf(static_cast<float>(start));
      middle[at] = static_cast<float>(c);
      inverse[at] = static_cast<float>(perUnit);
      slope[at] = static_cast<float>(p * perUnit * exact[1]);
      low[at] = static_cast<float>(value - nearest - bound - tieBound);
      integer[at] = nearest - std::bit_cast<Zim32s>(roundingBase);
    }
    series[0] = 1.0F;
    for (std::size_t k = 1; k <= degree; ++k) series[k] = static_cast<float>(exact[k + 1] / exponent);
  }

  // Where the tables have the interval of z, in the lowest five bits.
  static constexpr int startBits = 23 - IntervalBits;

 private:
  static constexpr long double kUnit = 65535.0L;

  static constexpr std::size_t placeOf(float z) {
    return static_cast<std::size_t>(std::bit_cast<Zim32s>(z) >> startBits) % intervals;
  }
};

// The integer nearest to the curve in each lane, unless one is in doubt.
template <int N>
struct NearestOfWords {
  Lane<Zim32s, N> nearest;
  bool inDoubt;
};

// x is one of the words that the intervals have; any other may be in doubt.
template <int LowestBinade, int IntervalBits, int N>
ZIM_INLINE NearestOfWords<N> nearestOf(const WordCurve<LowestBinade, IntervalBits>& curve, Lane<Zim32f, N> x) {
  using Curve = WordCurve<LowestBinade, IntervalBits>;
  const auto interval = bitsAs<Zim32s>(curve.shift == 0.0F ? x : x + curve.shift) >> Curve::startBits;
  const auto u = x - lookUpLowBits(curve.middle, interval), r = u * lookUpLowBits(curve.inverse, interval);
  Lane<Zim32f, N> sum = curve.series[Curve::degree];
  forChannels<Curve::degree>([&](auto i) ZIM_LAMBDA { sum = sum * r + curve.series[Curve::degree - 1 - i]; });
  const auto low = u * lookUpLowBits(curve.slope, interval) * sum + lookUpLowBits(curve.low, interval);
  // Rounded by the sum, in the usual mode of the processor.
  const auto fromLow = low + Curve::roundingBase,
             fromHigh = (low + (2 * Curve::bound + Curve::tieBound)) + Curve::roundingBase;
  return {bitsAs<Zim32s>(fromLow) + lookUpLowBits(curve.integer, interval), anyDiffer(fromLow, fromHigh)};
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
