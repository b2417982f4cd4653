// Conversions in which pixels share chroma: sources, targets, what becomes of an odd end, and the walk over groups.
//
// A group is as many pixels and rows as share a chroma sample. Whole groups go through the coder in blocks, of which
// the last one ends with the row's groups and may repeat some; a block that may not, or is more than the row has, lies
// apart from the row, with exact copies in and out. Pixels beyond the last whole group are the tail's.
#pragma once

#include <algorithm>

#include "frame/pixelwise.h"
#include "lumachroma/chroma_rules.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// ---- Sources: a layout and its order of colours ----

// N pixels of a layout, woven. A layout of its own kind weaves by itself.
template <class Layout, int N>
ZIM_INLINE Pixels<Zim16s, N, 3> loadWoven(Position<const std::byte, Layout::planes> from) {
  if constexpr (requires { Layout::template loadWoven<N>(from); }) {
    return Layout::template loadWoven<N>(from);
  } else if constexpr (std::is_same_v<Layout, C3<Zim8u>>) {
    return weave<Zim16s>(C3<Zim16u>::load<N / 2>(from));
  } else {
    return weave<Zim16s>(Layout::template load<N>(from));
  }
}

template <class SourceLayout>
struct RgbSource {
  using Layout = SourceLayout;
  static constexpr bool reversed = false;

  template <class Lanes>
  ZIM_INLINE static std::array<Lanes, 3> colours(const std::array<Lanes, 3>& pixels) {
    return {pixels[0], pixels[1], pixels[2]};
  }
};
template <class SourceLayout>
struct BgrSource {
  using Layout = SourceLayout;
  static constexpr bool reversed = true;

  template <class Lanes>
  ZIM_INLINE static std::array<Lanes, 3> colours(const std::array<Lanes, 3>& pixels) {
    return {pixels[2], pixels[1], pixels[0]};
  }
};

// A source may have every sample mapped by a table first.
template <class Source>
concept MapsSamples = requires {
  Source::mapping;
};

// One pixel, for a kernel on 16-bit lanes.
template <class Source>
ZIM_INLINE Pixels<Zim16s, 1, 3> loadPixel(Position<const std::byte, Source::Layout::planes> from) {
  const auto pixel = Source::Layout::template load<1>(from);
  return Source::colours(perChannel<3>([&](auto c) ZIM_LAMBDA {
    if constexpr (MapsSamples<Source>) {
      return Lane<Zim16s, 1>(Source::mapping[pixel[c].v]);
    } else {
      return convert<Zim16s>(pixel[c]);
    }
  }));
}

// ---- Targets: where the samples of a row of groups go ----
//
// A target is the place of such a row. Image is what stands for it in a public signature; Buffer is room for a block.

inline void put(std::byte* to, Lane<Zim16s, 1> sample) { *to = static_cast<std::byte>(narrow<Zim8u>(sample).v); }

// Two samples a pixel, for pairs of pixels.
enum class Stream { YCbYCr, YCrYCb, CbYCrY };

template <Stream order>
struct Packed {
  static constexpr int across = 2, rows = 1;
  std::byte* samples;

  struct Image {
    Zim8u* pDst;
    Zim32s dstStep;

    bool pointersGiven() const { return pDst != nullptr; }
    static bool planesGiven() { return true; }
    bool stepsPositive() const { return dstStep >= 1; }
    Packed row(std::ptrdiff_t y) const { return {reinterpret_cast<std::byte*>(pDst) + y * dstStep}; }
  };
  template <int N>
  struct Buffer {
    alignas(kRegisterBytes) std::byte samples[2 * N];
    Packed row() { return {samples}; }
  };

  Packed at(std::ptrdiff_t x) const { return {samples + 2 * x}; }

