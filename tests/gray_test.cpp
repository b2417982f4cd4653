// Values of the gray conversions, worked out from their arithmetic.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <type_traits>
#include <vector>

#include "zimcc.h"

namespace {

template <class T>
using WeightOf = std::conditional_t<std::is_same_v<T, Zim64f>, Zim64f, Zim32f>;

template <class T>
using Weights = std::array<WeightOf<T>, 3>;

// zimiColorToGray_* of a sample type with pixels of three samples or four.
template <class T, int stride>
constexpr auto colorToGray() {
  constexpr bool c3 = stride == 3;
  if constexpr (std::is_same_v<T, Zim8u>) return c3 ? zimiColorToGray_8u_C3C1R : zimiColorToGray_8u_AC4C1R;
  if constexpr (std::is_same_v<T, Zim16u>) return c3 ? zimiColorToGray_16u_C3C1R : zimiColorToGray_16u_AC4C1R;
  if constexpr (std::is_same_v<T, Zim16s>) return c3 ? zimiColorToGray_16s_C3C1R : zimiColorToGray_16s_AC4C1R;
  if constexpr (std::is_same_v<T, Zim32f>) return c3 ? zimiColorToGray_32f_C3C1R : zimiColorToGray_32f_AC4C1R;
  if constexpr (std::is_same_v<T, Zim64f>) return c3 ? zimiColorToGray_64f_C3C1R : zimiColorToGray_64f_AC4C1R;
}

// The same for zimiRGBToGray_*; 64f has none, and null weights in its place.
template <class T, int stride>
constexpr auto rgbToGray() {
  constexpr bool c3 = stride == 3;
  if constexpr (std::is_same_v<T, Zim8u>) return c3 ? zimiRGBToGray_8u_C3C1R : zimiRGBToGray_8u_AC4C1R;
  if constexpr (std::is_same_v<T, Zim16u>) return c3 ? zimiRGBToGray_16u_C3C1R : zimiRGBToGray_16u_AC4C1R;
  if constexpr (std::is_same_v<T, Zim16s>) return c3 ? zimiRGBToGray_16s_C3C1R : zimiRGBToGray_16s_AC4C1R;
  if constexpr (std::is_same_v<T, Zim32f>) return c3 ? zimiRGBToGray_32f_C3C1R : zimiRGBToGray_32f_AC4C1R;
  if constexpr (std::is_same_v<T, Zim64f>) {
    return [](const T* pSrc, Zim32s srcStep, T* pDst, Zim32s dstStep, ZimiSize size) {
      return colorToGray<T, stride>()(pSrc, srcStep, pDst, dstStep, size, nullptr);
    };
  }
}

template <class T>
struct Pixel {
  T a, b, c;
};

// One row of pixels, as wide as they are many.
template <class T, int stride>
std::vector<T> grayOf(const std::vector<Pixel<T>>& pixels, const Weights<T>* weights) {
  std::vector<T> source, gray(pixels.size());
  for (const auto& [a, b, c] : pixels) {
    source.insert(source.end(), {a, b, c});
    if constexpr (stride == 4) source.push_back(T(77));
  }
  const ZimiSize size = {static_cast<Zim32s>(pixels.size()), 1};
  const ZimResult result = weights == nullptr
                               ? rgbToGray<T, stride>()(source.data(), 0, gray.data(), 0, size)
                               : colorToGray<T, stride>()(source.data(), 0, gray.data(), 0, size, weights->data());
  EXPECT_EQ(result, zimResultOk);
  return gray;
}

// ---- Known values ------------------------------------------------------------------------------------------------

template <class T>
struct Known {
  Pixel<T> pixel;
  T gray;
};

// Each pixel many times over, so that blocks of pixels and the rest of a row give it alike.
template <class T>
void expectKnown(const std::vector<Known<T>>& known, const Weights<T>* weights = nullptr) {
  for (const auto& [pixel, gray] : known) {
    for (const std::size_t width : {1U, 40U}) {
      const std::vector pixels(width, pixel);
      const std::vector expected(width, gray);
      EXPECT_EQ((grayOf<T, 3>(pixels, weights)), expected) << +pixel.a << ' ' << +pixel.b << ' ' << +pixel.c;
      EXPECT_EQ((grayOf<T, 4>(pixels, weights)), expected) << +pixel.a << ' ' << +pixel.b << ' ' << +pixel.c;
    }
  }
}

template <class T>
void expectKnown(const std::vector<Known<T>>& known, const Weights<T>& weights) {
  expectKnown(known, &weights);
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
  expectKnown<Zim8u>({{{255, 255, 0}, 254}, {{128, 128, 9}, 0}, {{100, 100, 0}, 200}}, Weights<Zim8u>{1, 1, 0});
  expectKnown<Zim8u>({{{1, 0, 0}, 255}, {{0, 2, 0}, 255}}, Weights<Zim8u>{-1, -0.5F, 0});
  expectKnown<Zim16u>({{{65535, 65535, 0}, 65534}}, Weights<Zim16u>{1, 1, 0});
  expectKnown<Zim16u>({{{3, 0, 0}, 65534}, {{1, 0, 0}, 0}}, Weights<Zim16u>{-1, 0, 0});  // -2.5 and -0.5, truncated
  expectKnown<Zim16s>({{{0, 0, 0}, -32768}, {{32767, 32767, 0}, -1}}, Weights<Zim16s>{0.5F, 0.5F, -1});
  expectKnown<Zim16s>({{{32767, 32767, 0}, 32766}, {{0, 0, 0}, -32768}}, Weights<Zim16s>{1, 1, 0});
}

TEST(Gray, WeightsOfBytesAreRoundedOnce) {
  // 0.299, 0.587 and 0.114 come to 1225, 2404 and 467.
  const Weights<Zim8u> luma = {0.299F, 0.587F, 0.114F};
  std::vector<Pixel<Zim8u>> pixels;
  for (int i = 0; i < 1000; ++i) {
    pixels.push_back({static_cast<Zim8u>(i * 7), static_cast<Zim8u>(i * 31), static_cast<Zim8u>(i * 113)});
  }
  EXPECT_EQ((grayOf<Zim8u, 3>(pixels, &luma)), (grayOf<Zim8u, 3>(pixels, nullptr)));
  // -0.25 comes to -1023, so that the second sample's 0.2495 (1022) all but makes up for it, and its 0.25 (1024) more.
  expectKnown<Zim8u>({{{255, 255, 0}, 0}, {{6, 0, 0}, 255}, {{2, 0, 0}, 0}}, Weights<Zim8u>{-0.25F, 0.2495F, 0});
}

TEST(Gray, HalfIsAddedBeforeTheSecondProduct) {
  // Single precision has even numbers only above 16777216: with the half the sum rounds up, without it down.
  const Weights<Zim16u> weights = {1, 16777216, 16777216};
  expectKnown<Zim16u>({{{1, 1, 0}, 2}, {{1, 0, 1}, 2}, {{0, 1, 0}, 0}}, weights);
}

// ---- Any weights, against plain integers -------------------------------------------------------------------------

// What the processor makes of a number that may not fit.
Zim32s truncated(Zim64f x) {
  return x > -2147483649.0 && x < 2147483648.0 ? static_cast<Zim32s>(x) : std::numeric_limits<Zim32s>::min();
}

Zim8u plainGray(const Pixel<Zim8u>& p, const Weights<Zim8u>& weights) {
  const auto term = [](Zim8u sample, Zim32f weight) {
    return sample * static_cast<Zim32u>(truncated(static_cast<Zim64f>(weight) * 4096.0 + 0.5));
  };
  return static_cast<Zim8u>((term(p.a, weights[0]) + term(p.b, weights[1]) + term(p.c, weights[2]) + 2048U) >> 12);
}

TEST(Gray, WideWeightsOfBytes) {
  std::mt19937 random(1);
  std::vector<Pixel<Zim8u>> pixels = {{255, 255, 255}, {0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
  while (pixels.size() < 500) {
    const auto draw = random();
    pixels.push_back({static_cast<Zim8u>(draw), static_cast<Zim8u>(draw >> 8), static_cast<Zim8u>(draw >> 16)});
  }
  std::vector<Zim32f> values = {0,        1,       -1,    0.25F, -0.25F, 7.9998F,  8,        -8,
                                -8.0002F, 15.999F, 16,    100,   -40.5F, 1e4F,     -123456,  5e5F,
                                524287,   1e9F,    -3e9F, 1e-5F, NAN,    INFINITY, -INFINITY};
  for (int i = 0; i < 10; ++i)
    values.push_back(std::ldexp(static_cast<Zim32f>(random()), -static_cast<int>(random() % 40)));
  for (const Zim32f wa : values) {
    for (const Zim32f wb : values) {
      const Weights<Zim8u> weights = {wa, wb, values[random() % values.size()]};
      std::vector<Zim8u> expected;
      for (const auto& p : pixels) expected.push_back(plainGray(p, weights));
      ASSERT_EQ((grayOf<Zim8u, 3>(pixels, &weights)), expected) << wa << ' ' << wb << ' ' << weights[2];
      ASSERT_EQ((grayOf<Zim8u, 4>(pixels, &weights)), expected) << wa << ' ' << wb << ' ' << weights[2];
    }
  }
}

template <class T>
void expectNullWeightsAreFixed() {
  std::mt19937 random(2);
  std::vector<T> source(3 * 101);
  for (T& sample : source) sample = static_cast<T>(random());
  std::vector<T> fixed(101), null(101);
  const ZimiSize size = {101, 1};
  EXPECT_EQ((rgbToGray<T, 3>()(source.data(), 0, fixed.data(), 0, size)), zimResultOk);
  EXPECT_EQ((colorToGray<T, 3>()(source.data(), 0, null.data(), 0, size, nullptr)), zimResultOk);
  EXPECT_EQ(fixed, null);
}

TEST(Gray, NullWeightsAreTheFixedOnes) {
  expectNullWeightsAreFixed<Zim8u>();
  expectNullWeightsAreFixed<Zim16u>();
  expectNullWeightsAreFixed<Zim16s>();
  expectNullWeightsAreFixed<Zim32f>();
}

// ---- Steps -------------------------------------------------------------------------------------------------------

// Rows of one gray pixel each, from rows whose distance is some samples less or more than the step says.
template <class T>
void expectRowDistance(Zim32s step, int samplesApart) {
  SCOPED_TRACE(std::to_string(sizeof(T)) + " bytes a sample, step " + std::to_string(step));
  constexpr int rows = 4, room = 64;
  std::array<T, 2 * room> source = {};
  std::array<T, rows> gray = {};
  T* const first = &source[room];
  for (int y = 0; y < rows; ++y) {
    for (int c = 0; c < 3; ++c) first[y * samplesApart + c] = static_cast<T>(y + 1);
  }
  EXPECT_EQ((rgbToGray<T, 3>()(first, step, gray.data(), sizeof(T), {1, rows})), zimResultOk);
  EXPECT_EQ(gray, (std::array<T, rows>{1, 2, 3, 4}));
}

TEST(Gray, LowBitsOfStepsAreDropped) {
  expectRowDistance<Zim16u>(7, 3);
  expectRowDistance<Zim16u>(-7, -4);
  expectRowDistance<Zim16s>(9, 4);
  expectRowDistance<Zim32f>(15, 3);
  expectRowDistance<Zim32f>(-13, -4);
  expectRowDistance<Zim8u>(7, 7);
}

// Row offsets are 32-bit products, of bytes or of samples: with a step of 1 GiB they come back to the first row.
template <class T>
void expectOffsetsWrap(int unit) {
  constexpr Zim32s step = 1 << 30;
  const int period = 4 * unit;  // rows until the product is 0 again
  const std::size_t length = static_cast<std::size_t>(period) * step;
  const auto unmap = [length](void* p) { munmap(p, length); };
  void* mapping = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (mapping == MAP_FAILED) GTEST_SKIP() << "no address space of " << (length >> 30) << " GiB";
  const std::unique_ptr<void, decltype(unmap)> owner(mapping, unmap);
  auto* const middle = static_cast<std::byte*>(mapping) + length / 2;

  std::vector<T> gray(static_cast<std::size_t>(period) + 1);
  for (int y = 0; y < period; ++y) {
    const int quarters = y < period / 2 ? y : y - period;
    auto* const row = reinterpret_cast<T*>(middle + std::ptrdiff_t{quarters} * step);
    for (int c = 0; c < 3; ++c) row[c] = static_cast<T>(y + 1);
  }
  const auto* const first = reinterpret_cast<const T*>(middle);
  ASSERT_EQ((rgbToGray<T, 3>()(first, step, gray.data(), sizeof(T), {1, period + 1})), zimResultOk);
  for (int y = 0; y <= period; ++y) EXPECT_EQ(std::lround(gray[static_cast<std::size_t>(y)]), y % period + 1);
}

TEST(Gray, OffsetsWrap8u) { expectOffsetsWrap<Zim8u>(1); }
TEST(Gray, OffsetsWrap16u) { expectOffsetsWrap<Zim16u>(sizeof(Zim16u)); }
TEST(Gray, OffsetsWrap32f) { expectOffsetsWrap<Zim32f>(sizeof(Zim32f)); }
TEST(Gray, OffsetsWrap64f) { expectOffsetsWrap<Zim64f>(1); }

}  // namespace
