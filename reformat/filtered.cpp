// 4:2:0 with filters: slices with luma low-passed down its columns, interpolated chroma rows, and BGR with chroma
// averaged between columns.

#include <optional>

#include "frame/adapters.h"
#include "frame/lanes/averages.h"
#include "frame/pixelwise.h"
#include "lumachroma/transforms.h"
#include "reformat/arguments.h"
#include "reformat/rules.h"

using namespace zim;

namespace {

// ---- Slices -------------------------------------------------------------------------------------------------------

// Where a slice lies in its image, and which of its rows it writes. The last two rows of a slice, unless they are the
// image's, are left to the next one, which has what lies below them.
struct Slice {
  bool atTop, atBottom;
  Zim32s height, first, end;  // rows of luma from first to before end

  // Nothing is written for other values.
  static std::optional<Slice> of(Zim32s layout, Zim32s height) {
    if ((layout & zimSliceWhole) == zimSliceWhole) return Slice(true, true, height);
    if (layout == zimSliceTop) return Slice(true, false, height);
    if (layout == zimSliceCenter) return Slice(false, false, height);
    if (layout == zimSliceBottom) return Slice(false, true, height);
    return std::nullopt;
  }

  bool isWhole() const { return atTop && atBottom; }

  // The row beside another; at an edge of the image that row itself.
  std::ptrdiff_t above(std::ptrdiff_t row) const { return atTop && row == 0 ? row : row - 1; }
  std::ptrdiff_t below(std::ptrdiff_t row) const { return atBottom && row == height - 1 ? row : row + 1; }

  // The upper of the two rows of chroma that are averaged for a pair of luma rows. The image's last pair, which has
  // none below, takes those of the pair before; a single pair takes its own row twice.
  std::ptrdiff_t upperChroma(std::ptrdiff_t pair) const {
    const std::ptrdiff_t upper = atBottom ? std::min<std::ptrdiff_t>(pair, height / 2 - 2) : pair;
    return atTop ? std::max<std::ptrdiff_t>(upper, 0) : upper;
  }
  std::ptrdiff_t lowerChroma(std::ptrdiff_t pair) const { return isSinglePair() ? 0 : upperChroma(pair) + 1; }
  bool isSinglePair() const { return isWhole() && height == 2; }

 private:
  Slice(bool top, bool bottom, Zim32s rows)
      : atTop(top), atBottom(bottom), height(rows), first(top ? 0 : -2), end(bottom ? rows : rows - 2) {}
};

// Luma 1 : 2 : 1 of three rows, chroma 1 : 1 of two, rounded down; or, with a plus of 1, one above that, up to 255.
struct LowPass {
  Zim8u lumaPlus, chromaPlus;

  template <class Luma, class ChromaRows>
  ZIM_INLINE auto operator()(const Content<Luma, ChromaRows>& in) const {
    return Content{luma(in.luma), chroma(in.chroma)};
  }

