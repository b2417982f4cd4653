// RGB and BGR to and from hue, lightness and saturation: the double cone.
//
// Two groups with different arithmetic. That of RGB works on the scale of its samples and rounds; that of BGR works on
// samples normalised to 0..1 and, but for one form, rounds down. All in single precision; hue in degrees.

#include <limits>

#include "frame/adapters.h"
#include "frame/lanes/integer_quotients.h"
#include "frame/pixelwise.h"

using namespace zim;

namespace {

// A full turn of hue, and full lightness and saturation.
template <class T>
inline constexpr auto kFull = static_cast<Zim32f>(std::numeric_limits<T>::max());

// How the BGR forms make bytes of floats.
struct HalvesDown {
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> stored(Lane<Zim32f, N> a) {
    return narrow<Zim16s>(truncate(a + 0.499999F));
  }
};
// Down, after an addition of 1e-7 in double: of all floats that lifts only the one below 1 to the next integer.
struct Down {
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> stored(Lane<Zim32f, N> a) {
    constexpr Zim32f belowOne = 1.0F - std::numeric_limits<Zim32f>::epsilon() / 2;
    return narrow<Zim16s>(truncate(a) - (a == Lane<Zim32f, N>(belowOne)));
  }
};

// ---- To HLS -------------------------------------------------------------------------------------------------------

// Of integers from 0 to F, with M and m their extremes, in integers as far as words hold them:
//   H = 60 (G - B) / (M - m)        where R is M,
//       60 (B - R) / (M - m) + 120  else where G is M, and 60 (R - G) / (M - m) + 240 else;
//       moved up by 360 if negative; stored as trunc(H F / 360 + 0.5)
//   L = (M + m) / 2, stored as trunc(L + 0.5)
//   S = (M - m) / (M + m) up to half lightness, (M - m) / (2 F - (M + m)) above; stored as trunc(S F + 0.5)
// Gray has neither hue nor saturation; the divisions by zero are masked.
template <class T, class Number>
struct ToHls {
  using Sample = Number;

  template <int N>
  ZIM_INLINE Pixels<SignedOf<Number>, N, 3> operator()(const Pixels<Number, N, 3>& rgb) const {
    using Numbers = Lane<Number, N>;
    using Floats = Lane<Zim32f, N>;
    const auto& [r, g, b] = rgb;
    const auto largest = larger(larger(r, g), b), smallest = smaller(smaller(r, g), b);
    const auto isRed = r == largest, isGreen = g == largest, isChromatic = largest != smallest;
    const auto opposed = select(isRed, g - b, select(isGreen, b - r, r - g));
    const auto start = select(isRed, Numbers(0), select(isGreen, Numbers(120), Numbers(240)));
    const auto sum = largest + smallest;
    const auto span = smaller(sum, static_cast<Number>(2 * kFull<T>) - sum);

    const auto delta = convert<Zim32f>(largest - smallest);
    const auto degrees = convert<Zim32f>(opposed) * 60.0F / delta + convert<Zim32f>(start);
    const auto hue = select(degrees < Floats(0.0F), degrees + 360.0F, degrees);
    const auto saturation = delta / convert<Zim32f>(span);
    const auto stored = [&](Floats a) ZIM_LAMBDA { return narrow<SignedOf<Number>>(truncate(a + 0.5F)) & isChromatic; };
    return {stored(hue * kFull<T> / 360.0F), halved(sum), stored(saturation * kFull<T>)};
  }

 private:
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> halved(Lane<Zim16s, N> sum) {
    return (sum + 1) >> 1;
  }
  template <int N>
  ZIM_INLINE static Lane<Zim32s, N> halved(Lane<Zim32f, N> sum) {
    return truncate(sum * 0.5F + 0.5F);
  }
};

// Hue in degrees, lightness and saturation of samples from 0 to 1. Gray is what has extremes no further apart than
// grayLimit. The start of red is -0, which leaves a hue of -0 as it is.
template <int N>
ZIM_INLINE Pixels<Zim32f, N, 3> toUnitHls(const Pixels<Zim32f, N, 3>& rgb, Zim32f grayLimit) {
  using Floats = Lane<Zim32f, N>;
  const auto& [r, g, b] = rgb;
  const auto largest = larger(larger(r, g), b), smallest = smaller(smaller(r, g), b);
  const auto delta = largest - smallest, sum = smallest + largest, lightness = sum * 0.5F;
  const auto isRed = r == largest, isGreen = g == largest, isGray = delta <= Floats(grayLimit);
  const auto opposed = select(isRed, g - b, select(isGreen, b - r, r - g));
  const auto start = select(isRed, Floats(-0.0F), select(isGreen, Floats(120.0F), Floats(240.0F)));
  const auto degrees = opposed * 60.0F / delta + start;
  const auto hue = select(degrees < Floats(0.0F), degrees + 360.0F, degrees);
  const auto saturation = delta / select(lightness <= Floats(0.5F), sum, 2.0F - sum);
  const Floats zero(0.0F);
  return {select(isGray, zero, hue), lightness, select(isGray, zero, saturation)};
}

// Neither scaled nor clamped.
struct ToHls32f {
  using Sample = Zim32f;
  static constexpr int registers = kTwoIfNarrow;

