// Conversions to RGB of images whose pixels share samples of chroma.
//
// A source says where luma and chroma lie, a kernel (transforms.h) what they mean, a sink what becomes of R, G, B, and
// a rule for lone columns what is done where a row ends within a group of pixels that share chroma.
//
// A strip is as many rows as share chroma. Pixels pass woven, even ones in the first half of the lanes and odd ones in
// the second, so that the terms of chroma of a pair serve as they are for both; or in order, where both the kernel and
// the sink have a form for it.
#pragma once

#include <algorithm>

#include "frame/arguments.h"
#include "frame/entry.h"
#include "frame/lanes/fixed_point.h"
#include "frame/lanes/zip.h"
#include "frame/layouts.h"
#include "frame/rows.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// ---- Sources ------------------------------------------------------------------------------------------------------
//
// The lines of a strip are its rows of luma, then those of chroma, or its one row of interleaved samples. luma and
// chroma give woven pixels; lumaInOrder and chromaInOrder the pixels in order, and their pairs of chroma.

template <class Source>
using Lines = Position<const std::byte, Source::lines>;

template <class Source>
ZIM_INLINE Lines<Source> ahead(Lines<Source> from, std::ptrdiff_t pixels) {
  return {perChannel<Source::lines>([&](auto i) ZIM_LAMBDA { return from.plane[i] + Source::bytes(i, pixels); })};
}

ZIM_INLINE Zim16s byteAt(const std::byte* p) { return std::to_integer<Zim16s>(*p); }

template <int N>
ZIM_INLINE Lane<Zim16s, N> wovenBytes(Lane<Zim8u, N> bytes) {
  return weave<Zim16s>(Pixels<Zim8u, N, 1>{bytes})[0];
}

// Two interleaved samples of chroma for each pair of pixels.
template <int N>
ZIM_INLINE Pixels<Zim16s, N / 2, 2> chromaPairs(Lane<Zim8u, N> bytes) {
  const auto woven = wovenBytes(bytes);
  return {woven.v.lo, woven.v.hi};
}

enum class ChromaOrder { cbCr, crCb };

ZIM_INLINE std::array<Zim16s, 2> ordered(ChromaOrder order, Zim16s first, Zim16s second) {
  return order == ChromaOrder::cbCr ? std::array{first, second} : std::array{second, first};
}

// Planes of luma, Cb and Cr; a sample of chroma for so many pixels across and rows down.
template <int pixelsAcross, int rowsDown, ChromaOrder order = ChromaOrder::cbCr>
struct ThreePlanes {
  static constexpr int across = pixelsAcross, down = rowsDown;
  static constexpr std::size_t planes = 3, lines = 2 + rowsDown;

  static constexpr std::ptrdiff_t bytes(std::size_t line, std::ptrdiff_t pixels) {
    return line < down ? pixels : pixels / across;
  }

  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> luma(Lines<ThreePlanes> from, std::size_t row) {
    return wovenBytes(load<Zim8u, N, 1>(from.plane[row])[0]);
  }
  template <int N>
  ZIM_INLINE static auto chroma(Lines<ThreePlanes> from) {
    return perChannel<2>([&](auto i) ZIM_LAMBDA {
      const std::byte* p = from.plane[down + (order == ChromaOrder::cbCr ? i : 1 - i)];
      if constexpr (across == 1) {
        return wovenBytes(load<Zim8u, N, 1>(p)[0]);
      } else {
        return loadSpread<across / 2>(p);
      }
    });
  }

  static constexpr bool crFirst = false;
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> lumaInOrder(Lines<ThreePlanes> from, std::size_t row) {
    return widen(load<Zim8u, N, 1>(from.plane[row])[0]);
  }
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> chromaInOrder(Lines<ThreePlanes> from) requires(across > 1) {
    const auto [u, v] = chroma<N>(from);
    return zip(u, v);
  }

  ZIM_INLINE static Zim16s lumaAt(Lines<ThreePlanes> from, std::size_t row, std::ptrdiff_t x) {
    return byteAt(from.plane[row] + x);
  }
  ZIM_INLINE static std::array<Zim16s, 2> chromaAt(Lines<ThreePlanes> from, std::ptrdiff_t x) {
    return ordered(order, byteAt(from.plane[down] + x / across), byteAt(from.plane[down + 1] + x / across));
  }
};

