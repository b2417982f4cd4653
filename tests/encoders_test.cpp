// Encoders with chroma shared by pixels: every member against the formulas in plain integers, with its tail, at all
// small sizes, and over all colours.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "zimcc.h"

namespace {

using Colour = std::array<int, 3>;  // R, G, B

// ---- Images ----

enum class Layout { c3, ac4, p3, words555, words565 };

// A source in the memory of a layout, to the byte: the last alpha sample of an AC4 image is not there.
class Source {
 public:
  Source(Layout memory, bool firstIsBlue, ZimiSize imageSize)
      : size(imageSize), layout(memory), reversed(firstIsBlue), bytes(length()) {}

  // Stores a colour, and gives back what is left of it.
  Colour put(int x, int y, Colour colour) {
    const std::size_t i = static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) + static_cast<unsigned>(x);
    const Colour ordered = reversed ? Colour{colour[2], colour[1], colour[0]} : colour;
    if (layout == Layout::words555 || layout == Layout::words565) {
      const int green = layout == Layout::words565 ? 6 : 5;
      // The unused bit of 555 is set at every other pixel.
      const int word = ordered[0] >> 3 | (ordered[1] >> (8 - green)) << 5 | (ordered[2] >> 3) << (5 + green) |
                       (green == 5 && x % 2 == 0 ? 0x8000 : 0);
      bytes[2 * i] = static_cast<Zim8u>(word);
      bytes[2 * i + 1] = static_cast<Zim8u>(word >> 8);
      return {colour[0] & 0xF8, colour[1] & (green == 6 ? 0xFC : 0xF8), colour[2] & 0xF8};
    }
    for (std::size_t c = 0; c < 3; ++c) {
      bytes[layout == Layout::p3 ? c * pixels() + i : i * (layout == Layout::ac4 ? 4 : 3) + c] =
          static_cast<Zim8u>(ordered[c]);
    }
    return colour;
  }

  const Zim8u* samples() const { return bytes.data(); }
  const Zim16u* words() const { return reinterpret_cast<const Zim16u*>(bytes.data()); }
  std::array<const Zim8u*, 3> planes() const { return {&bytes[0], &bytes[pixels()], &bytes[2 * pixels()]}; }
  Zim32s step() const {
    return size.width * (layout == Layout::p3 ? 1 : layout == Layout::c3 ? 3 : layout == Layout::ac4 ? 4 : 2);
  }
  const ZimiSize size;

 private:
  std::size_t pixels() const { return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height); }
  std::size_t length() const {
    return layout == Layout::ac4                          ? 4 * pixels() - 1
           : layout == Layout::p3 || layout == Layout::c3 ? 3 * pixels()
                                                          : 2 * pixels();
  }

  const Layout layout;
  const bool reversed;
  std::vector<Zim8u> bytes;
};

// Up to three planes, their steps different from one another; a stream has one.
struct Destination {
  static constexpr Zim8u canary = 0xA5;
  std::array<std::vector<Zim8u>, 3> planes;
  std::array<Zim32s, 3> steps;

  explicit Destination(ZimiSize size, bool contiguousRowsOfPairs = false, bool contiguousBlocks = false) {
    steps = {2 * size.width + 3, size.width + 5, size.width + 8};
    if (contiguousRowsOfPairs) steps = {size.width, (size.width + 1) / 2, (size.width + 1) / 2};
    if (contiguousBlocks) steps = {size.width, size.width / 2, size.width / 2};
    for (auto& plane : planes) {
      const Zim32s longest = std::max(steps[0], steps[2]);
      plane.assign(static_cast<std::size_t>(longest) * static_cast<std::size_t>(size.height + 1), canary);
    }
  }
  void put(std::size_t plane, std::ptrdiff_t index, int value) {
    planes[plane].at(static_cast<std::size_t>(index)) = static_cast<Zim8u>(value & 255);
  }
  std::array<Zim8u*, 3> pointers() { return {planes[0].data(), planes[1].data(), planes[2].data()}; }
};