  template <int N>
  ZIM_INLINE Pixels<Zim32f, N, 3> operator()(const Pixels<Zim32f, N, 3>& rgb) const {
    const auto [hue, lightness, saturation] = toUnitHls(rgb, std::numeric_limits<Zim32f>::epsilon());
    return {hue / 360.0F, lightness, saturation};
  }
};

template <class Rounding>
struct BgrToHls {
  using Sample = Zim16s;
  static constexpr int registers = kTwoIfNarrow;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(const Pixels<Zim16s, N, 3>& bgr) const {
    const auto unit = [](Lane<Zim16s, N> a) ZIM_LAMBDA { return shareOf<1, 255>(convert<Zim32f>(a)); };
    const auto [h, l, s] = toUnitHls(std::array{unit(bgr[2]), unit(bgr[1]), unit(bgr[0])}, 0.0F);
    return {Rounding::stored(h * 255.0F / 360.0F), Rounding::stored(l * 255.0F), Rounding::stored(s * 255.0F)};
  }
};

// ---- From HLS -----------------------------------------------------------------------------------------------------

// The largest and the smallest of R, G and B: m2 = (S + 1) L up to half lightness, L + S - S L above; m1 = L + L - m2.
template <int N>
struct Extremes {
  Lane<Zim32f, N> m2, m1, range;

  ZIM_INLINE Extremes(Lane<Zim32f, N> l, Lane<Zim32f, N> s)
      : m2(select(l <= Lane<Zim32f, N>(0.5F), (s + 1.0F) * l, l + s - s * l)), m1(l + l - m2), range(m2 - m1) {}
};

// a where the mask is set, 0 elsewhere.
template <int N>
ZIM_INLINE Lane<Zim32f, N> where(Lane<Zim32s, N> mask, Lane<Zim32f, N> a) {
  return bitsAs<Zim32f>(bitsAs<Zim32s>(a) & mask);
}

// A channel lies between the extremes by its angle t: it rises from m1 at 0 degrees to m2 at 60, stays until 180, and
// is back at m1 at 240. Red is 120 degrees ahead of green, whose angle is the hue, and blue as far behind.
template <int N>
ZIM_INLINE Pixels<Zim32f, N, 3> angles(Lane<Zim32f, N> hue) {
  const Lane<Zim32f, N> turn = 360.0F;
  const auto red = hue + 120.0F, blue = hue - 120.0F;
  return {red - where(red > turn, turn), hue, blue + where(blue < Lane<Zim32f, N>(0.0F), turn)};
}

// Rising: (m2 - m1) t / 60 + m1, falling: (m2 - m1) (240 - t) / 60 + m1. One division serves all three channels, as
// only one is on its way, unless green rises beside another: for negative hues, or where the angle of red has been
// rounded up to 180. Gray needs no case of its own as long as hue is finite: m1 and m2 are then both L, exactly.
template <int N>
ZIM_INLINE Pixels<Zim32f, N, 3> between(const Extremes<N>& of, Lane<Zim32f, N> hue) {
  using Floats = Lane<Zim32f, N>;
  const auto t = angles(hue);
  const auto height = perChannel<3>([&](auto c) ZIM_LAMBDA { return smaller(t[c], 240.0F - t[c]); });
  const auto rises = perChannel<3>([&](auto c) ZIM_LAMBDA { return t[c] < Floats(60.0F); });
  const auto atTop = perChannel<3>([&](auto c) ZIM_LAMBDA { return rises[c] ^ (t[c] < Floats(180.0F)); });
  const auto onWay = perChannel<3>([&](auto c) ZIM_LAMBDA { return atTop[c] ^ (t[c] < Floats(240.0F)); });
  const auto ramp = [&](Floats h) ZIM_LAMBDA { return of.range * h / 60.0F + of.m1; };
  const auto placed = [&](auto c, Floats wayValue)
                          ZIM_LAMBDA { return select(onWay[c], wayValue, select(atTop[c], of.m2, of.m1)); };
  if (any(rises[1] & (onWay[0] | onWay[2]))) {
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return placed(c, ramp(height[c])); });
  }
  const auto shared = ramp(select(onWay[0], height[0], select(onWay[1], height[1], height[2])));
  return perChannel<3>([&](auto c) ZIM_LAMBDA { return placed(c, shared); });
}