using P444 = ThreePlanes<1, 1>;
using P422 = ThreePlanes<2, 1>;
using P420 = ThreePlanes<2, 2>;
using P411 = ThreePlanes<4, 1>;

// A plane of luma and one of interleaved Cb and Cr, of which one pair belongs to a block of 2 x 2 pixels.
struct TwoPlanes420 {
  static constexpr int across = 2, down = 2;
  static constexpr std::size_t planes = 2, lines = 3;

  static constexpr std::ptrdiff_t bytes(std::size_t, std::ptrdiff_t pixels) { return pixels; }

  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> luma(Lines<TwoPlanes420> from, std::size_t row) {
    return wovenBytes(load<Zim8u, N, 1>(from.plane[row])[0]);
  }
  template <int N>
  ZIM_INLINE static auto chroma(Lines<TwoPlanes420> from) {
    return chromaPairs(load<Zim8u, N, 1>(from.plane[2])[0]);
  }

  static constexpr bool crFirst = false;
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> lumaInOrder(Lines<TwoPlanes420> from, std::size_t row) {
    return widen(load<Zim8u, N, 1>(from.plane[row])[0]);
  }
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> chromaInOrder(Lines<TwoPlanes420> from) {
    return widen(load<Zim8u, N, 1>(from.plane[2])[0]);
  }

  ZIM_INLINE static Zim16s lumaAt(Lines<TwoPlanes420> from, std::size_t row, std::ptrdiff_t x) {
    return byteAt(from.plane[row] + x);
  }
  ZIM_INLINE static std::array<Zim16s, 2> chromaAt(Lines<TwoPlanes420> from, std::ptrdiff_t x) {
    const std::byte* pair = from.plane[2] + (x & ~std::ptrdiff_t{1});
    return {byteAt(pair), byteAt(pair + 1)};
  }
};

// Luma and chroma by turns, one pair of chroma for two pixels.
enum class First { luma, chroma };

template <First first, ChromaOrder order>
struct Packed422 {
  static constexpr int across = 2, down = 1;
  static constexpr std::size_t planes = 1, lines = 1;

  static constexpr std::ptrdiff_t bytes(std::size_t, std::ptrdiff_t pixels) { return 2 * pixels; }

  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> luma(Lines<Packed422> from, std::size_t) {
    return wovenBytes(load<Zim8u, N, 2>(from.plane[0])[lumaByte]);
  }
  template <int N>
  ZIM_INLINE static auto chroma(Lines<Packed422> from) {
    const auto [a, b] = chromaPairs(load<Zim8u, N, 2>(from.plane[0])[1 - lumaByte]);
    return order == ChromaOrder::cbCr ? std::array{a, b} : std::array{b, a};
  }

  static constexpr bool crFirst = order == ChromaOrder::crCb;
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> lumaInOrder(Lines<Packed422> from, std::size_t) {
    return byteOfWords<N, lumaByte>(from);
  }
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> chromaInOrder(Lines<Packed422> from) {
    return byteOfWords<N, 1 - lumaByte>(from);
  }

  ZIM_INLINE static Zim16s lumaAt(Lines<Packed422> from, std::size_t, std::ptrdiff_t x) {
    return byteAt(from.plane[0] + 2 * x + lumaByte);
  }
  ZIM_INLINE static std::array<Zim16s, 2> chromaAt(Lines<Packed422> from, std::ptrdiff_t x) {
    return ordered(order, sampleAt(from, x & ~std::ptrdiff_t{1}), sampleAt(from, x | 1));
  }
  // A last pixel without a partner has the first sample of its pair only; the second is given.
  ZIM_INLINE static std::array<Zim16s, 2> loneChromaAt(Lines<Packed422> from, std::ptrdiff_t x, Zim16s second) {
    return ordered(order, sampleAt(from, x), second);
  }
  ZIM_INLINE static Zim16s sampleAt(Lines<Packed422> from, std::ptrdiff_t x) {
    return byteAt(from.plane[0] + 2 * x + 1 - lumaByte);
  }

 private:
  static constexpr int lumaByte = first == First::luma ? 0 : 1;

