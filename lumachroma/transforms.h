// RGB to and from YCbCr and YUV: the coefficient sets, and the two transforms that they parametrise.
//
// The sets are deliberately not unified: some differ by a unit in a coefficient, and each export names its own.
#pragma once

#include "frame/lanes/fixed_point.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Multipliers of R, G and B, in units of 1/65536.
struct EncoderSet {
  Zim32s y[3], cb[3], cr[3];
};

// BT.601, studio range.
inline constexpr EncoderSet E601 = {{16843, 33030, 6423}, {-9699, -19071, 28770}, {28770, -24117, -4653}};

// Multipliers of luma, which starts at black, and of the chroma differences u = Cb - 128 and v = Cr - 128.
struct DecoderSet {
  Zim32s luma, redV, greenU, greenV, blueU;
  Zim16s black;
};

inline constexpr DecoderSet D601 = {76284, 104595, -25690, -53281, 132186, 16};
inline constexpr DecoderSet D601b = {76282, 104593, -25689, -53279, 132184, 16};
inline constexpr DecoderSet D709CSC = {76284, 117506, -13959, -34996, 138609, 16};
inline constexpr DecoderSet DYUV = {65536, 74711, -25821, -38076, 133169, 0};
inline constexpr DecoderSet DYUVb = {65536, 74710, -25820, -38075, 133168, 0};

enum class Rounding : Zim32s { truncating = 0, rounding = 32768 };

// Y  = (y . rgb + 16.5 * 65536) >> 16                  range [16, 235]
// Cb = (cb . rgb + 128.5 * 65536) >> 16, Cr alike      range [16, 240]
template <EncoderSet set>
struct Encode {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> rgb) const {
    constexpr Zim32s lumaBias = 1081344, chromaBias = 8421376;
    return {channel<FixedRow{{set.y[1], set.y[0], set.y[2]}, lumaBias}>(rgb),
            channel<FixedRow{{set.cb[1], set.cb[0], set.cb[2]}, chromaBias}>(rgb),
            channel<FixedRow{{set.cr[1], set.cr[0], set.cr[2]}, chromaBias}>(rgb)};
  }

 private:
  // Green comes first, since its luma weight may need both pairs of a row.
  template <FixedRow row, int N>
  ZIM_INLINE static Lane<Zim16s, N> channel(Pixels<Zim16s, N, 3> rgb) {
    return fixedDot<row>(rgb[1], rgb[0], rgb[2]);
  }
};

// Analogue YUV. With S = 19595 R + 38470 G + 7471 B, whose weights add up to 65536:
//   Y = S >> 16, truncated
//   U = ((((B << 16) - S + 32767) >> 16) * 32244 >> 16) + 128     range [16, 239]
//   V = ((((R << 16) - S + 32767) >> 16) * 57475 >> 16) + 128     range [-29, 284], saturated
// The 32767 rounds the differences, not the scaled results.
struct EncodeYuv {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> rgb) const {
    const auto& [r, g, b] = rgb;
    // 2 Y and a bit: halved as it is, and rounded to the luma that leaves the differences rounded as above.
    const auto twiceY = fixedDot<FixedRow{{38470, 19595, 7471}, 0}, 15>(g, r, b);
    const auto y = twiceY >> 1, rounded = (twiceY + 1) >> 1;
    const auto u = b - rounded, v = r - rounded;
    // 57475 = 65536 - 8061, so that the factor fits 16 bits.
    return {y, multiplyHigh(u, Lane<Zim16s, N>(32244)) + 128, v + multiplyHigh(v, Lane<Zim16s, N>(-8061)) + 128};
  }
};

// R = sat((luma (Y - black) + redV v + rounding) >> 16), G and B alike; before saturation within [-289, 547].
template <DecoderSet set, Rounding rounding>
struct Decode {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> ycc) const {
    constexpr auto bias = static_cast<Zim32s>(rounding);
    const auto y = ycc[0] - set.black, u = ycc[1] - 128, v = ycc[2] - 128;
    return {fixedDot<FixedRow{{set.luma, 0, set.redV}, bias}>(y, u, v),
            fixedDot<FixedRow{{set.luma, set.greenU, set.greenV}, bias}>(y, u, v),
            fixedDot<FixedRow{{set.luma, set.blueU, 0}, bias}>(y, u, v)};
  }
};

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
