// Luma-chroma images of 8-bit samples, and the strips in which they are converted.
//
// A strip is the few rows that a kernel works on together: some of luma and some of chroma. Along them it is divided
// into cells, the least number of pixels that have whole chroma samples on either side of a conversion. A kernel is a
// pure function from the lanes of a source's strip to those of a destination's; it knows neither layouts nor rows.
#pragma once

#include <algorithm>
#include <cstring>

#include "frame/lanes/zip.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// ---- Images -------------------------------------------------------------------------------------------------------

// Luma first, or pixels packed with their chroma; then chroma, Cb first unless the planes are taken for one another.
template <class Byte>
struct ChromaImage {
  std::array<Byte*, 3> plane;
  std::array<std::ptrdiff_t, 3> step;

  ZIM_INLINE Byte* row(std::size_t p, std::ptrdiff_t y) const { return plane[p] + y * step[p]; }

  ChromaImage withChromaExchanged() const { return {{plane[0], plane[2], plane[1]}, {step[0], step[2], step[1]}}; }
};
using SourceImage = ChromaImage<const std::byte>;
using DestinationImage = ChromaImage<std::byte>;

// Rows of so many bytes, all at once where they lie in one piece on both sides.
inline void copyRows(const SourceImage& from, const DestinationImage& to, std::size_t plane, std::ptrdiff_t bytes,
                     std::ptrdiff_t rows) {
  if (rows < 1) return;
  if (from.step[plane] == bytes && to.step[plane] == bytes) {
    bytes *= rows;
    rows = 1;
  }
  for (std::ptrdiff_t y = 0; y < rows; ++y) {
    std::memcpy(to.row(plane, y), from.row(plane, y), static_cast<std::size_t>(bytes));
  }
}

// Pixels across and down that share a chroma sample.
template <int Across, int Down>
struct Grid {
  static constexpr int across = Across, down = Down;
};
using Grid422 = Grid<2, 1>;
using Grid420 = Grid<2, 2>;
using Grid411 = Grid<4, 1>;
using Grid1620 = Grid<4, 4>;

// ---- Lanes of chroma ----------------------------------------------------------------------------------------------

// On its way chroma is two channels of bytes, or, where that saves taking it apart, one of pairs.
enum class Chroma { apart, paired };
template <Chroma form, int N>
using ChromaLanes = std::conditional_t<form == Chroma::apart, Pixels<Zim8u, N, 2>, Pixels<Zim16u, N, 1>>;

template <Chroma form, int N>
ZIM_INLINE ChromaLanes<form, N / 2> fromPairs(Lane<Zim8u, N> pairs) {
  if constexpr (form == Chroma::apart) {
    return unzip(pairs);
  } else {
    return {bitsAs<Zim16u>(pairs)};
  }
}
template <int N>
ZIM_INLINE Lane<Zim8u, 2 * N> toPairs(const Pixels<Zim8u, N, 2>& chroma) {
  return zip(chroma[0], chroma[1]);
}
template <int N>
ZIM_INLINE Lane<Zim8u, 2 * N> toPairs(const Pixels<Zim16u, N, 1>& chroma) {
  return bitsAs<Zim8u>(chroma[0]);
}
template <int N>
ZIM_INLINE Pixels<Zim8u, N, 2> toPlanes(const Pixels<Zim8u, N, 2>& chroma) {
  return chroma;
}
template <int N>
ZIM_INLINE Pixels<Zim8u, N, 2> toPlanes(const Pixels<Zim16u, N, 1>& chroma) {
  return unzip(bitsAs<Zim8u>(chroma[0]));
}

// An operation on bytes, for each channel of some chroma in either form.
template <class Operation, class T, int N, std::size_t Channels, class... Others>
ZIM_INLINE Pixels<T, N, Channels> perByte(const Operation& operation, const Pixels<T, N, Channels>& first,
                                          const Others&... others) {
  return perChannel<Channels>(
      [&](auto c) ZIM_LAMBDA { return bitsAs<T>(operation(bitsAs<Zim8u>(first[c]), bitsAs<Zim8u>(others[c])...)); });
}

// std::array of row(0), row(1), ..., which may be none.
template <int Rows, class Row>
ZIM_INLINE auto perRow(const Row& row) {
  using First = decltype(row(std::integral_constant<std::size_t, 0>()));
  return [&]<std::size_t... r>(std::index_sequence<r...>) ZIM_LAMBDA {
    return std::array<First, Rows>{row(std::integral_constant<std::size_t, r>())...};
  }
  (std::make_index_sequence<Rows>());
}

template <class... Rows>
ZIM_INLINE auto rowsOf(const Rows&... rows) {
  return std::array<std::common_type_t<Rows...>, sizeof...(Rows)>{rows...};
}

