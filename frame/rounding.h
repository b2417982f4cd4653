// The two rounding steps that several families share: to nearest by truncation, ties to the even neighbour. They depend
// on no rounding mode of the processor.
#pragma once

#include "frame/lanes/convert.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// i, less one where it is odd and equals t: there t was a tie.
template <int N>
ZIM_INLINE Lane<Zim32s, N> tieToEven(Lane<Zim32s, N> i, Lane<Zim32f, N> t) {
  const auto tie = bitsAs<Zim32s>(toFloat(i) == t);
  return i - (i & tie & 1);
}

// Of a value that is not negative: a + 0.5, truncated. Negative values come out as zero or below.
template <int N>
ZIM_INLINE Lane<Zim32s, N> roundHalfEvenPositive(Lane<Zim32f, N> a) {
  const auto t = a + 0.5F;
  return tieToEven(truncate(t), t);
}

// In double, with the tie found in single precision: t need only lie within its rounding of an odd integer.
template <int N>
ZIM_INLINE Lane<Zim32s, N> roundHalfEvenPositive(Lane<Zim64f, N> a) {
  const auto t = a + 0.5;
  return tieToEven(truncate(t), narrow<Zim32f>(t));
}

// Of any value: away from zero by 0.5, truncated, ties back toward zero; that is, the magnitude rounded. The sum is
// meant in double and then narrowed to single, which a sum in single precision equals: in double it is exact but below
// 2^-30, and there no tie of single precision is near.
template <int N>
ZIM_INLINE Lane<Zim32s, N> roundHalfEvenSigned(Lane<Zim32f, N> a) {
  const auto rounded = roundHalfEvenPositive(magnitude(a));
  const auto sign = bitsAs<Zim32s>(a) >> 31;
  return (rounded ^ sign) - sign;
}

// Whether the processor rounds to the nearest even, as it does unless a program asks otherwise.
inline bool roundsToNearest() { return (_mm_getcsr() & _MM_ROUND_MASK) == _MM_ROUND_NEAREST; }

// The float that follows a half.
inline constexpr Zim32s kFirstAboveHalf = 0x3F000001;

// roundHalfEvenSigned by the processor's own conversion: only where roundsToNearest(), and below 2^23, beyond which
// both only leave the range of every sample. They differ in one magnitude, the first above a half, whose sum with 0.5
// rounds to 1 and so counts as a tie.
template <int N>
ZIM_INLINE Lane<Zim32s, N> roundHalfEvenSignedByProcessor(Lane<Zim32f, N> a) {
  return cleared(roundByProcessor(a), (bitsAs<Zim32s>(a) & 0x7FFFFFFF) == Lane<Zim32s, N>(kFirstAboveHalf));
}
// roundHalfEvenPositive likewise.
template <int N>
ZIM_INLINE Lane<Zim32s, N> roundHalfEvenPositiveByProcessor(Lane<Zim32f, N> a) {
  return cleared(roundByProcessor(a), bitsAs<Zim32s>(a) == Lane<Zim32s, N>(kFirstAboveHalf));
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