  template <int N>
  ZIM_INLINE void store(std::ptrdiff_t x, const Code<N, 1, 2>& code) const {
    const auto& [cb, cr] = code.chroma;
    const auto pairs = bitsAs<Zim8u>(order == Stream::YCrYCb ? cr | (cb << 8) : cb | (cr << 8));
    std::byte* const to = samples + 2 * x;
    if constexpr (order == Stream::CbYCrY) {
      zim::store<Zim8u, N, 2>(to, {pairs, code.luma[0]});
    } else {
      zim::store<Zim8u, N, 2>(to, {code.luma[0], pairs});
    }
  }
  void copy(std::ptrdiff_t x, const Packed& from, std::ptrdiff_t pixels) const {
    copyBytes(samples + 2 * x, from.samples, 2 * pixels);
  }
  // The luma of a pixel without a second one, and the chroma that comes first in a pair.
  void putLumaAndFirst(std::ptrdiff_t x, const Pixels<Zim16s, 1, 3>& code) const {
    put(samples + 2 * x + (order == Stream::CbYCrY ? 1 : 0), code[0]);
    put(samples + 2 * x + (order == Stream::CbYCrY ? 0 : 1), code[order == Stream::YCrYCb ? 2 : 1]);
  }
};
using YCbYCr = Packed<Stream::YCbYCr>;
using YCrYCb = Packed<Stream::YCrYCb>;
using CbYCrY = Packed<Stream::CbYCrY>;

// A plane of luma and two of chroma, groups of so many pixels and rows.
template <int pixelsAcross, int rowsDown>
struct Planes {
  static constexpr int across = pixelsAcross, rows = rowsDown;
  std::array<std::byte*, rows> luma;
  std::byte *cb, *cr;

  template <int N>
  struct Buffer {
    alignas(kRegisterBytes) std::byte luma[rows][N];
    alignas(kRegisterBytes) std::byte cb[N / across];
    alignas(kRegisterBytes) std::byte cr[N / across];
    Planes row() {
      return {perChannel<rows>([&](auto row) ZIM_LAMBDA { return &luma[row][0]; }), cb, cr};
    }
  };

  Planes at(std::ptrdiff_t x) const {
    return {perChannel<rows>([&](auto row) { return luma[row] + x; }), cb + x / across, cr + x / across};
  }

  template <int N>
  ZIM_INLINE void store(std::ptrdiff_t x, const Code<N, rows, across>& code) const {
    forChannels<rows>([&](auto row) ZIM_LAMBDA { zim::store<Zim8u, N, 1>(luma[row] + x, {code.luma[row]}); });
    storeBytes(cb + x / across, code.chroma[0], cr + x / across, code.chroma[1]);
  }
  void copy(std::ptrdiff_t x, const Planes& from, std::ptrdiff_t pixels) const {
    for (std::size_t row = 0; row < rows; ++row) copyBytes(luma[row] + x, from.luma[row], pixels);
    copyBytes(cb + x / across, from.cb, pixels / across);
    copyBytes(cr + x / across, from.cr, pixels / across);
  }
  void putLuma(std::ptrdiff_t x, std::size_t row, Lane<Zim16s, 1> y) const { put(luma[row] + x, y); }
  void putPixel(std::ptrdiff_t x, const Pixels<Zim16s, 1, 3>& code) const {
    put(luma[0] + x, code[0]);
    put(cb + x / across, code[1]);
    put(cr + x / across, code[2]);
  }
};

// In which planes of an array Cb and Cr lie, and by which of its steps their rows advance.
struct PlaneOrder {
  std::size_t cb, cr, cbStep, crStep;
};
inline constexpr PlaneOrder kYCbCr = {1, 2, 1, 2}, kYCrCb = {2, 1, 2, 1};
// Cr first, each of the two chroma planes with the step of the other.
inline constexpr PlaneOrder kYCrCbCrossed = {2, 1, 1, 2};

template <PlaneOrder order, int pixelsAcross, int rowsDown>
struct PlanesInOrder : Planes<pixelsAcross, rowsDown> {
  struct Image {
    Zim8u* const* pDst;
    const Zim32s* dstStep;

    bool pointersGiven() const { return pDst != nullptr && dstStep != nullptr; }
    bool planesGiven() const { return pDst[0] != nullptr && pDst[1] != nullptr && pDst[2] != nullptr; }
    Planes<pixelsAcross, rowsDown> row(std::ptrdiff_t y) const {
      const auto at = [&](std::size_t plane, std::ptrdiff_t row, std::size_t step) {
        return reinterpret_cast<std::byte*>(pDst[plane]) + row * dstStep[step];
      };
      return {perChannel<std::size_t{rowsDown}>(
                  [&](auto i) { return at(0, y * rowsDown + static_cast<std::ptrdiff_t>(i.value), 0); }),
              at(order.cb, y, order.cbStep), at(order.cr, y, order.crStep)};
    }
  };
};

