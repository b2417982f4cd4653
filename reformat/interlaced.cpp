// Chroma of interlaced frames between 4:2:2 and 4:2:0. The fields, even and odd rows, do not mix: each is filtered by
// itself, with the weights that the places of its rows between those of the other grid ask for. Luma is copied.

#include "frame/lanes/averages.h"
#include "frame/rows.h"
#include "reformat/arguments.h"
#include "reformat/rules.h"

using namespace zim;

namespace {

// (k a + (2^shift - k) b + half the unit) >> shift, for each byte of two rows.
template <int k, int shift, class Row>
ZIM_INLINE Row blended(const Row& a, const Row& b) {
  return perByte([](auto x, auto y) ZIM_LAMBDA { return blend<k, shift>(x, y); }, a, b);
}

// Four rows of chroma, two of each field, to one of each.
struct ToHalf {
  static constexpr int chromaRows = 2;
  template <class Luma, class Row>
  ZIM_INLINE auto operator()(const Content<Luma, std::array<Row, 4>>& in) const {
    const auto& [even0, odd0, even1, odd1] = in.chroma;
    return Content{in.luma, rowsOf(blended<3, 2>(even0, even1), blended<1, 2>(odd0, odd1))};
  }
};

// Two successive rows of each field to the two that lie between them.
struct ToFull {
  static constexpr int chromaRows = 4;
  template <class Luma, class Row>
  ZIM_INLINE auto operator()(const Content<Luma, std::array<Row, 4>>& in) const {
    const auto& [even0, odd0, even1, odd1] = in.chroma;
    return Content{in.luma, rowsOf(blended<5, 3>(even0, even1), blended<7, 3>(odd0, odd1),  //
                                   blended<1, 3>(even0, even1), blended<3, 3>(odd0, odd1))};
  }
};

// The chroma of the first and of the last two rows of a frame.
struct Copied {
  template <class In>
  ZIM_INLINE auto operator()(const In& in) const {
    return in;
  }
};

// One frame on its way: strips of rows, with luma in them only where either side has it packed.
template <class Source, class Destination>
struct Frame {
  static constexpr bool lumaApart = !Source::isPacked && !Destination::isPacked;
  static constexpr int lumaRows(int rows) { return lumaApart ? 0 : rows; }

  SourceImage source;
  DestinationImage destination;
  Zim32s width;

  void copyLuma(Zim32s row, Zim32s rows) const {
    if constexpr (lumaApart) {
      SourceImage from = source;
      DestinationImage to = destination;
      from.plane[0] = source.row(0, row);
      to.plane[0] = destination.row(0, row);
      copyRows(from, to, 0, width, rows);
    }
  }

  // So many rows of luma, of source chroma and of destination chroma, from given ones on.
  template <int LumaRows, int FromRows, int ToRows, class Kernel>
  void convert(std::ptrdiff_t luma, std::ptrdiff_t fromRow, std::ptrdiff_t toRow, const Kernel& kernel) const {
    using From = Strip<Source, 2, 1, lumaRows(LumaRows), FromRows>;
    using To = Strip<Destination, 2, 1, lumaRows(LumaRows), ToRows>;
    convertCells<From, To, Source::isPacked ? Chroma::paired : Chroma::apart>(
        From::at(source, luma, fromRow), To::at(destination, luma, toRow), width / 2, kernel);
  }

  // Rows from a multiple of 4 on, in groups of 4.
  void toHalf(Zim32s first, Zim32s rows) const {
    copyLuma(first, rows);
    for (Zim32s row = first; row < first + rows; row += 4) convert<4, 4, 2>(row, row, row / 2, ToHalf{});
  }

  // Rows from 2 + a multiple of 4 on, in groups of 4; before them the head of the frame, after them its tail.
  void toFull(Zim32s first, Zim32s rows, bool hasHead, bool hasTail) const {
    copyLuma(first, rows);
    Zim32s row = first;
    const Zim32s end = first + rows;
    if (hasHead) {
      convert<2, 2, 2>(0, 0, 0, Copied{});
      row = 2;
    }
    for (; row < end - (hasTail ? 2 : 0); row += 4) convert<4, 4, 4>(row, row / 2 - 1, row, ToFull{});
    if (hasTail) convert<2, 2, 2>(row, row / 2 - 1, row, Copied{});
  }
};

// Large frames are divided by hand into bands of whole groups for the team that the runtime grants.
template <class Whole, class Band>
void inBands(ZimiSize size, const Whole& whole, const Band& band) {
  const int count = ownGetNumThreads();
  if (count <= 1 || size.width < 128 || size.height <= 128) {
    whole();
  } else {
    inTeam(count, band);
  }
}

enum class Direction { toHalf, toFull };

template <Direction direction, class Source, class Destination>
ZimResult interlaced(const ChromaCall& call) {
  const ZimiSize size = {call.roiSize.width & ~1, call.roiSize.height & ~3};
  const Frame<Source, Destination> frame = {call.source.image(), call.destination.image(), size.width};
  const Zim32s height = size.height;
  if constexpr (direction == Direction::toHalf) {
    // The last thread takes the rest.
    inBands(
        size, [&] { frame.toHalf(0, height); },
        [&](int thread, int team) {
          const Zim32s band = (height >> 2) / team * 4, rest = height - team * band;
          frame.toHalf(thread * band, band + (thread == team - 1 ? rest : 0));
        });
  } else {
    // The first thread takes the two rows of the head as well, the last the rest with the tail.
    inBands(
        size, [&] { frame.toFull(0, height, true, true); },
        [&](int thread, int team) {
          const Zim32s band = ((height - 4) >> 2) / team * 4, rest = height - team * band - 2;
          const bool isFirst = thread == 0, isLast = thread == team - 1;
          frame.toFull(thread * band + (isFirst ? 0 : 2), band + (isFirst ? 2 : 0) + (isLast ? rest : 0), isFirst,
                       isLast);
        });
  }
  const bool isReduced = size.width != call.roiSize.width || size.height != call.roiSize.height;
  return isReduced ? zimWarnOddSize : zimResultOk;
}

constexpr Sizes kGroups = {{2, 4}};

}  // namespace

#define ZIM_INTERLACED(name, SourceLayout, DestinationLayout, Tests, ...) \
  ZIM_CHROMA_CONVERSION(name, SourceLayout, DestinationLayout, (), Tests, kGroups, (interlaced<__VA_ARGS__>(call)))

// clang-format off
//             export                                     from to  tests    direction, layouts
ZIM_INTERLACED(zimiCbYCr422ToYCbCr420_Interlace_8u_C2P3R, C2, P3, N_Q_S_A, Direction::toHalf, Packed<false>, ThreePlanes)
ZIM_INTERLACED(zimiYCbCr422To420_Interlace_8u_P3R,        P3, P3, N_Q_S_A, Direction::toHalf, ThreePlanes, ThreePlanes)
ZIM_INTERLACED(zimiYCbCr420To422_Interlace_8u_P3R,        P3, P3, N_Q_S_A, Direction::toFull, ThreePlanes, ThreePlanes)
ZIM_INTERLACED(zimiYCbCr420ToCbYCr422_Interlace_8u_P3C2R, P3, C2, N_Q_S_A, Direction::toFull, ThreePlanes, Packed<false>)
