// RGB to and from CIE XYZ: the primaries of BT.709, white D65, RGB linear.

#include "frame/adapters.h"
#include "frame/lanes/fixed_point.h"
#include "frame/pixelwise.h"

using namespace zim;

namespace {

// Truncated, without a rounding term: white becomes (242, 254, 255). Only Z can exceed 255, and saturates.
struct ToXyz8u {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> rgb) const {
    const auto& [r, g, b] = rgb;
    return {fixedDot<FixedRow{{27030, 23434, 11824}, 0}>(r, g, b), fixedDot<FixedRow{{13937, 46868, 4729}, 0}>(r, g, b),
            fixedDot<FixedRow{{1267, 7811, 62274}, 0}>(r, g, b)};
  }
};

// Rounded down, then saturated; before that within [-520, 826].
struct FromXyz8u {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> xyz) const {
    const auto& [x, y, z] = xyz;
    return {fixedDot<FixedRow{{212368, -100738, -32671}, 0}>(x, y, z),
            fixedDot<FixedRow{{-63521, 122944, 2723}, 0}>(x, y, z),
            fixedDot<FixedRow{{3646, -13372, 69291}, 0}>(x, y, z)};
  }
};

struct Matrix {
  Zim32f rows[3][3];
};
constexpr Matrix kToXyz = {{{0.412453F, 0.35758F, 0.180423F},  //
                            {0.212671F, 0.71516F, 0.072169F},
                            {0.019334F, 0.119193F, 0.950227F}}};
constexpr Matrix kFromXyz = {{{3.240479F, -1.53715F, -0.498535F},  //
                              {-0.969256F, 1.875991F, 0.041556F},
                              {0.055648F, -0.204043F, 1.057311F}}};

// Float samples: (m0 a + m1 b) + m2 c, neither rounded nor clamped.
template <const Matrix& matrix, int N>
ZIM_INLINE Pixels<Zim32f, N, 3> product(const Pixels<Zim32f, N, 3>& in) {
  return perChannel<3>([&](auto k) ZIM_LAMBDA {
    constexpr const auto& m = matrix.rows[k];
    return (in[0] * m[0] + in[1] * m[1]) + in[2] * m[2];
  });
}

// Only Z is clamped to 0..1.
struct ToXyz32f {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32f, N, 3> operator()(Pixels<Zim32f, N, 3> rgb) const {
    const auto [x, y, z] = product<kToXyz>(rgb);
    return {x, y, clamp(z, 0.0F, 1.0F)};
  }
};

struct FromXyz32f {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32f, N, 3> operator()(Pixels<Zim32f, N, 3> xyz) const {
    const auto rgb = product<kFromXyz>(xyz);
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return clamp(rgb[c], 0.0F, 1.0F); });
  }
};

// Words: ((m0 a + 0.5) + m1 b) + m2 c in single precision, truncated. The store saturates, which concerns only Z on the
// way to XYZ: the other rows stay within a word.
template <const Matrix& matrix>
struct Words {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& in) const {
    return perChannel<3>([&](auto k) ZIM_LAMBDA {
      constexpr const auto& m = matrix.rows[k];
      return truncate(((in[0] * m[0] + 0.5F) + in[1] * m[1]) + in[2] * m[2]);
    });
  }
};
using ToXyz16u = Words<kToXyz>;
using ToXyz16s = MovedUp<Words<kToXyz>>;
using FromXyz16s = MovedUp<Words<kFromXyz>>;

// B ends in double: (t + 0.5) + 1.057311 Z, with t = 0.055648 X - 0.204043 Y in single precision.
struct FromXyz16u {
  using Sample = Zim32s;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32s, N, 3>& xyz) const {
    const auto in = perChannel<3>([&](auto c) ZIM_LAMBDA { return toFloat(xyz[c]); });
    const auto [r, g, unused] = Words<kFromXyz>()(in);
    constexpr const auto& m = kFromXyz.rows[2];
    const auto t = in[0] * m[0] + in[1] * m[1];
    return {r, g, truncate((widen(t) + 0.5) + widen(xyz[2]) * 1.057311)};
  }
};

using Bytes = Rules<N_S, Offsets::bytes32, RowParallel>;
using Elements = Rules<N_S, Offsets::elements32, RowParallel>;

}  // namespace

// clang-format off
//            export                  rules     source        destination   further  kernel
ZIM_PIXELWISE(zimiRGBToXYZ_8u_C3R,    Bytes,    C3<Zim8u>,    C3<Zim8u>,    (),      ToXyz8u{})
ZIM_PIXELWISE(zimiRGBToXYZ_8u_AC4R,   Bytes,    AC4<Zim8u>,   AC4<Zim8u>,   (),      ToXyz8u{})
ZIM_PIXELWISE(zimiRGBToXYZ_16u_C3R,   Elements, C3<Zim16u>,   C3<Zim16u>,   (),      ToXyz16u{})
ZIM_PIXELWISE(zimiRGBToXYZ_16u_AC4R,  Elements, AC4<Zim16u>,  AC4<Zim16u>,  (),      ToXyz16u{})
ZIM_PIXELWISE(zimiRGBToXYZ_16s_C3R,   Elements, C3<Zim16s>,   C3<Zim16s>,   (),      ToXyz16s{})
ZIM_PIXELWISE(zimiRGBToXYZ_16s_AC4R,  Elements, AC4<Zim16s>,  AC4<Zim16s>,  (),      ToXyz16s{})
ZIM_PIXELWISE(zimiRGBToXYZ_32f_C3R,   Elements, C3<Zim32f>,   C3<Zim32f>,   (),      ToXyz32f{})
ZIM_PIXELWISE(zimiRGBToXYZ_32f_AC4R,  Elements, AC4<Zim32f>,  AC4<Zim32f>,  (),      ToXyz32f{})

ZIM_PIXELWISE(zimiXYZToRGB_8u_C3R,    Bytes,    C3<Zim8u>,    C3<Zim8u>,    (),      FromXyz8u{})
ZIM_PIXELWISE(zimiXYZToRGB_8u_AC4R,   Bytes,    AC4<Zim8u>,   AC4<Zim8u>,   (),      FromXyz8u{})
ZIM_PIXELWISE(zimiXYZToRGB_16u_C3R,   Elements, C3<Zim16u>,   C3<Zim16u>,   (),      FromXyz16u{})
ZIM_PIXELWISE(zimiXYZToRGB_16u_AC4R,  Elements, AC4<Zim16u>,  AC4<Zim16u>,  (),      FromXyz16u{})
ZIM_PIXELWISE(zimiXYZToRGB_16s_C3R,   Elements, C3<Zim16s>,   C3<Zim16s>,   (),      FromXyz16s{})
ZIM_PIXELWISE(zimiXYZToRGB_16s_AC4R,  Elements, AC4<Zim16s>,  AC4<Zim16s>,  (),      FromXyz16s{})
ZIM_PIXELWISE(zimiXYZToRGB_32f_C3R,   Elements, C3<Zim32f>,   C3<Zim32f>,   (),      FromXyz32f{})
ZIM_PIXELWISE(zimiXYZToRGB_32f_AC4R,  Elements, AC4<Zim32f>,  AC4<Zim32f>,  (),      FromXyz32f{})