// ---- Exports as one kind of function ----

using Call = std::function<ZimResult(const Source&, Destination&, ZimiSize)>;

template <class T>
const T* memoryOf(const Source& s) {
  if constexpr (sizeof(T) == 1) {
    return s.samples();
  } else {
    return s.words();
  }
}
template <class T>
Call call(ZimResult (*f)(const T*, Zim32s, Zim8u*, Zim32s, ZimiSize)) {
  return [f](const Source& s, Destination& d, ZimiSize size) {
    return f(memoryOf<T>(s), s.step(), d.planes[0].data(), d.steps[0], size);
  };
}
template <class T>
Call call(ZimResult (*f)(const T*, Zim32s, Zim8u* const*, const Zim32s*, ZimiSize)) {
  return [f](const Source& s, Destination& d, ZimiSize size) {
    return f(memoryOf<T>(s), s.step(), d.pointers().data(), d.steps.data(), size);
  };
}
Call call(ZimResult (*f)(const Zim8u* const*, Zim32s, Zim8u*, Zim32s, ZimiSize)) {
  return [f](const Source& s, Destination& d, ZimiSize size) {
    return f(s.planes().data(), s.step(), d.planes[0].data(), d.steps[0], size);
  };
}
Call call(ZimResult (*f)(const Zim8u* const*, Zim32s, Zim8u* const*, const Zim32s*, ZimiSize)) {
  return [f](const Source& s, Destination& d, ZimiSize size) {
    return f(s.planes().data(), s.step(), d.pointers().data(), d.steps.data(), size);
  };
}
Call call(ZimResult (*f)(const Zim8u*, Zim32s, Zim8u*, Zim32s, Zim8u*, Zim32s, ZimiSize)) {
  return [f](const Source& s, Destination& d, ZimiSize size) {
    return f(s.samples(), s.step(), d.planes[0].data(), d.steps[0], d.planes[1].data(), d.steps[1], size);
  };
}
Call call(ZimResult (*f)(const Zim8u*, Zim8u* const*, ZimiSize)) {
  return [f](const Source& s, Destination& d, ZimiSize size) { return f(s.samples(), d.pointers().data(), size); };
}
Call call(ZimResult (*f)(const Zim8u* const*, Zim8u* const*, ZimiSize)) {
  return
      [f](const Source& s, Destination& d, ZimiSize size) { return f(s.planes().data(), d.pointers().data(), size); };
}

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

// ---- Members ----

enum class Target { yCbYCr, yCrYCb, cbYCrY, planes, crFirst, crFirstCrossed, semiPlanar, contiguous };
enum class Tail { leftAlone, lumaAndFirst, luma, whole, lumaOfEdges };

struct Member {
  const char* name;
  Call call;
  Layout layout;
  bool bgr;
  int across, down;
  Luma luma;
  Chroma chroma;
  Target target;
  Tail tail;
  Chroma lone;  // chroma of a pixel that has no others
  ZimiSize least;
  ZimiSize multiple;  // of other sizes the result is a warning

  bool isStream() const { return target <= Target::cbYCrY; }
  bool curved() const { return std::string(name).find("Gamma") != std::string::npos; }
};

const Chroma kNone;

