// Loads and stores of lanes: contiguous samples, and two, three or four interleaved channels.
//
// A block of N pixels is laid over the registers by halves: the 128-bit half h of every register takes its samples from
// half h of the block, and the registers of a wider sample type follow one another within each half. On SSE2, where a
// register has one half, this is the plain order of memory.
#pragma once

#include <cstring>

#include "frame/lanes/convert.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Exactly the bytes of one register, from two places 16 bytes wide that lie halfStride apart.
ZIM_INLINE Register loadHalves(const std::byte* p, [[maybe_unused]] std::ptrdiff_t halfStride) {
#if defined(__AVX2__)
  if (__builtin_constant_p(halfStride == 16) && halfStride == 16) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
  }
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + halfStride));
  return _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
#else
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
#endif
}
ZIM_INLINE void storeHalves(std::byte* p, [[maybe_unused]] std::ptrdiff_t halfStride, Register a) {
#if defined(__AVX2__)
  if (__builtin_constant_p(halfStride == 16) && halfStride == 16) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), a);
    return;
  }
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(a));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p + halfStride), _mm256_extracti128_si256(a, 1));
#else
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), a);
#endif
}

// The same, but for the last unread bytes of the second place: the upper half ends in zeros there.
template <int unread>
ZIM_INLINE Register loadHalvesShort(const std::byte* p, [[maybe_unused]] std::ptrdiff_t halfStride) {
  const auto shortHalf = [](const std::byte* end) {
    return _mm_srli_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(end - unread)), unread);
  };
#if defined(__AVX2__)
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  return _mm256_inserti128_si256(_mm256_castsi128_si256(low), shortHalf(p + halfStride), 1);
#else
  return shortHalf(p);
#endif
}

// ---- Order of samples within registers, the same in each 128-bit half ----

template <int ElementBytes>
ZIM_INLINE Register unpackLow(Register a, Register b) {
  if constexpr (ElementBytes == 1) {
    return ZIM_MM(unpacklo_epi8)(a, b);
  } else if constexpr (ElementBytes == 2) {
    return ZIM_MM(unpacklo_epi16)(a, b);
  } else if constexpr (ElementBytes == 4) {
    return ZIM_MM(unpacklo_epi32)(a, b);
  } else {
    return ZIM_MM(unpacklo_epi64)(a, b);
  }
}
template <int ElementBytes>
ZIM_INLINE Register unpackHigh(Register a, Register b) {
  if constexpr (ElementBytes == 1) {
    return ZIM_MM(unpackhi_epi8)(a, b);
  } else if constexpr (ElementBytes == 2) {
    return ZIM_MM(unpackhi_epi16)(a, b);
  } else if constexpr (ElementBytes == 4) {
    return ZIM_MM(unpackhi_epi32)(a, b);
  } else {
    return ZIM_MM(unpackhi_epi64)(a, b);
  }
}

template <std::size_t Channels>
using Registers = std::array<Register, Channels>;

// One perfect shuffle of all elements of four registers: the first half of them interleaved with the second half. With
// n elements a register and log2(n) rounds, the element at 4 * pixel + channel comes to pixel + n * channel.
template <int ElementBytes>
ZIM_INLINE Registers<4> perfectShuffle(Registers<4> r) {
  return {unpackLow<ElementBytes>(r[0], r[2]), unpackHigh<ElementBytes>(r[0], r[2]),
          unpackLow<ElementBytes>(r[1], r[3]), unpackHigh<ElementBytes>(r[1], r[3])};
}

template <int ElementBytes, int Rounds>
ZIM_INLINE Registers<4> perfectShuffles(Registers<4> r) {
  if constexpr (Rounds == 0) {
    return r;
  } else {
    return perfectShuffles<ElementBytes, Rounds - 1>(perfectShuffle<ElementBytes>(r));
  }
}

// Rounds that bring interleaved channels apart: log2 of the elements in 16 bytes.
template <int ElementBytes>
inline constexpr int kRounds = std::bit_width(16U / ElementBytes) - 1;

// Two elements of a, then two of b, in each half.
template <int A0, int A1, int B0, int B1>
ZIM_INLINE Register pick(Register a, Register b) {
  return (Register)ZIM_MM(shuffle_ps)((ZIM_FLOATS)a, (ZIM_FLOATS)b, _MM_SHUFFLE(B1, B0, A1, A0));
}
// An element of 8 bytes of a, then one of b.
template <int A, int B>
ZIM_INLINE Register pickWide(Register a, Register b) {
  constexpr int selector = kHalves == 1 ? A | B << 1 : (A | B << 1) * 5;
  return (Register)ZIM_MM(shuffle_pd)((ZIM_DOUBLES)a, (ZIM_DOUBLES)b, selector);
}

