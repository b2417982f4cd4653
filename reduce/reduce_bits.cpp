// Fewer levels: every sample snapped to one of some equally spaced values, without dither, with ordered dither or with
// diffusion of errors, and stored as it is or in a narrower type.

#include <algorithm>

#include "frame/lanes/integer_quotients.h"
#include "frame/pixelwise.h"
#include "reduce/channels.h"
#include "reduce/noise.h"

using namespace zim;

namespace {

// Samples of one type and size, as their kernels see them: as many a call as make a whole block of a row.
template <class From, class To>
struct BlockKernel {
  using Sample = From;
  static constexpr int registers = sizeof(From) / sizeof(To);
  static constexpr int block = kLanes<To>;
};

// ---- Words of whole levels ----

// Samples of 16 bits of which the levels are whole numbers apart. With v L = 65536 h + l the level below v is h, or the
// next where h + l reaches 65535; and h + l, or what is beyond that, is L times the distance from it. The latter is
// zero, since it is a multiple of L and h is not above L. So one comparison, within 16 bits, tells the level to take,
// and every operation in single precision would give it too.
template <class From, class To>
class WholeLevels : public BlockKernel<From, To> {
 public:
  static bool serve(Zim32s count) { return count <= 255 && kWhite<From> % count == 0; }

  explicit WholeLevels(Zim32s count)
      : count_(static_cast<Zim16u>(count)), apart_(static_cast<Zim16u>(kWhite<To> / count)) {}

 protected:
  // The next level where the sample is further above one than threshold / L.
  template <int N>
  ZIM_INLINE Lane<To, N> level(Lane<From, N> sample, Lane<Zim16u, N> threshold) const {
    const auto v = fromBlack<From>(bitsAs<Zim16u>(sample));
    const Lane<Zim16u, N> count = count_;
    const auto h = multiplyHigh(bitsAs<Zim16u>(v), count);
    const auto isUpper = addSaturated(h, bitsAs<Zim16u>(v) * count) > threshold;
    const auto value = (h - bitsAs<Zim16u>(isUpper)) * Lane<Zim16u, N>(apart_);
    if constexpr (sizeof(To) == 1) {
      return narrow<To>(bitsAs<Zim16s>(value));
    } else {
      return fromBlack<To>(value);
    }
  }

 private:
  Zim16u count_, apart_;
};

// ---- Without dither ----

// The nearest level n of L w, w from 0 to 1, then n / L in the range of the destination, by roundings in single
// precision as they stand. Samples of 16 bits truncate L w and take the next level by comparison, floats round it and
// compare as well; that of rounded bytes never finds another level, nor does L / 255 in one factor. Too large a float
// stores the largest sample, a negative one its low bits.
template <class From, class To>
struct Nearest : BlockKernel<From, To> {
  Zim32f count, unit, half;

  explicit Nearest(Zim32f levelCount) : count(levelCount), unit(1.0F / levelCount), half(0.5F * unit) {}

  template <int N, std::size_t Channels>
  ZIM_INLINE Pixels<To, N, Channels> operator()(const Pixels<From, N, Channels>& pixels) const {
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return nearest(pixels[c]); });
  }

 private:
  template <int N>
  ZIM_INLINE Lane<To, N> nearest(Lane<From, N> sample) const {
    constexpr Zim32s white = kWhite<To>;
    const auto t = truncate(levelOf(sample) * static_cast<Zim32f>(white) + 0.5F);
    if constexpr (std::is_same_v<From, Zim32f>) {
      return fromBlack<To>(lowBits<std::make_unsigned_t<To>>(smaller(t, Lane<Zim32s, N>(white))));
    } else {
      return fromBlack<To>(narrow<std::make_unsigned_t<To>>(t));
    }
  }

  template <int N>
  ZIM_INLINE Lane<Zim32f, N> levelOf(Lane<From, N> sample) const {
    if constexpr (std::is_same_v<From, Zim8u>) {
      return toFloat(truncate(valueOf(sample) * (count / 255.0F) + 0.5F)) * unit;
    } else {
      const auto w = shareOfWhite(sample);
      const auto lower = toFloat(truncate(sizeof(From) == 2 ? w * count : w * count + 0.5F)) * unit;
      const auto takesUpper = w - lower > Lane<Zim32f, N>(half);
      return lower + bitsAs<Zim32f>(takesUpper & bitsAs<Zim32s>(Lane<Zim32f, N>(unit)));
    }
  }

  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> shareOfWhite(Lane<From, N> sample) {
    if constexpr (std::is_same_v<From, Zim32f>) {
      return valueOf(sample);
    } else {
      return shareOf<1, kWhite<From>>(valueOf(sample));
    }
  }
};

