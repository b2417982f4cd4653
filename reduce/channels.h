// Single channels of interleaved samples, as values and from results of error diffusion.
#pragma once

#include "frame/lanes/wide_pixels.h"
#include "reduce/error_diffusion.h"
#include "reduce/sample_values.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

#if defined(__AVX512BW__)

// The lower words of 32-bit lanes as every Stride-th word, in register r of those that this takes.
template <std::size_t Stride, std::size_t r>
struct WordsApart {
  static constexpr std::size_t words = kLanes<Zim16s>, all = kLanes<Zim32s> * Stride;
  alignas(kRegisterBytes) static constexpr Places<2> places = [] {
    Places<2> ofLanes{};
    for (std::size_t i = 0; i < words; ++i) ofLanes[i] = static_cast<Zim16s>((r * words + i) / Stride * 2 % words);
    return ofLanes;
  }();
  static constexpr __mmask64 own = [] {
    __mmask64 mask = 0;
    for (std::size_t i = r * words; i < std::min((r + 1) * words, all); ++i) {
      if (i % Stride == 0) mask |= __mmask64{1} << (i - r * words);
    }
    return mask;
  }();
};

// Samples in the lower bytes of 32-bit lanes, stored Stride samples apart; what lies between is not written.
template <class T, std::size_t Stride>
ZIM_INLINE void storeApart(std::byte* p, Lane<Zim32s, kLanes<Zim32s>> samples) {
  static_assert(sizeof(T) <= 2 && (Stride == 1 || Stride == 3 || Stride == 4));
  const auto lanes = (Register)samples.v;
  if constexpr (sizeof(T) == 2 && Stride == 1) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm512_cvtepi32_epi16(lanes));
  } else if constexpr (sizeof(T) == 2) {
    forChannels<(Stride + 1) / 2>([&](auto r) ZIM_LAMBDA {
      using Apart = WordsApart<Stride, r>;
      storeMasked<2>(p + kRegisterBytes * r, Apart::own, permute<2>(lanes, Apart::places));
    });
  } else if constexpr (Stride == 1) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm512_cvtepi32_epi8(lanes));
  } else if constexpr (Stride == 3) {
    static constexpr ByteTable inThrees = {0, -1, -1, 4, -1, -1, 8, -1, -1, 12, -1, -1, -1, -1, -1, -1};
    storeMasked<1>(p, 0x249249249249, joinedThrees(_mm512_shuffle_epi8(lanes, inEveryPart(inThrees))));
  } else {
    storeMasked<1>(p, 0x1111111111111111, lanes);
  }
}

#endif

// The samples of a channel whose pixels are Stride samples apart. A block of them is read with what lies between, as
// long as a pixel follows.
template <class T, std::size_t Stride>
void readChannel(const std::byte* from, std::ptrdiff_t count, std::ptrdiff_t following, Zim32f* to) {
  constexpr bool isWide = sizeof(T) == 1 && kWidens<Stride>;
  constexpr int block = isWide ? kLanes<Zim32f> : kLanes<T>;
  constexpr std::ptrdiff_t pixelBytes = Stride * sizeof(T);
  std::ptrdiff_t x = 0;
  const std::ptrdiff_t whole = Stride == 1 || following > 0 ? count : count - 1;
  for (; x <= whole - block; x += block) {
    const std::byte* const samples = from + x * pixelBytes;
    const auto values = [&]() ZIM_LAMBDA {
      if constexpr (isWide) {
        return toFloat(widenedChannel<T, Stride, 0>(loadPixels<Stride>(samples)));
      } else {
        return valueOf(load<T, block, Stride>(samples)[0]);
      }
    }();
    store<Zim32f, block, 1>(reinterpret_cast<std::byte*>(to + x), {values});
  }
  for (; x < count; ++x) to[x] = valueOf(load<T, 1, 1>(from + x * pixelBytes)[0]).v;
}

template <class T, std::size_t Stride>
void writeChannel(const Zim32f* from, std::ptrdiff_t count, const StoredLevels& stored, std::byte* to) {
  constexpr std::ptrdiff_t pixelBytes = Stride * sizeof(T);
  const auto wordsAt = [&]<int N>(std::ptrdiff_t x, std::integral_constant<int, N>) ZIM_LAMBDA {
    const auto results = load<Zim32f, N, 1>(reinterpret_cast<const std::byte*>(from + x))[0];
    return truncate(results * stored.scale + stored.rounding) >> stored.shift;
  };
  const auto samplesAt = [&](std::ptrdiff_t x, auto n)
                             ZIM_LAMBDA { return fromBlack<T>(lowBits<std::make_unsigned_t<T>>(wordsAt(x, n))); };
  std::ptrdiff_t x = 0;
#if defined(__AVX512BW__)
  constexpr int block = kLanes<Zim32f>;
  for (; x <= count - block; x += block) {
    const auto words = wordsAt(x, std::integral_constant<int, block>());
    // Words with sign count from black, too.
    storeApart<T, Stride>(to + x * pixelBytes, std::is_same_v<T, Zim16s> ? words ^ 0x8000 : words);
  }
#else
  constexpr int block = kLanes<T>;
  for (; x <= count - block; x += block) {
    const auto samples = samplesAt(x, std::integral_constant<int, block>());
    if constexpr (Stride == 1) {
      store<T, block, 1>(to + x * pixelBytes, {samples});
    } else {
      // Without an extraction of bytes, words of them are taken apart by shifts.
      using Word = std::conditional_t<kParts == 1 && sizeof(T) == 1, std::uint64_t, T>;
      alignas(kRegisterBytes) std::array<Word, kRegisterBytes / sizeof(Word)> words;
      store<T, block, 1>(reinterpret_cast<std::byte*>(words.data()), {samples});
      constexpr std::size_t perWord = sizeof(Word) / sizeof(T);
      forChannels<words.size()>([&](auto w) ZIM_LAMBDA {
        forChannels<perWord>([&](auto i) ZIM_LAMBDA {
          const auto word = static_cast<Word>(words[w] >> (i * 8 * sizeof(T)));
          std::memcpy(to + (x + static_cast<std::ptrdiff_t>(w * perWord + i)) * pixelBytes, &word, sizeof(T));
        });
      });
    }
  }
#endif
  for (; x < count; ++x) store<T, 1, 1>(to + x * pixelBytes, {samplesAt(x, std::integral_constant<int, 1>())});
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
