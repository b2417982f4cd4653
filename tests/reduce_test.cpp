// Bit reduction against plain models: every sample by the formulas as they are meant, errors row by row.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <vector>

#include "reduce/noise.h"
#include "tests/exports.h"
#include "tests/pixels.h"

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

namespace zim::test {
namespace {

using namespace catalogue;

// ---- The plain model ----

bool isFloatType(SampleType type) { return type == SampleType::f32; }
float whiteOf(SampleType type) { return isFloatType(type) ? 1.0F : bits(type) == 16 ? 65535.0F : 255.0F; }

// Samples as numbers from black on.
float valueAt(const Image& image, int x, int y, std::size_t c) {
  return visit(image.side().type, [&]<class T>(std::type_identity<T>) {
    const auto value = static_cast<float>(Samples<const T>{image}(x, y, c));
    return std::is_same_v<T, Zim16s> ? value + 32768.0F : value;
  });
}

struct Settings {
  Zim32s noise;
  ZimDitherKind dither;
  Zim32s levels;
};

class Model {
 public:
  Model(const Image& source, Image& destination, const Settings& settings)
      : source_(source), destination_(destination), settings_(settings) {
    if (from_ == SampleType::u8) {
      step_ = (65280.0F / count_) * 0.00390625F;
      scale_ = count_ / 255.0F;
    } else {
      step_ = fromWhite_ / count_;
      scale_ = isFloatType(from_) ? count_ : count_ / 65535.0F;
    }
    const auto n = static_cast<float>(settings.noise);
    if (settings.dither == zimDitherKindBayer) {
      fillNoise(-n / 100.0F, n / 100.0F);
    } else {
      fillNoise((50.0F - n) * step_ / 100.0F, (50.0F + n) * step_ / 100.0F);
    }
  }

  void nearest(int x, int y, std::size_t c) const {
    const float u = 1.0F / count_, h = 0.5F * u, value = valueAt(source_, x, y, c);
    const float w = isFloatType(from_) ? value : value / fromWhite_;
    const Zim32s n = truncated(bits(from_) == 16 ? count_ * w : count_ * w + 0.5F);
    const float a = static_cast<float>(n) * u, b = u + a;
    store(x, y, c, std::min(truncated((w - a > h ? b : a) * toWhite_ + 0.5F), static_cast<Zim32s>(toWhite_)));
  }

  void ordered(int x, int y, std::size_t c) const {
    static constexpr int kMatrix[16] = {0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5};
    float threshold = static_cast<float>(kMatrix[(y & 3) * 4 + (x & 3)]) / 15.0F;
    if (settings_.noise > 0) threshold = threshold + noise(x, y);
    threshold = threshold * step_;
    const float v = valueAt(source_, x, y, c);
    const Zim32s n = truncated(scale_ * v);
    const float a = static_cast<float>(n) * step_;
    const bool up = v - a > threshold;
    if (from_ == SampleType::u8) return store(x, y, c, ((up ? n + 1 : n) * byteStep()) >> 8);
    const float s = up ? step_ + a : a;
    if (isFloatType(from_)) return store(x, y, c, truncated(s * toWhite_ + 0.5F));
    const Zim32s t = truncated(s + 0.5F);
    store(x, y, c, std::clamp(bits(to_) == 8 ? t >> 8 : t, 0, static_cast<Zim32s>(toWhite_)));
  }

  // Channels of a section, one after another, through rows of errors that are cleared once.
  void diffuse(std::size_t first, std::size_t end) const {
    const ZimiSize size = source_.size();
    std::array<std::vector<float>, 3> rows;
    for (auto& row : rows) row.assign(static_cast<std::size_t>(size.width) + 4, 0.0F);
    for (std::size_t c = first; c < end; ++c) {
      for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
          const float u = valueAt(source_, x, y, c) + errorFrom(&rows[0][2] + x, &rows[1][2] + x, &rows[2][2] + x);
          rows[2][static_cast<std::size_t>(x) + 2] = quantise(u, x, y, c);
        }
        std::rotate(rows.begin(), rows.begin() + 1, rows.end());
      }
    }
  }

 private:
  const Image& source_;
  Image& destination_;
  const Settings settings_;
  const SampleType from_ = source_.side().type, to_ = destination_.side().type;
  const float fromWhite_ = whiteOf(from_), toWhite_ = whiteOf(to_);
  const float count_ = static_cast<float>(settings_.levels - 1);
  float step_, scale_;
  std::vector<Zim16s> indices_ = std::vector<Zim16s>(1024);
  std::vector<float> values_ = std::vector<float>(1024);

