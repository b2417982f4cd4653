// XYZ, PhotoYCC, HLS and HSV against their formulas, one pixel at a time with branches: all 2^24 pixels of bytes, and
// many of words and floats.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <type_traits>
#include <vector>

#include "zimcc.h"

namespace {

template <class T>
using Pixel = std::array<T, 3>;
template <class T>
using Interleaved = ZimResult (*)(const T*, Zim32s, T*, Zim32s, ZimiSize);

// ---- Pixels -------------------------------------------------------------------------------------------------------

const std::vector<Pixel<Zim8u>>& allBytes() {
  static const auto pixels = [] {
    std::vector<Pixel<Zim8u>> all(1 << 24);
    for (std::size_t i = 0; i < all.size(); ++i) {
      all[i] = {static_cast<Zim8u>(i >> 16), static_cast<Zim8u>(i >> 8), static_cast<Zim8u>(i)};
    }
    return all;
  }();
  return pixels;
}

// Random samples, of which one in four repeats the one before, and one in eight is one of these.
template <class T, std::size_t Count>
std::vector<Pixel<T>> somePixels(const T (&special)[Count]) {
  std::vector<Pixel<T>> pixels(1 << 19);
  Zim32u state = 1;
  T before = 0;
  for (Pixel<T>& pixel : pixels) {
    for (T& sample : pixel) {
      state = state * 1664525U + 1013904223U;
      const Zim32u choice = (state >> 8) % 8;
      if constexpr (std::is_floating_point_v<T>) {
        sample = static_cast<T>(static_cast<Zim32s>(state)) * 0x1p-30F;
      } else {
        sample = static_cast<T>(state >> 16);
      }
      if (choice < 2) sample = before;
      if (choice == 2) sample = special[(state >> 16) % Count];
      before = sample;
    }
  }
  return pixels;
}

template <class T>
std::vector<Pixel<T>> manyPixels() {
  using Limits = std::numeric_limits<T>;
  if constexpr (std::is_floating_point_v<T>) {
    constexpr T e = Limits::epsilon();
    return somePixels<T>({0, -0.0F, 1, 0.5F, 0.5F + e, 2, e, 2 * e, -e, 1 - e, 1 / 3.0F, 2 / 3.0F, 1e-40F, 1e30F,
                          -1e30F, Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()});
  } else {
    constexpr int low = Limits::min();
    return somePixels<T>(
        {low, low + 1, low + 2, low + 21845, low + 32767, low + 32768, low + 43690, Limits::max() - 1, Limits::max()});
  }
}

// ---- Comparison ---------------------------------------------------------------------------------------------------

template <class T>
bool isSame(T a, T b) {
  if constexpr (std::is_floating_point_v<T>) {
    return std::isnan(a) ? std::isnan(b) : std::bit_cast<Zim32u>(a) == std::bit_cast<Zim32u>(b);
  } else {
    return a == b;
  }
}

template <class T, class Formula>
void expectFormula(Interleaved<T> convert, const std::vector<Pixel<T>>& pixels, const Formula& formula) {
  std::vector<Pixel<T>> results(pixels.size());
  const auto width = static_cast<Zim32s>(pixels.size() / 256), step = static_cast<Zim32s>(sizeof(Pixel<T>)) * width;
  ASSERT_EQ(convert(pixels[0].data(), step, results[0].data(), step, {width, 256}), zimResultOk);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const Pixel<T> expected = formula(pixels[i]);
    for (std::size_t c = 0; c < 3; ++c) {
      ASSERT_TRUE(isSame(results[i][c], expected[c]))
          << +pixels[i][0] << ' ' << +pixels[i][1] << ' ' << +pixels[i][2] << ": channel " << c << " is "
          << +results[i][c] << ", not " << +expected[c];
    }
  }
}

// A formula on integers that count from 0, for the samples of T.
template <class T, class Formula>
auto onSamples(const Formula& formula) {
  return [=](const Pixel<T>& pixel) {
    constexpr int low = std::numeric_limits<T>::min();
    const Pixel<int> result = formula(pixel[0] - low, pixel[1] - low, pixel[2] - low);
    return Pixel<T>{static_cast<T>(result[0] + low), static_cast<T>(result[1] + low), static_cast<T>(result[2] + low)};
  };
}