// Any floats. Where saturation is 0, hue does not count, whatever it is: all channels are at m1, as they are for a hue
// that is NaN.
struct FromHls32f {
  using Sample = Zim32f;
  static constexpr int registers = 2;

  template <int N>
  ZIM_INLINE Pixels<Zim32f, N, 3> operator()(const Pixels<Zim32f, N, 3>& hls) const {
    const auto& [h, l, s] = hls;
    const auto isGray = s == Lane<Zim32f, N>(0.0F);
    Extremes<N> of(l, s);
    of.m1 = select(isGray, l, of.m1);
    return between(of, bitsAs<Zim32f>(bitsAs<Zim32s>(h * 360.0F) | isGray));
  }
};

// Words, rounded.
struct FromHls16u {
  using Sample = Zim32f;
  static constexpr int registers = 2;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& hls) const {
    constexpr Zim32f full = kFull<Zim16u>;
    const auto rgb =
        between(Extremes<N>(shareOf<1, 65535>(hls[1]), shareOf<1, 65535>(hls[2])), shareOf<360, 65535>(hls[0]));
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return truncate(rgb[c] * full + 0.5F); });
  }
};

// Bytes, rounded. With a product for the division and without selections the channels differ in their last bits, but
// none of the 2^24 pixels in a byte.
struct FromHls8u {
  using Sample = Zim32f;
  static constexpr int registers = 2;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& hls) const {
    const Extremes<N> of(shareOf<1, 255>(hls[1]), shareOf<1, 255>(hls[2]));
    const auto t = angles(shareOf<360, 255>(hls[0]));
    return perChannel<3>([&](auto c) ZIM_LAMBDA {
      const auto height = clamp(smaller(t[c], 240.0F - t[c]), 0.0F, 60.0F);
      return truncate((of.range * height * (1.0F / 60.0F) + of.m1) * 255.0F + 0.5F);
    });
  }
};

// Bytes, rounded down, which the last bits decide.
struct HlsToBgr {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(const Pixels<Zim16s, N, 3>& hls) const {
    const auto in = perChannel<3>([&](auto c) ZIM_LAMBDA { return convert<Zim32f>(bitsAs<Zim16u>(hls[c])); });
    const auto rgb = between(Extremes<N>(shareOf<1, 255>(in[1]), shareOf<1, 255>(in[2])), shareOf<360, 255>(in[0]));
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return Down::stored(rgb[2 - c] * 255.0F); });
  }
};

using ToHls8u = ToHls<Zim8u, Zim16s>;
using ToHls16u = ToHls<Zim16u, Zim32f>;
using ToHls16s = MovedUp<ToHls16u>;
using FromHls16s = MovedUp<FromHls16u>;
using AlphaBgrToHls = KeepAlpha<BgrToHls<Down>>;
using AlphaHlsToBgr = KeepAlpha<HlsToBgr>;

using Bytes = Rules<N_S, Offsets::bytes32, RowParallel>;
using Elements = Rules<N_S, Offsets::elements32, RowParallel>;
using StepsLast = Rules<N_S_T, Offsets::bytes, AlwaysParallel>;
using StepsFirst = Rules<N_Q_T_S, Offsets::bytes, AlwaysParallel>;

}  // namespace

// clang-format off
//            export                     rules       source        destination   further  kernel
ZIM_PIXELWISE(zimiRGBToHLS_8u_C3R,       Bytes,      C3<Zim8u>,    C3<Zim8u>,    (),      ToHls8u{})
ZIM_PIXELWISE(zimiRGBToHLS_8u_AC4R,      Bytes,      AC4<Zim8u>,   AC4<Zim8u>,   (),      ToHls8u{})
ZIM_PIXELWISE(zimiRGBToHLS_16u_C3R,      Elements,   C3<Zim16u>,   C3<Zim16u>,   (),      ToHls16u{})
ZIM_PIXELWISE(zimiRGBToHLS_16u_AC4R,     Elements,   AC4<Zim16u>,  AC4<Zim16u>,  (),      ToHls16u{})
ZIM_PIXELWISE(zimiRGBToHLS_16s_C3R,      Elements,   C3<Zim16s>,   C3<Zim16s>,   (),      ToHls16s{})
ZIM_PIXELWISE(zimiRGBToHLS_16s_AC4R,     Elements,   AC4<Zim16s>,  AC4<Zim16s>,  (),      ToHls16s{})
ZIM_PIXELWISE(zimiRGBToHLS_32f_C3R,      Elements,   C3<Zim32f>,   C3<Zim32f>,   (),      ToHls32f{})
ZIM_PIXELWISE(zimiRGBToHLS_32f_AC4R,     Elements,   AC4<Zim32f>,  AC4<Zim32f>,  (),      ToHls32f{})

