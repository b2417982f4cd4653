// Decoders of shared chroma, packed 16-bit targets and their dither, against formulas in plain integers: every luma
// with every pair of chroma, every width from 1 to 40, every sample at every place of the dither's pattern.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <tuple>
#include <vector>

#include "zimcc.h"

namespace {

// ---- Formulas -----------------------------------------------------------------------------------------------------

using Rgb = std::array<int, 3>;
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

// ---- What an export does ------------------------------------------------------------------------------------------

enum class From { planes, crPlaneFirst, twoPlanes, yCbCr, yCrCb, cbYCr, triples };
enum class Lone { leftAlone, ownChroma, asGroupBefore, halfFromPairBefore, oneSampleForBoth };
enum class To { rgb, bgr, rgbFour, bgrFour, planes, word };

struct Word {
  bool bgr = false;
  int bits = 0, greenBits = 0;
  bool dither = false;
};

// Arguments by their types, in the order of a signature: a step follows its pointer.
struct Operands {
  std::array<const Zim8u*, 3> planes;
  std::array<Zim32s, 3> steps;
  std::array<Zim8u*, 3> destination;
  Zim32s destinationStep;
  ZimiSize size;
  std::size_t plane = 0;
  Zim32s step = 0;

  template <class T>
  T next() {
    if constexpr (std::is_same_v<T, ZimiSize>) {
      return size;
    } else if constexpr (std::is_same_v<T, Zim8u>) {
      return 77;
    } else if constexpr (std::is_same_v<T, Zim32s>) {
      return step;
    } else if constexpr (std::is_same_v<T, const Zim8u* const*>) {
      return planes.data();
    } else if constexpr (std::is_same_v<T, const Zim32s*>) {
      return steps.data();
    } else if constexpr (std::is_same_v<T, const Zim8u*>) {
      step = steps[plane];
      return planes[plane++];
    } else {
      step = destinationStep;
      if constexpr (std::is_same_v<T, Zim8u* const*>) {
        return destination.data();
      } else {
        return reinterpret_cast<T>(destination[0]);
      }
    }
  }
};

struct Call {
  std::function<ZimResult(Operands)> call;
  bool hasSteps;