template <class Formula>
void expectOnBytes(Interleaved<Zim8u> convert, const Formula& formula) {
  expectFormula<Zim8u>(convert, allBytes(), onSamples<Zim8u>(formula));
}
template <class T, class Formula>
void expectOnWords(Interleaved<T> convert, const Formula& formula) {
  expectFormula<T>(convert, manyPixels<T>(), onSamples<T>(formula));
}
template <class Formula>
void expectOnFloats(Interleaved<Zim32f> convert, const Formula& formula) {
  expectFormula<Zim32f>(convert, manyPixels<Zim32f>(),
                        [&](const Pixel<Zim32f>& p) { return formula(p[0], p[1], p[2]); });
}

int byte(int x) { return std::clamp(x, 0, 255); }
template <class Float>
int word(Float x) {
  return std::clamp(static_cast<int>(x), 0, 65535);
}
float unit(float x) { return x < 0 ? 0 : x > 1 ? 1 : x; }

// ---- XYZ ----------------------------------------------------------------------------------------------------------

TEST(Xyz, Bytes) {
  expectOnBytes(zimiRGBToXYZ_8u_C3R, [](int r, int g, int b) {
    return Pixel<int>{(27030 * r + 23434 * g + 11824 * b) >> 16, (13937 * r + 46868 * g + 4729 * b) >> 16,
                      byte((1267 * r + 7811 * g + 62274 * b) >> 16)};
  });
  expectOnBytes(zimiXYZToRGB_8u_C3R, [](int x, int y, int z) {
    return Pixel<int>{byte((212368 * x - 100738 * y - 32671 * z) >> 16),
                      byte((-63521 * x + 122944 * y + 2723 * z) >> 16), byte((3646 * x - 13372 * y + 69291 * z) >> 16)};
  });
}

using Row = float[3];
constexpr Row kX = {0.412453F, 0.35758F, 0.180423F}, kY = {0.212671F, 0.71516F, 0.072169F},
              kZ = {0.019334F, 0.119193F, 0.950227F};
constexpr Row kR = {3.240479F, -1.53715F, -0.498535F}, kG = {-0.969256F, 1.875991F, 0.041556F},
              kB = {0.055648F, -0.204043F, 1.057311F};

float rounded(const Row& m, int a, int b, int c) {
  float sum = m[0] * static_cast<float>(a);
  sum += 0.5F;
  sum += m[1] * static_cast<float>(b);
  return sum + m[2] * static_cast<float>(c);
}
float sum(const Row& m, float a, float b, float c) { return (m[0] * a + m[1] * b) + m[2] * c; }

TEST(Xyz, Words) {
  const auto forward = [](int r, int g, int b) {
    return Pixel<int>{static_cast<int>(rounded(kX, r, g, b)), static_cast<int>(rounded(kY, r, g, b)),
                      word(rounded(kZ, r, g, b))};
  };
  const auto inverse = [](int x, int y, int z) {
    return Pixel<int>{word(rounded(kR, x, y, z)), word(rounded(kG, x, y, z)), word(rounded(kB, x, y, z))};
  };
  // Blue of words without sign ends in double.
  const auto inverseInDouble = [&](int x, int y, int z) {
    const float t = 0.055648F * static_cast<float>(x) - 0.204043F * static_cast<float>(y);
    return Pixel<int>{inverse(x, y, z)[0], inverse(x, y, z)[1], word((double{t} + 0.5) + double(z) * 1.057311)};
  };
  expectOnWords<Zim16u>(zimiRGBToXYZ_16u_C3R, forward);
  expectOnWords<Zim16s>(zimiRGBToXYZ_16s_C3R, forward);
  expectOnWords<Zim16u>(zimiXYZToRGB_16u_C3R, inverseInDouble);
  expectOnWords<Zim16s>(zimiXYZToRGB_16s_C3R, inverse);
}