ZIM_PIXELWISE(zimiHLSToRGB_8u_C3R,       Bytes,      C3<Zim8u>,    C3<Zim8u>,    (),      FromHls8u{})
ZIM_PIXELWISE(zimiHLSToRGB_8u_AC4R,      Bytes,      AC4<Zim8u>,   AC4<Zim8u>,   (),      FromHls8u{})
ZIM_PIXELWISE(zimiHLSToRGB_16u_C3R,      Elements,   C3<Zim16u>,   C3<Zim16u>,   (),      FromHls16u{})
ZIM_PIXELWISE(zimiHLSToRGB_16u_AC4R,     Elements,   AC4<Zim16u>,  AC4<Zim16u>,  (),      FromHls16u{})
ZIM_PIXELWISE(zimiHLSToRGB_16s_C3R,      Elements,   C3<Zim16s>,   C3<Zim16s>,   (),      FromHls16s{})
ZIM_PIXELWISE(zimiHLSToRGB_16s_AC4R,     Elements,   AC4<Zim16s>,  AC4<Zim16s>,  (),      FromHls16s{})
ZIM_PIXELWISE(zimiHLSToRGB_32f_C3R,      Elements,   C3<Zim32f>,   C3<Zim32f>,   (),      FromHls32f{})
ZIM_PIXELWISE(zimiHLSToRGB_32f_AC4R,     Elements,   AC4<Zim32f>,  AC4<Zim32f>,  (),      FromHls32f{})

ZIM_PIXELWISE(zimiBGRToHLS_8u_AC4R,      StepsLast,  AC4<Zim8u>,   AC4<Zim8u>,   (),      BgrToHls<HalvesDown>{})
ZIM_PIXELWISE(zimiBGRToHLS_8u_AC4P4R,    StepsFirst, C4<Zim8u>,    AP4<Zim8u>,   (),      AlphaBgrToHls{})
ZIM_PIXELWISE(zimiBGRToHLS_8u_AP4C4R,    StepsFirst, AP4<Zim8u>,   C4<Zim8u>,    (),      AlphaBgrToHls{})
ZIM_PIXELWISE(zimiBGRToHLS_8u_AP4R,      StepsFirst, AP4<Zim8u>,   AP4<Zim8u>,   (),      AlphaBgrToHls{})
ZIM_PIXELWISE(zimiBGRToHLS_8u_C3P3R,     StepsFirst, C3<Zim8u>,    P3<Zim8u>,    (),      BgrToHls<Down>{})
ZIM_PIXELWISE(zimiBGRToHLS_8u_P3C3R,     StepsFirst, P3<Zim8u>,    C3<Zim8u>,    (),      BgrToHls<Down>{})
ZIM_PIXELWISE(zimiBGRToHLS_8u_P3R,       StepsFirst, P3<Zim8u>,    P3<Zim8u>,    (),      BgrToHls<Down>{})

ZIM_PIXELWISE(zimiHLSToBGR_8u_AC4P4R,    StepsFirst, C4<Zim8u>,    AP4<Zim8u>,   (),      AlphaHlsToBgr{})
ZIM_PIXELWISE(zimiHLSToBGR_8u_AP4C4R,    StepsFirst, AP4<Zim8u>,   C4<Zim8u>,    (),      AlphaHlsToBgr{})
ZIM_PIXELWISE(zimiHLSToBGR_8u_AP4R,      StepsFirst, AP4<Zim8u>,   AP4<Zim8u>,   (),      AlphaHlsToBgr{})
ZIM_PIXELWISE(zimiHLSToBGR_8u_C3P3R,     StepsFirst, C3<Zim8u>,    P3<Zim8u>,    (),      HlsToBgr{})
ZIM_PIXELWISE(zimiHLSToBGR_8u_P3C3R,     StepsFirst, P3<Zim8u>,    C3<Zim8u>,    (),      HlsToBgr{})
ZIM_PIXELWISE(zimiHLSToBGR_8u_P3R,       StepsFirst, P3<Zim8u>,    P3<Zim8u>,    (),      HlsToBgr{})
