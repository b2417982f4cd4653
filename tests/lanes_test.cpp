// Lanes against plain scalar code, over random and extreme values, in the form of one lane, one register and several.
// Built once for each processor target.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "frame/lanes/averages.h"
#include "frame/lanes/convert.h"
#include "frame/lanes/fixed_point.h"
#include "frame/lanes/lookup.h"
#include "frame/lanes/memory.h"
#include "frame/lanes/zip.h"
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

// Two channels within registers: zipped, they are in memory as if they were stored interleaved.
template <class T, int N>
void expectZipped() {
  const auto a = samples<T>(5), b = samples<T>(6);
  T zipped[2 * N];
  const auto lanes = zip(loadLanes<T, N>(a.data()), loadLanes<T, N>(b.data()));
  storeLanes<T, 2 * N>(zipped, lanes);
  const auto unzipped = unzip(lanes);
  T even[N], odd[N];
  storeLanes<T, N>(even, unzipped[0]);
  storeLanes<T, N>(odd, unzipped[1]);
  for (std::size_t i = 0; i < N; ++i) {
    ASSERT_TRUE(same(zipped[2 * i], a[i]) && same(zipped[2 * i + 1], b[i]));
    ASSERT_TRUE(same(even[i], a[i]) && same(odd[i], b[i]));
  }
}

TYPED_TEST(LanesOf, ZipAndUnzip) {
  using T = TypeParam;
  expectZipped<T, kLanes<T>>();
  expectZipped<T, 2 * kLanes<T>>();
  expectZipped<T, 4 * kLanes<T>>();
}

// Four operands made of two: the first two of all values, the others away from them.
#define EXPECT_AVERAGE(name, lanes, plain)                                                           \
  expectSameInAllForms<Zim8u, Zim8u>(                                                                \
      name,                                                                                          \
      [](auto a, auto b) {                                                                           \
        [[maybe_unused]] const auto c = a - b, d = a ^ (b + b);                                      \
        return lanes;                                                                                \
      },                                                                                             \
      [](Zim8u a, Zim8u b) {                                                                         \
        [[maybe_unused]] const int c = static_cast<Zim8u>(a - b), d = static_cast<Zim8u>(a ^ 2 * b); \
        return static_cast<Zim8u>(plain);                                                            \
      })

TEST(Averages, OfBytes) {
  EXPECT_AVERAGE("averageDown", (averageDown(a, b)), (a + b) >> 1);
  EXPECT_AVERAGE("averageDown of four", averageDown(a, b, c, d), (a + b + c + d) >> 2);
  EXPECT_AVERAGE("3 : 1", (blend<3, 2>(a, b)), (3 * a + b + 2) >> 2);
  EXPECT_AVERAGE("1 : 3", (blend<1, 2>(a, b)), (a + 3 * b + 2) >> 2);
  EXPECT_AVERAGE("5 : 3", (blend<5, 3>(a, b)), (5 * a + 3 * b + 4) >> 3);
  EXPECT_AVERAGE("7 : 1", (blend<7, 3>(a, b)), (7 * a + b + 4) >> 3);
}
#undef EXPECT_AVERAGE

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
  expectSameInAllForms<Zim16u, Zim8u>(
      "square", [](auto a, auto) { return square(a); }, [](Zim8u a, Zim8u) { return static_cast<Zim16u>(a * a); });
  expectSameInAllForms<Zim32s, Zim16u>(
      "square", [](auto a, auto) { return square(a); },
      [](Zim16u a, Zim16u) { return static_cast<Zim32s>(Zim32u{a} * a); });
  expectSameInAllForms<Zim16s, Zim16s>(
      "multiplyHigh", [](auto a, auto b) { return multiplyHigh(a, b); },
      [](Zim16s a, Zim16s b) { return static_cast<Zim16s>((a * b) >> 16); });
  expectSameInAllForms<Zim16u, Zim16u>(
      "multiplyHigh", [](auto a, auto b) { return multiplyHigh(a, b); },
      [](Zim16u a, Zim16u b) { return static_cast<Zim16u>((Zim32u{a} * b) >> 16); });
}

TEST(Conversion, BytesAndWords) {
  expectSameInAllForms<Zim16u, Zim8u>(
      "joinBytes", [](auto a, auto b) { return joinBytes(a, b); },
      [](Zim8u a, Zim8u b) { return static_cast<Zim16u>(a | b << 8); });
  expectSameInAllForms<Zim8u, Zim8u>(
      "movedBits right", [](auto a, auto) { return movedBits<3, 0x1C>(a); },
      [](Zim8u a, Zim8u) { return static_cast<Zim8u>((a >> 3) & 0x1C); });
  expectSameInAllForms<Zim8u, Zim8u>(
      "movedBits left", [](auto a, auto) { return movedBits<-2, 0xE4>(a); },
      [](Zim8u a, Zim8u) { return static_cast<Zim8u>((a << 2) & 0xE4); });
}

