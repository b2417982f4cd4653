// Decoders of shared chroma, packed 16-bit targets and their dither, against formulas in plain integers: one for each
// formula and each way with lone columns, at every luma with every pair of chroma and at all small sizes; every sample
// at every place of the dither's pattern.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

#include "tests/canvas.h"
#include "tests/chroma_view.h"
#include "tests/pixels.h"

namespace zim::test {
namespace {

using namespace catalogue;

// ---- Formulas -----------------------------------------------------------------------------------------------------

using Rgb = Pixel<int>;
using Formula = Rgb (*)(int y, int cb, int cr);

int sat(int x) { return std::clamp(x, 0, 255); }

template <int luma, int redV, int greenU, int greenV, int blueU, int bias, int half>
Rgb fixedPoint(int y, int cb, int cr) {
  const int l = luma * y - bias + half, u = cb - 128, v = cr - 128;
  return {sat((l + redV * v) >> 16), sat((l + greenU * u + greenV * v) >> 16), sat((l + blueU * u) >> 16)};
}
constexpr Formula d601 = fixedPoint<76284, 104595, -25690, -53281, 132186, 1220544, 32768>;
constexpr Formula d601Cut = fixedPoint<76284, 104595, -25690, -53281, 132186, 1220544, 0>;
constexpr Formula d601b = fixedPoint<76282, 104593, -25689, -53279, 132184, 1220512, 32768>;
constexpr Formula d709 = fixedPoint<76284, 117506, -13959, -34996, 138609, 1220544, 32768>;
constexpr Formula dHdtv = fixedPoint<65536, 100925, -11993, -30081, 119013, 0, 32768>;
constexpr Formula dYuv = fixedPoint<65536, 74711, -25821, -38076, 133169, 0, 0>;
constexpr Formula dYuvRounded = fixedPoint<65536, 74711, -25821, -38076, 133169, 0, 32768>;
constexpr Formula d411 = fixedPoint<76294, 104595, -25625, -53281, 132186, 1220704, 0>;

Rgb k601(int y, int cb, int cr) {
  return {sat((76284 * y + 104595 * cr - 14608761) >> 16), sat((76284 * y - 53281 * cr - 25690 * cb + 8887730) >> 16),
          sat((76284 * y + 132186 * cb - 18140365) >> 16)};
}

Rgb inFloat(int y, int cb, int cr) {
  const float l = static_cast<float>(y - 16) * 1.164F + 0.5F;
  const float u = static_cast<float>(cb) - 128.0F, v = static_cast<float>(cr) - 128.0F;
  const float a = 1.596F * v, b = v * 0.813F, c = 0.392F * u, d = u * 2.017F;
  return {sat(static_cast<int>(l + a)), sat(static_cast<int>((l - c) - b)), sat(static_cast<int>(l + d))};
}

Rgb scaled(int l, int cb, int cr, int redV, int blueU, int greenU, int greenV) {
  const int cv = cr * 128 - 16384, cu = cb * 128 - 16384;
  const int a = (cu * greenU) >> 16, b = (cv * greenV) >> 16;
  return {sat((l + ((cv * redV) >> 16)) >> 4), sat((l - a - b) >> 4), sat((l + ((cu * blueU) >> 16)) >> 4)};
}
Rgb s601(int y, int cb, int cr) { return scaled((y * 1220480 - 19527680) >> 16, cb, cr, 13074, 16523, 3211, 6660); }
Rgb sYuv(int y, int cb, int cr) { return scaled(y * 16, cb, cr, 9338, 16646, 3227, 4759); }

constexpr int kT4[4][4] = {
    {0, 2312, 578, 2890}, {3468, 1156, 4046, 1734}, {867, 3179, 289, 2601}, {4335, 2023, 3757, 1445}};
constexpr int kT5[4][4] = {
    {0, 1118, 279, 1398}, {1678, 559, 1957, 839}, {419, 1538, 139, 1258}, {2097, 978, 1817, 699}};

int dithered(int c, int bits, int x, int y) {
  const int t4 = kT4[y & 3][x & 3], t5 = kT5[y & 3][x & 3];
  const auto level = [c](int levels, int step, int t) {
    const int q = (c * levels) >> 8;
    return c * 256 - q * step > t ? q + 1 : q;
  };
  return bits == 4   ? level(15, 4352, t4)
         : bits == 5 ? (level(31, 2105, t5) * 2105) >> 11
                     : (level(63, 1036, t5 >> 1) * 1036) >> 10;
}

// ---- Rules --------------------------------------------------------------------------------------------------------

// What chroma a lone column takes, if it is converted.
enum class Lone { leftAlone, ownChroma, asGroupBefore, halfFromPairBefore, oneSampleForBoth };

struct Rule {
  const char* name;
  ChromaLayout layout;  // of the source
  Formula formula;
  Lone lone = Lone::leftAlone;
};

// clang-format off
const Rule kRules[] = {
    {"zimiYCbCr420ToRGB_8u_P3C3R",             {"P3 YCbCr 420"}, d601},
    {"zimiYCbCr422ToRGB_8u_P3C3R",             {"P3 YCbCr 422"}, d601b, Lone::ownChroma},
    {"zimiYCbCr422ToBGR_8u_P3C3R",             {"P3 YCbCr 422"}, k601},
    {"zimiYCrCb422ToRGB_8u_C2C3R",             {"C2 YCrCb 422"}, k601, Lone::halfFromPairBefore},
    {"zimiYCbCr411ToBGR_8u_P3C3R",             {"P3 YCbCr 411"}, d411, Lone::asGroupBefore},
    {"zimiYCbCr420ToBGR_709CSC_8u_P3C3R",      {"P3 YCbCr 420"}, d709},
    {"zimiCbYCr422ToBGR_709HDTV_8u_C2C3R",     {"C2 CbYCr 422"}, dHdtv, Lone::halfFromPairBefore},
    {"zimiYUV420ToRGB_8u_P3C3R",               {"P3 YUV 420"},   dYuv},
    {"zimiYUV420ToRGB_8u_P3AC4R",              {"P3 YUV 420"},   dYuvRounded},
    {"zimiYCbCr420ToRGB_8u_P2C4R",             {"P2 CbCr 420"},  inFloat},
    {"zimiYCbCrToBGR565_8u16u_C3R",            {"C3 YCbCr 444"}, d601Cut, Lone::ownChroma},
    {"zimiYCbCrToRGB565Dither_8u16u_C3R",      {"C3 YCbCr 444"}, s601, Lone::ownChroma},
    {"zimiYCbCr422ToRGB444Dither_8u16u_C2C3R", {"C2 YCbCr 422"}, s601, Lone::oneSampleForBoth},
    {"zimiYUV420ToBGR565Dither_8u16u_P3C3R",   {"P3 YUV 420"},   sYuv, Lone::ownChroma},
};
// clang-format on

using LumaAt = std::function<int(int x, int y)>;
using ChromaAt = std::function<std::array<int, 2>(int column, int row)>;

class Conversion {
 public:
  Conversion(const Rule& rule, ZimiSize size, const LumaAt& luma, const ChromaAt& chroma)
      : rule_(rule), e_(exportOf(rule.name)), size_(size), luma_(luma), chroma_(chroma) {}