// What a kernel takes and gives: for each row its lanes.
template <class Luma, class ChromaRows>
struct Content {
  Luma luma;
  ChromaRows chroma;
};
template <class Luma, class ChromaRows>
Content(Luma, ChromaRows) -> Content<Luma, ChromaRows>;

// ---- Layouts ------------------------------------------------------------------------------------------------------

// Pairs of luma and chroma bytes; two pairs have one sample each of Cb and Cr.
template <bool LumaFirst>
struct Packed {
  static constexpr bool isPacked = true;
  static constexpr int chromaPlanes = 0;
  static constexpr bool lumaFirst = LumaFirst;
};
// Luma, and Cb, Cr pairs in a plane of their own.
struct TwoPlanes {
  static constexpr bool isPacked = false;
  static constexpr int chromaPlanes = 1;
};
// Luma, and a plane for each chroma.
struct ThreePlanes {
  static constexpr bool isPacked = false;
  static constexpr int chromaPlanes = 2;
};

// A strip of a layout, whose cells have so many pixels and columns of chroma. Its lines are rows of memory: those of
// luma, or packed, then those of each chroma plane.
template <class Layout, int CellPixels, int CellColumns, int LumaRows, int ChromaRows>
struct Strip {
  static constexpr bool hasChromaPlanes = Layout::chromaPlanes == 2;
  static constexpr std::size_t lines = static_cast<std::size_t>(LumaRows + Layout::chromaPlanes * ChromaRows);
  static_assert(!Layout::isPacked || LumaRows == ChromaRows);

  static constexpr std::ptrdiff_t bytesPerCell(std::size_t line) {
    if (line < LumaRows) return Layout::isPacked ? 2 * CellPixels : CellPixels;
    return Layout::chromaPlanes == 1 ? 2 * CellColumns : CellColumns;
  }

  // The lines of an image, by the functions that tell the image's rows from those of the strip.
  template <class Byte, class LumaRow, class ChromaRow>
  ZIM_INLINE static std::array<Byte*, lines> of(const ChromaImage<Byte>& image, const LumaRow& lumaRow,
                                                const ChromaRow& chromaRow) {
    return perRow<lines>([&](auto i) ZIM_LAMBDA {
      if constexpr (i < LumaRows) {
        return image.row(0, lumaRow(std::ptrdiff_t{i}));
      } else {
        constexpr std::size_t plane = (i - LumaRows) / ChromaRows, row = (i - LumaRows) % ChromaRows;
        return image.row(1 + plane, chromaRow(std::ptrdiff_t{row}));
      }
    });
  }
  // Successive rows from these on.
  template <class Byte>
  ZIM_INLINE static std::array<Byte*, lines> at(const ChromaImage<Byte>& image, std::ptrdiff_t lumaRow,
                                                std::ptrdiff_t chromaRow) {
    return of(
        image, [&](std::ptrdiff_t r) ZIM_LAMBDA { return lumaRow + r; },
        [&](std::ptrdiff_t r) ZIM_LAMBDA { return chromaRow + r; });
  }

  template <Chroma form, int N>
  ZIM_INLINE static auto load(const std::array<const std::byte*, lines>& line, std::ptrdiff_t cell) {
    const auto bytes = [&]<int count>(std::size_t i, std::integral_constant<int, count>)
                           ZIM_LAMBDA { return zim::load<Zim8u, count, 1>(line[i] + cell * bytesPerCell(i))[0]; };
    if constexpr (Layout::isPacked) {
      constexpr std::size_t y = Layout::lumaFirst ? 0 : 1;
      const auto parts = perRow<LumaRows>(
          [&](auto r) ZIM_LAMBDA { return unzip(bytes(r, std::integral_constant<int, 2 * N * CellPixels>())); });
      return Content{perRow<LumaRows>([&](auto r) ZIM_LAMBDA { return parts[r][y]; }),
                     perRow<LumaRows>([&](auto r) ZIM_LAMBDA { return fromPairs<form>(parts[r][1 - y]); })};
    } else {
      return Content{
          perRow<LumaRows>([&](auto r) ZIM_LAMBDA { return bytes(r, std::integral_constant<int, N * CellPixels>()); }),
          perRow<ChromaRows>([&](auto r) ZIM_LAMBDA {
            if constexpr (hasChromaPlanes) {
              static_assert(form == Chroma::apart);
              return perChannel<2>([&](auto c) ZIM_LAMBDA {
                return bytes(LumaRows + c * ChromaRows + r, std::integral_constant<int, N * CellColumns>());
              });
            } else {
              return fromPairs<form>(bytes(LumaRows + r, std::integral_constant<int, 2 * N * CellColumns>()));
            }
          })};
    }
  }

