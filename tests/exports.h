// What tests that run over all exports share.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "tools/catalogue/caller.h"
#include "tools/catalogue/pattern.h"

namespace zim::catalogue {

// How test reports show an export.
inline void PrintTo(const Export& e, std::ostream* stream) { *stream << e.name; }

}  // namespace zim::catalogue

namespace zim::test {

inline bool matches(const catalogue::Export& e, const char* pattern) { return catalogue::matches(pattern, e.name); }

inline bool matchesAny(const catalogue::Export& e, std::span<const char* const> patterns) {
  return std::ranges::any_of(patterns, [&](const char* pattern) { return matches(e, pattern); });
}

template <class Condition>
std::vector<catalogue::Export> formsWhere(const Condition& condition) {
  std::vector<catalogue::Export> found;
  std::ranges::copy_if(catalogue::forms(), std::back_inserter(found), condition);
  return found;
}

inline std::string nameOf(const testing::TestParamInfo<catalogue::Export>& info) {
  std::string name = info.param.name;
  std::ranges::replace_if(
      name, [](char c) { return c == ':' || c == '-'; }, '_');
  return name;
}

// The pixels that are converted together and by themselves: what comes of such a cell follows from the source at its
// place and from nothing else. An incomplete cell at the right or bottom end goes with the one before it. {0, 0} if the
// whole image counts, or as much of a row as comes before a dark pixel.
inline ZimiSize cellOf(const catalogue::Export& e) {
  constexpr const char* kWholeImage[] = {"zimiToneMap*",
                                         "zimi*_Filter_*",
                                         "zimi*420To*422_Interlace_*",
                                         "zimiYCbCr@(1620To420|411To420|420To411)_*",
                                         "zimi*1u_*",
                                         "zimiRGBToCbYCr422*_8u_*",
                                         "zimi@(CFAToRGB|DemosaicAHD)_*",
                                         "zimiReduceBits_*R?(:@(stucki*|bayer-noise))",
                                         "zimiLUVToRGB_32f_*"};
  // Pixels of one column or row are apart from one another without steps only.
  const bool apart = e.source.steps != catalogue::Steps::none && e.destination.steps != catalogue::Steps::none;
  if (!apart || matchesAny(e, kWholeImage)) return {0, 0};
  // The thresholds of the dither repeat.
  if (matches(e, "zimi*Dither_*") || matches(e, "zimiReduceBits_*:bayer")) return {4, 4};
  // Two rows of each field.
  if (matches(e, "zimi*_Interlace_*")) return {2, 4};
  ZimiSize cell = {1, 1};
  for (const catalogue::Side* side : {&e.source, &e.destination}) {
    if (side->layout == "C2") cell.width = std::max(cell.width, 2);
    for (const catalogue::Plane& p : side->planes) {
      cell = {std::max(cell.width, p.pixelsAcross), std::max(cell.height, p.pixelsDown)};
    }
  }
  return cell;
}

// Every pixel of the destination follows from the pixel of the source at its place, and from nothing else.
inline bool isPixelwise(const catalogue::Export& e) {
  const ZimiSize cell = cellOf(e);
  return cell.width == 1 && cell.height == 1;
}

inline bool consistsOfCells(const catalogue::Export& e) { return cellOf(e).width > 0; }

// Sizes at which an export writes more than its image holds.
inline bool overflows(const catalogue::Export& e, ZimiSize size) {
  constexpr const char* kAtWidth1[] = {"zimiYCbCr422To@(RGB|BGR)@(444|555|565)_8u16u_C2C3R", "zimi*_Filter_8u_P3C4R"};
  return size.width == 1 && matchesAny(e, kAtWidth1);
}

// The nearest size, not below, that an export takes.
inline ZimiSize goodSize(const catalogue::Export& e, ZimiSize size) {
  const auto good = [](int extent, int least, int multiple) {
    return (std::max(extent, least) + multiple - 1) / multiple * multiple;
  };
  return {good(size.width, e.least.width, e.multiple.width), good(size.height, e.least.height, e.multiple.height)};
}

// Exports that accept any step.
inline bool takesAnyStep(const catalogue::Export& e) {
  constexpr const char* kTestSteps[] = {
      "zimiColorTwist*",          "zimi@(BGRToHLS|HLSToBGR)_*",      "zimiGamma*",
      "zimiRGBToCbYCr422Gamma_*", "zimi@(RGB|BGR)565To@(RGB|BGR)_*", "zimi@(RGB|BGR)To@(RGB|BGR)565_*"};
  return !matchesAny(e, kTestSteps) && e.source.steps != catalogue::Steps::none &&
         e.destination.steps != catalogue::Steps::none;
}

// Whether the build has teams of more than one thread.
bool hasTeams();

// Exports that drop the low bits of a step that is no multiple of the sample's size; others take steps to the byte, but
// for tone mapping, whose scan and conversion differ.
inline bool countsWholeSamples(const catalogue::Export& e) {
  constexpr const char* kWholeSampleSteps[] = {
      "zimi*ToGray_@(16u|16s|32f)_*",
      "zimi@(RGBToLUV|LUVToRGB)_@(16u|16s)_*",
      "zimiLUVToRGB_32f_*",
      "zimi@(RGBTo@(XYZ|YCC|HLS|HSV)|@(XYZ|YCC|HLS|HSV)ToRGB)_@(16u|16s|32f)_*",
      "zimi@(YCbCr?(420|422)|YUV420|RGB|BGR)To@(RGB|BGR)@(444|555|565)*",
      "zimi@(RGB|BGR)565To@(RGB|BGR)_*",
      "zimiCFAToRGB_16u_*",
      "zimiReduceBits_*R?(:stucki*)",
      "zimiReduceBits_*_@(C1|C3|AC4)R:bayer*",
  };
  return matchesAny(e, kWholeSampleSteps);
}

// Exports whose channels that a thread takes one after another share something.
inline bool showsTeamSize(const catalogue::Export& e) {
  return matches(e, "zimiReduceBits_*_@(C3|AC4|C4)R?(:stucki*)");
}

// Exports that go on in the second of three planes by the step of the third, and the other way round.
inline bool crossesSteps(const catalogue::Export& e) {
  constexpr const char* kCross[] = {"zimiRGBToYCrCb420_8u_AC4P3R", "zimiYCbCr420ToYCrCb420_Filter_8u_P2P3R"};
  return matchesAny(e, kCross);
}

// Contents of an image.
enum class Contents { random, extremes };
inline constexpr Contents kAllContents[] = {Contents::random, Contents::extremes};

inline void fill(catalogue::Image& image, Contents contents, std::uint64_t seed) {
  contents == Contents::random ? image.fillRandom(seed) : image.fillExtremes(seed);
}

}  // namespace zim::test
