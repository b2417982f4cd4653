// What tests that run over all exports share.
#pragma once

#include <fnmatch.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "tools/catalogue/caller.h"

namespace zim::catalogue {

// How test reports show an export.
inline void PrintTo(const Export& e, std::ostream* stream) { *stream << e.name; }

}  // namespace zim::catalogue

namespace zim::test {

inline bool matches(const catalogue::Export& e, const char* pattern) {
  return fnmatch(pattern, e.name.c_str(), FNM_EXTMATCH) == 0;
}

inline bool matchesAny(const catalogue::Export& e, std::span<const char* const> patterns) {
  return std::ranges::any_of(patterns, [&](const char* pattern) { return matches(e, pattern); });
}

template <class Condition>
std::vector<catalogue::Export> exportsWhere(const Condition& condition) {
  std::vector<catalogue::Export> found;
  std::ranges::copy_if(catalogue::exports(), std::back_inserter(found), condition);
  return found;
}

inline std::string nameOf(const testing::TestParamInfo<catalogue::Export>& info) { return info.param.name; }

// Every pixel of the destination follows from the pixel of the source at its place, and from nothing else.
inline bool isPixelwise(const catalogue::Export& e) {
  constexpr const char* kWholeImage[] = {"zimiToneMap*"};
  const auto onePixel = [](const catalogue::Side& side) {
    return side.layout != "C2" && std::ranges::all_of(side.planes, [](const catalogue::Plane& p) {
             return p.pixelsAcross == 1 && p.pixelsDown == 1 && bits(p.type) >= 8;
           });
  };
  return onePixel(e.source) && onePixel(e.destination) && !matchesAny(e, kWholeImage);
}

// Exports that accept any step.
inline bool takesAnyStep(const catalogue::Export& e) {
  constexpr const char* kTestSteps[] = {"zimiColorTwist*", "zimiGamma*", "zimi@(BGRToHLS|HLSToBGR)_*"};
  return !matchesAny(e, kTestSteps) && e.source.steps != catalogue::Steps::none &&
         e.destination.steps != catalogue::Steps::none;
}

// Contents of an image.
enum class Contents { random, extremes };
inline constexpr Contents kAllContents[] = {Contents::random, Contents::extremes};

inline void fill(catalogue::Image& image, Contents contents, std::uint64_t seed) {
  contents == Contents::random ? image.fillRandom(seed) : image.fillExtremes(seed);
}

}  // namespace zim::test
