// Bayer mosaics: which colour a site has, sites beyond the edges, and rows of sites in lanes.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "frame/entry.h"
#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Tests in the order in which both families of exports make them.
inline ZimResult checkMosaic(const void* pSrc, const void* pDst, ZimiSize srcSize, Zim32s leastExtent,
                             ZimBayerGrid grid) {
  if (pSrc == nullptr || pDst == nullptr) return zimResultNullPointer;
  if (srcSize.width < leastExtent || srcSize.height < leastExtent) return zimResultBadSize;
  return grid >= zimBayerGridBGGR && grid <= zimBayerGridGRBG ? zimResultOk : zimResultBadArgument;
}

// What two consecutive sites in a row are follows from the lowest bit of the row and from the bits of the grid's code:
// the lower tells whether even rows hold the reds, the upper whether they start with green.
struct Colours {
  ZimBayerGrid grid;

  bool redRow(std::ptrdiff_t y) const { return ((grid ^ y) & 1) != 0; }
  bool green(std::ptrdiff_t x, std::ptrdiff_t y) const { return (((grid >> 1) ^ x ^ y) & 1) != 0; }

  // The green ones among N sites of a row from this one on.
  template <class T, int N>
  ZIM_INLINE Lane<SignedOf<T>, N> greens(std::ptrdiff_t x, std::ptrdiff_t y) const {
    return everyOther<SignedOf<T>, N>(green(x, y));
  }
};

// Positions below 0 and from `extent` on, reflected at the first and the last until they lie between. Their parity
// stays, and with it the colour of a site.
ZIM_INLINE std::ptrdiff_t reflected(std::ptrdiff_t position, std::ptrdiff_t extent) {
  while (position < 0 || position >= extent) position = position < 0 ? -position : 2 * (extent - 1) - position;
  return position;
}

// The rows about a row: from two above it to two below.
struct RowsAround {
  std::array<const std::byte*, 5> rows;

  const std::byte* operator[](int dy) const { return rows[static_cast<std::size_t>(2 + dy)]; }
};

// N sites of a row, from column x on, and their neighbours by distance.
template <class T, int N>
struct Sites {
  static constexpr int lanes = N;
  RowsAround rows;
  std::ptrdiff_t x;

  ZIM_INLINE Lane<T, N> operator()(int dx, int dy) const {
    return load<T, N, 1>(rows[dy] + (x + dx) * std::ptrdiff_t{sizeof(T)})[0];
  }
};

// One site near an edge, the columns beyond which are reflected.
template <class T>
struct SiteAtEdge {
  static constexpr int lanes = 1;
  RowsAround rows;
  std::ptrdiff_t x, width;

  ZIM_INLINE Lane<T, 1> operator()(int dx, int dy) const {
    return load<T, 1, 1>(rows[dy] + reflected(x + dx, width) * std::ptrdiff_t{sizeof(T)})[0];
  }
};

// body(x) for blocks of N columns that make up [first, end), of at least N; the last overlaps the one before. What the
// body writes must not be what it reads.
template <int N, class Body>
ZIM_INLINE void forWholeBlocks(std::ptrdiff_t first, std::ptrdiff_t end, const Body& body) {
  for (std::ptrdiff_t x = first; x < end; x += N) body(std::min(x, end - N));
}

// body(columns, x): the same, or single columns where there are fewer than N.
template <int N, class Body>
ZIM_INLINE void forBlocks(std::ptrdiff_t first, std::ptrdiff_t end, const Body& body) {
  if (end - first >= N) {
    forWholeBlocks<N>(first, end, [&](std::ptrdiff_t x) ZIM_LAMBDA { body(std::integral_constant<int, N>(), x); });
  } else {
    for (std::ptrdiff_t x = first; x < end; ++x) body(std::integral_constant<int, 1>(), x);
  }
}

template <class T>
struct Mosaic {
  const std::byte* origin;
  std::ptrdiff_t step;
  std::ptrdiff_t width, height;

  RowsAround rowsAround(std::ptrdiff_t y) const {
    const auto row = [&](std::ptrdiff_t dy) { return origin + reflected(y + dy, height) * step; };
    return {{row(-2), row(-1), row(0), row(1), row(2)}};
  }

  // body(sites) for the columns from first to end of row y: blocks where all neighbours within `reach` columns are in
  // the image, single sites elsewhere.
  template <int reach, class Body>
  ZIM_INLINE void forSites(std::ptrdiff_t y, std::ptrdiff_t first, std::ptrdiff_t end, const Body& body) const {
    constexpr int N = kLanes<T>;
    const RowsAround rows = rowsAround(y);
    auto innerFirst = std::max<std::ptrdiff_t>(first, reach), innerEnd = std::min<std::ptrdiff_t>(end, width - reach);
    if (innerEnd - innerFirst >= N) {
      forWholeBlocks<N>(innerFirst, innerEnd, [&](std::ptrdiff_t x) ZIM_LAMBDA { body(Sites<T, N>{rows, x}); });
    } else {
      innerFirst = innerEnd = first;
    }
    for (std::ptrdiff_t x = first; x < end; ++x) {
      if (x == innerFirst) x = innerEnd;
      if (x < end) body(SiteAtEdge<T>{rows, x, width});
    }
  }
};

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
