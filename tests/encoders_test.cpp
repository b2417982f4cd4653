// Encoders with chroma shared by pixels: one for each rule and each tail against the formulas in plain integers, over
// all colours and at all small widths.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <span>

#include "tests/canvas.h"
#include "tests/chroma_view.h"
#include "tests/pixels.h"

namespace zim::test {
namespace {

using namespace catalogue;
using Colour = Pixel<int>;  // R, G, B

// ---- Formulas ----

struct Set {
  Colour y, cb, cr;
  int lumaBias;
};
constexpr Set k601 = {{16843, 33030, 6423}, {-9699, -19071, 28770}, {28770, -24117, -4653}, 1081344};
constexpr Set k709 = {{11993, 40239, 4063}, {-6619, -22151, 28770}, {28770, -26149, -2621}, 1081344};
constexpr Set kHdtv = {{13959, 46858, 4719}, {-7668, -25821, 33489}, {33489, -30409, -3080}, 32768};

int dot(const Colour& c, const Colour& rgb) { return c[0] * rgb[0] + c[1] * rgb[1] + c[2] * rgb[2]; }
int yuvSum(const Colour& rgb) { return dot({19595, 38470, 7471}, rgb); }
using Group = std::span<const Colour>;
Colour sumOf(Group pixels) {
  Colour sum = {};
  for (const Colour& p : pixels) sum = {sum[0] + p[0], sum[1] + p[1], sum[2] + p[2]};
  return sum;
}

using Luma = std::function<int(const Colour& rgb, int x, int y)>;
// Chroma of the pixels that share it, and for the filter of the second pixel of the pair before.
using Chroma = std::function<std::array<int, 2>(Group pixels, const Colour& before)>;

Luma exactLuma(const Set& set) {
  return [&](const Colour& rgb, int, int) { return (dot(set.y, rgb) + set.lumaBias) >> 16; };
}
int lumaOddTruncated(const Colour& rgb, int x, int) {
  return (dot(k601.y, rgb) + (x % 2 == 0 ? 1081344 : 1048576)) >> 16;
}
int lumaGuarded(const Colour& rgb, int, int) { return std::clamp((dot(kHdtv.y, rgb) + 32768) >> 16, 1, 254); }
int lumaYuv(const Colour& rgb, int, int) { return yuvSum(rgb) >> 16; }
int lumaYuvRounded(const Colour& rgb, int, int) { return (yuvSum(rgb) + 32768) >> 16; }

Chroma mean(const Set& set, int shift, int cbOffset, int crOffset) {
  return [&set, shift, cbOffset, crOffset](Group pixels, const Colour&) {
    const Colour s = sumOf(pixels);
    return std::array{((dot(set.cb, s) + cbOffset) >> shift) & 255, ((dot(set.cr, s) + crOffset) >> shift) & 255};
  };
}
Chroma guarded(int shift, int cbOffset, int crOffset) {
  return [=](Group pixels, const Colour&) {
    const Colour s = sumOf(pixels);
    return std::array{std::clamp((dot(kHdtv.cb, s) + cbOffset) >> shift, 1, 254),
                      std::clamp((dot(kHdtv.cr, s) + crOffset) >> shift, 1, 254)};
  };
}
std::array<int, 2> yuvChroma(Group pixels, const Colour&) {
  const int n = static_cast<int>(pixels.size()), shift = n == 1 ? 16 : n == 2 ? 17 : 18;
  const Colour s = sumOf(pixels);
  const int tu = (s[2] * 65536 - yuvSum(s) + 32768 * n - 1) >> 16;
  const int tv = (s[0] * 65536 - yuvSum(s) + 32768 * n - 1) >> 16;
  return {(((tu * 32244) >> shift) - 128) & 255, std::clamp(((tv * 57475) >> shift) + 128, 0, 255)};
}
std::array<int, 2> filtered(Group pixels, const Colour& before) {
  const auto of = [&](const Colour& c) {
    return (((dot(c, pixels[0]) >> 1) + (dot(c, before) >> 2) + (dot(c, pixels[1]) >> 2) - 8355841) >> 16) & 255;
  };
  return {of(k601.cb), of(k601.cr)};
}
std::array<int, 2> floatChroma(Group pixels, const Colour&) {
  const Colour s = sumOf(pixels);
  const auto r = static_cast<float>(s[0]), g = static_cast<float>(s[1]), b = static_cast<float>(s[2]);
  const float cb1 = -0.148F * r, cb2 = cb1 + 512.0F, cb3 = 0.439F * b, cb4 = cb2 + cb3, cb5 = 0.291F * g;
  const float cr1 = r * 0.439F, cr2 = cr1 + 512.0F, cr3 = 0.071F * b, cr4 = cr2 - cr3, cr5 = 0.368F * g;
  const float cb = (cb4 - cb5) * 0.25F, cr = (cr4 - cr5) * 0.25F;
  return {static_cast<int>(cb + 0.5F), static_cast<int>(cr + 0.5F)};
}
int floatLuma(const Colour& rgb, int x, int y) {
  const float r = 0.257F * static_cast<float>(rgb[0]), g = 0.504F * static_cast<float>(rgb[1]),
              b = 0.098F * static_cast<float>(rgb[2]);
  const bool first = x % 2 == 0 && y % 2 == 0;
  return static_cast<int>(first ? ((g + 16.5F) + b) + r : ((r + 16.5F) + g) + b);
}

// ---- Rules ----

// What becomes of pixels that are no whole group.
enum class Tail { leftAlone, lumaAndFirst, luma, whole, lumaOfEdges };

struct Rule {
  const char* name;
  ChromaLayout layout;  // of the destination
  Luma luma;
  Chroma chroma;
  Tail tail = Tail::leftAlone;
  Chroma lone = {};  // chroma of a pixel that has no others
};

void PrintTo(const Rule& rule, std::ostream* stream) { *stream << rule.name; }

std::vector<Rule> rules() {
  using enum Tail;
  const Luma y601 = exactLuma(k601), y709 = exactLuma(k709);
  const Chroma pairHalf = mean(k601, 17, -16711680, -16711680), pairTrim = mean(k601, 17, -16711680, -16711682);
  const Chroma pairEighth = mean(k601, 17, -16760832, -16760832);
  const Chroma four = mean(k601, 18, -33521664, -33521664), four709 = mean(k709, 18, -33521664, -33521664);
  const Chroma pairGuarded = guarded(17, 16842752, 16842750), blockGuarded = guarded(18, 33587200, 33587200);
  const Chroma lone = mean(k601, 16, -8355840, -8355840), loneEighth = mean(k601, 16, -8380416, -8380416);
  const Chroma loneGuarded = guarded(16, 8421376, 8421376);
  // clang-format off
  return {
      {"zimiRGBToYCbCr422_8u_C3C2R",          {"C2 YCbCr 422"}, lumaOddTruncated, pairHalf, lumaAndFirst, lone},
      {"zimiRGBToCbYCr422_8u_C3C2R",          {"C2 CbYCr 422"}, y601, filtered, lumaAndFirst, lone},
      {"zimiBGRToCbYCr422_8u_AC4C2R",         {"C2 CbYCr 422"}, y601, pairTrim, lumaAndFirst, lone},
      {"zimiBGRToCbYCr422_709HDTV_8u_C3C2R",  {"C2 CbYCr 422"}, lumaGuarded, pairGuarded, lumaAndFirst, loneGuarded},
      {"zimiBGRToYCbCr422_8u_C3C2R",          {"C2 YCbCr 422"}, y601, pairEighth, lumaAndFirst, loneEighth},
      {"zimiBGRToYCbCr422_8u_C3P3R",          {"P3 YCbCr 422"}, y601, pairEighth, Tail::luma},
      {"zimiBGRToYCbCr411_8u_C3P3R",          {"P3 YCbCr 411"}, y601, four},
      {"zimiRGBToYCbCr420_8u_C3P3R",          {"P3 YCbCr 420"}, y601, four},
      {"zimiBGRToYCbCr420_709CSC_8u_C3P2R",   {"P2 CbCr 420"},  y709, four709},
      {"zimiBGRToYCbCr420_709HDTV_8u_AC4P3R", {"P3 YCbCr 420"}, lumaGuarded, blockGuarded},
      {"zimiRGBToYCbCr420_8u_C3P2R",          {"P2 CbCr 420"},  floatLuma, floatChroma},
      {"zimiRGBToYUV420_8u_C3P3R",            {"P3 YUV 420"},   lumaYuv, yuvChroma},
      {"zimiBGRToYUV420_8u_AC4P3R",           {"P3 YUV 420"},   lumaYuv, yuvChroma},
      {"zimiRGBToYUV422_8u_P3R",              {"P3 YUV 422"},   lumaYuv, yuvChroma, whole, yuvChroma},
      {"zimiBGR555ToYUV420_16u8u_C3P3R",      {"P3 YUV 420"},   lumaYuvRounded, yuvChroma},
      {"zimiBGR565ToYCbCr420_16u8u_C3P3R",    {"P3 YCbCr 420"}, y601, four, lumaOfEdges},
  };
  // clang-format on
}

// Stores a colour in a source, and gives back what is left of it.
Colour put(Image& source, int x, int y, const Colour& colour) {
  const std::string& word = source.side().colourWord;
  const Colour ordered = word[0] == 'B' ? Colour{colour[2], colour[1], colour[0]} : colour;
  if (source.side().type == SampleType::u16) {
    const int green = word.ends_with("565") ? 6 : 5;
    // The unused bit of 555 is set at every other pixel.
    const int unused = green == 5 && x % 2 == 0 ? 0x8000 : 0;
    Samples<Zim16u>{source}(x, y, 0) = static_cast<Zim16u>(ordered[0] >> 3 | (ordered[1] >> (8 - green)) << 5 |
                                                           (ordered[2] >> 3) << (5 + green) | unused);
    return {colour[0] & 0xF8, colour[1] & (green == 6 ? 0xFC : 0xF8), colour[2] & 0xF8};
  }
  for (std::size_t c = 0; c < 3; ++c) Samples<Zim8u>{source}(x, y, c) = static_cast<Zim8u>(ordered[c]);
  return colour;
}

class EachRule : public testing::TestWithParam<Rule> {
 protected:
  const Rule& rule = GetParam();
  const Export& e = exportOf(rule.name);
  const int across = rule.layout.across(), down = rule.layout.down();

