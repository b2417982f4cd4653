// Gamma: the BT.709 transfer curve and its inverse, sample by sample.

#include <cmath>

#include "frame/pixelwise.h"
#include "frame/rounding.h"
#include "frame/scratch.h"
#include "tone/curve_pieces.h"
#include "tone/gamma_tables.h"
#include "tone/power_curve.h"
#include "tone/word_curve.h"

using namespace zim;

namespace {

// ---- The curve: linear below the knee, gain * v^exponent - offset above ----

constexpr TransferCurve kForward = {kForwardPower.function, 1.099, 0.099};
constexpr TransferCurve kInverse = {kInversePower.function, 1.0, 0.0};

constexpr CurvePieces<-6, 7, 9, Leading::nearestFloat> kForwardOfUnit(kForward, 1.0);
constexpr CurvePieces<-4, 5, 10, Leading::nearestFloat> kInverseOfUnit(kInverse, 1.0);

constexpr bool kTablesInRegisters = kParts == 4;
template <class InRegisters, class InMemory>
constexpr auto ofWords(const TransferCurve& curve) {
  if constexpr (kTablesInRegisters) {
    return InRegisters(curve);
  } else {
    return InMemory(curve, 65535.0);
  }
}
constexpr auto kForwardOfWords = ofWords<WordCurve<10, 2>, CurvePieces<10, 6, 9, Leading::nearestInteger>>(kForward);
constexpr auto kInverseOfWords = ofWords<WordCurve<13, 3>, CurvePieces<12, 4, 9, Leading::nearestInteger>>(kInverse);

struct Forward {
  static constexpr const auto& power = kForwardPower;
  static constexpr const auto& ofUnit = kForwardOfUnit;
  static constexpr const auto& ofWords = kForwardOfWords;
  static constexpr ByteMapping bytes{gammaCurveFwd8u};
  static constexpr double knee = 0.018, slope = 4.5, gain = kForward.gain, offset = kForward.offset;

  static double fromPower(double power) { return power * gain - offset; }

  // The product is exact in double, so that rounding it there or here is the same.
  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> lineOfUnit(Lane<Zim32f, N> x) {
    return x * static_cast<Zim32f>(slope);
  }
};

// The knee is not 4.5 * 0.018 = 0.081, and the factor of the base not the double nearest 1 / 1.099 but the one below
// it.
struct Inverse {
  static constexpr const auto& power = kInversePower;
  static constexpr const auto& ofUnit = kInverseOfUnit;
  static constexpr const auto& ofWords = kInverseOfWords;
  static constexpr ByteMapping bytes{gammaCurveInv8u};
  static constexpr double knee = 0.0812, slope = 0.2222222222222222, gain = kInverse.gain, offset = kInverse.offset;

  static double fromPower(double power) { return power; }

  // The slope is all but 2 / 9, and no ninth of twice a float comes near the middle between two floats: the quotient is
  // the product in double, rounded.
  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> lineOfUnit(Lane<Zim32f, N> x) {
    return x / 4.5F;
  }
};

// ---- Sample types: a sample lies at a distance from the lower end of its range, and v is that by the range ----

// 16 bits: v = x / 65535, by multiplication; results are rounded.
struct Range16u {
  using Sample = Zim32s;
  static constexpr double lowest = 0.0, range = 65535.0, inverseRange = 1.5259021896696422e-05;
  // No value of a curve comes nearer than this to one at which the result changes: 1.96e-6 forward, 2.67e-6 inverse.
  static constexpr double clearance = 1.9e-6;

  template <int N>
  ZIM_INLINE static Lane<Zim32s, N> distance(Lane<Zim32s, N> x) {
    return x;
  }
  static Zim32s next(Zim32s x, int direction) { return x + direction; }
  template <int N>
  ZIM_INLINE static Lane<Zim32s, N> stored(Lane<Zim64f, N> y) {
    return roundHalfEvenPositive(y);
  }
  // Products with either slope are exact in single precision, or far from where the result changes.
  template <int N>
  ZIM_INLINE static Lane<Zim32s, N> onLine(Lane<Zim32s, N> x, double slope) {
    return roundHalfEvenPositive(toFloat(x) * static_cast<Zim32f>(slope));
  }
};

// Floats: differences in single precision, all else in double. Nothing is clipped.
struct Range32f {
  using Sample = Zim32f;
  Zim32f vMin;
  double lowest, range, inverseRange;

