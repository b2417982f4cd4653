// Pixels packed into words of 16 bits: how samples of 8 bits become fields.
//
//     444   low in bits 0 to 3, green in 4 to 7, high in 8 to 11
//     555   low in bits 0 to 4, green in 5 to 9, high in 10 to 14
//     565   low in bits 0 to 4, green in 5 to 10, high in 11 to 15
// with blue low and red high in BGR words, red low and blue high in RGB words. Bits above are zero.
#pragma once

#include "lumachroma/shared_chroma.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

struct WordFormat {
  Order order;
  int bits, greenBits;  // of the low and the high field, and of green
};

inline constexpr WordFormat BGR444 = {Order::bgr, 4, 4}, RGB444 = {Order::rgb, 4, 4};
inline constexpr WordFormat BGR555 = {Order::bgr, 5, 5}, RGB555 = {Order::rgb, 5, 5};
inline constexpr WordFormat BGR565 = {Order::bgr, 5, 6}, RGB565 = {Order::rgb, 5, 6};

// Words from bytes, which come in the order of their fields from bit 0 up: the high bits of each. The two bytes of a
// word are put together as such; the field of green reaches into both.
template <WordFormat format>
struct Truncated {
  using Sample = Zim8u;
  static constexpr bool needsPlace = false;

  template <int N>
  ZIM_INLINE Pixels<Zim16u, N, 1> operator()(const Pixels<Zim8u, N, 3>& fields, Place = {}) const {
    constexpr int bits = format.bits, both = bits + format.greenBits, above = both - 8;
    const auto& [low, green, high] = fields;
    const auto lower =
        movedBits<8 - bits, (1 << bits) - 1>(low) | movedBits<8 - both, static_cast<Zim8u>(0xFF << bits)>(green);
    const auto upper = movedBits<8 - bits - above, ((1 << bits) - 1) << above>(high);
    if constexpr (above == 0) {
      return {joinBytes(lower, upper)};
    } else {
      return {joinBytes(lower, upper | movedBits<8 - above, (1 << above) - 1>(green))};
    }
  }
};

// The sink of words that a kernel on bytes makes.
template <WordFormat format, class Kernel>
struct ToWords {
  using Layout = C1<Zim16u>;
  static constexpr bool needsPlace = Kernel::needsPlace;

  template <int N>
  ZIM_INLINE void store(Position<std::byte, 1> to, const Pixels<Zim16s, N, 3>& rgb, Place place) const {
    const auto fields =
        perChannel<3>([&](auto c) ZIM_LAMBDA { return narrow<Zim8u>(rgb[format.order == Order::rgb ? c : 2 - c]); });
    const auto [words] = Kernel()(fields, place);
    Layout::store<N>(to, {inOrder<N>(words)});
  }
};

template <WordFormat format>
using Words = ToWords<format, Truncated<format>>;

// Rules of words: every pixel is converted, and rows are as many whole words apart as the step holds.
template <class Tests, class LoneColumns>
using EveryPixel = SharedRules<Tests, LoneColumns, OddSize::silent, 1, 1, Offsets::elements>;

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
