// Quotients of integers by constants, without a division.
#pragma once

#include <bit>

#include "frame/lanes/lane.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// a * numerator / denominator of integers from lowest to highest, as multiplication and division round it in single
// precision. It is a product with the quotient in two parts, of which the first leaves its product exact, where that
// gives the same for every such integer, as the compiler finds out.
template <int numerator, int denominator, int lowest, int highest>
class IntegerQuotient {
  static constexpr double exact = static_cast<double>(numerator) / denominator;
  // So many bits as products with the integers leave of a float.
  static constexpr Zim32u firstBits = highest - lowest < 256 ? 0xFFFFFF00 : 0xFFFF0000;
  static constexpr auto first = std::bit_cast<Zim32f>(std::bit_cast<Zim32u>(static_cast<Zim32f>(exact)) & firstBits);
  static constexpr auto rest = static_cast<Zim32f>(exact - double{first});

  template <class Floats>
  ZIM_INLINE static constexpr Floats divided(Floats a) {
    if constexpr (numerator == 1) {
      return a / static_cast<Zim32f>(denominator);
    } else {
      return a * static_cast<Zim32f>(numerator) / static_cast<Zim32f>(denominator);
    }
  }

  static constexpr bool isProduct = [] {
    for (int a = lowest; a <= highest; ++a) {
      const auto x = static_cast<Zim32f>(a);
      if (x * first + x * rest != divided(x)) return false;
    }
    return true;
  }();

 public:
  template <class Floats>
  ZIM_INLINE static constexpr Floats of(Floats a) {
    if constexpr (isProduct) {
      return a * first + a * rest;
    } else {
      return divided(a);
    }
  }
};

// Of samples without sign, from 0 to full.
template <int numerator, int full, class Floats>
ZIM_INLINE constexpr Floats shareOf(Floats a) {
  return IntegerQuotient<numerator, full, 0, full>::of(a);
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
