// LUV and Lab against plain formulas: all triples of bytes, and words and floats of every kind.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "tests/pixels.h"

namespace zim::test {
namespace {

using catalogue::Caller;
using catalogue::Export;
using catalogue::Image;
using catalogue::Operands;
using Floats = Pixel<Zim32f>;

constexpr Zim32f kNaN = std::numeric_limits<Zim32f>::quiet_NaN();
constexpr Zim32f kInfinity = std::numeric_limits<Zim32f>::infinity();

template <class F>
Zim32s clamped(F x, Zim32s high) {
  return std::min(std::max(truncated(x), 0), high);
}

// ---- Plain formulas, sample by sample ----

Zim32f plainX(const Floats& p) { return 0.412453F * p[0] + 0.35758F * p[1] + 0.180423F * p[2]; }
Zim32f plainY(const Floats& p) { return 0.212671F * p[0] + 0.71516F * p[1] + 0.072169F * p[2]; }
Zim32f plainZ(const Floats& p) { return p[0] * 0.019334F + p[1] * 0.119193F + p[2] * 0.950227F; }

Floats floatsOf(const auto& pixel, int lift = 0) {
  return {static_cast<Zim32f>(pixel[0] + lift), static_cast<Zim32f>(pixel[1] + lift),
          static_cast<Zim32f>(pixel[2] + lift)};
}

Pixel<Zim8u> toLuv(const Pixel<Zim8u>& pixel) {
  static const auto table = [](int steps, double scale) {
    std::vector<int> entries;
    for (int i = 0; i <= steps; ++i) {
      const double y = static_cast<double>(i) / steps;
      entries.push_back(static_cast<int>((y > 0.008856 ? 116 * std::cbrt(y) - 16 : 903.3 * y) * scale + 0.5));
    }
    return entries;
  };
  static const auto fine = table(1020, 10.2), coarse = table(255, 2.55);
  const Floats p = floatsOf(pixel);
  const Zim32f x = plainX(p), y = plainY(p), xn = x / 255, yn = y / 255, zn = plainZ(p) / 255;
  int t = static_cast<int>(y + 0.5F);
  int lightness;
  if (t >= 32) {
    lightness = coarse[static_cast<std::size_t>(t)];
  } else {
    t = static_cast<int>(y * 4 + 0.5F);
    lightness = (fine[static_cast<std::size_t>(t)] + 2) >> 2;
  }
  const Zim32f d = zn * 3 + xn + 15 * yn;
  const Zim32f u = t == 0 ? 0 : 4 * xn / d, v = t == 0 ? 0 : 9 * yn / d;
  const auto l = static_cast<Zim32f>(lightness);
  return {static_cast<Zim8u>(lightness), static_cast<Zim8u>(truncated(3.6723163F * l * (u - 0.197839F) + 97.02543F)),
          static_cast<Zim8u>(truncated(l * 4.961832F * (v - 0.468342F) + 136.75955F))};
}

Floats plainLuv(const Floats& p, Zim32f scale) {
  const Zim32f x = plainX(p), y = plainY(p), z = plainZ(p);
  const Zim32f relative = scale == 1 ? y : y / scale;
  Zim32f l;
  if (0.008856F >= relative) {
    l = scale == 1 ? y * 903.3F : y * 903.3F / scale;
  } else {
    l = std::cbrt(relative) * 116 - 16;
  }
  const Zim32f d = z * 3 + x + 15 * y;
  const Zim32f u = y == 0 ? 0 : x * 4 / d, v = y == 0 ? 0 : y * 9 / d;
  const Zim32f l13 = l * 13;
  return {l, (u - 0.197839F) * l13, l13 * (v - 0.468342F)};
}
Floats toLuv(const Floats& pixel) { return plainLuv(pixel, 1); }

template <class T>
Pixel<T> wordsToLuv(const Pixel<T>& pixel, int lift) {
  const auto [l, u, v] = plainLuv(floatsOf(pixel, lift), 65535);
  return {static_cast<T>(truncated(65535 * l / 100 + 0.5F) - lift),
          static_cast<T>(truncated((u + 134) * 65535 / 354 + 0.5F) - lift),
          static_cast<T>(truncated((v + 140) * 65535 / 262 + 0.5F) - lift)};
}
Pixel<Zim16u> toLuv(const Pixel<Zim16u>& pixel) { return wordsToLuv(pixel, 0); }
Pixel<Zim16s> toLuv(const Pixel<Zim16s>& pixel) { return wordsToLuv(pixel, 32768); }

// X, Y and Z on the scale of Y.
struct Xyz {
  Zim32f x, y, z;
};
Xyz plainXyz(Zim32f y, Zim32f scale, Zim32f uPrime, Zim32f vPrime, Zim32f epsilon) {
  y = y * scale;
  const Zim32f q = uPrime * 2.25F, e = std::abs(vPrime) < epsilon ? 9e-5F + vPrime : vPrime, w = y / e, x = q * w;
  return {x, y, w * 3 - 5 * y - x / 3};
}
Zim32f plainLuminance(Zim32f l) {
  const Zim32f t = (l + 16) / 116;
  return l >= 7.9996247F ? t * t * t : l / 903.3F;
}

Pixel<Zim8u> fromLuv(const Pixel<Zim8u>& pixel) {
  const Floats p = floatsOf(pixel);
  const Zim32f l = p[0] * 100 / 255;
  if (l < 9e-5F) return {0, 0, 0};
  const auto [x, y, z] = plainXyz(plainLuminance(l), 255, (p[1] * 354 / 255 - 134) / (l * 13) + 0.19783941F,
                                  (p[2] * 262 / 255 - 140) / (l * 13) + 0.4683422F, 1.1920929e-7F);
  const Zim32f red = 0.5F - 1.53715F * y + 3.240479F * x - 0.498535F * z;
  const Zim32f green = 1.875991F * y + 0.5F + -0.969256F * x + 0.041556F * z;
  const Zim32f partOfBlue = x * 0.055648F - y * 0.204043F;
  const double blue = static_cast<double>(partOfBlue) + 0.5 + static_cast<double>(z) * 1.057311;
  return {static_cast<Zim8u>(clamped(red, 255)), static_cast<Zim8u>(clamped(green, 255)),
          static_cast<Zim8u>(clamped(blue, 255))};
}

Floats fromLuv(const Floats& luv) {
  const auto [l, u, v] = luv;
  if (l < 9e-5F) return {0, 0, 0};
  const auto [x, y, z] =
      plainXyz(plainLuminance(l), 1, u / (l * 13) + 0.197839F, v / (l * 13) + 0.468342F, 1.1920929e-7F);
  const auto fraction = [](Zim32f a) { return a < 0 ? 0 : a > 1 ? 1 : a; };
  return {fraction(3.240479F * x - y * 1.53715F - 0.498535F * z),
          fraction(y * 1.875991F + x * -0.969256F + z * 0.041556F),
          fraction(x * 0.055648F - y * 0.204043F + z * 1.057311F)};
}

// Shares of white and their roots, in the order y, x, z.
struct Root {
  Zim32f share, root;
  bool cubic;
};
std::array<Root, 3> plainRoots(const Pixel<Zim8u>& pixel) {
  const auto [b, g, r] = floatsOf(pixel);
  const auto root = [](Zim32f share) -> Root {
    const bool cubic = share > 0.008856F;
    return {share, cubic ? std::cbrt(share) : share * 7.787F + 0.13793103F, cubic};
  };
  return {root((0.072169F * b + 0.71516F * g + 0.212671F * r) / 255),
          root((0.180423F * b + 0.35758F * g + 0.412453F * r) / 242.366F),
          root((0.950227F * b + 0.119193F * g + 0.019334F * r) / 277.632F)};
}

Pixel<Zim8u> toLab(const Pixel<Zim8u>& pixel) {
  const auto [y, x, z] = plainRoots(pixel);
  const Zim32f l = y.cubic ? 116 * y.root - 16 : 903.3F * y.share;
  return {static_cast<Zim8u>(truncated(l * 255 / 100 + 0.5F)),
          static_cast<Zim8u>(truncated((x.root - y.root) * 500 + 128.5F)),
          static_cast<Zim8u>(truncated((y.root - z.root) * 200 + 128.5F))};
}
Pixel<Zim16u> toLab16(const Pixel<Zim8u>& pixel) {
  const auto [y, x, z] = plainRoots(pixel);
  const Zim32f l = y.cubic ? static_cast<Zim32f>(std::pow(static_cast<double>(y.share), 0.3333333432674408) * 116 - 16)
                           : 903.3F * y.share;
  return {static_cast<Zim16u>(truncated(l * 65535 / 100)),
          static_cast<Zim16u>(truncated(((x.root - y.root) * 500 + 128) * 255)),
          static_cast<Zim16u>(truncated(((y.root - z.root) * 200 + 128) * 255))};
}

// Blue, green, red.
Floats plainCubes(Zim32f fx, Zim32f fy, Zim32f fz) {
  const Zim32f x = 242.366F * fx * fx * fx, y = 255 * fy * fy * fy, z = 277.632F * fz * fz * fz;
  return {x * 0.055648F - y * 0.204043F + z * 1.057311F, -0.969256F * x + 1.875991F * y + 0.041556F * z,
          3.240479F * x - 1.53715F * y - 0.498535F * z};
}
Pixel<Zim8u> fromLab(const Pixel<Zim8u>& lab) {
  const Zim32f fy = (static_cast<Zim32f>(lab[0]) * 100 / 255 + 16) / 116;
  const Floats bgr =
      plainCubes(static_cast<Zim32f>(lab[1] - 128) / 500 + fy, fy, fy - (static_cast<Zim32f>(lab[2]) - 128) / 200);
  const auto stored = [](Zim32f a) { return static_cast<Zim8u>(clamped(static_cast<double>(a) + 0.5, 255)); };
  return {stored(bgr[0]), stored(bgr[1]), stored(bgr[2])};
}
// ---- Comparison ----

// The formula of these types.
template <class S, class D>
void expectAs(const char* name, Pixel<D> (*formula)(const Pixel<S>&), const std::vector<Pixel<S>>& pixels) {
  expectFormula<S, D>(name, pixels, formula);
}

TEST(AllTriples, ToLuv) { expectAs<Zim8u, Zim8u>("zimiRGBToLUV_8u_C3R", toLuv, allBytes()); }
TEST(AllTriples, FromLuv) { expectAs<Zim8u, Zim8u>("zimiLUVToRGB_8u_C3R", fromLuv, allBytes()); }
TEST(AllTriples, ToLab) { expectAs("zimiBGRToLab_8u_C3R", toLab, allBytes()); }
TEST(AllTriples, ToLab16) { expectAs("zimiBGRToLab_8u16u_C3R", toLab16, allBytes()); }
TEST(AllTriples, FromLab) { expectAs("zimiLabToBGR_8u_C3R", fromLab, allBytes()); }

TEST(Words, ToLuv) {
  expectAs<Zim16u, Zim16u>("zimiRGBToLUV_16u_C3R", toLuv, manyPixels<Zim16u>());
  expectAs<Zim16s, Zim16s>("zimiRGBToLUV_16s_C3R", toLuv, manyPixels<Zim16s>());
}
// Of low to high in each channel, all kinds of floats between.
std::vector<Floats> floats(const Floats& low, const Floats& high) {
  constexpr std::size_t count = 1 << 19;
  constexpr Zim32f kExtremes[] = {0,      -0.0F,  1,     -1,    0.008856F, 9e-5F,      7.9996247F,
                                  1e-30F, 1e-42F, 1e30F, 3e38F, kInfinity, -kInfinity, kNaN};
  std::mt19937 random(2);
  std::vector<Floats> pixels;
  while (pixels.size() < count) {
    Floats p;
    const bool extreme = random() % 8 == 0;
    for (std::size_t c = 0; c < 3; ++c) {
      p[c] = low[c] + (high[c] - low[c]) * static_cast<Zim32f>(random()) * 0x1p-32F;
      if (extreme && random() % 2 != 0) p[c] = kExtremes[random() % std::size(kExtremes)];
    }
    pixels.push_back(p);
  }
  return pixels;
}

TEST(Floats, ToLuv) {
  for (const Zim32f high : {1.0F, 0.02F, 1000.0F, 3e38F}) {
    expectAs<Zim32f, Zim32f>("zimiRGBToLUV_32f_C3R", toLuv, floats({0, 0, 0}, {high, high, high}));
  }
}

// Dark pixels brightened: what they do to their row has a test of its own.
TEST(Floats, FromLuv) {
  auto pixels = floats({0, -134, -140}, {100, 220, 122});
  for (auto& [l, u, v] : pixels) {
    if (l < 9e-5F) l = 1 - l;
  }
  expectAs<Zim32f, Zim32f>("zimiLUVToRGB_32f_C3R", fromLuv, pixels);
  for (auto& [l, u, v] : pixels) v = l * 13 * -0.468342F;  // of v' about zero
  expectAs<Zim32f, Zim32f>("zimiLUVToRGB_32f_C3R", fromLuv, pixels);
}

// ---- Rows end at their first dark pixel ----

void expectRowsEndAtDarkPixels(const char* name) {
  constexpr int width = 45;
  constexpr std::byte kUntouched{77};
  struct Row {
    int dark;
    Zim32f lightness;
    int converted;
  };
  const Export& e = exportOf(name);
  for (int at = 0; at < width; ++at) {
    const Row rows[] = {{at, 0, at + 1},    {at, -5, at + 1},  {at, std::nextafter(9e-5F, 0.0F), at + 1},
                        {at, 9e-5F, width}, {at, kNaN, width}, {at, -kInfinity, at + 1}};
    constexpr ZimiSize size = {width, std::size(rows)};
    Image source(e.source, size), result(e.destination, size), expected(e.destination, size);
    result.fill(kUntouched);
    expected.fill(kUntouched);
    const Samples<Zim32f> from(source), to(expected);
    for (int y = 0; y < size.height; ++y) {
      const auto& [dark, lightness, converted] = rows[y];
      for (int x = 0; x < width; ++x) {
        const bool darkAgain = x == width - 1 && at + 2 < width && converted < width;
        const Floats pixel = {x == dark ? lightness : darkAgain ? 0 : 40, 40, 40}, rgb = fromLuv(pixel);
        for (std::size_t c = 0; c < 3; ++c) {
          from(x, y, c) = pixel[c];
          if (x < converted) to(x, y, c) = rgb[c];
        }
      }
    }
    ASSERT_EQ(Caller(e)(Operands(e, source, result)), zimResultOk);
    ASSERT_EQ(result.digest(), expected.digest()) << name << ", dark at " << at;
  }
}

TEST(Luv32f, RowsEndAtTheirFirstDarkPixel) {
  expectRowsEndAtDarkPixels("zimiLUVToRGB_32f_C3R");
  expectRowsEndAtDarkPixels("zimiLUVToRGB_32f_AC4R");
}

// ---- Known values ----

template <class S, class D>
void expectKnown(const char* name, const Pixel<S>& pixel, const Pixel<D>& expected) {
  expectFormula<S, D>(name, std::vector(256 * 40, pixel), [&](const Pixel<S>&) { return expected; });
}

TEST(Known, BlackAndWhite) {
  expectKnown<Zim8u, Zim8u>("zimiRGBToLUV_8u_C3R", {0, 0, 0}, {0, 97, 136});
  expectKnown<Zim8u, Zim8u>("zimiRGBToLUV_8u_C3R", {255, 255, 255}, {255, 97, 136});
  expectKnown<Zim16u, Zim16u>("zimiRGBToLUV_16u_C3R", {0, 0, 0}, {0, 24807, 35019});
  expectKnown<Zim32f, Zim32f>("zimiRGBToLUV_32f_C3R", {0, 0, 0}, {0, -0.0F, -0.0F});
  expectKnown<Zim16s, Zim16s>("zimiLUVToRGB_16s_C3R", {-32768, 1000, -7}, {-32768, -32768, -32768});
  expectKnown<Zim8u, Zim8u>("zimiBGRToLab_8u_C3R", {0, 0, 0}, {0, 128, 128});
  expectKnown<Zim8u, Zim8u>("zimiBGRToLab_8u_C3R", {255, 255, 255}, {255, 128, 128});
  expectKnown<Zim8u, Zim8u>("zimiLabToBGR_8u_C3R", {0, 128, 128}, {1, 1, 1});
  expectKnown<Zim16u, Zim8u>("zimiLabToBGR_16u8u_C3R", {0, 32640, 32640}, {0, 0, 0});
}

// In quarters of the scale, each rounded on a scale four times as fine, below 32; in whole steps above.
TEST(Known, LightnessOfGrays) {
  constexpr Zim8u kLightness[][2] = {{1, 9}, {3, 27}, {7, 49}, {251, 253}, {252, 254}, {253, 254}, {254, 255}};
  for (const auto& [gray, lightness] : kLightness) {
    EXPECT_EQ(toLuv(Pixel<Zim8u>{gray, gray, gray})[0], lightness) << +gray;
  }
}

}  // namespace
}  // namespace zim::test
