// Full-resolution luma-chroma and YCoCg: known values, every triple of bytes against the formula in plain integers, and
// round trips.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "tests/pixels.h"

namespace zim::test {
namespace {

using Bytes = Pixel<Zim8u>;

TEST(KnownValues, InterleavedBytes) {
  const struct {
    const char* name;
    Bytes pixel, expected;
  } cases[] = {
      {"zimiRGBToYCbCr_8u_C3R", {0, 0, 0}, {16, 128, 128}},
      {"zimiRGBToYCbCr_8u_C3R", {255, 255, 255}, {235, 128, 128}},
      {"zimiRGBToYUV_8u_C3R", {0, 0, 0}, {0, 128, 128}},
      {"zimiRGBToYUV_8u_C3R", {255, 255, 255}, {255, 128, 128}},
      // V of pure red and of cyan lies outside a byte.
      {"zimiRGBToYUV_8u_C3R", {255, 0, 0}, {76, 90, 255}},
      {"zimiRGBToYUV_8u_C3R", {0, 255, 255}, {178, 165, 0}},
      // Truncated, and rounded.
      {"zimiYCbCrToRGB_8u_C3R", {235, 128, 128}, {254, 254, 254}},
      {"zimiYCbCrToRGB_8u_P3C3R", {235, 128, 128}, {255, 255, 255}},
      {"zimiYCbCrToRGB_8u_C3R", {16, 128, 128}, {0, 0, 0}},
  };
  for (const auto& c : cases) {
    expectFormula<Zim8u, Zim8u>(c.name, std::vector(256, c.pixel), [&](const Bytes&) { return c.expected; });
  }
}

Zim8u low8(int x) { return static_cast<Zim8u>(x & 255); }
Zim8u saturated(int x) { return static_cast<Zim8u>(std::clamp(x, 0, 255)); }

template <class Formula>
void expectOnBytes(const char* name, const Formula& formula) {
  expectFormula<Zim8u, Zim8u>(name, allBytes(), [&](const Bytes& p) { return formula(p[0], p[1], p[2]); });
}

TEST(AllTriples, RgbToYCbCr) {
  expectOnBytes("zimiRGBToYCbCr_8u_C3R", [](int r, int g, int b) {
    return Bytes{low8((16843 * r + 33030 * g + 6423 * b + 1081344) >> 16),
                 low8((-9699 * r - 19071 * g + 28770 * b - 8355840) >> 16),
                 low8((28770 * r - 24117 * g - 4653 * b - 8355840) >> 16)};
  });
}

TEST(AllTriples, RgbToYuv) {
  expectOnBytes("zimiRGBToYUV_8u_C3R", [](int r, int g, int b) {
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

TEST(AllTriples, Decoders) {
  constexpr Decoder d601 = {76284, 104595, -25690, -53281, 132186, 1220544, 0};
  constexpr Decoder d601b = {76282, 104593, -25689, -53279, 132184, 1220512, 32768};
  constexpr Decoder d709 = {76284, 117506, -13959, -34996, 138609, 1220544, 32768};
  constexpr Decoder dYuv = {65536, 74711, -25821, -38076, 133169, 0, 0};
  constexpr Decoder dYuvB = {65536, 74710, -25820, -38075, 133168, 0, 0};
  expectOnBytes("zimiYCbCrToRGB_8u_C3R", d601);
  expectOnBytes("zimiYCbCrToRGB_8u_P3C3R", d601b);
  expectOnBytes("zimiYCbCrToBGR_709CSC_8u_P3C3R", [&](int y, int u, int v) {
    const auto [r, g, b] = d709(y, u, v);
    return Bytes{b, g, r};
  });
  expectOnBytes("zimiYUVToRGB_8u_C3R", dYuv);
  expectOnBytes("zimiYUVToRGB_8u_P3C3R", dYuvB);
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
}  // namespace zim::test
