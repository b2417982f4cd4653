// RGB and BGR to and from YCoCg, in a plain and in a reversible form.
//
// The kernels see R, G, B in the order of their parameters; the table says which order the samples have in memory.

#include "frame/adapters.h"
#include "frame/pixelwise.h"

using namespace zim;

namespace {

// The low 16 bits as a signed value.
template <int N>
ZIM_INLINE Lane<Zim32s, N> cutTo16(Lane<Zim32s, N> a) {
  return (a << 16) >> 16;
}

// ---- Forward: planes Y, Co, Cg ----

// Y = (R + 2G + B + 2) >> 2, Co = (R - B + 1) >> 1, Cg = (2G - R - B + 2) >> 2
template <class T>
struct ToYCoCg {
  using Sample = T;

  template <int N>
  ZIM_INLINE Pixels<T, N, 3> operator()(Pixels<T, N, 3> rgb) const {
    const auto& [r, g, b] = rgb;
    const auto sum = r + b, twiceGreen = g + g;
    return {(sum + twiceGreen + 2) >> 2, (r - b + 1) >> 1, (twiceGreen - sum + 2) >> 2};
  }
};

// The same on 16-bit samples in 16-bit lanes, of which the low bits are kept. With samples moved up by 32768, the mean
// of R and B rounded up, M = (R + B + 1) >> 1, and down, M - ((R ^ B) & 1), which loses a half that does not reach the
// results:
//   Y = (down(M) + G + 1) >> 1,  Cg = (G - M + 1) >> 1
// where a difference (a - b + 1) >> 1 is ((a + ~b + 1) >> 1) + ((a ^ b) & 1).
struct ToYCoCgWords {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(const Pixels<Zim16s, N, 3>& rgb) const {
    const auto& [r, g, b] = perChannel<3>([&](auto c) ZIM_LAMBDA { return bitsAs<Zim16u>(rgb[c]) ^ sign<N>(); });
    const auto mean = averageUp(r, b);
    return {moved(averageUp(mean - isOdd(r, b), g)), halfDifference(r, b), halfDifference(g, mean)};
  }

 private:
  template <int N>
  ZIM_INLINE static Lane<Zim16u, N> sign() {
    return Zim16u{0x8000};
  }
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> moved(Lane<Zim16u, N> a) {
    return bitsAs<Zim16s>(a ^ sign<N>());
  }
  template <int N>
  ZIM_INLINE static Lane<Zim16u, N> isOdd(Lane<Zim16u, N> a, Lane<Zim16u, N> b) {
    return (a ^ b) & Lane<Zim16u, N>(1);
  }
  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> halfDifference(Lane<Zim16u, N> a, Lane<Zim16u, N> b) {
    return moved(averageUp(a, ~b)) + bitsAs<Zim16s>(isOdd(a, b));
  }
};

// Chroma about 128; of its range, [1, 256], only the upper end needs a limit, which the store sets.
struct ToYCoCgOffset : ToYCoCg<Zim16s> {
  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> rgb) const {
    const auto& [y, co, cg] = ToYCoCg::operator()(rgb);
    return {y, co + 128, cg + 128};
  }
};

// Co = R - B, t = B + (Co >> 1), Cg = G - t, Y = t + (Cg >> 1). On 16-bit samples in 16-bit lanes every step wraps.
template <class T>
struct ToYCoCgReversible {
  using Sample = T;

  template <int N>
  ZIM_INLINE Pixels<T, N, 3> operator()(Pixels<T, N, 3> rgb) const {
    const auto& [r, g, b] = rgb;
    const auto co = r - b;
    const auto t = b + (co >> 1);
    const auto cg = g - t;
    return {t + (cg >> 1), co, cg};
  }
};

// ---- Inverse ----

// R = Y + Co - Cg, G = Y + Cg, B = Y - Co - Cg. In 16-bit lanes the sums are cut to 16 bits.
template <class T>
struct FromYCoCg {
  using Sample = T;

