// Tables, looked up by each lane.
#pragma once

#include <algorithm>

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
#else
    // Loads take less time than a gather of eight, as measured on an Ice Lake.
    typename Result::Value entries{};
    for (int k = 0; k < N; ++k) entries[k] = table[static_cast<std::size_t>(index.v[k])];
    return Result::of(entries);
#endif
  }
}

// The entry of a table of 16 at the lowest four bits of each index.
template <int N>
ZIM_INLINE Lane<Zim64f, N> lookUpLowBits(const std::array<Zim64f, 16>& table, Lane<std::uint64_t, N> index) {
  using Result = Lane<Zim64f, N>;
  if constexpr (Result::form == Form::single) {
    return Result(table[index.v & 15]);
  } else if constexpr (Result::form == Form::split) {
    return Result::join(lookUpLowBits(table, index.v.lo), lookUpLowBits(table, index.v.hi));
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

// The entry of a table of 32 at the lowest five bits of each index.
template <class T, int N>
requires(sizeof(T) == 4) ZIM_INLINE Lane<T, N> lookUpLowBits(const std::array<T, 32>& table, Lane<Zim32s, N> index) {
  using Result = Lane<T, N>;
  if constexpr (Result::form == Form::single) {
    return Result(table[static_cast<std::size_t>(index.v & 31)]);
  } else if constexpr (Result::form == Form::split) {
    return Result::join(lookUpLowBits(table, index.v.lo), lookUpLowBits(table, index.v.hi));
  } else {
#if defined(__AVX512BW__)
    return Result::of((typename Result::Value)_mm512_permutex2var_epi32(
        _mm512_loadu_si512(table.data()), (Register)index.v, _mm512_loadu_si512(table.data() + 16)));
#else
    typename Result::Value entries{};
    for (int k = 0; k < N; ++k) entries[k] = table[static_cast<std::size_t>(index.v[k] & 31)];
    return Result::of(entries);
#endif
  }
}

// ---- Tables of all bytes ----

// Where the processor shuffles bytes, a register takes fewer steps than its lanes take loads. A shuffle looks up
// sixteen entries. In most sixteenths of a smooth curve the entries lie along a line,
//     first + ((slope * place + fraction) >> kShift)
// whose terms depend on the sixteenth; the others have their entries looked up by the place.
class ByteMapping {
 public:
  using Sixteen = std::array<Zim8s, 16>;
  static constexpr int kShift = 6;

  Sixteen slopes{}, fractions{}, firsts{};
  std::array<std::uint8_t, 16> others{};  // the sixteenths without a line
  std::size_t countOfOthers = 0;
  std::array<Sixteen, 16> entriesOfOther{};

  constexpr explicit ByteMapping(const std::array<Zim8u, 256>& table) : entries_(table) {
    for (std::size_t sixteenth = 0; sixteenth < 16; ++sixteenth) {
      if (findLine(sixteenth)) continue;
      for (std::size_t place = 0; place < 16; ++place) {
        entriesOfOther[countOfOthers][place] = static_cast<Zim8s>(entries_[16 * sixteenth + place]);
      }
      others[countOfOthers++] = static_cast<std::uint8_t>(sixteenth);
    }
  }

  constexpr Zim8u operator[](std::size_t i) const { return entries_[i]; }

 private:
  constexpr bool findLine(std::size_t sixteenth) {
    for (int slope = 0; slope < 128; ++slope) {
      int least = 0, most = 256 << kShift;
      for (int place = 0; place < 16; ++place) {
        const int entry = entries_[16 * sixteenth + static_cast<std::size_t>(place)] << kShift;
        least = std::max(least, entry - slope * place);
        most = std::min(most, entry + (1 << kShift) - 1 - slope * place);
      }
      if (least > most) continue;
      slopes[sixteenth] = static_cast<Zim8s>(slope);
      fractions[sixteenth] = static_cast<Zim8s>(least % (1 << kShift));
      firsts[sixteenth] = static_cast<Zim8s>(least >> kShift);
      return true;
    }
    return false;
  }

  std::array<Zim8u, 256> entries_;
};

#if defined(__AVX2__)
template <const ByteMapping& mapping, int N>
ZIM_INLINE Lane<Zim8u, N> lookUp(Lane<Zim8u, N> index) {
  using Result = Lane<Zim8u, N>;
  if constexpr (Result::form == Form::single) {
    return Result(mapping[index.v]);
  } else if constexpr (Result::form == Form::split) {
    return Result::join(lookUp<mapping>(index.v.lo), lookUp<mapping>(index.v.hi));
  } else {
    const auto entryOf = [](const ByteMapping::Sixteen& table, Register at)
                             ZIM_LAMBDA { return ZIM_MM(shuffle_epi8)(inEveryPart(table), at); };
    const auto bits = (Register)index.v, lowFour = ZIM_MM(set1_epi8)(15);
    const Register place = bits & lowFour, sixteenth = ZIM_MM(srli_epi16)(bits, 4) & lowFour;
    const Register slope = entryOf(mapping.slopes, sixteenth), fraction = entryOf(mapping.fractions, sixteenth);
    const Register one = ZIM_MM(set1_epi8)(1);
    const auto above = [](Register placeAndOne, Register slopeAndFraction) ZIM_LAMBDA {
      return ZIM_MM(srli_epi16)(ZIM_MM(maddubs_epi16)(placeAndOne, slopeAndFraction), ByteMapping::kShift);
    };
    const Register aboveFirst = ZIM_MM(packus_epi16)(above(unpackLow<1>(place, one), unpackLow<1>(slope, fraction)),
                                                     above(unpackHigh<1>(place, one), unpackHigh<1>(slope, fraction)));
    Register entry = ZIM_MM(add_epi8)(aboveFirst, entryOf(mapping.firsts, sixteenth));
    forChannels<mapping.countOfOthers>([&](auto i) ZIM_LAMBDA {
      // Shuffles give zero where the index has its highest bit, here in all sixteenths but this.
      const Register fromStart = ZIM_MM(sub_epi8)(bits, ZIM_MM(set1_epi8)(static_cast<char>(16 * mapping.others[i])));
      entry |= entryOf(mapping.entriesOfOther[i], ZIM_MM(adds_epu8)(fromStart, ZIM_MM(set1_epi8)(0x70)));
    });
    return Result::of((typename Result::Value)entry);
  }
}

// As the kernel of a conversion.
template <const ByteMapping& mapping>
struct MapBytes {
  using Sample = Zim8u;

  template <int N, std::size_t Channels>
  ZIM_INLINE Pixels<Zim8u, N, Channels> operator()(const Pixels<Zim8u, N, Channels>& pixels) const {
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return lookUp<mapping>(pixels[c]); });
  }
};

// The entries at a number of bytes.
template <const ByteMapping& mapping>
inline void mapBytes(const std::byte* from, std::byte* to, std::ptrdiff_t count) {
  using Bytes = Lane<Zim8u, kRegisterBytes>;
  std::ptrdiff_t i = 0;
  for (; i <= count - kRegisterBytes; i += kRegisterBytes) {
    const auto bytes = lookUp<mapping>(Bytes::of((typename Bytes::Value)loadRegister(from + i)));
    storeRegister(to + i, (Register)bytes.v);
  }
  for (; i < count; ++i) to[i] = static_cast<std::byte>(mapping[static_cast<std::size_t>(from[i])]);
}
#endif

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