// Three channels of 4 or 8 bytes.
template <int ElementBytes>
ZIM_INLINE Registers<3> deinterleaveWide(Registers<3> r) {
  if constexpr (ElementBytes == 4) {
    const Register xy23 = pick<2, 3, 1, 2>(r[1], r[2]), yz01 = pick<1, 2, 0, 1>(r[0], r[1]);
    return {pick<0, 3, 0, 2>(r[0], xy23), pick<0, 2, 1, 3>(yz01, xy23), pick<1, 3, 0, 3>(yz01, r[2])};
  } else {
    return {pickWide<0, 1>(r[0], r[1]), pickWide<1, 0>(r[0], r[2]), pickWide<0, 1>(r[1], r[2])};
  }
}
template <int ElementBytes>
ZIM_INLINE Registers<3> interleaveWide(Registers<3> channel) {
  const auto& [x, y, z] = channel;
  if constexpr (ElementBytes == 4) {
    const Register x02y02 = pick<0, 2, 0, 2>(x, y), y13z13 = pick<1, 3, 1, 3>(y, z), z02x13 = pick<0, 2, 1, 3>(z, x);
    return {pick<0, 2, 0, 2>(x02y02, z02x13), pick<0, 2, 1, 3>(y13z13, x02y02), pick<1, 3, 1, 3>(z02x13, y13z13)};
  } else {
    return {pickWide<0, 0>(x, y), pickWide<0, 1>(z, x), pickWide<1, 1>(y, z)};
  }
}

#if defined(__AVX2__)

using ByteTable = std::array<std::int8_t, 16>;

ZIM_INLINE Register inBothHalves(const ByteTable& table) {
  return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(table.data())));
}

// Where the elements of three interleaved channels lie in their three registers: the element at position i of register
// r belongs to channel (i + r * n) % 3. Per channel the three positions never clash, so that one byte shuffle each way
// suffices: gather[c] brings them in order of pixels, scatter[c] brings pixels to their positions.
template <int ElementBytes>
struct ThreeChannels {
  static constexpr int n = 16 / ElementBytes;
  static constexpr std::array<ByteTable, 3> gather = [] {
    std::array<ByteTable, 3> tables{};
    for (int c = 0; c < 3; ++c) {
      for (int i = 0; i < 16; ++i) {
        tables[static_cast<std::size_t>(c)][static_cast<std::size_t>(i)] =
            static_cast<std::int8_t>((3 * (i / ElementBytes) + c) % n * ElementBytes + i % ElementBytes);
      }
    }
    return tables;
  }();
  static constexpr std::array<ByteTable, 3> scatter = [] {
    std::array<ByteTable, 3> tables{};
    for (std::size_t c = 0; c < 3; ++c) {
      for (std::size_t i = 0; i < 16; ++i) {
        tables[c][static_cast<std::size_t>(gather[c][i])] = static_cast<std::int8_t>(i);
      }
    }
    return tables;
  }();
  static constexpr bool belongs(int i, int r, int c) { return (i + r * n) % 3 == c; }
};

// b at the element positions of register r that belong to channel c, a elsewhere.
template <int ElementBytes, int R, int C>
ZIM_INLINE Register blendChannel(Register a, Register b) {
  using Layout = ThreeChannels<ElementBytes>;
  if constexpr (ElementBytes == 1) {
    static constexpr ByteTable mask = [] {
      ByteTable table{};
      for (int i = 0; i < 16; ++i) table[static_cast<std::size_t>(i)] = Layout::belongs(i, R, C) ? -1 : 0;
      return table;
    }();
    return _mm256_blendv_epi8(a, b, inBothHalves(mask));
  } else {
    constexpr int mask = [] {
      int bits = 0;
      for (int i = 0; i < 8; ++i) bits |= Layout::belongs(i, R, C) << i;
      return bits;
    }();
    return _mm256_blend_epi16(a, b, mask);
  }
}

template <int ElementBytes, int C>
ZIM_INLINE Register gatherChannel(Registers<3> r) {
  const Register blended = blendChannel<ElementBytes, 2, C>(blendChannel<ElementBytes, 1, C>(r[0], r[1]), r[2]);
  return _mm256_shuffle_epi8(blended, inBothHalves(ThreeChannels<ElementBytes>::gather[C]));
}
template <int ElementBytes>
ZIM_INLINE Registers<3> deinterleave(Registers<3> r) {
  if constexpr (ElementBytes >= 4) {
    return deinterleaveWide<ElementBytes>(r);
  } else {
    return {gatherChannel<ElementBytes, 0>(r), gatherChannel<ElementBytes, 1>(r), gatherChannel<ElementBytes, 2>(r)};
  }
}

