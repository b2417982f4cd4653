#include "tests/fuzz/random_call.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

#include "tests/canvas.h"
#include "tests/reference.h"

namespace zim::test {
namespace {

using namespace catalogue;

// Takes numbers off the front of the bytes.
class Input {
 public:
  explicit Input(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

  std::uint64_t take(std::size_t bytes) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < bytes && !rest_.empty(); ++i, rest_ = rest_.subspan(1)) {
      number |= std::uint64_t{rest_.front()} << 8 * i;
    }
    return number;
  }
  // From least to most.
  int within(int least, int most) {
    const auto count = static_cast<std::uint64_t>(most - least) + 1;
    return least + static_cast<int>(take(count <= 256 ? 1 : count <= 65536 ? 2 : 4) % count);
  }
  bool flag() { return within(0, 1) == 1; }
  std::span<const std::uint8_t> rest() const { return rest_; }

 private:
  std::span<const std::uint8_t> rest_;
};

// The form whose name's digest is nearest, so that bytes mean the same when other exports come along.
Export takeForm(Input& input) {
  const std::uint64_t key = input.take(2);
  return *std::ranges::min_element(forms(), {}, [&](const Export& e) {
    std::uint32_t hash = 0x811c9dc5U;
    for (const char c : e.name) hash = (hash ^ static_cast<std::uint8_t>(c)) * 0x1000193U;
    return ((hash >> 16) ^ hash ^ key) & 0xffff;
  });
}

// Small, of as many pixels as it takes for rows to be shared among threads, or as it takes for bands of rows to be.
ZimiSize takeSize(Input& input) {
  constexpr int kPixels = 18000;
  const int kind = input.within(0, 15);
  if (kind > 1) return {input.within(1, 140), input.within(1, 9)};
  if (kind == 1) return {input.within(126, 134), input.within(126, 134)};
  const int width = input.within(1, 300);
  return {width, input.within(1, std::min(kPixels / width, 600))};
}

float takeFloat(Input& input) {
  if (input.flag()) return static_cast<float>(input.within(-512, 512)) / 256.0F;
  const auto bits = static_cast<std::uint32_t>(input.take(4));
  float any;
  std::memcpy(&any, &bits, sizeof any);
  return any;
}

// Good arguments that leave the form what it is: what a further argument usually is, or any other number.
void takeFurther(Input& input, Export& e) {
  for (Argument& argument : e.further) {
    if (!input.flag()) continue;
    if (argument.array) {
      for (double& number : argument.usual) number = takeFloat(input);
    } else if (argument.name == "noise" && !matches(e, "*:bayer")) {
      argument.usual = {static_cast<double>(input.within(matches(e, "*-noise") ? 1 : 0, 100))};
    } else if (argument.name == "levels") {
      argument.usual = {static_cast<double>(input.within(2, 1 << bits(e.destination.type)))};
    } else if (argument.name == "grid") {
      argument.usual = {static_cast<double>(input.within(0, 3))};
    } else if (argument.name == "aval" || argument.name == "threshold") {
      argument.usual = {static_cast<double>(input.take(2))};  // stops at the limit of the type
    }
  }
  if (e.further.size() == 2 && e.further[0].name == "vMin" && input.flag()) {
    const float from = takeFloat(input), to = takeFloat(input);
    if (to - from > 0) e.further[0].usual = {from}, e.further[1].usual = {to};
  }
}

// Guarded memory with samples of any kind throughout, and the image that an export finds there by the steps passed.
// Rows may overlap, come upwards, or all be the same.
class Source {
 public:
  Image image;

  Source(Input& input, const Export& e, ZimiSize size) : image(e.source, size) {
    const int sample = std::max(bits(e.source.type) / 8, 1);
    const bool wholeSamples = countsWholeSamples(e) || matches(e, "zimiToneMap*");
    for (std::size_t i = 0; i < image.planes(); ++i) {
      const auto rowBytes = static_cast<int>(image.rowBytes(i));
      const Side& side = image.side();
      Zim32s& passed = passed_.steps[i] = rowBytes;
      if (side.steps == Steps::one && i > 0) {
        passed = passed_.steps[0];
      } else if (side.steps != Steps::none) {
        passed = input.flag() ? rowBytes + input.within(0, 40) : input.within(-rowBytes - 40, rowBytes + 40);
        if (!takesAnyStep(e)) passed = std::max(std::abs(passed), 1);
        if (matches(e, "zimiToneMap*")) passed &= -sample;
      }
      const int unused = (side.planes[i].samples - side.planes[i].usedSamples) * sample;
      place(input, i, wholeSamples ? passed & -sample : passed, static_cast<std::size_t>(rowBytes - unused));
    }
  }

  const Buffers& buffers() const { return passed_; }

  void expectUnchanged() const {
    for (std::size_t i = 0; i < memory_.size(); ++i) {
      EXPECT_TRUE(std::ranges::equal(memory_[i].bytes(), before_[i])) << "source plane " << i << " has changed";
    }
  }

