// Bit reduction against plain models: every sample by the formulas as they are meant, errors row by row.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "reduce/noise.h"
#include "zimcc.h"

// ---- The program's own services: memory that runs out on demand, and a team of any size ----

namespace {

int teamSize = 1;
int allocationsLeft = -1;  // no limit
std::map<void*, std::size_t> alive;
std::vector<std::size_t> allocated;

}  // namespace

extern "C" {

void* zimMalloc(std::size_t byteCount) {
  allocated.push_back(byteCount);
  if (allocationsLeft == 0) return nullptr;
  if (allocationsLeft > 0) --allocationsLeft;
  void* memory = std::malloc(byteCount);
  std::memset(memory, 0xA5, byteCount);
  alive[memory] = byteCount;
  return memory;
}

void zimFree(void* memory) {
  EXPECT_TRUE(memory == nullptr || alive.erase(memory) == 1);
  std::free(memory);
}

int ownGetNumThreads() { return teamSize; }

}  // extern "C"

namespace {

// ---- The plain model ----

// trunc as the processor has it.
Zim32s truncated(float x) {
  return x >= -2147483648.0F && x < 2147483648.0F ? static_cast<Zim32s>(x) : std::numeric_limits<Zim32s>::min();
}

template <class T>
constexpr bool isFloat = std::is_same_v<T, Zim32f>;
template <class T>
constexpr float kWhite = isFloat<T>       ? 1.0F
                         : sizeof(T) == 2 ? 65535.0F
                                          : 255.0F;

template <class T>
float valueOf(T sample) {
  if constexpr (std::is_same_v<T, Zim16s>) return static_cast<float>(sample + 32768);
  return static_cast<float>(sample);
}

template <class To>
To stored(Zim32s fromBlack) {
  return static_cast<To>(static_cast<Zim32u>(fromBlack) - (std::is_same_v<To, Zim16s> ? 32768U : 0U));
}

struct Settings {
  Zim32s noise;
  ZimDitherKind dither;
  Zim32s levels;
};

template <class From, class To>
class Model {
 public:
  explicit Model(const Settings& settings) : settings_(settings), count_(static_cast<float>(settings.levels - 1)) {
    if constexpr (std::is_same_v<From, Zim8u>) {
      step_ = (65280.0F / count_) * 0.00390625F;
      scale_ = count_ / 255.0F;
    } else {
      step_ = kWhite<From> / count_;
      scale_ = isFloat<From> ? count_ : count_ / 65535.0F;
    }
    const bool isBayer = settings.dither == zimDitherKindBayer;
    const auto n = static_cast<float>(settings.noise);
    if (isBayer) {
      fillNoise(-n / 100.0F, n / 100.0F);
    } else {
      fillNoise((50.0F - n) * step_ / 100.0F, (50.0F + n) * step_ / 100.0F);
    }
  }

  To nearest(From sample) const {
    constexpr float white = kWhite<To>;
    const float u = 1.0F / count_, h = 0.5F * u;
    const float w = isFloat<From> ? valueOf(sample) : valueOf(sample) / kWhite<From>;
    const Zim32s n = truncated(sizeof(From) == 2 ? count_ * w : count_ * w + 0.5F);
    const float a = static_cast<float>(n) * u, b = u + a;
    return stored<To>(std::min(truncated((w - a > h ? b : a) * white + 0.5F), static_cast<Zim32s>(white)));
  }

  To ordered(From sample, int x, int y) const {
    static constexpr int kMatrix[16] = {0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5};
    float threshold = static_cast<float>(kMatrix[(y & 3) * 4 + (x & 3)]) / 15.0F;
    if (settings_.noise > 0) threshold = threshold + noise(x, y);
    threshold = threshold * step_;
    const float v = valueOf(sample);
    const Zim32s n = truncated(scale_ * v);
    const float a = static_cast<float>(n) * step_;
    const bool up = v - a > threshold;
    if constexpr (std::is_same_v<From, Zim8u>) return static_cast<To>(((up ? n + 1 : n) * byteStep()) >> 8);
    const float s = up ? step_ + a : a;
    if constexpr (isFloat<From>) return stored<To>(truncated(s * kWhite<To> + 0.5F));
    const Zim32s t = truncated(s + 0.5F);
    return stored<To>(std::clamp(sizeof(To) == 1 ? t >> 8 : t, 0, static_cast<Zim32s>(kWhite<To>)));
  }