  Range32f(Zim32f from, Zim32f to)
      : vMin(from), lowest(from), range(static_cast<double>(to - from)), inverseRange(1.0 / range) {}

  template <int N>
  ZIM_INLINE Lane<Zim32f, N> distance(Lane<Zim32f, N> p) const {
    return p - vMin;
  }
  static Zim32f next(Zim32f x, int direction) { return std::nextafter(x, direction < 0 ? -HUGE_VALF : HUGE_VALF); }
  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> stored(Lane<Zim64f, N> y) {
    return narrow<Zim32f>(y);
  }
  template <int N>
  ZIM_INLINE Lane<Zim32f, N> onLine(Lane<Zim32f, N> distance, double slope) const {
    return stored(widen(distance) * slope + lowest);
  }
};

// The kernel. On a single sample it calls pow. Lanes take a power p known within its relative bound and
//     y = (gain p - offset) range + lowest
// at both ends of the bound. Storing is monotone, so where the ends agree after it, the exact steps would have stored
// the same. Their own roundings are covered: those in proportion to p by the bound, that of the last sum by the margin.
// Where all that a curve can give keeps clear of the places at which the stored value changes, there is no doubt, and y
// itself will do.
template <class Curve, class Range>
struct Gamma : Range {
  using Sample = typename Range::Sample;
  // The chain of operations is long: several registers of samples keep the processor busy meanwhile.
  static constexpr int registers = kParts == 4 ? 2 : 4;

  const Sample knee;  // the least distance on the power

  explicit Gamma(const Range& valueRange) : Range(valueRange), knee(leastReaching(Curve::knee)) {
    const double factor = Curve::gain * Range::range, term = Range::lowest - Curve::offset * Range::range;
    // In the tiniest ranges results could differ in the sign of a zero, which compares equal: there all is in doubt.
    const double margin = Range::range > 1e-25 ? 0x1p-48 * (std::abs(Range::lowest) + Range::range) : HUGE_VAL;
    y = {factor, term};
    low = {factor * (1.0 - Curve::power.relativeBound), term - margin};
    high = {factor * (1.0 + Curve::power.relativeBound), term + margin};
  }

  template <int N, std::size_t Channels>
  ZIM_INLINE Pixels<Sample, N, Channels> operator()(const Pixels<Sample, N, Channels>& pixels) const {
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA {
      if constexpr (Channels > 1 && N > 1) {
        return curveApart(pixels[c]);
      } else {
        return curve(pixels[c]);
      }
    });
  }

 private:
  struct End {
    double factor, term;
  };
  End y, low, high;

  // The least distance of which v is at least this, or, where range or value leave none, what no distance reaches.
  Sample leastReaching(double value) const {
    const auto reaches = [&](Sample distance) { return static_cast<double>(distance) * Range::inverseRange >= value; };
    auto distance = static_cast<Sample>(value * Range::range);
    for (int step = 0; step < 2 && !reaches(distance); ++step) distance = Range::next(distance, 1);
    if (!reaches(distance)) return std::numeric_limits<Sample>::quiet_NaN();
    while (reaches(Range::next(distance, -1))) distance = Range::next(distance, -1);
    return distance;
  }

  template <int N>
  ZIM_INLINE Lane<Sample, N> curve(Lane<Sample, N> sample) const {
    const auto distance = Range::distance(sample);
    const auto onPower = distance >= knee;
    const auto wide = widen(distance);
    if constexpr (N == 1) {
      const double result = onPower.v != 0 ? onCurve(wide.v * Range::inverseRange) : wide.v * Curve::slope;
      return Range::stored(Lane<Zim64f, 1>(result + Range::lowest));
    } else {
      const auto onLine = Range::onLine(distance, Curve::slope);
      if (!any(onPower)) return onLine;
      const auto v = larger(Lane<Zim64f, N>(Curve::power.first), wide * Range::inverseRange);
      const auto power = approximatePower(Curve::power, v);
      if constexpr (requires { Range::clearance; }) {
        static_assert(Curve::power.relativeBound * Curve::gain * Range::range < Range::clearance);
        return select(onPower, Range::stored(power * y.factor + y.term), onLine);
      }
      const auto lowEnd = Range::stored(power * low.factor + low.term);
      const auto highEnd = Range::stored(power * high.factor + high.term);
      // Always both parts: a branch for lanes on one side only would often be mispredicted.
      const auto result = select(onPower, lowEnd, onLine);
      const auto inDoubt = bitsAs<Zim32s>(lowEnd != highEnd) & onPower;
      return any(inDoubt) ? resolved(result, inDoubt, sample) : result;
    }
  }

