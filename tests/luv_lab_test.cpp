// LUV and Lab against plain formulas: all triples of bytes, and words and floats of every kind.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "zimcc.h"

namespace {

template <class T>
using Pixel = std::array<T, 3>;
using Floats = Pixel<Zim32f>;

constexpr Zim32f kNaN = std::numeric_limits<Zim32f>::quiet_NaN();
constexpr Zim32f kInfinity = std::numeric_limits<Zim32f>::infinity();

// As the processor truncates.
template <class F>
Zim32s truncated(F x) {
  return x > F(-2147483904.0) && x < F(2147483648.0) && x >= F(-2147483648.0) ? static_cast<Zim32s>(x)
                                                                              : std::numeric_limits<Zim32s>::min();
}

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

Xyz plainXyzOf(const Floats& p, Zim32f full, Zim32f scale, Zim32f epsilon, bool& dark) {
  const Zim32f l = p[0] * 100 / full;
  dark = l < 9e-5F;
  const Zim32f l13 = l * 13;
  return plainXyz(plainLuminance(l), scale, (p[1] * 354 / full - 134) / l13 + 0.19783941F,
                  (p[2] * 262 / full - 140) / l13 + 0.4683422F, epsilon);
}

template <class T>
Pixel<T> fromScaledLuv(const Pixel<T>& pixel, Zim32s full, int lift, Zim32f epsilon) {
  bool dark;
  const auto [x, y, z] =
      plainXyzOf(floatsOf(pixel, lift), static_cast<Zim32f>(full), static_cast<Zim32f>(full), epsilon, dark);
  if (dark) return {static_cast<T>(-lift), static_cast<T>(-lift), static_cast<T>(-lift)};
  const Zim32f red = 0.5F - 1.53715F * y + 3.240479F * x - 0.498535F * z;
  const Zim32f green = 1.875991F * y + 0.5F + -0.969256F * x + 0.041556F * z;
  const Zim32f partOfBlue = x * 0.055648F - y * 0.204043F;
  const double blue = static_cast<double>(partOfBlue) + 0.5 + static_cast<double>(z) * 1.057311;
  return {static_cast<T>(clamped(red, full) - lift), static_cast<T>(clamped(green, full) - lift),
          static_cast<T>(clamped(blue, full) - lift)};
}
Pixel<Zim8u> fromLuv(const Pixel<Zim8u>& pixel) { return fromScaledLuv(pixel, 255, 0, 1.1920929e-7F); }
Pixel<Zim16s> fromLuv(const Pixel<Zim16s>& pixel) { return fromScaledLuv(pixel, 65535, 32768, 1.1920929e-5F); }

Pixel<Zim16u> fromLuv(const Pixel<Zim16u>& pixel) {
  bool dark;
  const auto [x, y, z] = plainXyzOf(floatsOf(pixel), 65535, 1, 1.1920929e-5F, dark);
  if (dark) return {0, 0, 0};
  const Zim32f red = (3.240479F * x - y * 1.53715F - 0.498535F * z) * 65535 + 0.5F;
  const Zim32f green = (y * 1.875991F + -0.969256F * x + 0.041556F * z) * 65535 + 0.5F;
  const Zim32f partOfBlue = x * 0.055648F - y * 0.204043F;
  const auto blue =
      static_cast<Zim32f>((static_cast<double>(partOfBlue) + static_cast<double>(z) * 1.057311) * 65535.0) + 0.5F;
  return {static_cast<Zim16u>(clamped(red, 65535)), static_cast<Zim16u>(clamped(green, 65535)),
          static_cast<Zim16u>(clamped(blue, 65535))};
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
Pixel<Zim8u> fromLab16(const Pixel<Zim16u>& lab) {
  const Floats p = floatsOf(lab);
  const Zim32f fy = (p[0] * 100 / 65535 + 16) / 116;
  const Floats bgr = plainCubes((p[1] / 255 - 128) / 500 + fy, fy, fy - (p[2] / 255 - 128) / 200);
  const auto stored = [](Zim32f a) { return static_cast<Zim8u>(clamped(a, 255)); };
  return {stored(bgr[0]), stored(bgr[1]), stored(bgr[2])};
}

// ---- Comparison ----

template <class S, class D>
using Function = ZimResult (*)(const S*, Zim32s, D*, Zim32s, ZimiSize);
template <class S, class D>
using Formula = Pixel<D> (*)(const Pixel<S>&);

template <class T>
bool same(const Pixel<T>& a, const Pixel<T>& b) {
  for (std::size_t c = 0; c < 3; ++c) {
    if constexpr (std::is_floating_point_v<T>) {
      if (std::isnan(a[c]) && std::isnan(b[c])) continue;
    }
    if (std::memcmp(&a[c], &b[c], sizeof(T)) != 0) return false;
  }
  return true;
}

// All pixels in one row.
template <class S, class D>
void expectAsFormula(Function<S, D> function, Formula<S, D> formula, const std::vector<Pixel<S>>& pixels) {
  std::vector<Pixel<D>> results(pixels.size());
  ASSERT_EQ(function(pixels.data()->data(), 0, results.data()->data(), 0, {static_cast<Zim32s>(pixels.size()), 1}),
            zimResultOk);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const Pixel<S>& p = pixels[i];
    const Pixel<D> expected = formula(p);
    ASSERT_TRUE(same(results[i], expected))
        << std::hexfloat << +p[0] << ' ' << +p[1] << ' ' << +p[2] << " gives " << +results[i][0] << ' '
        << +results[i][1] << ' ' << +results[i][2] << " in place of " << +expected[0] << ' ' << +expected[1] << ' '
        << +expected[2];
  }
}

template <class D>
void expectAllTriples(Function<Zim8u, D> function, Formula<Zim8u, D> formula) {
  std::vector<Pixel<Zim8u>> pixels(1 << 16);
  for (unsigned first = 0; first < 256 && !testing::Test::HasFatalFailure(); ++first) {
    for (unsigned i = 0; i < pixels.size(); ++i) {
      pixels[i] = {static_cast<Zim8u>(first), static_cast<Zim8u>(i >> 8), static_cast<Zim8u>(i)};
    }
    expectAsFormula(function, formula, pixels);
  }
}

TEST(AllTriples, ToLuv) { expectAllTriples<Zim8u>(zimiRGBToLUV_8u_C3R, toLuv); }
TEST(AllTriples, FromLuv) { expectAllTriples<Zim8u>(zimiLUVToRGB_8u_C3R, fromLuv); }
TEST(AllTriples, ToLab) { expectAllTriples<Zim8u>(zimiBGRToLab_8u_C3R, toLab); }
TEST(AllTriples, ToLab16) { expectAllTriples<Zim16u>(zimiBGRToLab_8u16u_C3R, toLab16); }
TEST(AllTriples, FromLab) { expectAllTriples<Zim8u>(zimiLabToBGR_8u_C3R, fromLab); }

// Words near the ends of their range and anywhere in it, grays among them.
template <class T>
std::vector<Pixel<T>> words() {
  constexpr std::size_t count = 1 << 20;
  std::mt19937_64 random(1);
  std::vector<Pixel<T>> pixels;
  for (const int a : {0, 1, 7, 255, 32767, 32768, 65535}) {
    for (const int b : {0, 1, 32768, 65535})
      pixels.push_back({static_cast<T>(a), static_cast<T>(b), static_cast<T>(b)});
  }
  const auto moved = [](std::uint64_t x) { return static_cast<T>(x + (std::is_signed_v<T> ? 32768 : 0)); };
  while (pixels.size() < count) {
    const std::uint64_t draw = random(), dimming = random() % 12;
    const auto word = [&](int i) { return (draw >> 16 * i & 0xFFFF) >> dimming; };
    pixels.push_back(draw >> 62 == 0 ? Pixel<T>{moved(word(0)), moved(word(0)), moved(word(0))}
                                     : Pixel<T>{moved(word(0)), moved(word(1)), moved(word(2))});
  }
  return pixels;
}

TEST(Words, ToLuv) {
  expectAsFormula<Zim16u, Zim16u>(zimiRGBToLUV_16u_C3R, toLuv, words<Zim16u>());
  expectAsFormula<Zim16s, Zim16s>(zimiRGBToLUV_16s_C3R, toLuv, words<Zim16s>());
}
TEST(Words, FromLuv) {
  expectAsFormula<Zim16u, Zim16u>(zimiLUVToRGB_16u_C3R, fromLuv, words<Zim16u>());
  expectAsFormula<Zim16s, Zim16s>(zimiLUVToRGB_16s_C3R, fromLuv, words<Zim16s>());
}
TEST(Words, FromLab) { expectAsFormula<Zim16u, Zim8u>(zimiLabToBGR_16u8u_C3R, fromLab16, words<Zim16u>()); }

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
    expectAsFormula<Zim32f, Zim32f>(zimiRGBToLUV_32f_C3R, toLuv, floats({0, 0, 0}, {high, high, high}));
  }
}

