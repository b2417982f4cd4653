// Pixels of three bytes in pairs: in each lane of 32 bits the first channel of a pixel and another one, twice, for sums
// in two steps (fixed_point.h). Blocks of as many pixels as a register has bytes pass as four registers of pairs.
#pragma once

#include "frame/lanes/packed.h"
#include "frame/lanes/wide_pixels.h"
#include "frame/layouts.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

struct BytePairs {
  using Bytes = Lane<Zim8u, kRegisterBytes>;
  Bytes withSecond, withThird;
};

template <class Kernel>
concept HasPairs = requires(const Kernel& kernel, BytePairs pairs) {
  kernel.onPairs(pairs);
};

#if defined(__AVX2__)
// The four registers follow one another in each 128-bit part of the block. Where words of a register are permuted in
// one step (AVX-512), they follow one another in memory.

ZIM_INLINE BytePairs::Bytes bytesOf(Register r) { return BytePairs::Bytes::of((BytePairs::Bytes::Value)r); }

// The places of the first sample and another one of four pixels, Stride apart and behind so many bytes.
template <std::size_t Stride, int ahead, int other>
inline constexpr ByteTable kPlacesOfPairs = [] {
  ByteTable table{};
  for (int k = 0; k < 16; ++k) {
    table[static_cast<std::size_t>(k)] = static_cast<std::int8_t>(ahead + k / 4 * int{Stride} + k % 2 * other);
  }
  return table;
}();

// Register i of the block from planes.
template <class Source, std::size_t i>
ZIM_INLINE BytePairs loadPairs(Position<const std::byte, 3> from) {
  const auto channel = [&](std::size_t c) ZIM_LAMBDA {
    const Register r = loadRegister(from.plane[c]);
#if defined(__AVX512BW__)
    // Four pixels to each part in turn.
    return _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15), r);
#else
    return r;
#endif
  };
  const auto pairs = [&](std::size_t other) ZIM_LAMBDA {
    const Register a = channel(0), b = channel(other);
    const Register once = i < 2 ? unpackLow<1>(a, b) : unpackHigh<1>(a, b);
    return bytesOf(i % 2 == 0 ? unpackLow<2>(once, once) : unpackHigh<2>(once, once));
  };
  return {pairs(1), pairs(2)};
}

// From interleaved channels.
template <class Source, std::size_t i>
ZIM_INLINE BytePairs loadPairs(Position<const std::byte, 1> from) {
  constexpr std::size_t stride = Source::pixelBytes;
#if defined(__AVX512BW__)
  constexpr int ahead = 0;
  const Register pixels = loadPixels<stride>(from.plane[0] + kLanes<Zim32s> * stride * i);
#else
  constexpr int ahead = kBytesAhead<stride, kRegisterBytes, i>;
  const Register pixels = loadBytesOfPart<stride, kRegisterBytes, i>(from.plane[0]);
#endif
  const auto pairs = [&](auto other) ZIM_LAMBDA {
    return bytesOf(ZIM_MM(shuffle_epi8)(pixels, inEveryPart(kPlacesOfPairs<stride, ahead, other>)));
  };
  return {pairs(std::integral_constant<int, 1>()), pairs(std::integral_constant<int, 2>())};
}

// The upper halves of sums, saturated to bytes: in each part the first two channels of four pixels, then the others.
template <std::size_t Channels>
ZIM_INLINE Register upperHalves(const Pixels<Zim32s, kLanes<Zim32s>, Channels>& sums) {
  constexpr int lanes = kLanes<Zim16s>;
  const auto last = [&]() ZIM_LAMBDA {
    if constexpr (Channels == 3) {
      return bitsAs<Zim16s>(bitsAs<Zim32u>(sums[2]) >> 16);
    } else {
      return highWords<lanes>({sums[2], sums[3]});
    }
  }();
  return (Register)narrow<Zim8u>(Lane<Zim16s, 2 * lanes>::join(highWords<lanes>({sums[0], sums[1]}), last)).v;
}

// Stores the pixels of a block from four registers like that, so many bytes apart; a fourth that no channel has is not
// written.
template <std::size_t Channels, std::size_t Stride>
ZIM_INLINE void storeUpperHalves(std::byte* p, const Registers<4>& bytes) {
  const auto ordered = [&](const ByteTable& table, std::size_t i)
                           ZIM_LAMBDA { return ZIM_MM(shuffle_epi8)(bytes[i], inEveryPart(table)); };
  if constexpr (Stride == 4) {
    static constexpr ByteTable inFours = {0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15};
#if defined(__AVX512BW__)
    forChannels<4>([&](auto i) ZIM_LAMBDA {
      storeMasked<1>(p + kRegisterBytes * i, kOfPixels<Channels, 4>, ordered(inFours, i));
    });
#else
    static_assert(Channels == 4);
    forChannels<4>([&](auto i) ZIM_LAMBDA { storeParts(p + 16 * i, 64, ordered(inFours, i)); });
#endif
  } else {
    // Twelve bytes of pixels, and a gap of four behind so many of them.
    static constexpr auto inThrees = [](int before) {
      ByteTable table{};
      table.fill(-1);
      for (int k = 0; k < 12; ++k) {
        const int place = k < before ? k : k + 4;
        table[static_cast<std::size_t>(place)] =
            static_cast<std::int8_t>(k % 3 < 2 ? k / 3 * 2 + k % 3 : 8 + k / 3 * 2);
      }
      return table;
    };
#if defined(__AVX512BW__)
    static constexpr ByteTable table = inThrees(12);
    forChannels<4>([&](auto i) ZIM_LAMBDA { storeThrees(p + 48 * i, ordered(table, i)); });
#else
    // Sixteen bytes are made up by the next register's.
    static constexpr std::array<ByteTable, 4> tables = {inThrees(0), inThrees(4), inThrees(8), inThrees(12)};
    const auto threes = perChannel<4>([&](auto i) ZIM_LAMBDA { return ordered(tables[i], i); });
    storeRegisters<3>(p, 48, perChannel<3>([&](auto i) ZIM_LAMBDA {
                        return ZIM_MM(alignr_epi8)(threes[i + 1], threes[i], 4 * (i + 1));
                      }));
#endif
  }
}
#endif

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
