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

// The entry of a table of 16 at the lowest four bits of each index.
template <int N>
ZIM_INLINE Lane<Zim64f, N> lookUp(const std::array<Zim64f, 16>& table, Lane<std::uint64_t, N> index) {
  using Result = Lane<Zim64f, N>;
  if constexpr (Result::form == Form::single) {
    return Result(table[index.v & 15]);
  } else if constexpr (Result::form == Form::split) {
    return Result::join(lookUp(table, index.v.lo), lookUp(table, index.v.hi));
  } else {
#if defined(__AVX512BW__)
    return Result::of((typename Result::Value)_mm512_permutex2var_pd(_mm512_loadu_pd(table.data()), (Register)index.v,
                                                                     _mm512_loadu_pd(table.data() + 8)));
#else
    typename Result::Value entries{};
    for (int k = 0; k < N; ++k) entries[k] = table[index.v[k] & 15];
    return Result::of(entries);
#endif
  }
}

// ---- Tables of all bytes ----

// Where the processor shuffles bytes, a register takes fewer steps than its lanes take loads. Shuffles look up sixteen
// entries, and give zero where the index has its highest bit. Each half of the table is taken in eight steps, every
// step with an index that is less by sixteen: the differences of the steps whose index has not become negative add up,
// by exclusive or, to the entry.
class ByteMapping {
 public:
  using Sixteen = std::array<Zim8s, 16>;

  constexpr explicit ByteMapping(const std::array<Zim8u, 256>& table) : entries_(table) {
    for (std::size_t i = 0; i < 256; ++i) {
      steps_[i / 16][i % 16] = static_cast<Zim8s>(i % 128 < 16 ? table[i] : table[i] ^ table[i - 16]);
    }
  }

  Zim8u operator[](std::size_t i) const { return entries_[i]; }
  const Sixteen& step(std::size_t i) const { return steps_[i]; }

 private:
  std::array<Zim8u, 256> entries_;
  std::array<Sixteen, 16> steps_{};
};

#if defined(__AVX2__)
template <int N>
ZIM_INLINE Lane<Zim8u, N> lookUp(const ByteMapping& table, Lane<Zim8u, N> index) {
  using Result = Lane<Zim8u, N>;
  if constexpr (Result::form == Form::single) {
    return Result(table[index.v]);
  } else if constexpr (Result::form == Form::split) {
    return Result::join(lookUp(table, index.v.lo), lookUp(table, index.v.hi));
  } else {
    const auto half = [&](std::size_t first, Result left) ZIM_LAMBDA {
      Result entry = 0;
      forChannels<8>([&](auto i) ZIM_LAMBDA {
        const auto step = inEveryPart(table.step(first + i));
        entry = entry ^ Result::of((typename Result::Value)ZIM_MM(shuffle_epi8)(step, (Register)left.v));
        left = left - Zim8u{16};
      });
      return entry;
    };
    return select(bitsAs<Zim8s>(index) < Zim8s{0}, half(8, index ^ Zim8u{128}), half(0, index));
  }
}

// As the kernel of a conversion.
struct MapBytes {
  using Sample = Zim8u;
  const ByteMapping& mapping;

  template <int N, std::size_t Channels>
  ZIM_INLINE Pixels<Zim8u, N, Channels> operator()(const Pixels<Zim8u, N, Channels>& pixels) const {
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return lookUp(mapping, pixels[c]); });
  }
};
#endif

// The entries at a number of bytes. Where it is one by one, two are stored at a time, since stores are what that waits
// for.
inline void mapBytes(const ByteMapping& mapping, const std::byte* from, std::byte* to, std::ptrdiff_t count) {
  const auto entry = [&](std::ptrdiff_t i) ZIM_LAMBDA { return mapping[static_cast<std::size_t>(from[i])]; };
  std::ptrdiff_t i = 0;
#if defined(__AVX2__)
  for (; i <= count - kRegisterBytes; i += kRegisterBytes) {
    using Bytes = Lane<Zim8u, kRegisterBytes>;
    const auto bytes = lookUp(mapping, Bytes::of((typename Bytes::Value)loadRegister(from + i)));
    storeRegister(to + i, (Register)bytes.v);
  }
#endif
  for (; i <= count - 2; i += 2) {
    const auto both = static_cast<Zim16u>(entry(i) | entry(i + 1) << 8);
    std::memcpy(to + i, &both, sizeof(both));
  }
  if (i < count) to[i] = static_cast<std::byte>(entry(i));
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
