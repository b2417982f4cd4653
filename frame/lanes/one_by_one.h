// Lanes one by one, where a few of them need what only a plain function can do.
#pragma once

#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

template <class T, int N>
ZIM_INLINE std::array<T, N> asArray(Lane<T, N> lanes) {
  std::array<T, N> values;
  store<T, N, 1>(reinterpret_cast<std::byte*>(values.data()), {lanes});
  return values;
}
template <class T, std::size_t N>
ZIM_INLINE Lane<T, static_cast<int>(N)> fromArray(const std::array<T, N>& values) {
  return load<T, static_cast<int>(N), 1>(reinterpret_cast<const std::byte*>(values.data()))[0];
}

// The lanes of result, but function(x) where the mask is set.
template <class T, int N, class Function>
[[gnu::noinline]] Lane<T, N> oneByOne(Lane<T, N> result, Lane<Zim32s, N> mask, Lane<T, N> x, const Function& function) {
  auto results = asArray(result);
  const auto isSet = asArray(mask);
  const auto arguments = asArray(x);
  for (std::size_t k = 0; k < N; ++k) {
    if (isSet[k] != 0) results[k] = function(arguments[k]);
  }
  return fromArray(results);
}

// The pixels of result, but what the kernel makes of single ones where the mask is set.
template <class Kernel, class Result, class Sample, int N, std::size_t Out, std::size_t In>
[[gnu::noinline]] Pixels<Result, N, Out> pixelsOneByOne(const Kernel& kernel, const Pixels<Result, N, Out>& result,
                                                        Lane<Zim32s, N> mask, const Pixels<Sample, N, In>& pixels) {
  auto results = perChannel<Out>([&](auto c) { return asArray(result[c]); });
  const auto isSet = asArray(mask);
  const auto arguments = perChannel<In>([&](auto c) { return asArray(pixels[c]); });
  for (std::size_t k = 0; k < N; ++k) {
    if (isSet[k] == 0) continue;
    const auto one = kernel(perChannel<In>([&](auto c) { return Lane<Sample, 1>(arguments[c][k]); }));
    for (std::size_t c = 0; c < Out; ++c) results[c][k] = one[c].v;
  }
  return perChannel<Out>([&](auto c) { return fromArray(results[c]); });
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
