// CIE 1976 L*a*b* of linear BGR with the primaries of BT.709 and its white D65, and back.
//
// L fills the range of the sample with 0 to 100; a and b are moved up by 128, and by 16 bits scaled by 255. Everything
// is computed in single precision, in the order written, unless it says double. The two forms of a direction differ on
// purpose: those of 8 bits round, those with 16 bits truncate.

#include "frame/pixelwise.h"
#include "models/cube_root.h"

using namespace zim;

namespace {

constexpr Zim32f kWhiteX = 242.366F, kWhiteY = 255.0F, kWhiteZ = 277.632F;
constexpr Zim32f kCubeRootAbove = 0.008856F;

// ---- BGR to Lab ----

// A share of white, and what stands for its cube root: below the threshold a line.
template <int N>
struct Share {
  Lane<Zim32f, N> value, root;
  Lane<Zim32s, N> onCube;

  ZIM_INLINE explicit Share(Lane<Zim32f, N> share) : value(share), onCube(share > Lane<Zim32f, N>(kCubeRootAbove)) {
    root = select(onCube, cubeRoot(value, onCube), value * 7.787F + 0.13793103F);
  }
};

template <int N>
struct Shares {
  Share<N> y, x, z;

  ZIM_INLINE explicit Shares(const Pixels<Zim32f, N, 3>& bgr)
      : y((bgr[0] * 0.072169F + bgr[1] * 0.71516F + bgr[2] * 0.212671F) / kWhiteY),
        x((bgr[0] * 0.180423F + bgr[1] * 0.35758F + bgr[2] * 0.412453F) / kWhiteX),
        z((bgr[0] * 0.950227F + bgr[1] * 0.119193F + bgr[2] * 0.019334F) / kWhiteZ) {}
};

// Of the low bits that are kept, 8.
struct ToLab8u {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& bgr) const {
    const auto [y, x, z] = Shares<N>(bgr);
    const auto l = select(y.onCube, y.root * 116.0F - 16.0F, y.value * 903.3F);
    const auto stored = [](Lane<Zim32f, N> value) ZIM_LAMBDA { return truncate(value) & 255; };
    return {stored(l * 255.0F / 100.0F + 0.5F), stored((x.root - y.root) * 500.0F + 128.5F),
            stored((y.root - z.root) * 200.0F + 128.5F)};
  }
};

// Of the low bits that are kept, 16. Lightness comes from a power in double whose exponent is a third in single
// precision.
struct ToLab16u {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& bgr) const {
    const auto [y, x, z] = Shares<N>(bgr);
    const auto l = select(y.onCube, cubeLightness(y.value), y.value * 903.3F);
    const auto stored = [](Lane<Zim32f, N> value) ZIM_LAMBDA { return truncate(value) & 0xFFFF; };
    return {stored(l * 65535.0F / 100.0F), stored(((x.root - y.root) * 500.0F + 128.0F) * 255.0F),
            stored(((y.root - z.root) * 200.0F + 128.0F) * 255.0F)};
  }

 private:
  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> cubeLightness(Lane<Zim32f, N> y) {
    if constexpr (N == 1) {
      return Lane<Zim32f, N>(
          static_cast<Zim32f>(std::pow(static_cast<double>(y.v), double{0.33333334F}) * 116.0 - 16.0));
    } else {
      auto values = asArray(y);
      for (Zim32f& value : values) value = cubeLightness(Lane<Zim32f, 1>(value)).v;
      return load<Zim32f, N, 1>(reinterpret_cast<const std::byte*>(values.data()))[0];
    }
  }
};

// ---- Lab to BGR: the cube at any lightness, without a linear part ----

template <int N>
struct Linear {
  Lane<Zim32f, N> blue, green, red;

  ZIM_INLINE Linear(Lane<Zim32f, N> fx, Lane<Zim32f, N> fy, Lane<Zim32f, N> fz) {
    const auto x = fx * kWhiteX * fx * fx, y = fy * kWhiteY * fy * fy, z = fz * kWhiteZ * fz * fz;
    red = x * 3.240479F - y * 1.53715F - z * 0.498535F;
    green = x * -0.969256F + y * 1.875991F + z * 0.041556F;
    blue = x * 0.055648F - y * 0.204043F + z * 1.057311F;
  }
};

// Rounded in double, half up, then clamped.
struct FromLab8u {
  using Sample = Zim32s;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32s, N, 3>& lab) const {
    const auto fy = (toFloat(lab[0]) * 100.0F / 255.0F + 16.0F) / 116.0F;
    const auto fx = toFloat(lab[1] - 128) / 500.0F + fy;
    const auto fz = fy - (toFloat(lab[2]) - 128.0F) / 200.0F;
    const Linear<N> rgb(fx, fy, fz);
    const auto stored = [](Lane<Zim32f, N> value) ZIM_LAMBDA { return clamp(truncate(widen(value) + 0.5), 0, 255); };
    return {stored(rgb.blue), stored(rgb.green), stored(rgb.red)};
  }
};

// Truncated, then clamped.
struct FromLab16u {
  using Sample = Zim32s;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32s, N, 3>& lab) const {
    const auto fy = (toFloat(lab[0]) * 100.0F / 65535.0F + 16.0F) / 116.0F;
    const auto fx = (toFloat(lab[1]) / 255.0F - 128.0F) / 500.0F + fy;
    const auto fz = fy - (toFloat(lab[2]) / 255.0F - 128.0F) / 200.0F;
    const Linear<N> rgb(fx, fy, fz);
    const auto stored = [](Lane<Zim32f, N> value) ZIM_LAMBDA { return clamp(truncate(value), 0, 255); };
    return {stored(rgb.blue), stored(rgb.green), stored(rgb.red)};
  }
};

using Bytes = Rules<N_S, Offsets::bytes, AlwaysParallel>;

}  // namespace

// clang-format off
//            export                   rules  source      destination further  kernel
ZIM_PIXELWISE(zimiBGRToLab_8u_C3R,     Bytes, C3<Zim8u>,  C3<Zim8u>,  (),      ToLab8u{})
ZIM_PIXELWISE(zimiBGRToLab_8u16u_C3R,  Bytes, C3<Zim8u>,  C3<Zim16u>, (),      ToLab16u{})
ZIM_PIXELWISE(zimiLabToBGR_8u_C3R,     Bytes, C3<Zim8u>,  C3<Zim8u>,  (),      FromLab8u{})
ZIM_PIXELWISE(zimiLabToBGR_16u8u_C3R,  Bytes, C3<Zim16u>, C3<Zim8u>,  (),      FromLab16u{})
