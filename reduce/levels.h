// Levels: the values to which bit reduction snaps samples, evenly spread over the range of the source.
#pragma once

#include <type_traits>

#include "zimcc.h"

namespace zim {

// The largest value of a sample type in its range: of 16s, counted from black.
template <class T>
inline constexpr Zim32s kWhite = sizeof(T) == 4   ? 1
                                 : sizeof(T) == 2 ? 65535
                                                  : 255;

// Distance of neighbouring levels in values of the source, and levels a unit of them, for so many levels less one.
struct Levels {
  Zim32f step, scale;

  template <class From>
  static Levels of(Zim32f count) {
    if constexpr (std::is_same_v<From, Zim8u>) {
      return {(65280.0F / count) * 0.00390625F, count / 255.0F};
    } else if constexpr (std::is_same_v<From, Zim32f>) {
      return {1.0F / count, count};
    } else {
      return {65535.0F / count, count / 65535.0F};
    }
  }
};

// From bytes to bytes a level is known by its index; its sample is (index * byteStep) >> 8, of which the low 8 bits are
// stored. It may miss 255: 100 steps of 652 end at 254.
inline Zim32s byteStep(Zim32f count) { return static_cast<Zim32s>(static_cast<double>(65280.0F / count) + 9e-6); }

}  // namespace zim
