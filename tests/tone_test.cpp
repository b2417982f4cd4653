// Colour twist, gamma and tone mapping: known values, the rounding steps, powers against the library's pow, and what
// only whole images decide.
#include <gtest/gtest.h>

#include <array>
#include <cfenv>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include "zimcc.h"

namespace {

// ---- Colour twist ----

constexpr Zim32f kNan = std::numeric_limits<Zim32f>::quiet_NaN();
constexpr Zim32f kInfinity = std::numeric_limits<Zim32f>::infinity();

// The first sample of a pixel after a twist that adds an offset; samples are repeated so that lanes see them, too.
template <class T, class Twist>
T offsetOf(Twist twist, T sample, Zim32f weight, Zim32f offset) {
  constexpr Zim32s width = 67;
  std::vector<T> image(3 * width, sample);
  const Zim32f matrix[3][4] = {{weight, 0, 0, offset}, {0, weight, 0, offset}, {0, 0, weight, offset}};
  EXPECT_EQ(twist(image.data(), 3 * width * static_cast<Zim32s>(sizeof(T)), {width, 1}, matrix), zimResultOk);
  for (T x : image) EXPECT_EQ(x, image[0]);
  return image[0];
}

struct Rounded {
  Zim32s sample;
  Zim32f weight, offset;
  Zim32s expected;
};

template <class T, class Twist>
void expectRounded(Twist twist, std::initializer_list<Rounded> cases) {
  for (const auto& c : cases) {
    // In another mode than the usual one, too, in which the processor's own rounding would show.
    for (int mode : {FE_TONEAREST, FE_UPWARD}) {
      std::fesetround(mode);
      const auto result = offsetOf(twist, static_cast<T>(c.sample), c.weight, c.offset);
      std::fesetround(FE_TONEAREST);
      EXPECT_EQ(result, static_cast<T>(c.expected)) << c.sample << " * " << c.weight << " + " << c.offset;
    }
  }
}

TEST(ColorTwist, TiesToEvenAndSaturation) {
  expectRounded<Zim8u>(zimiColorTwist32f_8u_C3IR, {{2, 1, 0.5F, 2},
                                                   {3, 1, 0.5F, 4},
                                                   {3, 1, -0.5F, 2},
                                                   {0, 1, 0.5F, 0},
                                                   {0, 1, -0.75F, 0},
                                                   {254, 1, 0.5F, 254},
                                                   {255, 1, 0.5F, 255},
                                                   {255, 1000, 0, 255},
                                                   {255, -1, 0, 0},
                                                   {1, 3e9F, 0, 255},
                                                   {1, -3e9F, 0, 0},
                                                   {1, kInfinity, 0, 255},
                                                   {1, kNan, 0, 0}});
  expectRounded<Zim16u>(zimiColorTwist32f_16u_C3IR, {{65534, 1, 0.5F, 65534},
                                                     {65535, 1, 0.5F, 65535},
                                                     {40001, 1, 0.5F, 40002},
                                                     {65535, 70000, 0, 65535},
                                                     {65535, kNan, 0, 0}});
  expectRounded<Zim8s>(zimiColorTwist32f_8s_C3IR, {{-2, 1, -0.5F, -2},
                                                   {-3, 1, -0.5F, -4},
                                                   {2, 1, 0.5F, 2},
                                                   {127, 1, 0.5F, 127},
                                                   {-128, 1, -0.5F, -128},
                                                   {-127, 1, -0.5F, -128},
                                                   {100, 1e30F, 0, 127},
                                                   {-100, 1e30F, 0, -128},
                                                   {5, kNan, 0, 0}});
  expectRounded<Zim16s>(zimiColorTwist32f_16s_C3IR,
                        {{-2, 1, -0.5F, -2}, {-3, 1, -0.5F, -4}, {32767, 2, 0, 32767}, {-32768, 2, 0, -32768}});
}

// Sums anywhere in the range of a sample, among them those next to halves, against the steps as they are meant.
TEST(ColorTwist, RoundingStepsOverManySums) {
  const auto positive = [](Zim32f a) {
    const Zim32f t = a + 0.5F;
    const auto i = static_cast<Zim32s>(t);
    return i % 2 != 0 && t == static_cast<Zim32f>(i) ? i - 1 : i;
  };
  const auto anySign = [&](Zim32f a) {
    const auto t = static_cast<Zim32f>(static_cast<double>(a) + (a < 0 ? -0.5 : 0.5));
    const auto i = static_cast<Zim32s>(t);
    return i % 2 != 0 && t == static_cast<Zim32f>(i) ? (a < 0 ? i + 1 : i - 1) : i;
  };
  std::mt19937 random(1);
  for (int n = 0; n < 200000; ++n) {
    // A random number of the sample's range, or a few units in the last place beside a half.
    Zim32f a = n % 2 == 0 ? static_cast<Zim32f>(random() % 32768) + static_cast<Zim32f>(random()) * 0x1p-32F
                          : static_cast<Zim32f>(random() % 128) + 0.5F;
    for (auto steps = random() % 4; steps > 0; --steps) a = std::nextafter(a, n % 4 < 2 ? 0.0F : 1e9F);
    a = std::ldexp(a, n % 8 == 0 ? -static_cast<int>(random() % 20) : 0);
    const Zim32f up[3][4] = {{0, 0, 0, a}, {}, {}}, down[3][4] = {{0, 0, 0, -a}, {}, {}};
    std::array<Zim16u, 3> unsignedPixel{};
    std::array<Zim16s, 3> signedPixel{};
    ASSERT_EQ(zimiColorTwist32f_16u_C3IR(unsignedPixel.data(), 6, {1, 1}, up), zimResultOk);
    ASSERT_EQ(zimiColorTwist32f_16s_C3IR(signedPixel.data(), 6, {1, 1}, down), zimResultOk);
    ASSERT_EQ(unsignedPixel[0], positive(a)) << std::hexfloat << a;
    ASSERT_EQ(signedPixel[0], std::max(-32768, anySign(-a))) << std::hexfloat << -a;
  }
}

TEST(ColorTwist, StepOfFourSamplesMakesOneRun) {
  constexpr Zim32s width = 5, height = 7;
  std::vector<Zim32f> source(4 * width * height), result(source.size());
  std::iota(source.begin(), source.end(), 0.0F);
  const Zim32f twice[4][4] = {{2, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 2}};
  ASSERT_EQ(zimiColorTwist_32f_C4R(source.data(), width * 4, result.data(), width * 4, {width, height}, twice),
            zimResultOk);
  for (std::size_t i = 0; i < source.size(); ++i) EXPECT_EQ(result[i], 2 * source[i]);
}

// ---- Gamma ----

struct Curve {
  double knee, slope, gain, offset, baseOffset, baseFactor, exponent;

