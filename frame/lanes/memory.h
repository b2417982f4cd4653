// Loads and stores of lanes: contiguous samples, and two, three or four interleaved channels.
//
// A block of N pixels is laid over the registers by parts: the 128-bit part h of every register takes its samples from
// part h of the block, its half on AVX2 and its quarter on AVX-512, and the registers of a wider sample type follow one
// another within each part. On SSE2, where a register has one part, this is the plain order of memory.
#pragma once

#include <cstring>

#include "frame/lanes/convert.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// A register of the parts part(0), part(1), ...
template <class Part>
ZIM_INLINE Register fromParts(const Part& part) {
#if defined(__AVX512BW__)
  const __m256i low = _mm256_inserti128_si256(_mm256_castsi128_si256(part(0)), part(1), 1);
  const __m256i high = _mm256_inserti128_si256(_mm256_castsi128_si256(part(2)), part(3), 1);
  return _mm512_inserti64x4(_mm512_castsi256_si512(low), high, 1);
#elif defined(__AVX2__)
  return _mm256_inserti128_si256(_mm256_castsi128_si256(part(0)), part(1), 1);
#else
  return part(0);
#endif
}
template <int h>
ZIM_INLINE __m128i partOf(Register a) {
#if defined(__AVX512BW__)
  return _mm512_extracti32x4_epi32(a, h);
#elif defined(__AVX2__)
  return _mm256_extracti128_si256(a, h);
#else
  return a;
#endif
}

ZIM_INLINE __m128i load128(const std::byte* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
ZIM_INLINE Register loadRegister(const std::byte* p) {
  return ZIM_MM_BITS(loadu)(reinterpret_cast<const Register*>(p));
}
ZIM_INLINE void storeRegister(std::byte* p, Register a) { ZIM_MM_BITS(storeu)(reinterpret_cast<Register*>(p), a); }

#if defined(__AVX512BW__)
// Samples of so many bytes, those whose bits are set.
template <int ElementBytes>
ZIM_INLINE void storeMasked(std::byte* p, __mmask64 mask, Register a) {
  if constexpr (ElementBytes == 1) {
    _mm512_mask_storeu_epi8(p, mask, a);
  } else if constexpr (ElementBytes == 2) {
    _mm512_mask_storeu_epi16(p, static_cast<__mmask32>(mask), a);
  } else {
    _mm512_mask_storeu_epi32(p, static_cast<__mmask16>(mask), a);
  }
}
// The first Channels of every Stride samples.
template <std::size_t Channels, std::size_t Stride>
inline constexpr __mmask64 kOfPixels = ~__mmask64{0} / ((__mmask64{1} << Stride) - 1) *
                                       ((__mmask64{1} << Channels) - 1);
#endif

// Exactly the bytes of one register, from places 16 bytes wide that lie partStride apart.
ZIM_INLINE Register loadParts(const std::byte* p, std::ptrdiff_t partStride) {
  if (kParts == 1 || (__builtin_constant_p(partStride == 16) && partStride == 16)) return loadRegister(p);
  return fromParts([&](int h) ZIM_LAMBDA { return load128(p + h * partStride); });
}
ZIM_INLINE void storeParts(std::byte* p, std::ptrdiff_t partStride, Register a) {
  if (kParts == 1 || (__builtin_constant_p(partStride == 16) && partStride == 16)) {
    storeRegister(p, a);
  } else {
    forChannels<kParts>([&](auto h) ZIM_LAMBDA {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(p + std::ptrdiff_t{h} * partStride), partOf<h>(a));
    });
  }
}

// As memset with 0, and as memcpy. Of counts that it knows to be small the compiler would make string instructions,
// which take longer to start than registers, or the C library, take for the whole.
template <class Bytes>
ZIM_INLINE void clear(Bytes& bytes) {
  static_assert(sizeof(bytes) % kRegisterBytes == 0);
  forChannels<sizeof(bytes) / kRegisterBytes>(
      [&](auto i) ZIM_LAMBDA { storeRegister(reinterpret_cast<std::byte*>(&bytes) + kRegisterBytes * i, Register{}); });
}
ZIM_INLINE void copyBytes(std::byte* to, const std::byte* from, std::ptrdiff_t count) {
  if (!__builtin_constant_p(count)) asm("" : "+r"(count));
  std::memcpy(to, from, static_cast<std::size_t>(count));
}

// ---- Order of samples within registers, the same in each 128-bit part ----

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

