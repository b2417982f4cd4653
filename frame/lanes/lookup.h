// Tables, looked up by each lane.
#pragma once

#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// The entries at these places, each of which has to be one of the table's.
template <std::size_t Size, int N>
ZIM_INLINE Lane<Zim32s, N> lookUp(const std::array<Zim32s, Size>& table, Lane<Zim32s, N> index) {
  using Result = Lane<Zim32s, N>;
  if constexpr (Result::form == Form::single) {
    return Result(table[static_cast<std::size_t>(index.v)]);
  } else if constexpr (Result::form == Form::split) {
    return Result::join(lookUp(table, index.v.lo), lookUp(table, index.v.hi));
  } else {
#if defined(__AVX512BW__)
    return Result::of((typename Result::Value)_mm512_i32gather_epi32((Register)index.v, table.data(), 4));
#elif defined(__AVX2__)
    return Result::of((typename Result::Value)_mm256_i32gather_epi32(table.data(), (Register)index.v, 4));
#else
    const auto entry = [&](auto i) ZIM_LAMBDA { return table[static_cast<std::size_t>(index.v[i])]; };
    return Result::of((typename Result::Value)_mm_setr_epi32(entry(0), entry(1), entry(2), entry(3)));
#endif
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
