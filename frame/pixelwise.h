// Pixel-wise conversions: every pixel of the destination from the pixel of the source at the same place.
//
// A kernel is a pure function on lanes:
//     using Sample = ...;   the type in which it wants its samples; they are widened to it exactly
//     template <int N> Pixels<R, N, OutChannels> operator()(Pixels<Sample, N, InChannels> pixels) const;
// Its results saturate to the destination's sample type. A kernel that keeps low bits instead masks them itself. One
// that is a long chain of operations may ask for several registers of each channel at a time:
//     static constexpr int registers = 2;
// so that the processor has a second chain to go on with while it waits for the first. One whose results depend on the
// column moves along the row, from the first column on:
//     void advance(std::ptrdiff_t pixels);
#pragma once

#include <algorithm>

#include "frame/arguments.h"
#include "frame/entry.h"
#include "frame/lanes/byte_pairs.h"
#include "frame/lanes/wide_pixels.h"
#include "frame/layouts.h"
#include "frame/rows.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Registers for a kernel that has enough to do with one where a register has most lanes.
inline constexpr int kTwoIfNarrow = kParts == 4 ? 1 : 2;

template <class Kernel>
inline constexpr int kLanesPerCall = kLanes<typename Kernel::Sample>;
template <class Kernel>
requires requires { Kernel::registers; }
inline constexpr int kLanesPerCall<Kernel> = kLanes<typename Kernel::Sample> * Kernel::registers;

// Results of two registers or more in half as many, where the destination's samples are narrower. 32-bit results of
// 8-bit samples pass through 16 bits.
template <class To, class T, int N>
ZIM_INLINE auto narrowTowards(Lane<T, N> a) {
  if constexpr (sizeof(T) <= sizeof(To) || kForm<T, N> != Form::split) {
    return a;
  } else if constexpr (sizeof(T) == 2 * sizeof(To)) {
    return narrow<To>(a);
  } else {
    return narrow<Zim16s>(a);
  }
}

// The kernel on a block of pixels, as many registers at a time as it asks for. Samples are widened on the way in and
// results narrowed on the way out step by step, so that few registers are live at a time.
template <class To, class Kernel, class T, int N, std::size_t Channels>
ZIM_INLINE auto applyKernel(const Kernel& kernel, const Pixels<T, N, Channels>& in) {
  using Sample = typename Kernel::Sample;
  if constexpr (N <= kLanesPerCall<Kernel>) {
    const auto result = kernel(perChannel<Channels>([&](auto c) ZIM_LAMBDA { return convert<Sample>(in[c]); }));
    return perChannel<result.size()>([&](auto c) ZIM_LAMBDA {
      if constexpr (N == 1) {
        return narrow<To>(result[c]);
      } else {
        return narrowTowards<To>(result[c]);
      }
    });
  } else if constexpr (kForm<T, N> == Form::split) {
    const auto lo = applyKernel<To>(kernel, lowHalves(in));
    const auto hi = applyKernel<To>(kernel, highHalves(in));
    using Result = typename std::decay_t<decltype(lo[0])>::Element;
    return perChannel<lo.size()>([&](auto c)
                                     ZIM_LAMBDA { return narrowTowards<To>(Lane<Result, N>::join(lo[c], hi[c])); });
  } else {
    return applyKernel<To>(kernel,
                           perChannel<Channels>([&](auto c) ZIM_LAMBDA { return widenTowards<Sample>(in[c]); }));
  }
}

// Kernels of one weighted sum have a second form on packed pixels, used where bytes go to bytes and it is the quicker.
template <class Kernel, class Source, class Destination>
inline constexpr bool usesPacked = std::is_same_v<Source, Interleaved<Zim8u, Source::channels, Source::pixelBytes>>&&
    std::is_same_v<Destination, C1<Zim8u>>&& requires(const Kernel& kernel, PackedPixels pixels) {
  kernel.packed(pixels);
};