// Three channels whose elements are at their positions.
template <int ElementBytes>
ZIM_INLINE Registers<3> blendChannels(const Registers<3>& channel) {
  const auto& [a, b, c] = channel;
  return {blendChannel<ElementBytes, 0, 2>(blendChannel<ElementBytes, 0, 1>(a, b), c),
          blendChannel<ElementBytes, 1, 2>(blendChannel<ElementBytes, 1, 1>(a, b), c),
          blendChannel<ElementBytes, 2, 2>(blendChannel<ElementBytes, 2, 1>(a, b), c)};
}

template <int ElementBytes>
ZIM_INLINE Registers<3> interleave(Registers<3> channel) {
  if constexpr (ElementBytes >= 4) {
    return interleaveWide<ElementBytes>(channel);
  } else {
    using Layout = ThreeChannels<ElementBytes>;
    return blendChannels<ElementBytes>(perChannel<3>(
        [&](auto i) ZIM_LAMBDA { return _mm256_shuffle_epi8(channel[i], inBothHalves(Layout::scatter[i])); }));
  }
}

template <int ElementBytes>
ZIM_INLINE Registers<4> deinterleave(Registers<4> r) {
  if constexpr (ElementBytes == 1) {
    // Four pixels to a group of four bytes a channel, then a transposition of 4 by 4 groups.
    static constexpr ByteTable groups = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
    const Register order = inBothHalves(groups);
    r = perChannel<4>([&](auto c) ZIM_LAMBDA { return _mm256_shuffle_epi8(r[c], order); });
    return perfectShuffles<4, 2>(r);
  } else {
    return perfectShuffles<ElementBytes, kRounds<ElementBytes>>(r);
  }
}

#else

// Two neighbouring pixels of three elements x, y, z are three pairs xy, zx, yz. So three channels come apart as pairs
// of twice the size first, and each pair into its elements then; and back the other way.
template <int ElementBytes>
using PairsOf = Lane<typename IntegerOfSize<2 * ElementBytes>::Unsigned, 8 / ElementBytes>;

template <int ElementBytes>
ZIM_INLINE Registers<3> deinterleave(Registers<3> r) {
  if constexpr (ElementBytes >= 4) {
    return deinterleaveWide<ElementBytes>(r);
  } else {
    using Pairs = PairsOf<ElementBytes>;
    constexpr int bits = 8 * ElementBytes;
    const Registers<3> pairs = deinterleave<2 * ElementBytes>(r);
    const auto& [xy, zx, yz] =
        perChannel<3>([&](auto c) ZIM_LAMBDA { return Pairs::of((typename Pairs::Value)pairs[c]); });
    const Pairs lower = Pairs(static_cast<typename Pairs::Element>((1U << bits) - 1));
    return {(Register)((xy & lower) | (zx & ~lower)).v, (Register)((xy >> bits) | (yz << bits)).v,
            (Register)((zx & lower) | (yz & ~lower)).v};
  }
}
template <int ElementBytes>
ZIM_INLINE Registers<3> interleave(Registers<3> channel) {
  if constexpr (ElementBytes >= 4) {
    return interleaveWide<ElementBytes>(channel);
  } else {
    using Pairs = PairsOf<ElementBytes>;
    constexpr int bits = 8 * ElementBytes;
    const auto& [x, y, z] =
        perChannel<3>([&](auto c) ZIM_LAMBDA { return Pairs::of((typename Pairs::Value)channel[c]); });
    const Pairs lower = Pairs(static_cast<typename Pairs::Element>((1U << bits) - 1));
    return interleave<2 * ElementBytes>({(Register)((x & lower) | (y << bits)).v,
                                         (Register)((z & lower) | (x & ~lower)).v,
                                         (Register)((y >> bits) | (z & ~lower)).v});
  }
}

template <int ElementBytes>
ZIM_INLINE Registers<4> deinterleave(Registers<4> r) {
  return perfectShuffles<ElementBytes, kRounds<ElementBytes>>(r);
}

#endif

template <int ElementBytes>
ZIM_INLINE Registers<4> interleave(Registers<4> channel) {
  return perfectShuffles<ElementBytes, 2>(channel);
}

// Two channels: pairs as in packed 4:2:2 and in planes of interleaved chroma.
template <int ElementBytes>
ZIM_INLINE Registers<2> interleave(Registers<2> channel) {
  return {unpackLow<ElementBytes>(channel[0], channel[1]), unpackHigh<ElementBytes>(channel[0], channel[1])};
}

template <int ElementBytes, int Rounds = kRounds<ElementBytes>>
ZIM_INLINE Registers<2> deinterleave(Registers<2> r) {
  if constexpr (ElementBytes == 1) {
    const Register lower = ZIM_MM(set1_epi16)(255);
    return {ZIM_MM(packus_epi16)(r[0] & lower, r[1] & lower),
            ZIM_MM(packus_epi16)(ZIM_MM(srli_epi16)(r[0], 8), ZIM_MM(srli_epi16)(r[1], 8))};
  } else if constexpr (Rounds == 0) {
    return r;
  } else {
    return deinterleave<ElementBytes, Rounds - 1>(interleave<ElementBytes>(r));
  }
}

