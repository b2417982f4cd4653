// Blocks of packed pixels: weighted sums of their samples without taking channels apart.
#pragma once

#include "frame/lanes/fixed_point.h"
#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// N pixels (or pairs), as many to a register as 32-bit lanes, the registers of a half following one another.
template <int N>
using PackedBlock = std::array<PackedPixels, static_cast<std::size_t>(N / kLanes<Zim32s>)>;

// Loads bytes that lie Stride samples apart, all of them and no others. With byte shuffles the middle sample comes in
// both words of odd; without, the second word has no meaning. Three samples come apart only with byte shuffles.
template <std::size_t Stride, int N>
ZIM_INLINE PackedBlock<N> loadPackedBlock(const std::byte* p) {
  constexpr std::size_t parts = N / kLanes<Zim32s>;
  [[maybe_unused]] constexpr std::ptrdiff_t halfStride = N / kHalves * std::ptrdiff_t{Stride};
  return perChannel<parts>([&](auto i) ZIM_LAMBDA -> PackedPixels {
#if defined(__AVX2__)
    // The last pixels of three samples are at the end of what is loaded, so that nothing beyond them is.
    constexpr bool atEnd = Stride == 3 && i == parts - 1;
    constexpr std::size_t offset = 4 * Stride * i - (atEnd ? 4 : 0);
    static constexpr auto tableOf = [](int low, int high) {
      ByteTable table{};
      for (int pixel = 0; pixel < 4; ++pixel) {
        const int at = static_cast<int>(Stride) * pixel + (atEnd ? 4 : 0);
        const std::array<int, 4> bytes = {at + low, -1, at + high, -1};
        for (int k = 0; k < 4; ++k) {
          table[static_cast<std::size_t>(4 * pixel + k)] = static_cast<std::int8_t>(bytes[static_cast<std::size_t>(k)]);
        }
      }
      return table;
    };
    static constexpr ByteTable even = tableOf(0, 2), odd = tableOf(1, 1);
    const Register r = loadHalves(p + offset, halfStride);
    return {Stride == 4 ? r & _mm256_set1_epi32(0x00FF00FF) : _mm256_shuffle_epi8(r, inBothHalves(even)),
            _mm256_shuffle_epi8(r, inBothHalves(odd))};
#else
    static_assert(Stride == 4);
    const Register r = loadHalves(p + 16 * i, halfStride);
    return {r & _mm_set1_epi32(0x00FF00FF), _mm_srli_epi16(r, 8)};
#endif
  });
}

template <std::size_t Parts>
ZIM_INLINE auto operator+(const std::array<PackedPixels, Parts>& a, const std::array<PackedPixels, Parts>& b) {
  return perChannel<Parts>([&](auto i) ZIM_LAMBDA -> PackedPixels {
    return {ZIM_MM(add_epi16)(a[i].even, b[i].even), ZIM_MM(add_epi16)(a[i].odd, b[i].odd)};
  });
}

// Sums of neighbouring pixels.
template <std::size_t Parts>
ZIM_INLINE auto neighbourSums(const std::array<PackedPixels, Parts>& pixels) {
  const auto sums = [](Register a, Register b)
                        ZIM_LAMBDA { return ZIM_MM(add_epi16)(pick<0, 2, 0, 2>(a, b), pick<1, 3, 1, 3>(a, b)); };
  return perChannel<Parts / 2>([&](auto i) ZIM_LAMBDA -> PackedPixels {
    const PackedPixels &a = pixels[2 * i], &b = pixels[2 * i + 1];
    return {sums(a.even, b.even), sums(a.odd, b.odd)};
  });
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

// (row . samples + bias) >> shift, which fits 16 bits, of every pixel of a block.
template <FixedRow row, int shift = 16, std::size_t Parts>
ZIM_INLINE auto packedWeighted(const std::array<PackedPixels, Parts>& block) {
  return narrow<Zim16s>(
      joined(perChannel<Parts>([&](auto i) ZIM_LAMBDA { return packedDot<row>(block[i]) >> shift; })));
}

// The first, and the third, sample of every pixel.
template <std::size_t Parts>
ZIM_INLINE auto firstAndThird(const std::array<PackedPixels, Parts>& block) {
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