  // One text for all channels, which takes the compiler a fifth of the time; the call costs next to nothing.
  template <int N>
  [[gnu::noinline]] Lane<Sample, N> curveApart(Lane<Sample, N> sample) const {
    return curve(sample);
  }

  double onCurve(double v) const {
    const PowerFunction& f = Curve::power.function;
    return Curve::fromPower(std::pow((v + f.shift) * f.scale, f.exponent)) * Range::range;
  }

  // The lanes in doubt once more, one by one.
  template <int N>
  [[gnu::noinline]] Lane<Sample, N> resolved(Lane<Sample, N> result, Lane<Zim32s, N> inDoubt,
                                             Lane<Sample, N> sample) const {
    const auto asArray = []<class T>(Lane<T, N> lanes) {
      std::array<T, N> values;
      store<T, N, 1>(reinterpret_cast<std::byte*>(values.data()), {lanes});
      return values;
    };
    auto results = asArray(result);
    const auto doubts = asArray(inDoubt);
    const auto samples = asArray(sample);
    for (std::size_t k = 0; k < N; ++k) {
      if (doubts[k] != 0) results[k] = curve(Lane<Sample, 1>(samples[k])).v;
    }
    return load<Sample, N, 1>(reinterpret_cast<const std::byte*>(results.data()))[0];
  }
};

// The same by pieces of the curve, register by register, as Own has it; single samples by the formula.
template <class Own, class Curve, class Range>
struct ByPieces {
  using Sample = typename Range::Sample;
  static constexpr int registers = 4;  // as measured

  explicit ByPieces(const Range& range) : exact(range) {}

  template <int N, std::size_t Channels>
  ZIM_INLINE Pixels<Sample, N, Channels> operator()(const Pixels<Sample, N, Channels>& pixels) const {
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return curve(pixels[c]); });
  }

 protected:
  Gamma<Curve, Range> exact;

 private:
  template <int N>
  ZIM_INLINE Lane<Sample, N> curve(Lane<Sample, N> x) const {
    if constexpr (N == 1) {
      return exact(Pixels<Sample, 1, 1>{x})[0];
    } else {
      alignas(16) std::array<Zim32s, N> offsets;
      storeOffsets<std::remove_cvref_t<decltype(Own::pieces)>>(offsets.data(), Own::inside(x));
      // All offsets are on their way through memory before the first piece is used.
      asm("" : "+m"(offsets));
      return ofRegisters(x, offsets.data());
    }
  }

  template <int N>
  ZIM_INLINE Lane<Sample, N> ofRegisters(Lane<Sample, N> x, const Zim32s* offsets) const {
    if constexpr (Lane<Sample, N>::form == Form::split) {
      return Lane<Sample, N>::join(ofRegisters(x.v.lo, offsets), ofRegisters(x.v.hi, offsets + N / 2));
    } else {
      return static_cast<const Own&>(*this).curveOfRegister(x, sumOfPieces(Own::pieces, offsets, Own::inside(x)));
    }
  }
};

// Floats from 0 to 1: where the ends of what a sample may be agree, that is the sample. Other registers take the way
// above.
template <class Curve>
struct GammaOfUnit : ByPieces<GammaOfUnit<Curve>, Curve, Range32f> {
  static constexpr const auto& pieces = Curve::ofUnit;

  GammaOfUnit() : GammaOfUnit::ByPieces(Range32f(0.0F, 1.0F)) {}

  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> inside(Lane<Zim32f, N> x) {
    return larger(Lane<Zim32f, N>(pieces.first), smaller(Lane<Zim32f, N>(pieces.beyond), x));
  }

  template <int N>
  ZIM_INLINE Lane<Zim32f, N> curveOfRegister(Lane<Zim32f, N> x, const CurveSum<N>& sum) const {
    const auto low = sum.value + (sum.rest - sum.bound), high = sum.value + (sum.rest + sum.bound);
    return anyDiffer(low, high) ? exactly(x) : select(x >= this->exact.knee, low, Curve::lineOfUnit(x + 0.0F));
  }