  template <class ColourAt>
  void expectRule(ZimiSize size, const ColourAt& colourAt) const {
    Image source(e.source, size), destination(e.destination, size), expected(e.destination, size);
    destination.fill(kCanary);
    expected.fill(kCanary);
    std::vector<Colour> colours;
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) colours.push_back(put(source, x, y, colourAt(x, y)));
    }
    putExpected(colours, size, ChromaView(expected, rule.layout));
    ASSERT_EQ(Caller(e)(Operands(e, source, destination)), resultOf(e, size));
    expectEqual(destination, expected);
  }

 private:
  void putExpected(const std::vector<Colour>& colours, ZimiSize size, const ChromaView& to) const {
    const auto colour = [&](int x, int y) { return colours[static_cast<std::size_t>(y * size.width + x)]; };
    const auto putLuma = [&](int x, int y) { to.luma(x, y) = static_cast<std::byte>(rule.luma(colour(x, y), x, y)); };
    const int columns = size.width / across, rows = size.height / down;
    for (int row = 0; row < rows; ++row) {
      Colour before = {};
      for (int column = 0; column < columns; ++column) {
        std::array<Colour, 4> group;
        std::size_t count = 0;
        for (int y = row * down; y < (row + 1) * down; ++y) {
          for (int x = column * across; x < (column + 1) * across; ++x) {
            putLuma(x, y);
            group[count++] = colour(x, y);
          }
        }
        const auto [cb, cr] = rule.chroma({group.data(), count}, before);
        *to.chroma('b', column, row) = static_cast<std::byte>(cb);
        *to.chroma('r', column, row) = static_cast<std::byte>(cr);
        before = group[count - 1];
      }
    }
    if (rule.tail == Tail::leftAlone) return;
    for (int y = 0; y < size.height; ++y) {
      for (int x = y < rows * down ? columns * across : 0; x < size.width; ++x) {
        putLuma(x, y);
        if (!rule.lone) continue;
        const Colour lone = colour(x, y);
        const auto [cb, cr] = rule.lone({&lone, 1}, {});
        *to.chroma('b', columns, y) = static_cast<std::byte>(cb);
        if (rule.tail == Tail::whole) *to.chroma('r', columns, y) = static_cast<std::byte>(cr);
      }
    }
  }
};