// A plane of luma and one of pairs of chroma, 4:2:0.
struct SemiPlanar {
  static constexpr int across = 2, rows = 2;
  std::array<std::byte*, 2> luma;
  std::byte* chroma;

  struct Image {
    Zim8u* pDstY;
    Zim32s dstYStep;
    Zim8u* pDstCbCr;
    Zim32s dstCbCrStep;

    bool pointersGiven() const { return pDstY != nullptr && pDstCbCr != nullptr; }
    static bool planesGiven() { return true; }
    SemiPlanar row(std::ptrdiff_t y) const {
      std::byte* const upper = reinterpret_cast<std::byte*>(pDstY) + 2 * y * dstYStep;
      return {{upper, upper + dstYStep}, reinterpret_cast<std::byte*>(pDstCbCr) + y * dstCbCrStep};
    }
  };
  template <int N>
  struct Buffer {
    alignas(kRegisterBytes) std::byte luma[2][N];
    alignas(kRegisterBytes) std::byte chroma[N];
    SemiPlanar row() { return {{luma[0], luma[1]}, chroma}; }
  };

  SemiPlanar at(std::ptrdiff_t x) const { return {{luma[0] + x, luma[1] + x}, chroma + x}; }

  template <int N>
  ZIM_INLINE void store(std::ptrdiff_t x, const Code<N, 2, 2>& code) const {
    forChannels<2>([&](auto row) ZIM_LAMBDA { zim::store<Zim8u, N, 1>(luma[row] + x, {code.luma[row]}); });
    zim::store<Zim16s, N / 2, 1>(chroma + x, {code.chroma[0] | (code.chroma[1] << 8)});
  }
  void copy(std::ptrdiff_t x, const SemiPlanar& from, std::ptrdiff_t pixels) const {
    for (std::size_t row = 0; row < 2; ++row) copyBytes(luma[row] + x, from.luma[row], pixels);
    copyBytes(chroma + x, from.chroma, pixels);
  }
};

// ---- The walk ----

inline constexpr bool kPackC3 = kParts > 1;

template <class Source, std::size_t rows>
using SourceRows = std::array<Position<const std::byte, Source::Layout::planes>, rows>;

// Interleaved bytes stay packed if the coder has a form for them; with three samples that takes a shuffle of bytes.
template <class Source, class GroupCoder>
inline constexpr bool kStaysPacked = GroupCoder::canBePacked &&
                                     (std::is_same_v<typename Source::Layout, AC4<Zim8u>> ||
                                      (kPackC3 && std::is_same_v<typename Source::Layout, C3<Zim8u>>));

// N pixels of each row, through the coder.
template <class Source, int N, class GroupCoder, std::size_t rows>
ZIM_INLINE auto encodeBlock(GroupCoder& coder, const SourceRows<Source, rows>& from, std::ptrdiff_t x) {
  using Layout = typename Source::Layout;
  const auto at = [&](std::size_t row) ZIM_LAMBDA { return from[row].at(x * Layout::pixelBytes); };
  if constexpr (kStaysPacked<Source, GroupCoder>) {
    return GroupCoder::template packed<Source::reversed, N>(
        [&](auto row, auto part) ZIM_LAMBDA { return loadPart<Layout::pixelBytes, N, part>(at(row).plane[0]); });
  } else {
    return coder.template operator()<N>(
        perChannel<rows>([&](auto row) ZIM_LAMBDA { return Source::colours(loadWoven<Layout, N>(at(row))); }));
  }
}

