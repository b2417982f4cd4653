// Diffusion of errors over several rows at once, one row to a lane.
//
// Along a row each pixel waits for the one before; but a row need only be a few columns behind the one above it. So
// the lanes of some registers take as many rows, each so many columns behind the row above, and one step computes a
// pixel of every row: the same pixels as row by row, with the same order of every sum.
#pragma once

#include <algorithm>

#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// What a pixel leaves: its error for the pixels around it, and its result, in whichever form the rule has it.
template <class Lanes>
struct Outcome {
  Lanes error, result;
};

// Brings memory from the first byte to one so far behind into the cache, but not yet into the first level: so many rows
// at once are more streams than a processor foresees. (Inline with all that leads here: calls without other effects are
// left out by compilers.)
ZIM_INLINE void fetch(const std::byte* first, std::ptrdiff_t last) {
  constexpr std::ptrdiff_t line = 64;
  for (std::ptrdiff_t i = 0; i < last; i += line) __builtin_prefetch(first + i, 0, 2);
  if (last >= 0) __builtin_prefetch(first + last, 0, 2);
}

// The rule of a diffusion has
//     using Element = ...;                 type of samples, thresholds, errors and results, of 4 bytes
//     static constexpr int depth = ...;    how far errors reach: so many rows down, so many columns to either side
//     static constexpr bool usesThresholds = ...;
//     static constexpr Element outside = ...;   a sample whose error is zero, whatever errors reach it
//     Outcome<Lanes> operator()(Lanes sample, Lanes threshold, const Near& near) const;
// for all rows at once, so that the chains of all registers advance side by side. near(up, x) is the error of the pixel
// so many rows up and x columns on.
template <class Rule>
class SkewedRows {
 public:
  using Element = typename Rule::Element;
  static constexpr int depth = Rule::depth;
  // Rows 0 to 3 are the first lanes of four registers, rows 4 to 7 the second lanes, and so on. So the row above is in
  // the same lane of the register before, and only that above the first register in another lane.
  static constexpr int registers = 4, lanes = kLanes<Element>, rows = registers * lanes;

  // Errors of the rows above, by the distance up, less one: a row of the image's width each. Zero at first.
  using ErrorRows = std::array<Element*, depth>;

  SkewedRows(const Rule& rule, Zim32s width, const ErrorRows& above) : rule_(rule), width_(width), above_(above) {}

  // Takes so many rows, at most `rows`, and leaves the errors of the last ones for the rows below. Columns from x on:
  //     image.expect(row, x, count);    these are next
  //     image.read(row, x, count, Element* samples); image.readThresholds(row, x, count, Element* thresholds);
  //     image.write(row, x, count, const Element* results);
  template <class Image>
  void run(int count, const Image& image) {
    const Rule rule = rule_;  // stores of errors cannot alias it
    for (auto& row : values_) std::ranges::fill(row, Rule::outside);
    startHistory();
    const std::ptrdiff_t allSteps = width_ + std::ptrdiff_t{skew} * (count - 1);
    for (std::ptrdiff_t t = 0; t < allSteps; t += steps) {
      for (int row = 0; row < count; ++row) {
        const Span span = columnsOf(row, t);
        std::fill_n(values_[row], span.first, Rule::outside);
        std::fill(values_[row] + span.first + span.count, values_[row] + steps, Rule::outside);
        image.read(row, span.x, span.count, values_[row] + span.first);
        if constexpr (Rule::usesThresholds) {
          image.readThresholds(row, span.x, span.count, thresholds_[row] + span.first);
        }
      }
      for (int up = 1; up <= depth; ++up) readErrors(up, t, incoming_[up - 1]);
      const auto stepsLeft = std::min<std::ptrdiff_t>(steps, allSteps - t);
      for (int i = 0; i < stepsLeft; i += 4) {
        constexpr int rowsFor4 = 4 * rows / steps;
        for (int row = i / 4 * rowsFor4; row < std::min(count, (i / 4 + 1) * rowsFor4); ++row) {
          const Span next = columnsOf(row, t + steps);
          image.expect(row, next.x, next.count);
        }
        fourSteps(rule, i);
      }
      for (int row = 0; row < count; ++row) {
        const Span span = columnsOf(row, t);
        image.write(row, span.x, span.count, values_[row] + span.first);
      }
      leaveErrors(count, t);
      for (int i = 0; i < behind; ++i) history_[i] = history_[steps + i];
    }
  }

 private:
  using Lanes = Lane<Element, lanes>;
  using AllLanes = Lane<Element, rows>;
  // One column more than Floyd and Steinberg need: the row above is not waited for then.
  static constexpr int skew = 3;
  static constexpr int steps = 64;  // between two exchanges with memory
  // Steps since the farthest error that still counts: depth rows up and depth columns back.
  static constexpr int behind = depth * skew + depth;
  // Errors of one step: of the rows above the first register, farthest first, then of the registers.
  using Step = std::array<Lanes, depth + registers>;

  // The columns of a row that fall into the steps from t on: count of them from x on, at the step t + first.
  struct Span {
    std::ptrdiff_t x, first, count;
  };
  Span columnsOf(int row, std::ptrdiff_t t, int count = steps) const {
    const std::ptrdiff_t x = t - std::ptrdiff_t{skew * row}, width = width_;
    const std::ptrdiff_t begin = std::clamp<std::ptrdiff_t>(x, 0, width);
    const std::ptrdiff_t end = std::clamp<std::ptrdiff_t>(x + count, 0, width);
    return {begin, std::clamp<std::ptrdiff_t>(begin - x, 0, count), end - begin};
  }

