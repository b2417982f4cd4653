// Luma-chroma between layouts and grids: every plain conversion against a model of single samples, filters and fields
// against their formulas, slices and bands against the whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

#include "tests/chroma_model.h"
#include "tests/exports.h"
#include "zimcore.h"

namespace zim::test {
namespace {

using namespace catalogue;

int valueOf(std::byte b) { return std::to_integer<int>(b); }
std::byte byteOf(int value) { return static_cast<std::byte>(value); }

const Export& exportOf(const char* name) {
  const Export* e = find(name);
  if (e == nullptr) throw std::runtime_error(name);
  return *e;
}

void expectEqual(const Image& image, const Image& expected) {
  for (std::size_t plane = 0; plane < image.planes(); ++plane) {
    for (int y = 0; y < image.rows(plane); ++y) {
      const auto* row = image.row(plane, y);
      const auto difference = std::mismatch(row, row + image.rowBytes(plane), expected.row(plane, y));
      ASSERT_EQ(difference.first, row + image.rowBytes(plane))
          << "plane " << plane << ", row " << y << ", byte " << difference.first - row << ": "
          << valueOf(*difference.first) << ", not " << valueOf(*difference.second);
    }
  }
}

// ---- Without filters ----

struct Plain {
  const char* name;
  ChromaLayout source, destination;
  Chroma rule;
};

const Plain kPlain[] = {
    // clang-format off
    {"zimiCbYCr422ToYCbCr411_8u_C2P3R", {"C2 CbYCr 422"}, {"P3 YCbCr 411"}, Chroma::evenColumns},
    {"zimiCbYCr422ToYCbCr420_8u_C2P2R", {"C2 CbYCr 422"}, {"P2 CbCr 420"}, Chroma::evenRows},
    {"zimiCbYCr422ToYCbCr420_8u_C2P3R", {"C2 CbYCr 422"}, {"P3 YCbCr 420"}, Chroma::evenRows},
    {"zimiCbYCr422ToYCbCr422_8u_C2P3R", {"C2 CbYCr 422"}, {"P3 YCbCr 422"}, Chroma::keep},
    {"zimiCbYCr422ToYCbCr422_8u_C2R", {"C2 CbYCr 422"}, {"C2 YCbCr 422"}, Chroma::keep},
    {"zimiCbYCr422ToYCrCb420_8u_C2P3R", {"C2 CbYCr 422"}, {"P3 YCrCb 420"}, Chroma::evenRows},
    {"zimiYCbCr1620To420_8u_P3R", {"P3 YCbCr 1620"}, {"P3 YCbCr 420"}, Chroma::bothBetween},
    {"zimiYCbCr411To420_8u_P3R", {"P3 YCbCr 411"}, {"P3 YCbCr 420"}, Chroma::columnsBetween},
    {"zimiYCbCr411ToYCbCr420_8u_P2P3R", {"P2 CbCr 411"}, {"P3 YCbCr 420"}, Chroma::fold},
    {"zimiYCbCr411ToYCbCr420_8u_P3P2R", {"P3 YCbCr 411"}, {"P2 CbCr 420"}, Chroma::fold},
    {"zimiYCbCr411ToYCbCr420_8u_P3R", {"P3 YCbCr 411"}, {"P3 YCbCr 420"}, Chroma::fold},
    {"zimiYCbCr411ToYCbCr422_8u_P2C2R", {"P2 CbCr 411"}, {"C2 YCbCr 422"}, Chroma::doubleColumns},
    {"zimiYCbCr411ToYCbCr422_8u_P2P3R", {"P2 CbCr 411"}, {"P3 YCbCr 422"}, Chroma::doubleColumns},
    {"zimiYCbCr411ToYCbCr422_8u_P3C2R", {"P3 YCbCr 411"}, {"C2 YCbCr 422"}, Chroma::doubleColumns},
    {"zimiYCbCr411ToYCbCr422_8u_P3R", {"P3 YCbCr 411"}, {"P3 YCbCr 422"}, Chroma::doubleColumns},
    {"zimiYCbCr411ToYCrCb420_8u_P2P3R", {"P2 CbCr 411"}, {"P3 YCrCb 420"}, Chroma::fold},
    {"zimiYCbCr411ToYCrCb422_8u_P3C2R", {"P3 YCbCr 411"}, {"C2 YCrCb 422"}, Chroma::doubleColumns},
    {"zimiYCbCr411ToYCrCb422_8u_P3R", {"P3 YCbCr 411"}, {"P3 YCrCb 422"}, Chroma::doubleColumns},
    {"zimiYCbCr411_8u_P2P3R", {"P2 CbCr 411"}, {"P3 YCbCr 411"}, Chroma::keep},
    {"zimiYCbCr411_8u_P3P2R", {"P3 YCbCr 411"}, {"P2 CbCr 411"}, Chroma::keep},
    {"zimiYCbCr420To1620_8u_P3R", {"P3 YCbCr 420"}, {"P3 YCbCr 1620"}, Chroma::evenRowsAndColumns},
    {"zimiYCbCr420To411_8u_P3R", {"P3 YCbCr 420"}, {"P3 YCbCr 411"}, Chroma::rowsBetween},
    {"zimiYCbCr420ToCbYCr422_8u_P2C2R", {"P2 CbCr 420"}, {"C2 CbYCr 422"}, Chroma::doubleRows},
    {"zimiYCbCr420ToYCbCr411_8u_P2P3R", {"P2 CbCr 420"}, {"P3 YCbCr 411"}, Chroma::unfold},
    {"zimiYCbCr420ToYCbCr411_8u_P3P2R", {"P3 YCbCr 420"}, {"P2 CbCr 411"}, Chroma::unfold},
    {"zimiYCbCr420ToYCbCr422_8u_P2C2R", {"P2 CbCr 420"}, {"C2 YCbCr 422"}, Chroma::doubleRows},
    {"zimiYCbCr420ToYCbCr422_8u_P2P3R", {"P2 CbCr 420"}, {"P3 YCbCr 422"}, Chroma::doubleRows},
    {"zimiYCbCr420ToYCbCr422_8u_P3R", {"P3 YCbCr 420"}, {"P3 YCbCr 422"}, Chroma::doubleRows},
    {"zimiYCbCr420ToYCrCb420_8u_P2P3R", {"P2 CbCr 420"}, {"P3 YCbCr 420"}, Chroma::keep},
    {"zimiYCbCr420_8u_P2P3R", {"P2 CbCr 420"}, {"P3 YCbCr 420"}, Chroma::keep},
    {"zimiYCbCr420_8u_P3P2R", {"P3 YCbCr 420"}, {"P2 CbCr 420"}, Chroma::keep},
    {"zimiYCbCr422ToCbYCr422_8u_C2R", {"C2 YCbCr 422"}, {"C2 CbYCr 422"}, Chroma::keep},
    {"zimiYCbCr422ToCbYCr422_8u_P3C2R", {"P3 YCbCr 422"}, {"C2 CbYCr 422"}, Chroma::keep},
    {"zimiYCbCr422ToYCbCr411_8u_C2P2R", {"C2 YCbCr 422"}, {"P2 CbCr 411"}, Chroma::evenColumns},
    {"zimiYCbCr422ToYCbCr411_8u_C2P3R", {"C2 YCbCr 422"}, {"P3 YCbCr 411"}, Chroma::evenColumns},
    {"zimiYCbCr422ToYCbCr411_8u_P3P2R", {"P3 YCbCr 422"}, {"P2 CbCr 411"}, Chroma::evenColumns},
    {"zimiYCbCr422ToYCbCr411_8u_P3R", {"P3 YCbCr 422"}, {"P3 YCbCr 411"}, Chroma::evenColumns},
    {"zimiYCbCr422ToYCbCr420_8u_C2P2R", {"C2 YCbCr 422"}, {"P2 CbCr 420"}, Chroma::evenRows},
    {"zimiYCbCr422ToYCbCr420_8u_C2P3R", {"C2 YCbCr 422"}, {"P3 YCbCr 420"}, Chroma::evenRows},
    {"zimiYCbCr422ToYCbCr420_8u_P3P2R", {"P3 YCbCr 422"}, {"P2 CbCr 420"}, Chroma::evenRows},
    {"zimiYCbCr422ToYCbCr420_8u_P3R", {"P3 YCbCr 422"}, {"P3 YCbCr 420"}, Chroma::evenRows},
    {"zimiYCbCr422ToYCrCb420_8u_C2P3R", {"C2 YCbCr 422"}, {"P3 YCrCb 420"}, Chroma::evenRows},
    {"zimiYCbCr422ToYCrCb422_8u_C2R", {"C2 YCbCr 422"}, {"C2 YCrCb 422"}, Chroma::keep},
    {"zimiYCbCr422ToYCrCb422_8u_P3C2R", {"P3 YCbCr 422"}, {"C2 YCrCb 422"}, Chroma::keep},
    {"zimiYCbCr422_8u_C2P3R", {"C2 YCbCr 422"}, {"P3 YCbCr 422"}, Chroma::keep},
    {"zimiYCbCr422_8u_P3C2R", {"P3 YCbCr 422"}, {"C2 YCbCr 422"}, Chroma::keep},
    {"zimiYCrCb420ToCbYCr422_8u_P3C2R", {"P3 YCrCb 420"}, {"C2 CbYCr 422"}, Chroma::doubleRows},
    {"zimiYCrCb420ToYCbCr411_8u_P3P2R", {"P3 YCrCb 420"}, {"P2 CbCr 411"}, Chroma::unfold},
    {"zimiYCrCb420ToYCbCr420_8u_P3P2R", {"P3 YCrCb 420"}, {"P2 CbCr 420"}, Chroma::keep},
    {"zimiYCrCb420ToYCbCr422_8u_P3C2R", {"P3 YCrCb 420"}, {"C2 YCbCr 422"}, Chroma::doubleRows},
    {"zimiYCrCb420ToYCbCr422_8u_P3R", {"P3 YCrCb 420"}, {"P3 YCbCr 422"}, Chroma::doubleRows},
    {"zimiYCrCb422ToYCbCr411_8u_C2P3R", {"C2 YCrCb 422"}, {"P3 YCbCr 411"}, Chroma::evenColumns},
    {"zimiYCrCb422ToYCbCr420_8u_C2P3R", {"C2 YCrCb 422"}, {"P3 YCbCr 420"}, Chroma::evenRows},
    {"zimiYCrCb422ToYCbCr422_8u_C2P3R", {"C2 YCrCb 422"}, {"P3 YCbCr 422"}, Chroma::keep},
    // clang-format on
};

void expectAsModel(const Plain& plain, ZimiSize size, int padding) {
  const Export& e = exportOf(plain.name);
  Image source(e.source, size, padding), destination(e.destination, size, padding),
      expected(e.destination, size, padding);
  source.fillRandom(1);
  destination.fillRandom(2);
  expected.fillRandom(2);
  const int across = std::max(plain.source.across(), plain.destination.across());
  const int down = std::max(plain.source.down(), plain.destination.down());
  const ZimiSize whole = {size.width / across * across, size.height / down * down};
  ChromaView from(source, plain.source), to(expected, plain.destination);
  for (int y = 0; y < whole.height; ++y) {
    for (int x = 0; x < whole.width; ++x) to.luma(x, y) = from.luma(x, y);
  }
  for (const char which : {'b', 'r'}) {
    const auto s = [&](int k, int j) { return valueOf(from.chroma(which, k, j)); };
    for (int j = 0; j < whole.height / plain.destination.down(); ++j) {
      for (int k = 0; k < whole.width / plain.destination.across(); ++k) {
        to.chroma(which, k, j) = byteOf(chromaSample(plain.rule, s, whole.width / plain.source.across(),
                                                     whole.height / plain.source.down(), which, k, j));
      }
    }
  }
  ASSERT_EQ(Caller(e)(Operands(e, source, destination)), zimResultOk);
  expectEqual(destination, expected);
}

TEST(Plain, EveryMemberAsTheModelOfSamples) {
  for (const Plain& plain : kPlain) {
    const Export& e = exportOf(plain.name);
    for (const int width : {2, 3, 4, 5, 6, 7, 9, 31, 62, 63, 64, 65, 66, 67, 127, 128, 129, 132, 190, 259}) {
      for (const int height : {1, 2, 3, 4, 5, 7, 8, 12}) {
        const ZimiSize size = {width, height};
        if (resultOf(e, size) != zimResultOk) continue;
        expectAsModel(plain, size, width % 3 * 5);
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << plain.name << ", " << width << " x " << height;
      }
    }
  }
}

// There and back; a side of the second call is described by the first.
TEST(Plain, FoldAndUnfoldAreInverses) {
  constexpr std::array<const char*, 2> kThereAndBack[] = {
      {"zimiYCbCr411ToYCbCr420_8u_P3P2R", "zimiYCbCr420ToYCbCr411_8u_P2P3R"},
      {"zimiYCbCr411ToYCbCr420_8u_P2P3R", "zimiYCbCr420ToYCbCr411_8u_P3P2R"},
      {"zimiYCbCr411ToYCrCb420_8u_P2P3R", "zimiYCrCb420ToYCbCr411_8u_P3P2R"},
      {"zimiYCbCr420ToYCbCr411_8u_P3P2R", "zimiYCbCr411ToYCbCr420_8u_P2P3R"},
      {"zimiYCbCr420ToYCbCr411_8u_P2P3R", "zimiYCbCr411ToYCbCr420_8u_P3P2R"},
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

constexpr const char* kPackedSlices = "zimiYCbCr420ToYCbCr422_Filter_8u_P2C2R";
constexpr const char* kPlanarSlices = "zimiYCbCr420ToYCrCb420_Filter_8u_P2P3R";

// Rows that a slice reads and writes, in a frame with rows above and below it that stay as they are.
struct SliceCase {
  static constexpr int above = 4;  // rows of luma

  const Export& e;
  ZimiSize size;
  Zim32s layout;
  Image source, result, expected;

  SliceCase(const char* name, ZimiSize sliceSize, Zim32s sliceLayout, std::array<int, 2> chromaPadding)
      : e(exportOf(name)),
        size(sliceSize),
        layout(sliceLayout),
        source(e.source, frame()),
        result(withPadding(chromaPadding), frame()),
        expected(withPadding(chromaPadding), frame()) {
    source.fillExtremes(5);
    result.fillRandom(6);
    expected.fillRandom(6);
  }

  ZimiSize frame() const { return {size.width, size.height + 2 * above}; }

  // Chroma planes of different steps, as wider planes of which only the left part counts.
  Side withPadding(std::array<int, 2> chromaPadding) const {
    Side side = e.destination;
    for (std::size_t p = 1; p < side.planes.size(); ++p) side.planes[p].samples += chromaPadding[p - 1];
    return side;
  }

  int luma(int x, int row) const { return valueOf(source.row(0, row + above)[x]); }
  int chroma(int byte, int row) const { return valueOf(source.row(1, row + above / 2)[byte]); }

  ZimResult call() {
    Operands operands(e, size);
    operands.source = source.buffers();
    operands.destination = result.buffers();
    for (Buffers* side : {&operands.source, &operands.destination}) {
      for (std::size_t p = 0; p < 3; ++p) {
        const bool halved = p > 0;
        if (side->planes[p] != nullptr) {
          side->planes[p] =
              static_cast<std::byte*>(side->planes[p]) + std::ptrdiff_t{halved ? above / 2 : above} * side->steps[p];
        }
      }
    }
    operands.value("layout").set({static_cast<double>(layout)});
    return Caller(e)(operands);
  }
};

int limited(int value) { return std::min(value, 255); }

// The weights of luma: where row and neighbours count, and half of what is shifted out if the sum is rounded.
int lumaOf(const SliceCase& s, int x, int row, int upper, int lower, bool rounded) {
  const int sum = s.luma(x, upper) + 2 * s.luma(x, row) + s.luma(x, lower);
  return rounded ? limited((sum + 4) >> 2) : sum >> 2;
}
int chromaOf(const SliceCase& s, int byte, int row, bool rounded) {
  const int sum = s.chroma(byte, row) + s.chroma(byte, row + 1);
  return rounded ? limited((sum + 2) >> 1) : sum >> 1;
}

// What is particular to a row of packed 4:2:2: the rule of luma, the rows of chroma, and its rule.
struct PackedRow {
  int row, upper, lower;
  bool lumaRounded;
  int chromaRow;
  bool chromaRounded;
};

std::vector<PackedRow> packedRows(Zim32s layout, int height) {
  const bool top = layout & 1, bottom = layout & 16, whole = top && bottom;
  const int last = height / 2 - 1;
  std::vector<PackedRow> rows;
  for (int row = top ? 0 : -2; row < (bottom ? height : height - 2); ++row) {
    const int pair = (row + 2) / 2 - 1;
    PackedRow r = {row, row - 1, row + 1, true, pair, !whole};
    if (top && row == 0) r.upper = 0;
    if (top && row <= 1) r.chromaRounded = true;
    if (top && !bottom && row == 1) r.lumaRounded = false;
    if (bottom && row == height - 1) r.lower = row;
    if (bottom && row >= height - 2) r = {row, r.upper, r.lower, whole, last - 1, whole};
    rows.push_back(r);
  }
  return rows;
}

TEST(Slices, PackedRowsAsTheirTable) {
  for (const Zim32s layout : std::array<Zim32s, 5>{zimSliceTop, zimSliceCenter, zimSliceBottom, zimSliceWhole, 63}) {
    for (const int width : {2, 3, 30, 64, 67, 131}) {
      for (const int height : {2, 3, 4, 6, 8, 11}) {
        SliceCase s(kPackedSlices, {width, height}, layout, {});
        for (const PackedRow& r : packedRows(layout, height & ~1)) {
          std::byte* to = s.expected.row(0, r.row + SliceCase::above);
          for (int x = 0; x < (width & ~1); ++x) {
            const bool single = (layout & 21) == 21 && height / 2 == 1;
            to[2 * x] = byteOf(lumaOf(s, x, r.row, r.upper, r.lower, r.lumaRounded));
            to[2 * x + 1] = byteOf(single ? s.chroma(x, 0) : chromaOf(s, x, r.chromaRow, r.chromaRounded));
          }
        }
        ASSERT_EQ(s.call(), zimResultOk);
        expectEqual(s.result, s.expected);
        ASSERT_FALSE(HasFatalFailure()) << layout << ", " << width << " x " << height;
      }
    }
  }
}

// With steps of chroma that differ, each plane goes on by the other's, but in a top slice.
TEST(Slices, PlanarRowsAsTheirTable) {
  for (const Zim32s layout : {zimSliceTop, zimSliceCenter, zimSliceBottom, zimSliceWhole}) {
    for (const int width : {2, 3, 30, 64, 67, 131}) {
      for (const int height : {2, 4, 6, 8, 11}) {
        const bool top = layout & 1, bottom = layout & 16, whole = top && bottom;
        const int rows = height & ~1, pairs = rows / 2;
        // Wide enough that rows by either step do not meet.
        SliceCase s(kPlanarSlices, {width, height}, layout, {1, 2});
        for (int row = top ? 0 : -2; row < (bottom ? rows : rows - 2); ++row) {
          const int upper = top && row == 0 ? 0 : row - 1, lower = bottom && row == rows - 1 ? row : row + 1;
          for (int x = 0; x < (width & ~1); ++x) {
            s.expected.row(0, row + SliceCase::above)[x] = byteOf(lumaOf(s, x, row, upper, lower, whole));
          }
        }
        const int first = top ? 0 : -1;
        for (std::size_t p : {1U, 2U}) {
          const auto buffers = s.expected.buffers();
          const std::ptrdiff_t own = buffers.steps[p], next = top && !bottom ? own : buffers.steps[3 - p];
          for (int j = first; j < (bottom ? pairs : pairs - 1); ++j) {
            std::byte* to =
                static_cast<std::byte*>(buffers.planes[p]) + (SliceCase::above / 2 + first) * own + (j - first) * next;
            for (int k = 0; k < width / 2; ++k) {
              const int byte = 2 * k + static_cast<int>(p) - 1;
              const bool single = whole && pairs == 1;
              to[k] =
                  byteOf(single ? s.chroma(byte, 0) : chromaOf(s, byte, bottom ? std::min(j, pairs - 2) : j, whole));
            }
          }
        }
        ASSERT_EQ(s.call(), zimResultOk);
        expectEqual(s.result, s.expected);
        ASSERT_FALSE(HasFatalFailure()) << layout << ", " << width << " x " << height;
      }
    }
  }
}

TEST(Slices, OtherLayoutsWriteNothing) {
  for (const char* name : {kPackedSlices, kPlanarSlices}) {
    for (const Zim32s layout : {0, 2, 3, 5, 17, 20, 33, -22}) {
      SliceCase s(name, {66, 6}, layout, {});
      ASSERT_EQ(s.call(), zimResultOk);
      expectEqual(s.result, s.expected);
    }
  }
}

// Slices of several heights that follow one another write every row once. The packed form then has the luma of the
// whole image but in row 1 and the last two rows, and its chroma in the first pair.
TEST(Slices, TileTheImage) {
  const Export& e = exportOf(kPackedSlices);
  constexpr ZimiSize size = {70, 24};
  Image source(e.source, size), whole(e.destination, size), tiled(e.destination, size);
  source.fillRandom(8);
  tiled.fill(std::byte{1});
  ASSERT_EQ(Caller(e)(Operands(e, source, whole)), zimResultOk);
  struct Part {
    int row, height;
    Zim32s layout;
  };
  for (const Part& part :
       {Part{0, 8, zimSliceTop}, {8, 2, zimSliceCenter}, {10, 6, zimSliceCenter}, {16, 8, zimSliceBottom}}) {
    Operands operands(e, source, tiled);
    operands.size.height = part.height;
    operands.source.planes = {source.row(0, part.row), source.row(1, part.row / 2)};
    operands.destination.planes = {tiled.row(0, part.row)};
    operands.value("layout").set({static_cast<double>(part.layout)});
    ASSERT_EQ(Caller(e)(operands), zimResultOk);
  }
  for (int y = 0; y < size.height; ++y) {
    const bool lumaAlike = y != 1 && y < size.height - 2;
    for (int i = 0; i < 2 * size.width; ++i) {
      const int ours = valueOf(tiled.row(0, y)[i]), theirs = valueOf(whole.row(0, y)[i]);
      const bool alike = i % 2 == 0 ? lumaAlike : y < 2;
      // What is rounded up in one alone is one above the other, unless that would be 256.
      const int difference = i % 2 == 0 || y >= size.height - 2 ? -1 : 1;
      ASSERT_EQ(ours, alike        ? theirs
                      : i % 2 == 0 ? std::max(theirs + difference, 0)
                                   : limited(theirs + difference))
          << "row " << y << ", byte " << i;
    }
  }
}

// ---- Interpolated rows ----

TEST(FourTap, RowsAsTheFormula) {
  const Plain forms[] = {
      {"zimiYCbCr420ToYCbCr422_Filter_8u_P2P3R", {"P2 CbCr 420"}, {"P3 YCbCr 422"}, Chroma::doubleRows},
      {"zimiYCbCr420ToYCbCr422_Filter_8u_P3R", {"P3 YCbCr 420"}, {"P3 YCbCr 422"}, Chroma::doubleRows},
      {"zimiYCrCb420ToYCbCr422_Filter_8u_P3R", {"P3 YCrCb 420"}, {"P3 YCbCr 422"}, Chroma::doubleRows},
  };
  for (const Plain& form : forms) {
    const Export& e = exportOf(form.name);
    for (const ZimiSize& size : {ZimiSize{2, 8}, {3, 15}, {33, 16}, {130, 25}, {259, 40}}) {
      Image source(e.source, size), destination(e.destination, size), expected(e.destination, size);
      source.fillExtremes(9);
      destination.fillRandom(2);
      expected.fillRandom(2);
      ChromaView from(source, form.source), to(expected, form.destination);
      const int width = size.width & ~1, height = size.height & ~7, last = height / 2 - 1;
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) to.luma(x, y) = from.luma(x, y);
        for (const char which : {'b', 'r'}) {
          for (int k = 0; k < width / 2; ++k) {
            const auto even = [&](int j) { return valueOf(from.chroma(which, k, std::clamp(j, 0, last))); };
            const int j = y / 2;
            const int odd = ((even(j) + even(j + 1)) * 9 - even(j - 1) - even(j + 2) + 8) >> 4;
            to.chroma(which, k, y) = byteOf(y % 2 == 0 ? even(j) : std::clamp(odd, 0, 255));
          }
        }
      }
      ASSERT_EQ(Caller(e)(Operands(e, source, destination)), zimResultOk);
      expectEqual(destination, expected);
      ASSERT_FALSE(HasFatalFailure()) << form.name << ", " << size.width << " x " << size.height;
    }
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

TEST(AveragedBgr, OddPixelsAverageWithTheNextColumn) {
  for (const ZimiSize& size : {ZimiSize{1, 2}, {2, 2}, {3, 3}, {4, 1}, {61, 4}, {66, 5}, {200, 6}}) {
    const int columns = std::max(size.width / 2, 1), pixels = 2 * columns, rows = size.height & ~1;
    const auto bytes = [](int count, unsigned seed) {
      std::vector<Zim8u> random(static_cast<std::size_t>(count) + 1);
      for (Zim8u& x : random) x = static_cast<Zim8u>((seed = seed * 1103515245 + 12345) >> 16);
      return random;
    };
    const auto luma = bytes(pixels * size.height, 1), cr = bytes(columns * size.height, 2),
               cb = bytes(columns * size.height, 3);
    std::vector<Zim8u> bgra(static_cast<std::size_t>(4 * (pixels + 1) * size.height), 99), expected = bgra;
    for (int y = 0; y < rows; ++y) {
      for (int x = 0; x < pixels; ++x) {
        const auto at = [](int i) { return static_cast<std::size_t>(i); };
        const std::size_t own = at(y / 2 * columns + x / 2), next = x / 2 == columns - 1 ? own : own + 1;
        const auto chroma = [&](const std::vector<Zim8u>& c) {
          return x % 2 == 0 ? c[own] : (c[own] + c[next] + 1) >> 1;
        };
        const auto pixel = bgrOf(luma[at(y * pixels + x)], chroma(cb), chroma(cr), 200);
        std::copy(pixel.begin(), pixel.end(), &expected[at(4 * (y * (pixels + 1) + x))]);
      }
    }
    const Zim8u* const planes[3] = {luma.data(), cr.data(), cb.data()};
    const Zim32s steps[3] = {pixels, columns, columns};
    EXPECT_EQ(zimiYCrCb420ToBGR_Filter_8u_P3C4R(planes, steps, bgra.data(), 4 * (pixels + 1), size, 200),
              size.width % 2 + size.height % 2 == 0 ? zimResultOk : zimWarnOddSize);
    EXPECT_EQ(bgra, expected) << size.width << " x " << size.height;
  }
}

// ---- Fields ----

// Every row of chroma from those of its field, with heights that leave rows over.
const Plain kInterlaced[] = {
    {"zimiCbYCr422ToYCbCr420_Interlace_8u_C2P3R", {"C2 CbYCr 422"}, {"P3 YCbCr 420"}, Chroma::evenRows},
    {"zimiYCbCr422To420_Interlace_8u_P3R", {"P3 YCbCr 422"}, {"P3 YCbCr 420"}, Chroma::evenRows},
    {"zimiYCbCr420To422_Interlace_8u_P3R", {"P3 YCbCr 420"}, {"P3 YCbCr 422"}, Chroma::doubleRows},
    {"zimiYCbCr420ToCbYCr422_Interlace_8u_P3C2R", {"P3 YCbCr 420"}, {"C2 CbYCr 422"}, Chroma::doubleRows},
};

template <class Source>
int fieldSample(bool toHalf, const Source& s, int j, int height) {
  if (toHalf) {
    const int r = j / 2 * 4;
    return j % 2 == 0 ? (3 * s(r) + s(r + 2) + 2) >> 2 : (s(r + 1) + 3 * s(r + 3) + 2) >> 2;
  }
  if (j < 2) return s(j);
  if (j >= height - 2) return s(height / 2 - (height - j));
  constexpr int kWeights[4] = {5, 7, 1, 3};
  const int phase = (j - 2) % 4, upper = (j - 2) / 4 * 2 + phase % 2, weight = kWeights[phase];
  return (weight * s(upper) + (8 - weight) * s(upper + 2) + 4) >> 3;
}

// In one thread, and in bands for teams of up to 7: at 128 x 128 there are none.
TEST(Interlaced, RowsAsTheFormulaInEveryTeam) {
  for (const Plain& form : kInterlaced) {
    const Export& e = exportOf(form.name);
    const bool toHalf = form.rule == Chroma::evenRows;
    for (const ZimiSize& size : {ZimiSize{2, 4}, {5, 7}, {67, 14}, {128, 128}, {129, 135}, {132, 156}, {259, 133}}) {
      Image source(e.source, size), expected(e.destination, size);
      source.fillExtremes(4);
      expected.fillRandom(2);
      ChromaView from(source, form.source), to(expected, form.destination);
      const int width = size.width & ~1, height = size.height & ~3;
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) to.luma(x, y) = from.luma(x, y);
      }
      for (int j = 0; j < height / form.destination.down(); ++j) {
        for (const char which : {'b', 'r'}) {
          for (int k = 0; k < width / 2; ++k) {
            const auto s = [&](int row) { return valueOf(from.chroma(which, k, row)); };
            to.chroma(which, k, j) = byteOf(fieldSample(toHalf, s, j, height));
          }
        }
      }
      for (int team = 1; team <= 7; ++team) {
        zimSetNumThreads(team);
        Image destination(e.destination, size);
        destination.fillRandom(2);
        EXPECT_EQ(Caller(e)(Operands(e, source, destination)), resultOf(e, size));
        expectEqual(destination, expected);
        ASSERT_FALSE(HasFatalFailure()) << form.name << ", " << size.width << " x " << size.height << ", team " << team;
      }
    }
  }
  zimSetNumThreads(0);
}

}  // namespace
}  // namespace zim::test
