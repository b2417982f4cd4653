// Gamma: the BT.709 transfer curve and its inverse, sample by sample.

#include "frame/pixelwise.h"
#include "frame/rounding.h"
#include "frame/scratch.h"
#include "tone/gamma_tables.h"
#include "tone/power_curve.h"

using namespace zim;

namespace {

// ---- The curve on values v of 0 to 1 ----

// Linear below the knee, a power above. The exact forms call pow; the bounds hold what they give.

struct Forward {
  static constexpr double knee = 0.018, slope = 4.5;
  static constexpr const auto& table = gammaCurveFwd8u;

  template <int N>
  ZIM_INLINE static Bounds<N> bounds(Lane<Zim64f, N> v) {
    return powerBounds(kForwardPower, v);
  }
  static double exactPower(double v) { return std::pow(v, kForwardPower.exponent); }

  template <int N>
  ZIM_INLINE static Lane<Zim64f, N> fromPower(Lane<Zim64f, N> power) {
    return power * 1.099 - 0.099;
  }
};

// The knee is not 4.5 * 0.018 = 0.081, and the gain not the double nearest 1 / 1.099 but the one below it.
struct Inverse {
  static constexpr double knee = 0.0812, slope = 0.2222222222222222;
  static constexpr const auto& table = gammaCurveInv8u;

  template <int N>
  ZIM_INLINE static Bounds<N> bounds(Lane<Zim64f, N> v) {
    return powerBounds(kInversePower, base(v));
  }
  static double exactPower(double v) { return std::pow(base(Lane<Zim64f, 1>(v)).v, kInversePower.exponent); }

  template <int N>
  ZIM_INLINE static Lane<Zim64f, N> fromPower(Lane<Zim64f, N> power) {
    return power;
  }

 private:
  template <int N>
  ZIM_INLINE static Lane<Zim64f, N> base(Lane<Zim64f, N> v) {
    return (v + 0.099) * 0.9099181073703366;
  }
};

// ---- Realisations: how samples become values, and values samples ----

// 16-bit samples x: v = x / 65535 by multiplication; the result times 65535, rounded.
template <class Curve>
struct Gamma16u {
  using Sample = Zim32s;
  using Stored = Zim32s;

  template <int N>
  ZIM_INLINE static Lane<Zim64f, N> distance(Lane<Zim32s, N> x) {
    return widen(x);
  }
  template <int N>
  ZIM_INLINE static Lane<Zim64f, N> value(Lane<Zim64f, N> distance) {
    return distance * 1.5259021896696422e-05;
  }
  template <int N>
  ZIM_INLINE static Lane<Zim32s, N> storedFromPower(Lane<Zim64f, N> power) {
    return roundHalfEvenPositive(Curve::fromPower(power) * 65535.0);
  }
  template <int N>
  ZIM_INLINE static Lane<Zim32s, N> storedFromLine(Lane<Zim64f, N> line) {
    return roundHalfEvenPositive(line);
  }
};

// Float samples over a range: the differences in single precision, all else in double. Nothing is clipped.
template <class Curve>
struct Gamma32f {
  using Sample = Zim32f;
  using Stored = Zim32f;
  Zim32f vMin;
  double lowest, range, inverseRange;

  Gamma32f(Zim32f from, Zim32f to)
      : vMin(from), lowest(from), range(static_cast<double>(to - from)), inverseRange(1.0 / range) {}

  template <int N>
  ZIM_INLINE Lane<Zim64f, N> distance(Lane<Zim32f, N> p) const {
    return widen(p - vMin);
  }
  template <int N>
  ZIM_INLINE Lane<Zim64f, N> value(Lane<Zim64f, N> distance) const {
    return distance * inverseRange;
  }
  template <int N>
  ZIM_INLINE Lane<Zim32f, N> storedFromPower(Lane<Zim64f, N> power) const {
    return narrow<Zim32f>(Curve::fromPower(power) * range + lowest);
  }
  template <int N>
  ZIM_INLINE Lane<Zim32f, N> storedFromLine(Lane<Zim64f, N> line) const {
    return narrow<Zim32f>(line + lowest);
  }
};

template <class Curve, class Realisation>
struct Gamma : Realisation {
  using Sample = typename Realisation::Sample;
  using Stored = typename Realisation::Stored;