// ---- Blocks of pixels ----

// Bytes of one half of a block of N pixels with so many interleaved channels.
template <class T, int N, std::size_t Channels>
inline constexpr std::ptrdiff_t kHalfStride = N / kHalves* static_cast<std::ptrdiff_t>(sizeof(T) * Channels);

// Loads N pixels of interleaved channels (one channel: contiguous samples); reads those bytes and no others. A short
// load leaves out the very last sample and gives zero for it.
enum class Extent { whole, shortOfLast };

template <class T, int N, std::size_t Channels, Extent extent = Extent::whole>
ZIM_INLINE Pixels<T, N, Channels> load(const std::byte* p, std::ptrdiff_t halfStride = kHalfStride<T, N, Channels>) {
  if constexpr (N == 1) {
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA {
      T sample;
      std::memcpy(&sample, p + c * sizeof(T), sizeof(T));
      return Lane<T, N>(sample);
    });
  } else if constexpr (kForm<T, N> == Form::split) {
    const auto lo = load<T, N / 2, Channels>(p, halfStride);
    const auto hi = load<T, N / 2, Channels, extent>(p + kHalfStride<T, N / 2, Channels>, halfStride);
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return Lane<T, N>::join(lo[c], hi[c]); });
  } else {
    Registers<Channels> r = perChannel<Channels>([&](auto c) ZIM_LAMBDA {
      constexpr bool isShort = extent == Extent::shortOfLast && c == Channels - 1;
      return isShort ? loadHalvesShort<sizeof(T)>(p + 16 * c, halfStride) : loadHalves(p + 16 * c, halfStride);
    });
    if constexpr (Channels > 1) r = deinterleave<sizeof(T)>(r);
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return Lane<T, N>::of((typename Lane<T, N>::Value)r[c]); });
  }
}

// Registers whose halves follow one another in two places, halfStride apart.
template <std::size_t Count>
ZIM_INLINE void storeRegisters(std::byte* p, [[maybe_unused]] std::ptrdiff_t halfStride, const Registers<Count>& r) {
#if defined(__AVX2__)
  // Where the second place begins at the end of the first, registers are put together whole: fewer, wider stores.
  constexpr std::ptrdiff_t adjoining = 16 * Count;
  if (Count > 1 && __builtin_constant_p(halfStride == adjoining) && halfStride == adjoining) {
    const auto put = [&](std::size_t i, Register a)
                         ZIM_LAMBDA { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p + 32 * i), a); };
    const auto low = [&](std::size_t i) ZIM_LAMBDA { return _mm256_permute2x128_si256(r[i], r[i + 1], 0x20); };
    const auto high = [&](std::size_t i) ZIM_LAMBDA { return _mm256_permute2x128_si256(r[i], r[i + 1], 0x31); };
    if constexpr (Count == 2) {
      put(0, low(0));
      put(1, high(0));
    } else if constexpr (Count == 3) {
      put(0, low(0));
      put(1, _mm256_blend_epi32(r[2], r[0], 0xF0));
      put(2, high(1));
    } else if constexpr (Count == 4) {
      put(0, low(0));
      put(1, low(2));
      put(2, high(0));
      put(3, high(2));
    }
    return;
  }
#endif
  forChannels<Count>([&](auto c) ZIM_LAMBDA { storeHalves(p + 16 * c, halfStride, r[c]); });
}

// Stores N pixels with their channels interleaved; writes those bytes and no others.
template <class T, int N, std::size_t Channels>
ZIM_INLINE void store(std::byte* p, const Pixels<T, N, Channels>& pixels,
                      std::ptrdiff_t halfStride = kHalfStride<T, N, Channels>) {
  if constexpr (N == 1) {
    forChannels<Channels>([&](auto c) ZIM_LAMBDA { std::memcpy(p + c * sizeof(T), &pixels[c].v, sizeof(T)); });
  } else if constexpr (kForm<T, N> == Form::split) {
    store<T, N / 2, Channels>(p, lowHalves(pixels), halfStride);
    store<T, N / 2, Channels>(p + kHalfStride<T, N / 2, Channels>, highHalves(pixels), halfStride);
  } else {
    Registers<Channels> r = perChannel<Channels>([&](auto c) ZIM_LAMBDA { return (Register)pixels[c].v; });
    if constexpr (Channels > 1) r = interleave<sizeof(T)>(r);
    storeRegisters(p, halfStride, r);
  }
}