  // Channels of a section, one after another, through rows of errors that are cleared once.
  void diffuse(const std::vector<From>& source, std::vector<To>& destination, int stride, ZimiSize size, int first,
               int channels) const {
    std::vector<float> rows[3];
    for (auto& row : rows) row.assign(static_cast<std::size_t>(size.width) + 4, 0.0F);
    float *twoUp = &rows[0][2], *previous = &rows[1][2], *current = &rows[2][2];
    for (int channel = first; channel < first + channels; ++channel) {
      for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
          const auto i = static_cast<std::size_t>((y * size.width + x) * stride + channel);
          const float u = valueOf(source[i]) + errorFrom(twoUp + x, previous + x, current + x);
          current[x] = quantise(u, x, y, destination[i]);
        }
        float* const oldest = twoUp;
        twoUp = previous;
        previous = current;
        current = oldest;
      }
    }
  }

 private:
  Settings settings_;
  float count_, step_, scale_;
  std::vector<Zim16s> indices_ = std::vector<Zim16s>(1024);
  std::vector<float> values_ = std::vector<float>(1024);

  void fillNoise(float low, float high) {
    zim::ZimUniformNoise16s* ofIndices = nullptr;
    zim::ZimUniformNoise32f* ofValues = nullptr;
    uniformNoiseInit<Zim16s>(&ofIndices, 0, 1024, 0);
    uniformNoiseInit<Zim32f>(&ofValues, low, high, 0);
    uniformNoiseFill<Zim16s>(indices_.data(), 1024, ofIndices);
    uniformNoiseFill<Zim32f>(values_.data(), 1024, ofValues);
    uniformNoiseFree(ofIndices);
    uniformNoiseFree(ofValues);
  }
  float noise(int x, int y) const {
    return values_[static_cast<std::size_t>((indices_[static_cast<std::size_t>(x & 1023)] + 2 * y + x) & 1023)];
  }

  Zim32s byteStep() const { return static_cast<Zim32s>(static_cast<double>(65280.0F / count_) + 9e-6); }

  float errorFrom(const float* p2, const float* p, const float* c) const {
    if (settings_.dither == zimDitherKindFloydSteinberg) {
      return ((p[1] * 3.0F + p[0] * 5.0F) + p[-1] + c[-1] * 7.0F) * 0.0625F;
    }
    const bool isStucki = settings_.dither == zimDitherKindStucki;
    const float w1 = isStucki ? 8.0F : 7.0F, w2 = isStucki ? 4.0F : 5.0F, w3 = isStucki ? 2.0F : 3.0F;
    const float a = ((p2[-1] + p2[1]) + p[-2]) + p[2];
    const float b = ((p2[0] + p[-1]) + p[1]) + c[-2];
    const float d = (p[0] + c[-1]) * w1 + (p2[-2] + p2[2]);
    return (a * w3 + (b * w2 + d)) * (isStucki ? 0.023809524F : 0.020833334F);
  }

  // Stores the sample and returns the error that it leaves.
  float quantise(float u, int x, int y, To& sample) const {
    if (u >= kWhite<From>) {
      sample = stored<To>(static_cast<Zim32s>(kWhite<To>));
      return 0.0F;
    }
    if (u < (isFloat<From> ? 1.1920929e-7F : 0.0F)) {
      sample = stored<To>(0);
      return 0.0F;
    }
    Zim32s n = truncated(scale_ * u);
    float a = static_cast<float>(n) * step_, d = u - a;
    if (d > (settings_.noise > 0 ? noise(x, y) : step_ * 0.5F)) {
      a = a + step_;
      d = u - a;
      ++n;
    }
    if constexpr (std::is_same_v<From, Zim8u>) {
      sample = static_cast<To>((n * byteStep()) >> 8);
    } else if constexpr (isFloat<From>) {
      sample = stored<To>(truncated(a * kWhite<To> + 0.5F));
    } else {
      sample = stored<To>(sizeof(To) == 1 ? truncated(a + 0.5F) >> 8 : truncated(a + 0.5F));
    }
    return d;
  }
};