  template <int N, std::size_t Channels>
  ZIM_INLINE Pixels<Stored, N, Channels> operator()(const Pixels<Sample, N, Channels>& pixels) const {
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return curve(pixels[c]); });
  }

 private:
  template <int N>
  ZIM_INLINE Lane<Stored, N> curve(Lane<Sample, N> sample) const {
    const auto distance = Realisation::distance(sample);
    const auto v = Realisation::value(distance);
    if constexpr (N == 1) {
      return v.v >= Curve::knee ? Realisation::storedFromPower(Lane<Zim64f, 1>(Curve::exactPower(v.v)))
                                : Realisation::storedFromLine(distance * Curve::slope);
    } else {
      const auto line = Realisation::storedFromLine(distance * Curve::slope);
      const auto onPower = v >= Curve::knee;
      if (!any(onPower)) return line;
      const auto bounds = Curve::bounds(v);
      const auto low = Realisation::storedFromPower(bounds.low), high = Realisation::storedFromPower(bounds.high);
      const auto isPower = narrowMask(onPower);
      const auto result = select(isPower, low, line);
      if (any(isPower & bitsAs<Zim32s>(low != high))) [[unlikely]]
        return oneByOne(sample);
      return result;
    }
  }

  template <int N>
  [[gnu::noinline]] Lane<Stored, N> oneByOne(Lane<Sample, N> samples) const {
    Sample in[N];
    Stored out[N];
    store<Sample, N, 1>(reinterpret_cast<std::byte*>(in), {samples});
    for (int k = 0; k < N; ++k) out[k] = curve(Lane<Sample, 1>(in[k])).v;
    return load<Stored, N, 1>(reinterpret_cast<const std::byte*>(out))[0];
  }
};

// ---- Rows through a table ----

template <class Layout, class Table>
void lookUpRows(const Conversion<Layout, Layout>& call, const Table& table) {
  using Sample = typename Layout::Sample;
  const auto width = std::ptrdiff_t{call.roiSize.width} * Layout::samplesPerPixel;
  const auto source = Layout::start(call.pSrc);
  const auto destination = Layout::start(call.pDst);
  for (Zim32s row = 0; row < call.roiSize.height; ++row) {
    const auto from = source.at(rowOffset<Offsets::bytes, Sample>(row, call.srcStep));
    const auto to = destination.at(rowOffset<Offsets::bytes, Sample>(row, call.dstStep));
    for (std::ptrdiff_t x = 0; x < width; ++x) {
      const auto pixel = Layout::template load<1, Extent::whole>(from.at(x * Layout::pixelBytes));
      Layout::template store<1>(to.at(x * Layout::pixelBytes), perChannel<Layout::channels>([&](auto c) ZIM_LAMBDA {
                                  return Lane<Sample, 1>(table[pixel[c].v]);
                                }));
    }
  }
}

// ---- Bodies ----

using AllTests = N_Q_S_T;

template <class Curve, class Layout>
ZimResult gamma8u(const Conversion<Layout, Layout>& call) {
  if (const ZimResult failure = AllTests::check(call); failure != zimResultOk) return failure;
  lookUpRows(call, Curve::table);
  return zimResultOk;
}

// Few samples are computed as they come, more through a table of all values that is made for the call. Samples are
// counted in 32 bits, three a pixel.
template <class Curve, class Layout>
ZimResult gamma16u(const Conversion<Layout, Layout>& call) {
  using Kernel = Gamma<Curve, Gamma16u<Curve>>;
  if (const ZimResult failure = AllTests::check(call); failure != zimResultOk) return failure;
  constexpr Zim32s values = 65536;
  if (wrappingProduct(wrappingProduct(3, call.roiSize.width), call.roiSize.height) <= values) {
    return pixelwise<Rules<Order<>>>(call, [] { return Kernel{}; });
  }
  const Scratch<Zim16u> table(scratchAlloc16(values));
  if (table == nullptr) return zimResultNoMemory;
  for (Zim32s i = 0; i < values; ++i) table[static_cast<std::size_t>(i)] = static_cast<Zim16u>(i);
  const Conversion<C1<Zim16u>, C1<Zim16u>> fill{table.get(), 1, table.get(), 1, {values, 1}};
  pixelwise<Rules<Order<>>>(fill, [] { return Kernel{}; });
  lookUpRows(call, table);
  return zimResultOk;
}

template <class Curve, class Layout>
ZimResult gamma32f(const Conversion<Layout, Layout>& call, Zim32f vMin, Zim32f vMax) {
  if (vMax - vMin <= 0.0F) return zimResultBadRange;
  return pixelwise<Rules<AllTests>>(call, [&] { return Gamma<Curve, Gamma32f<Curve>>{{vMin, vMax}}; });
}

}  // namespace

#define GAMMA(name, Layout, body)                                                                         \
  ZimResult ZIM_BODY(name)(Layout::Source pSrc, Zim32s srcStep, Layout::Destination pDst, Zim32s dstStep, \
                           ZimiSize roiSize) {                                                            \
    return body(Conversion<Layout, Layout>{pSrc, srcStep, pDst, dstStep, roiSize});                       \
  }
#define GAMMA_IN_PLACE(name, Layout, body)                                                      \
  ZimResult ZIM_BODY(name)(Layout::Destination pSrcDst, Zim32s srcDstStep, ZimiSize roiSize) {  \
    return body(Conversion<Layout, Layout>{pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize}); \
  }