 private:
  template <int N>
  [[gnu::noinline]] Lane<Zim32f, N> exactly(Lane<Zim32f, N> x) const {
    return this->exact(Pixels<Zim32f, N, 1>{x})[0];
  }
};

// Words: the sum of pieces is rounded as it is made, and each to the integer that it should be.
template <class Curve>
struct WordsByPieces : ByPieces<WordsByPieces<Curve>, Curve, Range16u> {
  static constexpr const auto& pieces = Curve::ofWords;

  WordsByPieces() : WordsByPieces::ByPieces(Range16u()) {}

  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> inside(Lane<Zim32s, N> x) {
    return larger(Lane<Zim32f, N>(pieces.first), toFloat(x));
  }

  template <int N>
  ZIM_INLINE Lane<Zim32s, N> curveOfRegister(Lane<Zim32s, N> x, const CurveSum<N>& sum) const {
    const auto rounded = sum.value + sum.rest;
    const auto nearest = bitsAs<Zim32s>(rounded) - std::bit_cast<Zim32s>(pieces.integerBase);
    const auto fromNearest = sum.rest - (rounded - sum.value);
    const auto power = tieToEven(nearest, (rounded - pieces.integerBase) + (fromNearest + 0.5F));
    return select(x >= this->exact.knee, power, this->exact.onLine(x, Curve::slope));
  }
};

// Words by tables in registers; those of a register in doubt by powers.
template <class Curve>
class WordsByTables {
 public:
  using Sample = Range16u::Sample;

  template <int N, std::size_t Channels>
  ZIM_INLINE Pixels<Sample, N, Channels> operator()(const Pixels<Sample, N, Channels>& pixels) const {
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return curve(pixels[c]); });
  }

 private:
  template <int N>
  ZIM_INLINE Lane<Sample, N> curve(Lane<Sample, N> sample) const {
    if constexpr (Lane<Sample, N>::form == Form::split) {
      return Lane<Sample, N>::join(curve(sample.v.lo), curve(sample.v.hi));
    } else if constexpr (N == 1) {
      return exactly(sample);
    } else {
      const auto x = toFloat(sample);
      const auto [nearest, inDoubt] = nearestOf(Curve::ofWords, larger(Lane<Zim32f, N>(knee_), x));
      if (inDoubt) return exactly(sample);
      // Products with either slope are far from where the result changes, or exact.
      return select(x >= knee_, nearest, roundByProcessor(x * static_cast<Zim32f>(Curve::slope)));
    }
  }

  template <int N>
  [[gnu::noinline]] Lane<Sample, N> exactly(Lane<Sample, N> sample) const {
    return exact_(Pixels<Sample, N, 1>{sample})[0];
  }

  const Gamma<Curve, Range16u> exact_{Range16u()};
  const Zim32f knee_ = static_cast<Zim32f>(exact_.knee);
};

template <class Curve>
using GammaOfWords = std::conditional_t<kTablesInRegisters, WordsByTables<Curve>, WordsByPieces<Curve>>;

// ---- Rows of samples: where all samples are treated alike, planes and interleaved triples are the same ----

// convert(from, to, width, layout) for every row: those of each plane as one channel, three times as wide where three
// channels are interleaved, or whole pixels where some samples are to stay.
template <class Layout, class Convert>
void forRows(const Conversion<Layout, Layout>& call, const Convert& convert) {
  using Sample = typename Layout::Sample;
  const auto source = Layout::start(call.pSrc);
  const auto destination = Layout::start(call.pDst);
  const ZimiSize size = asOneRow(call);
  for (std::size_t plane = 0; plane < Layout::planes; ++plane) {
    for (Zim32s row = 0; row < size.height; ++row) {
      const Position<const std::byte, 1> from = {source.plane[plane] +
                                                 rowOffset<Offsets::bytes, Sample>(row, call.srcStep)};
      const Position<std::byte, 1> to = {destination.plane[plane] +
                                         rowOffset<Offsets::bytes, Sample>(row, call.dstStep)};
      if constexpr (Layout::hasGaps) {
        convert(from, to, size.width, Layout());
      } else {
        convert(from, to, std::ptrdiff_t{size.width} * Layout::pixelBytes / std::ptrdiff_t{sizeof(Sample)},
                C1<Sample>());
      }
    }
  }
}