// Two elements of a, then two of b, in each part.
template <int A0, int A1, int B0, int B1>
ZIM_INLINE Register pick(Register a, Register b) {
  return (Register)ZIM_MM(shuffle_ps)((ZIM_FLOATS)a, (ZIM_FLOATS)b, _MM_SHUFFLE(B1, B0, A1, A0));
}
// An element of 8 bytes of a, then one of b.
template <int A, int B>
ZIM_INLINE Register pickWide(Register a, Register b) {
  constexpr int selector = (A | B << 1) * (kParts == 1 ? 1 : kParts == 2 ? 5 : 85);
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

ZIM_INLINE Register inEveryPart(const ByteTable& table) {
  const __m128i part = load128(reinterpret_cast<const std::byte*>(table.data()));
#if defined(__AVX512BW__)
  return _mm512_broadcast_i32x4(part);
#else
  return _mm256_broadcastsi128_si256(part);
#endif
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

// b at the element positions of register r that belong to channel c, a elsewhere; of registers or parts of n elements.
template <int ElementBytes, int R, int C, int n = 16 / ElementBytes>
ZIM_INLINE Register blendChannel(Register a, Register b) {
  using Layout = ThreeChannels<ElementBytes>;
#if defined(__AVX512BW__)
  constexpr __mmask64 mask = [] {
    __mmask64 bits = 0;
    for (int i = 0; i < kRegisterBytes / ElementBytes; ++i) {
      bits |= __mmask64{Layout::belongs(i % n, R, C)} << i;
    }
    return bits;
  }();
  if constexpr (ElementBytes == 1) {
    return _mm512_mask_blend_epi8(mask, a, b);
  } else if constexpr (ElementBytes == 2) {
    return _mm512_mask_blend_epi16(static_cast<__mmask32>(mask), a, b);
  } else if constexpr (ElementBytes == 4) {
    return _mm512_mask_blend_epi32(static_cast<__mmask16>(mask), a, b);
  } else {
    return _mm512_mask_blend_epi64(static_cast<__mmask8>(mask), a, b);
  }
#else
  if constexpr (ElementBytes == 1) {
    static constexpr ByteTable mask = [] {
      ByteTable table{};
      for (int i = 0; i < 16; ++i) table[static_cast<std::size_t>(i)] = Layout::belongs(i, R, C) ? -1 : 0;
      return table;
    }();
    return _mm256_blendv_epi8(a, b, inEveryPart(mask));
  } else {
    constexpr int mask = [] {
      int bits = 0;
      for (int i = 0; i < 8; ++i) bits |= Layout::belongs(i, R, C) << i;
      return bits;
    }();
    return _mm256_blend_epi16(a, b, mask);
  }
#endif
}

template <int ElementBytes, int C>
ZIM_INLINE Register gatherChannel(Registers<3> r) {
  const Register blended = blendChannel<ElementBytes, 2, C>(blendChannel<ElementBytes, 1, C>(r[0], r[1]), r[2]);
  return ZIM_MM(shuffle_epi8)(blended, inEveryPart(ThreeChannels<ElementBytes>::gather[C]));
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
template <int ElementBytes, int n = 16 / ElementBytes>
ZIM_INLINE Registers<3> blendChannels(const Registers<3>& channel) {
  const auto& [a, b, c] = channel;
  return {blendChannel<ElementBytes, 0, 2, n>(blendChannel<ElementBytes, 0, 1, n>(a, b), c),
          blendChannel<ElementBytes, 1, 2, n>(blendChannel<ElementBytes, 1, 1, n>(a, b), c),
          blendChannel<ElementBytes, 2, 2, n>(blendChannel<ElementBytes, 2, 1, n>(a, b), c)};
}

template <int ElementBytes>
ZIM_INLINE Registers<3> interleave(Registers<3> channel) {
  if constexpr (ElementBytes >= 4) {
    return interleaveWide<ElementBytes>(channel);
  } else {
    using Layout = ThreeChannels<ElementBytes>;
    return blendChannels<ElementBytes>(perChannel<3>(
        [&](auto i) ZIM_LAMBDA { return ZIM_MM(shuffle_epi8)(channel[i], inEveryPart(Layout::scatter[i])); }));
  }
}

template <int ElementBytes>
ZIM_INLINE Registers<4> deinterleave(Registers<4> r) {
  if constexpr (ElementBytes == 1) {
    // Four pixels to a group of four bytes a channel, then a transposition of 4 by 4 groups.
    static constexpr ByteTable groups = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
    const Register order = inEveryPart(groups);
    r = perChannel<4>([&](auto c) ZIM_LAMBDA { return ZIM_MM(shuffle_epi8)(r[c], order); });
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

// ---- Order of parts ----
//
// Of Count registers that follow one another in memory part i is, in the order of a block, part i / Count of register
// i % Count.

#if defined(__AVX512BW__)

// Two parts of a, then two of b.
template <int A0, int A1, int B0, int B1>
ZIM_INLINE Register pickParts(Register a, Register b) {
  return _mm512_shuffle_i64x2(a, b, _MM_SHUFFLE(B1, B0, A1, A0));
}
// The first two parts of each in turn, or the last two.
ZIM_INLINE Register lowPartsInTurn(Register a, Register b) {
  return _mm512_permutex2var_epi64(a, _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11), b);
}
ZIM_INLINE Register highPartsInTurn(Register a, Register b) {
  return _mm512_permutex2var_epi64(a, _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15), b);
}

// Part i of register k to part k of register i.
ZIM_INLINE Registers<4> transposedParts(const Registers<4>& r) {
  const Register a = pickParts<0, 1, 0, 1>(r[0], r[1]), b = pickParts<0, 1, 0, 1>(r[2], r[3]);
  const Register c = pickParts<2, 3, 2, 3>(r[0], r[1]), d = pickParts<2, 3, 2, 3>(r[2], r[3]);
  return {pickParts<0, 2, 0, 2>(a, b), pickParts<1, 3, 1, 3>(a, b), pickParts<0, 2, 0, 2>(c, d),
          pickParts<1, 3, 1, 3>(c, d)};
}

template <std::size_t Count>
ZIM_INLINE Registers<Count> inMemoryOrder(const Registers<Count>& r) {
  if constexpr (Count == 1) {
    return r;
  } else if constexpr (Count == 2) {
    return {lowPartsInTurn(r[0], r[1]), highPartsInTurn(r[0], r[1])};
  } else {
    static_assert(Count % 4 == 0);
    constexpr std::size_t quarter = Count / 4;
    const auto four = perChannel<quarter>([&](auto x) ZIM_LAMBDA {
      return transposedParts({r[4 * x], r[4 * x + 1], r[4 * x + 2], r[4 * x + 3]});
    });
    return perChannel<Count>([&](auto i) ZIM_LAMBDA { return four[i % quarter][i / quarter]; });
  }
}
template <std::size_t Count>
ZIM_INLINE Registers<Count> inBlockOrder(const Registers<Count>& r) {
  if constexpr (Count == 1) {
    return r;
  } else if constexpr (Count == 2) {
    return {pickParts<0, 2, 0, 2>(r[0], r[1]), pickParts<1, 3, 1, 3>(r[0], r[1])};
  } else {
    static_assert(Count % 4 == 0);
    constexpr std::size_t quarter = Count / 4;
    const auto four = perChannel<quarter>([&](auto x) ZIM_LAMBDA {
      return transposedParts({r[x], r[x + quarter], r[x + 2 * quarter], r[x + 3 * quarter]});
    });
    return perChannel<Count>([&](auto i) ZIM_LAMBDA { return four[i / 4][i % 4]; });
  }
}

// ---- Channels apart and together across parts ----
//
// Lanes of every size but one byte find their places anywhere in a register in one step. So three or four interleaved
// channels come apart from whole registers into lanes in the order of memory, with no step for the parts.

template <int ElementBytes, std::size_t Channels>
inline constexpr bool kAcrossParts = Channels == 3 ? ElementBytes > 1 : Channels == 4 && ElementBytes < 8;

template <int ElementBytes>
using Places = std::array<typename IntegerOfSize<ElementBytes>::Signed, kRegisterBytes / ElementBytes>;

template <int ElementBytes>
ZIM_INLINE Register permute(Register a, const Places<ElementBytes>& places) {
  const Register order = _mm512_load_si512(places.data());
  if constexpr (ElementBytes == 2) {
    return _mm512_permutexvar_epi16(order, a);
  } else if constexpr (ElementBytes == 4) {
    return _mm512_permutexvar_epi32(order, a);
  } else {
    return _mm512_permutexvar_epi64(order, a);
  }
}

// As with ThreeChannels, over whole registers.
template <int ElementBytes>
struct ThreeWholeChannels {
  static constexpr int n = kRegisterBytes / ElementBytes;
  using Element = typename Places<ElementBytes>::value_type;
  alignas(kRegisterBytes) static constexpr std::array<Places<ElementBytes>, 3> gather = [] {
    std::array<Places<ElementBytes>, 3> places{};
    for (int c = 0; c < 3; ++c) {
      for (int i = 0; i < n; ++i) {
        places[static_cast<std::size_t>(c)][static_cast<std::size_t>(i)] = static_cast<Element>((3 * i + c) % n);
      }
    }
    return places;
  }();
  alignas(kRegisterBytes) static constexpr std::array<Places<ElementBytes>, 3> scatter = [] {
    std::array<Places<ElementBytes>, 3> places{};
    for (std::size_t c = 0; c < 3; ++c) {
      for (std::size_t i = 0; i < n; ++i) {
        places[c][static_cast<std::size_t>(gather[c][i])] = static_cast<Element>(i);
      }
    }
    return places;
  }();
};

// Groups of four bytes in the order of memory: four pixels, or two, to a group of each channel; and back.
template <int ElementBytes>
ZIM_INLINE Register groupChannels(Register r) {
  if constexpr (ElementBytes == 4) {
    return r;
  } else {
    static constexpr ByteTable groups = ElementBytes == 1
                                            ? ByteTable{0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15}
                                            : ByteTable{0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15};
    return _mm512_shuffle_epi8(r, inEveryPart(groups));
  }
}
template <int ElementBytes>
ZIM_INLINE Register ungroupChannels(Register r) {
  if constexpr (ElementBytes == 2) {
    static constexpr ByteTable pixels = {0, 1, 4, 5, 8, 9, 12, 13, 2, 3, 6, 7, 10, 11, 14, 15};
    return _mm512_shuffle_epi8(r, inEveryPart(pixels));
  } else {
    return groupChannels<ElementBytes>(r);  // four by four, their own transposition
  }
}

template <int ElementBytes>
ZIM_INLINE Registers<3> deinterleaveAcross(const Registers<3>& r) {
  return perChannel<3>([&](auto c) ZIM_LAMBDA {
    constexpr int n = ThreeWholeChannels<ElementBytes>::n;
    const Register blended = blendChannel<ElementBytes, 2, c, n>(blendChannel<ElementBytes, 1, c, n>(r[0], r[1]), r[2]);
    return permute<ElementBytes>(blended, ThreeWholeChannels<ElementBytes>::gather[c]);
  });
}
template <int ElementBytes>
ZIM_INLINE Registers<3> interleaveAcross(const Registers<3>& channel) {
  return blendChannels<ElementBytes, ThreeWholeChannels<ElementBytes>::n>(perChannel<3>([&](auto c) ZIM_LAMBDA {
    return permute<ElementBytes>(channel[c], ThreeWholeChannels<ElementBytes>::scatter[c]);
  }));
}

template <int ElementBytes>
ZIM_INLINE Registers<4> deinterleaveAcross(const Registers<4>& r) {
  const auto xy = _mm512_setr_epi32(0, 4, 8, 12, 16, 20, 24, 28, 1, 5, 9, 13, 17, 21, 25, 29);
  const auto zw = _mm512_setr_epi32(2, 6, 10, 14, 18, 22, 26, 30, 3, 7, 11, 15, 19, 23, 27, 31);
  const auto g = perChannel<4>([&](auto i) ZIM_LAMBDA { return groupChannels<ElementBytes>(r[i]); });
  const Register a = _mm512_permutex2var_epi32(g[0], xy, g[1]), b = _mm512_permutex2var_epi32(g[0], zw, g[1]);
  const Register c = _mm512_permutex2var_epi32(g[2], xy, g[3]), d = _mm512_permutex2var_epi32(g[2], zw, g[3]);
  return {pickParts<0, 1, 0, 1>(a, c), pickParts<2, 3, 2, 3>(a, c), pickParts<0, 1, 0, 1>(b, d),
          pickParts<2, 3, 2, 3>(b, d)};
}
template <int ElementBytes>
ZIM_INLINE Registers<4> interleaveAcross(const Registers<4>& channel) {
  const auto& [x, y, z, w] = channel;
  const Register a = pickParts<0, 1, 0, 1>(x, y), b = pickParts<0, 1, 0, 1>(z, w);
  const Register c = pickParts<2, 3, 2, 3>(x, y), d = pickParts<2, 3, 2, 3>(z, w);
  const auto first = _mm512_setr_epi32(0, 8, 16, 24, 1, 9, 17, 25, 2, 10, 18, 26, 3, 11, 19, 27);
  const auto last = _mm512_setr_epi32(4, 12, 20, 28, 5, 13, 21, 29, 6, 14, 22, 30, 7, 15, 23, 31);
  return {ungroupChannels<ElementBytes>(_mm512_permutex2var_epi32(a, first, b)),
          ungroupChannels<ElementBytes>(_mm512_permutex2var_epi32(a, last, b)),
          ungroupChannels<ElementBytes>(_mm512_permutex2var_epi32(c, first, d)),
          ungroupChannels<ElementBytes>(_mm512_permutex2var_epi32(c, last, d))};
}

#else

template <int ElementBytes, std::size_t Channels>
inline constexpr bool kAcrossParts = false;

#endif

#if !defined(__AVX512BW__) && defined(__AVX2__)

template <std::size_t Count>
ZIM_INLINE Registers<Count> inMemoryOrder(const Registers<Count>& r) {
  const auto low = [&](std::size_t i) ZIM_LAMBDA { return _mm256_permute2x128_si256(r[i], r[i + 1], 0x20); };
  const auto high = [&](std::size_t i) ZIM_LAMBDA { return _mm256_permute2x128_si256(r[i], r[i + 1], 0x31); };
  if constexpr (Count == 3) {
    return {low(0), _mm256_blend_epi32(r[2], r[0], 0xF0), high(1)};
  } else {
    static_assert(Count % 2 == 0);
    return perChannel<Count>([&](auto i) ZIM_LAMBDA { return i < Count / 2 ? low(2 * i) : high(2 * i - Count); });
  }
}

#endif

// ---- Blocks of pixels ----

// Bytes of one part of a block of N pixels with so many interleaved channels.
template <class T, int N, std::size_t Channels>
inline constexpr std::ptrdiff_t kPartStride = N / kParts* static_cast<std::ptrdiff_t>(sizeof(T) * Channels);

template <class T, int N, std::size_t Channels>
inline constexpr std::size_t kRegistersOf = N * sizeof(T) * Channels / kRegisterBytes;

// So many registers of a block are brought into the order of memory together, and then stored.
inline constexpr std::size_t kMostStoredTogether = kParts == 4 ? 16 : 4;

// Registers as they lie in memory.
template <std::size_t Count>
ZIM_INLINE Registers<Count> loadWhole(const std::byte* p) {
  return perChannel<Count>([&](auto i) ZIM_LAMBDA { return loadRegister(p + kRegisterBytes * i); });
}

// The registers of interleaved channels, in the order of a block.
template <class T, int N, std::size_t Channels>
ZIM_INLINE auto toRegisters(const Pixels<T, N, Channels>& pixels) {
  if constexpr (kForm<T, N> == Form::split) {
    const auto lo = toRegisters<T, N / 2, Channels>(lowHalves(pixels));
    const auto hi = toRegisters<T, N / 2, Channels>(highHalves(pixels));
    return perChannel<2 * lo.size()>([&](auto i) ZIM_LAMBDA { return i < lo.size() ? lo[i] : hi[i - lo.size()]; });
  } else {
    Registers<Channels> r = perChannel<Channels>([&](auto c) ZIM_LAMBDA { return (Register)pixels[c].v; });
    if constexpr (Channels > 1) r = interleave<sizeof(T)>(r);
    return r;
  }
}
// Lanes from their registers.
template <class T, int N, std::size_t first = 0, std::size_t Count>
ZIM_INLINE Lane<T, N> joinRegisters(const Registers<Count>& r) {
  if constexpr (kForm<T, N> == Form::split) {
    return Lane<T, N>::join(joinRegisters<T, N / 2, first>(r), joinRegisters<T, N / 2, first + N / 2 / kLanes<T>>(r));
  } else {
    return Lane<T, N>::of((typename Lane<T, N>::Value)r[first]);
  }
}

#if defined(__AVX512BW__)

// N pixels of whole registers: each channel comes apart in the order of memory, and then into that of the block.
template <class T, int N, std::size_t Channels>
ZIM_INLINE Pixels<T, N, Channels> loadAcross(const std::byte* p) {
  constexpr std::size_t groups = N / kLanes<T>;
  const auto r = loadWhole<groups * Channels>(p);
  const auto apart = perChannel<groups>([&](auto g) ZIM_LAMBDA {
    const Registers<Channels> group = perChannel<Channels>([&](auto c) ZIM_LAMBDA { return r[g * Channels + c]; });
    if constexpr (Channels == 1) {
      return group;
    } else {
      return deinterleaveAcross<sizeof(T)>(group);
    }
  });
  return perChannel<Channels>([&](auto c) ZIM_LAMBDA {
    return joinRegisters<T, N>(inBlockOrder(perChannel<groups>([&](auto g) ZIM_LAMBDA { return apart[g][c]; })));
  });
}
// The registers of N pixels as they lie in memory.
template <class T, int N, std::size_t Channels>
ZIM_INLINE auto registersAcross(const Pixels<T, N, Channels>& pixels) {
  constexpr std::size_t groups = N / kLanes<T>;
  const auto apart =
      perChannel<Channels>([&](auto c) ZIM_LAMBDA { return inMemoryOrder(toRegisters<T, N, 1>({pixels[c]})); });
  const auto together = perChannel<groups>([&](auto g) ZIM_LAMBDA {
    return interleaveAcross<sizeof(T)>(perChannel<Channels>([&](auto c) ZIM_LAMBDA { return apart[c][g]; }));
  });
  return perChannel<groups * Channels>([&](auto i) ZIM_LAMBDA { return together[i / Channels][i % Channels]; });
}

#endif

// Loads N pixels of interleaved channels (one channel: contiguous samples); reads those bytes and no others.
template <class T, int N, std::size_t Channels>
ZIM_INLINE Pixels<T, N, Channels> load(const std::byte* p, std::ptrdiff_t partStride = kPartStride<T, N, Channels>) {
  if constexpr (N == 1) {
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA {
      T sample;
      std::memcpy(&sample, p + c * sizeof(T), sizeof(T));
      return Lane<T, N>(sample);
    });
  } else {
#if defined(__AVX512BW__)
    if constexpr (kAcrossParts<sizeof(T), Channels>) {
      return loadAcross<T, N, Channels>(p);
    } else if constexpr (Channels == 1) {
      constexpr auto own = kPartStride<T, N, Channels>;
      if (__builtin_constant_p(partStride == own) && partStride == own) return loadAcross<T, N, 1>(p);
    }
#endif
    if constexpr (kForm<T, N> == Form::split) {
      const auto lo = load<T, N / 2, Channels>(p, partStride);
      const auto hi = load<T, N / 2, Channels>(p + kPartStride<T, N / 2, Channels>, partStride);
      return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return Lane<T, N>::join(lo[c], hi[c]); });
    } else {
      Registers<Channels> r =
          perChannel<Channels>([&](auto c) ZIM_LAMBDA { return loadParts(p + 16 * c, partStride); });
      if constexpr (Channels > 1) r = deinterleave<sizeof(T)>(r);
      return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return Lane<T, N>::of((typename Lane<T, N>::Value)r[c]); });
    }
  }
}

