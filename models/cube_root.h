// Cube roots of lanes: those of the C library's cbrtf to the bit, and near ones.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "frame/lanes/lookup.h"
#include "frame/lanes/one_by_one.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// cbrtf of a single lane, where it is wanted.
inline Lane<Zim32f, 1> libraryCubeRoot(Lane<Zim32f, 1> x, Lane<Zim32s, 1> wanted) {
  return Lane<Zim32f, 1>(wanted.v != 0 ? std::cbrt(x.v) : x.v);
}

// cbrtf is not rounded correctly everywhere. Of GNU's (2.36) every ninth root is not, some are off by all but a unit in
// the last place: no bound on that error would tell one float from the next. So lanes take the very way that leads to
// its results, where the library at hand is seen to go it:
//
//     x = m 2^(3k + r), m from 1/2 to below 1, r = 0, 1 or 2
//     u = c0 + c1 m + c2 m^2                          near the root of m, to 1.3e-3; rounded to single precision
//     cbrt(x) ~ 2^k cbrt(2)^r u (u^3 + 2 m) / (2 u^3 + m)         one step of Halley's rule, in double
//
// u^3 is rounded to single precision as well, twice, and so decides the last bit. The coefficients were found by
// search: any quadratic within 1e-14 of this one gives the library's results, for all floats (docs/exactness.md).
class CubeRoot {
 public:
  // For an image of this size. Looking at the library costs as much as a few roots: not for a handful of pixels.
  explicit CubeRoot(ZimiSize size) : byLanes_(std::int64_t{size.width} * size.height >= 64 && libraryGoesThisWay()) {}

  // cbrtf(x) where wanted is set, which must not be below the least normal number; elsewhere results have no meaning.
  template <int N>
  ZIM_INLINE Lane<Zim32f, N> operator()(Lane<Zim32f, N> x, Lane<Zim32s, N> wanted) const {
    return byLanesOrOne(x, wanted, [](auto lanes) ZIM_LAMBDA { return inLanes(lanes); });
  }
  // The same of x below 2, where wanted from 2^-15 on.
  template <int N>
  ZIM_INLINE Lane<Zim32f, N> ofShare(Lane<Zim32f, N> x, Lane<Zim32s, N> wanted) const {
    return byLanesOrOne(x, wanted,
                        [](auto lanes) ZIM_LAMBDA { return kParts == 4 ? ofShares(lanes) : inLanes(lanes); });
  }

  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> inLanes(Lane<Zim32f, N> x) {
    const auto bits = bitsAs<Zim32s>(x);
    const auto m = bitsAs<Zim32f>((bits & 0x007FFFFF) | 0x3F000000);
    // The exponent is 3 third + r, and third is k + 42.
    const auto exponent = bits >> 23;
    const auto third = bitsAs<Zim32s>(bitsAs<Zim16u>(exponent) * Zim16u{171}) >> 9;
    const auto r = exponent - (third + third + third);
    const auto step = rootOf(widen(m));
    // 1, cbrt(2) and cbrt(4) as a quadratic in r, which gives the nearest doubles.
    const auto wideR = widen(r);
    const auto root = narrow<Zim32f>(step * ((wideR * 0.033779476089226504 + 0.22614157380564676) * wideR + 1.0));
    const auto scaled = bitsAs<Zim32f>(bitsAs<Zim32s>(root) + ((third - 42) << 23));
    return select(bitsAs<Zim32s>(x < std::numeric_limits<Zim32f>::infinity()), scaled, x);
  }

  // The same of shares, quicker where a table of doubles stays in registers: it has the factor of each exponent.
  template <int N>
  ZIM_INLINE static Lane<Zim32f, N> ofShares(Lane<Zim32f, N> x) {
    using Bits = Lane<std::uint64_t, N>;
    const auto bits = bitsAs<std::uint64_t>(widen(x));
    const auto m = bitsAs<Zim64f>((bits & Bits(0x000FFFFFFFFFFFFF)) | Bits(0x3FE0000000000000));
    return narrow<Zim32f>(rootOf(m) * lookUpLowBits(kFactors, bits >> 52));
  }

 private:
  template <int N, class ByLanes>
  ZIM_INLINE Lane<Zim32f, N> byLanesOrOne(Lane<Zim32f, N> x, Lane<Zim32s, N> wanted,
                                          [[maybe_unused]] const ByLanes& byLanes) const {
    if constexpr (N == 1) {
      return libraryCubeRoot(x, wanted);
    } else {
      if (byLanes_) return byLanes(x);
      return oneByOne(x, wanted, x, [](Zim32f one) { return std::cbrt(one); });
    }
  }