  template <int N, int byte>
  ZIM_INLINE static Lane<Zim16s, N> byteOfWords(Lines<Packed422> from) {
    const auto words = load<Zim16u, N, 1>(from.plane[0])[0];
    return bitsAs<Zim16s>(byte == 0 ? words & Lane<Zim16u, N>(255) : words >> 8);
  }
};

using YCbCr422 = Packed422<First::luma, ChromaOrder::cbCr>;
using YCrCb422 = Packed422<First::luma, ChromaOrder::crCb>;
using CbYCr422 = Packed422<First::chroma, ChromaOrder::cbCr>;

// Three interleaved samples a pixel.
struct Interleaved444 {
  static constexpr int across = 1, down = 1;
  static constexpr std::size_t planes = 1, lines = 1;

  static constexpr std::ptrdiff_t bytes(std::size_t, std::ptrdiff_t pixels) { return 3 * pixels; }

  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> luma(Lines<Interleaved444> from, std::size_t) {
    return channels<N>(from)[0];
  }
  template <int N>
  ZIM_INLINE static auto chroma(Lines<Interleaved444> from) {
    const auto [y, u, v] = channels<N>(from);
    return std::array{u, v};
  }

  ZIM_INLINE static Zim16s lumaAt(Lines<Interleaved444> from, std::size_t, std::ptrdiff_t x) {
    return byteAt(from.plane[0] + 3 * x);
  }
  ZIM_INLINE static std::array<Zim16s, 2> chromaAt(Lines<Interleaved444> from, std::ptrdiff_t x) {
    return {byteAt(from.plane[0] + 3 * x + 1), byteAt(from.plane[0] + 3 * x + 2)};
  }

 private:
  template <int N>
  ZIM_INLINE static Pixels<Zim16s, N, 3> channels(Lines<Interleaved444> from) {
    if constexpr (kWeaves) {
      return weave<Zim16s>(load<Zim16u, N / 2, 3>(from.plane[0]));
    } else {
      return weave<Zim16s>(load<Zim8u, N, 3>(from.plane[0]));
    }
  }
};

// ---- Sinks --------------------------------------------------------------------------------------------------------

// The column and row of a single pixel; of a block the row, since its columns are whole periods of any pattern.
struct Place {
  std::ptrdiff_t x, y;
};

enum class Order { rgb, bgr };

// Bytes in one of the layouts of pixels; a fourth sample is the same in every pixel.
template <class PixelLayout, Order order>
struct ToBytes {
  using Layout = PixelLayout;
  static constexpr bool needsPlace = false;
  Zim8u fourth = 0;

  template <int N>
  ZIM_INLINE void store(Position<std::byte, Layout::planes> to, const Pixels<Zim16s, N, 3>& rgb, Place) const {
    const auto channels = inMemory(rgb);
    if constexpr (N > 1 && isC3) {
      storeWoven<N>(to.plane[0], channels);
    } else {
      storeBytes<N>(to, inOrder<N>(channels));
    }
  }

  // Words of the block from sums (fixed_point.h) of a register of pixels. For three interleaved channels they are those
  // of the pairs xy, zx, yz (memory.h).
  template <int N>
  ZIM_INLINE static Pixels<Zim16s, N, 3> words(const std::array<EvenOdd<N>, 3>& rgb) {
    const auto& [x, y, z] = inMemory(rgb);
    if constexpr (isC3) {
      return {highWords<N>({x.even, y.even}), highWords<N>({z.even, x.odd}), highWords<N>({y.odd, z.odd})};
    } else {
      return {highWords(x), highWords(y), highWords(z)};
    }
  }
  template <int N>
  ZIM_INLINE void storeWords(Position<std::byte, Layout::planes> to, const Pixels<Zim16s, N, 3>& words) const {
    const auto bytes = perChannel<3>([&](auto c) ZIM_LAMBDA { return narrow<Zim8u>(words[c]); });
    if constexpr (isC3) {
      zim::store<Zim16u, N / 2, 3>(to.plane[0],
                                   perChannel<3>([&](auto c) ZIM_LAMBDA { return bitsAs<Zim16u>(bytes[c]); }));
    } else {
      storeBytes<N>(to, bytes);
    }
  }