#if defined(__AVX512BW__)
// Three registers whose parts follow one another in four adjoining places. A half of a register takes fewer and quicker
// steps than the whole.
ZIM_INLINE void storeThree(std::byte* p, const Registers<3>& r) {
  const auto put = [p](std::size_t i, __m256i a) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p + 32 * i), a); };
  forChannels<2>([&](auto h) ZIM_LAMBDA {
    const auto& [x, y, z] =
        perChannel<3>([&](auto c) ZIM_LAMBDA -> __m256i { return _mm512_extracti64x4_epi64(r[c], h); });
    put(3 * h, _mm256_permute2x128_si256(x, y, 0x20));
    put(3 * h + 1, _mm256_blend_epi32(z, x, 0xF0));
    put(3 * h + 2, _mm256_permute2x128_si256(y, z, 0x31));
  });
}
#endif

// Registers whose parts follow one another in several places, partStride apart.
template <std::size_t Count>
ZIM_INLINE void storeRegisters(std::byte* p, std::ptrdiff_t partStride, const Registers<Count>& r) {
#if defined(__AVX2__)
  // Where each place begins at the end of the one before, registers are put together whole: fewer, wider stores.
  constexpr std::ptrdiff_t adjoining = 16 * Count;
  if (Count > 1 && __builtin_constant_p(partStride == adjoining) && partStride == adjoining) {
#if defined(__AVX512BW__)
    if constexpr (Count == 3) {
      storeThree(p, r);
      return;
    }
#endif
    if constexpr (Count > 1 && (kParts == 2 || Count != 3)) {
      const auto ordered = inMemoryOrder(r);
      forChannels<Count>([&](auto i) ZIM_LAMBDA { storeRegister(p + kRegisterBytes * i, ordered[i]); });
    }
    return;
  }
#endif
  forChannels<Count>([&](auto c) ZIM_LAMBDA { storeParts(p + 16 * c, partStride, r[c]); });
}

