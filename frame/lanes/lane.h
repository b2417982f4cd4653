// Lane<T, N>: N values of type T that are computed on together, element by element.
//
// One text serves three forms. N = 1 holds a plain T, for single pixels. N * sizeof(T) equal to the register holds one
// SSE2, AVX2 or AVX-512 register. A larger N is split into two halves of N / 2, so that a kernel may mix sample widths:
// the 16 products of 16 s16 lanes are one Lane<Zim32s, 16>, in however many registers that takes.
//
// Everything works within the 128-bit parts of a register, of which AVX2 has two and AVX-512 four, as on so many SSE2
// registers side by side: the first parts belong to the first half, or quarter, of a block of pixels, and so on.
// Widening and narrowing then need no crossing of parts; loads and stores bring the parts to their places (memory.h).
//
// Integer arithmetic wraps. Comparisons give masks of all ones or all zeros. Nothing here has undefined behaviour.
#pragma once

#include <immintrin.h>

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "frame/target.h"
#include "zimcc.h"

#define ZIM_INLINE [[gnu::always_inline]] inline
#define ZIM_LAMBDA __attribute__((always_inline))

// An intrinsic at the width of the build's registers.
#if defined(__AVX512BW__)
#define ZIM_MM(operation) _mm512_##operation
#define ZIM_MM_BITS(operation) _mm512_##operation##_si512
#define ZIM_FLOATS __m512
#define ZIM_DOUBLES __m512d
#elif defined(__AVX2__)
#define ZIM_MM(operation) _mm256_##operation
#define ZIM_MM_BITS(operation) _mm256_##operation##_si256
#define ZIM_FLOATS __m256
#define ZIM_DOUBLES __m256d
#else
#define ZIM_MM(operation) _mm_##operation
#define ZIM_MM_BITS(operation) _mm_##operation##_si128
#define ZIM_FLOATS __m128
#define ZIM_DOUBLES __m128d
#endif

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

#if defined(__AVX512BW__)
using Register = __m512i;
#elif defined(__AVX2__)
using Register = __m256i;
#else
using Register = __m128i;
#endif
inline constexpr int kRegisterBytes = sizeof(Register);
inline constexpr int kParts = kRegisterBytes / 16;

template <class T>
inline constexpr int kLanes = kRegisterBytes / static_cast<int>(sizeof(T));

enum class Form { single, whole, split };

template <class T, int N>
inline constexpr Form kForm = N == 1           ? Form::single
                              : N == kLanes<T> ? Form::whole
                                               : Form::split;

template <int Bytes>
struct IntegerOfSize;
template <>
struct IntegerOfSize<1> {
  using Signed = std::int8_t;
  using Unsigned = std::uint8_t;
};
template <>
struct IntegerOfSize<2> {
  using Signed = std::int16_t;
  using Unsigned = std::uint16_t;
};
template <>
struct IntegerOfSize<4> {
  using Signed = std::int32_t;
  using Unsigned = std::uint32_t;
};
template <>
struct IntegerOfSize<8> {
  using Signed = std::int64_t;
  using Unsigned = std::uint64_t;
};
template <class T>
using SignedOf = typename IntegerOfSize<sizeof(T)>::Signed;

// The compiler's own vector of one register: arithmetic, shifts and comparisons come with it, at every level.
template <class T>
struct Vector {
  using Type [[gnu::vector_size(kRegisterBytes)]] = T;
};

template <class T, int N, Form = kForm<T, N>>
struct LaneValue;

template <class T, int N>
struct LaneValue<T, N, Form::single> {
  using Value = T;
  // Wide enough that nothing is promoted to a signed type, where overflow would be undefined.
  using Wrapping = std::conditional_t<std::is_floating_point_v<T>, T,
                                      std::conditional_t<sizeof(T) <= 4, std::uint32_t, std::uint64_t>>;
  ZIM_INLINE static Value broadcast(T x) { return x; }
};

