// Values of the gray conversions, worked out from their arithmetic.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "tests/pixels.h"

namespace zim::test {
namespace {

using namespace catalogue;

using Weights = std::vector<double>;

// "8u" for bytes, and so on.
template <class T>
std::string typeName() {
  using Limits = std::numeric_limits<T>;
  return std::to_string(8 * sizeof(T)) + (!Limits::is_integer ? "f" : Limits::is_signed ? "s" : "u");
}

// One row of pixels, as wide as they are many, from three samples a pixel or four. Without weights by the form that
// takes none, or, where there is none, and where asked for, by null in their place.
template <class T, std::size_t stride>
std::vector<T> grayOf(const std::vector<Pixel<T>>& pixels, const Weights& weights, bool null = sizeof(T) == 8) {
  std::vector<T> source, gray(pixels.size());
  for (const auto& [a, b, c] : pixels) {
    source.insert(source.end(), {a, b, c});
    if constexpr (stride == 4) source.push_back(T(77));
  }
  const std::string operation = weights.empty() && !null ? "zimiRGBToGray_" : "zimiColorToGray_";
  const Export& e = *find(operation + typeName<T>() + (stride == 3 ? "_C3C1R" : "_AC4C1R"));
  Operands operands(e, {static_cast<Zim32s>(pixels.size()), 1});
  operands.source.planes[0] = source.data();
  operands.destination.planes[0] = gray.data();
  if (!weights.empty()) {
    operands.value("coeffs").set(weights);
  } else if (null) {
    operands.value("coeffs").setNull();
  }
  EXPECT_EQ(Caller(e)(operands), zimResultOk);
  return gray;
}

template <class T>
std::vector<Pixel<T>> randomPixels(int count) {
  std::mt19937 random(2);
  std::vector<Pixel<T>> pixels;
  while (count-- > 0) {
    const auto draw = [&] { return static_cast<T>(random()); };
    pixels.push_back({draw(), draw(), draw()});
  }
  return pixels;
}

// ---- Known values ------------------------------------------------------------------------------------------------

template <class T>
struct Known {
  Pixel<T> pixel;
  T gray;
};

// Each pixel many times over, so that blocks of pixels and the rest of a row give it alike.
template <class T>
void expectKnown(const std::vector<Known<T>>& known, const Weights& weights = {}) {
  for (const auto& [pixel, gray] : known) {
    for (const std::size_t width : {1U, 40U}) {
      const std::vector pixels(width, pixel);
      const std::vector expected(width, gray);
      EXPECT_EQ((grayOf<T, 3>(pixels, weights)), expected) << +pixel[0] << ' ' << +pixel[1] << ' ' << +pixel[2];
      EXPECT_EQ((grayOf<T, 4>(pixels, weights)), expected) << +pixel[0] << ' ' << +pixel[1] << ' ' << +pixel[2];
    }
  }
}

TEST(Gray, FixedWeights) {
  expectKnown<Zim8u>({{{255, 255, 255}, 255},
                      {{255, 0, 0}, 76},
                      {{0, 255, 0}, 150},
                      {{0, 0, 255}, 29},
                      {{128, 128, 128}, 128},
                      {{1, 1, 1}, 1},
                      {{0, 0, 0}, 0},
                      {{2, 0, 0}, 1},  // 2450 of 4096, rounded
                      {{0, 0, 4}, 0}});
  expectKnown<Zim16u>({{{65535, 65535, 65535}, 65535},
                       {{65535, 0, 0}, 19595},
                       {{0, 65535, 0}, 38469},
                       {{0, 0, 65535}, 7471},
                       {{1, 1, 1}, 1},
                       {{0, 0, 4}, 0},
                       {{0, 0, 5}, 1}});
  expectKnown<Zim16s>({{{-32768, -32768, -32768}, -32768}, {{32767, 32767, 32767}, 32767}, {{0, 0, 0}, 0}});
  expectKnown<Zim32f>({{{1, 0, 0}, 0.299F}, {{0, 1, 0}, 0.587F}, {{0, 0, 1}, 0.114F}, {{-2, 0, 0}, -0.598F}});
  // The single-precision weights, not the decimal ones.
  expectKnown<Zim64f>({{{1, 0, 0}, 0.29899999499320984},
                       {{0, 1, 0}, 0.5870000123977661},
                       {{0, 0, 1}, 0.11400000005960464},
                       {{0, 0, -4}, -0.45600000023841858}});
}

TEST(Gray, SumsBeyondTheRangeKeepTheirLowBits) {
  expectKnown<Zim8u>({{{255, 255, 0}, 254}, {{128, 128, 9}, 0}, {{100, 100, 0}, 200}}, Weights{1, 1, 0});
  expectKnown<Zim8u>({{{1, 0, 0}, 255}, {{0, 2, 0}, 255}}, Weights{-1, -0.5F, 0});
  expectKnown<Zim16u>({{{65535, 65535, 0}, 65534}}, Weights{1, 1, 0});
  expectKnown<Zim16u>({{{3, 0, 0}, 65534}, {{1, 0, 0}, 0}}, Weights{-1, 0, 0});  // -2.5 and -0.5, truncated
  expectKnown<Zim16s>({{{0, 0, 0}, -32768}, {{32767, 32767, 0}, -1}}, Weights{0.5F, 0.5F, -1});
  expectKnown<Zim16s>({{{32767, 32767, 0}, 32766}, {{0, 0, 0}, -32768}}, Weights{1, 1, 0});
}

TEST(Gray, WeightsOfBytesAreRoundedOnce) {
  // -0.25 comes to -1023, so that the second sample's 0.2495 (1022) all but makes up for it, and its 0.25 (1024) more.
  expectKnown<Zim8u>({{{255, 255, 0}, 0}, {{6, 0, 0}, 255}, {{2, 0, 0}, 0}}, Weights{-0.25F, 0.2495F, 0});
}

TEST(Gray, HalfIsAddedBeforeTheSecondProduct) {
  // Single precision has even numbers only above 16777216: with the half the sum rounds up, without it down.
  expectKnown<Zim16u>({{{1, 1, 0}, 2}, {{1, 0, 1}, 2}, {{0, 1, 0}, 0}}, {1, 16777216, 16777216});
}

// ---- Any weights, against plain integers -------------------------------------------------------------------------

Zim8u plainGray(const Pixel<Zim8u>& p, const Weights& weights) {
  const auto term = [](Zim8u sample, Zim64f weight) {
    return sample * static_cast<Zim32u>(truncated(weight * 4096.0 + 0.5));
  };
  return static_cast<Zim8u>((term(p[0], weights[0]) + term(p[1], weights[1]) + term(p[2], weights[2]) + 2048U) >> 12);
}

TEST(Gray, WideWeightsOfBytes) {
  std::mt19937 random(1);
  auto pixels = randomPixels<Zim8u>(495);
  pixels.insert(pixels.end(), {{255, 255, 255}, {0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}});
  std::vector<Zim32f> values = {0,        1,       -1,    0.25F, -0.25F, 7.9998F,  8,        -8,
                                -8.0002F, 15.999F, 16,    100,   -40.5F, 1e4F,     -123456,  5e5F,
                                524287,   1e9F,    -3e9F, 1e-5F, NAN,    INFINITY, -INFINITY};
  for (int i = 0; i < 10; ++i)
    values.push_back(std::ldexp(static_cast<Zim32f>(random()), -static_cast<int>(random() % 40)));
  for (const Zim32f wa : values) {
    for (const Zim32f wb : values) {
      const Weights weights = {wa, wb, values[random() % values.size()]};
      std::vector<Zim8u> expected;
      for (const auto& p : pixels) expected.push_back(plainGray(p, weights));
      ASSERT_EQ((grayOf<Zim8u, 3>(pixels, weights)), expected) << wa << ' ' << wb << ' ' << weights[2];
      ASSERT_EQ((grayOf<Zim8u, 4>(pixels, weights)), expected) << wa << ' ' << wb << ' ' << weights[2];
    }
  }
}

template <class T>
void expectNullWeightsAreFixed() {
  const auto pixels = randomPixels<T>(101);
  EXPECT_EQ((grayOf<T, 3>(pixels, {}, true)), (grayOf<T, 3>(pixels, {})));
}

TEST(Gray, NullWeightsAreTheFixedOnes) {
  expectNullWeightsAreFixed<Zim8u>();
  expectNullWeightsAreFixed<Zim16u>();
  expectNullWeightsAreFixed<Zim16s>();
  expectNullWeightsAreFixed<Zim32f>();
  // In bytes 0.299, 0.587 and 0.114 come to the same.
  const auto pixels = randomPixels<Zim8u>(1000);
  EXPECT_EQ((grayOf<Zim8u, 3>(pixels, {0.299F, 0.587F, 0.114F})), (grayOf<Zim8u, 3>(pixels, {})));
}

}  // namespace
}  // namespace zim::test