// Sums of products of bytes in 32 bits, of which the higher limb is compared.
template <Zim32s c, Zim32s d, Zim32s bias>
void expectSumInLimbs() {
  expectSameInAllForms<Zim16s, Zim8u>(
      "limbs",
      [](auto a, auto b) {
        return highOfSum(product<c>(widen(a)), plus<bias>(sum(product<d>(widen(b)), product<-d>(widen(a)))));
      },
      [](Zim8u a, Zim8u b) { return static_cast<Zim16s>((c * a + (d * b - d * a) + bias) >> 16); });
}

TEST(Conversion, SumsInLimbs) {
  expectSumInLimbs<76284, 104595, -14608761>();
  expectSumInLimbs<65536, -25821, 32768>();
  expectSumInLimbs<-53281, 32768, 0>();
  expectSumInLimbs<1, -1, -65536>();
  expectSumInLimbs<98304, 65535, 65535>();
}

template <class T>
void expectAveragesAndDistances() {
  expectSameInAllForms<T, T>(
      "averageUp", [](auto a, auto b) { return averageUp(a, b); },
      [](T a, T b) { return static_cast<T>((a + b + 1) >> 1); });
  static constexpr int kWhite = std::numeric_limits<T>::max();
  expectSameInAllForms<T, T>(
      "addSaturated", [](auto a, auto b) { return addSaturated(a, b); },
      [](T a, T b) { return static_cast<T>(std::min(a + b, kWhite)); });
  expectSameInAllForms<T, T>(
      "subtractSaturated", [](auto a, auto b) { return subtractSaturated(a, b); },
      [](T a, T b) { return static_cast<T>(std::max(a - b, 0)); });
  expectSameInAllForms<T, T>(
      "distance", [](auto a, auto b) { return distance(a, b); },
      [](T a, T b) { return static_cast<T>(std::abs(a - b)); });
  // Every combination of low bits, on which the carries depend.
  for (int low = 0; low < 16; ++low) {
    const auto c = static_cast<T>(low & 3), d = static_cast<T>(low >> 2);
    expectSameInAllForms<T, T>(
        "averageOfFour", [=](auto a, auto b) { return averageOfFour(a, b, b ^ decltype(a)(c), a ^ decltype(a)(d)); },
        [=](T a, T b) { return static_cast<T>((a + b + (b ^ c) + (a ^ d) + 2) >> 2); });
  }
}

TEST(Conversion, AveragesAndDistances) {
  expectAveragesAndDistances<Zim8u>();
  expectAveragesAndDistances<Zim16u>();
}

template <int N>
void expectBits() {
  const auto values = samples<Zim8s>(6);
  for (std::size_t i = 0; i + N <= values.size(); i += N) {
    const std::uint64_t bits = signBits(loadLanes<Zim8s, N>(&values[i]));
    Zim8s mask[N], even[N], odd[N];
    storeLanes(mask, maskOfBits<N>(bits));
    storeLanes(even, everyOther<Zim8s, N>(true));
    storeLanes(odd, everyOther<Zim8s, N>(false));
    for (std::size_t k = 0; k < N; ++k) {
      ASSERT_EQ(bits >> k & 1, values[i + k] < 0 ? 1u : 0u) << k << " of " << N;
      ASSERT_EQ(mask[k], values[i + k] < 0 ? -1 : 0) << k << " of " << N;
      ASSERT_EQ(even[k], k % 2 == 0 ? -1 : 0);
      ASSERT_EQ(odd[k], k % 2 == 0 ? 0 : -1);
    }
  }
}

TEST(Masks, AsBitsInOrderOfMemory) {
  expectBits<1>();
  expectBits<kLanes<Zim8s>>();
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
                          {approximatePower(curve, Lane<Zim64f, lanes>(2 * Curve::beyond))});
  for (double y : beyond) EXPECT_TRUE(std::isnan(y));
}

TEST(Powers, WithinTheirBounds) {
  expectWithinBound(kForwardPower);
  expectWithinBound(kInversePower);
}

constexpr auto kSquares = [] {
  std::array<Zim32s, 256> table{};
  for (Zim32s i = 0; i < 256; ++i) table[static_cast<std::size_t>(i)] = i * i;
  return table;
}();

TEST(Tables, LookUp) {
  expectSameInAllForms<Zim32s, Zim32s>(
      "lookUp", [](auto a, auto) { return lookUp(kSquares, a & 255); },
      [](Zim32s a, Zim32s) { return (a & 255) * (a & 255); });
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
