// Luma-chroma between layouts and grids: conversions there and back, slices and bands against the whole, and averaged
// BGR at every luma with every pair of chroma.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "tests/canvas.h"
#include "tests/pixels.h"
#include "tests/reference.h"
#include "zimcore.h"

namespace zim::test {
namespace {

using namespace catalogue;

// ---- There and back ----

// What loses nothing, and is taken back by another conversion. A side of the second call is described by the first.
TEST(Plain, ThereAndBack) {
  constexpr std::array<const char*, 2> kThereAndBack[] = {
      {"zimiYCbCr411ToYCbCr420_8u_P3P2R", "zimiYCbCr420ToYCbCr411_8u_P2P3R"},
      {"zimiYCbCr411ToYCbCr420_8u_P2P3R", "zimiYCbCr420ToYCbCr411_8u_P3P2R"},
      {"zimiYCbCr411ToYCrCb420_8u_P2P3R", "zimiYCrCb420ToYCbCr411_8u_P3P2R"},
      {"zimiYCbCr420ToYCbCr411_8u_P3P2R", "zimiYCbCr411ToYCbCr420_8u_P2P3R"},
      {"zimiYCbCr420ToYCbCr411_8u_P2P3R", "zimiYCbCr411ToYCbCr420_8u_P3P2R"},
      {"zimiYCbCr422ToCbYCr422_8u_P3C2R", "zimiCbYCr422ToYCbCr422_8u_C2P3R"},
      {"zimiYCbCr422ToYCrCb422_8u_P3C2R", "zimiYCrCb422ToYCbCr422_8u_C2P3R"},
      {"zimiYCbCr422_8u_C2P3R", "zimiYCbCr422_8u_P3C2R"},
      {"zimiYCbCr420_8u_P2P3R", "zimiYCbCr420_8u_P3P2R"},
      {"zimiYCbCr411_8u_P2P3R", "zimiYCbCr411_8u_P3P2R"},
      {"zimiYCbCr411ToYCbCr422_8u_P2C2R", "zimiYCbCr422ToYCbCr411_8u_C2P2R"},
      {"zimiYCbCr420ToYCbCr422_8u_P2C2R", "zimiYCbCr422ToYCbCr420_8u_C2P2R"},
  };
  for (const auto& [there, back] : kThereAndBack) {
    const Export &first = exportOf(there), &second = exportOf(back);
    for (const ZimiSize& size : {ZimiSize{4, 2}, {60, 6}, {332, 10}}) {
      Image source(first.source, size), between(first.destination, size), result(second.destination, size);
      source.fillRandom(3);
      ASSERT_EQ(Caller(first)(Operands(first, source, between)), zimResultOk);
      ASSERT_EQ(Caller(second)(Operands(second, between, result)), zimResultOk);
      EXPECT_EQ(result.digest(), source.digest()) << there << ", " << size.width << " x " << size.height;
    }
  }
}

// ---- Slices ----

// By how much a sample of a slice is above that of the whole image, which is rounded at other places. Slices of planes
// are not rounded at all; packed ones are but for luma in row 1 and all of the last two rows.
int aboveWhole(bool packed, int row, std::size_t byte, int height) {
  const bool isLast = row >= height - 2, isLuma = byte % 2 == 0;
  if (!packed || isLast || (isLuma && row == 1)) return -1;
  return isLuma || row < 2 ? 0 : 1;
}

struct Part {
  Zim32s layout;
  int row, height;
  int first, end;  // rows that it writes
};

// Each slice of an image writes the rows that are its own, and no others. With steps of chroma that differ, each plane
// goes on by the other's, but in a top slice.
void expectSlices(const char* name, int width) {
  constexpr Part kParts[] = {{zimSliceTop, 0, 8, 0, 6},
                             {zimSliceCenter, 8, 2, 6, 8},
                             {zimSliceCenter, 10, 6, 8, 14},
                             {zimSliceBottom, 16, 9, 14, 24},
                             {zimSliceBottom, 22, 3, 20, 24},
                             {zimSliceWhole, 0, 25, 0, 24},
                             {63, 0, 25, 0, 24},
                             {0, 0, 25, 0, 0},
                             {5, 8, 8, 0, 0},
                             {17, 8, 8, 0, 0},
                             {20, 8, 8, 0, 0},
                             {-22, 8, 8, 0, 0}};
  const ZimiSize size = {width, 25};
  const Export& e = exportOf(name);
  const bool packed = e.destination.layout == "C2";
  Side wider = e.destination;
  if (!packed) wider.planes[2].samples += 1;
  Image source(e.source, size), whole(e.destination, size);
  source.fillRandom(8);
  ASSERT_EQ(Caller(e)(Operands(e, source, whole)), zimResultOk);
  for (const Part& part : kParts) {
    Image slice(wider, size);
    slice.fill(kCanary);
    Operands operands(e, {width, part.height});
    operands.source = at(source, 0, part.row);
    operands.destination = at(slice, 0, part.row);
    operands.value("layout").set({static_cast<double>(part.layout)});
    if (!packed && part.layout != zimSliceTop) {
      auto& [planes, steps, nullArray, nullSteps] = operands.destination;
      std::swap(steps[1], steps[2]);
      // The first row of a slice below others is one step of its own above.
      const std::ptrdiff_t shift = part.first < part.row ? steps[1] - steps[2] : 0;
      planes[1] = static_cast<std::byte*>(planes[1]) + shift;
      planes[2] = static_cast<std::byte*>(planes[2]) - shift;
    }
    ASSERT_EQ(Caller(e)(operands), zimResultOk);
    const bool isWhole = part.end - part.first == 24;
    for (std::size_t plane = 0; plane < slice.planes(); ++plane) {
      for (int y = 0; y < slice.rows(plane); ++y) {
        const int row = plane == 0 ? y : 2 * y;
        for (std::size_t i = 0; i < slice.rowBytes(plane); ++i) {
          int expected = std::to_integer<int>(kCanary);
          if (row >= part.first && row < part.end && i < whole.rowBytes(plane)) {
            const int above = isWhole ? 0 : aboveWhole(packed, row, i, 24);
            expected = std::clamp(std::to_integer<int>(whole.row(plane, y)[i]) + above, 0, 255);
          }
          ASSERT_EQ(std::to_integer<int>(slice.row(plane, y)[i]), expected)
              << name << ", layout " << part.layout << ", plane " << plane << ", row " << y << ", byte " << i;
        }
      }
    }
  }
}

TEST(Slices, AsTheWholeImage) {
  for (const int width : {2, 30, 64, 70, 132}) {
    expectSlices("zimiYCbCr420ToYCbCr422_Filter_8u_P2C2R", width);
    expectSlices("zimiYCbCr420ToYCrCb420_Filter_8u_P2P3R", width);
  }
}

// ---- BGR ----

std::array<Zim8u, 4> bgrOf(int y, int cb, int cr, Zim8u aval) {
  const auto channel = [&](int chroma) {
    return static_cast<Zim8u>(std::clamp((76309 * (y - 16) + chroma) >> 16, 0, 255));
  };
  cb -= 128;
  cr -= 128;
  return {channel(132201 * cb), channel(-25675 * cb - 53279 * cr), channel(104597 * cr), aval};
}

// A row pair for every Cb, an image for every Cr, all Y in it: chroma is even along a row.
TEST(AveragedBgr, EveryTriple) {
  constexpr Zim32s width = 256, height = 512;
  std::vector<Zim8u> luma(width * height), cr(width / 2 * height / 2), cb(cr.size()), bgra(4 * luma.size());
  for (std::size_t i = 0; i < luma.size(); ++i) luma[i] = static_cast<Zim8u>(i);
  for (std::size_t i = 0; i < cb.size(); ++i) cb[i] = static_cast<Zim8u>(i / (width / 2));
  const Zim8u* const planes[3] = {luma.data(), cr.data(), cb.data()};
  const Zim32s steps[3] = {width, width / 2, width / 2};
  for (int v = 0; v < 256; ++v) {
    std::fill(cr.begin(), cr.end(), static_cast<Zim8u>(v));
    ASSERT_EQ(zimiYCrCb420ToBGR_Filter_8u_P3C4R(planes, steps, bgra.data(), 4 * width, {width, height}, 7),
              zimResultOk);
    for (std::size_t i = 0; i < luma.size(); ++i) {
      const auto expected = bgrOf(luma[i], static_cast<int>(i / width / 2), v, 7);
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), &bgra[4 * i]))
          << +luma[i] << ' ' << i / width << ' ' << v;
    }
  }
}

// A single column is a pair of pixels, too.
TEST(AveragedBgr, OneColumn) {
  const Zim8u luma[] = {16, 200, 0, 50}, cr[] = {140}, cb[] = {90};
  const Zim8u* const planes[3] = {luma, cr, cb};
  const Zim32s steps[3] = {2, 1, 1};
  std::array<std::array<Zim8u, 4>, 4> bgra;
  ASSERT_EQ(zimiYCrCb420ToBGR_Filter_8u_P3C4R(planes, steps, bgra[0].data(), 8, {1, 2}, 200), zimWarnOddSize);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(bgra[i], bgrOf(luma[i], 90, 140, 200));
}

}  // namespace
}  // namespace zim::test