 private:
  void place(Input& input, std::size_t plane, int step, std::size_t usedBytes) {
    const int rows = image.rows(plane);
    const auto stretch = static_cast<std::size_t>(std::abs(step)) * static_cast<std::size_t>(std::max(rows - 1, 0));
    const std::size_t extent = rows > 0 && image.rowBytes(plane) > 0 ? stretch + usedBytes : 0;
    const auto bytes = memory_.emplace_back(extent).bytes();
    fillSamples(input, bytes);
    before_.emplace_back(bytes.begin(), bytes.end());
    std::byte* const lowest = bytes.data() + (input.flag() ? 0 : bytes.size() - extent);
    std::byte* const first = lowest + (step < 0 ? stretch : 0);
    passed_.planes[plane] = first;
    for (int y = 0; y < rows && extent > 0; ++y) {
      std::memcpy(image.row(plane, y), first + std::ptrdiff_t{step} * y, usedBytes);
    }
  }

  void fillSamples(Input& input, std::span<std::byte> bytes) const {
    const SampleType type = image.side().type;
    const int kind = input.within(0, 3);
    if (kind > 1) {
      const Side samples = {.type = type, .layout = "C1", .colourWord = "", .planes = {{.type = type}}};
      Image row(samples, {static_cast<int>(bytes.size()) / std::max(bits(type) / 8, 1), 1});
      fill(row, kind == 2 ? Contents::random : Contents::extremes, input.take(2));
      std::memcpy(bytes.data(), row.row(0, 0), row.rowBytes(0));
      return;
    }
    const auto pattern = std::as_bytes(input.rest());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      bytes[i] = pattern.empty() ? std::byte{0} : pattern[i % pattern.size()];
    }
  }

  Buffers passed_;
  std::vector<GuardedBytes> memory_;
  std::vector<std::vector<std::byte>> before_;
};

struct DestinationAccess {
  Placement placement;
  bool upwards;
  int surplusOfStep;
};

DestinationAccess takeDestinationAccess(Input& input, const Export& e) {
  DestinationAccess access = {};
  access.placement.edge = input.flag() ? Placement::Edge::start : Placement::Edge::end;
  access.placement.padding = input.within(0, 40);
  access.upwards = takesAnyStep(e) && input.flag();
  const int sample = std::max(bits(e.destination.type) / 8, 1);
  if (countsWholeSamples(e)) {
    access.surplusOfStep = access.placement.padding % sample;
    access.placement.padding -= access.surplusOfStep;
  }
  return access;
}

void expectAsReference(const Export& e, const Caller& call, const Source& source, const Reference& reference,
                       const DestinationAccess& access) {
  const ZimiSize size = reference.source.size();
  Canvas destination(e.destination, size, access.placement);
  if (e.inPlace && access.upwards) destination.put(upsideDown(reference.source));
  if (e.inPlace && !access.upwards) destination.put(reference.source);
  Operands operands(e, size);
  operands.source = source.buffers();
  operands.destination = access.upwards ? destination.buffersUpwards() : destination.buffers();
  for (Zim32s& step : operands.destination.steps) step += access.surplusOfStep;
  if (crossesSteps(e)) std::swap(operands.destination.steps[1], operands.destination.steps[2]);
  std::optional<Canvas> scratch;
  if (e.scratch) {
    scratch.emplace(e.scratch->side, e.scratch->size(size), access.placement);
    operands.scratch = scratch->buffers();
  }
  EXPECT_EQ(whateverTheContents(call(operands)), resultOf(e, size));
  EXPECT_EQ(access.upwards ? destination.differenceFrom(upsideDown(reference.destination))
                           : destination.differenceFrom(reference.destination),
            "");
  if (scratch) {
    EXPECT_EQ(scratch->differenceAround(), "") << "in the scratch";
  }
  source.expectUnchanged();
}

}  // namespace

void expectGoodCall(std::span<const std::uint8_t> bytes, const OtherBuild& otherBuild) {
  Input input(bytes);
  Export e = takeForm(input);
  const ZimiSize size = takeSize(input);
  if (overflows(e, size)) return;
  const int team = input.within(1, 8);
  takeFurther(input, e);
  const DestinationAccess access = takeDestinationAccess(input, e);
  Source source(input, e, size);
  SCOPED_TRACE(e.name + ", " + std::to_string(size.width) + " x " + std::to_string(size.height) + ", team of " +
               std::to_string(team) + ", source step " + std::to_string(source.buffers().steps[0]) +
               (access.upwards ? ", upwards" : ""));
  const Caller call(e);
  const Reference reference(e, std::move(source.image), call, team);
  expectAsReference(e, call, source, reference, access);
  if (otherBuild) {
    SCOPED_TRACE("the other build");
    e.function = otherBuild(e.name.substr(0, e.name.find(':')));
    expectAsReference(e, Caller(e), source, reference, access);
  }
}

}  // namespace zim::test
