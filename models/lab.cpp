// CIE 1976 L*a*b* of linear BGR with the primaries of BT.709 and its white D65, and back.
//
// L fills the range of the sample with 0 to 100; a and b are moved up by 128, and by 16 bits scaled by 255. Everything
// is computed in single precision, in the order written, unless it says double. The two forms of a direction differ on
// purpose: those of 8 bits round, those with 16 bits truncate.

#include "frame/lanes/integer_quotients.h"
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

// scale(sum, white) makes a share of a weighted sum.
template <int N>
struct Shares {
  Share<N> y, x, z;

  template <class Scale, class CubeRootOf>
  ZIM_INLINE Shares(const Pixels<Zim32f, N, 3>& bgr, const Scale& scale, const CubeRootOf& cubeRoot)
      : y(scale(bgr[0] * 0.072169F + bgr[1] * 0.71516F + bgr[2] * 0.212671F, kWhiteY), cubeRoot),
        x(scale(bgr[0] * 0.180423F + bgr[1] * 0.35758F + bgr[2] * 0.412453F, kWhiteX), cubeRoot),
        z(scale(bgr[0] * 0.950227F + bgr[1] * 0.119193F + bgr[2] * 0.019334F, kWhiteZ), cubeRoot) {}
};

constexpr auto kDivided = [](auto sum, Zim32f white) ZIM_LAMBDA { return sum / white; };

// No result leaves 0 to 255.
struct ToLab8u {
  using Sample = Zim32f;
  static constexpr int registers = 2;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& bgr) const {
    if constexpr (N > 1) {
      return near(bgr);
    } else {
      const Shares<1> share(bgr, kDivided, libraryCubeRoot);
      const auto& [y, x, z] = share;
      const auto l = select(y.onCube, y.root * 116.0F - 16.0F, y.value * 903.3F);
      return {truncate(l * 255.0F / 100.0F + 0.5F), truncate((x.root - y.root) * 500.0F + 128.5F),
              truncate((y.root - z.root) * 200.0F + 128.5F)};
    }
  }

 private:
  // Lanes take roots that are near the right ones, and so find what is truncated but for a margin. That is the error of
  // the roots, which are at most 1, times what they are multiplied with, and 3e-4 for everything else: the roundings,
  // here and in the exact steps, of numbers below 512 and of shares. At the threshold the line is less than 1e-6 from
  // the root, so that a share on its other side is within the margin, too. Pixels of which truncation leaves two values
  // are redone.
  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> near(const Pixels<Zim32f, N, 3>& bgr) const {
    const auto scaled = [](Lane<Zim32f, N> sum, Zim32f white) ZIM_LAMBDA { return sum * (1.0F / white); };
    const Shares<N> share(bgr, scaled, [](Lane<Zim32f, N> x, auto) ZIM_LAMBDA { return nearCubeRoot(x); });
    const auto& [y, x, z] = share;
    constexpr Zim32f unit = 2.55F, error = kNearCubeRootError, rounding = 3e-4F;
    const Ends<N> l(select(y.onCube, y.root * (116.0F * unit) - 16.0F * unit, y.value * (903.3F * unit)), 0.5F,
                    116.0F * unit * error + rounding);
    const Ends<N> a((x.root - y.root) * 500.0F, 128.5F, 2 * 500.0F * error + rounding);
    const Ends<N> b((y.root - z.root) * 200.0F, 128.5F, 2 * 200.0F * error + rounding);
    const Pixels<Zim32s, N, 3> lab = {l.low, a.low, b.low};
    const auto inDoubt = ((l.high - l.low) | (a.high - a.low) | (b.high - b.low)) > Lane<Zim32s, N>(0);
    return any(inDoubt) ? pixelsOneByOne(*this, lab, inDoubt, bgr) : lab;
  }

  // A sum, truncated at both ends of its margin.
  template <int N>
  struct Ends {
    Lane<Zim32s, N> low, high;

    ZIM_INLINE Ends(Lane<Zim32f, N> value, Zim32f bias, Zim32f margin)
        : low(truncate(value + (bias - margin))), high(truncate(value + (bias + margin))) {}
  };
};

// Of the low bits that are kept, 16. Lightness comes from a power in double whose exponent is a third in single
// precision: near 1/3, but not that. Lanes compute it at both ends of a bound, as the gamma curves do.
constexpr Power<-7, 8> kThirdPower({double{0.33333334F}, 0.0, 1.0}, kParts == 4 ? 6.5e-13 : 2.1e-11);

struct ToLab16u {
  using Sample = Zim32f;
  static constexpr int registers = kTwoIfNarrow;
  CubeRoot cubeRoot;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& bgr) const {
    const Shares<N> share(bgr, kDivided,
                          [this](auto x, auto wanted) ZIM_LAMBDA { return cubeRoot.ofShare(x, wanted); });
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

// Rounded, half up: twice the value, truncated, has the half.
struct FromLab8u {
  using Sample = Zim32s;
  static constexpr int registers = 2;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32s, N, 3>& lab) const {
    const auto fy = (shareOf<100, 255>(toFloat(lab[0])) + 16.0F) / 116.0F;
    const auto fx = IntegerQuotient<1, 500, -128, 127>::of(toFloat(lab[1] - 128)) + fy;
    const auto fz = fy - IntegerQuotient<1, 200, -128, 127>::of(toFloat(lab[2] - 128));
    const Linear<N> rgb(fx, fy, fz);
    const auto stored = [](Lane<Zim32f, N> value) ZIM_LAMBDA { return (truncate(value + value) + 1) >> 1; };
    return {stored(rgb.blue), stored(rgb.green), stored(rgb.red)};
  }
};

// Truncated.
struct FromLab16u {
  using Sample = Zim32s;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32s, N, 3>& lab) const {
    const auto moved = [](Lane<Zim32s, N> a)
                           ZIM_LAMBDA { return IntegerQuotient<1, 255, 0, 65535>::of(toFloat(a)) - 128.0F; };
    const auto fy = (shareOf<100, 65535>(toFloat(lab[0])) + 16.0F) / 116.0F;
    const auto fx = moved(lab[1]) / 500.0F + fy;
    const auto fz = fy - moved(lab[2]) / 200.0F;
    const Linear<N> rgb(fx, fy, fz);
    return {truncate(rgb.blue), truncate(rgb.green), truncate(rgb.red)};
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
