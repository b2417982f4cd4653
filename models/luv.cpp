// CIE 1976 L*u*v* of linear RGB with the primaries of BT.709 and its white D65, and back.
//
// Stored as integers, L from 0 to 100, U from -134 to 220 and V from -140 to 122 fill the range of the sample; 16s is
// 16u moved down by 32768. Everything is computed in single precision, in the order written, unless it says double. The
// sample types differ in it on purpose: in their constants, in the place of the scale, in what is clamped.

#include "frame/lanes/integer_quotients.h"
#include "frame/lanes/lookup.h"
#include "frame/pixelwise.h"
#include "models/cube_root.h"
#include "models/luv_tables.h"

using namespace zim;

namespace {

// ---- RGB to LUV ----

constexpr Zim32f kCubeRootFrom = 0.008856F;  // luminance of white being 1; below, L is linear in it
constexpr Zim32f kWhiteU = 0.197839F, kWhiteV = 0.468342F;

template <int N>
ZIM_INLINE Lane<Zim32f, N> xOf(const Pixels<Zim32f, N, 3>& rgb) {
  return rgb[0] * 0.412453F + rgb[1] * 0.35758F + rgb[2] * 0.180423F;
}
template <int N>
ZIM_INLINE Lane<Zim32f, N> yOf(const Pixels<Zim32f, N, 3>& rgb) {
  return rgb[0] * 0.212671F + rgb[1] * 0.71516F + rgb[2] * 0.072169F;
}
template <int N>
ZIM_INLINE Lane<Zim32f, N> zOf(const Pixels<Zim32f, N, 3>& rgb) {
  return rgb[0] * 0.019334F + rgb[1] * 0.119193F + rgb[2] * 0.950227F;
}

// How far a colour is from white in u' and v'. Black has u' = v' = 0.
template <int N>
struct Chroma {
  Lane<Zim32f, N> u, v;

  ZIM_INLINE Chroma(Lane<Zim32s, N> black, Lane<Zim32f, N> x, Lane<Zim32f, N> y, Lane<Zim32f, N> z) {
    const auto d = z * 3.0F + x + y * 15.0F;
    u = select(black, Lane<Zim32f, N>(0.0F), x * 4.0F / d) - kWhiteU;
    v = select(black, Lane<Zim32f, N>(0.0F), y * 9.0F / d) - kWhiteV;
  }
};

// Of the low bits that are kept, 8 for L, U and V. L is looked up: by Y in quarters below 32, in whole steps above; and
// where Y rounds to zero on that scale the colour is black.
struct ToLuv8u {
  using Sample = Zim32f;
  static constexpr int registers = 2;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& rgb) const {
    const auto x = xOf(rgb), y = yOf(rgb);
    const auto whole = truncate(y + 0.5F), quarters = truncate(y * 4.0F + 0.5F);
    const auto bright = whole >= Lane<Zim32s, N>(kLightness8u.firstWhole);
    const auto lightness = lookUp(kLightness8u.entries, select(bright, whole + kLightness8u.wholeAt, quarters));
    const auto black = select(bright, whole, quarters) == Lane<Zim32s, N>(0);
    const Chroma<N> chroma(black, x / 255.0F, y / 255.0F, zOf(rgb) / 255.0F);
    const auto l = toFloat(lightness);
    const auto u = truncate(l * 3.6723163F * chroma.u + 97.02543F);  // 1300 / 354; 134 * 255 / 354 + 0.5
    const auto v = truncate(l * 4.961832F * chroma.v + 136.75955F);  // 1300 / 262; 140 * 255 / 262 + 0.5
    return {lightness, u & 255, v & 255};
  }
};

// Lightness 0 to 100: the linear one up to the threshold, from the cube root above it.
template <int N, class CubeRootOf>
ZIM_INLINE Lane<Zim32f, N> lightness(Lane<Zim32f, N> linear, Lane<Zim32f, N> relative, const CubeRootOf& cubeRoot) {
  const auto isLinear = Lane<Zim32f, N>(kCubeRootFrom) >= relative;
  return select(isLinear, linear, cubeRoot(relative, ~isLinear) * 116.0F - 16.0F);
}