  double operator()(double v) const { return std::pow((v + baseOffset) * baseFactor, exponent) * gain - offset; }
};
constexpr Curve kForward = {0.018, 4.5, 1.099, 0.099, 0.0, 1.0, 0.45};
constexpr Curve kInverse = {0.0812, 0.2222222222222222, 1.0, 0.0, 0.099, 0.9099181073703366, 2.2222222222222223};

Zim32s storedInteger(double y) {
  const double t = y + 0.5;
  const auto i = static_cast<Zim32s>(t);
  return i % 2 != 0 && static_cast<Zim32f>(t) == static_cast<Zim32f>(i) ? i - 1 : i;
}

Zim32s integerOf(const Curve& curve, std::size_t sample, double maximum, double scale) {
  const auto x = static_cast<double>(sample), v = x * scale;
  return storedInteger(v >= curve.knee ? curve(v) * maximum : x * curve.slope);
}

TEST(Gamma, EveryValueOfBothIntegerTypes) {
  const struct {
    const Curve& curve;
    decltype(&zimiGammaFwd_8u_C3IR) bytes;
    decltype(&zimiGammaFwd_16u_C3IR) words;
  } forms[] = {{kForward, zimiGammaFwd_8u_C3IR, zimiGammaFwd_16u_C3IR},
               {kInverse, zimiGammaInv_8u_C3IR, zimiGammaInv_16u_C3IR}};
  for (const auto& form : forms) {
    std::vector<Zim8u> bytes(258);
    std::iota(bytes.begin(), bytes.end(), Zim8u{0});
    ASSERT_EQ(form.bytes(bytes.data(), 258, {86, 1}), zimResultOk);
    for (std::size_t x = 0; x < 256; ++x) EXPECT_EQ(bytes[x], integerOf(form.curve, x, 255.0, 1.0 / 255.0)) << x;
    // Wide enough for a table, and the same without one, in rows.
    std::vector<Zim16u> words(3 * 21846), direct;
    std::iota(words.begin(), words.end(), Zim16u{0});
    direct = words;
    ASSERT_EQ(form.words(words.data(), 6 * 21846, {21846, 1}), zimResultOk);
    for (std::size_t i = 0; i < direct.size(); i += 6 * 331) {
      ASSERT_EQ(form.words(&direct[i], 6 * 662, {662, 1}), zimResultOk);
    }
    for (std::size_t x = 0; x < 65536; ++x) {
      ASSERT_EQ(words[x], integerOf(form.curve, x, 65535.0, 1.5259021896696422e-05)) << x;
      ASSERT_EQ(direct[x], words[x]) << x;
    }
  }
}

TEST(Gamma, KnownWords) {
  const Zim16u from[] = {0, 1, 2, 1179, 1180, 32768, 5321, 5322, 65535};
  Zim16u forward[9], inverse[9];
  ASSERT_EQ(zimiGammaFwd_16u_C3R(from, 18, forward, 18, {3, 1}), zimResultOk);
  ASSERT_EQ(zimiGammaInv_16u_C3R(from, 18, inverse, 18, {3, 1}), zimResultOk);
  EXPECT_EQ(std::vector<Zim16u>(forward, forward + 6), (std::vector<Zim16u>{0, 4, 9, 5306, 5326, 46236}));
  EXPECT_EQ(std::vector<Zim16u>(inverse + 5, inverse + 9), (std::vector<Zim16u>{17013, 1182, 1179, 65535}));
}

using GammaFloat = decltype(&zimiGammaFwd_32f_C3R);

// Samples of all kinds against the formula with the library's pow, bit for bit.
void expectCurve(GammaFloat convert, const Curve& curve, const std::vector<Zim32f>& samples, Zim32f vMin, Zim32f vMax) {
  const auto width = static_cast<Zim32s>(samples.size() / 3);
  std::vector<Zim32f> results(samples.size());
  ASSERT_EQ(convert(samples.data(), 12 * width, results.data(), 12 * width, {width, 1}, vMin, vMax), zimResultOk);
  const double range = vMax - vMin, inverseRange = 1.0 / range;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double d = samples[i] - vMin, v = inverseRange * d;
    const auto expected = static_cast<Zim32f>((v >= curve.knee ? curve(v) * range : d * curve.slope) + vMin);
    ASSERT_TRUE(std::memcmp(&results[i], &expected, 4) == 0 || (std::isnan(results[i]) && std::isnan(expected)))
        << std::hexfloat << samples[i] << " of " << vMin << " to " << vMax << " gives " << results[i] << ", not "
        << expected;
  }
}

