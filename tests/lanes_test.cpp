// Lanes against plain scalar code, over random and extreme values, in the form of one lane, one register and several.
// Built once for each processor target.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "frame/lanes/convert.h"
#include "frame/lanes/memory.h"
#include "tone/power_curve.h"

namespace zim {
namespace {

template <class T>
std::vector<T> samples(unsigned seed) {
  constexpr std::size_t count = 64 * 96;
  std::mt19937_64 random(seed);
  std::vector<T> values(count);
  std::vector<T> extremes = {T(0), T(1), std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max()};
  if constexpr (std::is_floating_point_v<T>) {
    for (double x : {-0.0, 0.5, -0.5, 2147483647.0, -2147483648.0, 2147483648.0, -2147483904.0, 1e-40, 3e38, -1e30}) {
      extremes.push_back(static_cast<T>(x));
    }
    extremes.push_back(std::numeric_limits<T>::quiet_NaN());
    extremes.push_back(std::numeric_limits<T>::infinity());
    extremes.push_back(-std::numeric_limits<T>::infinity());
  } else {
    for (long long x :
         {-1LL, 127LL, 128LL, 255LL, 256LL, -128LL, -129LL, 32767LL, 32768LL, 65535LL, 65536LL, -32769LL}) {
      extremes.push_back(static_cast<T>(x));
    }
  }
  for (T& x : values) {
    if (random() % 4 == 0) {
      x = extremes[random() % extremes.size()];
    } else if constexpr (std::is_floating_point_v<T>) {
      x = static_cast<T>(
          std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())), static_cast<int>(random() % 100) - 90));
    } else {
      x = static_cast<T>(random() >> random() % 64);
    }
  }
  return values;
}

template <class T>
bool same(T a, T b) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  }
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

template <class T, int N>
Lane<T, N> loadLanes(const T* p) {
  return load<T, N, 1>(reinterpret_cast<const std::byte*>(p))[0];
}
template <class T, int N>
void storeLanes(T* p, Lane<T, N> a) {
  store<T, N, 1>(reinterpret_cast<std::byte*>(p), {a});
}

// laneOperation on N lanes at a time gives what plainOperation gives element by element.
template <class Out, int N, class T, class LaneOperation, class PlainOperation>
void expectSame(const char* name, const LaneOperation& laneOperation, const PlainOperation& plainOperation) {
  const auto a = samples<T>(1), b = samples<T>(2);
  for (std::size_t i = 0; i + N <= a.size(); i += N) {
    Out results[N];
    storeLanes<Out, N>(results, laneOperation(loadLanes<T, N>(&a[i]), loadLanes<T, N>(&b[i])));
    for (std::size_t k = 0; k < N; ++k) {
      const Out expected = plainOperation(a[i + k], b[i + k]);
      ASSERT_TRUE(same(results[k], expected))
          << name << ", " << N << " lanes of " << sizeof(T) << " bytes: " << +a[i + k] << " and " << +b[i + k]
          << " give " << +results[k] << " in place of " << +expected;
    }
  }
}

// In all three forms.
template <class Out, class T, class LaneOperation, class PlainOperation>
void expectSameInAllForms(const char* name, const LaneOperation& laneOperation, const PlainOperation& plainOperation) {
  constexpr int whole = std::max(kLanes<T>, kLanes<Out>);
  expectSame<Out, 1, T>(name, laneOperation, plainOperation);
  expectSame<Out, whole, T>(name, laneOperation, plainOperation);
  expectSame<Out, 2 * whole, T>(name, laneOperation, plainOperation);
}

template <class T>
class LanesOf : public testing::Test {};
using AllTypes = testing::Types<Zim8u, Zim8s, Zim16u, Zim16s, Zim32u, Zim32s, Zim32f, Zim64f>;
TYPED_TEST_SUITE(LanesOf, AllTypes);

