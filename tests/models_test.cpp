// XYZ, PhotoYCC, HLS and HSV against their formulas, one pixel at a time with branches: all 2^24 pixels of bytes, and
// where branches have become selections, many of words and floats.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/pixels.h"

namespace zim::test {
namespace {

// A formula on integers that count from 0, on the samples of T.
template <class T, class Formula>
void expectOn(const char* name, const std::vector<Pixel<T>>& pixels, const Formula& formula) {
  expectFormula<T, T>(name, pixels, [&](const Pixel<T>& pixel) {
    constexpr int low = std::numeric_limits<T>::min();
    const Pixel<int> result = formula(pixel[0] - low, pixel[1] - low, pixel[2] - low);
    return Pixel<T>{static_cast<T>(result[0] + low), static_cast<T>(result[1] + low), static_cast<T>(result[2] + low)};
  });
}
template <class Formula>
void expectOnBytes(const char* name, const Formula& formula) {
  expectOn(name, allBytes(), formula);
}
template <class T, class Formula>
void expectOnWords(const char* name, const Formula& formula) {
  expectOn(name, manyPixels<T>(), formula);
}
template <class Formula>
void expectOnFloats(const char* name, const Formula& formula) {
  expectFormula<Zim32f, Zim32f>(name, manyPixels<Zim32f>(),
                                [&](const Pixel<Zim32f>& p) { return formula(p[0], p[1], p[2]); });
}

int byte(int x) { return std::clamp(x, 0, 255); }

// ---- XYZ and PhotoYCC ---------------------------------------------------------------------------------------------

TEST(Xyz, Bytes) {
  expectOnBytes("zimiRGBToXYZ_8u_C3R", [](int r, int g, int b) {
    return Pixel<int>{(27030 * r + 23434 * g + 11824 * b) >> 16, (13937 * r + 46868 * g + 4729 * b) >> 16,
                      byte((1267 * r + 7811 * g + 62274 * b) >> 16)};
  });
  expectOnBytes("zimiXYZToRGB_8u_C3R", [](int x, int y, int z) {
    return Pixel<int>{byte((212368 * x - 100738 * y - 32671 * z) >> 16),
                      byte((-63521 * x + 122944 * y + 2723 * z) >> 16), byte((3646 * x - 13372 * y + 69291 * z) >> 16)};
  });
}

TEST(PhotoYcc, Bytes) {
  expectOnBytes("zimiRGBToYCC_8u_C3R", [](int r, int g, int b) {
    const int v = r * 4898 + g * 9617 + b * 1867;
    return Pixel<int>{((v >> 10) * 2921) >> 16, (((((b << 14) - v) >> 10) * 1789) >> 16) + 156,
                      (((((r << 14) - v) >> 10) * 2178) >> 16) + 137};
  });
  expectOnBytes("zimiYCCToRGB_8u_C3R", [](int y, int u, int v) {
    const int a = y * 5564, c1 = u * 9084 - 1417104, c2 = v * 7460 - 1022020;
    return Pixel<int>{byte((a + c2) >> 12), byte((a * 16 + (c1 >> 8) * -794 + (c2 >> 8) * -2084) >> 16),
                      byte((a + c1) >> 12)};
  });
}

// ---- HSV ----------------------------------------------------------------------------------------------------------

TEST(Hsv, FromRgb) {
  expectOnBytes("zimiRGBToHSV_8u_C3R", [](int r, int g, int b) {
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
  expectOnBytes("zimiHSVToRGB_8u_C3R", rgbOfHsv<255>);
  expectOnWords<Zim16u>("zimiHSVToRGB_16u_C3R", rgbOfHsv<65535>);
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
  expectOnBytes("zimiRGBToHLS_8u_C3R", hlsOfIntegers<255>);
  expectOnBytes("zimiHLSToRGB_8u_C3R", roundedRgbOfHls<255>);
}

TEST(Hls, Words) {
  expectOnWords<Zim16s>("zimiRGBToHLS_16s_C3R", hlsOfIntegers<65535>);
  expectOnWords<Zim16u>("zimiHLSToRGB_16u_C3R", roundedRgbOfHls<65535>);
}

TEST(Hls, Floats) {
  expectOnFloats("zimiRGBToHLS_32f_C3R", [](float r, float g, float b) {
    const auto [h, l, s] = hlsOfFloats(r, g, b, std::numeric_limits<float>::epsilon());
    return Pixel<float>{h / 360, l, s};
  });
  expectOnFloats("zimiHLSToRGB_32f_C3R", [](float h, float l, float s) { return rgbOfHls(h * 360, l, s); });
}

int down(float x) { return static_cast<int>(double{x} + 1e-7); }
int halvesDown(float x) { return static_cast<int>(x + 0.499999F); }

template <auto stored>
Pixel<int> hlsOfBgr(int b, int g, int r) {
  const auto of255 = [](int x) { return static_cast<float>(x) / 255; };
  const auto [h, l, s] = hlsOfFloats(of255(r), of255(g), of255(b), 0);
  return {stored(h * 255 / 360), stored(l * 255), stored(s * 255)};
}

TEST(HlsOfBgr, Bytes) {
  expectOnBytes("zimiBGRToHLS_8u_C3P3R", hlsOfBgr<down>);
  expectOnBytes("zimiBGRToHLS_8u_AC4R", hlsOfBgr<halvesDown>);
  expectOnBytes("zimiHLSToBGR_8u_C3P3R", [](int h, int l, int s) {
    const auto [r, g, b] = rgbOfIntegers<255>(h, l, s);
    return Pixel<int>{down(b * 255), down(g * 255), down(r * 255)};
  });
}

// ---- Known values -------------------------------------------------------------------------------------------------

TEST(KnownValues, Bytes) {
  using Bytes = Pixel<Zim8u>;
  const struct {
    const char* name;
    Bytes pixel, expected;
  } cases[] = {
      {"zimiRGBToXYZ_8u_C3R", {255, 255, 255}, {242, 254, 255}},
      {"zimiXYZToRGB_8u_C3R", {0, 255, 0}, {0, 255, 0}},
      {"zimiRGBToYCC_8u_C3R", {0, 0, 0}, {0, 156, 137}},
      {"zimiRGBToYCC_8u_C3R", {255, 255, 255}, {181, 156, 137}},
      {"zimiYCCToRGB_8u_C3R", {0, 156, 137}, {0, 0, 0}},
      {"zimiRGBToHSV_8u_C3R", {0, 255, 0}, {85, 255, 255}},
      {"zimiRGBToHSV_8u_C3R", {0, 0, 255}, {170, 255, 255}},
      {"zimiRGBToHSV_8u_C3R", {9, 9, 9}, {0, 0, 9}},
      {"zimiHSVToRGB_8u_C3R", {255, 255, 255}, {255, 0, 0}},
      {"zimiRGBToHLS_8u_C3R", {255, 0, 0}, {0, 128, 255}},
      {"zimiRGBToHLS_8u_C3R", {255, 255, 255}, {0, 255, 0}},
      {"zimiBGRToHLS_8u_C3P3R", {0, 0, 255}, {0, 127, 255}},
      {"zimiHLSToRGB_8u_C3R", {255, 128, 255}, {255, 1, 1}},
  };
  for (const auto& c : cases) {
    expectFormula<Zim8u, Zim8u>(c.name, std::vector(256, c.pixel), [&](const Bytes&) { return c.expected; });
  }
}

}  // namespace
}  // namespace zim::test
