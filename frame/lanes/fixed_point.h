// Matrices in fixed point with 16 fraction bits, on 16-bit lanes.
#pragma once

#include "frame/lanes/convert.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// (c[0] x + c[1] y + c[2] z + bias) >> 16
struct FixedRow {
  Zim32s c[3];
  Zim32s bias;
};

// A row in signed 16-bit factors, for the processor's sums of two products. The nearest multiple of 65536 is taken out
// of each coefficient, so that the rest fits:
//   (sum c_i x_i + r) >> 16  ==  ((sum (c_i - 65536 k_i) x_i + r) >> 16) + sum k_i x_i
// That of x may be made to fit otherwise: where there are two pairs, (x, y) and (x, z), it is shared out between them;
// or x is multiplied beforehand. And a constant beside x or z brings the bias in, where its multiples make it up.
struct SplitRow {
  static constexpr Zim16s biasUnit = 1024;

  std::array<Zim16s, 3> factor{}, whole{};
  int factors = 0;  // that are not zero
  Zim16s scaleX = 1;
  Zim16s xBesideZ = 0;  // of the factor of x; the rest stands beside y
  bool biasInUnits = false;

  constexpr explicit SplitRow(FixedRow row) {
    for (std::size_t i = 0; i < 3; ++i) {
      const Zim32s nearestWhole = (row.c[i] + 32768) >> 16;
      whole[i] = static_cast<Zim16s>(nearestWhole);
      factor[i] = static_cast<Zim16s>(row.c[i] - nearestWhole * 65536);
      factors += factor[i] != 0;
    }
    const auto fits = [](Zim32s c) { return c == static_cast<Zim16s>(c); };
    const Zim32s units = row.bias / biasUnit;
    const bool inUnits = row.bias % biasUnit == 0 && fits(units);
    if (factors == 1) {
      biasInUnits = inUnits;
      return;
    }
    Zim32s x = row.c[0];
    Zim16s scale = 1;
    const bool shared = factors == 3 && x >= -65536 && x < 65535;
    while (!shared && scale < 8 && (x % scale != 0 || !fits(x / scale))) scale *= 2;
    if (scale == 8 || factor[0] == 0) {
      x = factor[0];
    } else {
      x /= scale;
      scaleX = scale;
      whole[0] = 0;
    }
    biasInUnits = factors == 3 && inUnits && fits(x - units);
    xBesideZ = static_cast<Zim16s>(factors < 3 ? 0 : biasInUnits ? units : x / 2);
    factor[0] = static_cast<Zim16s>(x - xBesideZ);
  }
};

// The row's fraction: all but the whole multiples.
template <FixedRow row, int shift, int N>
ZIM_INLINE Lane<Zim16s, N> fixedFraction(Lane<Zim16s, N> x, Lane<Zim16s, N> y, Lane<Zim16s, N> z) {
  constexpr SplitRow split(row);
  constexpr auto f = split.factor;
  const auto shifted = [](Lane<Zim32s, N> sum)
                           ZIM_LAMBDA { return narrow<Zim16s>((split.biasInUnits ? sum : sum + row.bias) >> shift); };
  if constexpr (split.factors == 1) {
    const auto& only = f[0] != 0 ? x : f[1] != 0 ? y : z;
    constexpr Zim16s factor = static_cast<Zim16s>(f[0] + f[1] + f[2]);
    if constexpr (row.bias == 0 && shift == 16) {
      return multiplyHigh(only, Lane<Zim16s, N>(factor));
    } else {
      return shifted(pairDot(only, Lane<Zim16s, N>(SplitRow::biasUnit), factor,
                             static_cast<Zim16s>(split.biasInUnits ? row.bias / SplitRow::biasUnit : 0)));
    }
  } else {
    const auto twice = x + x;
    const auto scaled = split.scaleX == 1 ? x : split.scaleX == 2 ? twice : twice + twice;
    if constexpr (f[0] == 0) {
      return shifted(pairDot(y, z, f[1], f[2]));
    } else if constexpr (f[1] == 0) {
      return shifted(pairDot(scaled, z, f[0], f[2]));
    } else if constexpr (f[2] == 0) {
      return shifted(pairDot(scaled, y, f[0], f[1]));
    } else {
      const auto besideZ = split.biasInUnits ? scaled + SplitRow::biasUnit : scaled;
      return shifted(pairDot(scaled, y, f[0], f[1]) + pairDot(besideZ, z, split.xBesideZ, f[2]));
    }
  }
}