template <class From, class To>
struct NearestWhole : WholeLevels<From, To> {
  using WholeLevels<From, To>::WholeLevels;

  template <int N, std::size_t Channels>
  ZIM_INLINE Pixels<To, N, Channels> operator()(const Pixels<From, N, Channels>& pixels) const {
    return perChannel<Channels>([&](auto c)
                                    ZIM_LAMBDA { return this->level(pixels[c], Lane<Zim16u, N>(kWhite<From> / 2)); });
  }
};

// ---- Ordered dither ----

// Parts of a level in fifteenths, by row and column.
constexpr int kBayer[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};

// Thresholds of a row's samples, from the first on; they repeat after so many.
template <class T>
class RowOfThresholds {
 public:
  RowOfThresholds(const T* thresholds, std::ptrdiff_t period)
      : next_(thresholds), first_(thresholds), end_(thresholds + period) {}

  void advance(std::ptrdiff_t samples) {
    next_ += samples;
    if (next_ == end_) next_ = first_;
  }

 protected:
  template <int N>
  ZIM_INLINE Lane<T, N> thresholds() const {
    return load<T, N, 1>(reinterpret_cast<const std::byte*>(next_))[0];
  }

 private:
  const T *next_, *first_, *end_;
};

template <class From, class To>
struct OrderedWhole : WholeLevels<From, To>, RowOfThresholds<Zim16u> {
  OrderedWhole(Zim32s count, const Zim16u* thresholds, std::ptrdiff_t period)
      : WholeLevels<From, To>(count), RowOfThresholds(thresholds, period) {}

  template <int N, std::size_t Channels>
  ZIM_INLINE Pixels<To, N, Channels> operator()(const Pixels<From, N, Channels>& pixels) const {
    const auto threshold = thresholds<N>();
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return this->level(pixels[c], threshold); });
  }
};

// A sample v lies between the levels a = n step and a + step; it takes the upper one if it is more above the lower than
// the threshold of its place. Integers clamp to the range of the destination, save bytes to bytes; these and floats
// keep low bits.
template <class From, class To>
class Ordered : public BlockKernel<From, To>, public RowOfThresholds<Zim32f> {
 public:
  Ordered(Zim32f count, const Zim32f* thresholds, std::ptrdiff_t period)
      : RowOfThresholds(thresholds, period),
        levels_(Levels::of<From>(count)),
        byteStep_(static_cast<Zim16u>(byteStep(count))) {}

