// Pixels of bytes as 32-bit lanes, a register of them at a time.
//
// A kernel on 32 bits takes as many pixels a register as a register holds words of four bytes. So its channels need not
// come apart for a whole block of bytes first, and together again: each is a part of every word.
#pragma once

#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Three samples of every pixel come apart without the shuffles of bytes that SSE2 lacks only where there is a fourth.
template <std::size_t Stride>
inline constexpr bool kWidens = Stride == 4 || (Stride == 3 && kParts > 1);

template <int N>
using WidePixels = Pixels<Zim32s, N, 3>;

// Channel c of pixels as loadPixels has them, widened.
template <class T, std::size_t Stride, int c>
ZIM_INLINE Lane<Zim32s, kLanes<Zim32s>> widenedChannel(Register pixels) {
  using Result = Lane<Zim32s, kLanes<Zim32s>>;
  const auto words = Result::of((typename Result::Value)pixels);
  if constexpr (Stride == 4 && std::is_signed_v<T>) {
    return (words << (24 - 8 * c)) >> 24;
  } else if constexpr (Stride == 4 && c == 0) {
    return words & 0xFF;
#if defined(__AVX2__)
  } else {
    // A sample with sign comes to the upper end of its word.
    static constexpr auto tableOf = [](int firstPixel) {
      ByteTable table{};
      for (int i = 0; i < 16; ++i) {
        const bool holdsSample = i % 4 == (std::is_signed_v<T> ? 3 : 0);
        table[static_cast<std::size_t>(i)] =
            static_cast<std::int8_t>(holdsSample ? firstPixel + i / 4 * static_cast<int>(Stride) + c : -1);
      }
      return table;
    };
    const auto places = []() ZIM_LAMBDA {
      if constexpr (Stride == 3 && kParts == 2) {
        static constexpr std::array<ByteTable, 2> ofParts = {tableOf(0), tableOf(4)};
        return loadRegister(reinterpret_cast<const std::byte*>(&ofParts));
      } else {
        static constexpr ByteTable ofAll = tableOf(0);
        return inEveryPart(ofAll);
      }
    }();
    const auto lanes = Result::of((typename Result::Value)ZIM_MM(shuffle_epi8)(pixels, places));
    return std::is_signed_v<T> ? lanes >> 24 : lanes;
  }
#else
  } else {
    return c == 1 ? bitsAs<Zim32s>(bitsAs<Zim32u>(words) >> 8) & 0xFF
                  : bitsAs<Zim32s>(bitsAs<Zim32u>(words << 8) >> 24);
  }
#endif
}

#if defined(__AVX2__)
// The first 12 bytes of every part, one after another; what comes behind them has no meaning.
ZIM_INLINE Register joinedThrees(Register parts) {
#if defined(__AVX512BW__)
  return _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 3, 3, 3, 3), parts);
#else
  return _mm256_permutevar8x32_epi32(parts, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 3));
#endif
}
// Stores them.
ZIM_INLINE void storeThrees(std::byte* p, Register parts) {
  const Register threes = joinedThrees(parts);
#if defined(__AVX512BW__)
  // Not one store with a mask: the next load of a conversion in place would wait for the bytes left out.
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm512_castsi512_si256(threes));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 32), partOf<2>(threes));
#else
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(threes));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p + 16), _mm256_extracti128_si256(threes, 1));
#endif
}
#endif

template <class T, std::size_t Stride, int N>
ZIM_INLINE WidePixels<N> loadWide(const std::byte* p) {
  if constexpr (kForm<Zim32s, N> == Form::split) {
    const auto lo = loadWide<T, Stride, N / 2>(p), hi = loadWide<T, Stride, N / 2>(p + N / 2 * Stride);
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return Lane<Zim32s, N>::join(lo[c], hi[c]); });
  } else {
    const Register pixels = loadPixels<Stride>(p);
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return widenedChannel<T, Stride, c>(pixels); });
  }
}

// Stores pixels of three samples, to whose type they saturate, Stride samples apart; a fourth is not written.
template <class T, std::size_t Stride, int N>
ZIM_INLINE void storeWide(std::byte* p, const WidePixels<N>& pixels) {
  if constexpr (kForm<Zim32s, N> == Form::split) {
    storeWide<T, Stride, N / 2>(p, lowHalves(pixels));
    storeWide<T, Stride, N / 2>(p + N / 2 * Stride, highHalves(pixels));
  } else {
    const auto x = (Register)pixels[0].v, y = (Register)pixels[1].v, z = (Register)pixels[2].v;
    const Register xz = ZIM_MM(packs_epi32)(x, z), yy = ZIM_MM(packs_epi32)(y, y);
    const Register bytes = std::is_signed_v<T> ? ZIM_MM(packs_epi16)(xz, yy) : ZIM_MM(packus_epi16)(xz, yy);
    if constexpr (Stride == 3) {
#if defined(__AVX2__)
      static constexpr ByteTable inThrees = {0, 8, 4, 1, 9, 5, 2, 10, 6, 3, 11, 7, -1, -1, -1, -1};
      storeThrees(p, ZIM_MM(shuffle_epi8)(bytes, inEveryPart(inThrees)));
#endif
    } else {
#if defined(__AVX512BW__)
      static constexpr ByteTable inFours = {0, 8, 4, -1, 1, 9, 5, -1, 2, 10, 6, -1, 3, 11, 7, -1};
      storeMasked<1>(p, kOfPixels<3, 4>, ZIM_MM(shuffle_epi8)(bytes, inEveryPart(inFours)));
#else
      const Register paired = unpackLow<1>(bytes, unpackHigh<8>(bytes, bytes));
      forChannels<kParts>([&](auto h) ZIM_LAMBDA {
        const __m128i part = partOf<h>(paired);
        storePixelsOfThree<1>(p + 16 * h, lowBits64(part), highBits64(part));
      });
#endif
    }
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