// Dark pixels brightened: what they do to their row has a test of its own.
TEST(Floats, FromLuv) {
  auto pixels = floats({0, -134, -140}, {100, 220, 122});
  for (auto& [l, u, v] : pixels) {
    if (l < 9e-5F) l = 1 - l;
  }
  expectAsFormula<Zim32f, Zim32f>(zimiLUVToRGB_32f_C3R, fromLuv, pixels);
  for (auto& [l, u, v] : pixels) v = l * 13 * -0.468342F;  // of v' about zero
  expectAsFormula<Zim32f, Zim32f>(zimiLUVToRGB_32f_C3R, fromLuv, pixels);
}

// ---- Rows end at their first dark pixel ----

template <std::size_t stride>
void expectRowsEndAtDarkPixels(Function<Zim32f, Zim32f> function) {
  constexpr std::size_t width = 45;
  constexpr Zim32f kUntouched = 77;
  struct Row {
    std::size_t dark;
    Zim32f lightness;
    std::size_t converted;
  };
  for (std::size_t at = 0; at < width; ++at) {
    const Row rows[] = {
        {at, 0, at + 1}, {at, -5, at + 1}, {at, 9e-5F, width}, {at, kNaN, width}, {at, -kInfinity, at + 1}};
    constexpr auto height = std::size(rows);
    std::vector<Zim32f> source(height * width * stride, 40), result(source.size(), kUntouched);
    for (std::size_t y = 0; y < height; ++y) {
      source[(y * width + rows[y].dark) * stride] = rows[y].lightness;
      if (at + 2 < width) source[(y * width + width - 1) * stride] = rows[y].converted < width ? 0 : 40;
    }
    constexpr auto step = static_cast<Zim32s>(width * stride * sizeof(Zim32f));
    ASSERT_EQ(function(source.data(), step, result.data(), step, {width, height}), zimResultOk);
    for (std::size_t y = 0; y < height; ++y) {
      for (std::size_t x = 0; x < width; ++x) {
        const Zim32f* p = &source[(y * width + x) * stride];
        const Zim32f* r = &result[(y * width + x) * stride];
        const Floats expected =
            x < rows[y].converted ? fromLuv(Floats{p[0], p[1], p[2]}) : Floats{kUntouched, kUntouched, kUntouched};
        ASSERT_TRUE(same({r[0], r[1], r[2]}, expected)) << "row " << y << ", pixel " << x << ", dark at " << at;
        if constexpr (stride == 4) {
          ASSERT_EQ(r[3], kUntouched);
        }
      }
    }
  }
}