  void store(int x, int y, std::size_t c, Zim32s fromBlack) const {
    visit(to_, [&]<class T>(std::type_identity<T>) {
      const Zim32u lift = std::is_same_v<T, Zim16s> ? 32768 : 0;
      Samples<T>{destination_}(x, y, c) = static_cast<T>(static_cast<Zim32u>(fromBlack) - lift);
    });
  }

  void fillNoise(float low, float high) {
    ZimUniformNoise16s* ofIndices = nullptr;
    ZimUniformNoise32f* ofValues = nullptr;
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
  float quantise(float u, int x, int y, std::size_t c) const {
    if (u >= fromWhite_) return store(x, y, c, static_cast<Zim32s>(toWhite_)), 0.0F;
    if (u < (isFloatType(from_) ? 1.1920929e-7F : 0.0F)) return store(x, y, c, 0), 0.0F;
    Zim32s n = truncated(scale_ * u);
    float a = static_cast<float>(n) * step_, d = u - a;
    if (d > (settings_.noise > 0 ? noise(x, y) : step_ * 0.5F)) {
      a = a + step_;
      d = u - a;
      ++n;
    }
    store(x, y, c,
          from_ == SampleType::u8 ? (n * byteStep()) >> 8
          : isFloatType(from_)    ? truncated(a * toWhite_ + 0.5F)
                                  : truncated(a + 0.5F) >> (16 - bits(to_)));
    return d;
  }
};

// Where the sections begin that a team of this size makes of the channels, and where the last one ends.
std::vector<std::size_t> sectionsOf(int team, std::size_t channels) {
  if (channels == 1 || team == 1) return {0, channels};
  if (team == 2) return {0, 2, channels};
  if (channels == 3) return {0, 1, 2, 3};
  return team == 3 ? std::vector<std::size_t>{0, 2, 3, 4} : std::vector<std::size_t>{0, 1, 2, 3, 4};
}

void expectAsModelled(const Export& e, const Image& source, const Settings& settings) {
  const ZimiSize size = source.size();
  Image destination(e.destination, size), expected(e.destination, size);
  for (Image* image : {&destination, &expected}) image->fillRandom(3);
  const Model model(source, expected, settings);
  const auto channels = static_cast<std::size_t>(e.destination.planes[0].usedSamples);
  if (settings.dither == zimDitherKindNone || settings.dither == zimDitherKindBayer) {
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) {
        for (std::size_t c = 0; c < channels; ++c) {
          settings.dither == zimDitherKindNone ? model.nearest(x, y, c) : model.ordered(x, y, c);
        }
      }
    }
  } else {
    const auto sections = sectionsOf(hasTeams() ? teamSize : 1, channels);
    for (std::size_t i = 0; i + 1 < sections.size(); ++i) model.diffuse(sections[i], sections[i + 1]);
  }
  Operands operands(e, source, destination);
  operands.value("noise").set({static_cast<double>(settings.noise)});
  operands.value("dither").set({static_cast<double>(settings.dither)});
  operands.value("levels").set({static_cast<double>(settings.levels)});
  ASSERT_EQ(Caller(e)(operands), zimResultOk);
  expectEqual(destination, expected);
  ASSERT_FALSE(testing::Test::HasFatalFailure())
      << e.name << ", dither " << settings.dither << ", noise " << settings.noise << ", levels " << settings.levels
      << ", team " << teamSize;
  ASSERT_TRUE(alive.empty());
}

// The same over random samples of all values.
void expectAsModelled(const Export& e, ZimiSize size, const Settings& settings, Contents contents = Contents::random) {
  Image source(e.source, size);
  fill(source, contents, static_cast<std::uint64_t>(size.width + settings.levels));
  expectAsModelled(e, source, settings);
}

constexpr ZimDitherKind kAllKinds[] = {zimDitherKindNone, zimDitherKindFloydSteinberg, zimDitherKindJarvisJudiceNinke,
                                       zimDitherKindStucki, zimDitherKindBayer};

const std::vector<const Export*>& levelForms() {
  static const auto found = matching("zimiReduceBits_*[!1][usf]_*");
  return found;
}