// Of the low bits that are kept, 16. The offset is that of 16s.
template <Zim32s offset>
struct ToLuv16 {
  using Sample = Zim32s;
  static constexpr int registers = 2;
  CubeRoot cubeRoot;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32s, N, 3>& samples) const {
    const auto rgb = perChannel<3>([&](auto c) ZIM_LAMBDA { return toFloat(samples[c] + offset); });
    const auto x = xOf(rgb), y = yOf(rgb);
    const auto l = lightness(y * 903.3F / 65535.0F, y / 65535.0F,
                             [this](auto share, auto wanted) ZIM_LAMBDA { return cubeRoot.ofShare(share, wanted); });
    const Chroma<N> chroma(bitsAs<Zim32s>(y == Lane<Zim32f, N>(0.0F)), x, y, zOf(rgb));
    const auto l13 = l * 13.0F;
    return {stored(l * 65535.0F / 100.0F + 0.5F), stored((chroma.u * l13 + 134.0F) * 65535.0F / 354.0F + 0.5F),
            stored((l13 * chroma.v + 140.0F) * 65535.0F / 262.0F + 0.5F)};
  }

 private:
  template <int N>
  ZIM_INLINE static Lane<Zim32s, N> stored(Lane<Zim32f, N> value) {
    const auto integer = truncate(value) - offset;
    return offset == 0 ? integer & 0xFFFF : (integer << 16) >> 16;
  }
};

// Neither moved nor clamped.
struct ToLuv32f {
  using Sample = Zim32f;
  static constexpr int registers = 2;
  CubeRoot cubeRoot;

  template <int N>
  ZIM_INLINE Pixels<Zim32f, N, 3> operator()(const Pixels<Zim32f, N, 3>& rgb) const {
    const auto x = xOf(rgb), y = yOf(rgb);
    const auto l = lightness(y * 903.3F, y, cubeRoot);
    const Chroma<N> chroma(bitsAs<Zim32s>(y == Lane<Zim32f, N>(0.0F)), x, y, zOf(rgb));
    const auto l13 = l * 13.0F;
    return {l, chroma.u * l13, l13 * chroma.v};
  }
};

// ---- LUV to RGB ----

constexpr Zim32f kBlackBelow = 9e-5F, kCubeFrom = 7.9996247F;

// Luminance 0 to 1 of a lightness 0 to 100: linear below 7.9996247, above it the cube of (L + 16) / 116.
template <int N>
ZIM_INLINE Lane<Zim32f, N> luminance(Lane<Zim32f, N> l) {
  const auto cubic = bitsAs<Zim32s>(l >= Lane<Zim32f, N>(kCubeFrom));
  const auto t = select(cubic, l + 16.0F, l) / select(cubic, Lane<Zim32f, N>(116.0F), Lane<Zim32f, N>(903.3F));
  return select(cubic, t * t * t, t);
}

// X and Z of the luminance y, from u' and v'. What is divided by v' is divided by v' + 9e-5 where |v'| < epsilon.
template <int N>
struct Tristimulus {
  Lane<Zim32f, N> x, y, z;

  ZIM_INLINE Tristimulus(Lane<Zim32f, N> luminance, Lane<Zim32f, N> u, Lane<Zim32f, N> v, Zim32f epsilon)
      : y(luminance) {
    const auto w = y / select(magnitude(v) < Lane<Zim32f, N>(epsilon), v + 9e-5F, v);
    x = u * 2.25F * w;
    z = w * 3.0F - y * 5.0F - x / 3.0F;
  }

  // Blue without the share of z.
  ZIM_INLINE Lane<Zim32f, N> blueOfXY() const { return x * 0.055648F - y * 0.204043F; }
};

// A pixel as its channels, all zero where it is dark.
template <class T, int N>
ZIM_INLINE Pixels<T, N, 3> unlessDark(Lane<Zim32s, N> dark, const Pixels<T, N, 3>& rgb) {
  return perChannel<3>([&](auto c) ZIM_LAMBDA { return select(dark, Lane<T, N>(T{0}), rgb[c]); });
}

// L, U and V in their units, from samples of the range 0 to full.
template <Zim32s full, int N>
struct Scaled {
  Lane<Zim32f, N> l, u, v;
  Lane<Zim32s, N> dark;