TEST(Luv32f, RowsEndAtTheirFirstDarkPixel) {
  expectRowsEndAtDarkPixels<3>(zimiLUVToRGB_32f_C3R);
  expectRowsEndAtDarkPixels<4>(zimiLUVToRGB_32f_AC4R);
}

// ---- Known values ----

template <class S, class D>
void expectKnown(Function<S, D> function, const std::type_identity_t<Pixel<S>>& pixel,
                 const std::type_identity_t<Pixel<D>>& expected) {
  const std::vector<Pixel<S>> pixels(40, pixel);
  std::vector<Pixel<D>> results(40);
  ASSERT_EQ(function(pixels[0].data(), 0, results[0].data(), 0, {40, 1}), zimResultOk);
  for (const auto& result : results) EXPECT_TRUE(same(result, expected)) << +pixel[0] << ' ' << +pixel[1];
}

TEST(Known, BlackAndWhite) {
  expectKnown(zimiRGBToLUV_8u_C3R, {0, 0, 0}, {0, 97, 136});
  expectKnown(zimiRGBToLUV_8u_C3R, {255, 255, 255}, {255, 97, 136});
  expectKnown(zimiRGBToLUV_16u_C3R, {0, 0, 0}, {0, 24807, 35019});
  expectKnown(zimiRGBToLUV_32f_C3R, {0, 0, 0}, {0, -0.0F, -0.0F});
  expectKnown(zimiLUVToRGB_16s_C3R, {-32768, 1000, -7}, {-32768, -32768, -32768});
  expectKnown(zimiBGRToLab_8u_C3R, {0, 0, 0}, {0, 128, 128});
  expectKnown(zimiBGRToLab_8u_C3R, {255, 255, 255}, {255, 128, 128});
  expectKnown(zimiLabToBGR_8u_C3R, {0, 128, 128}, {1, 1, 1});
  expectKnown(zimiLabToBGR_16u8u_C3R, {0, 32640, 32640}, {0, 0, 0});
}

// In quarters of the scale, each rounded on a scale four times as fine, below 32; in whole steps above.
TEST(Known, LightnessOfGrays) {
  constexpr int kLightness[][2] = {{1, 9}, {3, 27}, {7, 49}, {251, 253}, {252, 254}, {253, 254}, {254, 255}};
  for (const auto& [gray, lightness] : kLightness) {
    const auto g = static_cast<Zim8u>(gray);
    const Zim8u source[3] = {g, g, g};
    Zim8u result[3];
    ASSERT_EQ(zimiRGBToLUV_8u_C3R(source, 0, result, 0, {1, 1}), zimResultOk);
    EXPECT_EQ(result[0], lightness) << gray;
  }
}

}  // namespace