// a + k x by additions, which more units of the processor take than shifts.
template <int k, class T, int N>
ZIM_INLINE Lane<T, N> plusMultiple(Lane<T, N> a, Lane<T, N> x) {
  if constexpr (k == 0) {
    return a;
  } else if constexpr (k % 2 == 0) {
    return plusMultiple<k / 2>(a, x + x);
  } else {
    return k > 0 ? plusMultiple<k - 1>(a + x, x) : plusMultiple<k + 1>(a - x, x);
  }
}

// The row on samples within -256 to 255, with a result that fits 16 bits. A smaller shift leaves fraction bits. A
// larger one divides a sum of samples within -1024 to 1023; it takes rows whose coefficients split without whole
// multiples. Beside coefficients below 32768, samples may be larger, as long as the sum fits 32 bits.
template <FixedRow row, int shift = 16, int N>
ZIM_INLINE Lane<Zim16s, N> fixedDot(Lane<Zim16s, N> x, Lane<Zim16s, N> y, Lane<Zim16s, N> z) {
  if constexpr (N == 1) {
    const Zim32s sum = row.c[0] * x.v + row.c[1] * y.v + row.c[2] * z.v + row.bias;
    return Lane<Zim16s, N>(static_cast<Zim16s>(sum >> shift));
  } else {
    constexpr SplitRow split(row);
    constexpr auto whole = split.whole;
    static_assert(shift <= 16 || whole == std::array<Zim16s, 3>{});
    constexpr int unit = shift <= 16 ? 65536 >> shift : 0;
    const auto fraction = fixedFraction<row, shift>(x, y, z);
    const auto andX = plusMultiple<whole[0] * unit>(fraction, x), andY = plusMultiple<whole[1] * unit>(andX, y);
    return plusMultiple<whole[2] * unit>(andY, z);
  }
}

// ---- Sums in 32 bits, lanes of even number apart from those of odd number ----
//
// Where several rows share their products, each product is made once, by a sum of two products of which one is zero:
// even and odd lanes then need no unpacking, and the upper halves of their sums are put together in two steps.

// Two coefficients as scale * rest + 65536 * whole each, of which the rest fits 16 bits. A scale leaves no whole, but
// has to divide both.
struct ScaledFactors {
  Zim16s scale = 1;
  std::array<Zim16s, 2> rest{}, whole{};

  constexpr explicit ScaledFactors(Zim32s first, Zim32s second = 0) {
    const auto fits = [](Zim32s c, Zim32s divisor) {
      return c % divisor == 0 && c / divisor == static_cast<Zim16s>(c / divisor);
    };
    while (scale < 128 && !(fits(first, scale) && fits(second, scale))) ++scale;
    const bool scales = scale < 128;
    if (!scales) scale = 1;
    for (std::size_t i = 0; i < 2; ++i) {
      const Zim32s c = i == 0 ? first : second;
      whole[i] = static_cast<Zim16s>(scales ? 0 : (c + 32768) >> 16);
      rest[i] = static_cast<Zim16s>(scales ? c / scale : c - whole[i] * 65536);
    }
  }

  template <int N>
  ZIM_INLINE Lane<Zim16s, N> scaled(Lane<Zim16s, N> x) const {
    return scale == 1 ? x : x * factor<Zim16s, N>(scale);
  }
};

template <int N>
struct EvenOdd {
  Lane<Zim32s, N / 2> even, odd;

  ZIM_INLINE friend EvenOdd operator+(EvenOdd a, EvenOdd b) { return {a.even + b.even, a.odd + b.odd}; }
  // The same for both.
  ZIM_INLINE friend EvenOdd operator+(EvenOdd a, Lane<Zim32s, N / 2> b) { return {a.even + b, a.odd + b}; }
};