// Stores N pixels with their channels interleaved; writes those bytes and no others.
template <class T, int N, std::size_t Channels>
ZIM_INLINE void store(std::byte* p, const Pixels<T, N, Channels>& pixels,
                      std::ptrdiff_t partStride = kPartStride<T, N, Channels>) {
  if constexpr (N == 1) {
    forChannels<Channels>([&](auto c) ZIM_LAMBDA { std::memcpy(p + c * sizeof(T), &pixels[c].v, sizeof(T)); });
  } else if constexpr (kAcrossParts<sizeof(T), Channels>) {
#if defined(__AVX512BW__)
    const auto r = registersAcross(pixels);
    forChannels<r.size()>([&](auto i) ZIM_LAMBDA { storeRegister(p + kRegisterBytes * i, r[i]); });
#endif
  } else if constexpr (kForm<T, N> == Form::split &&
                       (kParts == 1 || Channels == 3 || kRegistersOf<T, N, Channels> > kMostStoredTogether)) {
    store<T, N / 2, Channels>(p, lowHalves(pixels), partStride);
    store<T, N / 2, Channels>(p + kPartStride<T, N / 2, Channels>, highHalves(pixels), partStride);
  } else {
    storeRegisters(p, partStride, toRegisters<T, N, Channels>(pixels));
  }
}