  template <class Luma, class ChromaRowsOf>
  ZIM_INLINE static void store(const std::array<std::byte*, lines>& line, std::ptrdiff_t cell,
                               const Content<Luma, ChromaRowsOf>& content) {
    const auto put = [&]<int count>(std::size_t i, Lane<Zim8u, count> bytes)
                         ZIM_LAMBDA { zim::store<Zim8u, count, 1>(line[i] + cell * bytesPerCell(i), {bytes}); };
    if constexpr (Layout::isPacked) {
      forChannels<LumaRows>([&](auto r) ZIM_LAMBDA {
        const auto luma = content.luma[r], chroma = toPairs(content.chroma[r]);
        put(r, Layout::lumaFirst ? zip(luma, chroma) : zip(chroma, luma));
      });
    } else {
      forChannels<LumaRows>([&](auto r) ZIM_LAMBDA { put(r, content.luma[r]); });
      forChannels<ChromaRows>([&](auto r) ZIM_LAMBDA {
        if constexpr (hasChromaPlanes) {
          const auto planes = toPlanes(content.chroma[r]);
          forChannels<2>([&](auto c) ZIM_LAMBDA { put(LumaRows + c * ChromaRows + r, planes[c]); });
        } else {
          put(LumaRows + r, toPairs(content.chroma[r]));
        }
      });
    }
  }
};

// ---- Along a strip ------------------------------------------------------------------------------------------------

// Whole blocks of cells. The last one ends with the strip and may repeat cells of the one before it.
template <class Source, class Destination, Chroma form, int N, class Kernel>
[[gnu::noinline]] void convertBlocks(const std::array<const std::byte*, Source::lines>& from,
                                     const std::array<std::byte*, Destination::lines>& to, std::ptrdiff_t cells,
                                     const Kernel& kernel) {
  const auto source = from;
  const auto destination = to;
  for (std::ptrdiff_t next = 0; next < cells; next += N) {
    const std::ptrdiff_t cell = std::min(next, cells - N);
    Destination::store(destination, cell, kernel(Source::template load<form, N>(source, cell)));
  }
}

// Cells of a block. On SSE2, where a register holds 16 samples, rounds of a loop cost too much for one sample a cell.
inline constexpr int kCells = std::max(kLanes<Zim8u>, 32);

// Fewer cells than a block has, by a block apart from the image.
template <class Source, class Destination, Chroma form, int N, class Kernel>
[[gnu::noinline]] void convertFewCells(const std::array<const std::byte*, Source::lines>& from,
                                       const std::array<std::byte*, Destination::lines>& to, std::ptrdiff_t cells,
                                       const Kernel& kernel) {
  // No line has more than 8 bytes a cell.
  std::byte sourceBytes[Source::lines][8 * N] = {}, destinationBytes[Destination::lines][8 * N];
  std::array<const std::byte*, Source::lines> source;
  std::array<std::byte*, Destination::lines> destination;
  const auto bytes = [&](std::ptrdiff_t perCell) { return static_cast<std::size_t>(cells * perCell); };
  for (std::size_t i = 0; i < Source::lines; ++i) {
    std::memcpy(sourceBytes[i], from[i], bytes(Source::bytesPerCell(i)));
    source[i] = sourceBytes[i];
  }
  for (std::size_t i = 0; i < Destination::lines; ++i) destination[i] = destinationBytes[i];
  convertBlocks<Source, Destination, form, N>(source, destination, N, kernel);
  for (std::size_t i = 0; i < Destination::lines; ++i) {
    std::memcpy(to[i], destinationBytes[i], bytes(Destination::bytesPerCell(i)));
  }
}

// So many cells of a strip, at least one.
template <class Source, class Destination, Chroma form, int N = kCells, class Kernel>
ZIM_INLINE void convertCells(const std::array<const std::byte*, Source::lines>& from,
                             const std::array<std::byte*, Destination::lines>& to, std::ptrdiff_t cells,
                             const Kernel& kernel) {
  if (cells >= N) {
    convertBlocks<Source, Destination, form, N>(from, to, cells, kernel);
  } else {
    convertFewCells<Source, Destination, form, N>(from, to, cells, kernel);
  }
}

// The form that saves the most work between two layouts: apart from where it first lies so, or ends so; but a few rows
// of pairs become one before that comes apart.
template <class Source, class Destination, int SourceRows = 1>
inline constexpr Chroma kChromaBetween = Source::chromaPlanes == 2 ||
                                                 (Destination::chromaPlanes == 2 && SourceRows == 1)
                                             ? Chroma::apart
                                             : Chroma::paired;

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