  template <int N, std::size_t Channels>
  ZIM_INLINE Pixels<To, N, Channels> operator()(const Pixels<From, N, Channels>& pixels) const {
    const auto threshold = thresholds<N>();
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return dithered(pixels[c], threshold); });
  }

 private:
  Levels levels_;
  Zim16u byteStep_;

  template <int N>
  ZIM_INLINE Lane<To, N> dithered(Lane<From, N> sample, Lane<Zim32f, N> threshold) const {
    const auto v = valueOf(sample);
    const auto n = truncate(v * levels_.scale);
    const auto lower = toFloat(n) * levels_.step;
    const auto isUpper = v - lower > threshold;
    if constexpr (std::is_same_v<From, Zim8u>) {
      const auto index = bitsAs<Zim16u>(narrow<Zim16s>(n - isUpper));
      return narrow<To>(bitsAs<Zim16s>((index * byteStep_) >> 8));
    } else {
      const auto level = lower + bitsAs<Zim32f>(isUpper & bitsAs<Zim32s>(Lane<Zim32f, N>(levels_.step)));
      if constexpr (std::is_same_v<From, Zim32f>) {
        const auto t = truncate(level * static_cast<Zim32f>(kWhite<To>) + 0.5F);
        return fromBlack<To>(lowBits<std::make_unsigned_t<To>>(t));
      } else {
        const auto t = truncate(level + 0.5F);
        return fromBlack<To>(narrow<std::make_unsigned_t<To>>(sizeof(To) == 1 ? t >> 8 : t));
      }
    }
  }
};

// ---- Rows ----

// Where all samples of a pixel are treated alike, a row of pixels is a row of samples.
template <class Layout>
using Flat = std::conditional_t<Layout::hasGaps, Layout, C1<typename Layout::Sample>>;
template <class Layout>
inline constexpr int kFlatSamples = Layout::hasGaps ? 1 : static_cast<int>(Layout::channels);

// Not inlined, so that all layouts without gaps share the code of a kernel.
template <class Source, class Destination, class Kernel>
[[gnu::noinline]] void reduceRow(Position<const std::byte, 1> from, Position<std::byte, 1> to, std::ptrdiff_t width,
                                 const Kernel& kernel) {
  convertRow<Source, Destination>(from, to, width, Kernel(kernel));
}

// The rows of an image, shared among a team; withKernel(row, use) calls use with the kernel of the row.
template <class Team, Offsets offsets, class Source, class Destination, class WithKernel>
void reduceRows(const Conversion<Source, Destination>& call, const WithKernel& withKernel) {
  const auto source = Source::start(call.pSrc);
  const auto destination = Destination::start(call.pDst);
  Team::run(call.roiSize, [&](Zim32s first, Zim32s count) {
    for (Zim32s y = first; y < first + count; ++y) {
      withKernel(y, [&](const auto& kernel) {
        reduceRow<Flat<Source>, Flat<Destination>>(
            source.at(rowOffset<offsets, typename Source::Sample>(y, call.srcStep)),
            destination.at(rowOffset<offsets, typename Destination::Sample>(y, call.dstStep)),
            std::ptrdiff_t{call.roiSize.width} * kFlatSamples<Source>, kernel);
      });
    }
  });
}

template <class Source, class Destination>
ZimResult toNearest(const Conversion<Source, Destination>& call, Zim32f count) {
  using From = typename Source::Sample;
  using To = typename Destination::Sample;
  const auto reduce = [&](const auto& kernel) {
    reduceRows<Serial, Offsets::bytes>(call, [&](Zim32s, const auto& use) { use(kernel); });
    return zimResultOk;
  };
  if constexpr (sizeof(From) == 2) {
    const auto whole = static_cast<Zim32s>(count);
    if (WholeLevels<From, To>::serve(whole)) return reduce(NearestWhole<From, To>(whole));
  }
  return reduce(Nearest<From, To>(count));
}

// Images of four channels always run on a team, and walk by exact bytes.
template <class Source>
inline constexpr bool kFourColours = Source::channels == 4;
template <class Source>
using OrderedTeam = std::conditional_t<kFourColours<Source>, AlwaysParallel, ParallelFrom<9217>>;

template <class Source>
inline constexpr Offsets kOrderedOffsets = kFourColours<Source> ? Offsets::bytes : Offsets::elements;

