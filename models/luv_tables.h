// Lightness by luminance for 8-bit samples, made by the compiler.
#pragma once

#include <array>
#include <cstddef>

#include "zimcc.h"

namespace zim {

// The cube root of a number from 0 to 1, by Newton's rule from above: each step comes nearer until none does.
constexpr double constantCubeRoot(double x) {
  double root = 1;
  for (;;) {
    const double next = root - (root - x / (root * root)) / 3;
    if (!(next < root)) return root;
    root = next;
  }
}

// CIE lightness 0 to 100 of a luminance 0 to 1.
constexpr double lightnessOf(double luminance) {
  return luminance > 0.008856 ? 116 * constantCubeRoot(luminance) - 16 : 903.3 * luminance;
}

// Lightness on the scale 0 to 255 of a luminance on the same scale: below 32 in quarters, where lightness rises
// steeply, then in whole steps. Quarters give four times the lightness first, rounded, and that is rounded once more.
struct LightnessTable {
  static constexpr Zim32s firstWhole = 32;
  static constexpr Zim32s quarters = 4 * firstWhole - 1;    // a luminance that is just below 31.5 rounds to 126
  static constexpr Zim32s wholeAt = quarters - firstWhole;  // offset of whole steps

  std::array<Zim32s, 256 + wholeAt> entries{};

  constexpr LightnessTable() {
    for (Zim32s i = 0; i < 256; ++i) {
      if (i < quarters) {
        entries[static_cast<std::size_t>(i)] = (static_cast<Zim32s>(lightnessOf(i / 1020.0) * 10.2 + 0.5) + 2) >> 2;
      }
      if (i >= firstWhole) {
        entries[static_cast<std::size_t>(i + wholeAt)] = static_cast<Zim32s>(lightnessOf(i / 255.0) * 2.55 + 0.5);
      }
    }
  }
};
inline constexpr LightnessTable kLightness8u;

}  // namespace zim
