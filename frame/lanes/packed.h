// Blocks of packed pixels: weighted sums of their samples without taking channels apart.
#pragma once

#include "frame/lanes/fixed_point.h"
#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// So many registers of them.
template <std::size_t Parts>
using PackedBlock = std::array<PackedPixels, Parts>;

#if defined(__AVX2__)
// Register i of a block of N pixels of bytes that lie Stride samples apart, and the bytes that it has ahead of its
// first pixel; in each 128-bit part the registers follow one another. Loads the block's samples and no others: the last
// register is loaded from before its first pixel, up to its last sample.
template <std::size_t Stride, int N, std::size_t i>
inline constexpr int kBytesAhead = i == N / kLanes<Zim32s> - 1 ? 16 - (3 * Stride + 3) : 0;
template <std::size_t Stride, int N, std::size_t i>
ZIM_INLINE Register loadBytesOfPart(const std::byte* p) {
  return loadParts(p + 4 * Stride * i - kBytesAhead<Stride, N, i>, N / kParts * std::ptrdiff_t{Stride});
}
#endif

// The same as pairs. With byte shuffles the middle sample comes in both words of odd; without, the second word has no
// meaning. Three samples come apart only with byte shuffles.
template <std::size_t Stride, int N, std::size_t i>
ZIM_INLINE PackedPixels loadPart(const std::byte* p) {
  constexpr bool isLast = i == N / kLanes<Zim32s> - 1;
#if defined(__AVX2__)
  static constexpr auto tableOf = [](int low, int high) {
    ByteTable table{};
    for (std::size_t word = 0; word < 8; ++word) {
      const int pixel = kBytesAhead<Stride, N, i> + static_cast<int>(Stride) * static_cast<int>(word / 2);
      table[2 * word] = static_cast<std::int8_t>(pixel + (word % 2 == 0 ? low : high));
      table[2 * word + 1] = -1;
    }
    return table;
  };
  static constexpr ByteTable even = tableOf(0, 2), odd = tableOf(1, 1);
  const Register r = loadBytesOfPart<Stride, N, i>(p);
  return {Stride == 4 && !isLast ? r & ZIM_MM(set1_epi32)(0x00FF00FF) : ZIM_MM(shuffle_epi8)(r, inEveryPart(even)),
          ZIM_MM(shuffle_epi8)(r, inEveryPart(odd))};
#else
  static_assert(Stride == 4);
  const Register r = loadParts(p + 16 * i - (isLast ? 1 : 0), N * std::ptrdiff_t{Stride});
  const Register samples = isLast ? _mm_srli_epi32(r, 8) : r;
  return {samples & _mm_set1_epi32(0x00FF00FF), _mm_srli_epi16(samples, 8)};
#endif
}

ZIM_INLINE PackedPixels operator+(PackedPixels a, PackedPixels b) {
  return {ZIM_MM(add_epi16)(a.even, b.even), ZIM_MM(add_epi16)(a.odd, b.odd)};
}

// Sums of neighbouring pixels, of a and of b in each part of the registers.
ZIM_INLINE PackedPixels neighbourSums(PackedPixels a, PackedPixels b) {
  const auto sums = [](Register x, Register y)
                        ZIM_LAMBDA { return ZIM_MM(add_epi16)(pick<0, 2, 0, 2>(x, y), pick<1, 3, 1, 3>(x, y)); };
  return {sums(a.even, b.even), sums(a.odd, b.odd)};
}

// Equal lanes of so many registers as one.
template <class T, int N, std::size_t Parts>
ZIM_INLINE auto joined(const std::array<Lane<T, N>, Parts>& parts) {
  if constexpr (Parts == 1) {
    return parts[0];
  } else {
    using Result = Lane<T, N* static_cast<int>(Parts)>;
    const auto half = [&](auto first) ZIM_LAMBDA {
      return perChannel<Parts / 2>([&](auto i) ZIM_LAMBDA { return parts[first + i]; });
    };
    return Result::join(joined(half(std::integral_constant<std::size_t, 0>())),
                        joined(half(std::integral_constant<std::size_t, Parts / 2>())));
  }
}

// row . samples + bias, in 32 bits.
template <FixedRow row>
ZIM_INLINE Lane<Zim32s, kLanes<Zim32s>> packedDot(PackedPixels pixels) {
  using Result = Lane<Zim32s, kLanes<Zim32s>>;
  constexpr auto lanes = [](Register r) ZIM_LAMBDA { return Result::of((typename Result::Value)r); };
  constexpr auto dot = [](Register r, Zim32s low, Zim32s high) ZIM_LAMBDA {
    const Zim32u both = static_cast<Zim16u>(low) | static_cast<Zim32u>(static_cast<Zim16u>(high)) << 16;
    return ZIM_MM(madd_epi16)(r, ZIM_MM(set1_epi32)(static_cast<int>(both)));
  };
  // A coefficient beyond 16 bits leaves a whole sample, in the upper word, and a rest that fits.
  constexpr auto beyond = [](Zim32s c) { return c > 32767; };
  constexpr auto rest = [](Zim32s c) { return c > 32767 ? c - 65536 : c; };
  auto sum = lanes(dot(pixels.even, rest(row.c[0]), rest(row.c[2])));
  if constexpr (beyond(row.c[0])) sum = sum + (lanes(pixels.even) << 16);
  if constexpr (beyond(row.c[2])) sum = sum + (lanes(pixels.even) & static_cast<Zim32s>(0xFFFF0000));
#if defined(__AVX2__)
  sum = sum + lanes(dot(pixels.odd, row.c[1] - row.c[1] / 2, row.c[1] / 2));
#else
  sum = sum + lanes(dot(pixels.odd, rest(row.c[1]), 0));
  if constexpr (beyond(row.c[1])) sum = sum + (lanes(pixels.odd) << 16);
#endif
  if constexpr (row.bias != 0) sum = sum + row.bias;
  return sum;
}

// (row . samples + bias) >> shift, which fits 16 bits, of every pixel.
template <FixedRow row, int shift = 16, std::size_t Parts>
ZIM_INLINE auto packedWeighted(const PackedBlock<Parts>& block) {
  return narrow<Zim16s>(
      joined(perChannel<Parts>([&](auto i) ZIM_LAMBDA { return packedDot<row>(block[i]) >> shift; })));
}

// The first, and the third, sample of every pixel.
template <std::size_t Parts>
ZIM_INLINE auto firstAndThird(const PackedBlock<Parts>& block) {
  const auto sample = [&](const auto& shifted) ZIM_LAMBDA {
    return narrow<Zim16s>(joined(perChannel<Parts>([&](auto i) ZIM_LAMBDA {
      using Lanes = Lane<Zim32s, kLanes<Zim32s>>;
      return shifted(Lanes::of((typename Lanes::Value)block[i].even));
    })));
  };
  return std::array{sample([](auto both) ZIM_LAMBDA { return both & 0xFFFF; }),
                    sample([](auto both) ZIM_LAMBDA { return both >> 16; })};
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