  void expectRule() const {
    Image source(e_.source, size_), destination(e_.destination, size_), expected(e_.destination, size_);
    putSource(ChromaView(source, rule_.layout));
    destination.fill(kCanary);
    expected.fill(kCanary);
    const bool whole = rule_.lone != Lone::leftAlone;
    for (int y = 0; y < (whole ? size_.height : size_.height / down_ * down_); ++y) {
      for (int x = 0; x < (whole ? size_.width : size_.width / across_ * across_); ++x) put(expected, x, y);
    }
    Operands operands(e_, source, destination);
    if (!e_.further.empty()) operands.value("aval").set({kAlpha});
    ASSERT_EQ(Caller(e_)(operands), resultOf(e_, size_)) << rule_.name;
    expectEqual(destination, expected);
    ASSERT_FALSE(testing::Test::HasFatalFailure()) << rule_.name;
  }

 private:
  static constexpr Zim8u kAlpha = 77;

  void putSource(const ChromaView& source) const {
    for (int y = 0; y < size_.height; ++y) {
      for (int x = 0; x < size_.width; ++x) source.luma(x, y) = static_cast<std::byte>(luma_(x, y));
    }
    for (int row = 0; row < (size_.height + down_ - 1) / down_; ++row) {
      for (int column = 0; column < (size_.width + across_ - 1) / across_; ++column) {
        const auto [cb, cr] = chroma_(column, row);
        if (auto* sample = source.chroma('b', column, row)) *sample = static_cast<std::byte>(cb);
        if (auto* sample = source.chroma('r', column, row)) *sample = static_cast<std::byte>(cr);
      }
    }
  }

  Rgb formulaAt(int x, int y) const {
    const int column = x / across_, row = y / down_;
    auto [cb, cr] = chroma_(column, row);
    if (x >= size_.width / across_ * across_ && rule_.lone != Lone::ownChroma) {
      const bool crFirst = rule_.layout.order() == "YCrCb";
      if (column > 0 && rule_.lone != Lone::oneSampleForBoth) {
        const auto [cbBefore, crBefore] = chroma_(column - 1, row);
        (crFirst ? cb : cr) = crFirst ? cbBefore : crBefore;
        if (rule_.lone == Lone::asGroupBefore) cb = cbBefore;
      } else {
        (crFirst ? cb : cr) = crFirst ? cr : cb;
      }
    }
    return rule_.formula(luma_(x, y), cb, cr);
  }