// By the same four rows of thresholds T all over, as of(k) has them; withThresholds(thresholds, period) makes a kernel.
template <class T, class Source, class Destination, class Of, class WithThresholds>
ZimResult orderByPattern(const Conversion<Source, Destination>& call, const Of& of,
                         const WithThresholds& withThresholds) {
  constexpr int samples = kFlatSamples<Source>,
                pixels = BlockKernel<typename Source::Sample, typename Destination::Sample>::block;
  static_assert(pixels % 4 == 0);
  std::array<std::array<T, std::size_t{pixels * samples}>, 4> pattern;
  for (Zim32s y = 0; y < std::min(4, call.roiSize.height); ++y) {
    T* to = pattern[static_cast<std::size_t>(y)].data();
    for (int x = 0; x < pixels; ++x) to = std::fill_n(to, samples, of(kBayer[y][x & 3]));
  }
  reduceRows<OrderedTeam<Source>, kOrderedOffsets<Source>>(call, [&](Zim32s y, const auto& use) {
    use(withThresholds(pattern[static_cast<std::size_t>(y & 3)].data(), pixels * samples));
  });
  return zimResultOk;
}

template <class Source, class Destination>
ZimResult toOrdered(const Conversion<Source, Destination>& call, Zim32f count, Zim32s noise) {
  using From = typename Source::Sample;
  using To = typename Destination::Sample;
  using Kernel = Ordered<From, To>;
  const Zim32f step = Levels::of<From>(count).step;
  const auto partOf = [](int k) { return static_cast<Zim32f>(k) / 15.0F; };
  if (noise == 0) {
    if constexpr (sizeof(From) == 2) {
      const auto whole = static_cast<Zim32s>(count);
      if (WholeLevels<From, To>::serve(whole)) {
        // At most one level is added.
        const auto of = [](int k) { return static_cast<Zim16u>(std::min(kWhite<From> / 15 * k, kWhite<From> - 1)); };
        return orderByPattern<Zim16u>(call, of, [&](const Zim16u* thresholds, std::ptrdiff_t period) {
          return OrderedWhole<From, To>(whole, thresholds, period);
        });
      }
    }
    return orderByPattern<Zim32f>(
        call, [&](int k) { return partOf(k) * step; },
        [&](const Zim32f* thresholds, std::ptrdiff_t period) { return Kernel(count, thresholds, period); });
  } else {
    // After so many pixels, in a whole number of blocks, a row of thresholds repeats.
    constexpr int samples = kFlatSamples<Source>, block = Kernel::block, noisePixels = NoiseTables::kEntries;
    constexpr int lanes = kLanes<Zim32f>;
    static_assert(noisePixels % block == 0 && noisePixels % lanes == 0);
    NoiseTables tables;
    const auto bound = static_cast<Zim32f>(noise);
    if (const ZimResult failure = tables.make(-bound / 100.0F, bound / 100.0F); failure != zimResultOk) return failure;
    const auto lanesAt = [](const Zim32f* p)
                             ZIM_LAMBDA { return load<Zim32f, lanes, 1>(reinterpret_cast<const std::byte*>(p))[0]; };
    const int pixels = std::min(noisePixels - block, call.roiSize.width) + block,
              filled = (pixels + lanes - 1) / lanes * lanes;
    reduceRows<OrderedTeam<Source>, kOrderedOffsets<Source>>(call, [&](Zim32s y, const auto& use) {
      std::array<Zim32f, std::size_t{lanes}> parts;
      for (std::size_t x = 0; x < parts.size(); ++x) parts[x] = partOf(kBayer[y & 3][x & 3]);
      std::array<Zim32f, std::size_t{noisePixels}> ofPixels;
      tables.read(0, y, filled, ofPixels.data());
      std::array<Zim32f, std::size_t{noisePixels * samples}> thresholds;
      for (std::size_t x = 0; x < static_cast<std::size_t>(filled); x += parts.size()) {
        const auto threshold = (lanesAt(&parts[0]) + lanesAt(&ofPixels[x])) * step;
        store<Zim32f, lanes, samples>(reinterpret_cast<std::byte*>(&thresholds[x * samples]),
                                      perChannel<samples>([&](auto) ZIM_LAMBDA { return threshold; }));
      }
      use(Kernel(count, thresholds.data(), noisePixels * samples));
    });
    return zimResultOk;
  }
}

