// From RGB to luma and chroma that several pixels share.
//
// Pixels come woven (frame/lanes/memory.h): the even pixels of a block are the first half of the lanes, the odd ones
// the second, so that pairs are two lanes at the same place. A coder takes as many rows of such pixels as share chroma,
//     template <int N> Code<N, rows, across> operator()(const Rows<N, rows>& rgb)
// and is itself made of a luma rule, for every pixel, and a chroma rule. But for the filter, chroma rules add the
// pixels first and apply the matrix once, with a wider shift in place of a division.
#pragma once

#include "frame/lanes/lookup.h"
#include "frame/lanes/packed.h"
#include "lumachroma/transforms.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// N woven pixels of each row that shares chroma.
template <int N, std::size_t rows>
using Rows = std::array<Pixels<Zim16s, N, 3>, rows>;

// Cb and Cr, or U and V.
template <int N>
using Chroma = Pixels<Zim16s, N, 2>;

// What becomes of them, in order: luma, and chroma within 0 to 255.
template <int N, std::size_t rows, int across>
struct Code {
  std::array<Lane<Zim8u, N>, rows> luma;
  Chroma<N / across> chroma;
};

// A row for packed pixels.
template <bool reversed>
constexpr FixedRow inMemory(FixedRow row) {
  return reversed ? FixedRow{{row.c[2], row.c[1], row.c[0]}, row.bias} : row;
}

// ---- Luma ----

template <FixedRow row>
struct WeightedLuma {
  using Sample = Zim16s;
  static constexpr bool canBePacked = true;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 1> operator()(const Pixels<Zim16s, N, 3>& rgb) const {
    return {weighted<row>(rgb)};
  }
  template <bool reversed, std::size_t Parts>
  ZIM_INLINE static auto packed(const PackedBlock<Parts>& pixels) {
    return packedWeighted<inMemory<reversed>(row)>(pixels);
  }
};

template <EncoderSet set>
using Luma = WeightedLuma<fixedRow(set.y, set.lumaBias)>;
// Analogue YUV truncates its luma, or, in some forms, rounds it.
using LumaYuv = WeightedLuma<fixedRow(EYUV, 0)>;
using LumaYuvRounded = WeightedLuma<fixedRow(EYUV, 32768)>;

// The second pixel of each pair is truncated.
template <EncoderSet set>
struct LumaOddTruncated {
  static constexpr bool canBePacked = true;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 1> operator()(const Pixels<Zim16s, N, 3>& rgb) const {
    constexpr FixedRow even = fixedRow(set.y, set.lumaBias), odd = fixedRow(set.y, set.lumaBias - 32768);
    return {Lane<Zim16s, N>::join(weighted<even>(lowHalves(rgb)), weighted<odd>(highHalves(rgb)))};
  }
  template <bool reversed, std::size_t Parts>
  ZIM_INLINE static auto packed(const PackedBlock<Parts>& pixels) {
    constexpr auto row = inMemory<reversed>(fixedRow(set.y, 0));
    constexpr std::int64_t even = set.lumaBias, odd = set.lumaBias - 32768;
    const auto biases = bitsAs<Zim32s>(Lane<std::int64_t, kLanes<std::int64_t>>(even | odd << 32));
    return narrow<Zim16s>(
        joined(perChannel<Parts>([&](auto i) ZIM_LAMBDA { return (packedDot<row>(pixels[i]) + biases) >> 16; })));
  }
};

// ---- Chroma ----

template <int N, std::size_t rows>
ZIM_INLINE Pixels<Zim16s, N / 2, 3> pairSums(const Rows<N, rows>& rgb) {
  return perChannel<3>([&](auto c) ZIM_LAMBDA {
    auto both = rgb[0][c];
    if constexpr (rows == 2) both = both + rgb[1][c];
    return both.v.lo + both.v.hi;
  });
}

// (c . sum + bias * pixels) >> (16 + log2(pixels)) over as many pixels as share chroma: a pair, a block of
// 2 x 2, or four in a row. The trim is added to the sum of Cr.
template <EncoderSet set, int pixelsAcross, int rowsDown, Zim32s bias, Zim32s crTrim = 0>
struct MeanChroma {
  static constexpr int across = pixelsAcross, rows = rowsDown;
  static constexpr bool canBePacked = true;

  template <int N>
  ZIM_INLINE Chroma<N / across> operator()(const Rows<N, rows>& rgb) {
    const auto sums = pairSums<N, rows>(rgb);
    if constexpr (across == 2) {
      return {weighted<cb, shift>(sums), weighted<cr, shift>(sums)};
    } else {
      return {ofNeighbours<cb, shift>(sums), ofNeighbours<cr, shift>(sums)};
    }
  }

