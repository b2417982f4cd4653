// CIE 1976 L*a*b* of linear BGR with the primaries of BT.709 and its white D65, and back.
//
// L fills the range of the sample with 0 to 100; a and b are moved up by 128, and by 16 bits scaled by 255. Everything
// is computed in single precision, in the order written, unless it says double. The two forms of a direction differ on
// purpose: those of 8 bits round, those with 16 bits truncate.

#include "frame/pixelwise.h"
#include "models/cube_root.h"
#include "tone/power_curve.h"

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

  template <class CubeRootOf>
  ZIM_INLINE Share(Lane<Zim32f, N> share, const CubeRootOf& cubeRoot)
      : value(share), onCube(share > Lane<Zim32f, N>(kCubeRootAbove)) {
    root = select(onCube, cubeRoot(value, onCube), value * 7.787F + 0.13793103F);
  }
};

template <int N>
struct Shares {
  Share<N> y, x, z;

  template <class CubeRootOf>
  ZIM_INLINE Shares(const Pixels<Zim32f, N, 3>& bgr, const CubeRootOf& cubeRoot)
      : y((bgr[0] * 0.072169F + bgr[1] * 0.71516F + bgr[2] * 0.212671F) / kWhiteY, cubeRoot),
        x((bgr[0] * 0.180423F + bgr[1] * 0.35758F + bgr[2] * 0.412453F) / kWhiteX, cubeRoot),
        z((bgr[0] * 0.950227F + bgr[1] * 0.119193F + bgr[2] * 0.019334F) / kWhiteZ, cubeRoot) {}
};

// Of the low bits that are kept, 8.
//
// Lanes take roots that are near the right ones, and so find the results before truncation within a margin: the
// sensitivity to the roots, which are at most 1, times their error, and 2e-4 for roundings, here and in the exact
// steps, of numbers below 512. Pixels for which truncation within the margin is not unique are redone with the right
// roots.
struct ToLab8u {
  using Sample = Zim32f;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& bgr) const {
    const auto cubeRoot = [](Lane<Zim32f, N> x, [[maybe_unused]] Lane<Zim32s, N> wanted) ZIM_LAMBDA {
      if constexpr (N == 1) {
        return Lane<Zim32f, 1>(wanted.v != 0 ? std::cbrt(x.v) : x.v);
      } else {
        return nearCubeRoot(x);
      }
    };
    const Shares<N> share(bgr, cubeRoot);
    const auto& [y, x, z] = share;
    const auto l = select(y.onCube, y.root * 116.0F - 16.0F, y.value * 903.3F);
    const Pixels<Zim32f, N, 3> lab = {l * 255.0F / 100.0F + 0.5F, (x.root - y.root) * 500.0F + 128.5F,
                                      (y.root - z.root) * 200.0F + 128.5F};
    if constexpr (N == 1) {
      return perChannel<3>([&](auto c) { return truncate(lab[c]) & 255; });
    } else {
      constexpr Zim32f sensitivity[3] = {116.0F * 2.55F, 2 * 500.0F, 2 * 200.0F};
      const auto end = [&](Zim32f sign) ZIM_LAMBDA {
        return perChannel<3>(
            [&](auto c) ZIM_LAMBDA { return truncate(lab[c] + sign * (sensitivity[c] * kNearCubeRootError + 2e-4F)); });
      };
      const auto low = end(-1), high = end(1);
      const auto inDoubt = (low[0] != high[0]) | (low[1] != high[1]) | (low[2] != high[2]);
      const auto stored = perChannel<3>([&](auto c) ZIM_LAMBDA { return low[c] & 255; });
      return any(inDoubt) ? pixelsOneByOne(*this, stored, inDoubt, bgr) : stored;
    }
  }
};

// Of the low bits that are kept, 16. Lightness comes from a power in double whose exponent is a third in single
// precision: near 1/3, but not that. Lanes compute it at both ends of a bound, as the gamma curves do.
constexpr PowerCurve<-7, 8> kThirdPower({double{0.33333334F}, 0.0, 1.0}, 2.1e-11);

struct ToLab16u {
  using Sample = Zim32f;
  CubeRoot cubeRoot;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& bgr) const {
    const Shares<N> share(bgr, cubeRoot);
    const auto& [y, x, z] = share;
    Lane<Zim32s, N> inDoubt = 0;
    const auto l = select(y.onCube, lightness(y, inDoubt), y.value * 903.3F);
    const auto stored = [](Lane<Zim32f, N> value) ZIM_LAMBDA { return truncate(value) & 0xFFFF; };
    const Pixels<Zim32s, N, 3> lab = {stored(l * 65535.0F / 100.0F),
                                      stored(((x.root - y.root) * 500.0F + 128.0F) * 255.0F),
                                      stored(((y.root - z.root) * 200.0F + 128.0F) * 255.0F)};
    return any(inDoubt) ? pixelsOneByOne(*this, lab, inDoubt, bgr) : lab;
  }

 private:
  // Above the threshold. Single lanes are never in doubt.
  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> lightness(const Share<N>& y, [[maybe_unused]] Lane<Zim32s, N>& inDoubt) {
    const auto fromPower = [](auto power) ZIM_LAMBDA { return narrow<Zim32f>(power * 116.0 - 16.0); };
    const auto wide = widen(y.value);
    if constexpr (N == 1) {
      return fromPower(Lane<Zim64f, 1>(std::pow(wide.v, kThirdPower.function.exponent)));
    } else {
      const auto power = approximatePower(kThirdPower, larger(wide, Lane<Zim64f, N>(kThirdPower.first)));
      const auto low = fromPower(power * (1.0 - kThirdPower.relativeBound));
      inDoubt = bitsAs<Zim32s>(low != fromPower(power * (1.0 + kThirdPower.relativeBound))) & y.onCube;
      return low;
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
ZIM_PIXELWISE(zimiBGRToLab_8u16u_C3R,  Bytes, C3<Zim8u>,  C3<Zim16u>, (),      ToLab16u{CubeRoot(roiSize)})
ZIM_PIXELWISE(zimiLabToBGR_8u_C3R,     Bytes, C3<Zim8u>,  C3<Zim8u>,  (),      FromLab8u{})
ZIM_PIXELWISE(zimiLabToBGR_16u8u_C3R,  Bytes, C3<Zim16u>, C3<Zim8u>,  (),      FromLab16u{})
