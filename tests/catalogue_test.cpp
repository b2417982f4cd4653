// What names say, how a call is put together from that, and that image contents never drift.
#include "tools/catalogue/catalogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <sstream>
#include <string>

#include "tools/catalogue/caller.h"
#include "tools/catalogue/image.h"
#include "tools/catalogue/pattern.h"

namespace {

using namespace zim::catalogue;

// A side in short: colour word, layout and type; per plane the used of all samples at its sub-sampling; the pointers
// and steps.
std::string inShort(const Side& side) {
  constexpr const char* kSteps[] = {", no step", "", ", steps"};
  std::ostringstream text;
  text << side.colourWord << ' ' << side.layout << ' ' << name(side.type) << " [";
  for (const Plane& p : side.planes) {
    if (&p != &side.planes.front()) text << ' ';
    text << p.usedSamples;
    if (p.usedSamples != p.samples) text << '/' << p.samples;
    if (p.pixelsAcross * p.pixelsDown > 1) text << '@' << p.pixelsAcross << 'x' << p.pixelsDown;
  }
  text << (side.pointerArray ? "] array" : "]") << kSteps[static_cast<int>(side.steps)];
  return text.str();
}

std::string inShort(const std::vector<Argument>& arguments) {
  std::ostringstream text;
  for (const Argument& a : arguments) {
    if (&a != &arguments.front()) text << ' ';
    text << a.name << ':' << name(a.type);
    if (a.array) text << '*' << a.usual.size();
    if (a.mayBeNull) text << '?';
  }
  return text.str();
}

TEST(Patterns, StandForNames) {
  struct Case {
    const char* pattern;
    std::vector<const char*> matching, others;
  };
  const Case cases[] = {
      {"", {""}, {"a"}},
      {"ab", {"ab"}, {"a", "abc", "xab"}},
      {"a*c*", {"ac", "abcd", "acc"}, {"a", "bac"}},
      {"a?c", {"abc", "a?c"}, {"ac", "abbc"}},
      {"[ab-d][!a]", {"ab", "cc", "d!"}, {"e1", "aa", "a"}},
      {"@(ab|c*)d", {"abd", "cd", "cxxd"}, {"d", "abcd", "ab"}},
      {"x?(y@(z|)|*w)", {"x", "xy", "xyz", "xw", "xvw"}, {"xz", "y"}},
      {"_@(C3|AC4)?(P3)R", {"_C3R", "_AC4P3R"}, {"_C4R", "_C3P3"}},
  };
  for (const Case& c : cases) {
    for (const char* text : c.matching) EXPECT_TRUE(matches(c.pattern, text)) << c.pattern << ' ' << text;
    for (const char* text : c.others) EXPECT_FALSE(matches(c.pattern, text)) << c.pattern << ' ' << text;
  }
}

struct Described {
  const char* name;
  const char* source;
  const char* destination;
  const char* further = "";
  ZimiSize least = {1, 1};
};

// The last ones are names of forms to come.
constexpr Described kDescribed[] = {
    {"zimiRGBToGray_8u_AC4C1R", "RGB AC4 8u [3/4]", "Gray C1 8u [1]"},
    {"zimiColorToGray_64f_C3C1R", "Color C3 64f [3]", "Gray C1 64f [1]", "coeffs:64f*3?"},
    {"zimiRGBToYCbCr_8u_AC4R", "RGB AC4 8u [3/4]", "YCbCr AC4 8u [3/4]"},
    {"zimiRGBToYUV_8u_AC4P4R", "RGB AC4 8u [4]", "YUV P4 8u [1 1 1 1] array"},
    {"zimiYCbCrToBGR_709CSC_8u_P3C4R", "YCbCr P3 8u [1 1 1] array", "BGR C4 8u [4]", "aval:8u"},
    {"zimiSBGRToYCoCg_Rev_16s32s_C4P3R", "SBGR C4 16s [3/4]", "YCoCg P3 32s [1 1 1] array", "", {0, 0}},
    {"zimiYCoCgToSBGR_Rev_32s16s_P3C4R", "YCoCg P3 32s [1 1 1] array", "SBGR C4 16s [4]", "aval:16s", {0, 0}},
    {"zimiColorTwist32f_16u_IP3R", " P3 16u [1 1 1] array", " P3 16u [1 1 1] array", "twist:32f*12"},
    {"zimiColorTwist_32f_C4R", " C4 32f [4]", " C4 32f [4]", "twist:32f*16"},
    {"zimiGammaInv_32f_AC4IR", " AC4 32f [3/4]", " AC4 32f [3/4]", "vMin:32f vMax:32f"},
    {"zimiToneMapMean_32f8u_C1R", " C1 32f [1]", " C1 8u [1]"},
    {"zimiCFAToRGB_8u_C1C3R", "CFA C1 8u [1]", "RGB C3 8u [3]", "grid:32s", {2, 2}},
    {"zimiDemosaicAHD_16u_C1C3R", "CFA C1 16u [1]", "RGB C3 16u [3]", "grid:32s", {5, 5}},
    {"zimiRGBToYCbCr420_8u_C4P2R", "RGB C4 8u [3/4]", "YCbCr420 P2 8u [1 2@2x2], steps"},
    {"zimiYUV422ToRGB_8u_P3", "YUV422 P3 8u [1 1@2x1 1@2x1] array, no step", "RGB P3 8u [1 1 1] array, no step"},
    {"zimiYUV420ToRGB_8u_P3AC4R", "YUV420 P3 8u [1 1@2x2 1@2x2] array, steps", "RGB AC4 8u [4]"},
    {"zimiRGBToCbYCr422Gamma_8u_C3C2R", "RGB C3 8u [3]", "CbYCr422 C2 8u [2]"},
    {"zimiYCbCr420ToBGR565Dither_8u16u_P3C3R", "YCbCr420 P3 8u [1 1@2x2 1@2x2] array, steps", "BGR565 C3 16u [1]"},
    {"zimiYCbCrToRGB444_8u16u_P3C3R", "YCbCr P3 8u [1 1 1] array, steps", "RGB444 C3 16u [1]"},
    {"zimiBGR555ToYCbCr411_16u8u_C3P3R",
     "BGR555 C3 16u [1]",
     "YCbCr411 P3 8u [1 1@4x1 1@4x1] array, steps",
     "",
     {4, 1}},
    {"zimiYCbCr1620To420_8u_P3R",
     "YCbCr1620 P3 8u [1 1@4x4 1@4x4] array, steps",
     "YCbCr420 P3 8u [1 1@2x2 1@2x2] array, steps",
     "",
     {4, 4}},
    {"zimiYCbCr411_8u_P2P3R",
     "YCbCr411 P2 8u [1 2@4x1], steps",
     "YCbCr411 P3 8u [1 1@4x1 1@4x1] array, steps",
     "",
     {4, 0}},
    {"zimiReduceBits_8u1u_C1R", " C1 8u [1]", " C1 1u [1]",
     "dstBitOffset:32s unread1:32s unread2:32s dither:32s threshold:8u"},
    {"zimiReduceBits_32f16s_AC4R", " AC4 32f [3/4]", " AC4 16s [3/4]", "noise:32s dither:32s levels:32s"},
    {"zimiBGRToHLS_8u_AP4C4R", "BGR AP4 8u [1 1 1 1] array", "HLS C4 8u [4]"},
};

TEST(Catalogue, NamesSayEverything) {
  for (const Described& expected : kDescribed) {
    SCOPED_TRACE(expected.name);
    const auto e = describe(expected.name);
    ASSERT_TRUE(e);
    EXPECT_EQ(inShort(e->source), expected.source);
    EXPECT_EQ(inShort(e->destination), expected.destination);
    if (find(e->name) == nullptr) continue;
    EXPECT_EQ(inShort(e->further), expected.further);
    EXPECT_EQ(e->least.width, expected.least.width);
    EXPECT_EQ(e->least.height, expected.least.height);
  }
}

TEST(Catalogue, RowsOfOddWidths) {
  const auto rowBytes = [](const char* name, std::size_t plane, int width) {
    return describe(name)->destination.planes[plane].rowBytes(width);
  };
  EXPECT_EQ(rowBytes("zimiRGBToYCbCr422_8u_C3C2R", 0, 7), 14u);
  EXPECT_EQ(rowBytes("zimiRGBToYUV422_8u_C3P3", 1, 7), 4u);
  EXPECT_EQ(rowBytes("zimiRGBToYUV420_8u_C3P3R", 1, 7), 3u);
  EXPECT_EQ(rowBytes("zimiRGBToYUV420_8u_C3P3", 1, 7), 3u);
  EXPECT_EQ(rowBytes("zimiYCbCr420_8u_P3P2R", 1, 7), 6u);
  EXPECT_EQ(rowBytes("zimiYCbCr422ToCbYCr422_8u_C2R", 0, 7), 12u);
  EXPECT_EQ(describe("zimiRGBToYUV420_8u_C3P3R")->destination.planes[1].rows(5), 2);
  EXPECT_EQ(describe("zimiYUV420ToRGB565_8u16u_P3C3R")->source.planes[1].rows(5), 3);
  EXPECT_EQ(rowBytes("zimiReduceBits_8u1u_C1R", 0, 9), 2u);
  EXPECT_EQ(rowBytes("zimiSBGRToYCoCg_16s32s_C3P3R", 2, 5), 20u);
}

TEST(Catalogue, RejectsWhatBreaksTheGrammar) {
  for (const char* name : {"", "zimccGetLibVersion", "zimiRGBToGray", "zimiRGBToGray_8u", "zimiRGBToGray_8v_C3C1R",
                           "zimiRGBToGray_8u_C5R", "RGBToGray_8u_C3C1R"}) {
    EXPECT_FALSE(describe(name)) << name;
  }
}

TEST(Catalogue, EveryExportIsKnownAndFound) {
  const auto all = exports();
  EXPECT_TRUE(std::ranges::is_sorted(all, {}, &Export::name));
  for (const Export& e : all) {
    SCOPED_TRACE(e.name);
    EXPECT_EQ(find(e.name), &e);
    EXPECT_FALSE(e.family.empty());
    EXPECT_NE(e.function, nullptr);
  }
  EXPECT_EQ(find("zimiRGBToGray_8u_C3C1"), nullptr);
  EXPECT_EQ(matching("zimiColorToGray_@(16u|64f)_*").size(), 4u);
}

// What no export takes yet: planes with a step each, arrays of steps, no steps. A stand-in keeps what it was called
// with.
struct Received {
  const void* source[2] = {};
  Zim32s sourceStep[2] = {};
  const Zim8u* const* destination = nullptr;
  const Zim32s* destinationSteps = nullptr;
} received;

Export standIn(const char* name, AnyFunction function) {
  Export e = describe(name).value();
  e.function = function;
  return e;
}

constexpr ZimiSize kSize = {6, 4};

TEST(Caller, PassesPlanesOneByOneAndStepArrays) {
  const auto function = +[](const Zim8u* luma, Zim32s lumaStep, const Zim8u* chroma, Zim32s chromaStep,
                            Zim8u* const destination[3], const Zim32s steps[3], ZimiSize size) -> ZimResult {
    received = {{luma, chroma}, {lumaStep, chromaStep}, destination, steps};
    return size.width == kSize.width && size.height == kSize.height ? zimWarnOddSize : zimResultBadSize;
  };
  const Export e = standIn("zimiYCbCr420_8u_P2P3R", reinterpret_cast<AnyFunction>(function));
  Image source(e.source, kSize, 2), destination(e.destination, kSize, 3);
  const Operands operands(e, source, destination);  // holds the arrays
  EXPECT_EQ(Caller(e)(operands), zimWarnOddSize);
  for (const std::size_t plane : {0U, 1U}) {
    EXPECT_EQ(received.source[plane], source.row(plane, 0));
    EXPECT_EQ(received.sourceStep[plane], 8);
  }
  EXPECT_EQ(static_cast<const void*>(received.destination[2]), destination.row(2, 0));
  EXPECT_EQ(received.destinationSteps[0], 9);
  EXPECT_EQ(received.destinationSteps[2], 6);
}

TEST(Caller, PassesSteplessSides) {
  const auto function = +[](const Zim8u* source, Zim8u* const destination[3], ZimiSize size) -> ZimResult {
    received = {.source = {source, destination[1]}};
    return size.width;
  };
  const Export e = standIn("zimiRGBToYUV420_8u_C3P3", reinterpret_cast<AnyFunction>(function));
  Image source(e.source, kSize, 5), destination(e.destination, kSize, 5);
  EXPECT_EQ(Caller(e)(Operands(e, source, destination)), kSize.width);
  EXPECT_EQ(received.source[0], source.row(0, 0));
  EXPECT_EQ(received.source[1], destination.row(1, 0));
  EXPECT_EQ(source.row(0, 1) - source.row(0, 0), 18);
}

TEST(Caller, PassesArgumentsAheadOfTheSize) {
  const auto function = +[](const Zim8u*, Zim32s, Zim8u*, Zim32s, Zim32s offset, ZimiSize size, Zim32s, Zim32s,
                            Zim32s dither, Zim8u threshold) -> ZimResult {
    return offset == 5 && size.width == kSize.width && dither == zimDitherKindStucki ? threshold : -1;
  };
  const Export e = standIn("zimiReduceBits_8u1u_C1R", reinterpret_cast<AnyFunction>(function));
  Operands operands(e, kSize);
  operands.value("dstBitOffset").set({5});
  EXPECT_EQ(Caller(e)(operands), 127);
}

TEST(Catalogue, FormsBesideTheirExports) {
  const Export* const form = find("zimiReduceBits_8u_C3R:bayer");
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(form->function, find("zimiReduceBits_8u_C3R")->function);
  EXPECT_EQ(form->further[1].usual, std::vector<double>{zimDitherKindBayer});
  EXPECT_EQ(find("zimiRGBToGray_8u_C3C1R:bayer"), nullptr);
  EXPECT_GT(forms().size(), exports().size());
}

TEST(Image, DigestTakesAnyNotANumberAsOne) {
  const Side& side = find("zimiRGBToGray_32f_C3C1R")->destination;
  Image quiet(side, {1, 1}), negative(side, {1, 1});
  const Zim32u bits[] = {0x7fc00000u, 0xffc12345u};
  std::memcpy(quiet.row(0, 0), &bits[0], sizeof bits[0]);
  std::memcpy(negative.row(0, 0), &bits[1], sizeof bits[1]);
  EXPECT_EQ(quiet.digest(), negative.digest());
  negative.fill(std::byte(0));
  EXPECT_NE(quiet.digest(), negative.digest());
}

}  // namespace
