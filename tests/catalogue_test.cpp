// Patterns, names that are none, and forms; what names say shows in the digests and bounds of every export.
#include "tools/catalogue/catalogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "tools/catalogue/image.h"
#include "tools/catalogue/pattern.h"

namespace {

using namespace zim::catalogue;

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

// A sample that were taken for one that counts would not be missed by tests that compare what counts.
TEST(Catalogue, FourthSamplesThatCount) {
  const struct {
    const char* name;
    int ofSource, ofDestination;
  } cases[] = {{"zimiRGBToYCbCr_8u_AC4R", 3, 3},     {"zimiRGBToYUV_8u_AC4P4R", 4, 1},
               {"zimiGammaInv_32f_AC4IR", 3, 3},     {"zimiSBGRToYCoCg_Rev_16s32s_C4P3R", 3, 1},
               {"zimiRGBToYCbCr420_8u_C4P2R", 3, 1}, {"zimiYUV420ToRGB_8u_P3AC4R", 1, 4},
               {"zimiColorTwist_32f_C4R", 4, 4},     {"zimiReduceBits_32f16s_AC4R", 3, 3}};
  for (const auto& c : cases) {
    EXPECT_EQ(find(c.name)->source.planes[0].usedSamples, c.ofSource) << c.name;
    EXPECT_EQ(find(c.name)->destination.planes[0].usedSamples, c.ofDestination) << c.name;
  }
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