  template <bool reversed, std::size_t Parts>
  ZIM_INLINE static auto packed(const PackedBlock<Parts>& pairs) {
    const auto both = [](const auto& sums) ZIM_LAMBDA {
      return std::array{packedWeighted<inMemory<reversed>(cb), shift>(sums),
                        packedWeighted<inMemory<reversed>(cr), shift>(sums)};
    };
    if constexpr (across == 2) {
      return both(pairs);
    } else {
      return both(
          perChannel<Parts / 2>([&](auto i) ZIM_LAMBDA { return neighbourSums(pairs[2 * i], pairs[2 * i + 1]); }));
    }
  }

 private:
  static constexpr int pixels = across * rows, shift = 16 + std::bit_width(unsigned{pixels}) - 1;
  static constexpr FixedRow cb = fixedRow(set.cb, bias*pixels), cr = fixedRow(set.cr, bias*pixels + crTrim);

  // The same of the sums of neighbouring pairs.
  template <FixedRow row, int shift, int N>
  ZIM_INLINE static Lane<Zim16s, N / 2> ofNeighbours(const Pixels<Zim16s, N, 3>& sums) {
    const auto weightedSum = neighbourDot(sums[0], static_cast<Zim16s>(row.c[0])) +
                             neighbourDot(sums[1], static_cast<Zim16s>(row.c[1])) +
                             neighbourDot(sums[2], static_cast<Zim16s>(row.c[2]));
    return narrow<Zim16s>((weightedSum + row.bias) >> shift);
  }
};

template <EncoderSet set, Zim32s crTrim = 0>
using PairHalf = MeanChroma<set, 2, 1, kChromaHalf, crTrim>;
template <EncoderSet set>
using PairEighth = MeanChroma<set, 2, 1, kChromaEighth>;
template <EncoderSet set>
using BlockEighth = MeanChroma<set, 2, 2, kChromaEighth>;
template <EncoderSet set>
using QuadEighth = MeanChroma<set, 4, 1, kChromaEighth>;

// Analogue YUV, with S the weighted sum over n pixels and SB, SR the sums of blue and red:
//   U = ((((SB << 16) - S + 65536 n / 2 - 1) >> 16) * 32244 >> (16 + log2(n))) + 128    range [16, 239]
//   V = ((((SR << 16) - S + 65536 n / 2 - 1) >> 16) * 57475 >> (16 + log2(n))) + 128    saturated
template <int rowsDown>
struct YuvChroma {
  static constexpr int across = 2, rows = rowsDown;
  static constexpr bool canBePacked = true;

  template <int N>
  ZIM_INLINE Chroma<N / 2> operator()(const Rows<N, rows>& rgb) {
    const auto sums = pairSums<N, rows>(rgb);
    // ((B << 16) - S + 65535) >> 16 == B - (S >> 16)
    return differences(sums[0], sums[2], weighted<fixedRow(EYUV, 0)>(sums));
  }

  template <bool reversed, std::size_t Parts>
  ZIM_INLINE static auto packed(const PackedBlock<Parts>& pairs) {
    const auto ends = firstAndThird(pairs);
    return differences(ends[reversed ? 1 : 0], ends[reversed ? 0 : 1],
                       packedWeighted<inMemory<reversed>(fixedRow(EYUV, 0))>(pairs));
  }

 private:
  template <int N>
  ZIM_INLINE static Chroma<N> differences(Lane<Zim16s, N> r, Lane<Zim16s, N> b, Lane<Zim16s, N> sum) {
    const auto luma = sum - (rows - 1), u = b - luma, v = r - luma;
    // 57475 = 65536 - 8061, so that the factor fits 16 bits.
    const auto scaledU = multiplyHigh(u, Lane<Zim16s, N>(32244));
    const auto scaledV = v + multiplyHigh(v, Lane<Zim16s, N>(-8061));
    return {(scaledU >> rows) + 128, clamp((scaledV >> rows) + 128, 0, 255)};
  }
};
using YuvPair = YuvChroma<1>;
using YuvBlock = YuvChroma<2>;

// A filter of [1, 2, 1] / 4 about the first pixel of each pair, with every term truncated for itself:
//   (a(first) >> 1) + (a(the one before) >> 2) + (a(second) >> 2), offset and rounded
// where a is the chroma row on a pixel. There is nothing before the first pair of a row, whose weight is that smaller.
template <EncoderSet set>
struct FilteredChroma {
  static constexpr int across = 2, rows = 1;
  // One unit less than a half: -8355841 with the zero of chroma in the low bits.
  static constexpr Zim32s bias = kChromaHalf - 1;