// Kernels of sums in fixed point have a form on pairs of bytes, used from three channels of bytes to interleaved bytes
// where it is the quicker. Its results are the upper halves of what it returns.
template <class Kernel, class Source, class Destination>
inline constexpr bool usesPairs = false;
template <class Kernel, std::size_t Channels>
requires HasPairs<Kernel>
inline constexpr bool usesPairs<Kernel, C3<Zim8u>, Interleaved<Zim8u, Channels>> = true;
template <class Kernel>
requires HasPairs<Kernel>
inline constexpr bool usesPairs<Kernel, AC4<Zim8u>, AC4<Zim8u>> = kParts == 4;
template <class Kernel, std::size_t Channels>
requires HasPairs<Kernel>
inline constexpr bool usesPairs<Kernel, P3<Zim8u>, Interleaved<Zim8u, Channels>> = Kernel::pairsFromPlanes;

// Interleaved bytes on both sides of a kernel of 32 bits pass a register of pixels at a time.
template <class Layout>
inline constexpr bool isWidePixels = false;
template <class T, std::size_t Stride>
inline constexpr bool isWidePixels<Interleaved<T, 3, Stride>> = sizeof(T) == 1 && kWidens<Stride>;
template <class Kernel, class Source, class Destination>
inline constexpr bool passesWide =
    sizeof(typename Kernel::Sample) == 4 && isWidePixels<Source>&& isWidePixels<Destination>;

// A block from memory towards the lanes of the kernel, and the rest of its way.
template <class Kernel, class Source, class Destination, int N>
struct Passage {
  static constexpr bool isWoven =
      kWeaves && N > 1 && std::is_same_v<typename Source::Sample, Zim8u>&& std::is_same_v<Destination, C3<Zim8u>> &&
      sizeof(typename Kernel::Sample) > 1;
  static constexpr bool storesHalves = N > 1 && !kAcrossParts<1, 4> && std::is_same_v<typename Source::Sample, Zim8u> &&
                                       std::is_same_v<Destination, AC4<Zim8u>> && sizeof(typename Kernel::Sample) == 2;

  ZIM_INLINE static auto load(Position<const std::byte, Source::planes> from) {
    if constexpr (isWoven && std::is_same_v<Source, C3<Zim8u>>) {
      return C3<Zim16u>::load<N / 2>(from);
    } else {
      return Source::template load<N>(from);
    }
  }

  template <class Loaded>
  ZIM_INLINE static void store(Position<std::byte, Destination::planes> to, const Kernel& kernel, const Loaded& in) {
    if constexpr (isWoven) {
      using Wide = std::conditional_t<sizeof(typename Kernel::Sample) == 2, Zim16s, Zim16u>;
      C3<Zim16u>::store<N / 2>(to, unweave<N>(applyKernel<Zim16s>(kernel, weave<Wide>(in))));
    } else if constexpr (storesHalves) {
      const auto wide =
          perChannel<Source::channels>([&](auto c) ZIM_LAMBDA { return widenTowards<typename Kernel::Sample>(in[c]); });
      Destination::storeHalf(to, applyKernel<Zim8u>(kernel, lowHalves(wide)));
      Destination::storeHalf(to.at(kPartStride<Zim8u, N / 2, 4>), applyKernel<Zim8u>(kernel, highHalves(wide)));
    } else {
      Destination::template store<N>(to, applyKernel<typename Destination::Sample>(kernel, in));
    }
  }
};