// first a[0] + second a[1], first a[2] + second a[3] and so on, in 32 bits.
template <Zim16s first, Zim16s second, int N>
ZIM_INLINE Lane<Zim32s, N / 2> neighbourDot(Lane<Zim16s, N> a) {
  using Result = Lane<Zim32s, N / 2>;
  if constexpr (Lane<Zim16s, N>::form == Form::split) {
    return Result::join(neighbourDot<first, second>(a.v.lo), neighbourDot<first, second>(a.v.hi));
  } else {
    constexpr Zim32u both = static_cast<Zim16u>(first) | Zim32u{static_cast<Zim16u>(second)} << 16;
    const Register weights = ZIM_MM(set1_epi32)(static_cast<int>(both));
    return Result::of((typename Result::Value)ZIM_MM(madd_epi16)((Register)a.v, weights));
  }
}

// The same with coefficients of more bits, of lanes within -256 to 255. A pair of lanes is itself, as 32 bits, 65536
// times its second one and once the first.
template <Zim32s first, Zim32s second, int N>
ZIM_INLINE Lane<Zim32s, N / 2> wideNeighbourDot(Lane<Zim16s, N> a) {
  constexpr ScaledFactors f(first, second);
  constexpr auto restOfFirst = static_cast<Zim16s>(f.rest[0] - f.whole[1]);
  static_assert(restOfFirst == f.rest[0] - f.whole[1]);
  auto sum = neighbourDot<restOfFirst, f.rest[1]>(f.scaled(a));
  const auto pair = bitsAs<Zim32s>(a);
  if constexpr (f.whole[1] != 0) sum = plusMultiple<f.whole[1]>(sum, pair);
  if constexpr (f.whole[0] != 0) sum = plusMultiple<f.whole[0]>(sum, pair << 16);
  return sum;
}

// c x without the whole of the factor, which plusWhole adds to the upper halves.
template <Zim32s c, int N>
ZIM_INLINE EvenOdd<N> products(Lane<Zim16s, N> x) {
  constexpr ScaledFactors f(c);
  const auto scaled = f.scaled(x);
  return {neighbourDot<f.rest[0], 0>(scaled), neighbourDot<0, f.rest[0]>(scaled)};
}
template <Zim32s c, int N>
ZIM_INLINE Lane<Zim16s, N> plusWhole(Lane<Zim16s, N> sum, Lane<Zim16s, N> x) {
  return plusMultiple<ScaledFactors(c).whole[0]>(sum, x);
}

// The upper halves.
template <int N>
ZIM_INLINE Lane<Zim16s, N> highWords(EvenOdd<N> sums) {
  if constexpr (Lane<Zim16s, N>::form == Form::split) {
    return Lane<Zim16s, N>::join(highWords(EvenOdd<N / 2>{sums.even.v.lo, sums.odd.v.lo}),
                                 highWords(EvenOdd<N / 2>{sums.even.v.hi, sums.odd.v.hi}));
  } else {
    const auto even = ZIM_MM(srli_epi32)((Register)sums.even.v, 16), odd = (Register)sums.odd.v;
#if defined(__AVX512BW__)
    const Register both = _mm512_mask_blend_epi16(0xAAAAAAAA, even, odd);
#elif defined(__AVX2__)
    const Register both = _mm256_blend_epi16(even, odd, 0xAA);
#else
    const Register both = _mm_or_si128(even, _mm_and_si128(odd, _mm_set1_epi32(static_cast<int>(0xFFFF0000))));
#endif
    return Lane<Zim16s, N>::of((typename Lane<Zim16s, N>::Value)both);
  }
}

// ---- Sums over two bytes, in two steps ----
//
// Where bytes a and b stand in 32 bits twice, small weights make two words of them, and factors of 16 bits a sum of the
// words:
//   c[0] a + c[1] b  ==  f[0] (w[0] a + w[1] b) + f[1] (w[2] a + w[3] b)
// So coefficients beyond 16 bits leave no whole multiples. Two sums share their weights.
using ByteWeights = std::array<Zim8s, 4>;

struct TwoSteps {
  using Coefficients = std::array<Zim32s, 2>;

  bool found = false;
  ByteWeights weights{};
  std::array<Zim16s, 2> first{}, second{};  // the factors