TEST(ReduceBits, EveryFormAsModelled) {
  for (const Export* e : levelForms()) {
    const Zim32s most = 1 << bits(e->destination.type);
    for (const ZimDitherKind dither : kAllKinds) {
      for (const Zim32s noise : {0, 35, 100}) {
        for (const Zim32s levels : {2, 3, 101, 256, most}) {
          for (const Contents contents : kAllContents)
            expectAsModelled(*e, {67, 37}, {noise, dither, levels}, contents);
        }
      }
    }
  }
}

// Around the skew of rows, the rows that run at once and the columns between exchanges; beyond the period of noise.
TEST(ReduceBits, SizesAsModelled) {
  const Export &gray = exportOf("zimiReduceBits_8u_C1R"), &rgba = exportOf("zimiReduceBits_32f16s_C4R");
  for (const ZimDitherKind dither : kAllKinds) {
    for (const Zim32s noise : {0, 60}) {
      for (const int width : {1, 2, 3, 4, 5, 6, 7, 15, 16, 17, 31, 32, 33, 63, 64, 65, 100, 127, 130}) {
        for (const int height : {1, 2, 3, 5, 15, 16, 17, 31, 32, 33, 34, 65}) {
          expectAsModelled(gray, {width, height}, {noise, dither, 5});
          expectAsModelled(rgba, {width, height}, {noise, dither, 9});
        }
      }
      expectAsModelled(gray, {2100, 3}, {noise, dither, 5});
      expectAsModelled(gray, {1100, 530}, {noise, dither, 7});
    }
  }
}

TEST(ReduceBits, EveryTeamAsModelled) {
  for (teamSize = 1; teamSize <= 8; ++teamSize) {
    for (const Export* e : levelForms()) {
      for (const Zim32s noise : {0, 20}) {
        for (const ZimDitherKind dither : kAllKinds) expectAsModelled(*e, {41, 37}, {noise, dither, 4});
        // Beyond the pixels from which rows are shared.
        expectAsModelled(*e, {97, 96}, {noise, zimDitherKindBayer, 4});
      }
    }
  }
  teamSize = 1;
}

// From bytes to bytes the samples of diffused levels come from the levels themselves.
TEST(ReduceBits, BytesDiffusedToEveryCountOfLevels) {
  for (Zim32s levels = 2; levels <= 256; ++levels) {
    for (const Zim32s noise : {0, 100}) {
      expectAsModelled(exportOf("zimiReduceBits_8u_C1R"), {512, 5}, {noise, zimDitherKindFloydSteinberg, levels});
    }
  }
}

// Thresholds below zero may lift a value just below white beyond white, of which the low bits are stored.
TEST(ReduceBits, NoiseBeyondWhite) {
  const Export& e = exportOf("zimiReduceBits_8u_C1R");
  Image source(e.source, {64, 2000});
  std::mt19937 random(1);
  for (int y = 0; y < 2000; ++y) {
    for (std::size_t x = 0; x < 64; ++x) source.row(0, y)[x] = random() % 2 == 0 ? std::byte{0} : std::byte{255};
  }
  for (const ZimDitherKind dither : {zimDitherKindJarvisJudiceNinke, zimDitherKindStucki}) {
    for (const Zim32s levels : {9, 176}) expectAsModelled(e, source, {100, dither, levels});
  }
}

// Without dither integers take shortcuts.
TEST(ReduceBits, EveryIntegerWithoutDither) {
  const Export &ofBytes = exportOf("zimiReduceBits_8u_C1R"), &ofWords = exportOf("zimiReduceBits_16u_C1R");
  Image bytes(ofBytes.source, {256, 1}), words(ofWords.source, {256, 256});
  for (int x = 0; x < 256; ++x) {
    Samples<Zim8u>{bytes}(x, 0, 0) = static_cast<Zim8u>(x);
    for (int y = 0; y < 256; ++y) Samples<Zim16u>{words}(x, y, 0) = static_cast<Zim16u>(256 * y + x);
  }
  for (Zim32s levels = 2; levels <= 256; ++levels) expectAsModelled(ofBytes, bytes, {0, zimDitherKindNone, levels});
  for (const Zim32s levels : {2, 3, 16, 100, 256, 1000, 4096, 30000, 65535, 65536}) {
    expectAsModelled(ofWords, words, {0, zimDitherKindNone, levels});
  }
}

