// Conversions between lanes of different sample types, and products that need more bits than their factors.
#pragma once

#include <algorithm>

#include "frame/lanes/lane.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// The next wider sample type, which holds every value.
template <class T>
struct WiderType;
template <>
struct WiderType<Zim8u> {
  using Type = Zim16s;
};
template <>
struct WiderType<Zim8s> {
  using Type = Zim16s;
};
template <>
struct WiderType<Zim16u> {
  using Type = Zim32s;
};
template <>
struct WiderType<Zim16s> {
  using Type = Zim32s;
};
template <>
struct WiderType<Zim32f> {
  using Type = Zim64f;
};
template <>
struct WiderType<Zim32s> {
  using Type = Zim64f;
};
template <class T>
using Wider = typename WiderType<T>::Type;

// Each lane exactly, in the next wider type. Integer lanes keep the order of lanes in memory; the order of the doubles
// within their registers is only the one that narrowing undoes.
template <class T, int N>
ZIM_INLINE Lane<Wider<T>, N> widen(Lane<T, N> a) {
  using W = Wider<T>;
  using Result = Lane<W, N>;
  if constexpr (Lane<T, N>::form == Form::single) {
    return Result(static_cast<W>(a.v));
  } else if constexpr (Lane<T, N>::form == Form::split) {
    return Result::join(widen(a.v.lo), widen(a.v.hi));
  } else {
    using Half = Lane<W, N / 2>;
    using HalfValue = typename Half::Value;
    const auto bits = (Register)a.v;
    const Register zero = ZIM_MM_BITS(setzero)();
    Register lo, hi;
    if constexpr (std::is_same_v<T, Zim8u>) {
      lo = ZIM_MM(unpacklo_epi8)(bits, zero);
      hi = ZIM_MM(unpackhi_epi8)(bits, zero);
    } else if constexpr (std::is_same_v<T, Zim8s>) {
      lo = ZIM_MM(srai_epi16)(ZIM_MM(unpacklo_epi8)(zero, bits), 8);
      hi = ZIM_MM(srai_epi16)(ZIM_MM(unpackhi_epi8)(zero, bits), 8);
    } else if constexpr (std::is_same_v<T, Zim16u>) {
      lo = ZIM_MM(unpacklo_epi16)(bits, zero);
      hi = ZIM_MM(unpackhi_epi16)(bits, zero);
    } else if constexpr (std::is_same_v<T, Zim16s>) {
      lo = ZIM_MM(srai_epi32)(ZIM_MM(unpacklo_epi16)(zero, bits), 16);
      hi = ZIM_MM(srai_epi32)(ZIM_MM(unpackhi_epi16)(zero, bits), 16);
    } else {
#if defined(__AVX512BW__)
      using HalfFloats = __m256;
      const __m256i low = _mm512_castsi512_si256(bits), high = _mm512_extracti64x4_epi64(bits, 1);
#elif defined(__AVX2__)
      using HalfFloats = __m128;
      const __m128i low = _mm256_castsi256_si128(bits), high = _mm256_extracti128_si256(bits, 1);
#else
      using HalfFloats = __m128;
      const __m128i low = bits, high = _mm_unpackhi_epi64(bits, bits);
#endif
      if constexpr (std::is_same_v<T, Zim32f>) {
        lo = (Register)ZIM_MM(cvtps_pd)((HalfFloats)low);
        hi = (Register)ZIM_MM(cvtps_pd)((HalfFloats)high);
      } else {
        lo = (Register)ZIM_MM(cvtepi32_pd)(low);
        hi = (Register)ZIM_MM(cvtepi32_pd)(high);
      }
    }
    return Result::join(Half::of((HalfValue)lo), Half::of((HalfValue)hi));
  }
}

