// What becomes of chroma between two grids where nothing is computed: rows and columns are kept, dropped, doubled, or
// come from other places.
//
// A rule takes the rows of chroma of a cell in the source's grid and gives those in the destination's. All moves along
// a row are one of two: two rows alternating in one, or one row as its even and its odd columns.
#pragma once

#include "reformat/strips.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

template <class T, int N, std::size_t Channels>
ZIM_INLINE Pixels<T, 2 * N, Channels> alternating(const Pixels<T, N, Channels>& even,
                                                  const Pixels<T, N, Channels>& odd) {
  return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return zip(even[c], odd[c]); });
}
template <class T, int N, std::size_t Channels>
ZIM_INLINE Pixels<T, N / 2, Channels> evenColumns(const Pixels<T, N, Channels>& row) {
  return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return unzip(row[c])[0]; });
}
template <class T, int N, std::size_t Channels>
ZIM_INLINE Pixels<T, N / 2, Channels> oddColumns(const Pixels<T, N, Channels>& row) {
  return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return unzip(row[c])[1]; });
}

template <class Grid>
struct Keep {
  using From = Grid;
  using To = Grid;
  template <class Row>
  ZIM_INLINE static std::array<Row, 1> apply(const std::array<Row, 1>& rows) {
    return rows;
  }
};
struct EvenRows {
  using From = Grid422;
  using To = Grid420;
  template <class Row>
  ZIM_INLINE static std::array<Row, 1> apply(const std::array<Row, 2>& rows) {
    return {rows[0]};
  }
};
struct DoubleRows {
  using From = Grid420;
  using To = Grid422;
  template <class Row>
  ZIM_INLINE static std::array<Row, 2> apply(const std::array<Row, 1>& rows) {
    return {rows[0], rows[0]};
  }
};
struct EvenColumns {
  using From = Grid422;
  using To = Grid411;
  template <class Row>
  ZIM_INLINE static auto apply(const std::array<Row, 1>& rows) {
    return rowsOf(evenColumns(rows[0]));
  }
};
struct DoubleColumns {
  using From = Grid411;
  using To = Grid422;
  template <class Row>
  ZIM_INLINE static auto apply(const std::array<Row, 1>& rows) {
    return rowsOf(alternating(rows[0], rows[0]));
  }
};
struct EvenRowsAndColumns {
  using From = Grid420;
  using To = Grid1620;
  template <class Row>
  ZIM_INLINE static auto apply(const std::array<Row, 2>& rows) {
    return rowsOf(evenColumns(rows[0]));
  }
};
// Two rows of quarter width in one of half width, and back: nothing is lost.
struct Fold {
  using From = Grid411;
  using To = Grid420;
  template <class Row>
  ZIM_INLINE static auto apply(const std::array<Row, 2>& rows) {
    return rowsOf(alternating(rows[0], rows[1]));
  }
};
struct Unfold {
  using From = Grid420;
  using To = Grid411;
  template <class Row>
  ZIM_INLINE static auto apply(const std::array<Row, 1>& rows) {
    return rowsOf(evenColumns(rows[0]), oddColumns(rows[0]));
  }
};

// A whole image by a rule. Luma goes through lanes only where either side has it packed with chroma.
template <class Rule, class Source, class Destination>
void convertByRule(const SourceImage& source, const DestinationImage& destination, ZimiSize size) {
  using From = typename Rule::From;
  using To = typename Rule::To;
  constexpr int across = std::max(From::across, To::across), down = std::max(From::down, To::down);
  constexpr bool lumaApart = !Source::isPacked && !Destination::isPacked;
  constexpr int lumaRows = lumaApart ? 0 : down;
  using SourceStrip = Strip<Source, across, across / From::across, lumaRows, down / From::down>;
  using DestinationStrip = Strip<Destination, across, across / To::across, lumaRows, down / To::down>;

  const Zim32s cells = size.width / across, height = size.height / down * down;
  if constexpr (lumaApart) copyRows(source, destination, 0, std::ptrdiff_t{cells} * across, height);
  for (Zim32s y = 0; y < height; y += down) {
    convertCells<SourceStrip, DestinationStrip, kChromaBetween<Source, Destination>>(
        SourceStrip::at(source, y, y / From::down), DestinationStrip::at(destination, y, y / To::down), cells,
        [](const auto& in) ZIM_LAMBDA {
          return Content{in.luma, Rule::apply(in.chroma)};
        });
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