template <class T, int N>
struct LaneValue<T, N, Form::whole> {
  using Value = typename Vector<T>::Type;
  using Wrapping = std::conditional_t<std::is_floating_point_v<T>, Value,
                                      typename Vector<typename IntegerOfSize<sizeof(T)>::Unsigned>::Type>;
  ZIM_INLINE static Value broadcast(T x) {
    if constexpr (sizeof(T) == 1) {
      return (Value)ZIM_MM(set1_epi8)(std::bit_cast<char>(x));
    } else if constexpr (sizeof(T) == 2) {
      return (Value)ZIM_MM(set1_epi16)(std::bit_cast<short>(x));
    } else if constexpr (std::is_same_v<T, float>) {
      return (Value)ZIM_MM(set1_ps)(x);
    } else if constexpr (sizeof(T) == 4) {
      return (Value)ZIM_MM(set1_epi32)(std::bit_cast<int>(x));
    } else if constexpr (std::is_same_v<T, double>) {
      return (Value)ZIM_MM(set1_pd)(x);
    } else {
      return (Value)(typename Vector<long long>::Type{} + std::bit_cast<long long>(x));
    }
  }
};

template <class T, int N>
struct Lane;

// Two halves side by side; every operation on it is the operation on each half.
template <class T, int N>
struct LanePair {
  Lane<T, N / 2> lo, hi;
};

template <class T, int N>
struct LaneValue<T, N, Form::split> {
  static_assert(N > kLanes<T> && N % kLanes<T> == 0, "fewer lanes than a register holds, but not one");
  using Value = LanePair<T, N>;
  using Wrapping = Value;
  ZIM_INLINE static Value broadcast(T x) { return {Lane<T, N / 2>(x), Lane<T, N / 2>(x)}; }
};

#define ZIM_LANE_ARITHMETIC(op)                                 \
  ZIM_INLINE friend Lane operator op(Lane a, Lane b) {          \
    if constexpr (form == Form::split) {                        \
      return join(a.v.lo op b.v.lo, a.v.hi op b.v.hi);          \
    } else {                                                    \
      return Lane::of((Value)((Wrapping)a.v op(Wrapping) b.v)); \
    }                                                           \
  }
#define ZIM_LANE_COMPARISON(op)                                       \
  ZIM_INLINE friend Mask operator op(Lane a, Lane b) {                \
    if constexpr (form == Form::split) {                              \
      return Mask::join(a.v.lo op b.v.lo, a.v.hi op b.v.hi);          \
    } else if constexpr (form == Form::single) {                      \
      return Mask::of(static_cast<SignedOf<T>>(a.v op b.v ? -1 : 0)); \
    } else {                                                          \
      return Mask::of((typename Mask::Value)(a.v op b.v));            \
    }                                                                 \
  }

template <class T, int N>
struct Lane {
  using Element = T;
  using Value = typename LaneValue<T, N>::Value;
  using Wrapping = typename LaneValue<T, N>::Wrapping;
  using Mask = Lane<SignedOf<T>, N>;
  static constexpr Form form = kForm<T, N>;

  Value v;

  Lane() = default;
  // Copies by value, not as memory: the compiler then keeps lanes in registers across aggregates that hold them.
  ZIM_INLINE Lane(const Lane& other) : v(other.v) {}
  ZIM_INLINE Lane& operator=(const Lane& other) {
    v = other.v;
    return *this;
  }
  // Every lane the same value, so that constants mix with lanes in formulas.
  ZIM_INLINE Lane(T x) : v(LaneValue<T, N>::broadcast(x)) {}

  ZIM_INLINE static Lane of(Value value) {
    Lane lane;
    lane.v = value;
    return lane;
  }
  template <class Half>
  ZIM_INLINE static Lane join(Half lo, Half hi) {
    return of(Value{lo, hi});
  }

  ZIM_LANE_ARITHMETIC(+)
  ZIM_LANE_ARITHMETIC(-)
  ZIM_LANE_ARITHMETIC(*)
  ZIM_LANE_ARITHMETIC(/)
  ZIM_LANE_ARITHMETIC(&)
  ZIM_LANE_ARITHMETIC(|)
  ZIM_LANE_ARITHMETIC(^)