// ---- Three samples in every four ----
//
// The fourth sample is neither written nor read. A store of whole samples then takes two for each pixel, whatever else
// is done: what lies between two fourth samples is three, and masks by the byte, where the processor has them at all,
// take longer than two stores. Both come from general registers; pixels that are put together in memory first and
// copied from there need as many loads besides.

// Pixels from pairs xy and pairs that begin with z, 64 bits of each.
template <int ElementBytes>
ZIM_INLINE void storePixelsOfThree(std::byte* to, std::uint64_t pairs, std::uint64_t thirds) {
  forChannels<4 / ElementBytes>([&](auto i) ZIM_LAMBDA {
    const std::uint64_t pair = pairs >> (16 * ElementBytes * i), third = thirds >> (16 * ElementBytes * i);
    std::memcpy(to + 4 * ElementBytes * i, &pair, 2 * ElementBytes);
    std::memcpy(to + 4 * ElementBytes * i + 2 * ElementBytes, &third, ElementBytes);
  });
}
ZIM_INLINE std::uint64_t lowBits64(__m128i a) { return static_cast<std::uint64_t>(_mm_cvtsi128_si64(a)); }
ZIM_INLINE std::uint64_t highBits64(__m128i a) { return lowBits64(_mm_unpackhi_epi64(a, a)); }

