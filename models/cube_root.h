// Cube roots of lanes, with the bits of the C library's cbrtf.
#pragma once

#include <cmath>

#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

template <class T, int N>
ZIM_INLINE std::array<T, N> asArray(Lane<T, N> lanes) {
  std::array<T, N> values;
  store<T, N, 1>(reinterpret_cast<std::byte*>(values.data()), {lanes});
  return values;
}

// cbrtf of the lanes where the mask is set; the others have no meaning.
template <int N>
ZIM_INLINE Lane<Zim32f, N> cubeRoot(Lane<Zim32f, N> x, Lane<Zim32s, N> wanted) {
  if constexpr (N == 1) {
    return wanted.v != 0 ? Lane<Zim32f, N>(std::cbrt(x.v)) : x;
  } else {
    auto values = asArray(x);
    const auto mask = asArray(wanted);
    for (std::size_t k = 0; k < N; ++k) {
      if (mask[k] != 0) values[k] = std::cbrt(values[k]);
    }
    return load<Zim32f, N, 1>(reinterpret_cast<const std::byte*>(values.data()))[0];
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
