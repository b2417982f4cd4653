// Ordered dither of packed pixels: a sample of 8 bits becomes the level below it or the one above, by a threshold out
// of a pattern of 4 x 4 that starts at the first pixel of the region and is the same for all three fields.
#pragma once

#include "lumachroma/packed_pixels.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Thresholds in units of 1/256, by row and column.
using Thresholds = std::array<std::array<Zim16s, 4>, 4>;

// 289 times the ranks 0 to 15.
inline constexpr Thresholds T4 = {
    {{0, 2312, 578, 2890}, {3468, 1156, 4046, 1734}, {867, 3179, 289, 2601}, {4335, 2023, 3757, 1445}}};
// The same ranks for a step half as large; 6 bits halve it once more.
inline constexpr Thresholds T5 = {
    {{0, 1118, 279, 1398}, {1678, 559, 1957, 839}, {419, 1538, 139, 1258}, {2097, 978, 1817, 699}}};
inline constexpr Thresholds T6 = [] {
  Thresholds halves = T5;
  for (auto& row : halves) {
    for (Zim16s& t : row) t = static_cast<Zim16s>(t >> 1);
  }
  return halves;
}();

template <int bits>
inline constexpr const Thresholds& kThresholds = bits == 4   ? T4
                                                 : bits == 5 ? T5
                                                             : T6;

// The rows as the pixels of a block have them, whose columns start with a whole period: in even lanes, then in odd
// ones.
template <int bits>
alignas(kRegisterBytes) inline constexpr auto kWovenThresholds = [] {
  std::array<std::array<std::array<Zim16s, kLanes<Zim16s>>, 2>, 4> woven{};
  for (std::size_t y = 0; y < 4; ++y) {
    for (std::size_t x = 0; x < 2 * kLanes<Zim16s>; ++x) woven[y][x % 2][x / 2] = kThresholds<bits>[y][x % 4];
  }
  return woven;
}();

// Words as of Truncated, with fields of so many bits made so of a sample c:
//   q = (c (2^bits - 1)) >> 8,  r = 256 c - q step,  field = q + (r > threshold ? 1 : 0)
// where a step is 255 * 256 / (2^bits - 1), truncated.
template <WordFormat format>
struct Dithered {
  static constexpr bool needsPlace = true;

  template <int N>
  ZIM_INLINE Pixels<Zim16u, N, 1> operator()(const Pixels<Zim8u, N, 3>& fields, Place place) const {
    const auto& [low, green, high] = fields;
    return {field<format.bits>(low, place) | (field<format.greenBits>(green, place) << format.bits) |
            (field<format.bits>(high, place) << (format.bits + format.greenBits))};
  }

 private:
  template <int bits, int N>
  ZIM_INLINE static Lane<Zim16u, N> field(Lane<Zim8u, N> sample, Place place) {
    constexpr Zim16u levels = (1 << bits) - 1;
    // Negative, since compilers make more operations of a product by the step itself than one.
    constexpr Zim16u lessStep = 65536 - 255 * 256 / levels;
    const auto units = joinBytes(Lane<Zim8u, N>(0), sample);
    const auto q = multiplyHigh(units, Lane<Zim16u, N>(levels));
    const auto r = bitsAs<Zim16s>(units + q * Lane<Zim16u, N>(lessStep));
    return q - bitsAs<Zim16u>(r > threshold<bits, N>(place));
  }

  template <int bits, int N>
  ZIM_INLINE static Lane<Zim16s, N> threshold(Place place) {
    if constexpr (N == 1) {
      return kThresholds<bits>[place.y & 3][place.x & 3];
    } else {
      const auto& rows = kWovenThresholds<bits>[place.y & 3];
      const auto lanes = [](const auto& row) ZIM_LAMBDA {
        return load<Zim16s, N / 2, 1>(reinterpret_cast<const std::byte*>(row.data()))[0];
      };
      return Lane<Zim16s, N>::join(lanes(rows[0]), lanes(rows[1]));
    }
  }
};

template <WordFormat format>
using DitheredWords = ToWords<format, Dithered<format>>;

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
