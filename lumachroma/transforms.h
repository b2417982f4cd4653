// RGB to and from YCbCr and YUV: the coefficient sets, and the two transforms that they parametrise.
//
// The sets are deliberately not unified: some differ by a unit in a coefficient, and each export names its own.
#pragma once

#include "frame/lanes/byte_pairs.h"
#include "frame/lanes/zip.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Multipliers of R, G and B, and black with a half for rounding, in units of 1/65536.
struct EncoderSet {
  Zim32s y[3], cb[3], cr[3];
  Zim32s lumaBias;
};

// BT.601, studio range: black is 16.
inline constexpr EncoderSet E601 = {{16843, 33030, 6423}, {-9699, -19071, 28770}, {28770, -24117, -4653}, 1081344};
// BT.709, studio range.
inline constexpr EncoderSet E709CSC = {{11993, 40239, 4063}, {-6619, -22151, 28770}, {28770, -26149, -2621}, 1081344};
// BT.709, full range: black is 0.
inline constexpr EncoderSet E709HDTV = {{13959, 46858, 4719}, {-7668, -25821, 33489}, {33489, -30409, -3080}, 32768};

// Luma weights of analogue YUV; they add up to 65536. Chroma are scaled differences from luma.
inline constexpr Zim32s EYUV[3] = {19595, 38470, 7471};

// Multipliers of luma, which starts at black, and of the chroma differences u = Cb - 128 and v = Cr - 128.
struct DecoderSet {
  Zim32s luma, redV, greenU, greenV, blueU;
  Zim16s black;
};

inline constexpr DecoderSet D601 = {76284, 104595, -25690, -53281, 132186, 16};
inline constexpr DecoderSet D601b = {76282, 104593, -25689, -53279, 132184, 16};
inline constexpr DecoderSet D709CSC = {76284, 117506, -13959, -34996, 138609, 16};
inline constexpr DecoderSet D709HDTV = {65536, 100925, -11993, -30081, 119013, 0};
inline constexpr DecoderSet D411 = {76294, 104595, -25625, -53281, 132186, 16};
inline constexpr DecoderSet DYUV = {65536, 74711, -25821, -38076, 133169, 0};
inline constexpr DecoderSet DYUVb = {65536, 74710, -25820, -38075, 133168, 0};

enum class Rounding : Zim32s { truncating = 0, rounding = 32768 };

constexpr FixedRow fixedRow(const Zim32s (&c)[3], Zim32s bias) { return {{c[0], c[1], c[2]}, bias}; }

// (row . rgb + bias) >> shift. The weight that may need both pairs of a split row comes first: green, unless another is
// beyond 16 bits.
template <FixedRow row, int shift = 16, int N>
ZIM_INLINE Lane<Zim16s, N> weighted(const Pixels<Zim16s, N, 3>& rgb) {
  constexpr std::size_t i = row.c[0] > 32767 ? 0 : row.c[2] > 32767 ? 2 : 1, j = i == 0 ? 1 : 0, k = 3 - i - j;
  return fixedDot<FixedRow{{row.c[i], row.c[j], row.c[k]}, row.bias}, shift>(rgb[i], rgb[j], rgb[k]);
}

// The zero of chroma, with a half for rounding, or with an eighth.
inline constexpr Zim32s kChromaHalf = 8421376, kChromaEighth = 8396800;