TEST(Xyz, Floats) {
  expectOnFloats(zimiRGBToXYZ_32f_C3R, [](float r, float g, float b) {
    return Pixel<float>{sum(kX, r, g, b), sum(kY, r, g, b), unit(sum(kZ, r, g, b))};
  });
  expectOnFloats(zimiXYZToRGB_32f_C3R, [](float x, float y, float z) {
    return Pixel<float>{unit(sum(kR, x, y, z)), unit(sum(kG, x, y, z)), unit(sum(kB, x, y, z))};
  });
}

// ---- PhotoYCC -----------------------------------------------------------------------------------------------------

TEST(PhotoYcc, Bytes) {
  expectOnBytes(zimiRGBToYCC_8u_C3R, [](int r, int g, int b) {
    const int v = r * 4898 + g * 9617 + b * 1867;
    return Pixel<int>{((v >> 10) * 2921) >> 16, (((((b << 14) - v) >> 10) * 1789) >> 16) + 156,
                      (((((r << 14) - v) >> 10) * 2178) >> 16) + 137};
  });
  expectOnBytes(zimiYCCToRGB_8u_C3R, [](int y, int u, int v) {
    const int a = y * 5564, c1 = u * 9084 - 1417104, c2 = v * 7460 - 1022020;
    return Pixel<int>{byte((a + c2) >> 12), byte((a * 16 + (c1 >> 8) * -794 + (c2 >> 8) * -2084) >> 16),
                      byte((a + c1) >> 12)};
  });
}

float lumaOf(float r, float g, float b) { return (0.299F * r + g * 0.587F) + 0.114F * b; }

TEST(PhotoYcc, Words) {
  expectOnWords<Zim16u>(zimiRGBToYCC_16u_C3R, [](int ir, int ig, int ib) {
    const auto r = static_cast<float>(ir), g = static_cast<float>(ig), b = static_cast<float>(ib);
    return Pixel<int>{static_cast<int>(((0.213267F * r + 0.5F) + 0.418688F * g) + 0.0813124F * b),
                      static_cast<int>(((-0.130621F * r + 40092.5F) - 0.256437F * g) + 0.387058F * b),
                      static_cast<int>(((r * 0.372876F + 35209.5F) - g * 0.312237F) - b * 0.0606389F)};
  });
  expectOnWords<Zim16s>(zimiRGBToYCC_16s_C3R, [](int ir, int ig, int ib) {
    const auto r = static_cast<float>(ir), b = static_cast<float>(ib), y = lumaOf(r, static_cast<float>(ig), b);
    return Pixel<int>{static_cast<int>(0.7132668F * y + 0.5F), static_cast<int>((b - y) * 0.4368627F + 40092.5F),
                      static_cast<int>((r - y) * 0.53192F + 35209.5F)};
  });
  const auto inverse = [](int y, int u, int v) {
    const float p = static_cast<float>(u - 40092) * 2.2179F, r = static_cast<float>(v - 35209) * 1.8215F;
    const float q = static_cast<float>(y) * 1.3584F + 0.5F;
    return Pixel<int>{word(q + r), word((q - 0.194F * p) - r * 0.509F), word(q + p)};
  };
  expectOnWords<Zim16u>(zimiYCCToRGB_16u_C3R, inverse);
  expectOnWords<Zim16s>(zimiYCCToRGB_16s_C3R, inverse);
}

TEST(PhotoYcc, Floats) {
  expectOnFloats(zimiRGBToYCC_32f_C3R, [](float r, float g, float b) {
    const float y = lumaOf(r, g, b);
    return Pixel<float>{0.7132668F * y, (b - y) * 0.4368627F + 0.6117647F, (r - y) * 0.53192F + 0.5372549F};
  });
  expectOnFloats(zimiYCCToRGB_32f_C3R, [](float y, float u, float v) {
    const float p = (u - 0.6117647F) * 2.2179F, r = (v - 0.5372549F) * 1.8215F, q = y * 1.3584F;
    return Pixel<float>{unit(q + r), unit((q - 0.194F * p) - r * 0.509F), unit(q + p)};
  });
}