  template <int N>
  ZIM_INLINE Pixels<T, N, 3> operator()(Pixels<T, N, 3> planes) const {
    const auto& [y, co, cg] = planes;
    const auto base = y - cg;
    return {base + co, y + cg, base - co};
  }
};

struct FromYCoCgOffset : FromYCoCg<Zim16s> {
  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> planes) const {
    const auto& [y, co, cg] = planes;
    return FromYCoCg::operator()(std::array{y, co - 128, cg - 128});
  }
};

// t = Y - (Cg >> 1), G = Cg + t, B = t - (Co >> 1), R = B + Co
template <class T>
struct FromYCoCgReversible {
  using Sample = T;

  template <int N>
  ZIM_INLINE Pixels<T, N, 3> operator()(Pixels<T, N, 3> planes) const {
    const auto& [y, co, cg] = planes;
    const auto t = y - (cg >> 1);
    const auto b = t - (co >> 1);
    return {b + co, cg + t, b};
  }
};

// ---- Orders and ranges ----

// Blue first in the source.
template <class Kernel>
struct OfBgr : Kernel {
  template <int N>
  ZIM_INLINE auto operator()(Pixels<typename Kernel::Sample, N, 3> bgr) const {
    return Kernel::operator()(std::array{bgr[2], bgr[1], bgr[0]});
  }
};

// 32-bit results of which 16 bits are stored.
template <class Kernel>
struct Cut : Kernel {
  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(Pixels<Zim32s, N, 3> pixels) const {
    const auto& [a, b, c] = Kernel::operator()(pixels);
    return {cutTo16(a), cutTo16(b), cutTo16(c)};
  }
};

using Narrow = OfBgr<ToYCoCg<Zim16s>>;
using NarrowReversible = OfBgr<ToYCoCgReversible<Zim16s>>;
using Words = OfBgr<ToYCoCgWords>;
using Wide = OfBgr<ToYCoCg<Zim32s>>;
using WideReversible = OfBgr<ToYCoCgReversible<Zim32s>>;

using ToBgr = Reversed<FromYCoCg<Zim16s>>;
using ToBgrReversible = Reversed<FromYCoCgReversible<Zim16s>>;
using ToBgrWide = Reversed<Cut<FromYCoCg<Zim32s>>>;
using ToBgrWideReversible = Reversed<Cut<FromYCoCgReversible<Zim32s>>>;

using NoSizeTest = Rules<N_Q>;

}  // namespace

#define AVAL(T) (T aval)

// clang-format off
//            export                               rules       source       destination  further        kernel
ZIM_PIXELWISE(zimiRGBToYCoCg_8u_C3P3R,             NoSizeTest, C3<Zim8u>,   P3<Zim8u>,   (),            ToYCoCgOffset{})
ZIM_PIXELWISE(zimiBGRToYCoCg_8u16s_C3P3R,          NoSizeTest, C3<Zim8u>,   P3<Zim16s>,  (),            Narrow{})
ZIM_PIXELWISE(zimiBGRToYCoCg_8u16s_C4P3R,          NoSizeTest, AC4<Zim8u>,  P3<Zim16s>,  (),            Narrow{})
ZIM_PIXELWISE(zimiBGRToYCoCg_Rev_8u16s_C3P3R,      NoSizeTest, C3<Zim8u>,   P3<Zim16s>,  (),            NarrowReversible{})
ZIM_PIXELWISE(zimiBGRToYCoCg_Rev_8u16s_C4P3R,      NoSizeTest, AC4<Zim8u>,  P3<Zim16s>,  (),            NarrowReversible{})
ZIM_PIXELWISE(zimiSBGRToYCoCg_16s_C3P3R,           NoSizeTest, C3<Zim16s>,  P3<Zim16s>,  (),            Words{})
ZIM_PIXELWISE(zimiSBGRToYCoCg_16s_C4P3R,           NoSizeTest, AC4<Zim16s>, P3<Zim16s>,  (),            Words{})
ZIM_PIXELWISE(zimiSBGRToYCoCg_16s32s_C3P3R,        NoSizeTest, C3<Zim16s>,  P3<Zim32s>,  (),            Wide{})
ZIM_PIXELWISE(zimiSBGRToYCoCg_16s32s_C4P3R,        NoSizeTest, AC4<Zim16s>, P3<Zim32s>,  (),            Wide{})
ZIM_PIXELWISE(zimiSBGRToYCoCg_Rev_16s_C3P3R,       NoSizeTest, C3<Zim16s>,  P3<Zim16s>,  (),            NarrowReversible{})
ZIM_PIXELWISE(zimiSBGRToYCoCg_Rev_16s_C4P3R,       NoSizeTest, AC4<Zim16s>, P3<Zim16s>,  (),            NarrowReversible{})
ZIM_PIXELWISE(zimiSBGRToYCoCg_Rev_16s32s_C3P3R,    NoSizeTest, C3<Zim16s>,  P3<Zim32s>,  (),            WideReversible{})
ZIM_PIXELWISE(zimiSBGRToYCoCg_Rev_16s32s_C4P3R,    NoSizeTest, AC4<Zim16s>, P3<Zim32s>,  (),            WideReversible{})