  template <int N>
  ZIM_INLINE Chroma<N / 2> operator()(const Rows<N, 1>& rgb) {
    const auto first = lowHalves(rgb[0]), second = highHalves(rgb[0]);
    const auto filtered = [&](auto row, Lane<Zim32s, kLanes<Zim32s>>& before) ZIM_LAMBDA {
      const auto quarters = product<row()>(second) >> 2;
      const auto sum = (product<row()>(first) >> 1) + movedUp(quarters, before) + quarters;
      before = quarters.v.hi;
      return narrow<Zim16s>((sum + bias) >> 16);
    };
    return {filtered([] { return fixedRow(set.cb, 0); }, cbBefore),
            filtered([] { return fixedRow(set.cr, 0); }, crBefore)};
  }

 private:
  // Of the second pixels of the pairs before.
  Lane<Zim32s, kLanes<Zim32s>> cbBefore = 0, crBefore = 0;

  template <FixedRow row, int N>
  ZIM_INLINE static Lane<Zim32s, N> product(const Pixels<Zim16s, N, 3>& rgb) {
    const Lane<Zim16s, N> none = 0;
    return pairDot(rgb[1], rgb[0], static_cast<Zim16s>(row.c[1]), static_cast<Zim16s>(row.c[0])) +
           pairDot(rgb[2], none, static_cast<Zim16s>(row.c[2]), 0);
  }
};

// ---- Coders ----

template <class Rule>
concept CanBePacked = requires {
  Rule::canBePacked;
};

template <class LumaRule, class ChromaRule>
struct Coder {
  static constexpr int across = ChromaRule::across, rows = ChromaRule::rows;
  static constexpr bool canBePacked = CanBePacked<LumaRule> && CanBePacked<ChromaRule>;
  static constexpr bool carries = !std::is_empty_v<ChromaRule>;  // something from block to block

  template <int N>
  ZIM_INLINE Code<N, rows, across> operator()(const Rows<N, rows>& rgb) {
    return {perChannel<rows>([&](auto row) ZIM_LAMBDA { return unwoven(LumaRule()(rgb[row])[0]); }),
            chromaRule.template operator()<N>(rgb)};
  }

  // The parts of a block are loaded two by two, as they are used, so that few registers are live at a time.
  template <bool reversed, int N, class Load>
  ZIM_INLINE static Code<N, rows, across> packed(const Load& load) {
    constexpr std::size_t twos = N / kLanes<Zim32s> / 2;
    std::array<std::array<Lane<Zim16s, N / static_cast<int>(twos)>, twos>, rows> luma;
    PackedBlock<twos> pairs;
    forChannels<twos>([&](auto two) ZIM_LAMBDA {
      PackedBlock<2> sums;
      forChannels<rows>([&](auto row) ZIM_LAMBDA {
        const PackedBlock<2> pixels = {load(row, std::integral_constant<std::size_t, 2 * two>()),
                                       load(row, std::integral_constant<std::size_t, 2 * two + 1>())};
        luma[row][two] = LumaRule::template packed<reversed>(pixels);
        forChannels<2>([&](auto i) ZIM_LAMBDA { sums[i] = row == 0 ? pixels[i] : sums[i] + pixels[i]; });
      });
      pairs[two] = neighbourSums(sums[0], sums[1]);
    });
    return {perChannel<rows>([&](auto row) ZIM_LAMBDA { return narrow<Zim8u>(joined(luma[row])); }),
            ChromaRule::template packed<reversed>(pairs)};
  }

 private:
  ChromaRule chromaRule;
};

#if !defined(__AVX2__)
// The filter by tables, where samples are mapped first: what each value of a sample adds to the four of a pair,
// Cb, luma, Cr, luma. Luma, which is not filtered, has what the shifts take from it.
template <class GroupCoder>
class ProductsOfPairs;

template <FixedRow luma, EncoderSet set>
class ProductsOfPairs<Coder<WeightedLuma<luma>, FilteredChroma<set>>> {
 public:
  using Lanes = Lane<Zim32s, kLanes<Zim32s>>;

  constexpr explicit ProductsOfPairs(const ByteMapping& mapping) {
    for (std::size_t c = 0; c < 3; ++c) {
      for (std::size_t sample = 0; sample < 256; ++sample) {
        const Zim32s x = mapping[sample], y = luma.c[c] * x + (c == 0 ? luma.bias : 0);
        const Zim32s cb = set.cb[c] * x, cr = set.cr[c] * x, bias = c == 0 ? 2 * FilteredChroma<set>::bias : 0;
        first_[c][sample] = {cb + bias, 2 * y, cr + bias, 0};
        second_[c][sample] = {cb, 0, cr, 4 * y};
      }
    }
  }