// Words of levels that are whole numbers apart take another: every one at every place of the pattern.
TEST(ReduceBits, EveryWordOfWholeLevels) {
  const Export& e = exportOf("zimiReduceBits_16u8u_C1R");
  Image words(e.source, {1024, 1024});
  const Samples<Zim16u> samples{words};
  for (int y = 0; y < 1024; ++y) {
    for (int x = 0; x < 1024; ++x) samples(x, y, 0) = static_cast<Zim16u>(y / 4 * 256 + x / 4);
  }
  for (const Zim32s levels : {2, 4, 6, 16, 18, 52, 86, 256}) {
    for (const ZimDitherKind dither : {zimDitherKindNone, zimDitherKindBayer}) {
      expectAsModelled(e, words, {0, dither, levels});
    }
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
  const std::size_t blocks = hasTeams() ? 3 : 1;
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
        EXPECT_EQ(allocated.back(), c.dither == zimDitherKindFloydSteinberg ? blocks * 14 * 4 : blocks * 36 * 4);
      }
    }
  }
  teamSize = 1;
}

// ---- One bit ----

// Bits from an offset on, in a bitmap of ones and zeros around them.
void expectBits(int offset, ZimiSize size, ZimDitherKind dither, Zim8u threshold) {
  const auto width = static_cast<std::size_t>(size.width), step = (width + 7) / 8 + 2;
  std::mt19937 random(static_cast<unsigned>(offset + size.width));
  std::vector<Zim8u> source(width * static_cast<std::size_t>(size.height)), bitmap(source.size() / width * step);
  for (Zim8u& sample : source) sample = static_cast<Zim8u>(random() >> 24);
  for (Zim8u& byte : bitmap) byte = static_cast<Zim8u>(random() >> 24);
  auto expected = bitmap;
  std::array<std::vector<Zim32s>, 3> errors;
  for (auto& row : errors) row.assign(width + 4, 0);
  for (std::size_t y = 0; y < source.size() / width; ++y) {
    const Zim32s *p2 = &errors[0][2], *p = &errors[1][2];
    Zim32s* c = &errors[2][2];
    Zim8u* const row = &expected[y * step];
    // A row that both starts and ends inside its first byte clears what follows there.
    if (offset % 8 != 0 && offset % 8 + size.width < 8) row[0] = static_cast<Zim8u>(row[0] & ~(0xFF >> offset % 8));
    for (int x = 0; x < size.width; ++x) {
      const int sample = source[y * width + static_cast<std::size_t>(x)];
      bool bit = sample > threshold;
      if (dither == zimDitherKindStucki) {
        const auto sum = (p2[x] + p[x - 1] + p[x + 1] + c[x - 2]) * 4 + (p[x] + c[x - 1]) * 8 +
                         (p2[x - 2] + p2[x + 2]) + (p2[x - 1] + p2[x + 1] + p[x - 2] + p[x + 2]) * 2;
        const Zim32s v = (sample << 13) + sum * 23;
        bit = v > (threshold << 13);
        c[x] = (v >> 10) - (bit ? 2047 : 0);
      }
      const int position = offset % 8 + x, mask = 0x80 >> position % 8;
      Zim8u& byte = row[position / 8];
      byte = static_cast<Zim8u>(bit ? byte | mask : byte & ~mask);
    }
    std::rotate(errors.begin(), errors.begin() + 1, errors.end());
  }
  ASSERT_EQ(zimiReduceBits_8u1u_C1R(source.data(), size.width, bitmap.data(), static_cast<Zim32s>(step), offset, size,
                                    -1, -1, dither, threshold),
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

TEST(OneBit, MemoryRunsOut) {
  const Zim8u source[4] = {255, 255, 255, 255};
  Zim8u bitmap[1] = {0x15};
  allocationsLeft = 0;
  EXPECT_EQ(zimiReduceBits_8u1u_C1R(source, 4, bitmap, 1, 0, {4, 1}, 0, 0, zimDitherKindStucki, 9), zimResultNoMemory);
  EXPECT_EQ(bitmap[0], 0x15);
  EXPECT_EQ(zimiReduceBits_8u1u_C1R(source, 4, bitmap, 1, 0, {4, 1}, 0, 0, zimDitherKindNone, 9), zimResultOk);
  EXPECT_EQ(bitmap[0], 0xF5);
  allocationsLeft = -1;
  EXPECT_EQ(zimiReduceBits_8u1u_C1R(source, 4, bitmap, 1, -1, {4, 1}, 0, 0, zimDitherKindNone, 9), zimResultBadSize);
}

}  // namespace
}  // namespace zim::test