// So many pixels of whole groups, of every row of the groups. The coder may carry something from block to block.
template <class Source, class Target, class GroupCoder>
[[gnu::noinline]] void encodeGroups(SourceRows<Source, Target::rows> from, Target to, std::ptrdiff_t pixels,
                                    GroupCoder& carried) {
  using Layout = typename Source::Layout;
  constexpr std::size_t rows = Target::rows;
  constexpr int block = kLanes<Zim16s> * Target::across;
  GroupCoder coder = carried;
  // A block of unpacked pixels is loaded with all its gaps, of which the last may not be readable.
  constexpr bool loadsLastGap = Layout::hasGaps && !kStaysPacked<Source, GroupCoder>;
  const std::ptrdiff_t end = (loadsLastGap ? pixels - 1 : pixels) / block * block;
  const auto rest = static_cast<int>(pixels - end);
  const bool overlaps = !GroupCoder::carries && pixels >= block;
  std::array<Block<Layout, block>, rows> sourceRest;
  typename Target::template Buffer<block> targetRest;
  const Target image = to;
  for (int round = 0; round < 2; ++round) {
    std::ptrdiff_t last = end;
    if (round == 1) {
      if (rest == 0) break;
      last = block;
      const std::ptrdiff_t at = overlaps ? pixels - block : end;
      to = overlaps ? image.at(at) : targetRest.row();
      for (std::size_t row = 0; row < rows; ++row) {
        from[row] = from[row].at(at * Layout::pixelBytes);
        if (overlaps && !loadsLastGap) continue;
        clear(sourceRest[row]);
        if (overlaps) {
          Layout::read(sourceRest[row].start(), from[row], block);
        } else {
          Layout::read(sourceRest[row].start(), from[row], rest);
        }
        from[row] = readOnly(sourceRest[row].start());
      }
    }
    for (std::ptrdiff_t x = 0; x < last; x += block) {
      to.template store<block>(x, encodeBlock<Source, block>(coder, from, x));
    }
  }
  if (rest > 0 && !overlaps) image.copy(end, to, rest);
  carried = coder;
}

// The same of a whole row of a source whose samples are mapped first.
#if defined(__AVX2__)
// Stretch by stretch, in a buffer.
template <class Source, class Target, class GroupCoder>
void encodeMapped(Position<const std::byte, 1> from, Target to, std::ptrdiff_t pixels) {
  constexpr std::ptrdiff_t stretch = 512, pixelBytes = Source::Layout::pixelBytes;
  static_assert(Target::across % 2 == 0 && Target::rows == 1);
  alignas(kRegisterBytes) std::array<std::byte, stretch * pixelBytes> buffer;
  GroupCoder coder;
  for (std::ptrdiff_t x = 0; x < pixels; x += stretch) {
    const std::ptrdiff_t count = std::min(stretch, pixels - x);
    mapBytes<Source::mapping>(from.plane[0] + x * pixelBytes, buffer.data(), count * pixelBytes);
    encodeGroups<Source, Target, GroupCoder>({{{{buffer.data()}}}}, to.at(x), count, coder);
  }
}
#else
// Where every lookup is a load, it may as well be that of all products of a sample.
template <class Source, class Target, class GroupCoder>
void encodeMapped(Position<const std::byte, 1> from, Target to, std::ptrdiff_t pixels) {
  static_assert(std::is_same_v<Target, CbYCrY> && !Source::reversed);
  static constexpr ProductsOfPairs<GroupCoder> products(Source::mapping);
  Lane<Zim32s, kLanes<Zim32s>> before = 0;
  const auto code = [&](std::ptrdiff_t x) ZIM_LAMBDA {
    return (Register)products.code(from.plane[0] + x * Source::Layout::pixelBytes, before).v;
  };
  std::ptrdiff_t x = 0;
  for (; x <= pixels - 8; x += 8) {
    const auto pairs = perChannel<4>([&](auto i) ZIM_LAMBDA { return code(x + 2 * std::ptrdiff_t{i}); });
    storeRegister(to.samples + 2 * x,
                  _mm_packus_epi16(_mm_packs_epi32(pairs[0], pairs[1]), _mm_packs_epi32(pairs[2], pairs[3])));
  }
  for (; x < pixels; x += 2) {
    const Register words = _mm_packs_epi32(code(x), Register());
    const int samples = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
    std::memcpy(to.samples + 2 * x, &samples, sizeof(samples));
  }
}
#endif