// The same on the way to a type of 32 bits: bytes without sign pass through 16 bits without sign, which widen further
// in one step less.
template <class To, class T, int N>
ZIM_INLINE auto widenTowards(Lane<T, N> a) {
  if constexpr (std::is_same_v<T, Zim8u> && sizeof(To) > 2) {
    return bitsAs<Zim16u>(widen(a));
  } else {
    return widen(a);
  }
}

// Each lane in the narrower type To, saturated to its range. From double to single: rounded to nearest.
template <class To, class T, int N>
ZIM_INLINE Lane<To, N> narrow(Lane<T, N> a) {
  using Result = Lane<To, N>;
  if constexpr (std::is_same_v<To, T>) {
    return a;
  } else if constexpr (Lane<T, N>::form == Form::single) {
    if constexpr (std::is_floating_point_v<To>) {
      return Result(static_cast<To>(a.v));
    } else {
      constexpr T low = std::is_signed_v<To> ? -(T{1} << (8 * sizeof(To) - 1)) : T{0};
      constexpr T high =
          static_cast<T>((std::is_signed_v<To> ? T{1} << (8 * sizeof(To) - 1) : T{1} << (8 * sizeof(To))) - 1);
      return Result(static_cast<To>(clamp(a, low, high).v));
    }
  } else if constexpr (sizeof(T) == 4 && sizeof(To) == 1) {
    return narrow<To>(narrow<Zim16s>(a));
  } else {
    static_assert(Lane<T, N>::form == Form::split && 2 * sizeof(To) == sizeof(T));
    if constexpr (Lane<To, N>::form == Form::split) {
      return Result::join(narrow<To>(a.v.lo), narrow<To>(a.v.hi));
    } else {
      const auto lo = (Register)a.v.lo.v, hi = (Register)a.v.hi.v;
      Register packed;
      if constexpr (std::is_same_v<To, Zim8u>) {
        packed = ZIM_MM(packus_epi16)(lo, hi);
      } else if constexpr (std::is_same_v<To, Zim8s>) {
        packed = ZIM_MM(packs_epi16)(lo, hi);
      } else if constexpr (std::is_same_v<To, Zim16s>) {
        packed = ZIM_MM(packs_epi32)(lo, hi);
      } else if constexpr (std::is_same_v<To, Zim16u>) {
#if defined(__AVX2__)
        packed = ZIM_MM(packus_epi32)(lo, hi);
#else
        // SSE2 packs with signed saturation only: negative lanes are cleared, the rest is packed around 32768.
        const auto shifted = [](__m128i x) {
          const __m128i positive = _mm_andnot_si128(_mm_srai_epi32(x, 31), x);
          return _mm_sub_epi32(positive, _mm_set1_epi32(32768));
        };
        packed = _mm_xor_si128(_mm_packs_epi32(shifted(lo), shifted(hi)), _mm_set1_epi16(-32768));
#endif
      } else {
        static_assert(std::is_same_v<To, Zim32f> && std::is_same_v<T, Zim64f>);
#if defined(__AVX512BW__)
        const auto low = (__m256d)_mm512_cvtpd_ps((__m512d)lo), high = (__m256d)_mm512_cvtpd_ps((__m512d)hi);
        packed = (Register)_mm512_insertf64x4(_mm512_castpd256_pd512(low), high, 1);
#elif defined(__AVX2__)
        packed = (Register)_mm256_set_m128(_mm256_cvtpd_ps((__m256d)hi), _mm256_cvtpd_ps((__m256d)lo));
#else
        packed = (Register)_mm_movelh_ps(_mm_cvtpd_ps((__m128d)lo), _mm_cvtpd_ps((__m128d)hi));
#endif
      }
      return Result::of((typename Result::Value)packed);
    }
  }
}