// ---- Three samples in every four ----
//
// The fourth sample is neither written nor read. A store of whole samples then takes two for each pixel, whatever else
// is done: what lies between two fourth samples is three, and masks by the byte, where the processor has them at all,
// take longer than two stores. Both come from general registers; pixels that are put together in memory first and
// copied from there need as many loads besides.

// Pixels from pairs xy beside pairs that begin with z, 32 bytes in each half.
template <int ElementBytes>
ZIM_INLINE void storePixelsOfThree(std::byte* p, [[maybe_unused]] std::ptrdiff_t halfStride, Register xy, Register z) {
  constexpr std::size_t pixels = 4 / ElementBytes;  // in 64 bits of pairs
  const auto storeWide = [](std::byte* to, std::uint64_t pairs, std::uint64_t thirds) ZIM_LAMBDA {
    forChannels<pixels>([&](auto i) ZIM_LAMBDA {
      const std::uint64_t pair = pairs >> (16 * ElementBytes * i), third = thirds >> (16 * ElementBytes * i);
      std::memcpy(to + 4 * ElementBytes * i, &pair, 2 * ElementBytes);
      std::memcpy(to + 4 * ElementBytes * i + 2 * ElementBytes, &third, ElementBytes);
    });
  };
  const auto storeHalf = [&](std::byte* to, __m128i pairs, __m128i thirds) ZIM_LAMBDA {
    const auto low = [](__m128i a) ZIM_LAMBDA { return static_cast<std::uint64_t>(_mm_cvtsi128_si64(a)); };
    storeWide(to, low(pairs), low(thirds));
    storeWide(to + 16, low(_mm_unpackhi_epi64(pairs, pairs)), low(_mm_unpackhi_epi64(thirds, thirds)));
  };
#if defined(__AVX2__)
  storeHalf(p, _mm256_castsi256_si128(xy), _mm256_castsi256_si128(z));
  storeHalf(p + halfStride, _mm256_extracti128_si256(xy, 1), _mm256_extracti128_si256(z, 1));
#else
  storeHalf(p, xy, z);
#endif
}

template <class T, int N>
ZIM_INLINE void storeThreeOfFour(std::byte* p, const Pixels<T, N, 3>& pixels,
                                 std::ptrdiff_t halfStride = kHalfStride<T, N, 4>) {
  if constexpr (kForm<T, N> == Form::split) {
    storeThreeOfFour<T, N / 2>(p, lowHalves(pixels), halfStride);
    storeThreeOfFour<T, N / 2>(p + kHalfStride<T, N / 2, 4>, highHalves(pixels), halfStride);
  } else {
    constexpr int bytes = sizeof(T);
    const auto x = (Register)pixels[0].v, y = (Register)pixels[1].v, z = (Register)pixels[2].v;
    storePixelsOfThree<bytes>(p, halfStride, unpackLow<bytes>(x, y), unpackLow<bytes>(z, z));
    storePixelsOfThree<bytes>(p + 32, halfStride, unpackHigh<bytes>(x, y), unpackHigh<bytes>(z, z));
  }
}

// The same of half a block of bytes, to which its 16-bit lanes saturate.
template <int N>
ZIM_INLINE void storeBytesThreeOfFour(std::byte* p, const Pixels<Zim16s, N, 3>& pixels) {
  const auto x = (Register)pixels[0].v, y = (Register)pixels[1].v, z = (Register)pixels[2].v;
  const Register xz = ZIM_MM(packus_epi16)(x, z), yy = ZIM_MM(packus_epi16)(y, y);
  storePixelsOfThree<1>(p, kHalfStride<Zim8u, 2 * N, 4>, unpackLow<1>(xz, yy), unpackHigh<1>(xz, yy));
}

// The lanes of a block one place up, in order of the block; the last lane of the block before comes in first.
ZIM_INLINE Lane<Zim16s, kLanes<Zim16s>> movedUp(Lane<Zim16s, kLanes<Zim16s>> a, Lane<Zim16s, kLanes<Zim16s>> before) {
  using Result = Lane<Zim16s, kLanes<Zim16s>>;
  const auto bits = (Register)a.v, bitsBefore = (Register)before.v;
#if defined(__AVX2__)
  return Result::of((Result::Value)_mm256_alignr_epi8(bits, _mm256_permute2x128_si256(bitsBefore, bits, 0x21), 14));
#else
  return Result::of((Result::Value)_mm_or_si128(_mm_slli_si128(bits, 2), _mm_srli_si128(bitsBefore, 14)));
#endif
}

// Stores 16-bit lanes as bytes, to which they saturate, in two places.
ZIM_INLINE void storeBytes(std::byte* first, Lane<Zim16s, kLanes<Zim16s>> a,  //
                           std::byte* second, Lane<Zim16s, kLanes<Zim16s>> b) {
  const auto both = (Register)narrow<Zim8u>(Lane<Zim16s, kLanes<Zim8u>>::join(a, b)).v;
#if defined(__AVX2__)
  const Register ordered = _mm256_permute4x64_epi64(both, _MM_SHUFFLE(3, 1, 2, 0));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(first), _mm256_castsi256_si128(ordered));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(second), _mm256_extracti128_si256(ordered, 1));