// ---- Error diffusion ----

template <class Source, class Destination>
ZimResult toDiffused(const Conversion<Source, Destination>& call, Zim32f count, Zim32s noise, ZimDitherKind dither) {
  using From = typename Source::Sample;
  using To = typename Destination::Sample;
  constexpr bool isFloat = std::is_same_v<From, Zim32f>, isBytes = std::is_same_v<From, Zim8u>;
  constexpr auto white = static_cast<Zim32f>(kWhite<From>);
  const Levels levels = Levels::of<From>(count);
  // From bytes to bytes a level is known by its index, and the sample is (index * byteStep) >> 8. Before the shift it
  // is a multiple of 1 / 256, by half of which rounding errors cannot carry it.
  const Zim32f bytes = static_cast<Zim32f>(byteStep(count)) * levels.scale * 0x1p-8F;
  const StoredLevels stored = isBytes ? StoredLevels{.white = 255.5F / bytes, .scale = bytes, .rounding = 0x1p-9F}
                                      : StoredLevels{.white = white,
                                                     .scale = isFloat ? static_cast<Zim32f>(kWhite<To>) : 1.0F,
                                                     .shift = !isFloat && sizeof(To) == 1 ? 8 : 0};
  return diffuse({.size = call.roiSize,
                  .channels = static_cast<int>(Source::channels),
                  .source = {.first = Source::start(call.pSrc).plane[0],
                             .step = rowOffset<Offsets::elements, From>(1, call.srcStep),
                             .sampleBytes = sizeof(From),
                             .pixelBytes = Source::pixelBytes},
                  .destination = {.first = Destination::start(call.pDst).plane[0],
                                  .step = rowOffset<Offsets::elements, To>(1, call.dstStep),
                                  .sampleBytes = sizeof(To),
                                  .pixelBytes = Destination::pixelBytes},
                  .read = readChannel<From, Source::pixelBytes / sizeof(From)>,
                  .write = writeChannel<To, Destination::pixelBytes / sizeof(To)>,
                  .levels = levels,
                  // Floats below this, a little above zero, count as black.
                  .black = isFloat ? 1.1920929e-7F : 0.0F,
                  .white = white,
                  .stored = stored,
                  .kind = dither,
                  .noise = noise});
}

// ---- Bodies ----

template <class Source, class Destination>
ZimResult reduceBits(const Conversion<Source, Destination>& call, Zim32s noise, ZimDitherKind dither, Zim32s levels) {
  constexpr Zim32s mostLevels = kWhite<typename Destination::Sample> + 1;
  if (const ZimResult failure = N_S::check(call); failure != zimResultOk) return failure;
  if (noise < 0 || noise > 100) return zimResultBadNoise;
  if (levels < 2 || levels > mostLevels) return zimResultBadLevels;
  const auto count = static_cast<Zim32f>(levels - 1);
  switch (dither) {
    case zimDitherKindNone:
      return toNearest(call, count);
    case zimDitherKindFloydSteinberg:
    case zimDitherKindJarvisJudiceNinke:
    case zimDitherKindStucki:
      return toDiffused(call, count, noise, dither);
    case zimDitherKindBayer:
      return toOrdered(call, count, noise);
    default:
      return zimResultOk;
  }
}

}  // namespace

#define REDUCE_BITS(name, Source, Destination)                                                   \
  ZIM_CONVERSION(name, Source, Destination, (Zim32s noise, ZimDitherKind dither, Zim32s levels), \
                 reduceBits(call, noise, dither, levels))