// The low bits of each lane as a sample without sign.
template <class To, int N>
ZIM_INLINE Lane<To, N> lowBits(Lane<Zim32s, N> a) {
  static_assert(std::is_unsigned_v<To> && sizeof(To) < 4);
  if constexpr (Lane<Zim32s, N>::form == Form::single) {
    return Lane<To, N>(static_cast<To>(a.v));
  } else if constexpr (sizeof(To) == 1) {
    return narrow<To>(a & Lane<Zim32s, N>(255));
  } else {
    return bitsAs<To>(narrow<Zim16s>((a << 16) >> 16));
  }
}

// Truncation toward zero; NaN and what 32 bits do not hold give 0x80000000.
template <int N>
ZIM_INLINE Lane<Zim32s, N> truncate(Lane<Zim32f, N> a) {
  if constexpr (Lane<Zim32f, N>::form == Form::single) {
    return Lane<Zim32s, N>(_mm_cvttss_si32(_mm_set_ss(a.v)));
  } else if constexpr (Lane<Zim32f, N>::form == Form::split) {
    return Lane<Zim32s, N>::join(truncate(a.v.lo), truncate(a.v.hi));
  } else {
    return Lane<Zim32s, N>::of((typename Lane<Zim32s, N>::Value)ZIM_MM(cvttps_epi32)(a.v));
  }
}
template <int N>
ZIM_INLINE Lane<Zim32s, N> truncate(Lane<Zim64f, N> a) {
  if constexpr (Lane<Zim64f, N>::form == Form::single) {
    return Lane<Zim32s, N>(_mm_cvttsd_si32(_mm_set_sd(a.v)));
  } else {
    static_assert(Lane<Zim64f, N>::form == Form::split);
    if constexpr (Lane<Zim32s, N>::form == Form::split) {
      return Lane<Zim32s, N>::join(truncate(a.v.lo), truncate(a.v.hi));
    } else {
#if defined(__AVX512BW__)
      const __m256i low = _mm512_cvttpd_epi32(a.v.lo.v), high = _mm512_cvttpd_epi32(a.v.hi.v);
      const __m512i both = _mm512_inserti64x4(_mm512_castsi256_si512(low), high, 1);
#elif defined(__AVX2__)
      const __m256i both = _mm256_set_m128i(_mm256_cvttpd_epi32(a.v.hi.v), _mm256_cvttpd_epi32(a.v.lo.v));
#else
      const __m128i both = _mm_unpacklo_epi64(_mm_cvttpd_epi32(a.v.lo.v), _mm_cvttpd_epi32(a.v.hi.v));
#endif
      return Lane<Zim32s, N>::of((typename Lane<Zim32s, N>::Value)both);
    }
  }
}

// The nearest integer in the rounding mode of the processor; what 32 bits do not hold gives 0x80000000.
template <int N>
ZIM_INLINE Lane<Zim32s, N> roundByProcessor(Lane<Zim32f, N> a) {
  if constexpr (Lane<Zim32f, N>::form == Form::single) {
    return Lane<Zim32s, N>(_mm_cvtss_si32(_mm_set_ss(a.v)));
  } else if constexpr (Lane<Zim32f, N>::form == Form::split) {
    return Lane<Zim32s, N>::join(roundByProcessor(a.v.lo), roundByProcessor(a.v.hi));
  } else {
    return Lane<Zim32s, N>::of((typename Lane<Zim32s, N>::Value)ZIM_MM(cvtps_epi32)(a.v));
  }
}

// The nearest float (ties to even); exact below 2^24.
template <int N>
ZIM_INLINE Lane<Zim32f, N> toFloat(Lane<Zim32s, N> a) {
  if constexpr (Lane<Zim32s, N>::form == Form::single) {
    return Lane<Zim32f, N>(static_cast<Zim32f>(a.v));
  } else if constexpr (Lane<Zim32s, N>::form == Form::split) {
    return Lane<Zim32f, N>::join(toFloat(a.v.lo), toFloat(a.v.hi));
  } else {
    return Lane<Zim32f, N>::of((typename Lane<Zim32f, N>::Value)ZIM_MM(cvtepi32_ps)((Register)a.v));
  }
}