  // The root of m.
  template <int N>
  ZIM_INLINE static Lane<Zim64f, N> rootOf(Lane<Zim64f, N> m) {
    const auto u = narrow<Zim32f>((m * -0.1915021616764 + 0.6975704602047) * m + 0.4926596205301);
    const auto cube = widen(u * u * u);
    return widen(u) * (cube + m + m) / (cube + cube + m);
  }

  // 2^k cbrt(2)^r by the last bits of the exponent of x as a double, from 2^-15 to below 2.
  static constexpr std::array<Zim64f, 16> kFactors = [] {
    std::array<Zim64f, 16> factors{};
    constexpr std::array roots = {1.0, 1.2599210498948732, 1.5874010519681994};
    double scale = 1.0;
    // The exponent of x is one less than that of m.
    for (int exponent = 1; exponent > -15; --exponent) {
      const int r = (exponent + 15) % 3;
      factors[static_cast<std::size_t>(exponent - 1 + 1023) % 16] = scale * roots[static_cast<std::size_t>(r)];
      if (r == 0) scale /= 2;
    }
    return factors;
  }();

  // Whether the library is of this kind, told by arguments at which it is wrong by a unit, up or down.
  static bool libraryGoesThisWay() {
    constexpr std::array telling = {0x1.1ec79p-6F,  0x1.7cc62ap-6F, 0x1.84b048p-2F, 0x1.a31a02p-2F,
                                    0x1.8dfbe8p+0F, 0x1.535098p+2F, 0x1.452c8ep+2F, 0x1.9956d6p+8F};
    std::array<Zim32f, std::max<std::size_t>(telling.size(), kLanes<Zim32f>)> arguments;
    for (std::size_t k = 0; k < arguments.size(); ++k) arguments[k] = telling[k % telling.size()];
    // The compiler would work the roots out by itself, and rightly.
    asm("" : "+m"(arguments));
    const auto roots = asArray(inLanes(fromArray(arguments)));
    for (std::size_t k = 0; k < roots.size(); ++k) {
      if (std::cbrt(arguments[k]) != roots[k]) return false;
    }
    return true;
  }

  bool byLanes_;
};

// A cube root whose relative error to that of cbrtf is below this, for x from 0.0088 to 1.01: cbrtf's own error counts
// as a unit in the last place, 1.2e-7, and the roundings here as four.
inline constexpr Zim32f kNearCubeRootError = 8e-7F;

// From z near 1 / cbrt(x), by way of the bits of x, and e = 1 - x z^3, which is within 0.112 of zero:
//     cbrt(x) = x z^2 (1 - e)^(-2/3) = x z^2 (1 + 2/3 e + 5/9 e^2 + 40/81 e^3 + 110/243 e^4 + 308/729 e^5 + ...)
// The terms in e^5 and e^6 are replaced by the nearest polynomials of lower degree, those of Chebyshev. What is left is
// at most 308/729 0.112^5 / 16 + 2618/6561 0.112^6 / 32 + 0.38 0.112^7 + ... < 6e-7.
template <int N>
ZIM_INLINE Lane<Zim32f, N> nearCubeRoot(Lane<Zim32f, N> x) {
  constexpr Zim32f h2 = 0.112F * 0.112F, b5 = 308.0F / 729.0F, b6 = 2618.0F / 6561.0F;
  constexpr Zim32f c1 = 2.0F / 3.0F - b5 * h2 * h2 * 5.0F / 16.0F, c2 = 5.0F / 9.0F - b6 * h2 * h2 * 9.0F / 16.0F,
                   c3 = 40.0F / 81.0F + b5 * h2 * 5.0F / 4.0F, c4 = 110.0F / 243.0F + b6 * h2 * 3.0F / 2.0F;
  // A third of the upper halves of the bits; what that makes of the lower ones is small enough.
  const auto third = bitsAs<Zim32s>(multiplyHigh(bitsAs<Zim16s>(x), Lane<Zim16s, 2 * N>(Zim16s{21845})));
  const auto z = bitsAs<Zim32f>(Lane<Zim32s, N>(0x54A18000) - third);
  const auto zz = z * z, xzz = x * zz;
  const auto e = 1.0F - x * z * zz;
  return xzz + xzz * e * ((e * c4 + c3) * (e * e) + (e * c2 + c1));
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
