// Loads and stores of lanes: contiguous samples, and three or four interleaved channels.
//
// A block of N pixels is laid over the registers by halves: the 128-bit half h of every register takes its samples from
// half h of the block, and the registers of a wider sample type follow one another within each half. On SSE2, where a
// register has one half, this is the plain order of memory.
#pragma once

#include <cstring>

#include "frame/lanes/lane.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Exactly the bytes of one register, from two places 16 bytes wide that lie halfStride apart.
ZIM_INLINE Register loadHalves(const std::byte* p, [[maybe_unused]] std::ptrdiff_t halfStride) {
#if defined(__AVX2__)
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + halfStride));
  return _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
#else
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
#endif
}
ZIM_INLINE void storeHalves(std::byte* p, [[maybe_unused]] std::ptrdiff_t halfStride, Register a) {
#if defined(__AVX2__)
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(a));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p + halfStride), _mm256_extracti128_si256(a, 1));
#else
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), a);
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

// One perfect shuffle of all elements of the registers: the first half of them interleaved with the second half.
// With n elements a register, k channels and log2(n) rounds, the element at k * pixel + channel comes to pixel + n * channel.
template <int ElementBytes>
ZIM_INLINE Registers<3> perfectShuffle(Registers<3> r) {
  const auto upper = [](Register a) { return ZIM_MM(unpackhi_epi64)(a, a); };
  return {unpackLow<ElementBytes>(r[0], upper(r[1])), unpackLow<ElementBytes>(upper(r[0]), r[2]),
          unpackLow<ElementBytes>(r[1], upper(r[2]))};
}
template <int ElementBytes>
ZIM_INLINE Registers<4> perfectShuffle(Registers<4> r) {
  return {unpackLow<ElementBytes>(r[0], r[2]), unpackHigh<ElementBytes>(r[0], r[2]), unpackLow<ElementBytes>(r[1], r[3]),
          unpackHigh<ElementBytes>(r[1], r[3])};
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
  } else if constexpr (ElementBytes == 2) {
    constexpr int mask = [] {
      int bits = 0;
      for (int i = 0; i < 8; ++i) bits |= Layout::belongs(i, R, C) << i;
      return bits;
    }();
    return _mm256_blend_epi16(a, b, mask);
  } else {
    constexpr int mask = [] {
      int bits = 0;
      for (int i = 0; i < 8; ++i) bits |= Layout::belongs(i % 4 * 4 / ElementBytes, R, C) << i;
      return bits;
    }();
    return _mm256_blend_epi32(a, b, mask);
  }
}

template <int ElementBytes, int C>
ZIM_INLINE Register gatherChannel(Registers<3> r) {
  const Register blended =
      blendChannel<ElementBytes, 2, C>(blendChannel<ElementBytes, 1, C>(r[0], r[1]), r[2]);
  return _mm256_shuffle_epi8(blended, inBothHalves(ThreeChannels<ElementBytes>::gather[C]));
}
template <int ElementBytes>
ZIM_INLINE Registers<3> deinterleave(Registers<3> r) {
  return {gatherChannel<ElementBytes, 0>(r), gatherChannel<ElementBytes, 1>(r), gatherChannel<ElementBytes, 2>(r)};
}

template <int ElementBytes>
ZIM_INLINE Registers<3> interleave(Registers<3> channel) {
  using Layout = ThreeChannels<ElementBytes>;
  const Register a = _mm256_shuffle_epi8(channel[0], inBothHalves(Layout::scatter[0]));
  const Register b = _mm256_shuffle_epi8(channel[1], inBothHalves(Layout::scatter[1]));
  const Register c = _mm256_shuffle_epi8(channel[2], inBothHalves(Layout::scatter[2]));
  return {blendChannel<ElementBytes, 0, 2>(blendChannel<ElementBytes, 0, 1>(a, b), c),
          blendChannel<ElementBytes, 1, 2>(blendChannel<ElementBytes, 1, 1>(a, b), c),
          blendChannel<ElementBytes, 2, 2>(blendChannel<ElementBytes, 2, 1>(a, b), c)};
}

template <int ElementBytes>
ZIM_INLINE Registers<4> deinterleave(Registers<4> r) {
  if constexpr (ElementBytes == 1) {
    // Four pixels to a group of four bytes a channel, then a transposition of 4 by 4 groups.
    static constexpr ByteTable groups = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
    for (Register& x : r) x = _mm256_shuffle_epi8(x, inBothHalves(groups));
    return perfectShuffle<4>(perfectShuffle<4>(r));
  } else {
    for (int n = 16 / ElementBytes; n > 1; n /= 2) r = perfectShuffle<ElementBytes>(r);
    return r;
  }
}

#else

template <int ElementBytes, std::size_t Channels>
ZIM_INLINE Registers<Channels> deinterleave(Registers<Channels> r) {
  for (int n = 16 / ElementBytes; n > 1; n /= 2) r = perfectShuffle<ElementBytes>(r);
  return r;
}

// Closes up the pixels of four registers whose 64-bit halves hold six bytes of samples each, two zero bytes above.
ZIM_INLINE Registers<3> closeUp(Registers<4> r) {
  for (__m128i& x : r) {
    x = _mm_or_si128(_mm_move_epi64(x), _mm_slli_si128(_mm_unpackhi_epi64(x, _mm_setzero_si128()), 6));
  }
  return {_mm_or_si128(r[0], _mm_slli_si128(r[1], 12)), _mm_or_si128(_mm_srli_si128(r[1], 4), _mm_slli_si128(r[2], 8)),
          _mm_or_si128(_mm_srli_si128(r[2], 8), _mm_slli_si128(r[3], 4))};
}