TEST(Gamma, FloatsAreThoseOfPow) {
  std::mt19937_64 random(7);
  std::vector<Zim32f> samples;
  for (int i = 0; i < 3 << 18; ++i) {
    const auto bits = static_cast<Zim32u>(random());
    // Mostly in the range and around the knees, some of any bits at all.
    Zim32f x = static_cast<Zim32f>(bits) * 0x1p-32F;
    if (i % 16 == 0) std::memcpy(&x, &bits, 4);
    if (i % 16 == 1) x = 0.018F + static_cast<Zim32f>(static_cast<Zim32s>(bits)) * 0x1p-50F;
    if (i % 16 == 2) x = 0.0812F + static_cast<Zim32f>(static_cast<Zim32s>(bits)) * 0x1p-50F;
    if (i % 16 == 3) x *= 40.0F;
    samples.push_back(x);
  }
  const std::array<Zim32f, 2> ranges[] = {{0, 1},      {-10, 10},       {0.25F, 3},     {1e6F, 1.1e6F}, {-1, 1e-3F},
                                          {0, 1e-38F}, {-3e38F, 3e38F}, {0, kInfinity}, {kNan, 1}};
  for (const auto& [vMin, vMax] : ranges) {
    auto scaled = samples;
    for (Zim32f& x : scaled) x = x * (vMax - vMin) + vMin;
    expectCurve(zimiGammaFwd_32f_C3R, kForward, scaled, vMin, vMax);
    expectCurve(zimiGammaInv_32f_C3R, kInverse, scaled, vMin, vMax);
  }
}