#else
  _mm_storel_epi64(reinterpret_cast<__m128i*>(first), both);
  _mm_storeh_pd(reinterpret_cast<double*>(second), (__m128d)both);
#endif
}

// ---- Several rows side by side ----

// Four registers of lanes in four columns, or back: in each 128-bit half the lane at place i of register k comes to
// place k of register i.
template <class T, int N>
ZIM_INLINE std::array<Lane<T, N>, 4> transpose(const std::array<Lane<T, N>, 4>& rows) {
  static_assert(sizeof(T) == 4 && kForm<T, N> == Form::whole);
  const Registers<4> columns =
      perfectShuffles<4, 2>(perChannel<4>([&](auto c) ZIM_LAMBDA { return (Register)rows[c].v; }));
  return perChannel<4>([&](auto c) ZIM_LAMBDA { return Lane<T, N>::of((typename Lane<T, N>::Value)columns[c]); });
}

// Every lane in the place of the next, and a value from memory in the first.
template <class T, int N>
ZIM_INLINE Lane<T, N> shiftedUp(Lane<T, N> a, const T* first) {
  static_assert(sizeof(T) == 4 && kForm<T, N> == Form::whole);
#if defined(__AVX2__)
  const __m256i moved = _mm256_permutevar8x32_epi32((Register)a.v, _mm256_setr_epi32(0, 0, 1, 2, 3, 4, 5, 6));
  const auto inFirst = (Register)Lane<T, N>(*first).v;
  const __m256i both = _mm256_blend_epi32(moved, inFirst, 1);
#else
  const auto both = (Register)_mm_move_ss((__m128)_mm_slli_si128((Register)a.v, 4), (__m128)Lane<T, N>(*first).v);
#endif
  return Lane<T, N>::of((typename Lane<T, N>::Value)both);
}

// ---- Woven blocks: even pixels as the first half of the lanes, odd ones as the second ----
//
// Without a shuffle of bytes, three channels come apart and together most quickly by way of pairs, each of which holds
// a byte of an even pixel and one of an odd. So bytes that a kernel takes in more bits and that end up as three
// interleaved channels pass through it woven. Where two pixels share chroma, they are then lanes at the same place.

inline constexpr bool kWeaves = kHalves == 1;

template <class Wide, int N>
ZIM_INLINE Lane<Wide, N> evenAndOdd(Lane<Zim16u, N / 2> even, Lane<Zim16u, N / 2> odd) {
  return Lane<Wide, N>::join(bitsAs<Wide>(even), bitsAs<Wide>(odd));
}
// From the pairs xy, zx, yz of interleaved channels, which are loaded as if they were samples of 16 bits.
template <class Wide, int N>
ZIM_INLINE Pixels<Wide, 2 * N, 3> weave(const Pixels<Zim16u, N, 3>& pairs) {
  const auto& [xy, zx, yz] = pairs;
  const Lane<Zim16u, N> lower = 255;
  return {evenAndOdd<Wide, 2 * N>(xy & lower, zx >> 8), evenAndOdd<Wide, 2 * N>(xy >> 8, yz & lower),
          evenAndOdd<Wide, 2 * N>(zx & lower, yz >> 8)};
}
// From channels apart.
template <class Wide, int N, std::size_t Channels>
ZIM_INLINE Pixels<Wide, N, Channels> weave(const Pixels<Zim8u, N, Channels>& pixels) {
  return perChannel<Channels>([&](auto c) ZIM_LAMBDA {
    const auto both = bitsAs<Zim16u>(pixels[c]);
    return evenAndOdd<Wide, N>(both & Lane<Zim16u, N / 2>(255), both >> 8);
  });
}

// Woven lanes within 0 to 255, as bytes in order.
template <int N>
ZIM_INLINE Lane<Zim8u, N> unwoven(Lane<Zim16s, N> a) {
  return bitsAs<Zim8u>(a.v.lo | (a.v.hi << 8));
}

// The pairs of woven pixels, saturated to bytes; they are stored as if they were samples of 16 bits.
template <int N>
ZIM_INLINE Pixels<Zim16u, N / 2, 3> unweave(const Pixels<Zim16s, N, 3>& pixels) {
  const auto pairs = [](Lane<Zim16s, N / 2> low, Lane<Zim16s, N / 2> high) ZIM_LAMBDA {
    const auto bytes = (Register)narrow<Zim8u>(Lane<Zim16s, N>::join(low, high)).v;
    return Lane<Zim16u, N / 2>::of((typename Lane<Zim16u, N / 2>::Value)
                                       unpackLow<1>(bytes, unpackHigh<8>(bytes, bytes)));
  };
  const auto& [x, y, z] = pixels;
  return {pairs(x.v.lo, y.v.lo), pairs(z.v.lo, x.v.hi), pairs(y.v.hi, z.v.hi)};
}