// ---- Tails: what becomes of the pixels beyond the last whole group of a row ----

// They are left alone.
struct Dropped {};

// The lone last pixel: its luma, and the chroma that comes first, by a kernel for single pixels.
template <class Kernel>
struct LumaAndFirstChroma {
  template <class Source, class Target>
  static void run(const SourceRows<Source, 1>& from, const Target& to, std::ptrdiff_t x) {
    to.putLumaAndFirst(x, Kernel()(loadPixel<Source>(from[0].at(x * Source::Layout::pixelBytes))));
  }
};

// Its luma only.
template <class LumaKernel>
struct LumaOnly {
  template <class Source, class Target>
  static void run(const SourceRows<Source, Target::rows>& from, const Target& to, std::ptrdiff_t x) {
    for (std::size_t row = 0; row < Target::rows; ++row) {
      const auto pixel = loadPixel<Source>(from[row].at(x * Source::Layout::pixelBytes));
      to.putLuma(x, row, LumaKernel()(pixel)[0]);
    }
  }
};

// Luma and both chroma of its own.
template <class Kernel>
struct WholePixel {
  template <class Source, class Target>
  static void run(const SourceRows<Source, 1>& from, const Target& to, std::ptrdiff_t x) {
    to.putPixel(x, Kernel()(loadPixel<Source>(from[0].at(x * Source::Layout::pixelBytes))));
  }
};

// As LumaOnly; and an odd last row has the luma of all its pixels.
template <class LumaKernel>
struct LumaOfEdges : LumaOnly<LumaKernel> {
  struct InOrder : LumaKernel {
    template <int N>
    ZIM_INLINE auto operator()(const Pixels<Zim16s, N, 3>& bgr) const {
      return LumaKernel::operator()(std::array{bgr[2], bgr[1], bgr[0]});
    }
  };

  template <class Source, class Target>
  static void lastRow(Position<const std::byte, 1> from, const Target& to, std::ptrdiff_t width) {
    static_assert(std::is_same_v<Source, BgrSource<typename Source::Layout>>);
    convertRow<typename Source::Layout, C1<Zim8u>>(from, {{to.luma[0]}}, width, InOrder());
  }
};

// ---- Whole conversions ----

// The arguments of an encoder, in the order of the public signature.
template <ZimiSize leastSize, class SourceLayout, class TargetImage>
struct Encoding {
  static constexpr ZimiSize least = leastSize;

  typename SourceLayout::Source pSrc;
  std::ptrdiff_t srcStep;
  TargetImage target;
  ZimiSize roiSize;

  bool pointersGiven() const { return pSrc != nullptr && target.pointersGiven(); }
  bool planesGiven() const { return SourceLayout::planesGiven(pSrc) && target.planesGiven(); }
  bool stepsPositive() const { return srcStep >= 1 && target.stepsPositive(); }
};

// The smallest size that is accepted.
inline constexpr ZimiSize kFrom1x1 = {1, 1}, kFrom2x1 = {2, 1}, kFrom2x2 = {2, 2}, kFrom4x1 = {4, 1};

// What a size has to be a multiple of: where it is not, the result is zimWarnOddSize.
inline constexpr ZimiSize kSilent = {1, 1}, kOddWidth = {2, 1}, kOddSize = {2, 2}, kNotByFour = {4, 1};