// The operation in 64 bits, of which the low bits count: integers wrap.
#define EXPECT_ARITHMETIC(op)                                                                    \
  expectSameInAllForms<T, T>(                                                                    \
      #op, [](auto a, auto b) { return a op b; },                                                \
      [](T a, T b) {                                                                             \
        if constexpr (std::is_floating_point_v<T>) {                                             \
          return a op b;                                                                         \
        } else {                                                                                 \
          return static_cast<T>(static_cast<std::uint64_t>(a) op static_cast<std::uint64_t>(b)); \
        }                                                                                        \
      })
#define EXPECT_COMPARISON(op)           \
  expectSameInAllForms<SignedOf<T>, T>( \
      #op, [](auto a, auto b) { return a op b; }, [](T a, T b) { return static_cast<SignedOf<T>>(a op b ? -1 : 0); })

TYPED_TEST(LanesOf, Arithmetic) {
  using T = TypeParam;
  EXPECT_ARITHMETIC(+);
  EXPECT_ARITHMETIC(-);
  EXPECT_ARITHMETIC(*);
  if constexpr (std::is_floating_point_v<T>) {
    EXPECT_ARITHMETIC(/);
  } else {
    EXPECT_ARITHMETIC(&);
    EXPECT_ARITHMETIC(|);
    EXPECT_ARITHMETIC(^);
    for (int count = 0; count < static_cast<int>(8 * sizeof(T)); ++count) {
      expectSameInAllForms<T, T>(
          ">>", [count](auto a, auto) { return a >> count; }, [count](T a, T) { return static_cast<T>(a >> count); });
      expectSameInAllForms<T, T>(
          "<<", [count](auto a, auto) { return a << count; },
          [count](T a, T) { return static_cast<T>(static_cast<std::uint64_t>(a) << count); });
    }
  }
}

TYPED_TEST(LanesOf, ComparisonAndSelection) {
  using T = TypeParam;
  EXPECT_COMPARISON(<);
  EXPECT_COMPARISON(<=);
  EXPECT_COMPARISON(>);
  EXPECT_COMPARISON(>=);
  EXPECT_COMPARISON(==);
  EXPECT_COMPARISON(!=);
  expectSameInAllForms<T, T>(
      "larger", [](auto a, auto b) { return larger(a, b); }, [](T a, T b) { return b > a ? b : a; });
  expectSameInAllForms<T, T>(
      "smaller", [](auto a, auto b) { return smaller(a, b); }, [](T a, T b) { return b < a ? b : a; });
  expectSameInAllForms<T, T>(
      "select", [](auto a, auto b) { return select(a < b, b, a); }, [](T a, T b) { return a < b ? b : a; });
}

// Two to four channels: each sample comes to its lane, and goes back to its place.
template <class T, int N, std::size_t Channels>
void expectChannelsInOrder() {
  const auto image = samples<T>(3);
  const auto* bytes = reinterpret_cast<const std::byte*>(image.data());
  const auto pixels = load<T, N, Channels>(bytes);
  for (std::size_t c = 0; c < Channels; ++c) {
    T channel[N];
    storeLanes<T, N>(channel, pixels[c]);
    for (std::size_t x = 0; x < N; ++x)
      ASSERT_TRUE(same(channel[x], image[x * Channels + c])) << Channels << " channels";
  }
  T back[N * Channels];
  store<T, N, Channels>(reinterpret_cast<std::byte*>(back), pixels);
  ASSERT_EQ(std::memcmp(back, bytes, sizeof(back)), 0);
  if constexpr (N > 1) {
    // A short load reads all but the last sample: the vector ends there.
    std::vector<T> shortImage(image.begin(), image.begin() + N * Channels - 1);
    const auto shortPixels =
        load<T, N, Channels, Extent::shortOfLast>(reinterpret_cast<const std::byte*>(shortImage.data()));
    store<T, N, Channels>(reinterpret_cast<std::byte*>(back), shortPixels);
    ASSERT_EQ(std::memcmp(back, bytes, sizeof(back) - sizeof(T)), 0);
    ASSERT_TRUE(same(back[N * Channels - 1], T(0)));
  }
}

TYPED_TEST(LanesOf, InterleavedChannels) {
  using T = TypeParam;
  expectChannelsInOrder<T, 1, 2>();
  expectChannelsInOrder<T, 1, 3>();
  expectChannelsInOrder<T, 1, 4>();
  expectChannelsInOrder<T, kLanes<T>, 2>();
  expectChannelsInOrder<T, kLanes<T>, 3>();
  expectChannelsInOrder<T, kLanes<T>, 4>();
  expectChannelsInOrder<T, 2 * kLanes<T>, 2>();
  expectChannelsInOrder<T, 2 * kLanes<T>, 3>();
  expectChannelsInOrder<T, 2 * kLanes<T>, 4>();
}

template <class To, class T>
void expectNarrowing() {
  // As many lanes as fill a register of the narrow type.
  constexpr int whole = kLanes<To>;
  const auto plain = [](T a, T) {
    if constexpr (std::is_floating_point_v<T>) {
      return static_cast<To>(a);
    } else {
      const auto wide = static_cast<std::int64_t>(a);
      return static_cast<To>(
          std::clamp<std::int64_t>(wide, std::numeric_limits<To>::min(), std::numeric_limits<To>::max()));
    }
  };
  const auto lanes = [](auto a, auto) { return narrow<To>(a); };
  expectSame<To, 1, T>("narrow", lanes, plain);
  if constexpr (std::is_floating_point_v<T>) {
    // The order of doubles in their registers is that of widening.
    const auto values = samples<float>(4);
    for (std::size_t i = 0; i + whole <= values.size(); i += whole) {
      float back[whole];
      storeLanes<float, whole>(back, narrow<float>(widen(loadLanes<float, whole>(&values[i])) * 1.0));
      for (std::size_t k = 0; k < whole; ++k) ASSERT_TRUE(same(back[k], values[i + k]));
    }
  } else {
    expectSame<To, whole, T>("narrow", lanes, plain);
    expectSame<To, 2 * whole, T>("narrow", lanes, plain);
  }
}

TEST(Conversion, NarrowingSaturates) {
  expectNarrowing<Zim8u, Zim16s>();
  expectNarrowing<Zim8s, Zim16s>();
  expectNarrowing<Zim8u, Zim32s>();
  expectNarrowing<Zim8s, Zim32s>();
  expectNarrowing<Zim16s, Zim32s>();
  expectNarrowing<Zim16u, Zim32s>();
  expectNarrowing<Zim32f, Zim64f>();
}

TEST(Conversion, LowBitsStay) {
  const auto plain = []<class To>(To) { return [](Zim32s a, Zim32s) { return static_cast<To>(a); }; };
  const auto bytes = [](auto a, auto) { return lowBits<Zim8u>(a); };
  const auto words = [](auto a, auto) { return lowBits<Zim16u>(a); };
  expectSame<Zim8u, 1, Zim32s>("lowBits", bytes, plain(Zim8u()));
  expectSame<Zim8u, kLanes<Zim8u>, Zim32s>("lowBits", bytes, plain(Zim8u()));
  expectSame<Zim16u, 1, Zim32s>("lowBits", words, plain(Zim16u()));
  expectSame<Zim16u, kLanes<Zim16u>, Zim32s>("lowBits", words, plain(Zim16u()));
}

TEST(Conversion, WideningIsExact) {
  const auto widened = [](auto a, auto) { return widen(a); };
  const auto plain = [](auto a, auto) { return static_cast<Wider<decltype(a)>>(a); };
  expectSame<Zim16s, kLanes<Zim8u>, Zim8u>("widen", widened, plain);
  expectSame<Zim16s, kLanes<Zim8s>, Zim8s>("widen", widened, plain);
  expectSame<Zim32s, kLanes<Zim16u>, Zim16u>("widen", widened, plain);
  expectSame<Zim32s, kLanes<Zim16s>, Zim16s>("widen", widened, plain);
  expectSame<Zim32f, kLanes<Zim8u>, Zim8u>(
      "convert", [](auto a, auto) { return convert<Zim32f>(a); }, [](auto a, auto) { return static_cast<Zim32f>(a); });
}

// Plain truncation with the processor's answer for what does not fit.
template <class T>
Zim32s truncated(T x) {
  return x > static_cast<T>(-2147483649.0) && x < static_cast<T>(2147483648.0) &&
                 !(sizeof(T) == 4 && x < -2147483648.0F)
             ? static_cast<Zim32s>(x)
             : std::numeric_limits<Zim32s>::min();
}

TEST(Conversion, TruncationAndBack) {
  expectSameInAllForms<Zim32s, Zim32f>(
      "truncate", [](auto a, auto) { return truncate(a); }, [](Zim32f a, Zim32f) { return truncated(a); });
  expectSame<Zim32s, 1, Zim64f>(
      "truncate", [](auto a, auto) { return truncate(a); }, [](Zim64f a, Zim64f) { return truncated(a); });
  expectSameInAllForms<Zim32s, Zim32f>(
      "truncate in double", [](auto a, auto) { return truncate(widen(a) * 3.0); },
      [](Zim32f a, Zim32f) { return truncated(static_cast<Zim64f>(a) * 3.0); });
  expectSameInAllForms<Zim32f, Zim32s>(
      "toFloat", [](auto a, auto) { return toFloat(a); }, [](Zim32s a, Zim32s) { return static_cast<Zim32f>(a); });
  expectSameInAllForms<Zim32f, Zim32f>(
      "squareRoot", [](auto a, auto) { return squareRoot(a); }, [](Zim32f a, Zim32f) { return std::sqrt(a); });
}

TEST(Conversion, WideProducts) {
  for (const auto& [wa, wb] : {std::pair<Zim16s, Zim16s>{1225, 2404}, {-32767, 32767}, {0, -1}, {32767, 32767}}) {
    expectSameInAllForms<Zim32s, Zim16s>(
        "pairDot", [wa = wa, wb = wb](auto a, auto b) { return pairDot(a, b, wa, wb); },
        [wa = wa, wb = wb](Zim16s a, Zim16s b) {
          return static_cast<Zim32s>(std::int64_t{a} * wa + std::int64_t{b} * wb);
        });
  }
  expectSameInAllForms<Zim16u, Zim16u>(
      "averageUp", [](auto a, auto b) { return averageUp(a, b); },
      [](Zim16u a, Zim16u b) { return static_cast<Zim16u>((a + b + 1) >> 1); });
  expectSameInAllForms<Zim16s, Zim16s>(
      "multiplyHigh", [](auto a, auto b) { return multiplyHigh(a, b); },
      [](Zim16s a, Zim16s b) { return static_cast<Zim16s>((a * b) >> 16); });
}

template <std::size_t Stride>
void expectPackedSums() {
  constexpr int part = kLanes<Zim32s>;
  const auto image = samples<Zim8u>(5);
  std::array<Lane<Zim32s, part>, 4> sums;
  const auto* bytes = reinterpret_cast<const std::byte*>(image.data());
  for (std::size_t i = 0; i < 4; ++i) {
    const auto* p = bytes + i * part * Stride;
    sums[i] =
        dot(i == 3 ? loadPacked<Stride, Extent::shortOfLast>(p) : loadPacked<Stride, Extent::whole>(p), 20, 30, 14);
  }
  Zim8u stored[4 * part];
  storePacked(reinterpret_cast<std::byte*>(stored), sums, [](auto sum) { return roundingShift<6>(sum); });
  for (std::size_t x = 0; x < 4 * part; ++x) {
    const Zim8u* p = &image[x * Stride];
    ASSERT_EQ(stored[x], (20 * p[0] + 30 * p[1] + 14 * p[2] + 32) >> 6) << Stride << " samples a pixel, pixel " << x;
  }
}

TEST(PackedPixels, WeightedSums) {
  expectPackedSums<3>();
  expectPackedSums<4>();
}

// In every interval at its ends and in between; the rest of the bound is for errors of rounding elsewhere.
template <class Curve>
void expectWithinBound(const Curve& curve) {
  constexpr int lanes = 2 * kLanes<Zim64f>, steps = 29;
  const auto power = [&](double x) {
    const PowerFunction& f = curve.function;
    return std::pow((static_cast<long double>(x) + f.shift) * f.scale, static_cast<long double>(f.exponent));
  };
  double left = Curve::first;
  for (int interval = 0; left < Curve::beyond; ++interval) {
    const double right = left + Curve::first * (1 << interval / Curve::intervals) / Curve::intervals;
    for (int i = 0; i <= steps; ++i) {
      const double x = i < steps ? left + (right - left) * i / steps : std::nextafter(right, left);
      double result[lanes];
      store<Zim64f, lanes, 1>(reinterpret_cast<std::byte*>(result), {approximatePower(curve, Lane<Zim64f, lanes>(x))});
      for (double y : result) ASSERT_EQ(y, result[0]) << x;
      ASSERT_LE(std::abs(static_cast<double>(result[0] / power(x) - 1)), 0.92 * curve.relativeBound) << x;
    }
    left = right;
  }
  double beyond[lanes];
  store<Zim64f, lanes, 1>(reinterpret_cast<std::byte*>(beyond),
                          {approximatePower(curve, Lane<Zim64f, lanes>(Curve::beyond))});
  for (double y : beyond) EXPECT_TRUE(std::isnan(y));
}

TEST(Powers, WithinTheirBounds) {
  expectWithinBound(kForwardPower);
  expectWithinBound(kInversePower);
}

TEST(RowsSideBySide, TransposedAndShifted) {
  constexpr std::size_t lanes = kLanes<Zim32s>;
  const auto values = samples<Zim32s>(6);
  const auto row = [&](std::size_t r) { return loadLanes<Zim32s, lanes>(&values[r * lanes]); };
  const auto columns = transpose<Zim32s, lanes>({row(0), row(1), row(2), row(3)});
  for (std::size_t i = 0; i < 4; ++i) {
    Zim32s column[lanes];
    storeLanes<Zim32s, lanes>(column, columns[i]);
    for (std::size_t k = 0; k < lanes; ++k) EXPECT_EQ(column[k], values[k % 4 * lanes + k / 4 * 4 + i]);
  }
  Zim32s shifted[lanes];
  storeLanes<Zim32s, lanes>(shifted, shiftedUp(row(1), &values[0]));
  for (std::size_t k = 0; k < lanes; ++k) EXPECT_EQ(shifted[k], values[k == 0 ? 0 : lanes + k - 1]);
}

TEST(Masks, UpperBitsInOrder) {
  constexpr std::size_t lanes = kLanes<Zim8s>;
  const auto values = samples<Zim8s>(7);
  for (std::size_t i = 0; i + lanes <= values.size(); i += lanes) {
    std::uint32_t expected = 0;
    for (std::size_t k = 0; k < lanes; ++k) expected |= static_cast<std::uint32_t>(values[i + k] < 0) << k;
    ASSERT_EQ(upperBits(loadLanes<Zim8s, lanes>(&values[i])), expected);
  }
}

TEST(Masks, AnyFindsASingleLane) {
  constexpr int lanes = 2 * kLanes<Zim16s>;
  for (std::size_t k = 0; k < lanes; ++k) {
    Zim16s mask[lanes] = {};
    EXPECT_FALSE(any(loadLanes<Zim16s, lanes>(mask)));
    mask[k] = -1;
    EXPECT_TRUE(any(loadLanes<Zim16s, lanes>(mask)));
  }
}

}  // namespace
}  // namespace zim
