// Pixels of three colours in one 16-bit word, as a source layout: the first colour in the low bits, green in the
// middle.
#pragma once

#include "frame/layouts.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Fields of 5 bits, green of 5 or 6. They expand to 8 bits by zeros below.
template <int greenBits>
struct PackedWords {
  using Sample = Zim16u;
  using Source = const Zim16u*;
  static constexpr std::size_t channels = 3;
  static constexpr std::size_t planes = 1;
  static constexpr std::ptrdiff_t pixelBytes = 2;
  static constexpr bool hasGaps = false;

  ZIM_INLINE static Position<const std::byte, 1> start(Source p) { return {{reinterpret_cast<const std::byte*>(p)}}; }
  static bool planesGiven(Source) { return true; }

  template <int N>
  ZIM_INLINE static Pixels<Zim16s, N, 3> load(Position<const std::byte, 1> from) {
    return colours(zim::load<Zim16u, N, 1>(from.plane[0])[0]);
  }

  // Even pixels are the lower words of 32-bit lanes.
  template <int N>
  ZIM_INLINE static Pixels<Zim16s, N, 3> loadWoven(Position<const std::byte, 1> from) {
    const auto pairs = bitsAs<Zim32s>(zim::load<Zim16u, N, 1>(from.plane[0])[0]);
    const auto even = narrow<Zim16s>((pairs << 16) >> 16), odd = narrow<Zim16s>(pairs >> 16);
    return colours(bitsAs<Zim16u>(Lane<Zim16s, N>::join(even, odd)));
  }

  ZIM_INLINE static void read(Position<std::byte, 1> to, Position<const std::byte, 1> from, int pixels) {
    std::memcpy(to.plane[0], from.plane[0], static_cast<std::size_t>(pixels * pixelBytes));
  }

 private:
  template <int N>
  ZIM_INLINE static Pixels<Zim16s, N, 3> colours(Lane<Zim16u, N> words) {
    constexpr Zim16u fiveBits = 0xF8, greenMask = greenBits == 6 ? 0xFC : fiveBits;
    return {bitsAs<Zim16s>((words << 3) & fiveBits), bitsAs<Zim16s>((words >> (greenBits - 3)) & greenMask),
            bitsAs<Zim16s>((words >> (greenBits + 2)) & fiveBits)};
  }
};
using Words555 = PackedWords<5>;
using Words565 = PackedWords<6>;

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