// The same from registers of pairs, 32 bytes in each part.
template <int ElementBytes>
ZIM_INLINE void storePixelsOfThree(std::byte* p, std::ptrdiff_t partStride, Register xy, Register z) {
  forChannels<kParts>([&](auto h) ZIM_LAMBDA {
    const __m128i pairs = partOf<h>(xy), thirds = partOf<h>(z);
    std::byte* const to = p + std::ptrdiff_t{h} * partStride;
    storePixelsOfThree<ElementBytes>(to, lowBits64(pairs), lowBits64(thirds));
    storePixelsOfThree<ElementBytes>(to + 16, highBits64(pairs), highBits64(thirds));
  });
}

template <class T, int N>
ZIM_INLINE void storeThreeOfFour(std::byte* p, const Pixels<T, N, 3>& pixels,
                                 std::ptrdiff_t partStride = kPartStride<T, N, 4>) {
  if constexpr (kForm<T, N> == Form::split) {
    storeThreeOfFour<T, N / 2>(p, lowHalves(pixels), partStride);
    storeThreeOfFour<T, N / 2>(p + kPartStride<T, N / 2, 4>, highHalves(pixels), partStride);
  } else {
    constexpr int bytes = sizeof(T);
    const auto x = (Register)pixels[0].v, y = (Register)pixels[1].v, z = (Register)pixels[2].v;
    storePixelsOfThree<bytes>(p, partStride, unpackLow<bytes>(x, y), unpackLow<bytes>(z, z));
    storePixelsOfThree<bytes>(p + 32, partStride, unpackHigh<bytes>(x, y), unpackHigh<bytes>(z, z));
  }
}