  ZIM_INLINE explicit Scaled(const Pixels<Zim32s, N, 3>& luv)
      : l(shareOf<100, full>(toFloat(luv[0]))), dark(l < Lane<Zim32f, N>(kBlackBelow)) {
    const auto l13 = l * 13.0F;
    u = (shareOf<354, full>(toFloat(luv[1])) - 134.0F) / l13 + 0.19783941F;
    v = (shareOf<262, full>(toFloat(luv[2])) - 140.0F) / l13 + 0.4683422F;
  }
};

// 8u and, by an offset, 16s: all on the scale of the sample, the last sum of blue in double. Clamped.
template <Zim32s full, Zim32s offset>
struct FromLuv8u16s {
  using Sample = Zim32s;
  static constexpr int registers = 2;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32s, N, 3>& samples) const {
    const Scaled<full, N> luv(perChannel<3>([&](auto c) ZIM_LAMBDA { return samples[c] + offset; }));
    const Tristimulus<N> xyz(luminance(luv.l) * Zim32f{full}, luv.u, luv.v,
                             full == 255 ? 1.1920929e-7F : 1.1920929e-5F);
    const auto& [x, y, z] = xyz;
    const auto red = 0.5F - y * 1.53715F + x * 3.240479F - z * 0.498535F;
    const auto green = y * 1.875991F + 0.5F + x * -0.969256F + z * 0.041556F;
    const auto blue = widen(xyz.blueOfXY()) + 0.5 + widen(z) * 1.057311;
    const Pixels<Zim32s, N, 3> rgb = {truncate(red), truncate(green), truncate(blue)};
    if constexpr (offset == 0) {
      return unlessDark(luv.dark, rgb);
    } else {
      // What is out of range counts as negative, and must not wrap.
      const auto moved =
          unlessDark(luv.dark, perChannel<3>([&](auto c) ZIM_LAMBDA { return larger(rgb[c], Lane<Zim32s, N>(0)); }));
      return perChannel<3>([&](auto c) ZIM_LAMBDA { return moved[c] - offset; });
    }
  }
};

// All from 0 to 1 until the end; the sum of blue is scaled in double and rounded to single precision before the half is
// added. Clamped.
struct FromLuv16u {
  using Sample = Zim32s;
  static constexpr int registers = kTwoIfNarrow;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32s, N, 3>& samples) const {
    const Scaled<65535, N> luv(samples);
    const Tristimulus<N> xyz(luminance(luv.l), luv.u, luv.v, 1.1920929e-5F);
    const auto& [x, y, z] = xyz;
    const auto red = (x * 3.240479F - y * 1.53715F - z * 0.498535F) * 65535.0F;
    const auto green = (y * 1.875991F + x * -0.969256F + z * 0.041556F) * 65535.0F;
    const auto blue = narrow<Zim32f>((widen(xyz.blueOfXY()) + widen(z) * 1.057311) * 65535.0);
    const auto stored = [](Lane<Zim32f, N> value) ZIM_LAMBDA { return truncate(value + 0.5F); };
    return unlessDark<Zim32s, N>(luv.dark, {stored(red), stored(green), stored(blue)});
  }
};

// Clamped to 0 to 1. A dark pixel becomes black and is the last one of its row: the destination beyond it stays as it
// was. A NaN is not dark.
struct FromLuv32f {
  using Sample = Zim32f;
  static constexpr int registers = kTwoIfNarrow;

  template <int N>
  ZIM_INLINE Pixels<Zim32f, N, 3> operator()(const Pixels<Zim32f, N, 3>& luv) const {
    const auto& [l, u, v] = luv;
    const auto l13 = l * 13.0F;
    const Tristimulus<N> xyz(luminance(l), u / l13 + 0.197839F, v / l13 + 0.468342F, 1.1920929e-7F);
    const auto& [x, y, z] = xyz;
    const auto red = x * 3.240479F - y * 1.53715F - z * 0.498535F;
    const auto green = y * 1.875991F + x * -0.969256F + z * 0.041556F;
    const auto blue = xyz.blueOfXY() + z * 1.057311F;
    return unlessDark<Zim32f, N>(isDark(l), {clamp(red, 0, 1), clamp(green, 0, 1), clamp(blue, 0, 1)});
  }

