// Chroma of interlaced frames between 4:2:2 and 4:2:0. The fields, even and odd rows, do not mix: each is filtered by
// itself, with the weights that the places of its rows between those of the other grid ask for. Luma is copied.

#include "frame/lanes/averages.h"
#include "frame/team.h"
#include "reformat/arguments.h"
#include "reformat/rules.h"

using namespace zim;

namespace {

// A row of chroma from two successive ones of its field, (k a + (2^shift - k) b + half the unit) >> shift.
template <class From, class To, int k, int shift>
struct Blend : Between<From, To, 2> {
  template <class Row>
  ZIM_INLINE Row operator()(const std::array<Row, 2>& rows) const {
    return perByte([](auto a, auto b) ZIM_LAMBDA { return blend<k, shift>(a, b); }, rows[0], rows[1]);
  }
};
template <int k>
using ToHalf = Blend<Grid422, Grid420, k, 2>;
template <int k>
using ToFull = Blend<Grid420, Grid422, k, 3>;

// One frame on its way.
template <class Source, class Destination>
struct Frame {
  SourceImage source;
  DestinationImage destination;
  Zim32s width;

  // Rows from a multiple of 4 on, in groups of 4.
  void toHalf(Zim32s first, Zim32s rows) const {
    copyLuma(first, rows);
    for (std::ptrdiff_t row = first; row < first + rows; row += 4) {
      if constexpr (Source::isPacked) {
        for (std::ptrdiff_t r = row; r < row + 4; ++r) {
          using From = Strip<Source, 2, 1, 1, 1>;
          using To = Strip<Destination, 2, 1, 1, 0>;
          convertCells<From, To, Chroma::paired>(From::at(source, r, r), To::at(destination, r, 0), width / 2,
                                                 LumaAlone{});
        }
      }
      chromaRow<ToHalf<3>>({row, row + 2}, row / 2);
      chromaRow<ToHalf<1>>({row + 1, row + 3}, row / 2 + 1);
    }
  }

  // Rows from 2 + a multiple of 4 on, in groups of 4; before them the head of the frame, after them its tail.
  void toFull(Zim32s first, Zim32s rows, bool hasHead, bool hasTail) const {
    copyLuma(first, rows);
    const std::ptrdiff_t end = first + rows - (hasTail ? 2 : 0);
    std::ptrdiff_t row = first;
    if (hasHead) {
      copied(0, 0);
      copied(1, 1);
      row = 2;
    }
    for (; row < end; row += 4) {
      const std::ptrdiff_t even = row / 2 - 1, odd = even + 1;
      chromaRow<ToFull<5>>({even, even + 2}, row);
      chromaRow<ToFull<7>>({odd, odd + 2}, row + 1);
      chromaRow<ToFull<1>>({even, even + 2}, row + 2);
      chromaRow<ToFull<3>>({odd, odd + 2}, row + 3);
    }
    if (hasTail) {
      copied(row / 2 - 1, row);
      copied(row / 2, row + 1);
    }
  }

 private:
  void copyLuma(Zim32s row, Zim32s rows) const {
    if constexpr (!Source::isPacked && !Destination::isPacked) {
      SourceImage from = source;
      DestinationImage to = destination;
      from.plane[0] = source.row(0, row);
      to.plane[0] = destination.row(0, row);
      copyRows(from, to, 0, width, rows);
    }
  }

  // A row of chroma, in a packed destination with the luma of that row.
  template <class Rule>
  void chromaRow(std::array<std::ptrdiff_t, Rule::sourceRows> rows, std::ptrdiff_t row) const {
    constexpr int lumaRows = Destination::isPacked ? 1 : 0;
    using From = Strip<Source, 2, 1, Source::isPacked ? Rule::sourceRows : lumaRows, Rule::sourceRows>;
    using To = Strip<Destination, 2, 1, lumaRows, 1>;
    const auto lumaRow = [&](std::ptrdiff_t r)
                             ZIM_LAMBDA { return Source::isPacked ? rows[static_cast<std::size_t>(r)] : row; };
    const auto chromaRow = [&](std::ptrdiff_t r) ZIM_LAMBDA { return rows[static_cast<std::size_t>(r)]; };
    convertCells<From, To, kChromaBetween<Source, Destination, Rule::sourceRows>>(
        From::of(source, lumaRow, chromaRow), To::at(destination, row, row), width / 2, WithLuma<Rule>{});
  }
  void copied(std::ptrdiff_t from, std::ptrdiff_t row) const { chromaRow<DoubleRows>({from}, row); }
};

// Large frames are divided by hand into bands of whole groups for the team that the runtime grants.
template <class Whole, class Band>
void inBands(ZimiSize size, const Whole& whole, const Band& band) {
  const int count = wantedTeamSize();
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