// Stores woven pixels as three interleaved channels, saturated to bytes.
template <int N>
ZIM_INLINE void storeWoven(std::byte* p, const Pixels<Zim16s, N, 3>& pixels) {
#if defined(__AVX2__)
  // As unweave and store would have it, but that bytes come to the places of their pairs in one shuffle.
  using Layout = ThreeChannels<2>;
  static constexpr std::array<ByteTable, 3> tables = [] {
    std::array<ByteTable, 3> fromHalves{};
    for (std::size_t c = 0; c < 3; ++c) {
      for (std::size_t i = 0; i < 16; ++i) {
        const int inPairs = Layout::scatter[c][i];
        fromHalves[c][i] = static_cast<std::int8_t>(inPairs / 2 + inPairs % 2 * 8);
      }
    }
    return fromHalves;
  }();
  const auto pairs = [](auto c, Lane<Zim16s, N / 2> low, Lane<Zim16s, N / 2> high) ZIM_LAMBDA {
    const auto bytes = (Register)narrow<Zim8u>(Lane<Zim16s, N>::join(low, high)).v;
    return _mm256_shuffle_epi8(bytes, inBothHalves(tables[c]));
  };
  const auto& [x, y, z] = pixels;
  storeRegisters(p, 48,
                 blendChannels<2>({pairs(std::integral_constant<std::size_t, 0>(), x.v.lo, y.v.lo),
                                   pairs(std::integral_constant<std::size_t, 1>(), z.v.lo, x.v.hi),
                                   pairs(std::integral_constant<std::size_t, 2>(), y.v.hi, z.v.hi)}));
#else
  store<Zim16u, N / 2, 3>(p, unweave<N>(pixels));
#endif
}

// Woven pixels in the order of memory again, saturated to bytes.
template <int N>
ZIM_INLINE Pixels<Zim8u, N, 1> inOrder(const Pixels<Zim16s, N, 1>& woven) {
  const auto bytes = (Register)narrow<Zim8u>(woven[0]).v;
  return {Lane<Zim8u, N>::of((typename Lane<Zim8u, N>::Value)unpackLow<1>(bytes, unpackHigh<8>(bytes, bytes)))};
}
template <int N>
ZIM_INLINE Pixels<Zim8u, N, 2> inOrder(const Pixels<Zim16s, N, 2>& woven) {
  const auto bytes = [](Lane<Zim16s, N / 2> a, Lane<Zim16s, N / 2> b)
                         ZIM_LAMBDA { return (Register)narrow<Zim8u>(Lane<Zim16s, N>::join(a, b)).v; };
  const auto& [a, b] = woven;
  const Register even = bytes(a.v.lo, b.v.lo), odd = bytes(a.v.hi, b.v.hi);
  return {Lane<Zim8u, N>::of((typename Lane<Zim8u, N>::Value)unpackLow<1>(even, odd)),
          Lane<Zim8u, N>::of((typename Lane<Zim8u, N>::Value)unpackHigh<1>(even, odd))};
}
template <int N>
ZIM_INLINE Pixels<Zim8u, N, 3> inOrder(const Pixels<Zim16s, N, 3>& woven) requires(N > 1) {
  const auto [a, b] = inOrder<N>(Pixels<Zim16s, N, 2>{woven[0], woven[1]});
  return {a, b, inOrder<N>(Pixels<Zim16s, N, 1>{woven[2]})[0]};
}

// A single pixel is in order as it is.
template <int N, std::size_t Channels>
ZIM_INLINE Pixels<Zim8u, N, Channels> inOrder(const Pixels<Zim16s, N, Channels>& pixel) requires(N == 1) {
  return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return narrow<Zim8u>(pixel[c]); });
}

// Woven words in the order of memory again.
template <int N>
ZIM_INLINE Lane<Zim16u, N> inOrder(Lane<Zim16u, N> woven) {
  if constexpr (N == 1) {
    return woven;
  } else {
    using Half = Lane<Zim16u, N / 2>;
    const auto even = (Register)woven.v.lo.v, odd = (Register)woven.v.hi.v;
    return Lane<Zim16u, N>::join(Half::of((typename Half::Value)unpackLow<2>(even, odd)),
                                 Half::of((typename Half::Value)unpackHigh<2>(even, odd)));
  }
}