std::vector<Member> members() {
  using enum Layout;
  using enum Target;
  using enum Tail;
  const Luma y601 = exactLuma(k601), y709 = exactLuma(k709);
  const Chroma pairHalf = mean(k601, 17, -16711680, -16711680), pairTrim = mean(k601, 17, -16711680, -16711682);
  const Chroma pairEighth = mean(k601, 17, -16760832, -16760832);
  const Chroma four = mean(k601, 18, -33521664, -33521664), four709 = mean(k709, 18, -33521664, -33521664);
  const Chroma pairGuarded = guarded(17, 16842752, 16842750), blockGuarded = guarded(18, 33587200, 33587200);
  const Chroma lone = mean(k601, 16, -8355840, -8355840), loneEighth = mean(k601, 16, -8380416, -8380416);
  const Chroma loneGuarded = guarded(16, 8421376, 8421376);
  constexpr ZimiSize any = {1, 1}, pair = {2, 1}, block = {2, 2}, quad = {4, 1};
#define CALL(name) #name, call(name)
  // clang-format off
  return {
      {CALL(zimiRGBToYCbCr422_8u_C3C2R),          c3,  false, 2, 1, lumaOddTruncated, pairHalf, yCbYCr, lumaAndFirst, lone, any, any},
      {CALL(zimiRGBToYCbCr422_8u_P3C2R),          p3,  false, 2, 1, lumaOddTruncated, pairHalf, yCbYCr, lumaAndFirst, lone, any, any},
      {CALL(zimiRGBToYCrCb422_8u_C3C2R),          c3,  false, 2, 1, lumaOddTruncated, pairHalf, yCrYCb, lumaAndFirst, lone, any, any},
      {CALL(zimiRGBToYCrCb422_8u_P3C2R),          p3,  false, 2, 1, lumaOddTruncated, pairHalf, yCrYCb, lumaAndFirst, lone, any, any},
      {CALL(zimiRGBToCbYCr422_8u_C3C2R),          c3,  false, 2, 1, y601, filtered, cbYCrY, lumaAndFirst, lone, any, any},
      {CALL(zimiRGBToCbYCr422Gamma_8u_C3C2R),     c3,  false, 2, 1, y601, filtered, cbYCrY, lumaAndFirst, lone, any, any},
      {CALL(zimiBGRToCbYCr422_8u_AC4C2R),         ac4, true,  2, 1, y601, pairTrim, cbYCrY, lumaAndFirst, lone, any, any},
      {CALL(zimiBGRToCbYCr422_709HDTV_8u_C3C2R),  c3,  true,  2, 1, lumaGuarded, pairGuarded, cbYCrY, lumaAndFirst, loneGuarded, any, any},
      {CALL(zimiBGRToCbYCr422_709HDTV_8u_AC4C2R), ac4, true,  2, 1, lumaGuarded, pairGuarded, cbYCrY, lumaAndFirst, loneGuarded, any, any},
      {CALL(zimiBGRToYCbCr422_8u_C3C2R),          c3,  true,  2, 1, y601, pairEighth, yCbYCr, lumaAndFirst, loneEighth, pair, any},
      {CALL(zimiBGRToYCbCr422_8u_AC4C2R),         ac4, true,  2, 1, y601, pairEighth, yCbYCr, lumaAndFirst, loneEighth, pair, any},
      {CALL(zimiBGRToYCbCr422_8u_C3P3R),          c3,  true,  2, 1, y601, pairEighth, planes, Tail::luma, kNone, pair, any},
      {CALL(zimiBGRToYCbCr422_8u_AC4P3R),         ac4, true,  2, 1, y601, pairEighth, planes, Tail::luma, kNone, pair, any},
      {CALL(zimiRGBToYCbCr422_8u_C3P3R),          c3,  false, 2, 1, y601, pairEighth, planes, leftAlone, kNone, pair, pair},
      {CALL(zimiBGRToYCbCr411_8u_C3P3R),          c3,  true,  4, 1, y601, four, planes, leftAlone, kNone, quad, quad},
      {CALL(zimiBGRToYCbCr411_8u_AC4P3R),         ac4, true,  4, 1, y601, four, planes, leftAlone, kNone, quad, quad},
      {CALL(zimiRGBToYCbCr420_8u_C3P3R),          c3,  false, 2, 2, y601, four, planes, leftAlone, kNone, any, block},
      {CALL(zimiBGRToYCbCr420_8u_C3P3R),          c3,  true,  2, 2, y601, four, planes, leftAlone, kNone, block, block},
      {CALL(zimiBGRToYCbCr420_8u_AC4P3R),         ac4, true,  2, 2, y601, four, planes, leftAlone, kNone, block, block},
      {CALL(zimiBGRToYCbCr420_709CSC_8u_C3P3R),   c3,  true,  2, 2, y709, four709, planes, leftAlone, kNone, block, block},
      {CALL(zimiBGRToYCbCr420_709CSC_8u_AC4P3R),  ac4, true,  2, 2, y709, four709, planes, leftAlone, kNone, block, block},
      {CALL(zimiBGRToYCbCr420_709CSC_8u_C3P2R),   c3,  true,  2, 2, y709, four709, semiPlanar, leftAlone, kNone, block, block},
      {CALL(zimiBGRToYCbCr420_709HDTV_8u_AC4P3R), ac4, true,  2, 2, lumaGuarded, blockGuarded, planes, leftAlone, kNone, block, block},
      {CALL(zimiBGRToYCrCb420_8u_C3P3R),          c3,  true,  2, 2, y601, four, crFirst, leftAlone, kNone, block, block},
      {CALL(zimiBGRToYCrCb420_8u_AC4P3R),         ac4, true,  2, 2, y601, four, crFirst, leftAlone, kNone, block, block},
      {CALL(zimiBGRToYCrCb420_709CSC_8u_C3P3R),   c3,  true,  2, 2, y709, four709, crFirst, leftAlone, kNone, block, block},
      {CALL(zimiBGRToYCrCb420_709CSC_8u_AC4P3R),  ac4, true,  2, 2, y709, four709, crFirst, leftAlone, kNone, block, block},
      {CALL(zimiRGBToYCrCb420_8u_AC4P3R),         ac4, false, 2, 2, y601, four, crFirstCrossed, leftAlone, kNone, block, block},
      {CALL(zimiRGBToYCbCr420_8u_C3P2R),          c3,  false, 2, 2, floatLuma, floatChroma, semiPlanar, leftAlone, kNone, any, block},
      {CALL(zimiRGBToYCbCr420_8u_C4P2R),          ac4, false, 2, 2, floatLuma, floatChroma, semiPlanar, leftAlone, kNone, any, block},
      {CALL(zimiBGRToYUV420_8u_AC4P3R),           ac4, true,  2, 2, lumaYuv, yuvChroma, planes, leftAlone, kNone, any, block},
      {CALL(zimiRGBToYUV420_8u_C3P3R),            c3,  false, 2, 2, lumaYuv, yuvChroma, planes, leftAlone, kNone, any, block},
      {CALL(zimiRGBToYUV420_8u_C3P3),             c3,  false, 2, 2, lumaYuv, yuvChroma, contiguous, leftAlone, kNone, any, block},
      {CALL(zimiRGBToYUV420_8u_P3R),              p3,  false, 2, 2, lumaYuv, yuvChroma, planes, leftAlone, kNone, any, block},
      {CALL(zimiRGBToYUV420_8u_P3),               p3,  false, 2, 2, lumaYuv, yuvChroma, contiguous, leftAlone, kNone, any, block},
      {CALL(zimiRGBToYUV422_8u_C3C2R),            c3,  false, 2, 1, lumaYuv, yuvChroma, yCbYCr, lumaAndFirst, yuvChroma, any, any},
      {CALL(zimiRGBToYUV422_8u_C3P3R),            c3,  false, 2, 1, lumaYuv, yuvChroma, planes, whole, yuvChroma, any, any},
      {CALL(zimiRGBToYUV422_8u_C3P3),             c3,  false, 2, 1, lumaYuv, yuvChroma, contiguous, whole, yuvChroma, any, any},
      {CALL(zimiRGBToYUV422_8u_P3R),              p3,  false, 2, 1, lumaYuv, yuvChroma, planes, whole, yuvChroma, any, any},
      {CALL(zimiRGBToYUV422_8u_P3),               p3,  false, 2, 1, lumaYuv, yuvChroma, contiguous, whole, yuvChroma, any, any},

      {CALL(zimiBGR555ToYCbCr411_16u8u_C3P3R), words555, true,  4, 1, y601, four, planes, leftAlone, kNone, quad, quad},
      {CALL(zimiBGR565ToYCbCr411_16u8u_C3P3R), words565, true,  4, 1, y601, four, planes, leftAlone, kNone, quad, quad},
      {CALL(zimiBGR555ToYCbCr422_16u8u_C3C2R), words555, true,  2, 1, y601, pairEighth, yCbYCr, lumaAndFirst, loneEighth, pair, any},
      {CALL(zimiBGR565ToYCbCr422_16u8u_C3C2R), words565, true,  2, 1, y601, pairEighth, yCbYCr, lumaAndFirst, loneEighth, pair, any},
      {CALL(zimiBGR555ToYCbCr422_16u8u_C3P3R), words555, true,  2, 1, y601, pairEighth, planes, Tail::luma, kNone, pair, any},
      {CALL(zimiBGR565ToYCbCr422_16u8u_C3P3R), words565, true,  2, 1, y601, pairEighth, planes, Tail::luma, kNone, pair, any},
      {CALL(zimiBGR555ToYCbCr420_16u8u_C3P3R), words555, true,  2, 2, y601, four, planes, lumaOfEdges, kNone, block, any},
      {CALL(zimiBGR565ToYCbCr420_16u8u_C3P3R), words565, true,  2, 2, y601, four, planes, lumaOfEdges, kNone, block, any},
      {CALL(zimiBGR555ToYCrCb420_16u8u_C3P3R), words555, true,  2, 2, y601, four, crFirst, lumaOfEdges, kNone, block, any},
      {CALL(zimiBGR565ToYCrCb420_16u8u_C3P3R), words565, true,  2, 2, y601, four, crFirst, lumaOfEdges, kNone, block, any},
      {CALL(zimiBGR555ToYUV420_16u8u_C3P3R),   words555, true,  2, 2, lumaYuvRounded, yuvChroma, planes, leftAlone, kNone, block, block},
      {CALL(zimiBGR565ToYUV420_16u8u_C3P3R),   words565, true,  2, 2, lumaYuvRounded, yuvChroma, planes, leftAlone, kNone, block, block},
      {CALL(zimiRGB565ToYUV420_16u8u_C3P3R),   words565, false, 2, 2, lumaYuv, yuvChroma, planes, leftAlone, kNone, any, block},
      {CALL(zimiRGB565ToYUV422_16u8u_C3P3R),   words565, false, 2, 1, lumaYuv, yuvChroma, planes, leftAlone, kNone, any, pair},
  };
  // clang-format on
#undef CALL
}

