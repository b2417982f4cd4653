// Tone mapping: high-range gray to 8 bits by one scale, from the image's maximum or from twice its mean.

#include <limits>

#include "frame/pixelwise.h"

using namespace zim;

namespace {

using Source = C1<Zim32f>;
using Destination = C1<Zim8u>;
using Call = Conversion<Source, Destination>;

const std::byte* rowOf(const Call& call, Zim32s row) {
  return Source::start(call.pSrc).plane[0] + rowOffset<Offsets::bytes, Zim32f>(row, call.srcStep);
}

// ---- Scans of the whole source ----

// The larger of a row's samples, with its first as the start.
Zim32f rowMaximum(const std::byte* row, Zim32s width) {
  constexpr int lanes = 2 * kLanes<Zim32f>;
  using Single = Lane<Zim32f, 1>;
  Single maximum = load<Zim32f, 1, 1>(row)[0];
  Lane<Zim32f, lanes> running = maximum.v;
  std::ptrdiff_t x = 0;
  for (; x <= width - lanes; x += lanes) running = larger(running, load<Zim32f, lanes, 1>(row + x * 4)[0]);
  for (; x < width; ++x) maximum = larger(maximum, load<Zim32f, 1, 1>(row + x * 4)[0]);
  std::array<Zim32f, lanes> samples;
  store<Zim32f, lanes, 1>(reinterpret_cast<std::byte*>(samples.data()), {running});
  for (Zim32f sample : samples) maximum = larger(maximum, Single(sample));
  return maximum.v;
}

Zim32f imageMaximum(const Call& call) {
  Lane<Zim32f, 1> maximum = load<Zim32f, 1, 1>(rowOf(call, 0))[0];
  for (Zim32s row = 0; row < call.roiSize.height; ++row) {
    maximum = larger(maximum, Lane<Zim32f, 1>(rowMaximum(rowOf(call, row), call.roiSize.width)));
  }
  return maximum.v;
}

// Sums of the even and of the odd samples of the rows so far.
struct Sums {
  double even = 0.0, odd = 0.0;
};

// The order of additions decides the last bits of the mean, so that these are pairs of lanes in either build. Blocks of
// 16 samples go to the pairs a, b and c, one after another; pairs of samples and a last single one follow.
ZIM_INLINE Sums addRow(Sums sums, const std::byte* row, Zim32s width) {
  const Zim32s pairs = width >> 1, blockPairs = pairs & ~7;
  if (blockPairs > 0) {
    __m128d a = _mm_set_sd(sums.even), b = _mm_set_sd(sums.odd), c = _mm_setzero_pd();
    // Samples 0 and 2 of four to one pair, 1 and 3 to another.
    const auto addFour = [row](std::ptrdiff_t x, __m128d& evens, __m128d& odds) ZIM_LAMBDA {
      const __m128 four = _mm_loadu_ps(reinterpret_cast<const float*>(row + x * 4));
      const __m128 ordered = _mm_shuffle_ps(four, four, _MM_SHUFFLE(3, 1, 2, 0));
      evens = _mm_add_pd(evens, _mm_cvtps_pd(ordered));
      odds = _mm_add_pd(odds, _mm_cvtps_pd(_mm_movehl_ps(ordered, ordered)));
    };
    for (std::ptrdiff_t x = 0; x < 2 * std::ptrdiff_t{blockPairs}; x += 16) {
      addFour(x, a, b);
      addFour(x + 4, c, b);
      addFour(x + 8, a, b);
      addFour(x + 12, c, b);
    }
    a = _mm_add_pd(a, c);
    sums.even = _mm_cvtsd_f64(_mm_add_sd(a, _mm_unpackhi_pd(a, a)));
    sums.odd = _mm_cvtsd_f64(_mm_add_sd(b, _mm_unpackhi_pd(b, b)));
  }
  const auto sample = [row](std::ptrdiff_t x) { return static_cast<double>(load<Zim32f, 1, 1>(row + x * 4)[0].v); };
  for (std::ptrdiff_t pair = blockPairs; pair < pairs; ++pair) {
    sums.even += sample(2 * pair);
    sums.odd += sample(2 * pair + 1);
  }
  if (width % 2 != 0) sums.even += sample(width - 1);
  return sums;
}

// The number of samples is a 32-bit product.
double imageMean(const Call& call) {
  Sums sums;
  for (Zim32s row = 0; row < call.roiSize.height; ++row) sums = addRow(sums, rowOf(call, row), call.roiSize.width);
  return (sums.odd + sums.even) / wrappingProduct(call.roiSize.width, call.roiSize.height);
}

// ---- Mapping ----

// Truncated; the low 8 bits are kept, whatever the sample.
struct ScaleLow8 {
  using Sample = Zim32f;
  Zim32f scale;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 1> operator()(const Pixels<Zim32f, N, 1>& pixels) const {
    return {truncate(pixels[0] * scale) & Lane<Zim32s, N>(255)};
  }
};

// Truncated and saturated to 0..255.
struct ScaleSaturated {
  using Sample = Zim32f;
  Zim32f scale;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 1> operator()(const Pixels<Zim32f, N, 1>& pixels) const {
    return {truncate(pixels[0] * scale)};
  }
};

// The source row of the mapping lies at a 32-bit product of which the two lowest bits are cleared; the scans, and the
// destination, walk by exact bytes.
template <class Kernel>
ZimResult map(const Call& call, const Kernel& kernel) {
  const auto source = Source::start(call.pSrc);
  const auto destination = Destination::start(call.pDst);
  for (Zim32s row = 0; row < call.roiSize.height; ++row) {
    convertRow<Source, Destination>(source.at(wrappingProduct(row, call.srcStep) & ~3),
                                    destination.at(rowOffset<Offsets::bytes, Zim8u>(row, call.dstStep)),
                                    call.roiSize.width, kernel);
  }
  return zimResultOk;
}

ZimResult fillZero(const Call& call) {
  if (call.pDst == nullptr) return zimResultNullPointer;
  const auto destination = Destination::start(call.pDst);
  for (Zim32s row = 0; row < call.roiSize.height; ++row) {
    std::memset(destination.at(rowOffset<Offsets::bytes, Zim8u>(row, call.dstStep)).plane[0], 0,
                static_cast<std::size_t>(call.roiSize.width));
  }
  return zimResultOk;
}

ZimResult sourceFailure(const Call& call) {
  if (call.pSrc == nullptr) return zimResultNullPointer;
  return Order<Test::size>::check(call);
}

// What a level, the maximum or twice the mean, makes of the image: nothing below zero; zeros up to the smallest normal
// number, and for NaN; else a mapping that takes the level to 255.
template <class Kernel, class Level>
ZimResult mapFrom(const Call& call, Level level) {
  if (level < Level{0}) return zimWarnNoOperation;
  if (!(level > Level{std::numeric_limits<Zim32f>::min()})) return fillZero(call);
  return map(call, Kernel{static_cast<Zim32f>(Level{255} / level)});
}

}  // namespace

ZimResult ZIM_BODY(zimiToneMapLinear_32f8u_C1R)(const Zim32f* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                                ZimiSize roiSize) {
  const Call call{pSrc, srcStep, pDst, dstStep, roiSize};
  if (const ZimResult failure = sourceFailure(call); failure != zimResultOk) return failure;
  return mapFrom<ScaleLow8>(call, imageMaximum(call));
}

ZimResult ZIM_BODY(zimiToneMapMean_32f8u_C1R)(const Zim32f* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                              ZimiSize roiSize) {
  const Call call{pSrc, srcStep, pDst, dstStep, roiSize};
  if (const ZimResult failure = sourceFailure(call); failure != zimResultOk) return failure;
  const double mean = imageMean(call);
  return mapFrom<ScaleSaturated>(call, mean + mean);
}
