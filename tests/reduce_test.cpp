// Bit reduction against plain models: every sample by the formulas as they are meant, errors row by row.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <random>
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
    zim::uniformNoiseInit<Zim16s>(&ofIndices, 0, 1024, 0);
    zim::uniformNoiseInit<Zim32f>(&ofValues, low, high, 0);
    zim::uniformNoiseFill<Zim16s>(indices_.data(), 1024, ofIndices);
    zim::uniformNoiseFill<Zim32f>(values_.data(), 1024, ofValues);
    zim::uniformNoiseFree(ofIndices);
    zim::uniformNoiseFree(ofValues);
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
      for (const int width : {1, 2, 3, 4, 5, 6, 7, 15, 16, 17, 31, 32, 33, 63, 64, 65, 100, 127, 130}) {
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

TEST(ReduceBits, EveryTeamAsModelled) {
  for (teamSize = 1; teamSize <= 8; ++teamSize) {
    forEachForm([]<class From, class To>(const Form<From, To>& form) {
      for (const ZimDitherKind dither : kAllKinds) {
        for (const Zim32s noise : {0, 20}) expectAsModelled(form, {41, 37}, {noise, dither, 4});
      }
      // Beyond the pixels from which rows are shared.
      for (const Zim32s noise : {0, 20}) expectAsModelled(form, {97, 96}, {noise, zimDitherKindBayer, 4});
    });
  }
  teamSize = 1;
}

// From bytes to bytes the samples of diffused levels come from the levels themselves.
TEST(ReduceBits, BytesDiffusedToEveryCountOfLevels) {
  for (Zim32s levels = 2; levels <= 256; ++levels) {
    for (const Zim32s noise : {0, 100}) {
      expectAsModelled<Zim8u, Zim8u>({zimiReduceBits_8u_C1R, Layout::c1}, {512, 5},
                                     {noise, zimDitherKindFloydSteinberg, levels});
    }
  }
}

// Thresholds below zero may lift a value just below white beyond white, of which the low bits are stored.
TEST(ReduceBits, NoiseBeyondWhite) {
  const Form<Zim8u, Zim8u> form = {zimiReduceBits_8u_C1R, Layout::c1};
  const ZimiSize size = {64, 2000};
  std::mt19937 random(1);
  std::vector<Zim8u> source(std::size_t{64} * 2000), destination(source.size());
  for (Zim8u& sample : source) sample = random() % 2 == 0 ? 0 : 255;
  for (const ZimDitherKind dither : {zimDitherKindJarvisJudiceNinke, zimDitherKindStucki}) {
    for (const Zim32s levels : {9, 176}) {
      const Settings settings = {100, dither, levels};
      ASSERT_EQ(form.function(source.data(), 64, destination.data(), 64, size, settings.noise, dither, levels),
                zimResultOk);
      EXPECT_TRUE(destination == modelled(form, source, destination, size, settings)) << dither << ", " << levels;
    }
  }
}

// Without dither integers take shortcuts.
TEST(ReduceBits, EveryIntegerWithoutDither) {
  std::vector<Zim8u> bytes(256), result(256);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<Zim8u>(i);
  for (Zim32s levels = 2; levels <= 256; ++levels) {
    const Model<Zim8u, Zim8u> model({0, zimDitherKindNone, levels});
    ASSERT_EQ(zimiReduceBits_8u_C1R(bytes.data(), 256, result.data(), 256, {256, 1}, 0, zimDitherKindNone, levels),
              zimResultOk);
    for (const Zim8u sample : bytes) ASSERT_EQ(result[sample], model.nearest(sample)) << levels;
  }
  std::vector<Zim16u> words(65536), reduced(65536);
  for (std::size_t i = 0; i < words.size(); ++i) words[i] = static_cast<Zim16u>(i);
  for (const Zim32s levels : {2, 3, 16, 100, 256, 1000, 4096, 30000, 65535, 65536}) {
    const Model<Zim16u, Zim16u> model({0, zimDitherKindNone, levels});
    ASSERT_EQ(zimiReduceBits_16u_C1R(words.data(), 512, reduced.data(), 512, {256, 256}, 0, zimDitherKindNone, levels),
              zimResultOk);
    for (const Zim16u sample : words) ASSERT_EQ(reduced[sample], model.nearest(sample)) << levels;
  }
}

TEST(ReduceBits, KnownValues) {
  const auto reduced = [](std::vector<Zim8u> samples, ZimDitherKind dither, Zim32s levels, Zim32s noise = 0) {
    const auto width = static_cast<Zim32s>(samples.size());
    EXPECT_EQ(zimiReduceBits_8u_C1R(samples.data(), width, samples.data(), width, {width, 1}, noise, dither, levels),
              zimResultOk);
    return samples;
  };
  using Bytes = std::vector<Zim8u>;
  EXPECT_EQ(reduced({0, 127, 128, 255}, zimDitherKindNone, 2), (Bytes{0, 0, 255, 255}));
  EXPECT_EQ(reduced({128, 128, 128, 128}, zimDitherKindBayer, 2), (Bytes{255, 0, 255, 0}));
  EXPECT_EQ(reduced({128, 128, 128, 128, 128}, zimDitherKindFloydSteinberg, 2), (Bytes{255, 0, 255, 0, 255}));
  // The last of 101 levels is 100 * 652 / 256.
  EXPECT_EQ(reduced({255}, zimDitherKindBayer, 101), (Bytes{254}));
  EXPECT_EQ(reduced({255}, zimDitherKindStucki, 101), (Bytes{255}));
  for (const ZimDitherKind nothing : {5, -1}) EXPECT_EQ(reduced({1, 2, 3}, nothing, 2, 100), (Bytes{1, 2, 3}));
}

TEST(Noise, KnownTableAndRefusals) {
  zim::ZimUniformNoise16s* state = nullptr;
  ASSERT_EQ(zim::uniformNoiseInit<Zim16s>(&state, 0, 1024, 0), zimResultOk);
  std::array<Zim16s, 8> table;
  ASSERT_EQ(zim::uniformNoiseFill<Zim16s>(table.data(), 8, state), zimResultOk);
  EXPECT_EQ(table, (std::array<Zim16s, 8>{0, 133, 216, 412, 361, 758, 844, 242}));
  EXPECT_EQ(zim::uniformNoiseInit<Zim16s>(nullptr, 0, 1, 0), zimResultNullPointer);
  EXPECT_EQ(zim::uniformNoiseFill<Zim16s>(nullptr, 8, state), zimResultNullPointer);
  EXPECT_EQ(zim::uniformNoiseFill<Zim16s>(table.data(), 0, state), zimResultBadSize);
  EXPECT_EQ(zim::uniformNoiseFree<Zim16s>(nullptr), zimResultNullPointer);
  state->identifier = 37;
  EXPECT_EQ(zim::uniformNoiseFill<Zim16s>(table.data(), 8, state), zim::zimResultBadContext);
  EXPECT_EQ(zim::uniformNoiseFree(state), zim::zimResultBadContext);
  state->identifier = 36;
  EXPECT_EQ(zim::uniformNoiseFree(state), zimResultOk);
}

// ---- Memory ----

// Every allocation fails in turn: nothing is written and nothing kept, but for the tables of noise where it is the rows
// of errors that fail.
TEST(ReduceBits, MemoryRunsOut) {
  struct Case {
    ZimDitherKind dither;
    Zim32s noise;
    int allocations;
  };
  teamSize = 3;
  for (const Case& c : {Case{zimDitherKindNone, 50, 0},
                        {zimDitherKindBayer, 0, 0},
                        {zimDitherKindBayer, 50, 4},
                        {zimDitherKindFloydSteinberg, 0, 1},
                        {zimDitherKindFloydSteinberg, 50, 5},
                        {zimDitherKindStucki, 0, 1},
                        {zimDitherKindJarvisJudiceNinke, 1, 5}}) {
    for (int left = 0; left <= c.allocations; ++left) {
      const std::vector<Zim8u> source(30, 100);
      std::vector<Zim8u> destination(30, 7);
      allocationsLeft = left;
      allocated.clear();
      const ZimResult result =
          zimiReduceBits_8u_C3R(source.data(), 15, destination.data(), 15, {5, 2}, c.noise, c.dither, 2);
      allocationsLeft = -1;
      const bool fails = left < c.allocations;
      EXPECT_EQ(result, fails ? zimResultNoMemory : zimResultOk) << c.dither << ' ' << c.noise << ' ' << left;
      EXPECT_EQ(allocated.size(), static_cast<std::size_t>(fails ? left + 1 : left));
      EXPECT_EQ(destination == std::vector<Zim8u>(30, 7), fails);
      EXPECT_EQ(alive.size(), fails && left == 4 ? 4U : 0U);
      for (const auto& [memory, bytes] : alive) std::free(memory);
      alive.clear();
      // One block for all threads: two rows with a margin of one, or three, of a multiple of four, with one of two.
      if (!fails && c.allocations % 4 == 1) {
        EXPECT_EQ(allocated.back(), c.dither == zimDitherKindFloydSteinberg ? 3U * 14 * 4 : 3U * 36 * 4);
      }
    }
  }
  teamSize = 1;
}

// ---- One bit ----

// Bits from an offset on, in a canvas of ones and zeros around them.
std::vector<Zim8u> modelledBits(const std::vector<Zim8u>& source, const std::vector<Zim8u>& before, int offset,
                                ZimiSize size, ZimDitherKind dither, int threshold) {
  std::vector<Zim8u> bitmap = before;
  const auto width = static_cast<std::size_t>(size.width), step = before.size() / static_cast<std::size_t>(size.height);
  std::array<std::vector<Zim32s>, 3> rows;
  for (auto& row : rows) row.assign(width + 4, 0);
  Zim32s *p2 = &rows[0][2], *p = &rows[1][2], *c = &rows[2][2];
  for (int y = 0; y < size.height; ++y) {
    Zim8u* const row = &bitmap[static_cast<std::size_t>(y) * step];
    // A row that both starts and ends inside its first byte clears what follows there.
    if (offset % 8 != 0 && offset % 8 + size.width < 8) row[0] = static_cast<Zim8u>(row[0] & ~(0xFF >> offset % 8));
    for (int x = 0; x < size.width; ++x) {
      const int sample = source[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)];
      bool bit = sample > threshold;
      if (dither == zimDitherKindStucki) {
        const auto s = (p2[x] + p[x - 1] + p[x + 1] + c[x - 2]) * 4 + (p[x] + c[x - 1]) * 8 + (p2[x - 2] + p2[x + 2]) +
                       (p2[x - 1] + p2[x + 1] + p[x - 2] + p[x + 2]) * 2;
        const Zim32s v = (sample << 13) + s * 23;
        bit = v > (threshold << 13);
        c[x] = (v >> 10) - (bit ? 2047 : 0);
      }
      const int position = offset % 8 + x;
      const auto mask = static_cast<Zim8u>(0x80 >> position % 8);
      Zim8u& byte = row[position / 8];
      byte = static_cast<Zim8u>(bit ? byte | mask : byte & ~mask);
    }
    Zim32s* const oldest = p2;
    p2 = p;
    p = c;
    c = oldest;
  }
  return bitmap;
}