// Samples in the wider type in which a kernel computes, exactly.
template <class To, class T, int N>
ZIM_INLINE Lane<To, N> convert(Lane<T, N> a) {
  if constexpr (std::is_same_v<To, T>) {
    return a;
  } else if constexpr (std::is_same_v<To, Zim32f> && std::is_same_v<T, Zim32s>) {
    return toFloat(a);
  } else {
    return convert<To>(widen(a));
  }
}

// a * wa + b * wb in 32 bits, for 16-bit lanes.
template <int N>
ZIM_INLINE Lane<Zim32s, N> pairDot(Lane<Zim16s, N> a, Lane<Zim16s, N> b, Zim16s wa, Zim16s wb) {
  using Result = Lane<Zim32s, N>;
  if constexpr (Lane<Zim16s, N>::form == Form::single) {
    return widen(a) * Result(wa) + widen(b) * Result(wb);
  } else if constexpr (Lane<Zim16s, N>::form == Form::split) {
    return Result::join(pairDot(a.v.lo, b.v.lo, wa, wb), pairDot(a.v.hi, b.v.hi, wa, wb));
  } else {
    using Half = Lane<Zim32s, N / 2>;
    using HalfValue = typename Half::Value;
    const auto pair = static_cast<Zim32u>(static_cast<Zim16u>(wa)) | static_cast<Zim32u>(static_cast<Zim16u>(wb)) << 16;
    const Register weights = ZIM_MM(set1_epi32)(static_cast<int>(pair));
    const Register lo = ZIM_MM(unpacklo_epi16)((Register)a.v, (Register)b.v);
    const Register hi = ZIM_MM(unpackhi_epi16)((Register)a.v, (Register)b.v);
    return Result::join(Half::of((HalfValue)ZIM_MM(madd_epi16)(lo, weights)),
                        Half::of((HalfValue)ZIM_MM(madd_epi16)(hi, weights)));
  }
}

// (a[0] + a[1]) * w, (a[2] + a[3]) * w and so on, in 32 bits.
template <int N>
ZIM_INLINE Lane<Zim32s, N / 2> neighbourDot(Lane<Zim16s, N> a, Zim16s w) {
  using Result = Lane<Zim32s, N / 2>;
  if constexpr (Lane<Zim16s, N>::form == Form::split) {
    return Result::join(neighbourDot(a.v.lo, w), neighbourDot(a.v.hi, w));
  } else {
    static_assert(Lane<Zim16s, N>::form == Form::whole);
    return Result::of((typename Result::Value)ZIM_MM(madd_epi16)((Register)a.v, ZIM_MM(set1_epi16)(w)));
  }
}

// (a + b + 1) >> 1, as if in more bits.
template <class T, int N>
ZIM_INLINE Lane<T, N> averageUp(Lane<T, N> a, Lane<T, N> b) {
  static_assert(std::is_same_v<T, Zim8u> || std::is_same_v<T, Zim16u>);
  if constexpr (Lane<T, N>::form == Form::single) {
    return Lane<T, N>(static_cast<T>((a.v + b.v + 1) >> 1));
  } else if constexpr (Lane<T, N>::form == Form::split) {
    return Lane<T, N>::join(averageUp(a.v.lo, b.v.lo), averageUp(a.v.hi, b.v.hi));
  } else {
    const auto x = (Register)a.v, y = (Register)b.v;
    return Lane<T, N>::of(
        (typename Lane<T, N>::Value)(sizeof(T) == 1 ? ZIM_MM(avg_epu8)(x, y) : ZIM_MM(avg_epu16)(x, y)));
  }
}

// (a + b + c + d + 2) >> 2, as if in more bits. The average of the averages is one too high where it and at least one
// of them was rounded up.
template <class T, int N>
ZIM_INLINE Lane<T, N> averageOfFour(Lane<T, N> a, Lane<T, N> b, Lane<T, N> c, Lane<T, N> d) {
  const auto ab = averageUp(a, b), cd = averageUp(c, d);
  return averageUp(ab, cd) - (((a ^ b) | (c ^ d)) & (ab ^ cd) & Lane<T, N>(1));
}