// What a member makes of an image, written plainly.
class Expected {
 public:
  Expected(const Member& m, const std::vector<std::vector<Colour>>& rows, ZimiSize size, Destination& destination)
      : m_(m), d_(destination) {
    const int groups = size.width / m.across, grouped = groups * m.across;
    for (int top = 0; top + m.down <= size.height; top += m.down) {
      Colour before = {};
      for (int group = 0; group < groups; ++group) {
        std::array<Colour, 4> memory;
        std::size_t count = 0;
        for (int y = top; y < top + m.down; ++y) {
          for (int x = group * m.across; x < (group + 1) * m.across; ++x) {
            memory[count] = rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            putLuma(x, y, memory[count++]);
          }
        }
        const Group pixels(memory.data(), count);
        const auto chroma = m.chroma(pixels, before);
        putChroma(group, top / m.down, 0, chroma[0]);
        putChroma(group, top / m.down, 1, chroma[1]);
        before = pixels.back();
      }
      for (int x = grouped; x < size.width; ++x) {
        for (int y = top; y < top + m.down; ++y)
          tail(x, y, rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)]);
      }
    }
    if (m.tail == Tail::lumaOfEdges && size.height % 2 != 0) {
      for (int x = 0; x < size.width; ++x) putLuma(x, size.height - 1, rows.back()[static_cast<std::size_t>(x)]);
    }
  }

 private:
  void tail(int x, int y, const Colour& rgb) {
    if (m_.tail == Tail::leftAlone) return;
    putLuma(x, y, rgb);
    if (m_.tail == Tail::luma || m_.tail == Tail::lumaOfEdges) return;
    const auto chroma = m_.lone({&rgb, 1}, {});
    const int group = x / m_.across;
    if (m_.tail == Tail::whole) {
      putChroma(group, y, 0, chroma[0]);
      putChroma(group, y, 1, chroma[1]);
    } else {
      const int first = m_.target == Target::yCrYCb ? 1 : 0;
      putChroma(group, y, first, chroma[static_cast<std::size_t>(first)]);
    }
  }
  void putLuma(int x, int y, const Colour& rgb) {
    const int value = m_.luma(rgb, x, y);
    if (m_.isStream()) {
      d_.put(0, y * d_.steps[0] + 2 * x + (m_.target == Target::cbYCrY ? 1 : 0), value);
    } else {
      d_.put(0, y * d_.steps[0] + x, value);
    }
  }
  void putChroma(int group, int y, int which, int value) {
    const auto step = [&](std::size_t i) { return y * d_.steps[i]; };
    const int other = 1 - which;
    switch (m_.target) {
      case Target::yCbYCr:
        return d_.put(0, step(0) + 4 * group + 1 + 2 * which, value);
      case Target::yCrYCb:
        return d_.put(0, step(0) + 4 * group + 1 + 2 * other, value);
      case Target::cbYCrY:
        return d_.put(0, step(0) + 4 * group + 2 * which, value);
      case Target::semiPlanar:
        return d_.put(1, step(1) + 2 * group + which, value);
      case Target::planes:
      case Target::contiguous:
        return d_.put(static_cast<std::size_t>(1 + which), step(static_cast<std::size_t>(1 + which)) + group, value);
      case Target::crFirst:
        return d_.put(static_cast<std::size_t>(1 + other), step(static_cast<std::size_t>(1 + other)) + group, value);
      case Target::crFirstCrossed:
        return d_.put(static_cast<std::size_t>(1 + other), step(static_cast<std::size_t>(1 + which)) + group, value);
    }
  }

  const Member& m_;
  Destination& d_;
};