  ZIM_INLINE friend Lane operator~(Lane a) { return a ^ Lane(static_cast<T>(-1)); }

  ZIM_LANE_COMPARISON(<)
  ZIM_LANE_COMPARISON(<=)
  ZIM_LANE_COMPARISON(>)
  ZIM_LANE_COMPARISON(>=)
  ZIM_LANE_COMPARISON(==)
  ZIM_LANE_COMPARISON(!=)

  // Right shift: arithmetic on signed lanes, logical on unsigned ones.
  ZIM_INLINE friend Lane operator>>(Lane a, int count) {
    if constexpr (form == Form::split) {
      return join(a.v.lo >> count, a.v.hi >> count);
    } else {
      return of((Value)(a.v >> count));
    }
  }
  ZIM_INLINE friend Lane operator<<(Lane a, int count) {
    if constexpr (form == Form::split) {
      return join(a.v.lo << count, a.v.hi << count);
    } else {
      return of((Value)((Wrapping)a.v << count));
    }
  }
};

#undef ZIM_LANE_ARITHMETIC
#undef ZIM_LANE_COMPARISON

// The same bits as lanes of another type, as many as fill the same registers.
template <class U, class T, int N>
ZIM_INLINE auto bitsAs(Lane<T, N> a) {
  using Result = Lane<U, N* static_cast<int>(sizeof(T)) / static_cast<int>(sizeof(U))>;
  if constexpr (Lane<T, N>::form == Form::split) {
    return Result::join(bitsAs<U>(a.v.lo), bitsAs<U>(a.v.hi));
  } else if constexpr (Lane<T, N>::form == Form::single) {
    static_assert(sizeof(U) == sizeof(T));
    return Result::of(std::bit_cast<U>(a.v));
  } else {
    return Result::of((typename Result::Value)a.v);
  }
}

// a where the mask is set, b elsewhere.
template <class T, int N>
ZIM_INLINE Lane<T, N> select(Lane<SignedOf<T>, N> mask, Lane<T, N> a, Lane<T, N> b) {
  if constexpr (Lane<T, N>::form == Form::split) {
    return Lane<T, N>::join(select(mask.v.lo, a.v.lo, b.v.lo), select(mask.v.hi, a.v.hi, b.v.hi));
  } else if constexpr (Lane<T, N>::form == Form::single) {
    return mask.v != 0 ? a : b;
  } else {
#if defined(__AVX512BW__)
    // The compiler keeps the outcome of a comparison in a mask register for this.
    return Lane<T, N>::of(mask.v ? a.v : b.v);
#elif defined(__AVX2__)
    return Lane<T, N>::of(
        (typename Lane<T, N>::Value)_mm256_blendv_epi8((Register)b.v, (Register)a.v, (Register)mask.v));
#else
    const auto bits = (Register)mask.v;
    return Lane<T, N>::of((typename Lane<T, N>::Value)_mm_or_si128(_mm_and_si128(bits, (Register)a.v),
                                                                   _mm_andnot_si128(bits, (Register)b.v)));
#endif
  }
}

// a, but zero where the mask is set.
template <std::signed_integral T, int N>
ZIM_INLINE Lane<T, N> cleared(Lane<T, N> a, Lane<T, N> mask) {
#if defined(__AVX512BW__)
  return select(mask, Lane<T, N>(0), a);
#else
  return a & ~mask;
#endif
}

// Whether the mask is set in any lane.
template <std::signed_integral T, int N>
ZIM_INLINE bool any(Lane<T, N> mask) {
  if constexpr (Lane<T, N>::form == Form::split) {
    return any(mask.v.lo | mask.v.hi);
  } else if constexpr (Lane<T, N>::form == Form::single) {
    return mask.v != 0;
  } else {
#if defined(__AVX512BW__)
    return _mm512_test_epi32_mask((Register)mask.v, (Register)mask.v) != 0;
#else
    return ZIM_MM(movemask_epi8)((Register)mask.v) != 0;
#endif
  }
}