// The first channels of the sections that a team of this size makes, and where the last one ends.
std::vector<int> sectionsOf(int team, int channels) {
  if (channels == 1 || team == 1) return {0, channels};
  if (team == 2) return {0, 2, channels};
  if (channels == 3) return {0, 1, 2, 3};
  return team == 3 ? std::vector{0, 2, 3, 4} : std::vector{0, 1, 2, 3, 4};
}

// ---- All forms ----

enum class Layout { c1, c3, ac4, c4 };

template <class From, class To>
using Function = ZimResult (*)(const From*, Zim32s, To*, Zim32s, ZimiSize, Zim32s, ZimDitherKind, Zim32s);

template <class From, class To>
struct Form {
  Function<From, To> function;
  Layout layout;

  int stride() const { return layout == Layout::c1 ? 1 : layout == Layout::c3 ? 3 : 4; }
  int channels() const { return layout == Layout::ac4 ? 3 : stride(); }
};

#define ALL_LAYOUTS(types)                                                                \
  {zimiReduceBits_##types##_C1R, Layout::c1}, {zimiReduceBits_##types##_C3R, Layout::c3}, \
      {zimiReduceBits_##types##_AC4R, Layout::ac4}, {zimiReduceBits_##types##_C4R, Layout::c4},

// visitor(form) for each of the 32.
template <class Visitor>
void forEachForm(const Visitor& visitor) {
  const auto all = [&]<class From, class To>(std::initializer_list<Form<From, To>> forms) {
    for (const auto& form : forms) visitor(form);
  };
  all(std::initializer_list<Form<Zim8u, Zim8u>>{ALL_LAYOUTS(8u)});
  all(std::initializer_list<Form<Zim16u, Zim16u>>{ALL_LAYOUTS(16u)});
  all(std::initializer_list<Form<Zim16s, Zim16s>>{ALL_LAYOUTS(16s)});
  all(std::initializer_list<Form<Zim16u, Zim8u>>{ALL_LAYOUTS(16u8u)});
  all(std::initializer_list<Form<Zim16s, Zim8u>>{ALL_LAYOUTS(16s8u)});
  all(std::initializer_list<Form<Zim32f, Zim8u>>{ALL_LAYOUTS(32f8u)});
  all(std::initializer_list<Form<Zim32f, Zim16u>>{ALL_LAYOUTS(32f16u)});
  all(std::initializer_list<Form<Zim32f, Zim16s>>{ALL_LAYOUTS(32f16s)});
}

// Samples of all values, in smooth runs and at random; floats go beyond 0 to 1, extremes and NaN on demand.
template <class T>
std::vector<T> samplesOf(std::size_t count, unsigned seed, bool withExtremes = false) {
  std::mt19937 random(seed);
  std::vector<T> samples(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto draw = static_cast<Zim32u>(random());
    if constexpr (isFloat<T>) {
      const float ramp = static_cast<float>(i % 997) / 996.0F;
      samples[i] = draw % 4 == 0 ? static_cast<float>(draw) * 0x1p-32F : draw % 64 == 1 ? ramp * 3.0F - 1.0F : ramp;
      if (withExtremes && draw % 128 == 2) samples[i] = std::bit_cast<float>(static_cast<Zim32u>(random()));
      if (withExtremes && draw % 4096 == 3) samples[i] = std::numeric_limits<float>::quiet_NaN();
    } else {
      samples[i] = static_cast<T>(draw % 4 == 0 ? draw >> 8 : i * 67);
    }
  }
  return samples;
}

template <class From, class To>
std::vector<To> modelled(const Form<From, To>& form, const std::vector<From>& source, const std::vector<To>& before,
                         ZimiSize size, const Settings& settings) {
  const Model<From, To> model(settings);
  std::vector<To> destination = before;
  const int stride = form.stride();
  if (settings.dither >= zimDitherKindFloydSteinberg && settings.dither <= zimDitherKindStucki) {
    const auto sections = sectionsOf(teamSize, form.channels());
    for (std::size_t i = 0; i + 1 < sections.size(); ++i) {
      model.diffuse(source, destination, stride, size, sections[i], sections[i + 1] - sections[i]);
    }
    return destination;
  }
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      for (int c = 0; c < form.channels(); ++c) {
        const auto i = static_cast<std::size_t>((y * size.width + x) * stride + c);
        destination[i] =
            settings.dither == zimDitherKindNone ? model.nearest(source[i]) : model.ordered(source[i], x, y);
      }
    }
  }
  return destination;
}