 private:
  template <int N>
  ZIM_INLINE auto luma(const std::array<Lane<Zim8u, N>, 3>& rows) const {
    return rowsOf(addSaturated(averageDown(averageDown(rows[0], rows[2]), rows[1]), Lane<Zim8u, N>(lumaPlus)));
  }
  template <class Row>
  ZIM_INLINE auto chroma(const std::array<Row, 2>& rows) const {
    const auto average = [&]<int N>(Lane<Zim8u, N> a, Lane<Zim8u, N> b)
                             ZIM_LAMBDA { return addSaturated(averageDown(a, b), Lane<Zim8u, N>(chromaPlus)); };
    return rowsOf(perByte(average, rows[0], rows[1]));
  }
  // Strips of luma alone, or of chroma alone.
  template <class Row>
  ZIM_INLINE std::array<Row, 0> luma(const std::array<Row, 0>& none) const {
    return none;
  }
  template <class Row>
  ZIM_INLINE std::array<Row, 0> chroma(const std::array<Row, 0>& none) const {
    return none;
  }
};

// The lines that a row is made of: those around it, and those of the chroma around its pair.
template <class From>
auto linesAround(const Slice& slice, const SourceImage& source, std::ptrdiff_t row, std::ptrdiff_t pair) {
  return From::of(
      source, [&](std::ptrdiff_t i) { return i == 0   ? slice.above(row)
                                             : i == 1 ? row
                                                      : slice.below(row); },
      [&](std::ptrdiff_t i) { return i == 0 ? slice.upperChroma(pair) : slice.lowerChroma(pair); });
}

// Packed 4:2:2. Which rows are rounded up is a property of this form, row by row.
ZimResult slicesPacked(const ChromaCall& call, Zim32s layout) {
  using From = Strip<TwoPlanes, 2, 1, 3, 2>;
  using To = Strip<Packed<true>, 2, 1, 1, 1>;
  const auto slice = Slice::of(layout, call.roiSize.height & ~1);
  if (!slice) return zimResultOk;
  const auto source = call.source.image();
  const auto destination = call.destination.image();
  for (std::ptrdiff_t row = slice->first; row < slice->end; ++row) {
    const bool isFirstPair = row < 2, isLastPair = row >= slice->height - 2;
    LowPass kernel;
    if (slice->isWhole()) {
      kernel = {1, (isFirstPair || isLastPair) && !slice->isSinglePair()};
    } else if (slice->atBottom && isLastPair) {
      kernel = {0, 0};
    } else {
      kernel = {!(slice->atTop && row == 1), 1};
    }
    convertCells<From, To, Chroma::paired>(linesAround<From>(*slice, source, row, row >> 1),
                                           To::at(destination, row, row), call.roiSize.width / 2, kernel);
  }
  return zimResultOk;
}

// Three planes at the same grid. A whole image is rounded up, slices are not.
ZimResult slicesPlanar(const ChromaCall& call, Zim32s layout) {
  using LumaFrom = Strip<TwoPlanes, 2, 1, 3, 0>;
  using LumaTo = Strip<ThreePlanes, 2, 1, 1, 0>;
  using ChromaFrom = Strip<TwoPlanes, 2, 1, 0, 2>;
  using ChromaTo = Strip<ThreePlanes, 2, 1, 0, 1>;
  const auto slice = Slice::of(layout, call.roiSize.height & ~1);
  if (!slice) return zimResultOk;
  const auto source = call.source.image();
  const auto destination = call.destination.image();
  const LowPass kernel = {slice->isWhole(), slice->isWhole() && !slice->isSinglePair()};
  for (std::ptrdiff_t row = slice->first; row < slice->end; ++row) {
    convertCells<LumaFrom, LumaTo, Chroma::paired>(linesAround<LumaFrom>(*slice, source, row, 0),
                                                   LumaTo::at(destination, row, 0), call.roiSize.width / 2, kernel);
  }
  // Each plane of chroma goes on by the other one's step, but in a top slice.
  const std::ptrdiff_t firstPair = slice->first / 2;
  auto rows = destination;
  for (std::size_t p : {1U, 2U}) {
    rows.plane[p] = destination.row(p, firstPair);
    if (slice->atBottom || !slice->atTop) rows.step[p] = destination.step[3 - p];
  }
  for (std::ptrdiff_t pair = firstPair; pair < slice->end / 2; ++pair) {
    convertCells<ChromaFrom, ChromaTo, Chroma::paired>(linesAround<ChromaFrom>(*slice, source, 0, pair),
                                                       ChromaTo::at(rows, 0, pair - firstPair), call.roiSize.width / 2,
                                                       kernel);
  }
  return zimResultOk;
}

// ---- Interpolated rows --------------------------------------------------------------------------------------------

// The row between the second and the third of four, (9 (a + b) - p - n + 8) >> 4, within [-31, 286] before it is
// limited to a byte.
struct FourTap : Between<Grid420, Grid422, 4> {
  template <int N>
  ZIM_INLINE Pixels<Zim8u, N, 2> operator()(const std::array<Pixels<Zim8u, N, 2>, 4>& rows) const {
    return perChannel<2>(
        [&](auto c) ZIM_LAMBDA { return between([&](std::size_t r) ZIM_LAMBDA { return widen(rows[r][c]); }); });
  }
  // Pairs come apart in the step to 16 bits.
  template <int N>
  ZIM_INLINE Pixels<Zim8u, N, 2> operator()(const std::array<Pixels<Zim16u, N, 1>, 4>& rows) const {
    const auto cb = [&](std::size_t r) ZIM_LAMBDA { return bitsAs<Zim16s>(rows[r][0] & Lane<Zim16u, N>(255)); };
    const auto cr = [&](std::size_t r) ZIM_LAMBDA { return bitsAs<Zim16s>(rows[r][0] >> 8); };
    return {between(cb), between(cr)};
  }

 private:
  template <class Row>
  ZIM_INLINE static auto between(const Row& row) {
    const auto inner = row(1) + row(2), outer = row(0) + row(3);
    return narrow<Zim8u>((inner * Zim16s{9} - outer + Zim16s{8}) >> 4);
  }
};

enum class Planes { asTheyAre, exchanged };

template <class Layout, Planes planes = Planes::asTheyAre>
ZimResult interpolated(const ChromaCall& call) {
  const Zim32s width = call.roiSize.width & ~1, height = call.roiSize.height & ~7;
  const std::ptrdiff_t last = height / 2 - 1;
  const auto source = planes == Planes::exchanged ? call.source.image().withChromaExchanged() : call.source.image();
  const auto destination = call.destination.image();
  copyRows(source, destination, 0, width, height);
  for (std::ptrdiff_t row = 0; row <= last; ++row) {
    const auto nearest = [&](std::ptrdiff_t r) { return std::clamp<std::ptrdiff_t>(r, 0, last); };
    convertChromaRow<DoubleRows, Layout, ThreePlanes>(source, {row}, destination, 2 * row, width / 2);
    convertChromaRow<FourTap, Layout, ThreePlanes>(source, {nearest(row - 1), row, nearest(row + 1), nearest(row + 2)},
                                                   destination, 2 * row + 1, width / 2);
  }
  return zimResultOk;
}

// ---- BGR with averaged chroma -------------------------------------------------------------------------------------

inline constexpr DecoderSet kBetweenColumns = {76309, 104597, -25675, -53279, 132201, 16};

// Four interleaved samples a pixel, two pixels a cell.
struct BgraStrip {
  static constexpr std::size_t lines = 1;
  static constexpr std::ptrdiff_t bytesPerCell(std::size_t) { return 8; }