// Not inlined, so that all layouts share the code of a kernel.
template <class Layout, class Kernel>
[[gnu::noinline]] void curveRow(Position<const std::byte, 1> from, Position<std::byte, 1> to, std::ptrdiff_t width,
                                const Kernel& kernel) {
  convertRow<Layout, Layout>(from, to, width, Kernel(kernel));
}

template <class Layout, class Kernel>
void curveRows(const Conversion<Layout, Layout>& call, const Kernel& kernel) {
  forRows(call, [&](auto from, auto to, std::ptrdiff_t width, auto layout) {
    curveRow<decltype(layout)>(from, to, width, kernel);
  });
}

template <class Layout, class Table>
void lookUpRows(const Conversion<Layout, Layout>& call, const Table& table) {
  forRows(call, [&](auto from, auto to, std::ptrdiff_t width, auto layout) {
    using Row = decltype(layout);
    const auto lookUp = [&](std::ptrdiff_t x) ZIM_LAMBDA {
      const auto pixel = Row::template load<1>(from.at(x * Row::pixelBytes));
      Row::template store<1>(to.at(x * Row::pixelBytes), perChannel<Row::channels>([&](auto c) ZIM_LAMBDA {
                               return Lane<typename Row::Sample, 1>(table[pixel[c].v]);
                             }));
    };
    std::ptrdiff_t x = 0;
    for (; x <= width - 8; x += 8) forChannels<8>([&](auto i) ZIM_LAMBDA { lookUp(x + std::ptrdiff_t{i}); });
    for (; x < width; ++x) lookUp(x);
  });
}

// ---- Bodies ----

using Tests = N_Q_S_T;

template <class Curve, class Layout>
ZimResult gamma8u(const Conversion<Layout, Layout>& call) {
  if (const ZimResult failure = Tests::check(call); failure != zimResultOk) return failure;
#if defined(__AVX2__)
  curveRows(call, MapBytes<Curve::bytes>());
#else
  lookUpRows(call, Curve::bytes);
#endif
  return zimResultOk;
}

// Few samples are computed as they come, more through a table of all values that is made for the call. Samples are
// counted in 32 bits, three a pixel. The quicker values are computed, the more samples it takes until a table is worth
// its making; but whether a call asks for memory, and can fail, does not depend on the build.
template <class Layout, class Kernel>
ZimResult curveWords(const Conversion<Layout, Layout>& call, const Kernel& kernel) {
  constexpr Zim32s values = 65536, worthTable = kParts == 4 ? 3 * values : values;
  const Zim32s samples = wrappingProduct(wrappingProduct(3, call.roiSize.width), call.roiSize.height);
  const Scratch<Zim16u> table(samples > values ? scratchAlloc16(values) : nullptr);
  if (samples > values && table == nullptr) return zimResultNoMemory;
  if (samples <= worthTable) {
    curveRows(call, kernel);
    return zimResultOk;
  }
  for (Zim32s i = 0; i < values; ++i) table[static_cast<std::size_t>(i)] = static_cast<Zim16u>(i);
  curveRow<C1<Zim16u>>(readOnly(C1<Zim16u>::start(table.get())), C1<Zim16u>::start(table.get()), values, kernel);
  lookUpRows(call, table);
  return zimResultOk;
}

template <class Curve, class Layout>
ZimResult gamma16u(const Conversion<Layout, Layout>& call) {
  if (const ZimResult failure = Tests::check(call); failure != zimResultOk) return failure;
  return roundsToNearest() ? curveWords(call, GammaOfWords<Curve>()) : curveWords(call, Gamma<Curve, Range16u>({}));
}

template <class Curve, class Layout>
ZimResult gamma32f(const Conversion<Layout, Layout>& call, Zim32f vMin, Zim32f vMax) {
  if (vMax - vMin <= 0.0F) return zimResultBadRange;
  if (const ZimResult failure = Tests::check(call); failure != zimResultOk) return failure;
  if (vMin == 0.0F && vMax == 1.0F && roundsToNearest()) {
    curveRows(call, GammaOfUnit<Curve>());
  } else {
    curveRows(call, Gamma<Curve, Range32f>({vMin, vMax}));
  }
  return zimResultOk;
}

}  // namespace

#define RANGE (Zim32f vMin, Zim32f vMax)
#define GAMMA(name, Layout, body) ZIM_CONVERSION(name, Layout, Layout, (), body(call))
#define GAMMA_IN_PLACE(name, Layout, body) ZIM_IN_PLACE(name, Layout, (), body(call))
#define GAMMA_RANGE(name, Layout, body) ZIM_CONVERSION(name, Layout, Layout, RANGE, body(call, vMin, vMax))
#define GAMMA_RANGE_IN_PLACE(name, Layout, body) ZIM_IN_PLACE(name, Layout, RANGE, body(call, vMin, vMax))

