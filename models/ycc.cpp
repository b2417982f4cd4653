// RGB to and from PhotoYCC: luma, and two chroma differences around 156 and 137 on the scale of bytes.
//
// The same colours by other arithmetic for each sample type.

#include "frame/adapters.h"
#include "frame/lanes/fixed_point.h"
#include "frame/pixelwise.h"

using namespace zim;

namespace {

// With v = 4898 R + 9617 G + 1867 B, whose weights add up to 16382, each step rounded down:
//   Y  = ((v >> 10) * 2921) >> 16                          range [0, 181]
//   C1 = ((((B << 14) - v) >> 10) * 1789 >> 16) + 156      range [57, 254]
//   C2 = ((((R << 14) - v) >> 10) * 2178 >> 16) + 137      range [41, 232]
struct ToYcc8u {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> rgb) const {
    const auto scaled = [](Lane<Zim16s, N> x, Zim16s scale)
                            ZIM_LAMBDA { return multiplyHigh(x, Lane<Zim16s, N>(scale)); };
    const auto& [r, g, b] = rgb;
    const auto luma = fixedDot<FixedRow{{4898, 9617, 1867}, 0}, 10>(r, g, b);
    const auto blue = fixedDot<FixedRow{{-4898, -9617, 16384 - 1867}, 0}, 10>(r, g, b);
    const auto red = fixedDot<FixedRow{{16384 - 4898, -9617, -1867}, 0}, 10>(r, g, b);
    return {scaled(luma, 2921), scaled(blue, 1789) + 156, scaled(red, 2178) + 137};
  }
};

// With a = 5564 Y, c1 = 9084 (C1 - 156), c2 = 7460 (C2 - 137), each shift rounding down:
//   R = sat((a + c2) >> 12)
//   G = sat((16 a - 794 (c1 >> 8) - 2084 (c2 >> 8)) >> 16)
//   B = sat((a + c1) >> 12)                                before saturation within [-346, 566]
struct FromYcc8u {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> ycc) const {
    const auto y = ycc[0], u = ycc[1] - 156, v = ycc[2] - 137;
    // c >> 8 as the high half of a product, of which the shift is shared out between the factors.
    const auto p = multiplyHigh(u << 7, Lane<Zim16s, N>(9084 * 2)), q = multiplyHigh(v << 7, Lane<Zim16s, N>(7460 * 2));
    return {fixedDot<FixedRow{{5564, 0, 7460}, 0}, 12>(y, u, v),
            fixedDot<FixedRow{{5564 * 16, -794, -2084}, 0}>(y, p, q),
            fixedDot<FixedRow{{5564, 9084, 0}, 0}, 12>(y, u, v)};
  }
};

template <int N>
ZIM_INLINE Lane<Zim32f, N> luma(const Pixels<Zim32f, N, 3>& rgb) {
  return (rgb[0] * 0.299F + rgb[1] * 0.587F) + rgb[2] * 0.114F;
}

// By way of luma, not clamped.
struct ToYcc32f {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32f, N, 3> operator()(const Pixels<Zim32f, N, 3>& rgb) const {
    const auto y = luma(rgb);
    return {y * 0.7132668F, (rgb[2] - y) * 0.4368627F + 0.6117647F, (rgb[0] - y) * 0.53192F + 0.5372549F};
  }
};

// The same rounded, with the offsets 156 * 257 and 137 * 257; samples without sign.
struct ToYccByLuma {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& rgb) const {
    const auto y = luma(rgb);
    return {truncate(y * 0.7132668F + 0.5F), truncate((rgb[2] - y) * 0.4368627F + 40092.5F),
            truncate((rgb[0] - y) * 0.53192F + 35209.5F)};
  }
};

// The same folded into a matrix, the offset second.
struct ToYcc16u {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& rgb) const {
    const auto& [r, g, b] = rgb;
    return {truncate(((r * 0.213267F + 0.5F) + g * 0.418688F) + b * 0.0813124F),
            truncate(((r * -0.130621F + 40092.5F) - g * 0.256437F) + b * 0.387058F),
            truncate(((r * 0.372876F + 35209.5F) - g * 0.312237F) - b * 0.0606389F)};
  }
};

// R = q + r, G = (q - 0.194 p) - 0.509 r, B = q + p, of scaled chroma p and r and scaled luma q.
template <int N>
ZIM_INLINE Pixels<Zim32f, N, 3> recombined(Lane<Zim32f, N> p, Lane<Zim32f, N> q, Lane<Zim32f, N> r) {
  return {q + r, (q - p * 0.194F) - r * 0.509F, q + p};
}