#define GAMMA_RANGE(name, Layout, body)                                                                   \
  ZimResult ZIM_BODY(name)(Layout::Source pSrc, Zim32s srcStep, Layout::Destination pDst, Zim32s dstStep, \
                           ZimiSize roiSize, Zim32f vMin, Zim32f vMax) {                                  \
    return body(Conversion<Layout, Layout>{pSrc, srcStep, pDst, dstStep, roiSize}, vMin, vMax);           \
  }
#define GAMMA_RANGE_IN_PLACE(name, Layout, body)                                                            \
  ZimResult ZIM_BODY(name)(Layout::Destination pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, Zim32f vMin,   \
                           Zim32f vMax) {                                                                   \
    return body(Conversion<Layout, Layout>{pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize}, vMin, vMax); \
  }

// clang-format off
//                   export                   layout         body
GAMMA(               zimiGammaFwd_8u_C3R,     FlatC3<Zim8u>,   gamma8u<Forward>)
GAMMA(               zimiGammaFwd_8u_AC4R,    AC4<Zim8u>,      gamma8u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_8u_C3IR,    FlatC3<Zim8u>,   gamma8u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_8u_AC4IR,   AC4<Zim8u>,      gamma8u<Forward>)
GAMMA(               zimiGammaFwd_8u_P3R,     P3<Zim8u>,       gamma8u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_8u_IP3R,    P3<Zim8u>,       gamma8u<Forward>)
GAMMA(               zimiGammaInv_8u_C3R,     FlatC3<Zim8u>,   gamma8u<Inverse>)
GAMMA(               zimiGammaInv_8u_AC4R,    AC4<Zim8u>,      gamma8u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_8u_C3IR,    FlatC3<Zim8u>,   gamma8u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_8u_AC4IR,   AC4<Zim8u>,      gamma8u<Inverse>)
GAMMA(               zimiGammaInv_8u_P3R,     P3<Zim8u>,       gamma8u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_8u_IP3R,    P3<Zim8u>,       gamma8u<Inverse>)

GAMMA(               zimiGammaFwd_16u_C3R,    FlatC3<Zim16u>,  gamma16u<Forward>)
GAMMA(               zimiGammaFwd_16u_AC4R,   AC4<Zim16u>,     gamma16u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_16u_C3IR,   FlatC3<Zim16u>,  gamma16u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_16u_AC4IR,  AC4<Zim16u>,     gamma16u<Forward>)
GAMMA(               zimiGammaFwd_16u_P3R,    P3<Zim16u>,      gamma16u<Forward>)
GAMMA_IN_PLACE(      zimiGammaFwd_16u_IP3R,   P3<Zim16u>,      gamma16u<Forward>)
GAMMA(               zimiGammaInv_16u_C3R,    FlatC3<Zim16u>,  gamma16u<Inverse>)
GAMMA(               zimiGammaInv_16u_AC4R,   AC4<Zim16u>,     gamma16u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_16u_C3IR,   FlatC3<Zim16u>,  gamma16u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_16u_AC4IR,  AC4<Zim16u>,     gamma16u<Inverse>)
GAMMA(               zimiGammaInv_16u_P3R,    P3<Zim16u>,      gamma16u<Inverse>)
GAMMA_IN_PLACE(      zimiGammaInv_16u_IP3R,   P3<Zim16u>,      gamma16u<Inverse>)

GAMMA_RANGE(         zimiGammaFwd_32f_C3R,    FlatC3<Zim32f>,  gamma32f<Forward>)
GAMMA_RANGE(         zimiGammaFwd_32f_AC4R,   AC4<Zim32f>,     gamma32f<Forward>)
GAMMA_RANGE_IN_PLACE(zimiGammaFwd_32f_C3IR,   FlatC3<Zim32f>,  gamma32f<Forward>)
GAMMA_RANGE_IN_PLACE(zimiGammaFwd_32f_AC4IR,  AC4<Zim32f>,     gamma32f<Forward>)
GAMMA_RANGE(         zimiGammaFwd_32f_P3R,    P3<Zim32f>,      gamma32f<Forward>)
GAMMA_RANGE_IN_PLACE(zimiGammaFwd_32f_IP3R,   P3<Zim32f>,      gamma32f<Forward>)
GAMMA_RANGE(         zimiGammaInv_32f_C3R,    FlatC3<Zim32f>,  gamma32f<Inverse>)
GAMMA_RANGE(         zimiGammaInv_32f_AC4R,   AC4<Zim32f>,     gamma32f<Inverse>)
GAMMA_RANGE_IN_PLACE(zimiGammaInv_32f_C3IR,   FlatC3<Zim32f>,  gamma32f<Inverse>)
GAMMA_RANGE_IN_PLACE(zimiGammaInv_32f_AC4IR,  AC4<Zim32f>,     gamma32f<Inverse>)
GAMMA_RANGE(         zimiGammaInv_32f_P3R,    P3<Zim32f>,      gamma32f<Inverse>)
GAMMA_RANGE_IN_PLACE(zimiGammaInv_32f_IP3R,   P3<Zim32f>,      gamma32f<Inverse>)