 private:
  static constexpr bool isC3 = std::is_same_v<Layout, C3<Zim8u>>;

  template <class Channel>
  ZIM_INLINE static std::array<Channel, 3> inMemory(const std::array<Channel, 3>& rgb) {
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return rgb[order == Order::rgb ? c : 2 - c]; });
  }
  template <int N>
  ZIM_INLINE void storeBytes(Position<std::byte, Layout::planes> to, const Pixels<Zim8u, N, 3>& bytes) const {
    Layout::template store<N>(to, perChannel<Layout::channels>([&](auto c) ZIM_LAMBDA {
                                if constexpr (c < 3) {
                                  return bytes[c];
                                } else {
                                  return Lane<Zim8u, N>(fourth);
                                }
                              }));
  }
};

template <class Layout>
using Rgb = ToBytes<Layout, Order::rgb>;
template <class Layout>
using Bgr = ToBytes<Layout, Order::bgr>;

// ---- Lone columns -------------------------------------------------------------------------------------------------
//
// At the end of a row whose width is no multiple of the pixels that share chroma.

// Nothing is written; nor is a lone last row.
struct LeftAlone {
  static constexpr bool areConverted = false;
};
// There is a sample of chroma for them as well; and for a lone last row.
struct WithOwnChroma {
  static constexpr bool areConverted = true;
  template <class Source>
  ZIM_INLINE static std::array<Zim16s, 2> chroma(Lines<Source> from, std::ptrdiff_t x) {
    return Source::chromaAt(from, x);
  }
};
// The chroma of the last whole group before them.
struct AsGroupBefore {
  static constexpr bool areConverted = true;
  template <class Source>
  ZIM_INLINE static std::array<Zim16s, 2> chroma(Lines<Source> from, std::ptrdiff_t x) {
    return Source::chromaAt(from, x - Source::across);
  }
};
// Packed pixels: one sample of its own, the other from the pair before; in a row of one pixel its own for both.
struct HalfFromPairBefore {
  static constexpr bool areConverted = true;
  template <class Source>
  ZIM_INLINE static std::array<Zim16s, 2> chroma(Lines<Source> from, std::ptrdiff_t x) {
    return Source::loneChromaAt(from, x, Source::sampleAt(from, x > 0 ? x - 1 : 0));
  }
};
// Packed pixels: its one sample for both.
struct OneSampleForBoth {
  static constexpr bool areConverted = true;
  template <class Source>
  ZIM_INLINE static std::array<Zim16s, 2> chroma(Lines<Source> from, std::ptrdiff_t x) {
    return Source::loneChromaAt(from, x, Source::sampleAt(from, x));
  }
};

// ---- Strips -------------------------------------------------------------------------------------------------------

// The terms of chroma for each pixel of a block.
template <int N, class T, int M, std::size_t Terms>
ZIM_INLINE std::array<Lane<T, N>, Terms> spread(const std::array<Lane<T, M>, Terms>& terms) {
  return perChannel<Terms>([&](auto i) ZIM_LAMBDA {
    if constexpr (M == N) {
      return terms[i];
    } else {
      return Lane<T, N>::join(terms[i], terms[i]);
    }
  });
}

// The rows of a strip in the destination.
template <class Source, class Sink>
using Rows = std::array<Position<std::byte, Sink::Layout::planes>, Source::down>;

// Luma from luma(row), chroma as lanes, for a block or a single pixel.
template <class Source, int N, class Kernel, class Sink, class Luma, int M>
ZIM_INLINE void decodeBlock(const Luma& luma, const Pixels<Zim16s, M, 2>& chroma, const Rows<Source, Sink>& to,
                            const std::array<Place, Source::down>& place, const Kernel& kernel, const Sink& sink) {
  const auto terms = spread<N>(kernel.chroma(chroma[0], chroma[1]));
  forChannels<Source::down>([&](auto row) ZIM_LAMBDA {
    sink.template store<N>(to[row], kernel.template pixels<N>(luma(row), terms), place[row]);
  });
}