template <class Source, class Destination, int N, class Kernel>
ZIM_INLINE void convertBlock(Position<const std::byte, Source::planes> from,
                             Position<std::byte, Destination::planes> to, const Kernel& kernel) {
  if constexpr (N > 1 && usesPacked<Kernel, Source, Destination>) {
    constexpr int part = kLanes<Zim32s>;
    const auto parts = perChannel<4>([&](auto i) ZIM_LAMBDA {
      constexpr std::size_t stride = Source::pixelBytes;
      return kernel.packed(loadPacked<stride, i == 3>(from.plane[0] + part * stride * i));
    });
    storePacked(to.plane[0], parts, [&](const auto& sums) ZIM_LAMBDA { return kernel.finished(sums); });
  } else if constexpr (N > 1 && usesPairs<Kernel, Source, Destination>) {
    constexpr std::size_t channels = Destination::channels;
    storeUpperHalves<channels, Destination::pixelBytes>(
        to.plane[0], perChannel<4>([&](auto i) ZIM_LAMBDA {
          return upperHalves<channels>(kernel.onPairs(loadPairs<Source, i>(from)));
        }));
  } else if constexpr (N > 1 && passesWide<Kernel, Source, Destination>) {
    using Sample = typename Kernel::Sample;
    constexpr int lanes = kLanesPerCall<Kernel>;
    forChannels<N / lanes>([&](auto i) ZIM_LAMBDA {
      const auto in =
          loadWide<typename Source::Sample, Source::pixelBytes, lanes>(from.plane[0] + i * lanes * Source::pixelBytes);
      const auto out = kernel(perChannel<3>([&](auto c) ZIM_LAMBDA { return convert<Sample>(in[c]); }));
      storeWide<typename Destination::Sample, Destination::pixelBytes, lanes>(
          to.plane[0] + i * lanes * Destination::pixelBytes, out);
    });
  } else {
    using Way = Passage<Kernel, Source, Destination, N>;
    Way::store(to, kernel, Way::load(from));
  }
}

// Bytes come apart into channels in many steps, one after another. With a kernel of many steps as well, more than the
// processor can keep in sight, the next block is loaded while it computes the current one.
template <class Kernel, class Source, class Destination>
inline constexpr bool loadsAhead = Source::planes == 1 && Source::channels > 1 &&
                                   sizeof(typename Source::Sample) == 1 && sizeof(typename Kernel::Sample) > 1 &&
                                   !usesPacked<Kernel, Source, Destination> &&
                                   !usesPairs<Kernel, Source, Destination> && !passesWide<Kernel, Source, Destination>;

template <class Kernel>
concept MovesAlong = requires(Kernel& kernel) {
  kernel.advance(1);
};
template <class Kernel>
ZIM_INLINE void advance([[maybe_unused]] Kernel& kernel, [[maybe_unused]] std::ptrdiff_t pixels) {
  if constexpr (MovesAlong<Kernel>) kernel.advance(pixels);
}