TEST_P(EachRule, SmallSizes) {
  std::mt19937 random(1);
  // Often an end of the range.
  const auto sample = [&] {
    const auto draw = static_cast<unsigned>(random());
    return draw % 8 == 0 ? 0 : draw % 8 == 1 ? 255 : static_cast<int>(draw >> 24);
  };
  for (int width = e.least.width; width <= 67; ++width) {
    for (int height = e.least.height; height <= 5; ++height) {
      expectRule({width, height}, [&](int, int) { return Colour{sample(), sample(), sample()}; });
      ASSERT_FALSE(HasFatalFailure());
    }
  }
}

// As groups of one colour, and many in an order in which neighbours have nothing to do with one another.
TEST_P(EachRule, AllColours) {
  constexpr int shades = 1 << 16;
  const auto colourOf = [](unsigned i) {
    return Colour{static_cast<int>(i >> 16 & 255), static_cast<int>(i >> 8 & 255), static_cast<int>(i & 255)};
  };
  // Words have no more than 32 reds.
  for (unsigned part = 0; part < 256; part += e.source.type == SampleType::u16 ? 8 : 1) {
    expectRule({shades * across / 16, 16 * down}, [&](int x, int y) {
      return colourOf(part << 16 | static_cast<unsigned>(y / down * (shades / 16) + x / across));
    });
    ASSERT_FALSE(HasFatalFailure());
    if (part % 8 != 0) continue;
    expectRule({shades / 16, 16}, [&](int x, int y) {
      return colourOf((part << 16 | static_cast<unsigned>(y * (shades / 16) + x)) * 2654435761U);
    });
    ASSERT_FALSE(HasFatalFailure());
  }
}

INSTANTIATE_TEST_SUITE_P(All, EachRule, testing::ValuesIn(rules()),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace zim::test