void expectBits(int offset, ZimiSize size, ZimDitherKind dither, Zim8u threshold) {
  const auto pixels = static_cast<std::size_t>(size.width * size.height);
  const auto source = samplesOf<Zim8u>(pixels, static_cast<unsigned>(offset + size.width));
  const Zim32s step = (size.width + 7) / 8 + 2;
  std::vector<Zim8u> bitmap(static_cast<std::size_t>(step * size.height));
  for (std::size_t i = 0; i < bitmap.size(); ++i) bitmap[i] = static_cast<Zim8u>(i * 151 + 77);
  const auto expected = modelledBits(source, bitmap, offset, size, dither, threshold);
  ASSERT_EQ(
      zimiReduceBits_8u1u_C1R(source.data(), size.width, bitmap.data(), step, offset, size, -1, -1, dither, threshold),
      zimResultOk);
  ASSERT_EQ(bitmap, expected) << "offset " << offset << ", " << size.width << " x " << size.height << ", dither "
                              << dither << ", threshold " << int{threshold};
  ASSERT_TRUE(alive.empty());
}

TEST(OneBit, EveryOffsetAndWidthAsModelled) {
  for (const ZimDitherKind dither : {zimDitherKindNone, zimDitherKindStucki}) {
    for (int offset = 0; offset < 17; ++offset) {
      for (int width = 1; width <= 140; width += width < 72 ? 1 : 7) {
        expectBits(offset, {width, 3}, dither, static_cast<Zim8u>(100 + width));
      }
    }
    for (const Zim8u threshold : std::initializer_list<Zim8u>{0, 1, 127, 254, 255}) {
      for (const int height : {1, 2, 16, 17, 31, 33, 70}) expectBits(3, {301, height}, dither, threshold);
    }
  }
}

