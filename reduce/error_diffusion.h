// Error diffusion of an image's channels, with memory and team: what the forms differ in comes as data.
#pragma once

#include "frame/lanes/memory.h"
#include "reduce/levels.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Results of the diffusion, as samples: trunc(result * scale + rounding) >> shift, of which the low bits are stored:
// noise may lift a value just below white to the level above it.
struct StoredLevels {
  Zim32f white;  // the result of white; that of black is 0
  Zim32f scale, rounding = 0.5F;
  int shift = 0;
};

template <class Byte>
struct ChannelRows {
  Byte* first;
  std::ptrdiff_t step;         // bytes, of whole samples
  std::ptrdiff_t sampleBytes;  // from channel to channel
  std::ptrdiff_t pixelBytes;
};

struct Diffusion {
  ZimiSize size;
  int channels;
  ChannelRows<const std::byte> source;
  ChannelRows<std::byte> destination;
  // So many samples of one channel as values, where so many more pixels follow in the row; and results as samples.
  void (*read)(const std::byte* from, std::ptrdiff_t count, std::ptrdiff_t following, Zim32f* to);
  void (*write)(const Zim32f* from, std::ptrdiff_t count, const StoredLevels& stored, std::byte* to);
  Levels levels;
  Zim32f black, white;  // values below the one and from the other on are at the limit
  StoredLevels stored;
  ZimDitherKind kind;
  Zim32s noise;
};

// zimResultOk or zimResultNoMemory.
ZimResult diffuse(const Diffusion& diffusion);

// The samples of a channel whose pixels are Stride samples apart. A block of them is read with what lies between, as
// long as a pixel follows.
template <class T, std::size_t Stride>
void readChannel(const std::byte* from, std::ptrdiff_t count, std::ptrdiff_t following, Zim32f* to) {
  constexpr int block = kLanes<T>;
  constexpr std::ptrdiff_t pixelBytes = Stride * sizeof(T);
  std::ptrdiff_t x = 0;
  const std::ptrdiff_t whole = Stride == 1 || following > 0 ? count : count - 1;
  for (; x <= whole - block; x += block) {
    store<Zim32f, block, 1>(reinterpret_cast<std::byte*>(to + x),
                            {valueOf(load<T, block, Stride>(from + x * pixelBytes)[0])});
  }
  for (; x < count; ++x) to[x] = valueOf(load<T, 1, 1>(from + x * pixelBytes)[0]).v;
}

template <class T, std::size_t Stride>
void writeChannel(const Zim32f* from, std::ptrdiff_t count, const StoredLevels& stored, std::byte* to) {
  constexpr int block = kLanes<T>;
  constexpr std::ptrdiff_t pixelBytes = Stride * sizeof(T);
  const auto samplesAt = [&]<int N>(std::ptrdiff_t x, std::integral_constant<int, N>) ZIM_LAMBDA {
    const auto results = load<Zim32f, N, 1>(reinterpret_cast<const std::byte*>(from + x))[0];
    const auto t = truncate(results * stored.scale + stored.rounding) >> stored.shift;
    return fromBlack<T>(lowBits<std::make_unsigned_t<T>>(t));
  };
  std::ptrdiff_t x = 0;
  for (; x <= count - block; x += block) {
    const auto samples = samplesAt(x, std::integral_constant<int, block>());
    if constexpr (Stride == 1) {
      store<T, block, 1>(to + x * pixelBytes, {samples});
    } else {
      // Without an extraction of bytes, words of them are taken apart by shifts.
      using Word = std::conditional_t<kHalves == 1 && sizeof(T) == 1, std::uint64_t, T>;
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
  for (; x < count; ++x) store<T, 1, 1>(to + x * pixelBytes, {samplesAt(x, std::integral_constant<int, 1>())});
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