// clang-format off
//                   export                   layout       body
GAMMA(               zimiGammaFwd_8u_C3R,     C3<Zim8u>,   gamma8u<Forward>)
GAMMA(               zimiGammaFwd_8u_AC4R,    AC4<Zim8u>,  gamma8u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_8u_C3IR,    C3<Zim8u>,   gamma8u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_8u_AC4IR,   AC4<Zim8u>,  gamma8u<Forward>)
GAMMA(               zimiGammaFwd_8u_P3R,     P3<Zim8u>,   gamma8u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_8u_IP3R,    P3<Zim8u>,   gamma8u<Forward>)
GAMMA(               zimiGammaInv_8u_C3R,     C3<Zim8u>,   gamma8u<Inverse>)
GAMMA(               zimiGammaInv_8u_AC4R,    AC4<Zim8u>,  gamma8u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_8u_C3IR,    C3<Zim8u>,   gamma8u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_8u_AC4IR,   AC4<Zim8u>,  gamma8u<Inverse>)
GAMMA(               zimiGammaInv_8u_P3R,     P3<Zim8u>,   gamma8u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_8u_IP3R,    P3<Zim8u>,   gamma8u<Inverse>)

GAMMA(               zimiGammaFwd_16u_C3R,    C3<Zim16u>,  gamma16u<Forward>)
GAMMA(               zimiGammaFwd_16u_AC4R,   AC4<Zim16u>, gamma16u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_16u_C3IR,   C3<Zim16u>,  gamma16u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_16u_AC4IR,  AC4<Zim16u>, gamma16u<Forward>)
GAMMA(               zimiGammaFwd_16u_P3R,    P3<Zim16u>,  gamma16u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_16u_IP3R,   P3<Zim16u>,  gamma16u<Forward>)
GAMMA(               zimiGammaInv_16u_C3R,    C3<Zim16u>,  gamma16u<Inverse>)
GAMMA(               zimiGammaInv_16u_AC4R,   AC4<Zim16u>, gamma16u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_16u_C3IR,   C3<Zim16u>,  gamma16u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_16u_AC4IR,  AC4<Zim16u>, gamma16u<Inverse>)
GAMMA(               zimiGammaInv_16u_P3R,    P3<Zim16u>,  gamma16u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_16u_IP3R,   P3<Zim16u>,  gamma16u<Inverse>)

GAMMA_RANGE(         zimiGammaFwd_32f_C3R,    C3<Zim32f>,  gamma32f<Forward>)
GAMMA_RANGE(         zimiGammaFwd_32f_AC4R,   AC4<Zim32f>, gamma32f<Forward>)
GAMMA_RANGE_IN_PLACE(zimiGammaFwd_32f_C3IR,   C3<Zim32f>,  gamma32f<Forward>)
GAMMA_RANGE_IN_PLACE(zimiGammaFwd_32f_AC4IR,  AC4<Zim32f>, gamma32f<Forward>)
GAMMA_RANGE(         zimiGammaFwd_32f_P3R,    P3<Zim32f>,  gamma32f<Forward>)
GAMMA_RANGE_IN_PLACE(zimiGammaFwd_32f_IP3R,   P3<Zim32f>,  gamma32f<Forward>)
GAMMA_RANGE(         zimiGammaInv_32f_C3R,    C3<Zim32f>,  gamma32f<Inverse>)
GAMMA_RANGE(         zimiGammaInv_32f_AC4R,   AC4<Zim32f>, gamma32f<Inverse>)
GAMMA_RANGE_IN_PLACE(zimiGammaInv_32f_C3IR,   C3<Zim32f>,  gamma32f<Inverse>)
GAMMA_RANGE_IN_PLACE(zimiGammaInv_32f_AC4IR,  AC4<Zim32f>, gamma32f<Inverse>)
GAMMA_RANGE(         zimiGammaInv_32f_P3R,    P3<Zim32f>,  gamma32f<Inverse>)
GAMMA_RANGE_IN_PLACE(zimiGammaInv_32f_IP3R,   P3<Zim32f>,  gamma32f<Inverse>)