template <class Tests, ZimiSize warning, class Source, class Coder, class Tail, ZimiSize least, class Image>
ZimResult encode(const Encoding<least, typename Source::Layout, Image>& call) {
  using Layout = typename Source::Layout;
  using Target = decltype(call.target.row(0));
  constexpr int rows = Target::rows;
  static_assert(Target::across == Coder::across && rows == Coder::rows);
  if (const ZimResult failure = Tests::check(call); failure != zimResultOk) return failure;
  const auto [width, height] = call.roiSize;
  const std::ptrdiff_t grouped = width / Target::across * Target::across;
  const auto source = Layout::start(call.pSrc);
  const auto sourceRow = [&](std::ptrdiff_t y) { return source.at(y * call.srcStep); };
  for (std::ptrdiff_t y = 0; y < height / rows; ++y) {
    const auto from =
        perChannel<rows>([&](auto i) { return sourceRow(y * rows + static_cast<std::ptrdiff_t>(i.value)); });
    const auto to = call.target.row(y);
    if constexpr (MapsSamples<Source>) {
      encodeMapped<Source, Target, Coder>(from[0], to, grouped);
    } else {
      Coder coder;
      encodeGroups<Source>(from, to, grouped, coder);
    }
    if constexpr (!std::is_same_v<Tail, Dropped>) {
      if (grouped < width) Tail::template run<Source>(from, to, grouped);
    }
  }
  if constexpr (requires { &Tail::template lastRow<Source, Target>; }) {
    if (height % rows != 0)
      Tail::template lastRow<Source>(sourceRow(height - 1), call.target.row(height / rows), width);
  }
  return width % warning.width == 0 && height % warning.height == 0 ? zimResultOk : zimWarnOddSize;
}

// The same on contiguous images. Rows of 4:2:0 chroma have no sample for an odd last pixel, those of 4:2:2 have.
template <class Tests, ZimiSize warning, class Source, class Target, class Coder, class Tail, ZimiSize least>
ZimResult encodeContiguous(typename Source::Layout::Source pSrc, Zim8u* const* pDst, ZimiSize roiSize) {
  const Zim32s width = roiSize.width, chromaWidth = (width >> 1) + (Target::rows == 1 ? width & 1 : 0);
  const Zim32s dstStep[3] = {width, chromaWidth, chromaWidth};
  return encode<Tests, warning, Source, Coder, Tail>(Encoding<least, typename Source::Layout, typename Target::Image>{
      pSrc, width * Source::Layout::pixelBytes, {pDst, dstStep}, roiSize});
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim

// The body of an encoder, in one form for each kind of target: tests, least size, warning, source, target, coder, tail.
#define ZIM_TO_STREAM(name, Tests, least, warning, Source_, Target, Coder_, ...)                        \
  ZimResult ZIM_BODY(name)(Source_::Layout::Source pSrc, Zim32s srcStep, Zim8u * pDst, Zim32s dstStep,  \
                           ZimiSize roiSize) {                                                          \
    return zim::encode<Tests, warning, Source_, Coder_, __VA_ARGS__>(                                   \
        zim::Encoding<least, Source_::Layout, Target::Image>{pSrc, srcStep, {pDst, dstStep}, roiSize}); \
  }
#define ZIM_TO_PLANES(name, Tests, least, warning, Source_, Target, Coder_, ...)                                    \
  ZimResult ZIM_BODY(name)(Source_::Layout::Source pSrc, Zim32s srcStep, Zim8u* const* pDst, const Zim32s* dstStep, \
                           ZimiSize roiSize) {                                                                      \
    return zim::encode<Tests, warning, Source_, Coder_, __VA_ARGS__>(                                               \
        zim::Encoding<least, Source_::Layout, Target::Image>{pSrc, srcStep, {pDst, dstStep}, roiSize});             \
  }
#define ZIM_TO_SEMI_PLANAR(name, Tests, least, warning, Source_, Target, Coder_, ...)                    \
  ZimResult ZIM_BODY(name)(Source_::Layout::Source pSrc, Zim32s srcStep, Zim8u * pDstY, Zim32s dstYStep, \
                           Zim8u * pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize) {                     \
    return zim::encode<Tests, warning, Source_, Coder_, __VA_ARGS__>(                                    \
        zim::Encoding<least, Source_::Layout, Target::Image>{                                            \
            pSrc, srcStep, {pDstY, dstYStep, pDstCbCr, dstCbCrStep}, roiSize});                          \
  }
#define ZIM_TO_CONTIGUOUS(name, Tests, least, warning, Source_, Target, Coder_, ...)                                \
  ZimResult ZIM_BODY(name)(Source_::Layout::Source pSrc, Zim8u* const* pDst, ZimiSize roiSize) {                    \
    return zim::encodeContiguous<Tests, warning, Source_, Target, Coder_, __VA_ARGS__, least>(pSrc, pDst, roiSize); \
  }
