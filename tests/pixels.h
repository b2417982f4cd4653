// Pixels as their channels, whatever the layout in which an export takes or gives them, and what an export makes of
// them against a formula.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "tools/catalogue/caller.h"

namespace zim::test {

template <class T>
using Pixel = std::array<T, 3>;

inline const catalogue::Export& exportOf(const char* name) {
  const catalogue::Export* e = catalogue::find(name);
  if (e == nullptr) throw std::runtime_error(name);
  return *e;
}

// The samples of an image that has one of each channel for every pixel, in one plane or in several.
template <class T>
class Samples {
 public:
  using Image = std::conditional_t<std::is_const_v<T>, const catalogue::Image, catalogue::Image>;

  explicit Samples(Image& image) : image_(image), channels_(image.planes() > 1 ? 1 : image.side().planes[0].samples) {}

  T& operator()(int x, int y, std::size_t channel) const {
    const bool planar = image_.planes() > 1;
    const auto first = static_cast<std::size_t>(x) * static_cast<std::size_t>(channels_);
    return reinterpret_cast<T*>(image_.row(planar ? channel : 0, y))[planar ? first : first + channel];
  }

 private:
  Image& image_;
  int channels_;
};

inline void expectEqual(const catalogue::Image& image, const catalogue::Image& expected) {
  for (std::size_t plane = 0; plane < image.planes(); ++plane) {
    for (int y = 0; y < image.rows(plane); ++y) {
      const auto* row = image.row(plane, y);
      const auto [actual, wanted] = std::mismatch(row, row + image.rowBytes(plane), expected.row(plane, y));
      ASSERT_EQ(actual, row + image.rowBytes(plane))
          << image.size().width << " x " << image.size().height << ", plane " << plane << ", row " << y << ", byte "
          << actual - row << ": " << std::to_integer<int>(*actual) << ", not " << std::to_integer<int>(*wanted);
    }
  }
}

// Any NaN is like any other.
template <class T>
bool isSame(T a, T b) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  }
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

// What the processor makes of a number that may not fit.
template <class F>
Zim32s truncated(F x) {
  const auto wide = static_cast<Zim64f>(x);
  return wide > -2147483649.0 && wide < 2147483648.0 ? static_cast<Zim32s>(wide) : std::numeric_limits<Zim32s>::min();
}

// All pixels of bytes.
inline const std::vector<Pixel<Zim8u>>& allBytes() {
  static const auto pixels = [] {
    std::vector<Pixel<Zim8u>> all(1 << 24);
    for (std::size_t i = 0; i < all.size(); ++i) {
      all[i] = {static_cast<Zim8u>(i >> 16), static_cast<Zim8u>(i >> 8), static_cast<Zim8u>(i)};
    }
    return all;
  }();
  return pixels;
}

// Random pixels, bright and dark, in which one sample of four repeats the one before, and one of eight is an end of the
// range, a part of it, or next to one.
template <class T>
std::vector<Pixel<T>> manyPixels() {
  std::mt19937 random(1);
  std::vector<Pixel<T>> pixels(1 << 20);
  T before = 0;
  for (Pixel<T>& pixel : pixels) {
    const auto dimming = random() % 12;
    for (T& sample : pixel) {
      const auto draw = static_cast<Zim32u>(random()), choice = static_cast<Zim32u>(random() % 8);
      using Limits = std::numeric_limits<T>;
      if constexpr (std::is_floating_point_v<T>) {
        constexpr T e = Limits::epsilon(), inf = Limits::infinity(), nan = Limits::quiet_NaN();
        constexpr T special[] = {0,     -0.0F,    1,        0.5F,   0.5F + e, 2,      e,   2 * e, -e,
                                 1 - e, 1 / 3.0F, 2 / 3.0F, 1e-40F, 1e30F,    -1e30F, inf, -inf,  nan};
        sample =
            choice == 2 ? special[draw % std::size(special)] : static_cast<T>(static_cast<Zim32s>(draw)) * 0x1p-30F;
      } else {
        constexpr int special[] = {0, 1, 2, 21845, 32767, 32768, 43690, 65534, 65535};
        const auto fromLeast =
            choice == 2 ? special[draw % std::size(special)] : static_cast<int>(draw >> 16 >> dimming);
        sample = static_cast<T>(Limits::min() + fromLeast);
      }
      if (choice < 2) sample = before;
      before = sample;
    }
  }
  return pixels;
}

// What an export makes of pixels, in 256 rows of them, is what the formula makes of each.
template <class S, class D, class Formula>
void expectFormula(const char* name, const std::vector<Pixel<S>>& pixels, const Formula& formula) {
  const catalogue::Export& e = exportOf(name);
  const ZimiSize size = {static_cast<Zim32s>(pixels.size() / 256), 256};
  catalogue::Image source(e.source, size), destination(e.destination, size);
  const Samples<S> from(source);
  const Samples<D> to(destination);
  const auto column = [&](std::size_t i) { return static_cast<int>(i) % size.width; };
  const auto row = [&](std::size_t i) { return static_cast<int>(i) / size.width; };
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    for (std::size_t c = 0; c < 3; ++c) from(column(i), row(i), c) = pixels[i][c];
  }
  ASSERT_EQ(catalogue::Caller(e)(catalogue::Operands(e, source, destination)), zimResultOk);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const Pixel<D> expected = formula(pixels[i]);
    for (std::size_t c = 0; c < 3; ++c) {
      const D sample = to(column(i), row(i), c);
      if (isSame(sample, expected[c])) continue;
      FAIL() << std::hexfloat << name << " of " << +pixels[i][0] << ' ' << +pixels[i][1] << ' ' << +pixels[i][2]
             << ": channel " << c << " is " << +sample << ", not " << +expected[c];
    }
  }
}

}  // namespace zim::test