// The same of half a block of bytes, to which its 16-bit lanes saturate.
template <int N>
ZIM_INLINE void storeBytesThreeOfFour(std::byte* p, const Pixels<Zim16s, N, 3>& pixels) {
  const auto x = (Register)pixels[0].v, y = (Register)pixels[1].v, z = (Register)pixels[2].v;
  const Register xz = ZIM_MM(packus_epi16)(x, z), yy = ZIM_MM(packus_epi16)(y, y);
  storePixelsOfThree<1>(p, kPartStride<Zim8u, 2 * N, 4>, unpackLow<1>(xz, yy), unpackHigh<1>(xz, yy));
}

// Stores N pixels of a layout of so many channels and gaps between them; the gaps are not written.
template <class T, int N, std::size_t Channels, std::size_t Stride>
ZIM_INLINE void storeBesideGaps(std::byte* p, const Pixels<T, N, Channels>& pixels) {
  static_assert(Channels == 3 && Stride == 4);
#if defined(__AVX512BW__)
  if constexpr (kAcrossParts<sizeof(T), Stride>) {
    const auto r = registersAcross(perChannel<Stride>([&](auto c) ZIM_LAMBDA { return pixels[c < Channels ? c : 0]; }));
    forChannels<r.size()>(
        [&](auto i) ZIM_LAMBDA { storeMasked<sizeof(T)>(p + kRegisterBytes * i, kOfPixels<Channels, Stride>, r[i]); });
    return;
  }
#endif
  storeThreeOfFour<T, N>(p, pixels);
}

// The same of so many pixels from a block apart, which is whole.
template <class T, std::size_t Channels, std::size_t Stride>
ZIM_INLINE void copyBesideGaps(std::byte* to, const std::byte* from, std::ptrdiff_t pixels) {
#if defined(__AVX512BW__)
  if constexpr (kAcrossParts<sizeof(T), Stride>) {
    const std::ptrdiff_t samples = pixels * std::ptrdiff_t{Stride};
    for (std::ptrdiff_t i = 0; i < samples; i += kLanes<T>) {
      const __mmask64 left = samples - i < kLanes<T> ? (__mmask64{1} << (samples - i)) - 1 : ~__mmask64{0};
      const auto at = i * std::ptrdiff_t{sizeof(T)};
      storeMasked<sizeof(T)>(to + at, left & kOfPixels<Channels, Stride>, loadRegister(from + at));
    }
    return;
  }
#endif
  for (std::ptrdiff_t x = 0; x < pixels; ++x) {
    const auto at = x * std::ptrdiff_t{Stride * sizeof(T)};
    std::memcpy(to + at, from + at, Channels * sizeof(T));
  }
}

// The lanes of a block of two registers one place up, in order of the block; the last lane of the block before, whose
// second register is given, comes in first.
ZIM_INLINE Lane<Zim32s, kLanes<Zim16s>> movedUp(Lane<Zim32s, kLanes<Zim16s>> a, Lane<Zim32s, kLanes<Zim32s>> before) {
  using Whole = Lane<Zim32s, kLanes<Zim32s>>;
  const auto lo = (Register)a.v.lo.v, hi = (Register)a.v.hi.v, bitsBefore = (Register)before.v;
#if defined(__AVX512BW__)
  const auto next = [](Register r, Register last) ZIM_LAMBDA { return _mm512_alignr_epi8(r, last, 12); };
  const Register lasts = _mm512_alignr_epi64(hi, bitsBefore, 6);
#elif defined(__AVX2__)
  const auto next = [](Register r, Register last) ZIM_LAMBDA { return _mm256_alignr_epi8(r, last, 12); };
  const Register lasts = _mm256_permute2x128_si256(bitsBefore, hi, 0x21);
#else
  const auto next = [](Register r, Register last)
                        ZIM_LAMBDA { return _mm_or_si128(_mm_slli_si128(r, 4), _mm_srli_si128(last, 12)); };
  const Register lasts = bitsBefore;
#endif
  const auto whole = [](Register r) ZIM_LAMBDA { return Whole::of((Whole::Value)r); };
  return Lane<Zim32s, kLanes<Zim16s>>::join(whole(next(lo, lasts)), whole(next(hi, lo)));
}

// Stores 16-bit lanes as bytes, to which they saturate, in two places.
ZIM_INLINE void storeBytes(std::byte* first, Lane<Zim16s, kLanes<Zim16s>> a,  //
                           std::byte* second, Lane<Zim16s, kLanes<Zim16s>> b) {
  const auto both = (Register)narrow<Zim8u>(Lane<Zim16s, kLanes<Zim8u>>::join(a, b)).v;
#if defined(__AVX512BW__)
  const Register ordered = _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), both);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(first), _mm512_castsi512_si256(ordered));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(second), _mm512_extracti64x4_epi64(ordered, 1));
#elif defined(__AVX2__)
  const Register ordered = _mm256_permute4x64_epi64(both, _MM_SHUFFLE(3, 1, 2, 0));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(first), _mm256_castsi256_si128(ordered));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(second), _mm256_extracti128_si256(ordered, 1));