// Whether the two differ in any lane; NaN differs from all.
template <int N>
ZIM_INLINE bool anyDiffer(Lane<Zim32f, N> a, Lane<Zim32f, N> b) {
#if defined(__AVX512BW__)
  // The compiler would take the mask of any(a != b) through a vector register.
  if constexpr (Lane<Zim32f, N>::form == Form::whole) return _mm512_cmpneq_ps_mask((__m512)a.v, (__m512)b.v) != 0;
#endif
  return any(a != b);
}

// Every lane the same factor, of which the compiler does not know: products by known ones it makes of shifts and
// additions, which take longer than the processor's multiplication of 16 bits.
template <class T, int N>
ZIM_INLINE Lane<T, N> factor(T x) {
  if constexpr (kForm<T, N> == Form::split) {
    const auto half = factor<T, N / 2>(x);
    return Lane<T, N>::join(half, half);
  } else {
    Lane<T, N> all(x);
    if constexpr (kForm<T, N> == Form::whole) asm("" : "+v"(all.v));
    return all;
  }
}

// The mask of every other lane: those of even number, or those of odd number.
template <std::signed_integral T, int N>
ZIM_INLINE Lane<T, N> everyOther(bool even) {
  if constexpr (N == 1) {
    return Lane<T, N>(static_cast<T>(even ? -1 : 0));
  } else {
    using Pair = typename IntegerOfSize<2 * sizeof(T)>::Unsigned;
    constexpr auto lower = static_cast<Pair>((Pair{1} << (8 * sizeof(T))) - 1);
    return bitsAs<T>(Lane<Pair, N / 2>(even ? lower : static_cast<Pair>(~lower)));
  }
}

// The sign of each lane as a bit, that of the first as the lowest. Lanes that were loaded from memory come in its
// order.
template <int N>
ZIM_INLINE std::uint64_t signBits(Lane<Zim8s, N> a) {
  static_assert(N <= 64);
  if constexpr (N == 1) {
    return a.v < 0 ? 1 : 0;
  } else {
#if defined(__AVX512BW__)
    return _mm512_movepi8_mask((Register)a.v);
#else
    return static_cast<std::uint32_t>(ZIM_MM(movemask_epi8)((Register)a.v));
#endif
  }
}

// The mask whose lanes are set by the bits.
template <int N>
ZIM_INLINE Lane<Zim8s, N> maskOfBits(std::uint64_t bits) {
  if constexpr (N == 1) {
    return Lane<Zim8s, N>(static_cast<Zim8s>(-static_cast<int>(bits & 1)));
  } else {
#if defined(__AVX512BW__)
    return Lane<Zim8s, N>::of((typename Lane<Zim8s, N>::Value)_mm512_movm_epi8(bits));
#else
    // Each byte of bits to eight lanes, which keep one bit each.
#if defined(__AVX2__)
    const auto lanesOfBytes = _mm256_setr_epi64x(0, 0x0101010101010101, 0x0202020202020202, 0x0303030303030303);
    const auto spread = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int>(bits)), lanesOfBytes);
#else
    const auto bytes = _mm_cvtsi32_si128(static_cast<int>(bits));
    const auto words = _mm_shufflelo_epi16(_mm_unpacklo_epi8(bytes, bytes), _MM_SHUFFLE(1, 1, 0, 0));
    const auto spread = _mm_shuffle_epi32(words, _MM_SHUFFLE(1, 1, 0, 0));
#endif
    const auto own = ZIM_MM(set1_epi64x)(static_cast<long long>(0x8040201008040201));
    return Lane<Zim8s, N>::of((typename Lane<Zim8s, N>::Value)ZIM_MM(cmpeq_epi8)(spread & own, own));
#endif
  }
}