template <class From, class To>
void expectAsModelled(const Form<From, To>& form, ZimiSize size, const Settings& settings, bool withExtremes = false) {
  const auto count = static_cast<std::size_t>(size.width * size.height * form.stride());
  const auto source = samplesOf<From>(count, static_cast<unsigned>(size.width + settings.levels), withExtremes);
  std::vector<To> destination(count);
  for (std::size_t i = 0; i < count; ++i) destination[i] = static_cast<To>(i * 91);
  const auto expected = modelled(form, source, destination, size, settings);
  const auto step = size.width * form.stride();
  ASSERT_EQ(
      form.function(source.data(), step * static_cast<Zim32s>(sizeof(From)), destination.data(),
                    step * static_cast<Zim32s>(sizeof(To)), size, settings.noise, settings.dither, settings.levels),
      zimResultOk);
  for (std::size_t i = 0; i < count; ++i) {
    ASSERT_EQ(destination[i], expected[i])
        << sizeof(From) << (std::is_signed_v<From> ? "s" : "u") << " to " << sizeof(To) << ", stride " << form.stride()
        << ", channels " << form.channels() << ", " << size.width << " x " << size.height << " at sample "
        << i % static_cast<std::size_t>(step) << " of row " << i / static_cast<std::size_t>(step) << ", dither "
        << settings.dither << ", noise " << settings.noise << ", levels " << settings.levels << ", team " << teamSize;
  }
  ASSERT_TRUE(alive.empty());
}

constexpr ZimDitherKind kAllKinds[] = {zimDitherKindNone, zimDitherKindFloydSteinberg, zimDitherKindJarvisJudiceNinke,
                                       zimDitherKindStucki, zimDitherKindBayer};

template <class To>
std::vector<Zim32s> levelsFor() {
  if constexpr (sizeof(To) == 1) return {2, 3, 8, 101, 256};
  return {2, 5, 256, 1000, 65536};
}

TEST(ReduceBits, EveryFormAsModelled) {
  teamSize = 1;
  forEachForm([]<class From, class To>(const Form<From, To>& form) {
    for (const ZimDitherKind dither : kAllKinds) {
      for (const Zim32s noise : {0, 35, 100}) {
        for (const Zim32s levels : levelsFor<To>()) {
          expectAsModelled(form, {131, 37}, {noise, dither, levels}, true);
        }
      }
    }
  });
}

// Around the skew of rows, the rows that run at once and the columns between exchanges; beyond the period of noise.
TEST(ReduceBits, SizesAsModelled) {
  const Form<Zim8u, Zim8u> gray = {zimiReduceBits_8u_C1R, Layout::c1}, rgb = {zimiReduceBits_8u_C3R, Layout::c3};
  const Form<Zim32f, Zim16s> rgba = {zimiReduceBits_32f16s_C4R, Layout::c4};
  for (const ZimDitherKind dither : kAllKinds) {
    for (const Zim32s noise : {0, 60}) {
      for (const int width : {1, 2, 3, 4, 5, 6, 7, 15, 16, 17, 31, 32, 33, 63, 64, 65, 100}) {
        for (const int height : {1, 2, 3, 5, 15, 16, 17, 31, 32, 33, 34, 65}) {
          expectAsModelled(gray, {width, height}, {noise, dither, 5});
          expectAsModelled(rgb, {width, height}, {noise, dither, 7});
          expectAsModelled(rgba, {width, height}, {noise, dither, 9});
        }
      }
      expectAsModelled(gray, {2100, 3}, {noise, dither, 5});
      expectAsModelled(rgb, {1100, 530}, {noise, dither, 7});
    }
  }
}

}  // namespace