// Single pixels take the formula; all other forms give the same in every rounding mode, each in its own.
TEST(Gamma, InEveryRoundingMode) {
  std::vector<Zim32f> samples;
  std::vector<Zim16u> words;
  for (int i = 0; i < 3 * 500; ++i) {
    samples.push_back(static_cast<Zim32f>(i) / 1400.0F);
    words.push_back(static_cast<Zim16u>(i * 43));
  }
  const auto expectAsSinglePixels = [](auto convert, const auto& source, auto... range) {
    auto together = source, apart = source;
    constexpr auto pixelBytes = static_cast<Zim32s>(3 * sizeof source[0]);
    const auto width = static_cast<Zim32s>(source.size() / 3);
    convert(source.data(), pixelBytes * width, together.data(), pixelBytes * width, ZimiSize{width, 1}, range...);
    for (std::size_t i = 0; i < source.size(); i += 3) {
      convert(&source[i], pixelBytes, &apart[i], pixelBytes, ZimiSize{1, 1}, range...);
    }
    EXPECT_EQ(std::memcmp(together.data(), apart.data(), source.size() * sizeof source[0]), 0);
  };
  for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
    std::fesetround(mode);
    expectAsSinglePixels(zimiGammaFwd_32f_C3R, samples, 0.0F, 1.0F);
    expectAsSinglePixels(zimiGammaInv_32f_C3R, samples, 0.0F, 1.0F);
    expectAsSinglePixels(zimiGammaFwd_16u_C3R, words);
    expectAsSinglePixels(zimiGammaInv_16u_C3R, words);
  }
}

// ---- Tone mapping ----

std::vector<Zim8u> mapped(decltype(&zimiToneMapMean_32f8u_C1R) map, const std::vector<Zim32f>& image,
                          ZimResult expected = zimResultOk) {
  std::vector<Zim8u> result(image.size(), 99);
  EXPECT_EQ(map(image.data(), 4 * static_cast<Zim32s>(image.size()), result.data(), 1,
                {static_cast<Zim32s>(image.size()), 1}),
            expected);
  return result;
}

TEST(ToneMapping, KnownImages) {
  using Zim = std::vector<Zim8u>;
  const auto linear = zimiToneMapLinear_32f8u_C1R, mean = zimiToneMapMean_32f8u_C1R;
  EXPECT_EQ(mapped(linear, {1.0F, 0.5F, -1.0F, 0.0F}), (Zim{255, 127, 1, 0}));
  EXPECT_EQ(mapped(linear, {0.3F, 0.0F}), (Zim{254, 0}));
  EXPECT_EQ(mapped(mean, std::vector<Zim32f>(40, 0.25F)), Zim(40, 127));
  EXPECT_EQ(mapped(mean, {1.0F, 0.0F, 0.0F, -0.5F}), (Zim{255, 0, 0, 0}));
  for (auto map : {linear, mean}) {
    EXPECT_EQ(mapped(map, {0, 0, 0}), (Zim{0, 0, 0}));
    EXPECT_EQ(mapped(map, {1e-40F, 1e-42F}), (Zim{0, 0}));
    EXPECT_EQ(mapped(map, {-1, -2}, zimWarnNoOperation), (Zim{99, 99}));
  }
  EXPECT_EQ(mapped(mean, {1.0F, -3.0F}, zimWarnNoOperation), (Zim{99, 99}));
  EXPECT_EQ(mapped(linear, {1.0F, -3.0F})[0], 255);
  EXPECT_EQ(mapped(mean, {1.0F, kNan}), (Zim{0, 0}));
}