// clang-format off
//          export                          source       destination
REDUCE_BITS(zimiReduceBits_8u_C1R,          C1<Zim8u>,   C1<Zim8u>)
REDUCE_BITS(zimiReduceBits_8u_C3R,          C3<Zim8u>,   C3<Zim8u>)
REDUCE_BITS(zimiReduceBits_8u_AC4R,         AC4<Zim8u>,  AC4<Zim8u>)
REDUCE_BITS(zimiReduceBits_8u_C4R,          C4<Zim8u>,   C4<Zim8u>)

REDUCE_BITS(zimiReduceBits_16u_C1R,         C1<Zim16u>,  C1<Zim16u>)
REDUCE_BITS(zimiReduceBits_16u_C3R,         C3<Zim16u>,  C3<Zim16u>)
REDUCE_BITS(zimiReduceBits_16u_AC4R,        AC4<Zim16u>, AC4<Zim16u>)
REDUCE_BITS(zimiReduceBits_16u_C4R,         C4<Zim16u>,  C4<Zim16u>)

REDUCE_BITS(zimiReduceBits_16s_C1R,         C1<Zim16s>,  C1<Zim16s>)
REDUCE_BITS(zimiReduceBits_16s_C3R,         C3<Zim16s>,  C3<Zim16s>)
REDUCE_BITS(zimiReduceBits_16s_AC4R,        AC4<Zim16s>, AC4<Zim16s>)
REDUCE_BITS(zimiReduceBits_16s_C4R,         C4<Zim16s>,  C4<Zim16s>)

REDUCE_BITS(zimiReduceBits_16u8u_C1R,       C1<Zim16u>,  C1<Zim8u>)
REDUCE_BITS(zimiReduceBits_16u8u_C3R,       C3<Zim16u>,  C3<Zim8u>)
REDUCE_BITS(zimiReduceBits_16u8u_AC4R,      AC4<Zim16u>, AC4<Zim8u>)
REDUCE_BITS(zimiReduceBits_16u8u_C4R,       C4<Zim16u>,  C4<Zim8u>)

REDUCE_BITS(zimiReduceBits_16s8u_C1R,       C1<Zim16s>,  C1<Zim8u>)
REDUCE_BITS(zimiReduceBits_16s8u_C3R,       C3<Zim16s>,  C3<Zim8u>)
REDUCE_BITS(zimiReduceBits_16s8u_AC4R,      AC4<Zim16s>, AC4<Zim8u>)
REDUCE_BITS(zimiReduceBits_16s8u_C4R,       C4<Zim16s>,  C4<Zim8u>)

REDUCE_BITS(zimiReduceBits_32f8u_C1R,       C1<Zim32f>,  C1<Zim8u>)
REDUCE_BITS(zimiReduceBits_32f8u_C3R,       C3<Zim32f>,  C3<Zim8u>)
REDUCE_BITS(zimiReduceBits_32f8u_AC4R,      AC4<Zim32f>, AC4<Zim8u>)
REDUCE_BITS(zimiReduceBits_32f8u_C4R,       C4<Zim32f>,  C4<Zim8u>)

REDUCE_BITS(zimiReduceBits_32f16u_C1R,      C1<Zim32f>,  C1<Zim16u>)
REDUCE_BITS(zimiReduceBits_32f16u_C3R,      C3<Zim32f>,  C3<Zim16u>)
REDUCE_BITS(zimiReduceBits_32f16u_AC4R,     AC4<Zim32f>, AC4<Zim16u>)
REDUCE_BITS(zimiReduceBits_32f16u_C4R,      C4<Zim32f>,  C4<Zim16u>)

REDUCE_BITS(zimiReduceBits_32f16s_C1R,      C1<Zim32f>,  C1<Zim16s>)
REDUCE_BITS(zimiReduceBits_32f16s_C3R,      C3<Zim32f>,  C3<Zim16s>)
REDUCE_BITS(zimiReduceBits_32f16s_AC4R,     AC4<Zim32f>, AC4<Zim16s>)
REDUCE_BITS(zimiReduceBits_32f16s_C4R,      C4<Zim32f>,  C4<Zim16s>)
