// Full-resolution luma-chroma and YCoCg: known values, every triple of bytes against the formula in plain integers, and
// round trips.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "zimcc.h"

namespace {

using Bytes = std::array<Zim8u, 3>;
using Interleaved = ZimResult (*)(const Zim8u*, Zim32s, Zim8u*, Zim32s, ZimiSize);

Bytes converted(Interleaved convert, Bytes pixel) {
  Bytes result;
  EXPECT_EQ(convert(pixel.data(), 3, result.data(), 3, {1, 1}), zimResultOk);
  return result;
}

TEST(KnownValues, InterleavedBytes) {
  const struct {
    Interleaved convert;
    Bytes pixel, expected;
  } cases[] = {
      {zimiRGBToYCbCr_8u_C3R, {0, 0, 0}, {16, 128, 128}},
      {zimiRGBToYCbCr_8u_C3R, {255, 255, 255}, {235, 128, 128}},
      {zimiRGBToYUV_8u_C3R, {0, 0, 0}, {0, 128, 128}},
      {zimiRGBToYUV_8u_C3R, {255, 255, 255}, {255, 128, 128}},
      // V of pure red and of cyan lies outside a byte.
      {zimiRGBToYUV_8u_C3R, {255, 0, 0}, {76, 90, 255}},
      {zimiRGBToYUV_8u_C3R, {0, 255, 255}, {178, 165, 0}},
      {zimiYCbCrToRGB_8u_C3R, {235, 128, 128}, {254, 254, 254}},
      {zimiYCbCrToRGB_8u_C3R, {16, 128, 128}, {0, 0, 0}},
  };
  for (const auto& c : cases) EXPECT_EQ(converted(c.convert, c.pixel), c.expected);
}

TEST(KnownValues, RoundedAndTruncatedDecodersDifferAtWhite) {
  const Zim8u y = 235, c = 128;
  const Zim8u* planes[] = {&y, &c, &c};
  std::array<Zim8u, 4> pixel;
  for (auto convert : {zimiYCbCrToRGB_8u_P3C3R, zimiYCbCrToBGR_8u_P3C3R, zimiYCbCrToBGR_709CSC_8u_P3C3R}) {
    pixel = {1, 2, 3, 4};
    ASSERT_EQ(convert(planes, 1, pixel.data(), 3, {1, 1}), zimResultOk);
    EXPECT_EQ(pixel, (std::array<Zim8u, 4>{255, 255, 255, 4}));
  }
  for (auto convert : {zimiYCbCrToRGB_8u_P3C4R, zimiYCbCrToBGR_8u_P3C4R, zimiYCbCrToBGR_709CSC_8u_P3C4R}) {
    ASSERT_EQ(convert(planes, 1, pixel.data(), 4, {1, 1}, 77), zimResultOk);
    EXPECT_EQ(pixel, (std::array<Zim8u, 4>{255, 255, 255, 77}));
  }
}

// All 2^24 triples, in one image.
class AllTriples : public testing::Test {
 protected:
  static constexpr Zim32s width = 65536, height = 256;
  static constexpr std::size_t pixels = std::size_t{1} << 24;

  static Bytes triple(std::size_t i) {
    return {static_cast<Zim8u>(i >> 16), static_cast<Zim8u>(i >> 8), static_cast<Zim8u>(i)};
  }

  // The results of convert, and of what it stands for, are the same for each.
  template <class Formula>
  static void expectFormula(Interleaved convert, const Formula& formula) {
    std::vector<Zim8u> source(3 * pixels), result(3 * pixels);
    for (std::size_t i = 0; i < pixels; ++i) std::ranges::copy(triple(i), &source[3 * i]);
    ASSERT_EQ(convert(source.data(), 3 * width, result.data(), 3 * width, {width, height}), zimResultOk);
    for (std::size_t i = 0; i < pixels; ++i) {
      const auto [a, b, c] = triple(i);
      const Bytes expected = formula(a, b, c);
      if (!std::equal(expected.begin(), expected.end(), &result[3 * i])) FAIL() << +a << ' ' << +b << ' ' << +c;
    }
  }
};

Zim8u low8(int x) { return static_cast<Zim8u>(x & 255); }
Zim8u saturated(int x) { return static_cast<Zim8u>(std::clamp(x, 0, 255)); }

TEST_F(AllTriples, RgbToYCbCr) {
  expectFormula(zimiRGBToYCbCr_8u_C3R, [](int r, int g, int b) {
    return Bytes{low8((16843 * r + 33030 * g + 6423 * b + 1081344) >> 16),
                 low8((-9699 * r - 19071 * g + 28770 * b - 8355840) >> 16),
                 low8((28770 * r - 24117 * g - 4653 * b - 8355840) >> 16)};
  });
}

TEST_F(AllTriples, RgbToYuv) {
  expectFormula(zimiRGBToYUV_8u_C3R, [](int r, int g, int b) {
    const int s = 19595 * r + 38470 * g + 7471 * b;
    const int tu = (b * 65536 - s + 32767) >> 16, tv = (r * 65536 - s + 32767) >> 16;
    return Bytes{low8(s >> 16), low8(((tu * 32244) >> 16) - 128), saturated(((tv * 57475) >> 16) + 128)};
  });
}

// Luma, v in red, u and v in green, u in blue, all in units of 1/65536.
struct Decoder {
  int luma, redV, greenU, greenV, blueU, bias, rounding;

