// Powers with a fixed exponent, in double lanes, as bounds between which the library's pow lies.
//
// A caller takes both bounds through the rest of its formula. Every rounded operation in it is monotone, so that where
// the two ends agree after the last narrowing, pow would have given that same result; only the other lanes, about one
// in a thousand, need a call of pow.
#pragma once

#include <cmath>

#include "frame/lanes/convert.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// x^exponent as 2^(exponent e) times a polynomial in m - 1.5, with x = 2^e m and m in [1, 2).
template <std::size_t Coefficients>
struct PowerCurve {
  double exponent;
  // Largest relative error of the polynomial (a supremum norm proven with Sollya), widened to cover its evaluation, the
  // factor 2^(exponent e), and the library's own error.
  double relativeBound;
  int lowestBinade;                // e of the first factor
  std::array<double, 16> factors;  // 2^(exponent e), correctly rounded
  std::array<double, Coefficients> polynomial;

  // The factors reach from 2^lowestBinade up to here.
  constexpr double limit() const { return static_cast<double>(1 << (lowestBinade + 16)); }
};

// Proven: 1.0527e-11.
inline constexpr PowerCurve<12> kForwardPower = {
    0.45,
    2e-11,
    -6,
    {0x1.3b2c47bff8329p-3, 0x1.ae89f995ad3adp-3, 0x1.2611186bae675p-2, 0x1.91b501c2db3dfp-2, 0x1.125fbee250664p-1,
     0x1.76ce51f6a0bb8p-1, 0x1p0, 0x1.5db4d073c792p0, 0x1.ddb680117ab12p0, 0x1.46499af31b007p1, 0x1.bdb8cdadbe12p1,
     0x1.306fe0a31b715p2, 0x1.9fdf8bcce533dp2, 0x1.1c0cbeb32bdf9p3, 0x1.8406003b2ae5cp3, 0x1.09071f3e983adp4},
    {0x1.333e088041d01p0, 0x1.70b0d6fe087bfp-2, -0x1.0e5f8d79e1be6p-4, 0x1.7483b1e1ac8c5p-6, -0x1.3ca1d48b2ba7fp-7,
     0x1.2bbabf86ac09fp-8, -0x1.2f6a058d6efccp-9, 0x1.4152eced292acp-10, -0x1.53ba2bf415078p-11, 0x1.72d54437be5eap-12,
     -0x1.22a1b4d8ead96p-12, 0x1.6b17334d73632p-13}};

// Proven: 2.1254e-11.
inline constexpr PowerCurve<10> kInversePower = {
    2.2222222222222223,
    4e-11,
    -3,
    {0x1.428a2f98d728bp-7, 0x1.7840850a207ap-5, 0x1.b6e8aeee17ed5p-3, 0x1p0, 0x1.2aa1a5aad04f5p2, 0x1.5c5cbbc379085p4,
     0x1.965fea53d6e3dp6, 0x1.da0c4012ef44dp8, 0x1.147ecb8844cd1p11, 0x1.428a2f98d728bp13, 0x1.7840850a207ap15,
     0x1.b6e8aeee17ed5p17, 0x1p20, 0x1.2aa1a5aad04f5p22, 0x1.5c5cbbc379085p24, 0x1.965fea53d6e3dp26},
    {0x1.3b279eb7a1665p1, 0x1.d2e55cebf99e9p1, 0x1.7c6f09733b1b2p0, 0x1.2c96e4741132bp-4, -0x1.37baf0bf9043dp-7,
     0x1.27a8d69e73179p-9, -0x1.6b713f9dfd60ep-11, 0x1.017a7639b1fb3p-12, -0x1.d7ddc3ec7e7fdp-14,
     0x1.ce40681fdbf2ap-15}};

template <int N>
struct Bounds {
  Lane<Zim64f, N> low, high;
};

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

// Each lane's entry of a table of 16, by the low bits of the index.
template <int N>
ZIM_INLINE Lane<Zim64f, N> lookUp(const std::array<double, 16>& table, Lane<std::uint64_t, N> index) {
  using Result = Lane<Zim64f, N>;
  if constexpr (Result::form == Form::split) {
    return Result::join(lookUp(table, index.v.lo), lookUp(table, index.v.hi));
  } else if constexpr (Result::form == Form::single) {
    return Result(table[index.v & 15]);
  } else {
    typename Result::Value entries;
    for (std::size_t k = 0; k < N; ++k) entries[k] = table[index.v[k] & 15];
    return Result::of(entries);
  }
}

// Bounds of x^exponent; from the limit on they are so far apart that no rounding makes them agree. Below the first
// factor, and for negative x, they mean nothing.
template <std::size_t Coefficients, int N>
ZIM_INLINE Bounds<N> powerBounds(const PowerCurve<Coefficients>& curve, Lane<Zim64f, N> x) {
  using Bits = Lane<std::uint64_t, N>;
  const auto bits = bitsAs<std::uint64_t>(x);
  const auto binade = (bits >> 52) - Bits(static_cast<std::uint64_t>(1023 + curve.lowestBinade));
  const auto mantissa = bitsAs<Zim64f>((bits & Bits(0x000FFFFFFFFFFFFF)) | Bits(0x3FF0000000000000));
  const auto u = mantissa - 1.5;
  const auto u2 = u * u, u4 = u2 * u2;
  const auto power = lookUp(curve.factors, binade) * polynomial<0, Coefficients>(curve, std::array{u, u2, u4, u4 * u4});
  using Doubles = Lane<Zim64f, N>;
  const auto error = select(x < curve.limit(), power * curve.relativeBound, Doubles(HUGE_VAL));
  return {power - error, power + error};
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
