// RGB to and from hue, saturation and value: the hexcone.
//
//   V = max(R, G, B), S = (V - min(R, G, B)) / V, and hue in sixths of a turn from red, counted by the position between
//   the primaries. In samples a full turn and full saturation are the largest value that the type holds.

#include <limits>

#include "frame/lanes/integer_quotients.h"
#include "frame/pixelwise.h"

using namespace zim;

namespace {

template <class T>
inline constexpr int kFull = std::numeric_limits<T>::max();

// Single precision throughout; d is the difference of the extremes. Where two samples are the largest, blue comes
// before green, and green before red:
//   blue    h = (4 + (V - G) r) - (V - R) r       r = 1 / d
//   green   h = (2 - (V - B) r) + (V - R) r
//   red     h = (G - B) r
// H = trunc(h 255 / 6 + 0.5), a negative hue moved up by 255 before it is rounded.
struct ToHsv8u {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> rgb) const {
    using Words = Lane<Zim16s, N>;
    using Floats = Lane<Zim32f, N>;
    const auto& [r, g, b] = rgb;
    const auto value = larger(larger(r, g), b), difference = value - smaller(smaller(r, g), b);
    const auto isBlue = b == value, isGreen = g == value, isChromatic = difference != Words(0);
    // All three as (start + x r) - y r, which keeps every rounding.
    const auto x = select(isBlue, value - g, select(isGreen, b - value, g - b));
    const auto y = select(isBlue, value - r, (r - value) & isGreen);
    const auto start = select(isBlue, Words(4), isGreen & Words(2));

    const auto d = toFloats(difference);
    const auto reciprocal = 1.0F / d;
    const auto h = (toFloats(start) + convert<Zim32f>(x) * reciprocal) - convert<Zim32f>(y) * reciprocal;
    const auto scaled = h * 255.0F / 6.0F;
    const auto hue = select(scaled < Floats(0.0F), scaled + 255.0F, scaled);
    const auto saturation = d / toFloats(value) * 255.0F;
    // Gray pixels have divided by zero.
    const auto stored = [&](Floats a) ZIM_LAMBDA { return narrow<Zim16s>(truncate(a + 0.5F)) & isChromatic; };
    return {stored(hue), stored(saturation), value};
  }

 private:
  // Of values that are not negative, which widen in one step.
  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> toFloats(Lane<Zim16s, N> a) {
    return convert<Zim32f>(bitsAs<Zim16u>(a));
  }
};

// The same with sums in another order, and another wrap:
//   blue    h = (4 - (V - R) r) + (V - G) r
//   green   h = (2 + (V - R) r) - (V - B) r
//   red     h = (V - B) r - (V - G) r
// A hue below zero by more than 2^-23 moves up by 6; H = trunc(h 65535 / 6 + 0.5). Words and their differences are
// exact in single precision.
struct ToHsv16u {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(Pixels<Zim32f, N, 3> rgb) const {
    using Floats = Lane<Zim32f, N>;
    const auto& [r, g, b] = rgb;
    const auto value = larger(larger(r, g), b), difference = value - smaller(smaller(r, g), b);
    const auto isBlue = b == value, isGreen = g == value, isChromatic = difference != Floats(0.0F);
    // All three as (start + x r) + y r, which keeps every rounding.
    const auto x = select(isBlue, r - value, select(isGreen, value - r, value - b));
    const auto y = select(isBlue, value - g, select(isGreen, b - value, g - value));
    const auto start = select(isBlue, Floats(4.0F), select(isGreen, Floats(2.0F), Floats(0.0F)));

    const auto reciprocal = 1.0F / difference;
    const auto h = (start + x * reciprocal) + y * reciprocal;
    const auto hue = select(h + 1.1920929e-7F < Floats(0.0F), h + 6.0F, h) * 65535.0F / 6.0F;
    const auto saturation = difference / value * 65535.0F;
    // Gray pixels have divided by zero.
    const auto stored = [&](Floats a) ZIM_LAMBDA { return truncate(a + 0.5F) & isChromatic; };
    return {stored(hue), stored(saturation), truncate(value)};
  }
};

// With x = h 360 / full / 60, i = floor(x), f = x - i, S = s / full:
//   P = (1 - S) V, Q = (1 - S f) V, T = (1 - S (1 - f)) V
//   R, G, B = V, T, P for i = 0;  Q, V, P;  P, V, T;  P, Q, V;  T, P, V;  V, P, Q for i = 5
// So each is trunc((1 - S w) V + 0.5) with a weight w of its own: 0 around the colour's own hue, 1 around the opposite
// one, f or 1 - f between. These weights come about without i, and exactly: where a difference below is inexact, it is
// the only step, or clamped. Gray needs no case of its own, nor does the largest hue, for which x is 6.
template <class T>
struct FromHsv {
  using Sample = Zim32f;
  static constexpr int registers = 2;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(Pixels<Zim32f, N, 3> hsv) const {
    using Floats = Lane<Zim32f, N>;
    const auto x = shareOf<360, kFull<T>>(hsv[0]) / 60.0F;
    const auto saturation = shareOf<1, kFull<T>>(hsv[1]);
    const auto fromBlue = x - 3.0F;
    const auto red = clamp(2.0F - magnitude(fromBlue), 0.0F, 1.0F);
    const auto green = larger(clamp(fromBlue, 0.0F, 1.0F), 1.0F - x);
    const auto blue = larger(smaller(3.0F - x, Floats(1.0F)), larger(x - 5.0F, Floats(0.0F)));
    const auto mixed = [&](Floats weight) ZIM_LAMBDA { return truncate((1.0F - saturation * weight) * hsv[2] + 0.5F); };
    return {mixed(red), mixed(green), mixed(blue)};
  }
};

using Bytes = Rules<N_S, Offsets::bytes32, RowParallel>;
using Elements = Rules<N_S, Offsets::elements32, RowParallel>;

}  // namespace

// clang-format off
//            export                  rules     source        destination   further  kernel
ZIM_PIXELWISE(zimiRGBToHSV_8u_C3R,    Bytes,    C3<Zim8u>,    C3<Zim8u>,    (),      ToHsv8u{})
ZIM_PIXELWISE(zimiRGBToHSV_8u_AC4R,   Bytes,    AC4<Zim8u>,   AC4<Zim8u>,   (),      ToHsv8u{})
ZIM_PIXELWISE(zimiRGBToHSV_16u_C3R,   Elements, C3<Zim16u>,   C3<Zim16u>,   (),      ToHsv16u{})
ZIM_PIXELWISE(zimiRGBToHSV_16u_AC4R,  Elements, AC4<Zim16u>,  AC4<Zim16u>,  (),      ToHsv16u{})

ZIM_PIXELWISE(zimiHSVToRGB_8u_C3R,    Bytes,    C3<Zim8u>,    C3<Zim8u>,    (),      FromHsv<Zim8u>{})
ZIM_PIXELWISE(zimiHSVToRGB_8u_AC4R,   Bytes,    AC4<Zim8u>,   AC4<Zim8u>,   (),      FromHsv<Zim8u>{})
ZIM_PIXELWISE(zimiHSVToRGB_16u_C3R,   Elements, C3<Zim16u>,   C3<Zim16u>,   (),      FromHsv<Zim16u>{})
ZIM_PIXELWISE(zimiHSVToRGB_16u_AC4R,  Elements, AC4<Zim16u>,  AC4<Zim16u>,  (),      FromHsv<Zim16u>{})