// a + b and a - b, saturated to the range of samples without sign.
template <class T, int N>
ZIM_INLINE Lane<T, N> addSaturated(Lane<T, N> a, Lane<T, N> b) {
  static_assert(std::is_same_v<T, Zim8u> || std::is_same_v<T, Zim16u>);
  if constexpr (Lane<T, N>::form == Form::single) {
    return Lane<T, N>(static_cast<T>(std::min<int>(a.v + b.v, static_cast<T>(-1))));
  } else if constexpr (Lane<T, N>::form == Form::split) {
    return Lane<T, N>::join(addSaturated(a.v.lo, b.v.lo), addSaturated(a.v.hi, b.v.hi));
  } else {
    const auto x = (Register)a.v, y = (Register)b.v;
    return Lane<T, N>::of(
        (typename Lane<T, N>::Value)(sizeof(T) == 1 ? ZIM_MM(adds_epu8)(x, y) : ZIM_MM(adds_epu16)(x, y)));
  }
}
template <class T, int N>
ZIM_INLINE Lane<T, N> subtractSaturated(Lane<T, N> a, Lane<T, N> b) {
  static_assert(std::is_same_v<T, Zim8u> || std::is_same_v<T, Zim16u>);
  if constexpr (Lane<T, N>::form == Form::single) {
    return Lane<T, N>(static_cast<T>(std::max<int>(a.v - b.v, 0)));
  } else if constexpr (Lane<T, N>::form == Form::split) {
    return Lane<T, N>::join(subtractSaturated(a.v.lo, b.v.lo), subtractSaturated(a.v.hi, b.v.hi));
  } else {
    const auto x = (Register)a.v, y = (Register)b.v;
    return Lane<T, N>::of(
        (typename Lane<T, N>::Value)(sizeof(T) == 1 ? ZIM_MM(subs_epu8)(x, y) : ZIM_MM(subs_epu16)(x, y)));
  }
}

// |a - b|: one of the two saturated differences is zero.
template <class T, int N>
ZIM_INLINE Lane<T, N> distance(Lane<T, N> a, Lane<T, N> b) {
  return subtractSaturated(a, b) | subtractSaturated(b, a);
}

// a * a in twice as many bits; without sign, though 32 of them count as signed here.
template <int N>
ZIM_INLINE Lane<Zim16u, N> square(Lane<Zim8u, N> a) {
  const auto wide = bitsAs<Zim16u>(widen(a));
  return wide * wide;
}
template <int N>
ZIM_INLINE Lane<Zim32s, N> square(Lane<Zim16u, N> a) {
  using Result = Lane<Zim32s, N>;
  if constexpr (Lane<Zim16u, N>::form == Form::single) {
    return widen(a) * widen(a);
  } else if constexpr (Lane<Zim16u, N>::form == Form::split) {
    return Result::join(square(a.v.lo), square(a.v.hi));
  } else {
    using Half = Lane<Zim32s, N / 2>;
    using HalfValue = typename Half::Value;
    const auto x = (Register)a.v;
    const Register lower = ZIM_MM(mullo_epi16)(x, x), upper = ZIM_MM(mulhi_epu16)(x, x);
    return Result::join(Half::of((HalfValue)ZIM_MM(unpacklo_epi16)(lower, upper)),
                        Half::of((HalfValue)ZIM_MM(unpackhi_epi16)(lower, upper)));
  }
}

