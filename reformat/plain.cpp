// Luma-chroma between layouts and grids, by rules for chroma without a filter. Luma is copied as it stands.

#include "frame/lanes/averages.h"
#include "reformat/arguments.h"
#include "reformat/rules.h"

using namespace zim;

namespace {

// ---- Layouts by the order of their samples ----

enum class First { cb, cr };

template <class LayoutOf, First order>
struct Ordered {
  using Layout = LayoutOf;
  static constexpr First first = order;
};
using C2_YCbCr = Ordered<Packed<true>, First::cb>;
using C2_YCrCb = Ordered<Packed<true>, First::cr>;
using C2_CbYCr = Ordered<Packed<false>, First::cb>;
using P2_CbCr = Ordered<TwoPlanes, First::cb>;
using P3_YCbCr = Ordered<ThreePlanes, First::cb>;
using P3_YCrCb = Ordered<ThreePlanes, First::cr>;

// ---- Chroma computed from its neighbours ----
//
// Only between three planes. Where a neighbour would lie beyond the image, the last row or column stands for it.

template <class Row>
ZIM_INLINE Row averageDown(const Row& a, const Row& b) {
  return perByte([](auto x, auto y) ZIM_LAMBDA { return zim::averageDown(x, y); }, a, b);
}

// 4:1:1 from 4:2:0: even columns; between two rows their average, rounded down.
struct RowsBetween {
  struct Average : Between<Grid420, Grid411, 2> {
    template <class Row>
    ZIM_INLINE auto operator()(const std::array<Row, 2>& rows) const {
      return averageDown(evenColumns(rows[0]), evenColumns(rows[1]));
    }
  };
  static void convert(const SourceImage& source, const DestinationImage& destination, ZimiSize size) {
    const Zim32s cells = size.width / 4, last = size.height / 2 - 1;
    for (std::ptrdiff_t row = 0; row <= last; ++row) {
      using EvenColumnsOfRow = EvenColumnsOf<Grid420, Grid411>;
      convertChromaRow<EvenColumnsOfRow, ThreePlanes, ThreePlanes>(source, {row}, destination, 2 * row, cells);
      convertChromaRow<Average, ThreePlanes, ThreePlanes>(source, {row, std::min<std::ptrdiff_t>(row + 1, last)},
                                                          destination, 2 * row + 1, cells);
    }
  }
};

// Rows of which each comes from one or two rows of chroma and their right neighbours. The last column has none: its
// two samples of the destination are one, the kernel's first.
template <int Rows, class Kernel, class Last>
void convertBesideNext(const SourceImage& source, std::array<std::ptrdiff_t, Rows> sourceRows,
                       const DestinationImage& destination, std::ptrdiff_t row, std::ptrdiff_t columns,
                       const Kernel& kernel, const Last& last) {
  using From = Strip<ThreePlanes, 4, 1, 0, 2 * Rows>;
  using To = Strip<ThreePlanes, 4, 2, 0, 1>;
  std::array<const std::byte*, From::lines> from;
  for (std::size_t i = 0; i < from.size(); ++i) {
    from[i] = source.row(1 + i / std::size_t{2 * Rows}, sourceRows[i / 2 % Rows]) + i % 2;
  }
  const auto to = To::at(destination, 0, row);
  if (columns > 1) convertCells<From, To, Chroma::apart>(from, to, columns - 1, kernel);
  for (std::size_t p = 0; p < 2; ++p) {
    const auto sample = [&](std::size_t r) { return std::to_integer<int>(from[p * 2 * Rows + 2 * r][columns - 1]); };
    to[p][2 * columns - 2] = to[p][2 * columns - 1] = static_cast<std::byte>(last(sample));
  }
}
constexpr auto kSame = [](const auto& sample) { return sample(0); };
constexpr auto kAverageDown = [](const auto& sample) { return (sample(0) + sample(1)) >> 1; };

// 4:2:0 from 4:1:1: even rows; between two columns their average, rounded down.
struct ColumnsBetween {
  static constexpr auto between = [](const auto& in) ZIM_LAMBDA {
    const auto& [a, b] = in.chroma;
    return Content{in.luma, rowsOf(alternating(a, averageDown(a, b)))};
  };
  static void convert(const SourceImage& source, const DestinationImage& destination, ZimiSize size) {
    for (std::ptrdiff_t row = 0; row < size.height / 2; ++row) {
      convertBesideNext<1>(source, {2 * row}, destination, row, size.width / 4, between, kSame);
    }
  }
};

// 4:2:0 from one sample for 4 x 4 pixels: averages between rows, columns and both. Those of Cb round half up, but not
// along the last row and the last column; those of Cr round down. The last row is repeated without averages.
struct RowsAndColumnsBetween {
  static constexpr auto onRow = [](const auto& in) ZIM_LAMBDA {
    const auto& [a, b] = in.chroma;
    return Content{in.luma, rowsOf(alternating(a, {averageUp(a[0], b[0]), zim::averageDown(a[1], b[1])}))};
  };
  static constexpr auto belowRow = [](const auto& in) ZIM_LAMBDA {
    const auto& [a, b, c, d] = in.chroma;
    using Row = std::decay_t<decltype(a)>;
    const Row below = {averageUp(a[0], c[0]), zim::averageDown(a[1], c[1])};
    const Row middle = {averageOfFour(a[0], b[0], c[0], d[0]), zim::averageDown(a[1], b[1], c[1], d[1])};
    return Content{in.luma, rowsOf(alternating(below, middle))};
  };
  static constexpr auto repeated = [](const auto& in) ZIM_LAMBDA {
    return Content{in.luma, rowsOf(alternating(in.chroma[0], in.chroma[0]))};
  };
  static void convert(const SourceImage& source, const DestinationImage& destination, ZimiSize size) {
    const std::ptrdiff_t columns = size.width / 4, last = size.height / 4 - 1;
    for (std::ptrdiff_t row = 0; row < last; ++row) {
      convertBesideNext<1>(source, {row}, destination, 2 * row, columns, onRow, kSame);
      convertBesideNext<2>(source, {row, row + 1}, destination, 2 * row + 1, columns, belowRow, kAverageDown);
    }
    convertBesideNext<1>(source, {last}, destination, 2 * last, columns, ColumnsBetween::between, kSame);
    convertBesideNext<1>(source, {last}, destination, 2 * last + 1, columns, repeated, kSame);
  }
};

// ---- Packed pixels in another order ----

// Pairs of pixels as four bytes.
struct PackedPairs {
  static constexpr std::size_t lines = 1;
  static constexpr std::ptrdiff_t bytesPerCell(std::size_t) { return 4; }