// ---- HSV ----------------------------------------------------------------------------------------------------------

TEST(Hsv, FromRgb) {
  expectOnBytes(zimiRGBToHSV_8u_C3R, [](int r, int g, int b) {
    const int v = std::max({r, g, b}), difference = v - std::min({r, g, b});
    if (difference == 0) return Pixel<int>{0, 0, v};
    const auto d = static_cast<float>(difference);
    const float k = 1.0F / d, s = d / static_cast<float>(v);
    const float toR = static_cast<float>(v - r) * k, toG = static_cast<float>(v - g) * k,
                toB = static_cast<float>(v - b) * k;
    float h = 0;
    if (r == v) h = static_cast<float>(g - b) * k;
    if (g == v) h = (2.0F - toB) + toR;
    if (b == v) h = (toG + 4.0F) - toR;
    h = h * 255.0F / 6.0F;
    if (h < 0) h = 255.0F + h;
    return Pixel<int>{static_cast<int>(h + 0.5F), static_cast<int>(s * 255.0F + 0.5F), v};
  });
  expectOnWords<Zim16u>(zimiRGBToHSV_16u_C3R, [](int r, int g, int b) {
    const int v = std::max({r, g, b}), difference = v - std::min({r, g, b});
    if (difference == 0) return Pixel<int>{0, 0, v};
    const auto d = static_cast<float>(difference);
    const float k = 1.0F / d, s = d / static_cast<float>(v);
    const float toR = static_cast<float>(v - r) * k, toG = static_cast<float>(v - g) * k,
                toB = static_cast<float>(v - b) * k;
    float h = b == v ? (4.0F - toR) + toG : g == v ? (toR + 2.0F) - toB : toB - toG;
    if (h + 1.1920929e-7F < 0) h = h + 6.0F;
    return Pixel<int>{static_cast<int>(h * 65535.0F / 6.0F + 0.5F), static_cast<int>(s * 65535.0F + 0.5F), v};
  });
}

template <int full>
Pixel<int> rgbOfHsv(int hue, int saturation, int value) {
  const auto v = static_cast<float>(value), s = static_cast<float>(saturation) / full;
  const float x = hue == full ? 0 : static_cast<float>(hue) * 360.0F / full / 60.0F;
  const float i = std::floor(x), f = x - i;
  const float p = (1 - s) * v, q = (1 - s * f) * v, t = (1 - s * (1 - f)) * v;
  const Pixel<float> sextants[] = {{v, t, p}, {q, v, p}, {p, v, t}, {p, q, v}, {t, p, v}, {v, p, q}};
  const Pixel<float> rgb = saturation == 0 ? Pixel<float>{v, v, v} : sextants[static_cast<int>(i)];
  return {static_cast<int>(rgb[0] + 0.5F), static_cast<int>(rgb[1] + 0.5F), static_cast<int>(rgb[2] + 0.5F)};
}

TEST(Hsv, ToRgb) {
  expectOnBytes(zimiHSVToRGB_8u_C3R, rgbOfHsv<255>);
  expectOnWords<Zim16u>(zimiHSVToRGB_16u_C3R, rgbOfHsv<65535>);
}

// ---- HLS ----------------------------------------------------------------------------------------------------------

template <int full>
Pixel<int> hlsOfIntegers(int r, int g, int b) {
  const int largest = std::max({r, g, b}), smallest = std::min({r, g, b});
  const auto sum = static_cast<float>(largest + smallest), lightness = 0.5F * sum;
  float h = 0, s = 0;
  if (largest != smallest) {
    const auto delta = static_cast<float>(largest - smallest);
    s = full / 2.0F >= lightness ? delta / sum : delta / (2.0F * full - sum);
    h = r == largest   ? static_cast<float>(g - b) * 60.0F / delta
        : g == largest ? static_cast<float>(b - r) * 60.0F / delta + 120.0F
                       : static_cast<float>(r - g) * 60.0F / delta + 240.0F;
    if (h < 0) h += 360.0F;
  }
  return {static_cast<int>(h * full / 360.0F + 0.5F), static_cast<int>(lightness + 0.5F),
          static_cast<int>(s * full + 0.5F)};
}