// One row: whole blocks, then the rest, pixel by pixel where that is quicker. Otherwise the rest of a row of a block or
// more is converted with as many pixels before it as make a whole block; a copy of these that was made first serves
// conversions in place. The rest of a shorter row becomes a block apart from the row.
template <class Source, class Destination, class Kernel>
ZIM_INLINE void convertRow(Position<const std::byte, Source::planes> from, Position<std::byte, Destination::planes> to,
                           std::ptrdiff_t width, const Kernel& atFirstColumn) {
  std::conditional_t<MovesAlong<Kernel>, Kernel, const Kernel&> kernel = atFirstColumn;
  constexpr int block =
      std::max({kLanes<typename Source::Sample>, kLanes<typename Destination::Sample>, kLanesPerCall<Kernel>});
  // A block loaded whole ends in its last gap, which of the last pixel may not be readable.
  std::ptrdiff_t blocks = (Source::hasGaps ? width - 1 : width) / block;
  const auto rest = static_cast<int>(width - blocks * block);
  const bool overlaps = !MovesAlong<Kernel> && width >= block;
  const bool restIsBlock = rest > (overlaps ? block / 32 : block / 8 + 1);
  const auto endTo = to.at((overlaps ? width - block : blocks * block) * Destination::pixelBytes);
  Block<Source, block> sourceEnd;
  Block<Destination, block> destinationEnd;
  if (restIsBlock) {
    if (Source::hasGaps || !overlaps) clear(sourceEnd);
    if (overlaps) {
      Source::read(sourceEnd.start(), from.at((width - block) * Source::pixelBytes), block);
    } else {
      Source::read(sourceEnd.start(), from.at(blocks * block * Source::pixelBytes), rest);
    }
  }
  // Two rounds of one loop, over the row and over its end: a second copy of the kernel would cost as much code again.
  for (int round = blocks > 0 ? 0 : 1; round < (restIsBlock ? 2 : 1); ++round) {
    if (round == 1) {
      from = readOnly(sourceEnd.start());
      to = overlaps ? endTo : destinationEnd.start();
      blocks = 1;
    }
    if constexpr (loadsAhead<Kernel, Source, Destination>) {
      using Way = Passage<Kernel, Source, Destination, block>;
      auto in = Way::load(from);
      for (; blocks > 0; --blocks) {
        // There is nothing ahead of the last block, which is loaded again in vain.
        const auto ahead = from.at(blocks > 1 ? block * Source::pixelBytes : 0);
        const auto next = Way::load(ahead);
        Way::store(to, kernel, in);
        from = from.at(block * Source::pixelBytes);
        to = to.at(block * Destination::pixelBytes);
        advance(kernel, block);
        forChannels<in.size()>([&](auto c) ZIM_LAMBDA { in[c] = next[c]; });
      }
    } else {
      for (; blocks > 0; --blocks) {
        convertBlock<Source, Destination, block>(from, to, kernel);
        from = from.at(block * Source::pixelBytes);
        to = to.at(block * Destination::pixelBytes);
        advance(kernel, block);
      }
    }
  }
  if (!restIsBlock) {
    for (int x = 0; x < rest; ++x) {
      convertBlock<Source, Destination, 1>(from.at(x * Source::pixelBytes), to.at(x * Destination::pixelBytes), kernel);
      advance(kernel, 1);
    }
  } else if (!overlaps) {
    Destination::write(endTo, readOnly(destinationEnd.start()), rest);
  }
}

// The arguments that every conversion of this shape has, in the order of the public signature.
template <class SourceLayout, class DestinationLayout>
struct Conversion {
  using Source = SourceLayout;
  using Destination = DestinationLayout;

  typename Source::Source pSrc;
  Zim32s srcStep;
  typename Destination::Destination pDst;
  Zim32s dstStep;
  ZimiSize roiSize;
  bool furtherGiven = true;  // whether the required pointers among the further arguments are given

  bool pointersGiven() const { return pSrc != nullptr && pDst != nullptr && furtherGiven; }
  bool planesGiven() const { return Source::planesGiven(pSrc) && Destination::planesGiven(pDst); }
  bool stepsPositive() const { return srcStep >= 1 && dstStep >= 1; }
};

// What exports of a family have in common apart from layouts and kernel.
template <class OrderOfTests, Offsets rowOffsets = Offsets::bytes, class Team = Serial>
struct Rules {
  using Tests = OrderOfTests;
  using Walker = Team;
  static constexpr Offsets offsets = rowOffsets;
};

// Some kernels come in several forms of which the values of a call choose one, ahead of the loop.
template <class Kernel, class Use>
ZIM_INLINE void withKernel(const Kernel& kernel, const Use& use) {
  if constexpr (requires { kernel.choose(use); }) {
    kernel.choose(use);
  } else {
    use(kernel);
  }
}

// The size of the image as one row, where each row follows the one before without a gap and all offsets are small.
template <class Source, class Destination>
ZIM_INLINE ZimiSize asOneRow(const Conversion<Source, Destination>& call) {
  const auto [width, height] = call.roiSize;
  const bool joined = call.srcStep == width * Source::pixelBytes && call.dstStep == width * Destination::pixelBytes &&
                      std::int64_t{std::max(call.srcStep, call.dstStep)} * height <= 0x7FFFFFFF;
  return joined ? ZimiSize{width * height, 1} : call.roiSize;
}