  template <Chroma, int N>
  ZIM_INLINE static Lane<Zim32u, N> load(const std::array<const std::byte*, 1>& line, std::ptrdiff_t cell) {
    return zim::load<Zim32u, N, 1>(line[0] + cell * 4)[0];
  }
  template <int N>
  ZIM_INLINE static void store(const std::array<std::byte*, 1>& line, std::ptrdiff_t cell, Lane<Zim32u, N> pairs) {
    zim::store<Zim32u, N, 1>(line[0] + cell * 4, {pairs});
  }
};

// Luma and chroma change places.
struct ExchangeLuma {
  template <int N>
  ZIM_INLINE Lane<Zim32u, N> operator()(Lane<Zim32u, N> pairs) const {
    const auto words = bitsAs<Zim16u>(pairs);
    return bitsAs<Zim32u>((words << 8) | (words >> 8));
  }
};
// Cb and Cr change places, behind the luma of their pixels.
struct ExchangeChroma {
  template <int N>
  ZIM_INLINE Lane<Zim32u, N> operator()(Lane<Zim32u, N> pairs) const {
    const auto luma = pairs & Lane<Zim32u, N>(0x00FF00FFU), chroma = pairs ^ luma;
    return luma | (chroma << 16) | (chroma >> 16);
  }
};

// ---- From the table to the strips ----

template <class Source, class Destination>
void reorder(const SourceImage& source, const DestinationImage& destination, ZimiSize size) {
  constexpr bool lumaMoves = Source::Layout::lumaFirst != Destination::Layout::lumaFirst;
  constexpr bool chromaMoves = Source::first != Destination::first;
  static_assert(lumaMoves != chromaMoves);
  for (Zim32s y = 0; y < size.height; ++y) {
    convertCells<PackedPairs, PackedPairs, Chroma::paired, 2 * kLanes<Zim32u>>(
        {source.row(0, y)}, {destination.row(0, y)}, size.width / 2,
        std::conditional_t<lumaMoves, ExchangeLuma, ExchangeChroma>());
  }
}

template <class Source, class Destination, class Rule>
ZimResult reformat(const ChromaCall& call) {
  constexpr bool exchanged = Source::first != Destination::first;
  auto from = call.source.image();
  auto to = call.destination.image();
  if constexpr (exchanged && Destination::Layout::chromaPlanes == 2) {
    to = to.withChromaExchanged();
  } else if constexpr (exchanged && Source::Layout::chromaPlanes == 2) {
    from = from.withChromaExchanged();
  }
  if constexpr (Source::Layout::isPacked && Destination::Layout::isPacked) {
    reorder<Source, Destination>(from, to, call.roiSize);
  } else if constexpr (requires { Rule::convert(from, to, call.roiSize); }) {
    copyRows(from, to, 0, call.roiSize.width, call.roiSize.height);
    Rule::convert(from, to, call.roiSize);
  } else {
    convertByRule<Rule, typename Source::Layout, typename Destination::Layout>(from, to, call.roiSize);
  }
  return zimResultOk;
}

// ---- Sizes: what lies beyond whole cells is left out, except where sizes have to be multiples ----

constexpr Sizes A = {{4, 0}};
constexpr Sizes B = {{2, 0}};
constexpr Sizes C = {{2, 1}};
constexpr Sizes D = {{2, 2}};
constexpr Sizes E = {{4, 2}};
constexpr Sizes F = {{4, 4}, {4, 4}};
constexpr Sizes G = {{4, 2}, {4, 2}};

}  // namespace