// Hue in degrees.
Pixel<float> hlsOfFloats(float r, float g, float b, float grayLimit) {
  float largest = r, smallest = r;
  for (const float x : {g, b}) {
    if (x > largest) largest = x;
    if (x < smallest) smallest = x;
  }
  const float delta = largest - smallest, lightness = 0.5F * (smallest + largest);
  if (delta <= grayLimit) return {0, lightness, 0};
  const float s = 0.5F >= lightness ? delta / (smallest + largest) : delta / (2 - (smallest + largest));
  float h = r == largest   ? (g - b) * 60 / delta
            : g == largest ? (b - r) * 60 / delta + 120
                           : (r - g) * 60 / delta + 240;
  if (h < 0) h += 360;
  return {h, lightness, s};
}

Pixel<float> rgbOfHls(float degrees, float l, float s) {
  if (s == 0) return {l, l, l};
  const float m2 = 0.5F >= l ? (s + 1) * l : l + s - s * l, m1 = l + l - m2;
  const auto value = [=](float t) {
    if (t < 60) return (m2 - m1) * t / 60 + m1;
    if (t < 180) return m2;
    if (t < 240) return (m2 - m1) * (240 - t) / 60 + m1;
    return m1;
  };
  float ahead = degrees + 120, behind = degrees - 120;
  if (ahead > 360) ahead -= 360;
  if (behind < 0) behind += 360;
  return {value(ahead), value(degrees), value(behind)};
}
template <int full>
Pixel<float> rgbOfIntegers(int h, int l, int s) {
  return rgbOfHls(static_cast<float>(h) * 360 / full, static_cast<float>(l) / full, static_cast<float>(s) / full);
}
template <int full>
Pixel<int> roundedRgbOfHls(int h, int l, int s) {
  const auto rgb = rgbOfIntegers<full>(h, l, s);
  const auto stored = [](float x) { return static_cast<int>(x * full + 0.5F); };
  return {stored(rgb[0]), stored(rgb[1]), stored(rgb[2])};
}

TEST(Hls, Bytes) {
  expectOnBytes(zimiRGBToHLS_8u_C3R, hlsOfIntegers<255>);
  expectOnBytes(zimiHLSToRGB_8u_C3R, roundedRgbOfHls<255>);
}

TEST(Hls, Words) {
  expectOnWords<Zim16u>(zimiRGBToHLS_16u_C3R, hlsOfIntegers<65535>);
  expectOnWords<Zim16s>(zimiRGBToHLS_16s_C3R, hlsOfIntegers<65535>);
  expectOnWords<Zim16u>(zimiHLSToRGB_16u_C3R, roundedRgbOfHls<65535>);
  expectOnWords<Zim16s>(zimiHLSToRGB_16s_C3R, roundedRgbOfHls<65535>);
}

TEST(Hls, Floats) {
  expectOnFloats(zimiRGBToHLS_32f_C3R, [](float r, float g, float b) {
    const auto [h, l, s] = hlsOfFloats(r, g, b, std::numeric_limits<float>::epsilon());
    return Pixel<float>{h / 360, l, s};
  });
  expectOnFloats(zimiHLSToRGB_32f_C3R, [](float h, float l, float s) { return rgbOfHls(h * 360, l, s); });
}

// ---- HLS of BGR ---------------------------------------------------------------------------------------------------

// Planes with a fourth one, which stands for alpha, and pixels of four samples, where a form has them.
struct Planes {
  std::vector<Zim8u> plane[4];
  Zim8u* pointers[4];

  explicit Planes(std::size_t pixels) {
    for (int c = 0; c < 4; ++c) pointers[c] = (plane[c].assign(pixels, 0), plane[c].data());
  }
};

