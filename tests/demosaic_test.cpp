// Demosaicing on every grid and of regions, edges among them, against the inside of a larger mosaic on one grid, that
// of the frozen digests; every buffer between guard pages.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <vector>

#include "tests/canvas.h"
#include "tests/exports.h"

namespace zim::test {
namespace {

using namespace catalogue;

// Grids by their codes, and the site of a mosaic that starts with red at which such a grid would start.
struct Grid {
  const char* name;
  int x, y;
};
constexpr Grid kGrids[] = {{"BGGR", 1, 1}, {"RGGB", 0, 0}, {"GBRG", 0, 1}, {"GRBG", 1, 0}};

int mirrored(int i, int count) {
  while (i < 0 || i >= count) i = i < 0 ? -i : 2 * (count - 1) - i;
  return i;
}

// A mosaic that starts with red and goes on beyond the edges of another as that is taken to: mirrored at its edges.
struct Extended {
  ZimiSize inner;
  int left, above;
  Image image;

  Extended(const Image& source, const Grid& grid)
      : inner(source.size()),
        left(8 + grid.x),
        above(8 + grid.y),
        image(source.side(), {inner.width + 2 * left, inner.height + 2 * above}) {
    const std::size_t sample = source.rowBytes(0) / static_cast<std::size_t>(inner.width);
    for (int y = 0; y < image.size().height; ++y) {
      const std::byte* row = source.row(0, mirrored(y - above, inner.height));
      for (int x = 0; x < image.size().width; ++x) {
        const auto from = static_cast<std::size_t>(mirrored(x - left, inner.width)), to = static_cast<std::size_t>(x);
        std::memcpy(image.row(0, y) + to * sample, row + from * sample, sample);
      }
    }
  }

  // Of the inner mosaic.
  Image converted(const Export& e, const ZimiRegion& region) {
    Image result(e.destination, {region.width, region.height});
    Operands operands(e, image, result);
    operands.size = image.size();
    operands.region = {region.x + left, region.y + above, region.width, region.height};
    operands.value("grid").set({zimBayerGridRGGB});
    EXPECT_EQ(Caller(e)(operands), zimResultOk);
    if (matches(e, "zimiCFAToRGB_*")) averageGreens(result, region);
    return result;
  }

 private:
  // The method of averages compares no greens within two sites of an edge.
  void averageGreens(Image& result, const ZimiRegion& r) const {
    for (int y = r.y; y < r.y + r.height; ++y) {
      for (int x = r.x; x < r.x + r.width; ++x) {
        const bool inside = x > 1 && x < inner.width - 2 && y > 1 && y < inner.height - 2;
        if (inside || (x + left + y + above) % 2 != 0) continue;
        visit(image.side().type, [&]<class T>(std::type_identity<T>) {
          const auto at = [&](int i, int j) -> int {
            return static_cast<int>(reinterpret_cast<const T*>(image.row(0, y + above + j))[x + left + i]);
          };
          reinterpret_cast<T*>(result.row(0, y - r.y))[3 * (x - r.x) + 1] =
              static_cast<T>((at(0, -1) + at(-1, 0) + at(1, 0) + at(0, 1) + 2) >> 2);
        });
      }
    }
  }
};

// What is left of a region of an image.
ZimiRegion clipped(ZimiRegion region, ZimiSize size) {
  return {region.x, region.y, std::min(region.width, size.width - region.x),
          std::min(region.height, size.height - region.y)};
}

// What calls meet besides the usual contents: few values, which tie often.
enum class Scene { random, extremes, fewValues };

Image sceneOf(const Export& e, ZimiSize size, Scene scene, unsigned seed) {
  Image image(e.source, size);
  if (scene != Scene::fewValues) {
    fill(image, scene == Scene::random ? Contents::random : Contents::extremes, seed);
    return image;
  }
  std::mt19937 random(seed);
  for (int y = 0; y < size.height; ++y) {
    for (std::size_t i = 0; i < image.rowBytes(0); ++i) image.row(0, y)[i] = std::byte(random() % 8 == 0 ? 90 : 88);
  }
  return image;
}

class Demosaic : public testing::TestWithParam<Export> {
 protected:
  const Export& e = GetParam();
  const Caller call{e};