  // Errors of a row above for the steps from t on, zero beside the image.
  template <int count>
  void readErrors(int up, std::ptrdiff_t t, Element (&to)[count]) const {
    const Span span = columnsOf(-up, t, count);
    std::ranges::fill(to, Element{0});
    std::copy_n(above_[static_cast<std::size_t>(up - 1)] + span.x, span.count, to + span.first);
  }

  // Before the first step there is nothing but the rows above.
  void startHistory() {
    Element errors[depth][behind];
    for (int up = 1; up <= depth; ++up) readErrors(up, -behind, errors[up - 1]);
    for (int i = 0; i < behind; ++i) {
      std::ranges::fill(history_[i], Lanes(0));
      for (int up = 1; up <= depth; ++up) {
        history_[i][static_cast<std::size_t>(depth - up)] = shiftedUp(Lanes(0), &errors[up - 1][i]);
      }
    }
  }

  ZIM_INLINE static AllLanes join(const Lanes* r) {
    using Two = Lane<Element, 2 * lanes>;
    return AllLanes::join(Two::join(r[0], r[1]), Two::join(r[2], r[3]));
  }
  ZIM_INLINE static std::array<Lanes, registers> apart(const AllLanes& all) {
    return {all.v.lo.v.lo, all.v.lo.v.hi, all.v.hi.v.lo, all.v.hi.v.hi};
  }

  // Four columns of all rows, one after another.
  ZIM_INLINE static std::array<AllLanes, 4> loadColumns(const Element (&from)[rows][steps], int i) {
    const auto columns = perChannel<registers>([&](auto g) ZIM_LAMBDA {
      return transpose<Element, lanes>(perChannel<4>([&](auto k) ZIM_LAMBDA {
        return load<Element, lanes, 1>(reinterpret_cast<const std::byte*>(&from[registers * k + g][i]), partStride)[0];
      }));
    });
    return perChannel<4>([&](auto k) ZIM_LAMBDA {
      const std::array<Lanes, registers> column =
          perChannel<registers>([&](auto g) ZIM_LAMBDA { return columns[g][k]; });
      return join(column.data());
    });
  }

  ZIM_INLINE void fourSteps(const Rule& rule, int i) {
    const auto samples = loadColumns(values_, i);
    std::array<AllLanes, 4> thresholds;
    if constexpr (Rule::usesThresholds) thresholds = loadColumns(thresholds_, i);
    std::array<std::array<Lanes, registers>, 4> results;
    forChannels<4>([&](auto k) ZIM_LAMBDA {
      Step* const now = &history_[behind + i + static_cast<int>(k)];
      const auto near = [now](int up, int x)
                            ZIM_LAMBDA { return join(&now[x - up * skew][static_cast<std::size_t>(depth - up)]); };
      const auto outcome = rule(samples[k], Rule::usesThresholds ? thresholds[k] : AllLanes(0), near);
      const auto errors = apart(outcome.error);
      forChannels<registers>([&](auto g) ZIM_LAMBDA { (*now)[depth + g] = errors[g]; });
      results[k] = apart(outcome.result);
      forChannels<depth>([&](auto j) ZIM_LAMBDA {
        (*now)[j] = shiftedUp((*now)[registers + j], &incoming_[depth - 1 - j][i + static_cast<int>(k)]);
      });
    });
    forChannels<registers>([&](auto g) ZIM_LAMBDA {
      const auto columns = transpose<Element, lanes>(perChannel<4>([&](auto k) ZIM_LAMBDA { return results[k][g]; }));
      forChannels<4>([&](auto k) ZIM_LAMBDA {
        store<Element, lanes, 1>(reinterpret_cast<std::byte*>(&values_[registers * k + g][i]), {columns[k]},
                                 partStride);
      });
    });
  }

  // The errors of the last rows become those of the rows above, behind the columns that are still to be read there.
  void leaveErrors(int count, std::ptrdiff_t t) const {
    for (int up = depth; up >= 1; --up) {
      Element* const to = above_[static_cast<std::size_t>(up - 1)];
      const int row = count - up;
      const Span span = columnsOf(std::max(row, 0), t);
      if (row < 0) {  // a single row: that above it is now two up
        std::copy_n(above_[0] + span.x, span.count, to + span.x);
        continue;
      }
      for (std::ptrdiff_t i = 0; i < span.count; ++i) {
        const Lanes& errors = history_[behind + span.first + i][static_cast<std::size_t>(depth + row % registers)];
        to[span.x + i] = reinterpret_cast<const Element*>(&errors)[row / registers];
      }
    }
  }

  // From the row of a lane to that of the same lane in the next part of a register.
  static constexpr std::ptrdiff_t partStride = std::ptrdiff_t{4} * registers * steps * sizeof(Element);

  Rule rule_;
  Zim32s width_;
  ErrorRows above_;
  Step history_[behind + steps];
  Element values_[rows][steps];  // samples, then their results
  Element thresholds_[Rule::usesThresholds ? rows : 1][steps] = {};
  Element incoming_[depth][steps];
};

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