// Pixels that pass in order, and chroma in pairs, where kernel and sink take them so.
template <class Source, class Kernel, class Sink>
concept InOrder = requires(Lines<Source> from, Lane<Zim16s, kLanes<Zim16s>> words) {
  Source::template chromaInOrder<kLanes<Zim8u>>(from);
  Sink::words(Kernel::template sums<Source::crFirst>(words, words));
};
template <class Source, int N, class Kernel, class Sink>
ZIM_INLINE void decodeInOrder(const Lines<Source>& from, const Rows<Source, Sink>& to, const Kernel& kernel,
                              const Sink& sink) {
  const auto chroma = Source::template chromaInOrder<N>(from);
  forChannels<Source::down>([&](auto row) ZIM_LAMBDA {
    const auto luma = Source::template lumaInOrder<N>(from, row);
    const auto half = [&](auto y, auto pairs)
                          ZIM_LAMBDA { return Sink::words(kernel.template sums<Source::crFirst>(y, pairs)); };
    const auto lo = half(luma.v.lo, chroma.v.lo), hi = half(luma.v.hi, chroma.v.hi);
    sink.template storeWords<N>(to[row],
                                perChannel<3>([&](auto c) ZIM_LAMBDA { return Lane<Zim16s, N>::join(lo[c], hi[c]); }));
  });
}

// Whole blocks, then the rest: with pixels before it that make it a whole block, of which there is a copy for
// conversions in place; where a pattern forbids that or the strip is shorter, as a block apart from it; or pixel by
// pixel. Then lone columns.
template <class Source, class LoneColumns, class Kernel, class Sink>
ZIM_INLINE void decodeStrip(const Lines<Source>& strip, const Rows<Source, Sink>& rows,
                            const std::array<Zim32s, Source::down>& y, std::ptrdiff_t width, const Kernel& kernel,
                            const Sink& sink) {
  using Layout = typename Sink::Layout;
  constexpr int block = kLanes<Zim8u>;
  constexpr auto down = static_cast<std::size_t>(Source::down);
  const std::ptrdiff_t whole = width & -std::ptrdiff_t{Source::across};
  std::ptrdiff_t blocks = whole / block;
  const std::ptrdiff_t inBlocks = blocks * block;
  const auto rest = static_cast<int>(whole - inBlocks);
  const bool overlaps = !Sink::needsPlace && blocks > 0;
  const bool restIsBlock = rest > (overlaps ? block / 32 : block / 8);
  const auto moved = [](const Rows<Source, Sink>& to, std::ptrdiff_t pixels) ZIM_LAMBDA {
    return perChannel<down>([&](auto row) ZIM_LAMBDA { return to[row].at(pixels * Layout::pixelBytes); });
  };
  const auto placeAt = [&](std::ptrdiff_t x) ZIM_LAMBDA {
    return perChannel<down>([&](auto row) ZIM_LAMBDA { return Place{x, y[row]}; });
  };

  alignas(kRegisterBytes) std::byte sourceEnd[Source::lines][Source::bytes(0, block)];
  Block<Layout, block> sinkEnd[down];
  const std::ptrdiff_t end = overlaps ? whole - block : inBlocks;
  if (restIsBlock) {
    const auto endFrom = ahead<Source>(strip, end);
    if (!overlaps) clear(sourceEnd);
    forChannels<Source::lines>([&](auto i) ZIM_LAMBDA {
      const auto copy = [&](int pixels)
                            ZIM_LAMBDA { copyBytes(sourceEnd[i], endFrom.plane[i], Source::bytes(i, pixels)); };
      overlaps ? copy(block) : copy(rest);
    });
  }
  auto from = strip;
  auto to = rows;
  // Two rounds of one loop, so that there is one copy of the kernel.
  for (int round = blocks > 0 ? 0 : 1; round < (restIsBlock ? 2 : 1); ++round) {
    if (round == 1) {
      forChannels<Source::lines>([&](auto i) ZIM_LAMBDA { from.plane[i] = sourceEnd[i]; });
      to = moved(rows, end);
      if (!overlaps) forChannels<down>([&](auto row) ZIM_LAMBDA { to[row] = sinkEnd[row].start(); });
      blocks = 1;
    }
    for (; blocks > 0; --blocks) {
      if constexpr (InOrder<Source, Kernel, Sink>) {
        decodeInOrder<Source, block>(from, to, kernel, sink);
      } else {
        decodeBlock<Source, block>([&](std::size_t row) ZIM_LAMBDA { return Source::template luma<block>(from, row); },
                                   Source::template chroma<block>(from), to, placeAt(0), kernel, sink);
      }
      from = ahead<Source>(from, block);
      to = moved(to, block);
    }
  }
  if (restIsBlock && !overlaps) {
    const auto endTo = moved(rows, end);
    forChannels<down>([&](auto row) ZIM_LAMBDA { Layout::write(endTo[row], readOnly(sinkEnd[row].start()), rest); });
  }
  for (std::ptrdiff_t x = restIsBlock ? whole : inBlocks; x < (LoneColumns::areConverted ? width : whole); ++x) {
    const auto [u, v] = [&]() ZIM_LAMBDA {
      if constexpr (LoneColumns::areConverted) {
        if (x >= whole) return LoneColumns::template chroma<Source>(strip, whole);
      }
      return Source::chromaAt(strip, x);
    }();
    decodeBlock<Source, 1>([&](std::size_t row) ZIM_LAMBDA { return Lane<Zim16s, 1>(Source::lumaAt(strip, row, x)); },
                           Pixels<Zim16s, 1, 2>{Lane<Zim16s, 1>(u), Lane<Zim16s, 1>(v)}, moved(rows, x), placeAt(x),
                           kernel, sink);
  }
}