  // The region of the image as passed, with the given result and nothing written anywhere else.
  void expectRegion(const Image& source, int grid, const ZimiRegion& region, const Image& expected,
                    const Placement& placement) const {
    Canvas from(e.source, source.size(), placement), to(e.destination, expected.size(), placement);
    from.put(source);
    Operands operands(e, source.size());
    operands.region = region;
    operands.value("grid").set({static_cast<double>(grid)});
    operands.source = from.buffers();
    operands.destination = to.buffers();
    std::optional<Canvas> scratch;
    if (e.scratch) {
      scratch.emplace(e.scratch->side, e.scratch->size(expected.size()), placement);
      operands.scratch = scratch->buffers();
    }
    ASSERT_EQ(call(operands), zimResultOk);
    ASSERT_EQ(to.differenceFrom(expected), "");
    ASSERT_EQ(from.differenceFrom(source), "") << "in the source";
    if (scratch) {
      ASSERT_EQ(scratch->differenceAround(), "") << "in the scratch";
    }
  }

  // Regions of one image on all four grids.
  void expectAsInside(const Image& source, const std::vector<ZimiRegion>& regions) const {
    for (int grid = 0; grid < 4; ++grid) {
      Extended extended(source, kGrids[grid]);
      for (const ZimiRegion& region : regions) {
        const ZimiRegion r = clipped(region, source.size());
        const auto edge = (r.x + r.y + grid) % 2 ? Placement::Edge::start : Placement::Edge::end;
        const int padding = (r.width + grid) % 3 * bits(e.source.type) / 8;
        expectRegion(source, grid, region, extended.converted(e, r), {.edge = edge, .padding = padding});
        ASSERT_FALSE(HasFatalFailure()) << kGrids[grid].name << ' ' << source.size().width << " x "
                                        << source.size().height << ", region " << r.x << ' ' << r.y << ' ' << r.width
                                        << ' ' << r.height;
      }
    }
  }
};

// Whole images, and one region of each, of a phase and size of its own.
TEST_P(Demosaic, AllSmallSizes) {
  unsigned seed = 0;
  for (int height = e.least.height; height <= 40; ++height) {
    // All widths of few heights, and few widths of all heights.
    const int stride = height < 9 || height == 40 ? 1 : 7;
    for (int width = e.least.width + height % stride; width <= 40; width += stride) {
      std::mt19937 random(++seed);
      const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
      const int x = below(width), y = below(height);
      expectAsInside(sceneOf(e, {width, height}, static_cast<Scene>(seed % 3), seed),
                     {{0, 0, width, height}, {x, y, 1 + below(width - x), 1 + below(height - y)}});
      ASSERT_FALSE(HasFatalFailure());
    }
  }
}

// Blocks of columns that overlap, begin at any phase, and touch edges on one side, on both or on none.
TEST_P(Demosaic, WideRegions) {
  for (const Scene scene : {Scene::random, Scene::extremes, Scene::fewValues}) {
    std::vector<ZimiRegion> regions;
    for (int x = 0; x < 8; ++x) {
      for (const int width : {32, 33, 63, 64, 65, 96, 97, 101, 118, 200}) regions.push_back({x, x % 3, width, 4 + x});
    }
    expectAsInside(sceneOf(e, {131, 14}, scene, 17), regions);
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST_P(Demosaic, RegionsBeyondTheImage) {
  constexpr ZimiSize size = {19, 11};
  constexpr Zim32s kMost = std::numeric_limits<Zim32s>::max();
  const Image source = sceneOf(e, size, Scene::random, 5);
  expectAsInside(source, {{3, 2, kMost, kMost}, {18, 10, 2, kMost}, {0, 7, 20, 5}});
  // Nothing is left of these.
  const Image none(e.destination, {1, 1});
  for (const ZimiRegion& region : {ZimiRegion{19, 0, 5, 5},
                                   {0, 11, 5, 5},
                                   {kMost, kMost, kMost, kMost},
                                   {2, 2, 0, 3},
                                   {2, 2, 3, -1},
                                   {20, 1, -kMost, 3}}) {
    Canvas destination(e.destination, {1, 1});
    Operands operands(e, size);
    operands.source = source.buffers();
    operands.destination = destination.buffers();
    operands.region = region;
    EXPECT_EQ(call(operands), zimResultOk);
    EXPECT_EQ(destination.differenceFromBlank(), "");
  }
}

INSTANTIATE_TEST_SUITE_P(All, Demosaic, testing::ValuesIn(formsWhere([](const Export& e) { return e.takesRegion; })),
                         nameOf);

}  // namespace
}  // namespace zim::test
