// What becomes of chroma between two grids where nothing is computed: rows and columns are kept, dropped, doubled, or
// come from other places.
//
// A rule takes the rows of the source that a row of the destination comes from, the first of which lies at the same
// height of the image. All moves along a row are one of two: two rows alternating in one, or the even or the odd
// columns of a row.
//
// Everything goes row by row in the order of the destination, even where rows share what they come from: short rows
// that follow one another in memory are one long stream to the processor, several rows at a time are many short ones.
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

// From and To are the grids of source and destination, sourceRows how many rows of chroma make one.
template <class FromGrid, class ToGrid, int SourceRows = 1>
struct Between {
  using From = FromGrid;
  using To = ToGrid;
  static constexpr int sourceRows = SourceRows;

  static constexpr int across = std::max(From::across, To::across), down = std::max(From::down, To::down);
};

template <class FromGrid, class ToGrid>
struct SameColumns : Between<FromGrid, ToGrid> {
  template <class Row>
  ZIM_INLINE Row operator()(const std::array<Row, 1>& rows) const {
    return rows[0];
  }
};
template <class Grid>
using Keep = SameColumns<Grid, Grid>;
using EvenRows = SameColumns<Grid422, Grid420>;
using DoubleRows = SameColumns<Grid420, Grid422>;

template <class FromGrid, class ToGrid>
struct EvenColumnsOf : Between<FromGrid, ToGrid> {
  template <class Row>
  ZIM_INLINE auto operator()(const std::array<Row, 1>& rows) const {
    return evenColumns(rows[0]);
  }
};
using EvenColumns = EvenColumnsOf<Grid422, Grid411>;
using EvenRowsAndColumns = EvenColumnsOf<Grid420, Grid1620>;

struct DoubleColumns : Between<Grid411, Grid422> {
  template <class Row>
  ZIM_INLINE auto operator()(const std::array<Row, 1>& rows) const {
    return alternating(rows[0], rows[0]);
  }
};

// Two rows of quarter width in one of half width, and back: nothing is lost.
struct Fold : Between<Grid411, Grid420, 2> {
  template <class Row>
  ZIM_INLINE auto operator()(const std::array<Row, 2>& rows) const {
    return alternating(rows[0], rows[1]);
  }
};
struct Unfold : EvenColumnsOf<Grid420, Grid411> {
  // What makes the odd rows of the destination.
  struct OfOddRows : Between<Grid420, Grid411> {
    template <class Row>
    ZIM_INLINE auto operator()(const std::array<Row, 1>& rows) const {
      return oddColumns(rows[0]);
    }
  };
};

// A rule as a kernel: luma, if any, stays as it is.
template <class Rule>
struct WithLuma {
  Rule rule;

  template <class Luma, class Row, std::size_t Rows>
  ZIM_INLINE auto operator()(const Content<Luma, std::array<Row, Rows>>& in) const {
    return Content{in.luma, rowsOf(rule(in.chroma))};
  }
};
struct LumaAlone {
  template <class In>
  ZIM_INLINE auto operator()(const In& in) const {
    return Content{in.luma, std::array<char, 0>()};
  }
};

// One row of the destination's chroma, from rows of the source in any order.
template <class Rule, class Source, class Destination>
ZIM_INLINE void convertChromaRow(const SourceImage& source, std::array<std::ptrdiff_t, Rule::sourceRows> sourceRows,
                                 const DestinationImage& destination, std::ptrdiff_t row, std::ptrdiff_t cells) {
  using FromStrip = Strip<Source, Rule::across, Rule::across / Rule::From::across, 0, Rule::sourceRows>;
  using ToStrip = Strip<Destination, Rule::across, Rule::across / Rule::To::across, 0, 1>;
  const auto sourceRow = [&](std::ptrdiff_t r) ZIM_LAMBDA { return sourceRows[static_cast<std::size_t>(r)]; };
  convertCells<FromStrip, ToStrip, kChromaBetween<Source, Destination, Rule::sourceRows>>(
      FromStrip::of(source, sourceRow, sourceRow), ToStrip::at(destination, 0, row), cells, WithLuma<Rule>{});
}

// A whole image by a rule. Luma goes through lanes only where either side has it packed with chroma.
template <class Rule, class Source, class Destination>
void convertByRule(const SourceImage& source, const DestinationImage& destination, ZimiSize size) {
  using From = typename Rule::From;
  using To = typename Rule::To;
  const Zim32s cells = size.width / Rule::across, height = size.height / Rule::down * Rule::down;
  if constexpr (Source::isPacked || Destination::isPacked) {
    static_assert(Rule::sourceRows == 1);
    constexpr Chroma form = kChromaBetween<Source, Destination>;
    using FromStrip = Strip<Source, Rule::across, Rule::across / From::across, 1, 1>;
    using ToStrip = Strip<Destination, Rule::across, Rule::across / To::across, 1, 1>;
    for (Zim32s y = 0; y < height; ++y) {
      const auto from = FromStrip::at(source, y, y / From::down);
      if (y % To::down == 0) {
        convertCells<FromStrip, ToStrip, form>(from, ToStrip::at(destination, y, y / To::down), cells,
                                               WithLuma<Rule>{});
      } else {
        using LumaStrip = Strip<Destination, Rule::across, 1, 1, 0>;
        if constexpr (!Destination::isPacked) {
          convertCells<FromStrip, LumaStrip, form>(from, LumaStrip::at(destination, y, 0), cells, LumaAlone{});
        }
      }
    }
  } else {
    copyRows(source, destination, 0, std::ptrdiff_t{cells} * Rule::across, height);
    for (Zim32s row = 0; row < height / To::down; ++row) {
      std::array<std::ptrdiff_t, Rule::sourceRows> sourceRows;
      for (std::size_t r = 0; r < sourceRows.size(); ++r) {
        sourceRows[r] = row * To::down / From::down + static_cast<std::ptrdiff_t>(r);
      }
      if constexpr (requires { typename Rule::OfOddRows; }) {
        if (row % 2 != 0) {
          convertChromaRow<typename Rule::OfOddRows, Source, Destination>(source, sourceRows, destination, row, cells);
          continue;
        }
      }
      convertChromaRow<Rule, Source, Destination>(source, sourceRows, destination, row, cells);
    }
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
