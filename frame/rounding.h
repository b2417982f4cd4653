// The two rounding steps that several families share: to nearest by truncation, ties to the even neighbour. They depend
// on no rounding mode of the processor.
#pragma once

#include "frame/lanes/convert.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// i, moved by one toward zero where it is odd and equals t: there t was a tie. Signed tells whether i may be negative.
template <bool Signed, int N>
ZIM_INLINE Lane<Zim32s, N> tieToEven(Lane<Zim32s, N> i, Lane<Zim32f, N> t) {
  const auto tie = bitsAs<Zim32s>(toFloat(i) == t);
  const auto odd = i & tie & 1;
  if constexpr (Signed) {
    const auto sign = i >> 31;
    return i - ((odd ^ sign) - sign);
  } else {
    return i - odd;
  }
}

// Of a value that is not negative: i = a + 0.5, truncated.
template <int N>
ZIM_INLINE Lane<Zim32s, N> roundHalfEvenPositive(Lane<Zim32f, N> a) {
  const auto t = a + 0.5F;
  return tieToEven<false>(truncate(t), t);
}

// In double, with the tie found in single precision: t need only lie within its rounding of an odd integer.
template <int N>
ZIM_INLINE Lane<Zim32s, N> roundHalfEvenPositive(Lane<Zim64f, N> a) {
  const auto t = a + 0.5;
  return tieToEven<false>(truncate(t), narrow<Zim32f>(t));
}

// Of any value: away from zero by 0.5, truncated. The sum is exact in double, and narrowing it to single gives what a
// sum in single precision gives at once: below 2^-30, where it would not be exact, no tie of single precision is near.
template <int N>
ZIM_INLINE Lane<Zim32s, N> roundHalfEvenSigned(Lane<Zim32f, N> a) {
  const auto t = a + select(a < 0.0F, Lane<Zim32f, N>(-0.5F), Lane<Zim32f, N>(0.5F));
  return tieToEven<true>(truncate(t), t);
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
