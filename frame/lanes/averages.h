// Averages of bytes in byte lanes beyond averageUp and averageOfFour (convert.h), without a step in more bits.
//
// Averages rounded down compose: with whole a, and x of any fraction,
//   floor((a + floor(x)) / 2) = floor((a + x) / 2)   and   floor((a + floor(x) + 1) / 2) = floor((a + x + 1) / 2)
// since a + floor(x) is whole and the rest, below 1, does not carry over to its half. So a chain of averages rounded
// down is the weighted sum rounded down, and with a last step that rounds up, the one that adds half a unit.
#pragma once

#include "frame/lanes/convert.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// (a + b) >> 1, as the complement of the average of complements rounded up. In a chain two complements meet, and the
// compiler drops both.
template <int N>
ZIM_INLINE Lane<Zim8u, N> averageDown(Lane<Zim8u, N> a, Lane<Zim8u, N> b) {
  return ~averageUp(~a, ~b);
}

// (a + b + c + d) >> 2. The averages of two pairs lose a half each; two lost halves make a carry.
template <int N>
ZIM_INLINE Lane<Zim8u, N> averageDown(Lane<Zim8u, N> a, Lane<Zim8u, N> b, Lane<Zim8u, N> c, Lane<Zim8u, N> d) {
  const auto ab = averageDown(a, b), cd = averageDown(c, d);
  return averageDown(ab, cd) + ((a ^ b) & (c ^ d) & (ab ^ cd) & Lane<Zim8u, N>(1));
}

// (k a + (2^shift - k) b) >> shift, bit by bit of k from below.
template <int k, int shift, int N>
ZIM_INLINE Lane<Zim8u, N> blendDown(Lane<Zim8u, N> a, Lane<Zim8u, N> b) {
  if constexpr (k == 0) {
    return b;
  } else {
    constexpr int top = 1 << (shift - 1);
    return averageDown(k < top ? b : a, blendDown<k % top, shift - 1>(a, b));
  }
}
// (k a + (2^shift - k) b + half the unit) >> shift
template <int k, int shift, int N>
ZIM_INLINE Lane<Zim8u, N> blend(Lane<Zim8u, N> a, Lane<Zim8u, N> b) {
  constexpr int top = 1 << (shift - 1);
  return averageUp(k < top ? b : a, blendDown<k % top, shift - 1>(a, b));
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