// ---- Whole conversions --------------------------------------------------------------------------------------------

// What exports have in common apart from source, kernel and sink.
enum class OddSize { silent, warned };

template <class OrderOfTests, class LoneColumnsRule, OddSize oddSize = OddSize::silent, int leastWidth = 1,
          int leastHeight = 1, Offsets destinationOffsets = Offsets::bytes>
struct SharedRules {
  using Tests = OrderOfTests;
  using LoneColumns = LoneColumnsRule;
  static constexpr bool warns = oddSize == OddSize::warned;
  static constexpr ZimiSize least = {leastWidth, leastHeight};
  static constexpr Offsets offsets = destinationOffsets;
  static constexpr bool skipsThin = false;  // nothing is done where the width or the height is 1
};

// Planes and their steps are the caller's arrays, or arrays made of arguments.
template <class Rules, class SourceLayout, class SinkLayout, class Planes, class Steps>
struct Decoding {
  using Source = SourceLayout;
  using Sink = SinkLayout;
  static constexpr ZimiSize least = Rules::least;

  Planes pSrc;
  Steps srcStep;
  typename Sink::Layout::Destination pDst;
  Zim32s dstStep;
  ZimiSize roiSize;

  bool pointersGiven() const { return given(pSrc) && given(srcStep) && pDst != nullptr; }
  bool planesGiven() const {
    return std::all_of(&pSrc[0], &pSrc[0] + Source::planes, [](const Zim8u* plane) { return plane != nullptr; }) &&
           Sink::Layout::planesGiven(pDst);
  }

 private:
  template <class T>
  static bool given(const T* array) {
    return array != nullptr;
  }
  template <std::size_t n>
  static bool given(const std::array<const Zim8u*, n>& pointers) {
    return std::ranges::find(pointers, nullptr) == pointers.end();
  }
  template <std::size_t n>
  static bool given(const std::array<Zim32s, n>&) {
    return true;
  }
};

template <class Rules, class Kernel, class Sink, class Call>
ZIM_INLINE ZimResult decode(const Call& call, const Sink& sinkOfCall) {
  using Source = typename Call::Source;
  using Layout = typename Sink::Layout;
  if (const ZimResult failure = Rules::Tests::check(call); failure != zimResultOk) return failure;
  const Zim32s width = call.roiSize.width, height = call.roiSize.height;
  if (Rules::skipsThin && (width == 1 || height == 1)) return zimResultOk;
  const Sink sink = sinkOfCall;  // stores to the destination cannot alias it
  const auto start = Layout::start(call.pDst);
  constexpr Zim32s down = Source::down;
  const Zim32s end = Rules::LoneColumns::areConverted ? height : height & -down;
  for (std::int64_t top = 0; top < end; top += down) {
    Lines<Source> from;
    Rows<Source, Sink> to;
    std::array<Zim32s, Source::down> y;
    // In place of a row that is missing the one before is converted twice.
    forChannels<Source::down>([&](auto row) ZIM_LAMBDA {
      y[row] = static_cast<Zim32s>(top + std::int64_t{row} < height ? top + std::int64_t{row} : top);
      from.plane[row] = reinterpret_cast<const std::byte*>(call.pSrc[0]) + std::ptrdiff_t{y[row]} * call.srcStep[0];
      to[row] = start.at(rowOffset<Rules::offsets, typename Layout::Sample>(y[row], call.dstStep));
    });
    forChannels<Source::planes - 1>([&](auto i) ZIM_LAMBDA {
      from.plane[Source::down + i] =
          reinterpret_cast<const std::byte*>(call.pSrc[i + 1]) + top / down * call.srcStep[i + 1];
    });
    decodeStrip<Source, typename Rules::LoneColumns>(from, to, y, width, Kernel{}, sink);
  }
  const bool odd = width % Source::across != 0 || height % down != 0;
  return Rules::warns && odd ? zimWarnOddSize : zimResultOk;
}