  // How many pixels of a row are converted: as far as the first dark one.
  template <class Layout>
  std::ptrdiff_t reach(Position<const std::byte, 1> row, std::ptrdiff_t width) const {
    constexpr int block = kLanes<Zim32f>;
    const auto anyDark = [&]<int N>(std::ptrdiff_t x, std::integral_constant<int, N>) ZIM_LAMBDA {
      return any(isDark(Layout::template load<N>(row.at(x * Layout::pixelBytes))[0]));
    };
    std::ptrdiff_t x = 0;
    while (x + block < width && !anyDark(x, std::integral_constant<int, block>())) x += block;
    while (x < width && !anyDark(x, std::integral_constant<int, 1>())) ++x;
    return x < width ? x + 1 : width;
  }

 private:
  template <int N>
  ZIM_INLINE static Lane<Zim32s, N> isDark(Lane<Zim32f, N> l) {
    return l < Lane<Zim32f, N>(kBlackBelow);
  }
};

using Bytes = Rules<N_S, Offsets::bytes32, RowParallel>;
using Elements = Rules<N_S, Offsets::elements32, RowParallel>;

}  // namespace

// clang-format off
//            export                   rules     source      destination  further  kernel
ZIM_PIXELWISE(zimiRGBToLUV_8u_C3R,     Bytes,    C3<Zim8u>,   C3<Zim8u>,   (),  ToLuv8u{})
ZIM_PIXELWISE(zimiRGBToLUV_8u_AC4R,    Bytes,    AC4<Zim8u>,  AC4<Zim8u>,  (),  ToLuv8u{})
ZIM_PIXELWISE(zimiRGBToLUV_16u_C3R,    Elements, C3<Zim16u>,  C3<Zim16u>,  (),  ToLuv16<0>{CubeRoot(roiSize)})
ZIM_PIXELWISE(zimiRGBToLUV_16u_AC4R,   Elements, AC4<Zim16u>, AC4<Zim16u>, (),  ToLuv16<0>{CubeRoot(roiSize)})
ZIM_PIXELWISE(zimiRGBToLUV_16s_C3R,    Elements, C3<Zim16s>,  C3<Zim16s>,  (),  ToLuv16<32768>{CubeRoot(roiSize)})
ZIM_PIXELWISE(zimiRGBToLUV_16s_AC4R,   Elements, AC4<Zim16s>, AC4<Zim16s>, (),  ToLuv16<32768>{CubeRoot(roiSize)})
ZIM_PIXELWISE(zimiRGBToLUV_32f_C3R,    Bytes,    C3<Zim32f>,  C3<Zim32f>,  (),  ToLuv32f{CubeRoot(roiSize)})
ZIM_PIXELWISE(zimiRGBToLUV_32f_AC4R,   Bytes,    AC4<Zim32f>, AC4<Zim32f>, (),  ToLuv32f{CubeRoot(roiSize)})

ZIM_PIXELWISE(zimiLUVToRGB_8u_C3R,     Bytes,    C3<Zim8u>,   C3<Zim8u>,   (),  FromLuv8u16s<255, 0>{})
ZIM_PIXELWISE(zimiLUVToRGB_8u_AC4R,    Bytes,    AC4<Zim8u>,  AC4<Zim8u>,  (),  FromLuv8u16s<255, 0>{})
ZIM_PIXELWISE(zimiLUVToRGB_16u_C3R,    Elements, C3<Zim16u>,  C3<Zim16u>,  (),  FromLuv16u{})
ZIM_PIXELWISE(zimiLUVToRGB_16u_AC4R,   Elements, AC4<Zim16u>, AC4<Zim16u>, (),  FromLuv16u{})
ZIM_PIXELWISE(zimiLUVToRGB_16s_C3R,    Elements, C3<Zim16s>,  C3<Zim16s>,  (),  FromLuv8u16s<65535, 32768>{})
ZIM_PIXELWISE(zimiLUVToRGB_16s_AC4R,   Elements, AC4<Zim16s>, AC4<Zim16s>, (),  FromLuv8u16s<65535, 32768>{})
ZIM_PIXELWISE(zimiLUVToRGB_32f_C3R,    Elements, C3<Zim32f>,  C3<Zim32f>,  (),  FromLuv32f{})
ZIM_PIXELWISE(zimiLUVToRGB_32f_AC4R,   Elements, AC4<Zim32f>, AC4<Zim32f>, (),  FromLuv32f{})