// a, replaced by b where b is strictly larger (smaller). With a NaN on either side a stays, as the processor's own
// maximum and minimum of floats have it.
#define ZIM_LANE_EXTREME(name, op, extreme)                                          \
  template <class T, int N>                                                          \
  ZIM_INLINE Lane<T, N> name(Lane<T, N> a, Lane<T, N> b) {                           \
    using Result = Lane<T, N>;                                                       \
    if constexpr (Result::form == Form::split) {                                     \
      return Result::join(name(a.v.lo, b.v.lo), name(a.v.hi, b.v.hi));               \
    } else if constexpr (Result::form == Form::whole && std::is_same_v<T, float>) {  \
      return Result::of((typename Result::Value)ZIM_MM(extreme##_ps)(b.v, a.v));     \
    } else if constexpr (Result::form == Form::whole && std::is_same_v<T, double>) { \
      return Result::of((typename Result::Value)ZIM_MM(extreme##_pd)(b.v, a.v));     \
    } else {                                                                         \
      return Result::of(b.v op a.v ? b.v : a.v);                                     \
    }                                                                                \
  }
ZIM_LANE_EXTREME(larger, >, max)
ZIM_LANE_EXTREME(smaller, <, min)
#undef ZIM_LANE_EXTREME

template <class T, int N>
ZIM_INLINE Lane<T, N> clamp(Lane<T, N> a, std::type_identity_t<T> low, std::type_identity_t<T> high) {
  return smaller(larger(a, Lane<T, N>(low)), Lane<T, N>(high));
}

// Without the sign, also that of a NaN.
template <int N>
ZIM_INLINE Lane<Zim32f, N> magnitude(Lane<Zim32f, N> a) {
  return bitsAs<Zim32f>(bitsAs<Zim32s>(a) & 0x7FFFFFFF);
}

template <int N>
ZIM_INLINE Lane<Zim32f, N> squareRoot(Lane<Zim32f, N> a) {
  if constexpr (Lane<Zim32f, N>::form == Form::split) {
    return Lane<Zim32f, N>::join(squareRoot(a.v.lo), squareRoot(a.v.hi));
  } else if constexpr (Lane<Zim32f, N>::form == Form::single) {
    return Lane<Zim32f, N>(__builtin_sqrtf(a.v));
  } else {
    return Lane<Zim32f, N>::of((typename Lane<Zim32f, N>::Value)ZIM_MM(sqrt_ps)(a.v));
  }
}

// A sample of each channel of N pixels.
template <class T, int N, std::size_t Channels>
using Pixels = std::array<Lane<T, N>, Channels>;

// The array of f(0), f(1), ... for so many channels, f taking its channel as a constant. In place of a loop, which the
// compiler would unroll too late to keep the lanes in registers.
template <std::size_t Channels, class F>
ZIM_INLINE auto perChannel(const F& f) {
  return [&]<std::size_t... c>(std::index_sequence<c...>) ZIM_LAMBDA {
    using Element = decltype(f(std::integral_constant<std::size_t, 0>()));
    return std::array<Element, Channels>{f(std::integral_constant<std::size_t, c>())...};
  }
  (std::make_index_sequence<Channels>());
}

// f(0), f(1), ... in turn, for what it does.
template <std::size_t Channels, class F>
ZIM_INLINE void forChannels(const F& f) {
  [&]<std::size_t... c>(std::index_sequence<c...>) ZIM_LAMBDA { (f(std::integral_constant<std::size_t, c>()), ...); }
  (std::make_index_sequence<Channels>());
}

// The first, and the second, half of the lanes of each channel.
template <class T, int N, std::size_t Channels>
ZIM_INLINE Pixels<T, N / 2, Channels> lowHalves(const Pixels<T, N, Channels>& pixels) {
  return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return pixels[c].v.lo; });
}
template <class T, int N, std::size_t Channels>
ZIM_INLINE Pixels<T, N / 2, Channels> highHalves(const Pixels<T, N, Channels>& pixels) {
  return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return pixels[c].v.hi; });
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