template <class Rules, class Source, class Kernel, class Sink, class Planes, class Steps>
ZIM_INLINE ZimResult decode(Planes pSrc, Steps srcStep, typename Sink::Layout::Destination pDst, Zim32s dstStep,
                            ZimiSize roiSize, const Sink& sink) {
  return decode<Rules, Kernel>(Decoding<Rules, Source, Sink, Planes, Steps>{pSrc, srcStep, pDst, dstStep, roiSize},
                               sink);
}

// Steps of images without gaps. Where rows share chroma, its rows lose the half sample of an odd width.
template <class Source>
constexpr std::array<Zim32s, 3> contiguousSteps(Zim32s width) {
  const Zim32s chroma = (width >> 1) + (Source::down == 1 ? width & 1 : 0);
  return {width, chroma, chroma};
}
template <class Sink>
constexpr Zim32s contiguousStep(Zim32s width) {
  return wrappingProduct(width, Zim32s{Sink::Layout::pixelBytes});
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim

// The bodies of exports: rules, source, sink, kernel, further parameters in parentheses, and what the sink is told.
#define ZIM_DECODE_INTERLEAVED(name, rules, Source, Sink, Kernel, parameters, ...)                            \
  ZimResult ZIM_BODY(name)(const Zim8u* pSrc, Zim32s srcStep, Sink::Layout::Destination pDst, Zim32s dstStep, \
                           ZimiSize roiSize ZIM_AND parameters) {                                             \
    return decode<rules, Source, Kernel>(std::array{pSrc}, std::array{srcStep}, pDst, dstStep, roiSize,       \
                                         Sink{__VA_ARGS__});                                                  \
  }
#define ZIM_DECODE_PLANES(name, rules, Source, Sink, Kernel, parameters, ...)                                   \
  ZimResult ZIM_BODY(name)(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Sink::Layout::Destination pDst, \
                           Zim32s dstStep, ZimiSize roiSize ZIM_AND parameters) {                               \
    return decode<rules, Source, Kernel>(pSrc, srcStep, pDst, dstStep, roiSize, Sink{__VA_ARGS__});             \
  }
#define ZIM_DECODE_TWO_PLANES(name, rules, Source, Sink, Kernel, parameters, ...)                                 \
  ZimResult ZIM_BODY(name)(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr, Zim32s srcCbCrStep,        \
                           Sink::Layout::Destination pDst, Zim32s dstStep, ZimiSize roiSize ZIM_AND parameters) { \
    return decode<rules, Source, Kernel>(std::array{pSrcY, pSrcCbCr}, std::array{srcYStep, srcCbCrStep}, pDst,    \
                                         dstStep, roiSize, Sink{__VA_ARGS__});                                    \
  }
// Images without gaps, whose steps follow from the width.
#define ZIM_DECODE_CONTIGUOUS(name, rules, Source, Sink, Kernel)                                           \
  ZimResult ZIM_BODY(name)(const Zim8u* const pSrc[3], Sink::Layout::Destination pDst, ZimiSize roiSize) { \
    return decode<rules, Source, Kernel>(pSrc, contiguousSteps<Source>(roiSize.width), pDst,               \
                                         contiguousStep<Sink>(roiSize.width), roiSize, Sink{});            \
  }
