// Demosaicing against a model in plain integers that computes each plane whole, from the mosaic as a function of any x
// and y; every buffer between guard pages.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "tests/canvas.h"
#include "tests/exports.h"

namespace zim::test {
namespace {

using namespace catalogue;

constexpr const char* kTiles[] = {"BGGR", "RGGB", "GBRG", "GRBG"};

// A plane of 32-bit values about an image, as far as `margin` beyond it.
class Grid {
 public:
  static constexpr int kMargin = 3;

  explicit Grid(ZimiSize size)
      : width_(size.width + 2 * kMargin), values_(static_cast<std::size_t>(width_ * (size.height + 2 * kMargin))) {}

  Zim32s& operator()(int x, int y) { return values_[static_cast<std::size_t>((y + kMargin) * width_ + x + kMargin)]; }
  Zim32s operator()(int x, int y) const { return const_cast<Grid&>(*this)(x, y); }

 private:
  int width_;
  std::vector<Zim32s> values_;
};

struct Mosaic {
  ZimiSize size;
  int grid, white;
  Grid samples;

  Mosaic(const Image& image, int gridCode) : size(image.size()), grid(gridCode), samples(image.size()) {
    white = image.side().type == SampleType::u8 ? 255 : 65535;
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) {
        visit(image.side().type, [&]<class T>(std::type_identity<T>) {
          T sample;
          std::memcpy(&sample, image.row(0, y) + static_cast<std::size_t>(x) * sizeof sample, sizeof sample);
          samples(x, y) = static_cast<Zim32s>(sample);
        });
      }
    }
  }

  static int mirrored(int i, int count) {
    while (i < 0 || i >= count) i = i < 0 ? -i : 2 * (count - 1) - i;
    return i;
  }
  Zim32s operator()(int x, int y) const { return samples(mirrored(x, size.width), mirrored(y, size.height)); }
  char colour(int x, int y) const { return kTiles[grid][(y & 1) * 2 + (x & 1)]; }
};

using Colours = std::array<Zim32s, 3>;
int indexOf(char colour) { return colour == 'R' ? 0 : colour == 'G' ? 1 : 2; }

Colours byAverages(const Mosaic& s, int x, int y) {
  Colours rgb;
  const Zim32s across = (s(x - 1, y) + s(x + 1, y) + 1) >> 1, down = (s(x, y - 1) + s(x, y + 1) + 1) >> 1;
  rgb[static_cast<std::size_t>(indexOf(s.colour(x, y)))] = s(x, y);
  if (s.colour(x, y) == 'G') {
    rgb[static_cast<std::size_t>(indexOf(s.colour(x + 1, y)))] = across;
    rgb[static_cast<std::size_t>(indexOf(s.colour(x, y + 1)))] = down;
    return rgb;
  }
  rgb[static_cast<std::size_t>(indexOf(s.colour(x + 1, y + 1)))] =
      (s(x - 1, y - 1) + s(x + 1, y - 1) + s(x - 1, y + 1) + s(x + 1, y + 1) + 2) >> 2;
  rgb[1] = (s(x, y - 1) + s(x - 1, y) + s(x + 1, y) + s(x, y + 1) + 2) >> 2;
  if (x >= 2 && x <= s.size.width - 3 && y >= 2 && y <= s.size.height - 3) {
    const int dv = std::abs(s(x, y - 2) - s(x, y + 2)), dh = std::abs(s(x - 2, y) - s(x + 2, y));
    if (dv < dh) rgb[1] = down;
    if (dh < dv) rgb[1] = across;
  }
  return rgb;
}

// All planes of one candidate, over the image and as far beyond as they are needed.
struct Candidate {
  std::array<Grid, 3> rgb;
  std::array<Grid, 3> yuv;

  Candidate(const Mosaic& s, int dx, int dy)
      : rgb{Grid(s.size), Grid(s.size), Grid(s.size)}, yuv{Grid(s.size), Grid(s.size), Grid(s.size)} {
    Grid& g = rgb[1];
    for (int y = -3; y < s.size.height + 3; ++y) {
      for (int x = -3; x < s.size.width + 3; ++x) {
        g(x, y) = s(x, y);
        if (s.colour(x, y) == 'G') continue;
        const Zim32s a = s(x - dx, y - dy), b = s(x + dx, y + dy);
        const Zim32s t = ((2 * s(x, y) - s(x - 2 * dx, y - 2 * dy) - s(x + 2 * dx, y + 2 * dy)) >> 2) + ((a + b) >> 1);
        g(x, y) = std::clamp(t, std::min(a, b), std::max(a, b));
      }
    }
    for (int y = -2; y < s.size.height + 2; ++y) {
      for (int x = -2; x < s.size.width + 2; ++x) {
        const auto difference = [&](int i, int j) { return s(x + i, y + j) - g(x + i, y + j); };
        const auto set = [&](char colour, Zim32s value) {
          rgb[static_cast<std::size_t>(indexOf(colour))](x, y) = std::clamp(value, 0, s.white);
        };
        if (s.colour(x, y) == 'G') {
          set(s.colour(x + 1, y), g(x, y) + ((difference(-1, 0) + difference(1, 0)) >> 1));
          set(s.colour(x, y + 1), g(x, y) + ((difference(0, -1) + difference(0, 1)) >> 1));
        } else {
          set(s.colour(x, y), s(x, y));
          set(s.colour(x + 1, y + 1),
              g(x, y) + ((difference(-1, -1) + difference(1, -1) + difference(-1, 1) + difference(1, 1)) >> 2));
        }
        const Zim32s r = rgb[0](x, y), b = rgb[2](x, y);
        yuv[0](x, y) = (66 * r + 129 * g(x, y) + 25 * b + 128) >> 8;
        yuv[1](x, y) = (-38 * r - 74 * g(x, y) + 112 * b + 128) >> 8;
        yuv[2](x, y) = (112 * r - 94 * g(x, y) - 18 * b + 128) >> 8;
      }
    }
  }