class EachEncoder : public testing::TestWithParam<Member> {
 protected:
  const Member& m = GetParam();

  template <class ColourAt>
  void expectFormula(ZimiSize size, const ColourAt& colourAt) const {
    Source source(m.layout, m.bgr, size);
    std::vector<std::vector<Colour>> rows(static_cast<std::size_t>(size.height));
    for (int y = 0; y < size.height; ++y) {
      auto& row = rows[static_cast<std::size_t>(y)];
      for (int x = 0; x < size.width; ++x) {
        row.push_back(source.put(x, y, colourAt(x, y)));
        if (m.curved()) row.back() = curved(row.back());
      }
    }
    const bool contiguous = m.target == Target::contiguous;
    Destination expected(size, contiguous && m.down == 1, contiguous && m.down == 2), actual = expected;
    Expected(m, rows, size, expected);
    const bool whole = size.width % m.multiple.width == 0 && size.height % m.multiple.height == 0;
    ASSERT_EQ(m.call(source, actual, size), whole ? zimResultOk : zimWarnOddSize);
    for (std::size_t plane = 0; plane < 3; ++plane) {
      const auto [e, a] = std::ranges::mismatch(expected.planes[plane], actual.planes[plane]);
      ASSERT_EQ(e, expected.planes[plane].end())
          << size.width << " x " << size.height << ", plane " << plane << ", byte "
          << e - expected.planes[plane].begin() << ": " << +*a << " for " << +*e;
    }
  }