#else
  _mm_storel_epi64(reinterpret_cast<__m128i*>(first), both);
  _mm_storeh_pd(reinterpret_cast<double*>(second), (__m128d)both);
#endif
}

// ---- Several rows side by side ----

// Four registers of lanes in four columns, or back: in each 128-bit part the lane at place i of register k comes to
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
#if defined(__AVX512BW__)
  const auto inFirst = (Register)Lane<T, N>(*first).v;
  const __m512i both = _mm512_alignr_epi32((Register)a.v, inFirst, 15);
#elif defined(__AVX2__)
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

inline constexpr bool kWeaves = kParts == 1;

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
#if defined(__AVX512BW__)
  // As unweave and store would have it; pairs go to their places in the whole register.
  static constexpr ByteTable inPairs = {0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15};
  const auto pairs = [](Lane<Zim16s, N / 2> low, Lane<Zim16s, N / 2> high) ZIM_LAMBDA {
    const auto bytes = (Register)narrow<Zim8u>(Lane<Zim16s, N>::join(low, high)).v;
    return _mm512_shuffle_epi8(bytes, inEveryPart(inPairs));
  };
  const auto& [x, y, z] = pixels;
  const auto r = interleaveAcross<2>(Registers<3>{pairs(x.v.lo, y.v.lo), pairs(z.v.lo, x.v.hi), pairs(y.v.hi, z.v.hi)});
  forChannels<3>([&](auto i) ZIM_LAMBDA { storeRegister(p + kRegisterBytes * i, r[i]); });
#elif defined(__AVX2__)
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
    return ZIM_MM(shuffle_epi8)(bytes, inEveryPart(tables[c]));
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
#if defined(__AVX512BW__)
  if constexpr (copies == 1) {
    lanes = _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)));
  } else {
    lanes = _mm512_cvtepu8_epi32(load128(p));
    lanes = _mm512_or_si512(lanes, _mm512_slli_epi32(lanes, 16));
  }
#elif defined(__AVX2__)
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

// ---- Packed pixels: four bytes or three in the place of a word ----

// A register of pixels, four neighbours in each part: at its beginning or, where three samples a pixel leave four bytes
// over, in the second of two parts at its end. Reads their bytes and no others.
template <std::size_t Stride>
ZIM_INLINE Register loadPixels(const std::byte* p) {
  if constexpr (Stride == 4) {
    return loadRegister(p);
  } else {
#if defined(__AVX512BW__)
    const auto inParts = _mm512_setr_epi32(0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11);
    return _mm512_permutexvar_epi32(inParts, _mm512_maskz_loadu_epi32(0x0FFF, p));
#else
    static_assert(Stride == 3 && kParts == 2);
    return loadParts(p, 8);
#endif
  }
}

// As many pixels as 32-bit lanes, in the order of memory: samples 0 and 2, and samples 1 and 3, as 16-bit pairs. Where
// a pixel has three samples the last one has no meaning.
struct PackedPixels {
  Register even, odd;
};

// Loads packed pixels that lie Stride samples apart. Pixels of three samples are read with four bytes of what follows
// or, the last ones of a block, of what precedes; those of four with all their bytes.
template <std::size_t Stride, bool last>
ZIM_INLINE PackedPixels loadPacked(const std::byte* p) {
  const auto split = [](Register pixels) -> PackedPixels {
    return {pixels & ZIM_MM(set1_epi32)(0x00FF00FF), ZIM_MM(srli_epi16)(pixels, 8)};
  };
  if constexpr (Stride == 4) {
    return split(loadPixels<4>(p));
  } else {
#if defined(__AVX512BW__)
    const Register r = loadPixels<3>(p);
    static constexpr ByteTable even = {0, -1, 2, -1, 3, -1, 5, -1, 6, -1, 8, -1, 9, -1, 11, -1};
    static constexpr ByteTable odd = {1, -1, -1, -1, 4, -1, -1, -1, 7, -1, -1, -1, 10, -1, -1, -1};
    return {_mm512_shuffle_epi8(r, inEveryPart(even)), _mm512_shuffle_epi8(r, inEveryPart(odd))};
#elif defined(__AVX2__)
    const Register r = loadPixels<3>(p);
    const auto even = _mm256_setr_epi8(0, -1, 2, -1, 3, -1, 5, -1, 6, -1, 8, -1, 9, -1, 11, -1,  //
                                       4, -1, 6, -1, 7, -1, 9, -1, 10, -1, 12, -1, 13, -1, 15, -1);
    const auto odd = _mm256_setr_epi8(1, -1, -1, -1, 4, -1, -1, -1, 7, -1, -1, -1, 10, -1, -1, -1,  //
                                      5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1, 14, -1, -1, -1);
    return {ZIM_MM(shuffle_epi8)(r, even), ZIM_MM(shuffle_epi8)(r, odd)};
#else
    const __m128i r = last ? _mm_srli_si128(load128(p - 4), 4) : load128(p);
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
#if defined(__AVX512BW__)
  const auto order = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
  bytes = _mm512_permutexvar_epi32(order, bytes);
#elif defined(__AVX2__)
  bytes = _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
#endif
  storeRegister(p, bytes);
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