TEST(ToneMapping, TestsOfArguments) {
  const Zim32f zeros[2] = {}, ones[2] = {1, 1};
  Zim8u out[2];
  for (auto map : {zimiToneMapLinear_32f8u_C1R, zimiToneMapMean_32f8u_C1R}) {
    EXPECT_EQ(map(nullptr, 8, out, 2, {0, 1}), zimResultNullPointer);
    EXPECT_EQ(map(zeros, 8, nullptr, 2, {0, 1}), zimResultBadSize);
    EXPECT_EQ(map(zeros, 8, nullptr, 2, {2, 0}), zimResultBadSize);
    EXPECT_EQ(map(zeros, 8, nullptr, 2, {2, 1}), zimResultNullPointer);
    EXPECT_EQ(map(ones, 8, out, 2, {2, 1}), zimResultOk);
  }
}

// Samples of very different sizes, so that the order of the additions shows in the mean.
TEST(ToneMapping, OrderOfTheSum) {
  std::mt19937 random(5);
  for (Zim32s width : {1, 2, 3, 15, 16, 17, 18, 31, 32, 33, 47, 64, 129}) {
    for (Zim32s height : {1, 3}) {
      std::vector<Zim32f> image(static_cast<std::size_t>(width * height));
      for (Zim32f& x : image) x = std::ldexp(static_cast<Zim32f>(random() % 65536), static_cast<int>(random() % 60));
      double even = 0, odd = 0;
      for (Zim32s row = 0; row < height; ++row) {
        const Zim32f* x = &image[static_cast<std::size_t>(row * width)];
        double a[2] = {even}, b[2] = {odd}, c[2] = {};
        const Zim32s blocks = width / 16 * 16;
        for (Zim32s i = 0; i < blocks; ++i) (i % 2 != 0 ? b : i / 4 % 2 == 0 ? a : c)[i % 4 / 2] += x[i];
        even = (a[0] + c[0]) + (a[1] + c[1]);
        odd = b[0] + b[1];
        for (Zim32s i = blocks; i < width; ++i) (i % 2 != 0 ? odd : even) += x[i];
      }
      const double mean = (odd + even) / (width * height);
      const auto scale = static_cast<Zim32f>(255.0 / (mean + mean));
      std::vector<Zim8u> result(image.size());
      ASSERT_EQ(zimiToneMapMean_32f8u_C1R(image.data(), 4 * width, result.data(), width, {width, height}), zimResultOk);
      for (std::size_t i = 0; i < image.size(); ++i) {
        const Zim32f t = image[i] * scale;
        ASSERT_EQ(result[i], t >= 255.0F ? 255 : static_cast<Zim8u>(t)) << width << " x " << height;
      }
    }
  }
}

TEST(ToneMapping, ScanWalksBytesWhereMappingWalksSamples) {
  // A step of 9 bytes: the second row is scanned at byte 9, and mapped at byte 8.
  alignas(4) unsigned char bytes[16] = {};
  const auto put = [&](std::size_t at, Zim32f x) { std::memcpy(bytes + at, &x, 4); };
  put(0, 1.0F);
  put(9, 4.0F);
  Zim32f atEight;
  std::memcpy(&atEight, bytes + 8, 4);
  Zim8u out[2];
  ASSERT_EQ(zimiToneMapLinear_32f8u_C1R(reinterpret_cast<const Zim32f*>(bytes), 9, out, 1, {1, 2}), zimResultOk);
  EXPECT_EQ(out[0], 63);  // 255 / 4
  EXPECT_EQ(out[1], static_cast<Zim8u>(static_cast<Zim32s>(atEight * 63.75F)));
}

}  // namespace