 private:
  static Colour curved(const Colour& colour) {
    const Zim8u in[3] = {static_cast<Zim8u>(colour[0]), static_cast<Zim8u>(colour[1]), static_cast<Zim8u>(colour[2])};
    Zim8u out[3];
    EXPECT_EQ(zimiGammaFwd_8u_C3R(in, 3, out, 3, {1, 1}), zimResultOk);
    return {out[0], out[1], out[2]};
  }
};

class Random {
 public:
  unsigned next() { return (state_ = state_ * 1664525U + 1013904223U) >> 8; }
  Colour colour() {
    // Often an end of the range.
    const auto sample = [&] {
      const unsigned x = next();
      return x % 8 == 0 ? 0 : x % 8 == 1 ? 255 : static_cast<int>(x >> 4 & 255);
    };
    return {sample(), sample(), sample()};
  }

 private:
  unsigned state_ = 1;
};

TEST_P(EachEncoder, EveryTail) {
  Random random;
  std::vector<int> widths = {61, 62, 63, 64, 65, 66, 67, 127, 128, 129, 130, 131};
  for (int width = m.least.width; width <= 40; ++width) widths.push_back(width);
  for (const int width : widths) {
    for (int height = m.least.height; height <= 5; ++height) {
      expectFormula({width, height}, [&](int, int) { return random.colour(); });
      ASSERT_FALSE(HasFatalFailure());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, EachEncoder, testing::ValuesIn(members()),
                         [](const auto& info) { return std::string(info.param.name); });

// One encoder for each set and rule, over all colours, as groups of one colour; and over many in an order in which
// neighbours have nothing to do with one another.
class EachRule : public EachEncoder {};

TEST_P(EachRule, AllColours) {
  constexpr int shades = 1 << 16;
  const auto colourOf = [](unsigned i) {
    return Colour{static_cast<int>(i >> 16 & 255), static_cast<int>(i >> 8 & 255), static_cast<int>(i & 255)};
  };
  for (unsigned part = 0; part < 256; ++part) {
    expectFormula({shades * m.across / 16, 16 * m.down}, [&](int x, int y) {
      return colourOf(part << 16 | static_cast<unsigned>(y / m.down * (shades / 16) + x / m.across));
    });
    ASSERT_FALSE(HasFatalFailure());
    if (part % 8 != 0) continue;
    expectFormula({shades / 16, 16}, [&](int x, int y) {
      return colourOf((part << 16 | static_cast<unsigned>(y * (shades / 16) + x)) * 2654435761U);
    });
    ASSERT_FALSE(HasFatalFailure());
  }
}

std::vector<Member> oneOfEachRule() {
  std::vector<Member> some = members();
  std::erase_if(some, [](const Member& m) {
    constexpr const char* kNames[] = {
        "zimiRGBToYCbCr422_8u_C3C2R",
        "zimiRGBToCbYCr422_8u_C3C2R",
        "zimiBGRToCbYCr422_8u_AC4C2R",
        "zimiBGRToCbYCr422_709HDTV_8u_C3C2R",
        "zimiBGRToYCbCr422_8u_C3P3R",
        "zimiBGRToYCbCr411_8u_C3P3R",
        "zimiRGBToYCbCr420_8u_C3P3R",
        "zimiBGRToYCbCr420_709CSC_8u_C3P2R",
        "zimiBGRToYCbCr420_709HDTV_8u_AC4P3R",
        "zimiRGBToYCbCr420_8u_C3P2R",
        "zimiRGBToYUV420_8u_C3P3R",
        "zimiRGBToYUV422_8u_P3R",
    };
    return std::ranges::none_of(kNames, [&](const std::string& name) { return name == m.name; });
  });
  return some;
}

INSTANTIATE_TEST_SUITE_P(All, EachRule, testing::ValuesIn(oneOfEachRule()),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