template <int ElementBytes>
ZIM_INLINE Registers<3> interleave(Registers<3> channel) {
  const auto [a, b, c] = channel;
  if constexpr (ElementBytes <= 2) {
    const __m128i zero = _mm_setzero_si128();
    Registers<4> r = perfectShuffle<ElementBytes>(perfectShuffle<ElementBytes>(Registers<4>{a, b, c, zero}));
    if constexpr (ElementBytes == 1) {
      // Two pixels of three bytes and a zero byte in 64 bits: move the upper one down beside the lower.
      const __m128i first = _mm_set1_epi64x(0xFFFFFF), second = _mm_set1_epi64x(0xFFFFFF000000);
      for (__m128i& x : r) x = _mm_or_si128(_mm_and_si128(x, first), _mm_and_si128(_mm_srli_epi64(x, 8), second));
    }
    return closeUp(r);
  } else if constexpr (ElementBytes == 4) {
    const auto pick = [](__m128i x, __m128i y, auto selector) {
      return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(x), _mm_castsi128_ps(y), decltype(selector)::value));
    };
    constexpr std::integral_constant<int, _MM_SHUFFLE(1, 1, 0, 0)> lanes0011;
    constexpr std::integral_constant<int, _MM_SHUFFLE(1, 1, 1, 1)> lanes1111;
    constexpr std::integral_constant<int, _MM_SHUFFLE(2, 2, 2, 2)> lanes2222;
    constexpr std::integral_constant<int, _MM_SHUFFLE(3, 3, 2, 2)> lanes2233;
    constexpr std::integral_constant<int, _MM_SHUFFLE(2, 0, 1, 0)> lanes0102;
    constexpr std::integral_constant<int, _MM_SHUFFLE(2, 0, 2, 0)> lanes0202;
    constexpr std::integral_constant<int, _MM_SHUFFLE(3, 2, 2, 0)> lanes0223;
    return {pick(_mm_unpacklo_epi32(a, b), pick(c, a, lanes0011), lanes0102),
            pick(pick(b, c, lanes1111), pick(a, b, lanes2222), lanes0202),
            pick(pick(c, a, lanes2233), _mm_unpackhi_epi32(b, c), lanes0223)};
  } else {
    const auto middle = _mm_shuffle_pd(_mm_castsi128_pd(c), _mm_castsi128_pd(a), 2);
    return {_mm_unpacklo_epi64(a, b), _mm_castpd_si128(middle), _mm_unpackhi_epi64(b, c)};
  }
}

#endif

template <int ElementBytes>
ZIM_INLINE Registers<4> interleave(Registers<4> channel) {
  return perfectShuffle<ElementBytes>(perfectShuffle<ElementBytes>(channel));
}

// ---- Blocks of pixels ----

// Bytes of one half of a block of N pixels with so many interleaved channels.
template <class T, int N, std::size_t Channels>
inline constexpr std::ptrdiff_t kHalfStride = N / kHalves * static_cast<std::ptrdiff_t>(sizeof(T) * Channels);

// Loads N pixels of interleaved channels (one channel: contiguous samples); reads those bytes and no others.
template <class T, int N, std::size_t Channels>
ZIM_INLINE Pixels<T, N, Channels> load(const std::byte* p, std::ptrdiff_t halfStride = kHalfStride<T, N, Channels>) {
  Pixels<T, N, Channels> pixels;
  if constexpr (N == 1) {
    for (std::size_t c = 0; c < Channels; ++c) std::memcpy(&pixels[c].v, p + c * sizeof(T), sizeof(T));
  } else if constexpr (kForm<T, N> == Form::split) {
    const auto lo = load<T, N / 2, Channels>(p, halfStride);
    const auto hi = load<T, N / 2, Channels>(p + kHalfStride<T, N / 2, Channels>, halfStride);
    for (std::size_t c = 0; c < Channels; ++c) pixels[c] = Lane<T, N>::join(lo[c], hi[c]);
  } else {
    Registers<Channels> r;
    for (std::size_t c = 0; c < Channels; ++c) r[c] = loadHalves(p + 16 * c, halfStride);
    if constexpr (Channels > 1) r = deinterleave<sizeof(T)>(r);
    for (std::size_t c = 0; c < Channels; ++c) pixels[c].v = (typename Lane<T, N>::Value)r[c];
  }
  return pixels;
}

// Stores N pixels with their channels interleaved; writes those bytes and no others.
template <class T, int N, std::size_t Channels>
ZIM_INLINE void store(std::byte* p, const Pixels<T, N, Channels>& pixels,
                      std::ptrdiff_t halfStride = kHalfStride<T, N, Channels>) {
  if constexpr (N == 1) {
    for (std::size_t c = 0; c < Channels; ++c) std::memcpy(p + c * sizeof(T), &pixels[c].v, sizeof(T));
  } else if constexpr (kForm<T, N> == Form::split) {
    Pixels<T, N / 2, Channels> lo, hi;
    for (std::size_t c = 0; c < Channels; ++c) {
      lo[c] = pixels[c].v.lo;
      hi[c] = pixels[c].v.hi;
    }
    store<T, N / 2, Channels>(p, lo, halfStride);
    store<T, N / 2, Channels>(p + kHalfStride<T, N / 2, Channels>, hi, halfStride);
  } else {
    Registers<Channels> r;
    for (std::size_t c = 0; c < Channels; ++c) r[c] = (Register)pixels[c].v;
    if constexpr (Channels > 1) r = interleave<sizeof(T)>(r);
    for (std::size_t c = 0; c < Channels; ++c) storeHalves(p + 16 * c, halfStride, r[c]);
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