// Y  = (y . rgb + lumaBias) >> 16                      E601: range [16, 235]
// Cb = (cb . rgb + chromaBias) >> 16, Cr alike         E601: range [16, 240]
template <EncoderSet set, Zim32s chromaBias = kChromaHalf>
struct Encode {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(Pixels<Zim16s, N, 3> rgb) const {
    return {weighted<fixedRow(set.y, set.lumaBias)>(rgb), weighted<fixedRow(set.cb, chromaBias)>(rgb),
            weighted<fixedRow(set.cr, chromaBias)>(rgb)};
  }

#if defined(__AVX2__)
  ZIM_INLINE Pixels<Zim32s, kLanes<Zim32s>, 3> onPairs(BytePairs pairs) const {
    // Words of R + G and G, so that green beyond 16 bits is shared out, and of R and B.
    const auto rg = weightedWords<ByteWeights{1, 1, 0, 1}>(pairs.withSecond),
               rb = weightedWords<ByteWeights{1, 0, 0, 1}>(pairs.withThird);
    const auto sum = [&](auto row) ZIM_LAMBDA {
      constexpr FixedRow r = decltype(row)::value;
      constexpr Zim32s ofBoth = r.c[1] > 32767 ? r.c[1] / 2 : 0;
      return neighbourDot<ofBoth, r.c[1] - ofBoth>(rg) + (neighbourDot<r.c[0] - ofBoth, r.c[2]>(rb) + r.bias);
    };
    return {sum(std::integral_constant<FixedRow, fixedRow(set.y, set.lumaBias)>()),
            sum(std::integral_constant<FixedRow, fixedRow(set.cb, chromaBias)>()),
            sum(std::integral_constant<FixedRow, fixedRow(set.cr, chromaBias)>())};
  }
#endif
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
    const auto twiceY = weighted<fixedRow(EYUV, 0), 15>(rgb);
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
    const auto u = ycc[1] - 128, v = ycc[2] - 128;
    // Each product once for all rows, unless registers are few and the bias comes with a pair of products.
    if constexpr (N > 1 && set.luma != 65536 && (kParts > 1 || rounding == Rounding::rounding)) {
      const auto luma = products<set.luma>(ycc[0]) + (bias - set.luma * set.black);
      const auto red = luma + products<set.redV>(v), blue = luma + products<set.blueU>(u);
      const auto green = luma + products<set.greenU>(u) + products<set.greenV>(v);
      const std::array centred = {ycc[0], u, v};
      return {upperHalves<0, set.redV>(red, centred), upperHalves<set.greenU, set.greenV>(green, centred),
              upperHalves<set.blueU, 0>(blue, centred)};
    }
    const auto y = ycc[0] - set.black;
    return {fixedDot<FixedRow{{set.luma, 0, set.redV}, bias}>(y, u, v),
            fixedDot<FixedRow{{set.luma, set.greenU, set.greenV}, bias}>(y, u, v),
            fixedDot<FixedRow{{set.luma, set.blueU, 0}, bias}>(y, u, v)};
  }

#if defined(__AVX2__)
  // Luma one for one takes few steps with channels apart.
  static constexpr bool pairsFromPlanes = set.luma != 65536;
  ZIM_INLINE Pixels<Zim32s, kLanes<Zim32s>, 3> onPairs(BytePairs pairs) const {
    // Green has luma with that chroma with which weights are found.
    constexpr bool besideV = TwoSteps({set.luma, set.redV}, {set.luma, set.greenV}).found;
    constexpr TwoSteps ofU({set.luma, set.blueU}, {besideV ? 0 : set.luma, set.greenU}),
        ofV({set.luma, set.redV}, {besideV ? set.luma : 0, set.greenV});
    static_assert(ofU.found && ofV.found);
    constexpr Zim32s black = static_cast<Zim32s>(rounding) - set.luma * set.black;
    const auto u = weightedWords<ofU.weights>(pairs.withSecond), v = weightedWords<ofV.weights>(pairs.withThird);
    return {neighbourDot<ofV.first[0], ofV.first[1]>(v) + (black - 128 * set.redV),
            neighbourDot<ofU.second[0], ofU.second[1]>(u) +
                (neighbourDot<ofV.second[0], ofV.second[1]>(v) + (black - 128 * (set.greenU + set.greenV))),
            neighbourDot<ofU.first[0], ofU.first[1]>(u) + (black - 128 * set.blueU)};
  }
#endif

 private:
  template <Zim32s factorU, Zim32s factorV, int N>
  ZIM_INLINE static Lane<Zim16s, N> upperHalves(EvenOdd<N> sums, const Pixels<Zim16s, N, 3>& yuv) {
    return plusWhole<set.luma>(plusWhole<factorU>(plusWhole<factorV>(highWords(sums), yuv[2]), yuv[1]), yuv[0]);
  }
};