  template <class... Arguments>
  Call(ZimResult (*f)(Arguments...))
      : call([f](Operands o) { return std::apply(f, std::tuple<Arguments...>{o.next<Arguments>()...}); }),
        hasSteps((std::is_same_v<Arguments, Zim32s> || ...)) {}
};

struct Export {
  const char* name;
  Call call;
  From from;
  int across, down;
  Formula formula;
  Lone lone;
  To to;
  bool warns = false;
  Word word = {};
};

#define NAMED(name) #name, name
#define WORDS(prefix, suffix, dither, ...)                                                    \
  {NAMED(prefix##BGR444##suffix), __VA_ARGS__, To::word, false, {true, 4, 4, dither}},        \
      {NAMED(prefix##BGR555##suffix), __VA_ARGS__, To::word, false, {true, 5, 5, dither}},    \
      {NAMED(prefix##BGR565##suffix), __VA_ARGS__, To::word, false, {true, 5, 6, dither}},    \
      {NAMED(prefix##RGB444##suffix), __VA_ARGS__, To::word, false, {false, 4, 4, dither}},   \
      {NAMED(prefix##RGB555##suffix), __VA_ARGS__, To::word, false, {false, 5, 5, dither}}, { \
    NAMED(prefix##RGB565##suffix), __VA_ARGS__, To::word, false, { false, 5, 6, dither }      \
  }

// clang-format off
const std::vector<Export>& exports() {
  using enum From;
  using enum Lone;
  static const std::vector<Export> all = {
      {NAMED(zimiCbYCr422ToRGB_8u_C2C3R), cbYCr, 2, 1, d601b, halfFromPairBefore, To::rgb},
      {NAMED(zimiCbYCr422ToBGR_8u_C2C4R), cbYCr, 2, 1, d601b, halfFromPairBefore, To::bgrFour},
      {NAMED(zimiCbYCr422ToBGR_709HDTV_8u_C2C3R), cbYCr, 2, 1, dHdtv, halfFromPairBefore, To::bgr},
      {NAMED(zimiCbYCr422ToBGR_709HDTV_8u_C2C4R), cbYCr, 2, 1, dHdtv, halfFromPairBefore, To::bgrFour},
      {NAMED(zimiYCbCr422ToRGB_8u_C2C3R), yCbCr, 2, 1, k601, halfFromPairBefore, To::rgb},
      {NAMED(zimiYCbCr422ToRGB_8u_C2P3R), yCbCr, 2, 1, k601, halfFromPairBefore, To::planes},
      {NAMED(zimiYCrCb422ToRGB_8u_C2C3R), yCrCb, 2, 1, k601, halfFromPairBefore, To::rgb},
      {NAMED(zimiYCrCb422ToRGB_8u_C2P3R), yCrCb, 2, 1, k601, halfFromPairBefore, To::planes},
      {NAMED(zimiYCbCr422ToBGR_8u_C2C3R), yCbCr, 2, 1, k601, halfFromPairBefore, To::bgr},
      {NAMED(zimiYCbCr422ToBGR_8u_C2C4R), yCbCr, 2, 1, k601, halfFromPairBefore, To::bgrFour},
      {NAMED(zimiYCbCr422ToBGR_8u_P3C3R), planes, 2, 1, k601, leftAlone, To::bgr},
      {NAMED(zimiYCbCr422ToRGB_8u_P3C3R), planes, 2, 1, d601b, ownChroma, To::rgb},
      {NAMED(zimiYUV422ToRGB_8u_C2C3R), yCbCr, 2, 1, dYuv, halfFromPairBefore, To::rgb},
      {NAMED(zimiYUV422ToRGB_8u_P3R), planes, 2, 1, dYuv, ownChroma, To::planes},
      {NAMED(zimiYUV422ToRGB_8u_P3), planes, 2, 1, dYuv, ownChroma, To::planes},
      {NAMED(zimiYUV422ToRGB_8u_P3C3R), planes, 2, 1, dYuv, ownChroma, To::rgb},
      {NAMED(zimiYUV422ToRGB_8u_P3C3), planes, 2, 1, dYuv, ownChroma, To::rgb},
      {NAMED(zimiYUV422ToRGB_8u_P3AC4R), planes, 2, 1, dYuv, ownChroma, To::rgbFour},
      {NAMED(zimiYCbCr420ToRGB_8u_P3C3R), planes, 2, 2, d601, leftAlone, To::rgb, true},
      {NAMED(zimiYCbCr420ToBGR_8u_P3C3R), planes, 2, 2, d601, leftAlone, To::bgr, true},
      {NAMED(zimiYCbCr420ToBGR_8u_P3C4R), planes, 2, 2, d601, leftAlone, To::bgrFour, true},
      {NAMED(zimiYCrCb420ToRGB_8u_P3C4R), crPlaneFirst, 2, 2, d601, leftAlone, To::rgbFour, true},
      {NAMED(zimiYCbCr420ToRGB_8u_P2C3R), twoPlanes, 2, 2, d601, leftAlone, To::rgb, true},
      {NAMED(zimiYCbCr420ToRGB_8u_P2C4R), twoPlanes, 2, 2, inFloat, leftAlone, To::rgbFour, true},
      {NAMED(zimiYCbCr420ToBGR_709CSC_8u_P3C3R), planes, 2, 2, d709, leftAlone, To::bgr, true},
      {NAMED(zimiYCbCr420ToBGR_709HDTV_8u_P3C4R), planes, 2, 2, dHdtv, leftAlone, To::bgrFour, true},
      {NAMED(zimiYUV420ToBGR_8u_P3C3R), planes, 2, 2, dYuv, leftAlone, To::bgr, true},
      {NAMED(zimiYUV420ToRGB_8u_P3R), planes, 2, 2, dYuv, leftAlone, To::planes, true},
      {NAMED(zimiYUV420ToRGB_8u_P3), planes, 2, 2, dYuv, leftAlone, To::planes, true},
      {NAMED(zimiYUV420ToRGB_8u_P3C3R), planes, 2, 2, dYuv, leftAlone, To::rgb, true},
      {NAMED(zimiYUV420ToRGB_8u_P3C3), planes, 2, 2, dYuv, leftAlone, To::rgb, true},
      {NAMED(zimiYUV420ToRGB_8u_P3AC4R), planes, 2, 2, dYuvRounded, leftAlone, To::rgbFour, true},
      {NAMED(zimiYCbCr411ToBGR_8u_P3C3R), planes, 4, 1, d411, asGroupBefore, To::bgr},
      {NAMED(zimiYCbCr411ToBGR_8u_P3C4R), planes, 4, 1, d411, asGroupBefore, To::bgrFour},
      WORDS(zimiYCbCr420To, _8u16u_P3C3R, false, planes, 2, 2, s601, ownChroma),
      WORDS(zimiYCbCr422To, _8u16u_P3C3R, false, planes, 2, 1, s601, ownChroma),
      WORDS(zimiYCbCrTo, _8u16u_P3C3R, false, planes, 1, 1, s601, ownChroma),
      WORDS(zimiYCbCr422To, _8u16u_C2C3R, false, yCbCr, 2, 1, k601, halfFromPairBefore),
      WORDS(zimiYCbCrTo, _8u16u_C3R, false, triples, 1, 1, d601Cut, ownChroma),
      WORDS(zimiYUV420To, _8u16u_P3C3R, false, planes, 2, 2, dYuv, ownChroma),
      {NAMED(zimiYCbCr411ToBGR555_8u16u_P3C3R), planes, 4, 1, d601, asGroupBefore, To::word, true, {true, 5, 5, false}},
      {NAMED(zimiYCbCr411ToBGR565_8u16u_P3C3R), planes, 4, 1, d601, asGroupBefore, To::word, true, {true, 5, 6, false}},
      WORDS(zimiYCbCr420To, Dither_8u16u_P3C3R, true, planes, 2, 2, s601, ownChroma),
      WORDS(zimiYCbCr422To, Dither_8u16u_P3C3R, true, planes, 2, 1, s601, ownChroma),
      WORDS(zimiYCbCr422To, Dither_8u16u_C2C3R, true, yCbCr, 2, 1, s601, oneSampleForBoth),
      WORDS(zimiYCbCrTo, Dither_8u16u_P3C3R, true, planes, 1, 1, s601, ownChroma),
      WORDS(zimiYCbCrTo, Dither_8u16u_C3R, true, triples, 1, 1, s601, ownChroma),
      WORDS(zimiYUV420To, Dither_8u16u_P3C3R, true, planes, 2, 2, sYuv, ownChroma),
  };
  return all;
}
// clang-format on

// ---- Images -------------------------------------------------------------------------------------------------------

// Luma of each pixel, Cb and Cr of each group; apart from how a source lays them out.
struct Samples {
  ZimiSize size;
  int across, down;
  std::function<Zim8u(int x, int y)> luma;
  std::function<std::array<Zim8u, 2>(int column, int row)> chroma;
};

class Conversion {
 public:
  Conversion(const Export& export_, const Samples& samples) : e(export_), s(samples) {
    layOutSource();
    const int pixelBytes = e.to == To::planes ? 1 : e.to == To::word ? 2 : e.to == To::rgb || e.to == To::bgr ? 3 : 4;
    step = s.size.width * pixelBytes + (e.call.hasSteps ? 5 : 0);
    planeBytes = static_cast<std::size_t>(step * s.size.height) + 8;
    result.assign((e.to == To::planes ? 3 : 1) * planeBytes, kUntouched);
    expected = result;
  }

  void run() {
    Operands o{{&memory[0][0], &memory[1][0], &memory[2][0]},
               steps,
               {&result[0], &result[result.size() / 3], &result[result.size() / 3 * 2]},
               step,
               s.size};
    const bool odd = s.size.width % s.across != 0 || s.size.height % s.down != 0;
    ASSERT_EQ(e.call.call(o), e.warns && odd ? zimWarnOddSize : zimResultOk);
  }

  void expectFormula() {
    const bool whole = e.lone != Lone::leftAlone;
    const int width = whole ? s.size.width : s.size.width / s.across * s.across;
    const int height = whole ? s.size.height : s.size.height / s.down * s.down;
    if (!(isThinYuv() && (width == 1 || height == 1))) {
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) put(x, y, formulaAt(x, y));
      }
    }
    const auto different = std::ranges::mismatch(result, expected).in1 - result.begin();
    EXPECT_TRUE(result == expected) << "byte " << different % step << " of row " << different / step;
  }

 private:
  static constexpr Zim8u kUntouched = 0xA5;

  bool isThinYuv() const { return e.formula == dYuv && e.to == To::word; }

  Rgb formulaAt(int x, int y) const {
    const int column = x / s.across;
    auto [cb, cr] = s.chroma(column, y / s.down);
    if (x >= s.size.width / s.across * s.across && e.lone != Lone::ownChroma) {
      const bool crFirst = e.from == From::yCrCb;
      Zim8u first = crFirst ? cr : cb, second = first;
      if (column > 0 && e.lone != Lone::oneSampleForBoth) {
        const auto before = s.chroma(column - 1, y / s.down);
        second = before[crFirst ? 0 : 1];
        if (e.lone == Lone::asGroupBefore) first = before[0];
      }
      cb = crFirst ? second : first;
      cr = crFirst ? first : second;
    }
    return e.formula(s.luma(x, y), cb, cr);
  }

  void put(int x, int y, Rgb rgb) {
    const auto [r, g, b] = rgb;
    const auto byte = [](int value) { return static_cast<Zim8u>(value); };
    // Rows of words are whole words apart, but for those of 4:1:1.
    const int rowStep = e.to == To::word && s.across != 4 ? step / 2 * 2 : step;
    Zim8u* row = &expected[static_cast<std::size_t>(y * rowStep)];
    switch (e.to) {
      case To::rgb:
      case To::rgbFour:
      case To::bgr:
      case To::bgrFour: {
        const bool four = e.to == To::rgbFour || e.to == To::bgrFour,
                   blueFirst = e.to == To::bgr || e.to == To::bgrFour;
        Zim8u* pixel = row + x * (four ? 4 : 3);
        pixel[0] = byte(blueFirst ? b : r);
        pixel[1] = byte(g);
        pixel[2] = byte(blueFirst ? r : b);
        if (four) pixel[3] = std::string_view(e.name).ends_with("AC4R") ? 0 : 77;
        break;
      }
      case To::planes:
        for (std::size_t c = 0; c < 3; ++c) row[x + static_cast<std::ptrdiff_t>(c * planeBytes)] = byte(rgb[c]);
        break;
      case To::word: {
        if (e.from == From::yCbCr && !e.word.dither && s.size.width == 1) {
          Zim8u* bytes = &expected[static_cast<std::size_t>(y * (step / 2))];
          for (std::size_t c = 0; c < 3; ++c) bytes[c] = byte(rgb[c]);
          break;
        }
        const auto field = [&](int c, int bits) { return e.word.dither ? dithered(c, bits, x, y) : c >> (8 - bits); };
        const int low = field(e.word.bgr ? b : r, e.word.bits), high = field(e.word.bgr ? r : b, e.word.bits);
        const int word = low | field(g, e.word.greenBits) << e.word.bits | high << (e.word.bits + e.word.greenBits);
        row[2 * x] = byte(word & 255);
        row[2 * x + 1] = byte(word >> 8);
        break;
      }
    }
  }

  void layOutSource() {
    const int width = s.size.width, height = s.size.height;
    const int columns = (width + s.across - 1) / s.across, rows = (height + s.down - 1) / s.down;
    const auto plane = [&](std::size_t i, int rowBytes, int rowCount) {
      memory[i].assign(static_cast<std::size_t>(rowBytes * rowCount), 0);
      steps[i] = rowBytes;
    };
    const auto at = [&](std::size_t i, int x, int y) -> Zim8u& {
      return memory[i][static_cast<std::size_t>(y * steps[i] + x)];
    };
    for (auto& m : memory) m.assign(1, 0);
    const int gap = e.call.hasSteps ? 3 : 0;
    const bool isPacked = e.from == From::yCbCr || e.from == From::yCrCb || e.from == From::cbYCr;
    if (isPacked || e.from == From::triples) {
      plane(0, (isPacked ? 2 : 3) * width + gap, height);
    } else {
      plane(0, width + gap, height);
      // Contiguous rows of chroma lose the half sample of an odd width where rows share them.
      const int used = !e.call.hasSteps && s.down == 2 ? width / 2 : columns;
      plane(1, (e.from == From::twoPlanes ? 2 : 1) * used + 2 * gap, rows);
      plane(2, used + 3 * gap, rows);
    }
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const Zim8u luma = s.luma(x, y);
        const auto [cb, cr] = s.chroma(x / s.across, y / s.down);
        switch (e.from) {
          case From::triples:
            at(0, 3 * x, y) = luma, at(0, 3 * x + 1, y) = cb, at(0, 3 * x + 2, y) = cr;
            break;
          case From::cbYCr:
            at(0, 2 * x, y) = x % 2 == 0 ? cb : cr, at(0, 2 * x + 1, y) = luma;
            break;
          case From::yCbCr:
            at(0, 2 * x, y) = luma, at(0, 2 * x + 1, y) = x % 2 == 0 ? cb : cr;
            break;
          case From::yCrCb:
            at(0, 2 * x, y) = luma, at(0, 2 * x + 1, y) = x % 2 == 0 ? cr : cb;
            break;
          default: {
            at(0, x, y) = luma;
            const int column = x / s.across, row = y / s.down;
            if (column >= steps[2] - 3 * gap) break;
            if (e.from == From::twoPlanes) {
              at(1, 2 * column, row) = cb, at(1, 2 * column + 1, row) = cr;
            } else {
              at(e.from == From::planes ? 1 : 2, column, row) = cb,
                                                         at(e.from == From::planes ? 2 : 1, column, row) = cr;
            }
          }
        }
      }
    }
  }

  const Export& e;
  const Samples& s;
  std::array<std::vector<Zim8u>, 3> memory;
  std::array<Zim32s, 3> steps = {};
  Zim32s step;
  std::size_t planeBytes;
  std::vector<Zim8u> result, expected;
};

void compare(const Export& e, const Samples& samples) {
  SCOPED_TRACE(testing::Message() << e.name << ' ' << samples.size.width << " x " << samples.size.height);
  Conversion conversion(e, samples);
  conversion.run();
  conversion.expectFormula();
}

// ---- Tests --------------------------------------------------------------------------------------------------------

// Every form of every set, in images of blocks or groups that together have each luma with each pair of chroma.
TEST(Decoders, EveryLumaWithEveryPairOfChroma) {
  constexpr const char* kNames[] = {
      "zimiYCbCr420ToRGB_8u_P3C3R",  "zimiYCbCr422ToRGB_8u_P3C3R",        "zimiYCbCr422ToBGR_8u_P3C3R",
      "zimiYCbCr411ToBGR_8u_P3C3R",  "zimiYCbCr420ToBGR_709CSC_8u_P3C3R", "zimiCbYCr422ToBGR_709HDTV_8u_C2C3R",
      "zimiYUV420ToRGB_8u_P3C3R",    "zimiYUV420ToRGB_8u_P3AC4R",         "zimiYCbCr420ToRGB_8u_P2C4R",
      "zimiYCbCrToBGR565_8u16u_C3R", "zimiYCbCrToRGB565Dither_8u16u_C3R", "zimiYUV420ToBGR565Dither_8u16u_P3C3R",
  };
  for (const Export& e : exports()) {
    if (std::ranges::find(kNames, std::string_view(e.name)) == std::end(kNames)) continue;
    // Cb by groups of columns, Cr by rows; a group has 256 values of luma.
    const int columnsOfCb = 256 / e.down;
    compare(e, {{256 * columnsOfCb, 256 * e.down},
                e.across,
                e.down,
                [&](int x, int y) { return static_cast<Zim8u>(x % columnsOfCb * e.down + y % e.down); },
                [&](int column, int row) {
                  return std::array{static_cast<Zim8u>(column * e.across / columnsOfCb), static_cast<Zim8u>(row)};
                }});
  }
}

TEST(Decoders, EveryWidthAndLoneColumnsAndRows) {
  for (const Export& e : exports()) {
    for (int width = 1; width <= 40; ++width) {
      for (int height = 1; height <= 5; ++height) {
        // Below the least sizes there is nothing to compare.
        const bool fromTwo = std::string_view(e.name).starts_with("zimiYCbCr422ToBGR_") ||
                             std::string_view(e.name).starts_with("zimiYUV420ToBGR_");
        if (width < (e.across == 4 ? 4 : fromTwo ? 2 : 1) || (fromTwo && e.down == 2 && height < 2)) continue;
        const auto noise = [](int a, int b, int c) {
          return static_cast<Zim8u>(static_cast<unsigned>(a * 7919 + b * 104729 + c * 1299709) * 2654435761U >> 24);
        };
        compare(e, {{width, height},
                    e.across,
                    e.down,
                    [&](int x, int y) { return noise(x, y, 0); },
                    [&](int column, int row) {
                      return std::array{noise(column, row, 1), noise(column, row, 2)};
                    }});
      }
    }
  }
}

// Gray through YUV is the sample itself.
TEST(Dither, EverySampleAtEveryPlace) {
  for (const Export& e : exports()) {
    if (!e.word.dither || e.formula != sYuv) continue;
    compare(e, {{1024, 8},
                2,
                2,
                [](int x, int) { return static_cast<Zim8u>(x / 4); },
                [](int, int) {
                  return std::array<Zim8u, 2>{128, 128};
                }});
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

TEST(PackedTargets, EverySampleOfRgb) {
  std::vector<Zim8u> pixels;
  std::vector<Zim16u> expected;
  for (unsigned i = 0; i < 1000; ++i) {
    const unsigned a = i % 256, g = i * 3 % 256, c = i * 7 % 256;
    for (const unsigned sample : {a, g, c}) pixels.push_back(static_cast<Zim8u>(sample));
    expected.push_back(static_cast<Zim16u>(a >> 3 | (g & 252) << 3 | (c & 248) << 8));
  }
  for (auto convert : {zimiBGRToBGR565_8u16u_C3R, zimiRGBToRGB565_8u16u_C3R}) {
    for (Zim32s width : {1, 5, 17, 40, 1000}) {
      const Zim32s height = 1000 / width;
      std::vector<Zim16u> words(static_cast<std::size_t>(width * height));
      // An odd step loses its low bit.
      ASSERT_EQ(convert(pixels.data(), 3 * width, words.data(), 2 * width + 1, {width, height}), zimResultOk);
      EXPECT_TRUE(std::equal(words.begin(), words.end(), expected.begin())) << width;
    }
  }
}

}  // namespace