TEST(OneBit, Refusals) {
  const Zim8u source[4] = {255, 255, 255, 255};
  Zim8u bitmap[1] = {0x15};
  const auto call = [&](const Zim8u* from, Zim32s offset, ZimiSize size, ZimDitherKind dither) {
    return zimiReduceBits_8u1u_C1R(from, 4, bitmap, 1, offset, size, 0, 0, dither, 9);
  };
  EXPECT_EQ(call(nullptr, -1, {0, 1}, 5), zimResultNullPointer);
  EXPECT_EQ(call(source, -1, {4, 1}, 5), zimResultBadSize);
  EXPECT_EQ(call(source, 0, {4, 0}, 5), zimResultBadSize);
  for (const ZimDitherKind dither : {-1, 1, 2, 4, 5}) EXPECT_EQ(call(source, 0, {4, 1}, dither), zimResultBadDither);
  allocationsLeft = 0;
  EXPECT_EQ(call(source, 0, {4, 1}, zimDitherKindStucki), zimResultNoMemory);
  EXPECT_EQ(bitmap[0], 0x15);
  EXPECT_EQ(call(source, 0, {4, 1}, zimDitherKindNone), zimResultOk);
  allocationsLeft = -1;
  EXPECT_EQ(bitmap[0], 0xF5);
  // Where the row starts inside the byte, the bits behind it become zeros.
  EXPECT_EQ(call(source, 9, {4, 1}, zimDitherKindNone), zimResultOk);
  EXPECT_EQ(bitmap[0], 0xF8);
}

}  // namespace
