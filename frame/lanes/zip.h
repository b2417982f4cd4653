// Two lanes of samples alternating in one of twice as many, and back: what interleaved channels do in memory, within
// registers. The order of lanes stays that of memory (memory.h).
#pragma once

#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// a[0], b[0], a[1], b[1], ...
template <class T, int N>
ZIM_INLINE Lane<T, 2 * N> zip(Lane<T, N> a, Lane<T, N> b) {
  using Result = Lane<T, 2 * N>;
  if constexpr (Lane<T, N>::form == Form::split) {
    return Result::join(zip(a.v.lo, b.v.lo), zip(a.v.hi, b.v.hi));
  } else {
    static_assert(Lane<T, N>::form == Form::whole);
    using Value = typename Lane<T, N>::Value;
    const auto [lo, hi] = interleave<sizeof(T)>(Registers<2>{(Register)a.v, (Register)b.v});
    return Result::join(Lane<T, N>::of((Value)lo), Lane<T, N>::of((Value)hi));
  }
}

// The even lanes and the odd ones.
template <class T, int N>
ZIM_INLINE Pixels<T, N / 2, 2> unzip(Lane<T, N> a) {
  static_assert(Lane<T, N>::form == Form::split);
  using Half = Lane<T, N / 2>;
  if constexpr (Half::form == Form::split) {
    const auto lo = unzip(a.v.lo), hi = unzip(a.v.hi);
    return {Half::join(lo[0], hi[0]), Half::join(lo[1], hi[1])};
  } else {
    using Value = typename Half::Value;
    const auto [even, odd] = deinterleave<sizeof(T)>(Registers<2>{(Register)a.v.lo.v, (Register)a.v.hi.v});
    return {Half::of((Value)even), Half::of((Value)odd)};
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