ZIM_PIXELWISE(zimiYCoCgToRGB_8u_P3C3R,             NoSizeTest, P3<Zim8u>,   C3<Zim8u>,   (),            FromYCoCgOffset{})
ZIM_PIXELWISE(zimiYCoCgToBGR_16s8u_P3C3R,          NoSizeTest, P3<Zim16s>,  C3<Zim8u>,   (),            ToBgr{})
ZIM_PIXELWISE(zimiYCoCgToBGR_16s8u_P3C4R,          NoSizeTest, P3<Zim16s>,  C4<Zim8u>,   AVAL(Zim8u),   withAlpha<ToBgr>(aval))
ZIM_PIXELWISE(zimiYCoCgToBGR_Rev_16s8u_P3C3R,      NoSizeTest, P3<Zim16s>,  C3<Zim8u>,   (),            ToBgrReversible{})
ZIM_PIXELWISE(zimiYCoCgToBGR_Rev_16s8u_P3C4R,      NoSizeTest, P3<Zim16s>,  C4<Zim8u>,   AVAL(Zim8u),   withAlpha<ToBgrReversible>(aval))
ZIM_PIXELWISE(zimiYCoCgToSBGR_16s_P3C3R,           NoSizeTest, P3<Zim16s>,  C3<Zim16s>,  (),            ToBgr{})
ZIM_PIXELWISE(zimiYCoCgToSBGR_16s_P3C4R,           NoSizeTest, P3<Zim16s>,  C4<Zim16s>,  AVAL(Zim16s),  withAlpha<ToBgr>(aval))
ZIM_PIXELWISE(zimiYCoCgToSBGR_32s16s_P3C3R,        NoSizeTest, P3<Zim32s>,  C3<Zim16s>,  (),            ToBgrWide{})
ZIM_PIXELWISE(zimiYCoCgToSBGR_32s16s_P3C4R,        NoSizeTest, P3<Zim32s>,  C4<Zim16s>,  AVAL(Zim16s),  withAlpha<ToBgrWide>(aval))
ZIM_PIXELWISE(zimiYCoCgToSBGR_Rev_16s_P3C3R,       NoSizeTest, P3<Zim16s>,  C3<Zim16s>,  (),            ToBgrReversible{})
ZIM_PIXELWISE(zimiYCoCgToSBGR_Rev_16s_P3C4R,       NoSizeTest, P3<Zim16s>,  C4<Zim16s>,  AVAL(Zim16s),  withAlpha<ToBgrReversible>(aval))
ZIM_PIXELWISE(zimiYCoCgToSBGR_Rev_32s16s_P3C3R,    NoSizeTest, P3<Zim32s>,  C3<Zim16s>,  (),            ToBgrWideReversible{})
ZIM_PIXELWISE(zimiYCoCgToSBGR_Rev_32s16s_P3C4R,    NoSizeTest, P3<Zim32s>,  C4<Zim16s>,  AVAL(Zim16s),  withAlpha<ToBgrWideReversible>(aval))