#define ZIM_REFORMAT(name, SourceLayout, sourceOrder, DestinationLayout, destinationOrder, rule, sizes, Tests) \
  ZIM_CHROMA_CONVERSION(name, SourceLayout, DestinationLayout, (), Tests, sizes,                               \
                        reformat<SourceLayout##_##sourceOrder, DestinationLayout##_##destinationOrder, rule>(call))

// clang-format off
//           export                               source     destination  chroma                 size  tests
ZIM_REFORMAT(zimiCbYCr422ToYCbCr411_8u_C2P3R,    C2, CbYCr,  P3, YCbCr,  EvenColumns,           A,   N_Q_S_A)
ZIM_REFORMAT(zimiCbYCr422ToYCbCr420_8u_C2P2R,    C2, CbYCr,  P2, CbCr,   EvenRows,              D,   N_Q_S)
ZIM_REFORMAT(zimiCbYCr422ToYCbCr420_8u_C2P3R,    C2, CbYCr,  P3, YCbCr,  EvenRows,              D,   N_Q_S_A)
ZIM_REFORMAT(zimiCbYCr422ToYCbCr422_8u_C2P3R,    C2, CbYCr,  P3, YCbCr,  Keep<Grid422>,         B,   N_Q_S_A)
ZIM_REFORMAT(zimiCbYCr422ToYCbCr422_8u_C2R,      C2, CbYCr,  C2, YCbCr,  Keep<Grid422>,         C,   N_Q_S)
ZIM_REFORMAT(zimiCbYCr422ToYCrCb420_8u_C2P3R,    C2, CbYCr,  P3, YCrCb,  EvenRows,              D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr1620To420_8u_P3R,          P3, YCbCr,  P3, YCbCr,  RowsAndColumnsBetween, F,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411To420_8u_P3R,           P3, YCbCr,  P3, YCbCr,  ColumnsBetween,        F,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411ToYCbCr420_8u_P2P3R,    P2, CbCr,   P3, YCbCr,  Fold,                  E,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411ToYCbCr420_8u_P3P2R,    P3, YCbCr,  P2, CbCr,   Fold,                  E,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411ToYCbCr420_8u_P3R,      P3, YCbCr,  P3, YCbCr,  Fold,                  E,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411ToYCbCr422_8u_P2C2R,    P2, CbCr,   C2, YCbCr,  DoubleColumns,         A,   N_Q_S)
ZIM_REFORMAT(zimiYCbCr411ToYCbCr422_8u_P2P3R,    P2, CbCr,   P3, YCbCr,  DoubleColumns,         A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411ToYCbCr422_8u_P3C2R,    P3, YCbCr,  C2, YCbCr,  DoubleColumns,         A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411ToYCbCr422_8u_P3R,      P3, YCbCr,  P3, YCbCr,  DoubleColumns,         A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411ToYCrCb420_8u_P2P3R,    P2, CbCr,   P3, YCrCb,  Fold,                  E,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411ToYCrCb422_8u_P3C2R,    P3, YCbCr,  C2, YCrCb,  DoubleColumns,         A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411ToYCrCb422_8u_P3R,      P3, YCbCr,  P3, YCrCb,  DoubleColumns,         A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411_8u_P2P3R,              P2, CbCr,   P3, YCbCr,  Keep<Grid411>,         A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr411_8u_P3P2R,              P3, YCbCr,  P2, CbCr,   Keep<Grid411>,         A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr420To1620_8u_P3R,          P3, YCbCr,  P3, YCbCr,  EvenRowsAndColumns,    F,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr420To411_8u_P3R,           P3, YCbCr,  P3, YCbCr,  RowsBetween,           G,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr420ToCbYCr422_8u_P2C2R,    P2, CbCr,   C2, CbYCr,  DoubleRows,            D,   N_Q_S)
ZIM_REFORMAT(zimiYCbCr420ToYCbCr411_8u_P2P3R,    P2, CbCr,   P3, YCbCr,  Unfold,                E,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr420ToYCbCr411_8u_P3P2R,    P3, YCbCr,  P2, CbCr,   Unfold,                E,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr420ToYCbCr422_8u_P2C2R,    P2, CbCr,   C2, YCbCr,  DoubleRows,            D,   N_Q_S)
ZIM_REFORMAT(zimiYCbCr420ToYCbCr422_8u_P2P3R,    P2, CbCr,   P3, YCbCr,  DoubleRows,            D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr420ToYCbCr422_8u_P3R,      P3, YCbCr,  P3, YCbCr,  DoubleRows,            D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr420ToYCrCb420_8u_P2P3R,    P2, CbCr,   P3, YCbCr,  Keep<Grid420>,         D,   N_E_Q_S_A)
ZIM_REFORMAT(zimiYCbCr420_8u_P2P3R,              P2, CbCr,   P3, YCbCr,  Keep<Grid420>,         D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr420_8u_P3P2R,              P3, YCbCr,  P2, CbCr,   Keep<Grid420>,         D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr422ToCbYCr422_8u_C2R,      C2, YCbCr,  C2, CbYCr,  Keep<Grid422>,         C,   N_Q_S)
ZIM_REFORMAT(zimiYCbCr422ToCbYCr422_8u_P3C2R,    P3, YCbCr,  C2, CbYCr,  Keep<Grid422>,         C,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr422ToYCbCr411_8u_C2P2R,    C2, YCbCr,  P2, CbCr,   EvenColumns,           A,   N_Q_S)
ZIM_REFORMAT(zimiYCbCr422ToYCbCr411_8u_C2P3R,    C2, YCbCr,  P3, YCbCr,  EvenColumns,           A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr422ToYCbCr411_8u_P3P2R,    P3, YCbCr,  P2, CbCr,   EvenColumns,           A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr422ToYCbCr411_8u_P3R,      P3, YCbCr,  P3, YCbCr,  EvenColumns,           A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr422ToYCbCr420_8u_C2P2R,    C2, YCbCr,  P2, CbCr,   EvenRows,              D,   N_Q_S)
ZIM_REFORMAT(zimiYCbCr422ToYCbCr420_8u_C2P3R,    C2, YCbCr,  P3, YCbCr,  EvenRows,              D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr422ToYCbCr420_8u_P3P2R,    P3, YCbCr,  P2, CbCr,   EvenRows,              D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr422ToYCbCr420_8u_P3R,      P3, YCbCr,  P3, YCbCr,  EvenRows,              D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr422ToYCrCb420_8u_C2P3R,    C2, YCbCr,  P3, YCrCb,  EvenRows,              D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr422ToYCrCb422_8u_C2R,      C2, YCbCr,  C2, YCrCb,  Keep<Grid422>,         B,   N_Q_S)
ZIM_REFORMAT(zimiYCbCr422ToYCrCb422_8u_P3C2R,    P3, YCbCr,  C2, YCrCb,  Keep<Grid422>,         B,   N_Q_S_A)
ZIM_REFORMAT(zimiYCbCr422_8u_C2P3R,              C2, YCbCr,  P3, YCbCr,  Keep<Grid422>,         C,   N_A_Q_S)
ZIM_REFORMAT(zimiYCbCr422_8u_P3C2R,              P3, YCbCr,  C2, YCbCr,  Keep<Grid422>,         C,   N_Q_S_A)
ZIM_REFORMAT(zimiYCrCb420ToCbYCr422_8u_P3C2R,    P3, YCrCb,  C2, CbYCr,  DoubleRows,            D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCrCb420ToYCbCr411_8u_P3P2R,    P3, YCrCb,  P2, CbCr,   Unfold,                E,   N_Q_S_A)
ZIM_REFORMAT(zimiYCrCb420ToYCbCr420_8u_P3P2R,    P3, YCrCb,  P2, CbCr,   Keep<Grid420>,         D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCrCb420ToYCbCr422_8u_P3C2R,    P3, YCrCb,  C2, YCbCr,  DoubleRows,            D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCrCb420ToYCbCr422_8u_P3R,      P3, YCrCb,  P3, YCbCr,  DoubleRows,            D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCrCb422ToYCbCr411_8u_C2P3R,    C2, YCrCb,  P3, YCbCr,  EvenColumns,           A,   N_Q_S_A)
ZIM_REFORMAT(zimiYCrCb422ToYCbCr420_8u_C2P3R,    C2, YCrCb,  P3, YCbCr,  EvenRows,              D,   N_Q_S_A)
ZIM_REFORMAT(zimiYCrCb422ToYCbCr422_8u_C2P3R,    C2, YCrCb,  P3, YCbCr,  Keep<Grid422>,         B,   N_Q_S_A)