// How many pixels of a row are converted: all, unless the kernel says otherwise.
template <class Source, class Kernel>
ZIM_INLINE std::ptrdiff_t reachOf(const Kernel& kernel, Position<const std::byte, Source::planes> row,
                                  std::ptrdiff_t width) {
  if constexpr (requires { kernel.template reach<Source>(row, width); }) {
    return kernel.template reach<Source>(row, width);
  } else {
    return width;
  }
}

// A whole conversion: the tests, then the kernel over all rows. The kernel is made once the tests have passed.
template <class Rules, class Source, class Destination, class MakeKernel>
ZIM_INLINE ZimResult pixelwise(const Conversion<Source, Destination>& call, const MakeKernel& makeKernel) {
  if (const ZimResult failure = Rules::Tests::check(call); failure != zimResultOk) return failure;
  // Where the size is not tested, there may be nothing to do.
  if (call.roiSize.width < 1 || call.roiSize.height < 1) return zimResultOk;
  const auto source = Source::start(call.pSrc);
  const auto destination = Destination::start(call.pDst);
  const ZimiSize size = std::is_same_v<typename Rules::Walker, Serial> ? asOneRow(call) : call.roiSize;
  // Inlined down to the rows: a call would cost as much as all tests.
  withKernel(makeKernel(), [&](const auto& kernel) ZIM_LAMBDA {
    Rules::Walker::run(size, [&](Zim32s first, Zim32s count) ZIM_LAMBDA {
      const auto local = kernel;  // stores to the destination cannot alias it
      // The rows of a band are counted from its own first one.
      constexpr bool inBands = requires { Rules::Walker::countsFromBand; };
      const auto from = source.at(inBands ? std::ptrdiff_t{first} * call.srcStep : 0);
      const auto to = destination.at(inBands ? std::ptrdiff_t{first} * call.dstStep : 0);
      for (Zim32s row = inBands ? 0 : first, end = row + count; row < end; ++row) {
        const auto fromRow = from.at(rowOffset<Rules::offsets, typename Source::Sample>(row, call.srcStep));
        const auto toRow = to.at(rowOffset<Rules::offsets, typename Destination::Sample>(row, call.dstStep));
        convertRow<Source, Destination>(fromRow, toRow, reachOf<Source>(local, fromRow, size.width), local);
      }
    });
  });
  return zimResultOk;
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim

// The body of an export: layouts, further parameters in parentheses, and what it returns of its `call`.
#define ZIM_CONVERSION(name, SourceLayout, DestinationLayout, parameters, ...)                             \
  ZimResult ZIM_BODY(name)(SourceLayout::Source pSrc, Zim32s srcStep, DestinationLayout::Destination pDst, \
                           Zim32s dstStep, ZimiSize roiSize ZIM_AND parameters) {                          \
    const zim::Conversion<SourceLayout, DestinationLayout> call{pSrc, srcStep, pDst, dstStep, roiSize};    \
    return __VA_ARGS__;                                                                                    \
  }
// The same in place.
#define ZIM_IN_PLACE(name, Layout, parameters, ...)                                                               \
  ZimResult ZIM_BODY(name)(Layout::Destination pSrcDst, Zim32s srcDstStep, ZimiSize roiSize ZIM_AND parameters) { \
    const zim::Conversion<Layout, Layout> call{pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize};                \
    return __VA_ARGS__;                                                                                           \
  }
// The body of a pixel-wise export: rules, source layout, destination layout, further parameters, kernel.
#define ZIM_PIXELWISE(name, rules, SourceLayout, DestinationLayout, parameters, ...) \
  ZIM_CONVERSION(name, SourceLayout, DestinationLayout, parameters,                  \
                 zim::pixelwise<rules>(call, [&] { return __VA_ARGS__; }))