  constexpr TwoSteps(Coefficients c, Coefficients d) {
    constexpr Zim32s most = 5;
    for (Zim32s w0 = 0; w0 <= most; ++w0) {
      for (Zim32s w1 = -most; w1 <= most; ++w1) {
        for (Zim32s w2 = -most; w2 <= most; ++w2) {
          for (Zim32s w3 = 0; w3 <= most; ++w3) {
            const Zim32s determinant = w0 * w3 - w1 * w2;
            if (determinant == 0) continue;
            const auto solve = [&](Coefficients sum, std::array<Zim16s, 2>& factors) {
              const Zim32s f0 = sum[0] * w3 - sum[1] * w2, f1 = sum[1] * w0 - sum[0] * w1;
              factors = {static_cast<Zim16s>(f0 / determinant), static_cast<Zim16s>(f1 / determinant)};
              return factors[0] * determinant == f0 && factors[1] * determinant == f1;
            };
            if (!solve(c, first) || !solve(d, second)) continue;
            found = true;
            weights = {static_cast<Zim8s>(w0), static_cast<Zim8s>(w1), static_cast<Zim8s>(w2), static_cast<Zim8s>(w3)};
            return;
          }
        }
      }
    }
  }
};

#if defined(__AVX2__)
// The words of bytes a, b, a, b and so on.
template <ByteWeights weights, int N>
ZIM_INLINE Lane<Zim16s, N / 2> weightedWords(Lane<Zim8u, N> bytes) {
  using Result = Lane<Zim16s, N / 2>;
  constexpr auto bits = std::bit_cast<Zim32s>(weights);
  return Result::of((typename Result::Value)ZIM_MM(maddubs_epi16)((Register)bytes.v, ZIM_MM(set1_epi32)(bits)));
}
#endif

// ---- Sums in two limbs ----
//
// Where one term of a sum is shared by many pixels, the products are kept apart, each of 32 bits in two 16-bit lanes:
// 65536 high + low. The terms of a pixel then meet in one comparison, which says whether the lower limbs carry.

// The lower limb is held moved down by 32768, so that a signed comparison orders it.
template <int N>
struct Limbs {
  Lane<Zim16s, N> high, low;
};

// c x
template <Zim32s c, int N>
ZIM_INLINE Limbs<N> product(Lane<Zim16s, N> x) {
  constexpr Zim32s whole = (c + 32768) >> 16;
  constexpr auto factor = static_cast<Zim16s>(c - whole * 65536);
  if constexpr (factor == 0) {
    return {plusMultiple<whole>(Lane<Zim16s, N>(0), x), Zim16s{-32768}};
  } else {
    const Lane<Zim16s, N> factors = factor;
    return {plusMultiple<whole>(multiplyHigh(x, factors), x), x * factors + Zim16s{-32768}};
  }
}

// Whether the lower limbs of a and b carry, as -1 or 0: a > 65535 - b.
template <int N>
ZIM_INLINE Lane<Zim16s, N> carry(Limbs<N> a, Limbs<N> b) {
  return a.low > Lane<Zim16s, N>(-1) - b.low;
}

// The higher limb of a + b.
template <int N>
ZIM_INLINE Lane<Zim16s, N> highOfSum(Limbs<N> a, Limbs<N> b) {
  return a.high + b.high - carry(a, b);
}

template <int N>
ZIM_INLINE Limbs<N> sum(Limbs<N> a, Limbs<N> b) {
  return {highOfSum(a, b), a.low + b.low + Zim16s{-32768}};
}

// a + c. A half in the lower limb carries where that has its highest bit; more than a half is less than nothing there,
// and borrows.
template <Zim32s c, int N>
ZIM_INLINE Limbs<N> plus(Limbs<N> a) {
  constexpr Zim32s half = 32768, low = c & 0xFFFF;
  constexpr auto high = static_cast<Zim16s>((c >> 16) + (low > half ? 1 : 0));
  if constexpr (low == 0) {
    return {a.high + high, a.low};
  } else if constexpr (low == half) {
    const auto moved = a.low + static_cast<Zim16s>(-half);
    return {a.high - (moved >> 15) + high, moved};
  } else if constexpr (low > half) {
    const Lane<Zim16s, N> leastWithoutBorrow = static_cast<Zim16s>(half - low);
    return {a.high + (leastWithoutBorrow > a.low) + high, a.low + static_cast<Zim16s>(low - 2 * half)};
  } else {
    return sum(a, Limbs<N>{high, static_cast<Zim16s>(low - half)});
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