  Zim32s luma(int x, int y, int i, int j) const { return std::abs(yuv[0](x + i, y + j) - yuv[0](x, y)); }
  Zim32s chroma(int x, int y, int i, int j) const {
    const auto squared = [&](const Grid& p) {
      const auto d = static_cast<Zim32u>(p(x + i, y + j) - p(x, y));
      return d * d;
    };
    return static_cast<Zim32s>(squared(yuv[1]) + squared(yuv[2]));
  }
};

struct ByHomogeneity {
  Candidate h, v;
  Grid difference;

  explicit ByHomogeneity(const Mosaic& s) : h(s, 1, 0), v(s, 0, 1), difference(s.size) {
    for (int y = -1; y < s.size.height + 1; ++y) {
      for (int x = -1; x < s.size.width + 1; ++x) {
        const auto limit = [&](auto d) {
          return std::min(std::max((h.*d)(x, y, -1, 0), (h.*d)(x, y, 1, 0)),
                          std::max((v.*d)(x, y, 0, -1), (v.*d)(x, y, 0, 1)));
        };
        const Zim32s lumaLimit = limit(&Candidate::luma), chromaLimit = limit(&Candidate::chroma);
        const auto count = [&](const Candidate& c) {
          int within = 0;
          for (const auto& [i, j] : {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 1}}) {
            within += c.luma(x, y, i, j) <= lumaLimit && c.chroma(x, y, i, j) <= chromaLimit;
          }
          return within;
        };
        difference(x, y) = count(h) - count(v);
      }
    }
  }

  std::vector<Colours> row(int y, int first, int width) const {
    std::vector<Colours> pixels;
    int last = 1;
    for (int x = first; x < first + width; ++x) {
      int sum = 0;
      for (int j = -1; j <= 1; ++j) {
        for (int i = -1; i <= 1; ++i) sum += difference(x + i, y + j);
      }
      if (sum != 0) last = sum;
      const auto& rgb = (last >= 0 ? h : v).rgb;
      pixels.push_back({rgb[0](x, y), rgb[1](x, y), rgb[2](x, y)});
    }
    return pixels;
  }
};

// What is left of a region of an image.
ZimiRegion clipped(ZimiRegion region, ZimiSize size) {
  return {region.x, region.y, std::min(region.width, size.width - region.x),
          std::min(region.height, size.height - region.y)};
}

void put(Image& image, int x, int y, const Colours& rgb) {
  visit(image.side().type, [&]<class T>(std::type_identity<T>) {
    const T samples[] = {static_cast<T>(rgb[0]), static_cast<T>(rgb[1]), static_cast<T>(rgb[2])};
    std::memcpy(image.row(0, y) + static_cast<std::size_t>(x) * sizeof samples, samples, sizeof samples);
  });
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
  const bool homogeneity = matches(e, "zimiDemosaicAHD_*");

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
  void expectAsModel(const Image& source, const std::vector<ZimiRegion>& regions) const {
    for (int grid = 0; grid < 4; ++grid) {
      const Mosaic mosaic(source, grid);
      std::optional<ByHomogeneity> model;
      if (homogeneity) model.emplace(mosaic);
      for (const ZimiRegion& region : regions) {
        const ZimiRegion r = clipped(region, source.size());
        Image expected(e.destination, {r.width, r.height});
        for (int y = 0; y < r.height; ++y) {
          const auto row = model ? model->row(r.y + y, r.x, r.width) : std::vector<Colours>();
          for (int x = 0; x < r.width; ++x) {
            put(expected, x, y, model ? row[static_cast<std::size_t>(x)] : byAverages(mosaic, r.x + x, r.y + y));
          }
        }
        const int sampleBytes = bits(e.source.type) / 8;
        const auto edge = (r.x + r.y + grid) % 2 ? Placement::Edge::start : Placement::Edge::end;
        expectRegion(source, grid, region, expected, {.edge = edge, .padding = (r.width + grid) % 3 * sampleBytes});
        ASSERT_FALSE(HasFatalFailure()) << kTiles[grid] << ' ' << source.size().width << " x " << source.size().height
                                        << ", region " << r.x << ' ' << r.y << ' ' << r.width << ' ' << r.height;
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
      expectAsModel(sceneOf(e, {width, height}, static_cast<Scene>(seed % 3), seed),
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
    expectAsModel(sceneOf(e, {131, 14}, scene, 17), regions);
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST_P(Demosaic, RegionsBeyondTheImage) {
  constexpr ZimiSize size = {19, 11};
  constexpr Zim32s kMost = std::numeric_limits<Zim32s>::max();
  const Image source = sceneOf(e, size, Scene::random, 5);
  expectAsModel(source, {{3, 2, kMost, kMost}, {18, 10, 2, kMost}, {0, 7, 20, 5}});
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
