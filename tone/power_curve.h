// Powers with a fixed exponent, in double lanes, close enough to the library's pow to tell in nearly all lanes what pow
// would give after rounding; only the others, less than one in a thousand, need a call of it.
#pragma once

#include <limits>

#include "frame/lanes/convert.h"
#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// x^exponent as 2^(exponent e) times a polynomial in m - 1.5, with x = 2^e m and m in [1, 2).
template <std::size_t Coefficients>
struct PowerCurve {
  double exponent;
  // Largest relative error of the polynomial (a supremum norm proven with Sollya), nearly doubled: the other half
  // covers the errors of rounding, here, in the library's pow and in what a caller makes of either.
  double relativeBound;
  // 2^(exponent e) for seven binades from 2^lowestBinade on, correctly rounded; NaN for all above.
  int lowestBinade;
  std::array<double, 8> factors;
  std::array<double, Coefficients> polynomial;
};

// Proven: 1.0527e-11.
inline constexpr PowerCurve<12> kForwardPower = {
    0.45,
    2e-11,
    -6,
    {0x1.3b2c47bff8329p-3, 0x1.ae89f995ad3adp-3, 0x1.2611186bae675p-2, 0x1.91b501c2db3dfp-2, 0x1.125fbee250664p-1,
     0x1.76ce51f6a0bb8p-1, 0x1p0, std::numeric_limits<double>::quiet_NaN()},
    {0x1.333e088041d01p0, 0x1.70b0d6fe087bfp-2, -0x1.0e5f8d79e1be6p-4, 0x1.7483b1e1ac8c5p-6, -0x1.3ca1d48b2ba7fp-7,
     0x1.2bbabf86ac09fp-8, -0x1.2f6a058d6efccp-9, 0x1.4152eced292acp-10, -0x1.53ba2bf415078p-11, 0x1.72d54437be5eap-12,
     -0x1.22a1b4d8ead96p-12, 0x1.6b17334d73632p-13}};

// Proven: 2.1254e-11.
inline constexpr PowerCurve<10> kInversePower = {
    2.2222222222222223,
    4e-11,
    -3,
    {0x1.428a2f98d728bp-7, 0x1.7840850a207ap-5, 0x1.b6e8aeee17ed5p-3, 0x1p0, 0x1.2aa1a5aad04f5p2, 0x1.5c5cbbc379085p4,
     0x1.965fea53d6e3dp6, std::numeric_limits<double>::quiet_NaN()},
    {0x1.3b279eb7a1665p1, 0x1.d2e55cebf99e9p1, 0x1.7c6f09733b1b2p0, 0x1.2c96e4741132bp-4, -0x1.37baf0bf9043dp-7,
     0x1.27a8d69e73179p-9, -0x1.6b713f9dfd60ep-11, 0x1.017a7639b1fb3p-12, -0x1.d7ddc3ec7e7fdp-14,
     0x1.ce40681fdbf2ap-15}};

// Coefficients first to first + count - 1, in pairs of pairs, so that the additions do not wait for one another.
template <std::size_t first, std::size_t count, std::size_t Coefficients, int N>
ZIM_INLINE Lane<Zim64f, N> polynomial(const PowerCurve<Coefficients>& curve, const Pixels<Zim64f, N, 4>& powers) {
  if constexpr (count == 1) {
    return curve.polynomial[first];
  } else {
    constexpr std::size_t half = std::bit_ceil(count) / 2;
    return polynomial<first, half>(curve, powers) +
           powers[std::countr_zero(half)] * polynomial<first + half, count - half>(curve, powers);
  }
}

// Each lane's entry of a table of eight, by the low three bits of the index.
template <int N>
ZIM_INLINE Lane<Zim64f, N> lookUp(const std::array<double, 8>& table, Lane<std::uint64_t, N> index) {
  using Result = Lane<Zim64f, N>;
  if constexpr (Result::form == Form::split) {
    return Result::join(lookUp(table, index.v.lo), lookUp(table, index.v.hi));
  } else {
#if defined(__AVX2__)
    // The lower and the upper 32 bits of the entries, each picked by the index in the lower 32 bits of a lane.
    const auto* words = reinterpret_cast<const float*>(table.data());
    const __m256i first = _mm256_castps_si256(_mm256_loadu_ps(words)),
                  second = _mm256_castps_si256(_mm256_loadu_ps(words + 8));
    const Register low = pick<0, 2, 0, 2>(first, second), high = pick<1, 3, 1, 3>(first, second);
    const __m256i order = _mm256_setr_epi32(0, 1, 4, 5, 2, 3, 6, 7);
    const __m256i lowWords = _mm256_permutevar8x32_epi32(_mm256_permutevar8x32_epi32(low, order), (__m256i)index.v);
    const __m256i highWords = _mm256_permutevar8x32_epi32(_mm256_permutevar8x32_epi32(high, order), (__m256i)index.v);
    return Result::of((__m256d)_mm256_blend_epi32(lowWords, _mm256_slli_epi64(highWords, 32), 0xAA));
#else
    return Result::of(_mm_setr_pd(table[index.v[0] & 7], table[index.v[1] & 7]));
#endif
  }
}

// x^exponent within the relative bound, from the first binade of the curve on; NaN above its binades and for what is
// not a number. Below the first binade, and for negative x, it means nothing.
template <std::size_t Coefficients, int N>
ZIM_INLINE Lane<Zim64f, N> approximatePower(const PowerCurve<Coefficients>& curve, Lane<Zim64f, N> x) {
  using Bits = Lane<std::uint64_t, N>;
  const auto bits = bitsAs<std::uint64_t>(x);
  const auto binade = (bits >> 52) - Bits(static_cast<std::uint64_t>(1023 + curve.lowestBinade));
  // The binade fits 16 bits, for which there is a minimum everywhere.
  const auto entry = bitsAs<std::uint64_t>(smaller(bitsAs<Zim16s>(binade), Lane<Zim16s, 4 * N>(Zim16s{7})));
  const auto mantissa = bitsAs<Zim64f>((bits & Bits(0x000FFFFFFFFFFFFF)) | Bits(0x3FF0000000000000));
  const auto u = mantissa - 1.5;
  const auto u2 = u * u, u4 = u2 * u2;
  return lookUp(curve.factors, entry) * polynomial<0, Coefficients>(curve, std::array{u, u2, u4, u4 * u4});
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