// A form that writes planes, as one that writes pixels.
template <auto convert>
ZimResult toPlanes(const Zim8u* source, Zim32s sourceStep, Zim8u* destination, Zim32s, ZimiSize size) {
  const auto pixels = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
  const Planes planes(pixels);
  const ZimResult result = convert(source, sourceStep, planes.pointers, size.width, size);
  for (std::size_t i = 0; i < pixels; ++i) {
    for (std::size_t c = 0; c < 3; ++c) destination[3 * i + c] = planes.plane[c][i];
  }
  return result;
}

int down(float x) { return static_cast<int>(double{x} + 1e-7); }
int halvesDown(float x) { return static_cast<int>(x + 0.499999F); }

template <auto stored>
Pixel<int> hlsOfBgr(int b, int g, int r) {
  const auto of255 = [](int x) { return static_cast<float>(x) / 255; };
  const auto [h, l, s] = hlsOfFloats(of255(r), of255(g), of255(b), 0);
  return {stored(h * 255 / 360), stored(l * 255), stored(s * 255)};
}

Pixel<int> bgrOfHls(int h, int l, int s) {
  const auto [r, g, b] = rgbOfIntegers<255>(h, l, s);
  return {down(b * 255), down(g * 255), down(r * 255)};
}

// The form of four samples, beside alpha that stays.
ZimResult besideAlpha(const Zim8u* source, Zim32s, Zim8u* destination, Zim32s, ZimiSize size) {
  const auto pixels = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
  std::vector<Zim8u> from(4 * pixels), to(4 * pixels, 77);
  for (std::size_t i = 0; i < pixels; ++i) std::copy_n(source + 3 * i, 3, &from[4 * i]);
  const ZimResult result = zimiBGRToHLS_8u_AC4R(from.data(), 4 * size.width, to.data(), 4 * size.width, size);
  for (std::size_t i = 0; i < pixels; ++i) {
    std::copy_n(&to[4 * i], 3, destination + 3 * i);
    if (to[4 * i + 3] != 77) return zimResultBadArgument;
  }
  return result;
}

TEST(HlsOfBgr, Bytes) {
  expectOnBytes(toPlanes<zimiBGRToHLS_8u_C3P3R>, hlsOfBgr<down>);
  expectOnBytes(besideAlpha, hlsOfBgr<halvesDown>);
  expectOnBytes(toPlanes<zimiHLSToBGR_8u_C3P3R>, bgrOfHls);
}

// All forms of a direction agree, and carry alpha across.
template <class FromPixels, class FromAlpha, class ToPixels, class ToAlpha, class Planar, class PlanarAlpha>
void expectFormsAgree(FromPixels fromPixels, FromAlpha fromAlpha, ToPixels toPixels, ToAlpha toAlpha, Planar planar,
                      PlanarAlpha planarAlpha) {
  constexpr Zim32s width = 999;
  constexpr ZimiSize size = {width, 1};
  Planes source(width), expected(width), other(width), alpha(width), both(width);
  std::vector<Zim8u> three(3 * width), four(4 * width), result(3 * width), resultWithAlpha(4 * width);
  Zim32u state = 1;
  for (std::size_t i = 0; i < width; ++i) {
    for (std::size_t c = 0; c < 4; ++c) {
      state = state * 1664525U + 1013904223U;
      source.plane[c][i] = four[4 * i + c] = static_cast<Zim8u>(state >> 24);
      if (c < 3) three[3 * i + c] = four[4 * i + c];
    }
  }
  const Zim8u* const from[] = {source.pointers[0], source.pointers[1], source.pointers[2], source.pointers[3]};
  ASSERT_EQ(fromPixels(three.data(), 1, expected.pointers, 1, size), zimResultOk);
  ASSERT_EQ(fromAlpha(four.data(), 1, alpha.pointers, 1, size), zimResultOk);
  ASSERT_EQ(toPixels(from, 1, result.data(), 1, size), zimResultOk);
  ASSERT_EQ(toAlpha(from, 1, resultWithAlpha.data(), 1, size), zimResultOk);
  ASSERT_EQ(planar(from, 1, other.pointers, 1, size), zimResultOk);
  ASSERT_EQ(planarAlpha(from, 1, both.pointers, 1, size), zimResultOk);
  for (std::size_t c = 0; c < 4; ++c) {
    const bool isAlpha = c == 3;
    const auto& plane = isAlpha ? source.plane[c] : expected.plane[c];
    EXPECT_EQ(alpha.plane[c], plane);
    EXPECT_EQ(both.plane[c], plane);
    EXPECT_TRUE(isAlpha || other.plane[c] == plane);
    for (std::size_t i = 0; i < width; ++i) {
      ASSERT_TRUE(isAlpha || result[3 * i + c] == plane[i]);
      ASSERT_EQ(resultWithAlpha[4 * i + c], plane[i]);
    }
  }
}