// (a + half) >> shift, with half the unit that is shifted out; the sum must fit 16 bits.
template <int shift, int N>
ZIM_INLINE Lane<Zim16s, N> roundingShift(Lane<Zim16s, N> a) {
#if defined(__AVX2__)
  if constexpr (Lane<Zim16s, N>::form == Form::whole) {
    const Register scaled = ZIM_MM(mulhrs_epi16)((Register)a.v, ZIM_MM(set1_epi16)(1 << (15 - shift)));
    return Lane<Zim16s, N>::of((typename Lane<Zim16s, N>::Value)scaled);
  }
#endif
  return (a + Zim16s{1 << (shift - 1)}) >> shift;
}

// The upper 16 bits of the 32-bit product: (a * b) >> 16.
template <int N>
ZIM_INLINE Lane<Zim16s, N> multiplyHigh(Lane<Zim16s, N> a, Lane<Zim16s, N> b) {
  if constexpr (Lane<Zim16s, N>::form == Form::single) {
    return Lane<Zim16s, N>(static_cast<Zim16s>((a.v * b.v) >> 16));
  } else if constexpr (Lane<Zim16s, N>::form == Form::split) {
    return Lane<Zim16s, N>::join(multiplyHigh(a.v.lo, b.v.lo), multiplyHigh(a.v.hi, b.v.hi));
  } else {
    return Lane<Zim16s, N>::of((typename Lane<Zim16s, N>::Value)ZIM_MM(mulhi_epi16)((Register)a.v, (Register)b.v));
  }
}

template <int N>
ZIM_INLINE Lane<Zim16u, N> multiplyHigh(Lane<Zim16u, N> a, Lane<Zim16u, N> b) {
  if constexpr (Lane<Zim16u, N>::form == Form::single) {
    return Lane<Zim16u, N>(static_cast<Zim16u>((Zim32u{a.v} * b.v) >> 16));
  } else if constexpr (Lane<Zim16u, N>::form == Form::split) {
    return Lane<Zim16u, N>::join(multiplyHigh(a.v.lo, b.v.lo), multiplyHigh(a.v.hi, b.v.hi));
  } else {
    return Lane<Zim16u, N>::of((typename Lane<Zim16u, N>::Value)ZIM_MM(mulhi_epu16)((Register)a.v, (Register)b.v));
  }
}

// Words of two bytes each, in the order of lanes.
template <int N>
ZIM_INLINE Lane<Zim16u, N> joinBytes(Lane<Zim8u, N> low, Lane<Zim8u, N> high) {
  using Result = Lane<Zim16u, N>;
  if constexpr (Lane<Zim8u, N>::form == Form::single) {
    return Result(static_cast<Zim16u>(low.v | high.v << 8));
  } else if constexpr (Lane<Zim8u, N>::form == Form::split) {
    return Result::join(joinBytes(low.v.lo, high.v.lo), joinBytes(low.v.hi, high.v.hi));
  } else {
    using Half = Lane<Zim16u, N / 2>;
    using HalfValue = typename Half::Value;
    return Result::join(Half::of((HalfValue)ZIM_MM(unpacklo_epi8)((Register)low.v, (Register)high.v)),
                        Half::of((HalfValue)ZIM_MM(unpackhi_epi8)((Register)low.v, (Register)high.v)));
  }
}

// Bits of each byte that are left by the mask once the byte is moved right by so many bits; by fewer than none, left.
template <int right, Zim8u mask, int N>
ZIM_INLINE Lane<Zim8u, N> movedBits(Lane<Zim8u, N> a) {
  static_assert(right >= 0 ? (mask << right & ~0xFF) == 0 : (mask & ((1 << -right) - 1)) == 0);
  const auto moved = [](auto bits) ZIM_LAMBDA {
    if constexpr (right < 0) {
      return bits << -right;
    } else {
      return bits >> right;
    }
  };
  if constexpr (right == 0 || N == 1) {
    return moved(a) & Lane<Zim8u, N>(mask);
  } else {
    return bitsAs<Zim8u>(moved(bitsAs<Zim16u>(a))) & Lane<Zim8u, N>(mask);
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