  Bytes operator()(int y, int cb, int cr) const {
    const int l = luma * y - bias + rounding, u = cb - 128, v = cr - 128;
    return {saturated((l + redV * v) >> 16), saturated((l + greenU * u + greenV * v) >> 16),
            saturated((l + blueU * u) >> 16)};
  }
};

// Planes for the forms that read planes; the interleaved triples are taken apart row by row.
template <auto convert>
ZimResult fromPlanes(const Zim8u* source, Zim32s step, Zim8u* destination, Zim32s destinationStep, ZimiSize size) {
  const auto width = static_cast<std::size_t>(size.width);
  std::vector<Zim8u> planes(3 * width);
  const Zim8u* pointers[] = {&planes[0], &planes[width], &planes[2 * width]};
  for (Zim32s row = 0; row < size.height; ++row, source += step, destination += destinationStep) {
    for (std::size_t x = 0; x < width; ++x) {
      for (std::size_t c = 0; c < 3; ++c) planes[c * width + x] = source[3 * x + c];
    }
    const ZimResult result = convert(pointers, size.width, destination, destinationStep, {size.width, 1});
    if (result != zimResultOk) return result;
  }
  return zimResultOk;
}

TEST_F(AllTriples, Decoders) {
  constexpr Decoder d601 = {76284, 104595, -25690, -53281, 132186, 1220544, 0};
  constexpr Decoder d601b = {76282, 104593, -25689, -53279, 132184, 1220512, 32768};
  constexpr Decoder d709 = {76284, 117506, -13959, -34996, 138609, 1220544, 32768};
  constexpr Decoder dYuv = {65536, 74711, -25821, -38076, 133169, 0, 0};
  constexpr Decoder dYuvB = {65536, 74710, -25820, -38075, 133168, 0, 0};
  expectFormula(zimiYCbCrToRGB_8u_C3R, d601);
  expectFormula(fromPlanes<zimiYCbCrToRGB_8u_P3C3R>, d601b);
  expectFormula(fromPlanes<zimiYCbCrToBGR_709CSC_8u_P3C3R>, [&](int y, int u, int v) {
    const auto [r, g, b] = d709(y, u, v);
    return Bytes{b, g, r};
  });
  expectFormula(zimiYUVToRGB_8u_C3R, dYuv);
  expectFormula(fromPlanes<zimiYUVToRGB_8u_P3C3R>, dYuvB);
}

TEST(Alpha, CarriedAcrossWithoutTestOfItsPlane) {
  const Zim8u pixel[] = {10, 20, 30, 99};
  Zim8u planes[4] = {};
  Zim8u* pointers[] = {&planes[0], &planes[1], &planes[2], &planes[3]};
  ASSERT_EQ(zimiRGBToYUV_8u_AC4P4R(pixel, 4, pointers, 1, {1, 1}), zimResultOk);
  EXPECT_EQ(planes[3], 99);
}

// ---- YCoCg ----

template <class T, class P>
std::array<P, 3> planesOf(ZimResult (*convert)(const T*, Zim32s, P* const*, Zim32s, ZimiSize), std::array<T, 3> pixel) {
  std::array<P, 3> planes;
  P* const pointers[] = {&planes[0], &planes[1], &planes[2]};
  EXPECT_EQ(convert(pixel.data(), 12, pointers, 4, {1, 1}), zimResultOk);
  return planes;
}

template <class P, class T>
std::array<T, 3> pixelOf(ZimResult (*convert)(const P* const*, Zim32s, T*, Zim32s, ZimiSize), std::array<P, 3> planes) {
  std::array<T, 3> pixel;
  const P* const pointers[] = {&planes[0], &planes[1], &planes[2]};
  EXPECT_EQ(convert(pointers, 4, pixel.data(), 12, {1, 1}), zimResultOk);
  return pixel;
}

TEST(YCoCg, KnownValues) {
  using Words = std::array<Zim16s, 3>;
  using Longs = std::array<Zim32s, 3>;
  EXPECT_EQ(planesOf(zimiBGRToYCoCg_8u16s_C3P3R, Bytes{0, 0, 255}), (Words{64, 128, -64}));
  EXPECT_EQ(planesOf(zimiRGBToYCoCg_8u_C3P3R, Bytes{0, 255, 0}), (Bytes{128, 128, 255}));
  EXPECT_EQ(planesOf(zimiRGBToYCoCg_8u_C3P3R, Bytes{93, 93, 93}), (Bytes{93, 128, 128}));
  EXPECT_EQ(pixelOf(zimiYCoCgToRGB_8u_P3C3R, Bytes{93, 128, 128}), (Bytes{93, 93, 93}));
  // Chroma of 32768 keeps its low bits, and is whole in 32 bits.
  EXPECT_EQ(planesOf(zimiSBGRToYCoCg_16s_C3P3R, Words{-32768, 0, 32767}), (Words{0, -32768, 0}));
  EXPECT_EQ(planesOf(zimiSBGRToYCoCg_16s32s_C3P3R, Words{-32768, 0, 32767}), (Longs{0, 32768, 0}));
  EXPECT_EQ(planesOf(zimiSBGRToYCoCg_Rev_16s_C3P3R, Words{-32768, 0, 32767})[1], -1);
  EXPECT_EQ(planesOf(zimiSBGRToYCoCg_Rev_16s32s_C3P3R, Words{-32768, 0, 32767})[1], 65535);
  // Y + Cg = 70000 is cut to 4464 before it saturates; stored in 16 bits, that is what is left.
  EXPECT_EQ(pixelOf(zimiYCoCgToBGR_16s8u_P3C3R, Words{32767, 0, 32767}), (Bytes{0, 0, 0}));
  EXPECT_EQ(pixelOf(zimiYCoCgToSBGR_32s16s_P3C3R, Longs{40000, 0, 30000}), (Words{10000, 4464, 10000}));
}

TEST(YCoCg, WordsKeepTheLowBitsOfTheFormula) {
  constexpr std::size_t pixels = 1 << 18;
  std::vector<Zim16s> source(3 * pixels), planes(3 * pixels);
  Zim32u state = 1;
  for (Zim16s& x : source) {
    state = state * 1664525U + 1013904223U;
    // Now and then an end of the range, where sums leave it.
    x = static_cast<Zim16s>((state >> 8) % 8 == 0 ? (state >> 31 != 0 ? -32768 : 32767)
                                                  : static_cast<int>(state >> 16) - 32768);
  }
  Zim16s* const pointers[] = {&planes[0], &planes[pixels], &planes[2 * pixels]};
  ASSERT_EQ(zimiSBGRToYCoCg_16s_C3P3R(source.data(), 1, pointers, 1, {static_cast<Zim32s>(pixels), 1}), zimResultOk);
  for (std::size_t i = 0; i < pixels; ++i) {
    const int b = source[3 * i], g = source[3 * i + 1], r = source[3 * i + 2];
    ASSERT_EQ(planes[i], static_cast<Zim16s>((r + 2 * g + b + 2) >> 2));
    ASSERT_EQ(planes[pixels + i], static_cast<Zim16s>((r - b + 1) >> 1));
    ASSERT_EQ(planes[2 * pixels + i], static_cast<Zim16s>((2 * g - r - b + 2) >> 2));
  }
}

// Forward and back gives the pixels again, bytes and words alike.
template <class T, class P, class Forward, class Inverse>
void expectRoundTrip(const std::vector<T>& pixels, Forward forward, Inverse inverse) {
  const auto width = static_cast<Zim32s>(pixels.size() / 3);
  std::vector<P> planes(pixels.size());
  P* const pointers[] = {&planes[0], &planes[pixels.size() / 3], &planes[pixels.size() / 3 * 2]};
  std::vector<T> back(pixels.size());
  ASSERT_EQ(forward(pixels.data(), 1, pointers, 1, {width, 1}), zimResultOk);
  ASSERT_EQ(inverse(pointers, 1, back.data(), 1, {width, 1}), zimResultOk);
  EXPECT_EQ(back, pixels);
}

TEST(YCoCg, ReversibleFormsInvert) {
  std::vector<Zim8u> bytes;
  std::vector<Zim16s> words;
  for (unsigned i = 0; i < 3U << 20; ++i) {
    bytes.push_back(static_cast<Zim8u>(i * 2654435761U >> 24));
    words.push_back(static_cast<Zim16s>(i * 2654435761U >> 16));
  }
  expectRoundTrip<Zim8u, Zim16s>(bytes, zimiBGRToYCoCg_Rev_8u16s_C3P3R, zimiYCoCgToBGR_Rev_16s8u_P3C3R);
  expectRoundTrip<Zim16s, Zim16s>(words, zimiSBGRToYCoCg_Rev_16s_C3P3R, zimiYCoCgToSBGR_Rev_16s_P3C3R);
  expectRoundTrip<Zim16s, Zim32s>(words, zimiSBGRToYCoCg_Rev_16s32s_C3P3R, zimiYCoCgToSBGR_Rev_32s16s_P3C3R);
}

}  // namespace