  template <int N>
  ZIM_INLINE static void store(const std::array<std::byte*, 1>& line, std::ptrdiff_t cell,
                               const Pixels<Zim8u, N, 4>& pixels) {
    zim::store<Zim8u, N, 4>(line[0] + cell * 8, pixels);
  }
};

ZimResult averagedBgr(const ChromaCall& call, Zim8u aval) {
  using From = Strip<ThreePlanes, 2, 1, 1, 2>;
  const auto decode = withAlpha<Reversed<Decode<kBetweenColumns, Rounding::truncating>>>(aval);
  const auto [width, height] = call.roiSize;
  const auto source = call.source.image().withChromaExchanged();
  const auto destination = call.destination.image();
  const std::ptrdiff_t last = std::max(width / 2 - 1, 0);
  for (Zim32s row = 0; row < (height & ~1); ++row) {
    const std::byte *const luma = source.row(0, row), *const cb = source.row(1, row / 2),
                           *const cr = source.row(2, row / 2);
    std::byte* const to = destination.row(0, row);
    if (last > 0) {
      // Chroma as it is, and one column further on.
      convertCells<From, BgraStrip, Chroma::apart, kLanes<Zim8u>>(
          {luma, cb, cb + 1, cr, cr + 1}, {to}, last, [&](const auto& in) ZIM_LAMBDA {
            const auto chroma = perChannel<2>([&](auto c) ZIM_LAMBDA {
              const auto own = in.chroma[0][c], next = in.chroma[1][c];
              return zip(own, averageUp(own, next));
            });
            return applyKernel<Zim8u>(decode, std::array{in.luma[0], chroma[0], chroma[1]});
          });
    }
    for (std::ptrdiff_t x : {2 * last, 2 * last + 1}) {
      const auto pixel =
          std::array{load<Zim8u, 1, 1>(luma + x)[0], load<Zim8u, 1, 1>(cb + last)[0], load<Zim8u, 1, 1>(cr + last)[0]};
      store<Zim8u, 1, 4>(to + 4 * x, applyKernel<Zim8u>(decode, pixel));
    }
  }
  return width % 2 != 0 || height % 2 != 0 ? zimWarnOddSize : zimResultOk;
}

// ---- Sizes --------------------------------------------------------------------------------------------------------

constexpr Sizes kPairs = {{2, 2}};
constexpr Sizes kEights = {{2, 8}};
constexpr Sizes kAny = {{1, 1}};

}  // namespace

#define LAYOUT (Zim32s layout)
#define AVAL (Zim8u aval)
// The destination of one interleaved layout.
#define ZIM_DESTINATION_C4 ZIM_DESTINATION_C2
#define ZIM_TO_C4 ZIM_TO_C2

// clang-format off
//                    export                                   from to  further tests      sizes    result
ZIM_CHROMA_CONVERSION(zimiYCbCr420ToYCbCr422_Filter_8u_P2C2R, P2, C2, LAYOUT, N_Q_S,     kPairs,  slicesPacked(call, layout))
ZIM_CHROMA_CONVERSION(zimiYCbCr420ToYCrCb420_Filter_8u_P2P3R, P2, P3, LAYOUT, N_E_Q_S_A, kPairs,  slicesPlanar(call, layout))
ZIM_CHROMA_CONVERSION(zimiYCbCr420ToYCbCr422_Filter_8u_P2P3R, P2, P3, (),     N_Q_S_A,   kEights, interpolated<TwoPlanes>(call))
ZIM_CHROMA_CONVERSION(zimiYCbCr420ToYCbCr422_Filter_8u_P3R,   P3, P3, (),     N_Q_S_A,   kEights, interpolated<ThreePlanes>(call))
ZIM_CHROMA_CONVERSION(zimiYCrCb420ToYCbCr422_Filter_8u_P3R,   P3, P3, (),     N_Q_S_A,   kEights, (interpolated<ThreePlanes, Planes::exchanged>(call)))
ZIM_CHROMA_CONVERSION(zimiYCrCb420ToBGR_Filter_8u_P3C4R,      P3, C4, AVAL,   N_S_Q_A,   kAny,    averagedBgr(call, aval))
