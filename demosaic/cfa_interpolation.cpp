// RGB from a mosaic by averages of neighbours, of which green alone looks at its surroundings.
#include "demosaic/mosaic.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {
namespace {

// Green at a red or blue site follows the direction in which samples of the site's own colour, two away, differ less.
// In the two outermost rows and columns, which lack some of those, it is the average of all four neighbours.
enum class Green { ofAllNeighbours, alongLesserGradient };

template <class T, class Sites>
ZIM_INLINE auto greenAt(const Sites& s, Green rule) {
  const auto left = s(-1, 0), right = s(1, 0), above = s(0, -1), below = s(0, 1);
  const auto ofAll = averageOfFour(left, right, above, below);
  if (rule == Green::ofAllNeighbours) return ofAll;
  const auto down = distance(s(0, -2), s(0, 2)), across = distance(s(-2, 0), s(2, 0));
  return select(down < across, averageUp(above, below), select(across < down, averageUp(left, right), ofAll));
}

// A pixel's colours: that of the red or blue sites of its row, green, and that of those of the rows beside.
//   at a green site         (left + right + 1) >> 1,  the sample,  (above + below + 1) >> 1
//   at a red or blue site   the sample,  green by its rule,  (the four at the corners + 2) >> 2
template <class T, class Sites, int N = Sites::lanes>
ZIM_INLINE Pixels<T, N, 3> interpolated(const Sites& s, Lane<SignedOf<T>, N> isGreen, Green rule) {
  const auto sample = s(0, 0);
  const auto across = averageUp(s(-1, 0), s(1, 0)), down = averageUp(s(0, -1), s(0, 1));
  const auto corners = averageOfFour(s(-1, -1), s(1, -1), s(-1, 1), s(1, 1));
  return {select(isGreen, across, sample), select(isGreen, sample, greenAt<T>(s, rule)),
          select(isGreen, down, corners)};
}

template <class T>
ZimResult interpolateMosaic(const T* pSrc, const ZimiRegion& region, ZimiSize srcSize, std::ptrdiff_t srcStep, T* pDst,
                            std::ptrdiff_t dstStep, ZimBayerGrid grid) {
  if (const ZimResult failure = checkMosaic(pSrc, pDst, srcSize, 2, grid); failure != zimResultOk) return failure;
  const Colours colours{grid};
  const Mosaic<T> mosaic{reinterpret_cast<const std::byte*>(pSrc), srcStep, srcSize.width, srcSize.height};
  const std::ptrdiff_t left = region.x, top = region.y;
  const std::ptrdiff_t right = std::min(left + region.width, mosaic.width);
  const std::ptrdiff_t bottom = std::min(top + region.height, mosaic.height);
  const auto isInner = [](std::ptrdiff_t position, std::ptrdiff_t extent) {
    return position >= 2 && position < extent - 2;
  };
  for (std::ptrdiff_t y = top; y < bottom; ++y) {
    std::byte* const row = reinterpret_cast<std::byte*>(pDst) + (y - top) * dstStep;
    const bool innerRow = isInner(y, mosaic.height);
    const bool redRow = colours.redRow(y);
    mosaic.template forSites<2>(y, left, right, [&](const auto& sites) ZIM_LAMBDA {
      constexpr int N = std::decay_t<decltype(sites)>::lanes;
      const bool inner = innerRow && (N > 1 || isInner(sites.x, mosaic.width));
      const auto& [own, green, other] = interpolated<T>(sites, colours.template greens<T, N>(sites.x, y),
                                                        inner ? Green::alongLesserGradient : Green::ofAllNeighbours);
      std::byte* const to = row + (sites.x - left) * std::ptrdiff_t{3 * sizeof(T)};
      if (redRow) {
        store<T, N, 3>(to, {own, green, other});
      } else {
        store<T, N, 3>(to, {other, green, own});
      }
    });
  }
  return zimResultOk;
}

}  // namespace
}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim

ZimResult ZIM_BODY(zimiCFAToRGB_8u_C1C3R)(const Zim8u* pSrc, ZimiRegion srcRoi, ZimiSize srcSize, Zim32s srcStep,
                                          Zim8u* pDst, Zim32s dstStep, ZimBayerGrid grid) {
  return zim::interpolateMosaic(pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, grid);
}

// Whole samples: the low bit of a step does not count.
ZimResult ZIM_BODY(zimiCFAToRGB_16u_C1C3R)(const Zim16u* pSrc, ZimiRegion srcRoi, ZimiSize srcSize, Zim32s srcStep,
                                           Zim16u* pDst, Zim32s dstStep, ZimBayerGrid grid) {
  return zim::interpolateMosaic(pSrc, srcRoi, srcSize, srcStep & ~1, pDst, dstStep & ~1, grid);
}