// ---- Decoders of pixels that share chroma ----
//
// The kernel is in two parts, the terms of chroma once for all pixels that share it, and the pixels from luma and
// terms:
//     template <int N> std::array<Lane<T, N>, Terms> chroma(Lane<Zim16s, N> u, Lane<Zim16s, N> v) const;
//     template <int N> Pixels<Zim16s, N, 3> pixels(Lane<Zim16s, N> y, std::array<Lane<T, N>, Terms> terms) const;
// The results are R, G, B before saturation. A kernel may have a second form, on pixels in order and pairs of chroma,
// of which the first sample may be that of Cr; R, G, B are the upper halves of its sums (fixed_point.h):
//     template <bool crFirst, int N> static std::array<EvenOdd<N>, 3> sums(Lane<Zim16s, N> y, Lane<Zim16s, N> pairs);

// A set, its rounding, and what else is added to each channel before the shift.
struct Decoder {
  DecoderSet set;
  Rounding rounding = Rounding::truncating;
  Zim32s red = 0, green = 0, blue = 0;
};

// D601 with constants that were rounded in sums over Cb and Cr from zero.
inline constexpr Decoder K601 = {D601, Rounding::truncating, -57, -14, -13};

// As Decode. Woven, each channel is in two limbs: that of luma and that of chroma meet in a comparison. In order, a
// pair is a sum of 32 bits for its first pixel and one for its second.
template <Decoder decoder>
struct DecodeShared {
  template <int N>
  ZIM_INLINE auto chroma(Lane<Zim16s, N> u, Lane<Zim16s, N> v) const {
    const auto cu = u - 128, cv = v - 128;
    const auto r = plus<decoder.red + chromaHalf>(product<set.redV>(cv));
    const auto g = plus<decoder.green + chromaHalf>(sum(product<set.greenU>(cu), product<set.greenV>(cv)));
    const auto b = plus<decoder.blue + chromaHalf>(product<set.blueU>(cu));
    if constexpr (lumaIsWhole) {
      return std::array{r.high, g.high, b.high};
    } else {
      return std::array{r.high, g.high, b.high, r.low, g.low, b.low};
    }
  }

  template <int N, std::size_t Terms>
  ZIM_INLINE Pixels<Zim16s, N, 3> pixels(Lane<Zim16s, N> y, const std::array<Lane<Zim16s, N>, Terms>& terms) const {
    const auto fromBlack = set.black == 0 ? y : y - set.black;
    if constexpr (lumaIsWhole) {
      return perChannel<3>([&](auto c) ZIM_LAMBDA { return fromBlack + terms[c]; });
    } else {
      const auto luma = plus<half>(product<set.luma>(fromBlack));
      return perChannel<3>([&](auto c) ZIM_LAMBDA { return highOfSum(luma, Limbs<N>{terms[c], terms[c + 3]}); });
    }
  }

  template <bool crFirst, int N>
  ZIM_INLINE static std::array<EvenOdd<N>, 3> sums(Lane<Zim16s, N> y, Lane<Zim16s, N> pairs) requires(
      decoder.set.luma != 65536 && ScaledFactors(decoder.set.luma).whole[0] == 0) {
    const auto luma = products<set.luma>(y);
    return {channel<crFirst, 0, set.redV, decoder.red>(luma, pairs),
            channel<crFirst, set.greenU, set.greenV, decoder.green>(luma, pairs),
            channel<crFirst, set.blueU, 0, decoder.blue>(luma, pairs)};
  }

 private:
  static constexpr const DecoderSet& set = decoder.set;
  static constexpr bool lumaIsWhole = decoder.set.luma == 65536;
  // Added once to luma, unless that has no lower limb, in place of three times to chroma.
  static constexpr Zim32s half = static_cast<Zim32s>(decoder.rounding), chromaHalf = lumaIsWhole ? half : 0;

