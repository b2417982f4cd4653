// What holds for every export, whatever it computes: where its pixels come from and go to, and that nothing else is
// touched. Tests of an export's arithmetic are elsewhere.
#include "tests/exports.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

#include "tests/canvas.h"
#include "tests/pixels.h"
#include "tests/reference.h"

namespace zim::test {
namespace {

using namespace catalogue;
using Edge = Placement::Edge;

Image sourceOf(const Export& e, ZimiSize size, Contents contents) {
  Image source(e.source, size);
  fill(source, contents, 7);
  return source;
}

// All rows like the first.
Image sourceOfEqualRows(const Export& e, ZimiSize size) {
  Image source(e.source, size);
  source.fillRandom(8);
  for (std::size_t plane = 0; plane < source.planes(); ++plane) {
    for (int y = 1; y < source.rows(plane); ++y) {
      std::memcpy(source.row(plane, y), source.row(plane, 0), source.rowBytes(plane));
    }
  }
  return source;
}

// How a call meets its memory.
struct Access {
  Placement source = {}, destination = {};
  // Step arguments are larger by so many bytes than the distances of the rows.
  int surplusOfSourceStep = 0, surplusOfDestinationStep = 0;
};

class EachExport : public testing::TestWithParam<Export> {
 protected:
  const Export& e = GetParam();
  const Caller call{e};

  // A call over the upper left part of the reference's source has the reference's result.
  void expectAsReference(const Reference& reference, ZimiSize size, const Access& access = {}) const {
    Canvas destination(e.destination, size, access.destination);
    Canvas source(e.source, size, access.source);
    source.put(reference.source);
    if (e.inPlace) destination.put(reference.source);
    Operands operands(e, size);
    operands.source = source.buffers();
    operands.destination = destination.buffers();
    for (Zim32s& step : operands.source.steps) step += access.surplusOfSourceStep;
    for (Zim32s& step : operands.destination.steps) step += access.surplusOfDestinationStep;
    std::optional<Canvas> scratch;
    if (e.scratch) {
      scratch.emplace(e.scratch->side, e.scratch->size(size), access.source);
      operands.scratch = scratch->buffers();
    }
    if (crossesSteps(e)) std::swap(operands.destination.steps[1], operands.destination.steps[2]);
    expectResult(operands, reference, source, destination);
    if (scratch) {
      ASSERT_EQ(scratch->differenceAround(), "") << "in the scratch";
    }
  }

  void expectResult(const Operands& operands, const Reference& reference, Canvas& source, Canvas& destination) const {
    ASSERT_EQ(whateverTheContents(call(operands)), resultOf(e, operands.size));
    ASSERT_EQ(destination.differenceFrom(reference.destination), "") << "in the destination";
    ASSERT_EQ(source.differenceFrom(reference.source), "") << "in the source";
  }