  // Of two pixels of three bytes. Carries what the pairs before leave to the chroma of the next.
  ZIM_INLINE Lanes code(const std::byte* pixels, Lanes& before) const {
    const auto quarters = sum(second_, pixels + 3) >> 2;
    const auto filtered = (sum(first_, pixels) >> 1) + before + quarters;
    before = quarters & Lanes::of(typename Lanes::Value{-1, 0, -1, 0});
    return filtered >> 16;
  }

 private:
  using Entry = std::array<Zim32s, 4>;
  using Table = std::array<std::array<Entry, 256>, 3>;

  ZIM_INLINE static Lanes sum(const Table& table, const std::byte* pixel) {
    const auto entry = [&](std::size_t c) ZIM_LAMBDA {
      const Entry& lanes = table[c][static_cast<std::size_t>(pixel[c])];
      return Lanes::of((typename Lanes::Value)loadRegister(reinterpret_cast<const std::byte*>(lanes.data())));
    };
    return entry(0) + entry(1) + entry(2);
  }

  alignas(16) Table first_{};
  alignas(16) Table second_{};
};
#endif

// Neither luma nor chroma takes the values 0 and 255.
template <class Base>
struct Guarded {
  static constexpr int across = Base::across, rows = Base::rows;
  static constexpr bool canBePacked = Base::canBePacked, carries = Base::carries;

  template <int N>
  ZIM_INLINE Code<N, rows, across> operator()(const Rows<N, rows>& rgb) {
    return guarded(Base().template operator()<N>(rgb));
  }
  template <bool reversed, int N, class Load>
  ZIM_INLINE static Code<N, rows, across> packed(const Load& load) {
    return guarded(Base::template packed<reversed, N>(load));
  }

 private:
  template <int N>
  ZIM_INLINE static Code<N, rows, across> guarded(const Code<N, rows, across>& code) {
    return {perChannel<rows>([&](auto row) ZIM_LAMBDA { return clamp(code.luma[row], 1, 254); }),
            {clamp(code.chroma[0], 1, 254), clamp(code.chroma[1], 1, 254)}};
  }
};
template <class Kernel>
struct GuardedPixel : Kernel {
  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(const Pixels<Zim16s, N, 3>& rgb) const {
    const auto code = Kernel::operator()(rgb);
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return clamp(code[c], 1, 254); });
  }
};

// BT.601 in single precision over blocks of 2 x 2, each operation in its turn; the first pixel of a block adds its
// terms in an order of its own. Converted to integers by truncation, within 16 to 240.
struct FloatCoder {
  static constexpr int across = 2, rows = 2;
  static constexpr bool canBePacked = false, carries = false;

  template <int N>
  ZIM_INLINE Code<N, 2, 2> operator()(const Rows<N, 2>& rgb) {
    const auto first = lumaOf(lowHalves(rgb[0]), [](auto r, auto g, auto b) ZIM_LAMBDA {
      return ((0.504F * g + 16.5F) + 0.098F * b) + 0.257F * r;
    });
    const auto other = [](auto r, auto g, auto b)
                           ZIM_LAMBDA { return ((0.257F * r + 16.5F) + 0.504F * g) + 0.098F * b; };
    const auto upper = Lane<Zim16s, N>::join(first, lumaOf(highHalves(rgb[0]), other));
    return {{unwoven(upper), unwoven(lumaOf(rgb[1], other))}, chroma<N>(rgb)};
  }

 private:
  template <int N, class Formula>
  ZIM_INLINE static Lane<Zim16s, N> lumaOf(const Pixels<Zim16s, N, 3>& rgb, const Formula& formula) {
    if constexpr (kForm<Zim16s, N> == Form::split) {
      return Lane<Zim16s, N>::join(lumaOf(lowHalves(rgb), formula), lumaOf(highHalves(rgb), formula));
    } else {
      return narrow<Zim16s>(truncate(formula(asFloat(rgb[0]), asFloat(rgb[1]), asFloat(rgb[2]))));
    }
  }
  template <int N>
  ZIM_INLINE static Chroma<N / 2> chroma(const Rows<N, 2>& rgb) {
    const auto sums = pairSums<N, 2>(rgb);
    const auto r = asFloat(sums[0]), g = asFloat(sums[1]), b = asFloat(sums[2]);
    const auto cb = (((-0.148F * r + 512.0F) + 0.439F * b) - 0.291F * g) * 0.25F + 0.5F;
    const auto cr = (((r * 0.439F + 512.0F) - 0.071F * b) - 0.368F * g) * 0.25F + 0.5F;
    return {narrow<Zim16s>(truncate(cb)), narrow<Zim16s>(truncate(cr))};
  }
  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> asFloat(Lane<Zim16s, N> a) {
    return toFloat(widen(bitsAs<Zim16u>(a)));
  }
};

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