  template <bool crFirst, Zim32s u, Zim32s v, Zim32s constant, int N>
  ZIM_INLINE static EvenOdd<N> channel(EvenOdd<N> luma, Lane<Zim16s, N> pairs) {
    constexpr Zim32s bias = constant + half - set.luma * set.black - 128 * (u + v);
    constexpr Zim32s first = crFirst ? v : u, second = crFirst ? u : v;
    return luma + (wideNeighbourDot<first, second>(pairs) + bias);
  }
};

// Products each cut to 1/16 on its own, in factors of 1/8192 of those:
//   L = ((Y - black) 128 luma) >> 16, tR = (cv redV) >> 16, ... with cv = 128 (V - 128), cu = 128 (U - 128)
//   R = (L + tR) >> 4, G = (L - tGu - tGv) >> 4, B = (L + tB) >> 4
// A luma of 8192, one for one, is not cut.
struct ScaledSet {
  Zim16s luma, redV, greenU, greenV, blueU, black;
};

inline constexpr ScaledSet S601 = {9535, 13074, 3211, 6660, 16523, 16};
inline constexpr ScaledSet SYUV = {8192, 9338, 3227, 4759, 16646, 0};

template <ScaledSet set>
struct DecodeScaled {
  template <int N>
  ZIM_INLINE std::array<Lane<Zim16s, N>, 3> chroma(Lane<Zim16s, N> u, Lane<Zim16s, N> v) const {
    const auto cu = (u << 7) - 16384, cv = (v << 7) - 16384;
    return {scaled<set.redV>(cv), scaled<set.greenU>(cu) + scaled<set.greenV>(cv), scaled<set.blueU>(cu)};
  }

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> pixels(Lane<Zim16s, N> y, const std::array<Lane<Zim16s, N>, 3>& terms) const {
    const auto l = scaled<set.luma>((y << 7) - Zim16s{128 * set.black});
    return {(l + terms[0]) >> 4, (l - terms[1]) >> 4, (l + terms[2]) >> 4};
  }

 private:
  template <Zim16s factor, int N>
  ZIM_INLINE static Lane<Zim16s, N> scaled(Lane<Zim16s, N> x) {
    return multiplyHigh(x, Lane<Zim16s, N>(factor));
  }
};

// In single precision, step by step: l = (Y - 16) 1.164 + 0.5, R = l + 1.596 v, G = (l - 0.392 u) - 0.813 v,
// B = l + 2.017 u; truncated.
struct DecodeFloat {
  template <int N>
  ZIM_INLINE std::array<Lane<Zim32f, N>, 4> chroma(Lane<Zim16s, N> u, Lane<Zim16s, N> v) const {
    const auto cu = difference(u, 128.0F), cv = difference(v, 128.0F);
    return {cv * 1.596F, cu * 0.392F, cv * 0.813F, cu * 2.017F};
  }

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> pixels(Lane<Zim16s, N> y, const std::array<Lane<Zim32f, N>, 4>& terms) const {
    if constexpr (N > kLanes<Zim16s>) {
      // One register after the other: those of all terms and sums would be too many.
      const auto lo = pixels<N / 2>(y.v.lo, lowHalves(terms)), hi = pixels<N / 2>(y.v.hi, highHalves(terms));
      return perChannel<3>([&](auto c) ZIM_LAMBDA { return Lane<Zim16s, N>::join(lo[c], hi[c]); });
    } else {
      const auto l = difference(y, 16.0F) * 1.164F + 0.5F;
      const auto cut = [](Lane<Zim32f, N> x) ZIM_LAMBDA { return narrow<Zim16s>(truncate(x)); };
      return {cut(l + terms[0]), cut((l - terms[1]) - terms[2]), cut(l + terms[3])};
    }
  }

 private:
  // a - b, exactly. Below the upper half of 2^23 in single precision a sample makes 2^23 + a, without a conversion.
  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> difference(Lane<Zim16s, N> a, Zim32f b) {
    if constexpr (N == 1) {
      return toFloat(widen(a)) - b;
    } else {
      return bitsAs<Zim32f>(zip(a, Lane<Zim16s, N>(0x4B00))) - (8388608.0F + b);
    }
  }
};

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
