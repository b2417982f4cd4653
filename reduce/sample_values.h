// Samples as values, which count from black, and back.
#pragma once

#include "frame/lanes/convert.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// The value of a source sample: 0..255 or 0..65535, from black on, and floats as they are.
template <int N>
ZIM_INLINE Lane<Zim32f, N> valueOf(Lane<Zim8u, N> sample) {
  return convert<Zim32f>(widenTowards<Zim32f>(sample));
}
template <int N>
ZIM_INLINE Lane<Zim32f, N> valueOf(Lane<Zim16u, N> sample) {
  return convert<Zim32f>(sample);
}
template <int N>
ZIM_INLINE Lane<Zim32f, N> valueOf(Lane<Zim16s, N> sample) {
  return valueOf(bitsAs<Zim16u>(sample ^ Zim16s{-32768}));
}
template <int N>
ZIM_INLINE Lane<Zim32f, N> valueOf(Lane<Zim32f, N> sample) {
  return sample;
}

// A sample counted from black, as its type has it.
template <class To, int N>
ZIM_INLINE Lane<To, N> fromBlack(Lane<std::make_unsigned_t<To>, N> value) {
  if constexpr (std::is_same_v<To, Zim16s>) {
    return bitsAs<Zim16s>(value) ^ Zim16s { -32768 };
  } else {
    return value;
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