  // The same over every size that the export takes, heights counted from the least one, with a reference of its own for
  // each if it is not made of single pixels.
  template <class AccessOf>
  void expectAsReferences(std::span<const int> widths, std::span<const int> heights, const AccessOf& accessOf) const {
    const auto largest = [](std::span<const int> lengths) { return *std::ranges::max_element(lengths); };
    for (const Contents contents : kAllContents) {
      std::optional<Reference> reference;
      if (isPixelwise(e)) reference.emplace(e, sourceOf(e, {largest(widths), largest(heights)}, contents), call);
      for (const int fromLeast : heights) {
        const int height = goodSize(e, {1, std::max(e.least.height - 1, 0) + fromLeast}).height;
        for (const int width : widths) {
          const ZimiSize size = {width, height};
          if (resultOf(e, size) < zimResultOk || overflows(e, size)) continue;
          if (!isPixelwise(e)) reference.emplace(e, sourceOf(e, size, contents), call);
          expectAsReference(*reference, size, accessOf(width + height));
          ASSERT_FALSE(HasFatalFailure())
              << width << " x " << height << (contents == Contents::random ? "" : " extremes");
        }
      }
    }
  }
};

// Around every number of pixels that a block can hold. Where errors are diffused, a block is of rows: widths matter
// around the columns between two exchanges with memory, and sanitizers take minutes for each more.
std::vector<int> oddWidths(const Export& e) {
  if (matches(e, "zimiReduceBits_*R?(:stucki*)")) return {1, 2, 3, 5, 31, 62, 64, 67, 130};
  std::vector<int> widths = {95, 96, 97, 127, 128, 129, 130, 131};
  for (int width = 1; width <= 70; ++width) widths.push_back(width);
  return widths;
}

TEST_P(EachExport, OddWidth) {
  const int sourceSample = bits(e.source.type) / 8, destinationSample = std::max(bits(e.destination.type) / 8, 1);
  expectAsReferences(oddWidths(e), std::array{1, 3}, [&](int i) {
    return Access{.source = {.padding = i % 2 * sourceSample * 5},
                  .destination = {.padding = i % 3 * destinationSample}};
  });
}

TEST_P(EachExport, PageEnd) {
  expectAsReferences(oddWidths(e), std::array{1, 2}, [](int i) {
    return Access{.source = {.edge = i % 2 ? Edge::start : Edge::end},
                  .destination = {.edge = i % 4 < 2 ? Edge::start : Edge::end}};
  });
}

// Rows that start at any byte; where whole samples are counted, steps whose low bits do not count.
TEST_P(EachExport, UnalignedRows) {
  if (matches(e, "zimiToneMap*")) GTEST_SKIP() << "steps have a meaning of their own";
  const bool wholeSamples = countsWholeSamples(e);
  const auto sourceSample = bits(e.source.type) / 8, destinationSample = std::max(bits(e.destination.type) / 8, 1);
  const auto accessOf = [&](int i) {
    const int sourceOdd = 1 + i % 7, destinationOdd = 1 + i % 5;
    if (!wholeSamples) return Access{.source = {.padding = sourceOdd}, .destination = {.padding = destinationOdd}};
    return Access{.source = {.padding = sourceOdd / sourceSample * sourceSample},
                  .destination = {.padding = destinationOdd / destinationSample * destinationSample},
                  .surplusOfSourceStep = sourceOdd % sourceSample,
                  .surplusOfDestinationStep = destinationOdd % destinationSample};
  };
  expectAsReferences(std::array{1, 2, 5, 16, 17, 33, 64, 67}, std::array{4}, accessOf);
  // As many pixels as threads share.
  expectAsReferences(std::array{67}, std::array{64}, accessOf);
}

INSTANTIATE_TEST_SUITE_P(All, EachExport, testing::ValuesIn(forms()), nameOf);

using EachOfCells = EachExport;

// Images that are shared among threads, go through tables, or run as one long row.
TEST_P(EachOfCells, LargeImageAsItsRows) {
  const ZimiSize size = goodSize(e, {157, 141});
  for (const Contents contents : kAllContents) {
    Image source(e.source, size), rows(e.destination, size), whole(e.destination, size);
    for (Image* image : {&source, &rows, &whole}) fill(*image, contents, 9);
    ASSERT_EQ(call(Operands(e, source, whole)), resultOf(e, size));
    Operands part(e, source, rows);
    forEachCell(size.height, cellOf(e).height, [&](int y, int count) {
      part.size.height = count;
      part.source = at(source, 0, y);
      part.destination = at(rows, 0, y);
      ASSERT_EQ(call(part), resultOf(e, part.size));
    });
    ASSERT_EQ(whole.digest(), rows.digest());
  }
}

INSTANTIATE_TEST_SUITE_P(All, EachOfCells, testing::ValuesIn(formsWhere(consistsOfCells)), nameOf);

using EachWithAnyStep = EachExport;

// The same with a row of every plane for each row of the image.
Side oneRowEach(Side side) {
  for (Plane& plane : side.planes) plane.pixelsDown = 1;
  return side;
}

TEST_P(EachWithAnyStep, ZeroStep) {
  constexpr const char* kRowsDiffer[] = {"zimi*Dither_*",
                                         "zimi*_Filter_*",
                                         "zimi@(CFAToRGB|DemosaicAHD)_*",
                                         "zimiReduceBits_*",
                                         "zimiY@(CbCr|CrCb)420ToYCbCr411_*",
                                         "zimiYCbCr1620To420_*"};
  const ZimiSize size = goodSize(e, {37, 4});
  const Reference reference(e, sourceOfEqualRows(e, size), call);
  for (const bool destinationToo : {false, true}) {
    if (destinationToo && matchesAny(e, kRowsDiffer)) continue;
    // Canvases that end with the only row that is read or written.
    Canvas source(oneRowEach(e.source), {size.width, 1});
    Canvas destination(destinationToo ? oneRowEach(e.destination) : e.destination,
                       {size.width, destinationToo ? 1 : size.height});
    source.put(reference.source);
    Operands operands(e, size);
    operands.source = source.buffers();
    operands.destination = destination.buffers();
    operands.source.steps = {};
    if (destinationToo) operands.destination.steps = {};
    expectResult(operands, reference, source, destination);
  }
}

TEST_P(EachWithAnyStep, NegativeStep) {
  const ZimiSize size = goodSize(e, {37, 4});
  const Reference reference(e, sourceOf(e, size, Contents::random), call);
  const Image sourceUpsideDown = upsideDown(reference.source);
  for (const bool destinationToo : {false, true}) {
    Canvas source(e.source, size, {.padding = 8}), destination(e.destination, size, {.padding = 8});
    source.put(sourceUpsideDown);
    Operands operands(e, size);
    operands.source = source.buffersUpwards();
    operands.destination = destinationToo ? destination.buffersUpwards() : destination.buffers();
    if (crossesSteps(e)) std::swap(operands.destination.steps[1], operands.destination.steps[2]);
    ASSERT_EQ(whateverTheContents(call(operands)), resultOf(e, size));
    const Image expected = upsideDown(reference.destination);
    ASSERT_EQ(destination.differenceFrom(destinationToo ? expected : reference.destination), "");
    ASSERT_EQ(source.differenceFrom(sourceUpsideDown), "");
  }
}

INSTANTIATE_TEST_SUITE_P(All, EachWithAnyStep, testing::ValuesIn(formsWhere(takesAnyStep)), nameOf);

using EachWithFourth = EachExport;

TEST_P(EachWithFourth, SampleAskedFor) {
  const ZimiSize size = goodSize(e, {67, 4});
  const Image source = sourceOf(e, size, Contents::random);
  Image usual(e.destination, size), asked(e.destination, size);
  ASSERT_EQ(call(Operands(e, source, usual)), resultOf(e, size));
  Operands operands(e, source, asked);
  operands.value("aval").set({77});
  ASSERT_EQ(call(operands), resultOf(e, size));
  visit(e.destination.type, [&]<class T>(std::type_identity<T>) {
    const Samples<T> usualSamples(usual), askedSamples(asked);
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width / 2 * 2; ++x) {
        ASSERT_EQ(askedSamples(x, y, 3), T(77));
        for (std::size_t c = 0; c < 3; ++c) ASSERT_EQ(askedSamples(x, y, c), usualSamples(x, y, c));
      }
    }
  });
}

INSTANTIATE_TEST_SUITE_P(All, EachWithFourth, testing::ValuesIn(formsWhere([](const Export& e) {
                           return !e.further.empty() && e.further.back().name == "aval";
                         })),
                         nameOf);

}  // namespace
}  // namespace zim::test