TEST(HlsOfBgr, FormsAgree) {
  expectFormsAgree(zimiBGRToHLS_8u_C3P3R, zimiBGRToHLS_8u_AC4P4R, zimiBGRToHLS_8u_P3C3R, zimiBGRToHLS_8u_AP4C4R,
                   zimiBGRToHLS_8u_P3R, zimiBGRToHLS_8u_AP4R);
  expectFormsAgree(zimiHLSToBGR_8u_C3P3R, zimiHLSToBGR_8u_AC4P4R, zimiHLSToBGR_8u_P3C3R, zimiHLSToBGR_8u_AP4C4R,
                   zimiHLSToBGR_8u_P3R, zimiHLSToBGR_8u_AP4R);
}

// ---- Known values -------------------------------------------------------------------------------------------------

TEST(KnownValues, Bytes) {
  using Bytes = Pixel<Zim8u>;
  const struct {
    Interleaved<Zim8u> convert;
    Bytes pixel, expected;
  } cases[] = {
      {zimiRGBToXYZ_8u_C3R, {255, 255, 255}, {242, 254, 255}},
      {zimiXYZToRGB_8u_C3R, {0, 255, 0}, {0, 255, 0}},
      {zimiRGBToYCC_8u_C3R, {0, 0, 0}, {0, 156, 137}},
      {zimiRGBToYCC_8u_C3R, {255, 255, 255}, {181, 156, 137}},
      {zimiYCCToRGB_8u_C3R, {0, 156, 137}, {0, 0, 0}},
      {zimiRGBToHSV_8u_C3R, {0, 255, 0}, {85, 255, 255}},
      {zimiRGBToHSV_8u_C3R, {0, 0, 255}, {170, 255, 255}},
      {zimiRGBToHSV_8u_C3R, {9, 9, 9}, {0, 0, 9}},
      {zimiHSVToRGB_8u_C3R, {255, 255, 255}, {255, 0, 0}},
      {zimiRGBToHLS_8u_C3R, {255, 0, 0}, {0, 128, 255}},
      {zimiRGBToHLS_8u_C3R, {255, 255, 255}, {0, 255, 0}},
      {toPlanes<zimiBGRToHLS_8u_C3P3R>, {0, 0, 255}, {0, 127, 255}},
      {zimiHLSToRGB_8u_C3R, {255, 128, 255}, {255, 1, 1}},
  };
  for (const auto& c : cases) {
    Bytes result;
    ASSERT_EQ(c.convert(c.pixel.data(), 3, result.data(), 3, {1, 1}), zimResultOk);
    EXPECT_EQ(result, c.expected);
  }
}

TEST(KnownValues, WordsAndFloats) {
  const Pixel<Zim16s> black = {-32768, -32768, -32768};
  Pixel<Zim16s> words;
  ASSERT_EQ(zimiRGBToHLS_16s_C3R(black.data(), 6, words.data(), 6, {1, 1}), zimResultOk);
  EXPECT_EQ(words, black);
  const Pixel<Zim32f> nearlyGray = {0.5F, 0.5F + 1e-7F, 0.5F};
  Pixel<Zim32f> floats;
  ASSERT_EQ(zimiRGBToHLS_32f_C3R(nearlyGray.data(), 12, floats.data(), 12, {1, 1}), zimResultOk);
  EXPECT_EQ(floats[0], 0);
  EXPECT_EQ(floats[2], 0);
}

}  // namespace
