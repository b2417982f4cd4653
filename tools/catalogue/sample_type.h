// The sample types that names speak of.
#pragma once

#include <string_view>
#include <type_traits>

#include "zimcc.h"

namespace zim::catalogue {

enum class SampleType { u1, u8, s8, u16, s16, s32, f32, f64 };

struct SampleTraits {
  std::string_view name;  // as names spell it
  int bits;
};

inline constexpr SampleTraits kSampleTraits[] = {{"1u", 1},   {"8u", 8},   {"8s", 8},   {"16u", 16},
                                                 {"16s", 16}, {"32s", 32}, {"32f", 32}, {"64f", 64}};

constexpr std::string_view name(SampleType type) { return kSampleTraits[static_cast<int>(type)].name; }
constexpr int bits(SampleType type) { return kSampleTraits[static_cast<int>(type)].bits; }
constexpr bool isFloat(SampleType type) { return type == SampleType::f32 || type == SampleType::f64; }

// Calls visitor(std::type_identity<T>()) with the type that holds a sample; single bits come as bytes of eight.
template <class Visitor>
auto visit(SampleType type, Visitor&& visitor) {
  switch (type) {
    case SampleType::s8:
      return visitor(std::type_identity<Zim8s>());
    case SampleType::u16:
      return visitor(std::type_identity<Zim16u>());
    case SampleType::s16:
      return visitor(std::type_identity<Zim16s>());
    case SampleType::s32:
      return visitor(std::type_identity<Zim32s>());
    case SampleType::f32:
      return visitor(std::type_identity<Zim32f>());
    case SampleType::f64:
      return visitor(std::type_identity<Zim64f>());
    case SampleType::u1:
    case SampleType::u8:
      break;
  }
  return visitor(std::type_identity<Zim8u>());
}

}  // namespace zim::catalogue