  void put(Image& image, int x, int y) const {
    const auto [r, g, b] = formulaAt(x, y);
    const std::string& colours = e_.destination.colourWord;
    const Rgb ordered = colours[0] == 'B' ? Rgb{b, g, r} : Rgb{r, g, b};
    if (e_.destination.type == SampleType::u16) {
      const int bits = colours[3] - '0', greenBits = colours[4] - '0';
      const bool dither = e_.operation.ends_with("Dither");
      const auto field = [&](int c, int n) { return dither ? dithered(c, n, x, y) : c >> (8 - n); };
      Samples<Zim16u>{image}(x, y, 0) =
          static_cast<Zim16u>(field(ordered[0], bits) | field(ordered[1], greenBits) << bits |
                              field(ordered[2], bits) << (bits + greenBits));
      return;
    }
    const Samples<Zim8u> samples(image);
    for (std::size_t c = 0; c < 3; ++c) samples(x, y, c) = static_cast<Zim8u>(ordered[c]);
    if (e_.destination.layout == "C4") samples(x, y, 3) = kAlpha;
    if (e_.destination.layout == "AC4") samples(x, y, 3) = 0;
  }

  const Rule& rule_;
  const Export& e_;
  const int across_ = rule_.layout.across(), down_ = rule_.layout.down();
  const ZimiSize size_;
  const LumaAt& luma_;
  const ChromaAt& chroma_;
};

// ---- Tests --------------------------------------------------------------------------------------------------------

// Images of blocks or groups that together have each luma with each pair of chroma: Cb by groups of columns, Cr by
// rows.
TEST(Decoders, EveryLumaWithEveryPairOfChroma) {
  for (const Rule& rule : kRules) {
    const int down = rule.layout.down(), across = rule.layout.across(), columnsOfCb = 256 / down;
    Conversion(
        rule, {256 * columnsOfCb, 256 * down}, [&](int x, int y) { return x % columnsOfCb * down + y % down; },
        [&](int column, int row) {
          return std::array{column * across / columnsOfCb, row};
        })
        .expectRule();
  }
}

TEST(Decoders, SmallSizes) {
  std::mt19937 random(1);
  std::array<int, 4096> noise;
  for (int& sample : noise) sample = static_cast<int>(random() & 255);
  const auto at = [&](int x, int y) { return noise[static_cast<std::size_t>(x * 61 + y * 787) % noise.size()]; };
  for (const Rule& rule : kRules) {
    const ZimiSize least = exportOf(rule.name).least;
    for (int width = least.width; width <= 40; ++width) {
      for (int height = least.height; height <= 5; ++height) {
        Conversion(rule, {width, height}, at, [&](int column, int row) {
          return std::array{at(column + 100, row), at(column, row + 100)};
        }).expectRule();
      }
    }
  }
}

// Gray through YUV is the sample itself.
TEST(Dither, EverySampleAtEveryPlace) {
  for (const char* name : {"zimiYUV420ToBGR444Dither_8u16u_P3C3R", "zimiYUV420ToRGB555Dither_8u16u_P3C3R",
                           "zimiYUV420ToBGR565Dither_8u16u_P3C3R"}) {
    Conversion(
        {name, {"P3 YUV 420"}, sYuv, Lone::ownChroma}, {1024, 8}, [](int x, int) { return x / 4; },
        [](int, int) {
          return std::array{128, 128};
        })
        .expectRule();
  }
}

TEST(Dither, KnownLevels) {
  const auto converted = [](auto convert, Zim8u gray) {
    const std::vector<Zim8u> luma(16, gray), chroma(4, 128);
    const Zim8u* planes[] = {luma.data(), chroma.data(), chroma.data()};
    const Zim32s steps[] = {4, 2, 2};
    std::array<Zim16u, 16> words;
    EXPECT_EQ(convert(planes, steps, words.data(), 8, {4, 4}), zimResultOk);
    return words;
  };
  std::array<Zim16u, 16> expected;
  expected.fill(0);
  EXPECT_EQ(converted(zimiYUV420ToRGB565Dither_8u16u_P3C3R, 0), expected);
  // White is one level of green short at one place.
  expected.fill(0xFFFF);
  expected[12] = 0xFFDF;
  EXPECT_EQ(converted(zimiYUV420ToRGB565Dither_8u16u_P3C3R, 255), expected);
  for (std::size_t i = 0; i < 16; ++i) expected[i] = (i / 4 + i) % 2 == 1 ? 0x777 : 0x888;
  EXPECT_EQ(converted(zimiYUV420ToBGR444Dither_8u16u_P3C3R, 128), expected);
}

// The one column of packed 4:2:2 becomes bytes, at half the distance of rows.
TEST(PackedTargets, OneColumn) {
  const Zim8u source[] = {235, 128, 16, 128};
  alignas(Zim16u) std::array<Zim8u, 7> bytes;
  bytes.fill(7);
  ASSERT_EQ(zimiYCbCr422ToBGR565_8u16u_C2C3R(source, 2, reinterpret_cast<Zim16u*>(bytes.data()), 8, {1, 2}),
            zimResultOk);
  EXPECT_EQ(bytes, (std::array<Zim8u, 7>{254, 254, 254, 7, 0, 0, 0}));
}

}  // namespace
}  // namespace zim::test