// Bytes in 16-bit lanes, each in so many lanes one after another; as many bytes as fill one register that way.
template <int copies>
ZIM_INLINE auto loadSpread(const std::byte* p) {
  using Result = Lane<Zim16s, kLanes<Zim16s>>;
  static_assert(copies == 1 || copies == 2);
  Register lanes;
#if defined(__AVX2__)
  if constexpr (copies == 1) {
    lanes = _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
  } else {
    lanes = _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
    lanes = _mm256_or_si256(lanes, _mm256_slli_epi32(lanes, 16));
  }
#else
  if constexpr (copies == 1) {
    lanes = _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), _mm_setzero_si128());
  } else {
    int bytes;
    std::memcpy(&bytes, p, sizeof(bytes));
    const __m128i wide = _mm_unpacklo_epi8(_mm_cvtsi32_si128(bytes), _mm_setzero_si128());
    lanes = _mm_unpacklo_epi16(wide, wide);
  }
#endif
  return Result::of((typename Result::Value)lanes);
}

// ---- Packed pixels, for weighted sums of 8-bit samples ----

// As many pixels as 32-bit lanes, in the order of memory: samples 0 and 2, and samples 1 and 3, as 16-bit pairs. Where
// a pixel has three samples the last one has no meaning.
struct PackedPixels {
  Register even, odd;
};

// Loads packed pixels that lie Stride samples apart. Pixels of three samples are read with four bytes of what follows
// unless the load is short, those of four with all their bytes but, in a short load, the last.
template <std::size_t Stride, Extent extent>
ZIM_INLINE PackedPixels loadPacked(const std::byte* p) {
  constexpr int unread = Stride == 4 ? 1 : 4;
  const auto split = [](Register pixels) -> PackedPixels {
    return {pixels & ZIM_MM(set1_epi32)(0x00FF00FF), ZIM_MM(srli_epi16)(pixels, 8)};
  };
  if constexpr (Stride == 4) {
    return split(extent == Extent::shortOfLast ? loadHalvesShort<unread>(p, 16) : loadHalves(p, 16));
  } else {
#if defined(__AVX2__)
    // Four pixels are the first 12 bytes of the lower half, and the last 12 of the upper: nothing beyond them is read.
    const Register r = loadHalves(p, 8);
    const auto even = _mm256_setr_epi8(0, -1, 2, -1, 3, -1, 5, -1, 6, -1, 8, -1, 9, -1, 11, -1,  //
                                       4, -1, 6, -1, 7, -1, 9, -1, 10, -1, 12, -1, 13, -1, 15, -1);
    const auto odd = _mm256_setr_epi8(1, -1, -1, -1, 4, -1, -1, -1, 7, -1, -1, -1, 10, -1, -1, -1,  //
                                      5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1, 14, -1, -1, -1);
    return {_mm256_shuffle_epi8(r, even), _mm256_shuffle_epi8(r, odd)};
#else
    const __m128i r = extent == Extent::shortOfLast ? loadHalvesShort<unread>(p, 16) : loadHalves(p, 16);
    return split(_mm_unpacklo_epi64(_mm_unpacklo_epi32(r, _mm_srli_si128(r, 3)),
                                    _mm_unpacklo_epi32(_mm_srli_si128(r, 6), _mm_srli_si128(r, 9))));
#endif
  }
}

// w0 s0 + w1 s1 + w2 s2 in 32 bits; a fourth sample is left out.
ZIM_INLINE Lane<Zim32s, kLanes<Zim32s>> dot(PackedPixels pixels, Zim16s w0, Zim16s w1, Zim16s w2) {
  const auto pair = [](Zim16s low, Zim16s high) {
    return ZIM_MM(set1_epi32)(
        static_cast<int>(static_cast<Zim16u>(low) | static_cast<Zim32u>(static_cast<Zim16u>(high)) << 16));
  };
  using Result = Lane<Zim32s, kLanes<Zim32s>>;
  return Result::of((Result::Value)ZIM_MM(add_epi32)(ZIM_MM(madd_epi16)(pixels.even, pair(w0, w2)),
                                                     ZIM_MM(madd_epi16)(pixels.odd, pair(w1, 0))));
}

// A block of bytes from sums of packed pixels, which are in the order of memory: narrowed to 16 bits, finished there,
// and narrowed again.
template <class Finish>
ZIM_INLINE void storePacked(std::byte* p, const std::array<Lane<Zim32s, kLanes<Zim32s>>, 4>& a, const Finish& finish) {
  const auto half = [&](auto first) ZIM_LAMBDA {
    return finish(narrow<Zim16s>(Lane<Zim32s, kLanes<Zim16s>>::join(a[first], a[first + 1])));
  };
  auto bytes = (Register)narrow<Zim8u>(Lane<Zim16s, kLanes<Zim8u>>::join(half(0U), half(2U))).v;
#if defined(__AVX2__)
  bytes = _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
#endif
  storeHalves(p, 16, bytes);
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