// Words, with chroma differences in integers. The store saturates.
struct FromYcc16u {
  using Sample = Zim32s;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32s, N, 3>& ycc) const {
    const auto p = toFloat(ycc[1] - 40092) * 2.2179F, r = toFloat(ycc[2] - 35209) * 1.8215F;
    const auto q = toFloat(ycc[0]) * 1.3584F + 0.5F;
    const auto rgb = recombined(p, q, r);
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return truncate(rgb[c]); });
  }
};

// Clamped to 0..1.
struct FromYcc32f {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32f, N, 3> operator()(const Pixels<Zim32f, N, 3>& ycc) const {
    const auto p = (ycc[1] - 0.6117647F) * 2.2179F, r = (ycc[2] - 0.5372549F) * 1.8215F;
    const auto rgb = recombined(p, ycc[0] * 1.3584F, r);
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return clamp(rgb[c], 0.0F, 1.0F); });
  }
};

using ToYcc16s = MovedUp<ToYccByLuma>;
using FromYcc16s = MovedUp<FromYcc16u>;

using Bytes = Rules<N_S, Offsets::bytes32, RowParallel>;
using Elements = Rules<N_S, Offsets::elements32, RowParallel>;

}  // namespace

// clang-format off
//            export                  rules     source        destination   further  kernel
ZIM_PIXELWISE(zimiRGBToYCC_8u_C3R,    Bytes,    C3<Zim8u>,    C3<Zim8u>,    (),      ToYcc8u{})
ZIM_PIXELWISE(zimiRGBToYCC_8u_AC4R,   Bytes,    AC4<Zim8u>,   AC4<Zim8u>,   (),      ToYcc8u{})
ZIM_PIXELWISE(zimiRGBToYCC_16u_C3R,   Elements, C3<Zim16u>,   C3<Zim16u>,   (),      ToYcc16u{})
ZIM_PIXELWISE(zimiRGBToYCC_16u_AC4R,  Elements, AC4<Zim16u>,  AC4<Zim16u>,  (),      ToYcc16u{})
ZIM_PIXELWISE(zimiRGBToYCC_16s_C3R,   Elements, C3<Zim16s>,   C3<Zim16s>,   (),      ToYcc16s{})
ZIM_PIXELWISE(zimiRGBToYCC_16s_AC4R,  Elements, AC4<Zim16s>,  AC4<Zim16s>,  (),      ToYcc16s{})
ZIM_PIXELWISE(zimiRGBToYCC_32f_C3R,   Elements, C3<Zim32f>,   C3<Zim32f>,   (),      ToYcc32f{})
ZIM_PIXELWISE(zimiRGBToYCC_32f_AC4R,  Elements, AC4<Zim32f>,  AC4<Zim32f>,  (),      ToYcc32f{})

ZIM_PIXELWISE(zimiYCCToRGB_8u_C3R,    Bytes,    C3<Zim8u>,    C3<Zim8u>,    (),      FromYcc8u{})
ZIM_PIXELWISE(zimiYCCToRGB_8u_AC4R,   Bytes,    AC4<Zim8u>,   AC4<Zim8u>,   (),      FromYcc8u{})
ZIM_PIXELWISE(zimiYCCToRGB_16u_C3R,   Elements, C3<Zim16u>,   C3<Zim16u>,   (),      FromYcc16u{})
ZIM_PIXELWISE(zimiYCCToRGB_16u_AC4R,  Elements, AC4<Zim16u>,  AC4<Zim16u>,  (),      FromYcc16u{})
ZIM_PIXELWISE(zimiYCCToRGB_16s_C3R,   Elements, C3<Zim16s>,   C3<Zim16s>,   (),      FromYcc16s{})
ZIM_PIXELWISE(zimiYCCToRGB_16s_AC4R,  Elements, AC4<Zim16s>,  AC4<Zim16s>,  (),      FromYcc16s{})
ZIM_PIXELWISE(zimiYCCToRGB_32f_C3R,   Elements, C3<Zim32f>,   C3<Zim32f>,   (),      FromYcc32f{})
ZIM_PIXELWISE(zimiYCCToRGB_32f_AC4R,  Elements, AC4<Zim32f>,  AC4<Zim32f>,  (),      FromYcc32f{})
