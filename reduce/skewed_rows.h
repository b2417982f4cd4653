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

// The rule of a diffusion has
//     using Element = ...;                 type of samples, thresholds, errors and results, of 4 bytes
//     static constexpr int depth = ...;    how far errors reach: so many rows down, so many columns to either side
//     static constexpr bool usesThresholds = ...;
//     static constexpr Element outside = ...;   a sample whose error is zero, whatever errors reach it
//     Outcome<Lanes> operator()(Lanes sample, Lanes threshold, const Near& near) const;
// near(up, x) is the error of the pixel so many rows up and x columns on.
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
  //     image.read(row, x, count, Element* samples); image.readThresholds(row, x, count, Element* thresholds);
  //     image.write(row, x, count, const Element* results);
  template <class Image>
  void run(int count, const Image& image) {
    const Rule rule = rule_;  // stores of errors cannot alias it
    for (auto& row : samples_) std::ranges::fill(row, Rule::outside);
    startHistory();
    const std::ptrdiff_t allSteps = width_ + std::ptrdiff_t{skew} * (count - 1);
    for (std::ptrdiff_t t = 0; t < allSteps; t += steps) {
      for (int row = 0; row < count; ++row) {
        const Span span = columnsOf(row, t);
        std::fill_n(samples_[row], span.first, Rule::outside);
        std::fill(samples_[row] + span.first + span.count, samples_[row] + steps, Rule::outside);
        image.read(row, span.x, span.count, samples_[row] + span.first);
        if constexpr (Rule::usesThresholds) {
          image.readThresholds(row, span.x, span.count, thresholds_[row] + span.first);
        }
      }
      for (int up = 1; up <= depth; ++up) readErrors(up, t, incoming_[up - 1], steps);
      const auto stepsLeft = std::min<std::ptrdiff_t>(steps, allSteps - t);
      for (int i = 0; i < stepsLeft; i += 4) fourSteps(rule, i);
      for (int row = 0; row < count; ++row) {
        const Span span = columnsOf(row, t);
        image.write(row, span.x, span.count, results_[row] + span.first);
      }
      leaveErrors(count, t);
      for (int i = 0; i < behind; ++i) history_[i] = history_[steps + i];
    }
  }

 private:
  using Lanes = Lane<Element, lanes>;
  static constexpr int skew = depth + 1;
  static constexpr int steps = 32;  // between two exchanges with memory
  // Steps since the farthest error that still counts: depth rows up and depth columns back.
  static constexpr int behind = depth * skew + depth;
  // Errors of one step: of the rows above the first register, farthest first, then of the registers.
  using Step = std::array<Lanes, depth + registers>;

  // The columns of a row that fall into the steps from t on: count of them from x on, at the step t + first.
  struct Span {
    std::ptrdiff_t x, first, count;
  };
  Span columnsOf(int row, std::ptrdiff_t t) const {
    const std::ptrdiff_t x = t - skew * row, width = width_;
    const std::ptrdiff_t begin = std::clamp<std::ptrdiff_t>(x, 0, width);
    const std::ptrdiff_t end = std::clamp<std::ptrdiff_t>(x + steps, 0, width);
    return {begin, std::clamp<std::ptrdiff_t>(begin - x, 0, steps), end - begin};
  }

  // Errors of a row above for the steps from t on, zero beside the image.
  void readErrors(int up, std::ptrdiff_t t, Element* to, int count) const {
    const Element* row = above_[static_cast<std::size_t>(up - 1)];
    for (int i = 0; i < count; ++i) {
      const std::ptrdiff_t x = t + i + up * skew;
      to[i] = x >= 0 && x < width_ ? row[x] : Element{0};
    }
  }

  // Before the first step there is nothing but the rows above.
  void startHistory() {
    Element errors[depth][behind];
    for (int up = 1; up <= depth; ++up) readErrors(up, -behind, errors[up - 1], behind);
    for (int i = 0; i < behind; ++i) {
      std::ranges::fill(history_[i], Lanes(0));
      for (int up = 1; up <= depth; ++up) {
        history_[i][static_cast<std::size_t>(depth - up)] = shiftedUp(Lanes(0), &errors[up - 1][i]);
      }
    }
  }

  ZIM_INLINE void fourSteps(const Rule& rule, int i) {
    using FourRows = std::array<Lanes, 4>;
    const auto load4 = [&](const Element(&from)[rows][steps], auto g) ZIM_LAMBDA {
      return transpose<Element, lanes>(perChannel<4>([&](auto k) ZIM_LAMBDA {
        return load<Element, lanes, 1>(reinterpret_cast<const std::byte*>(&from[registers * k + g][i]), partStride)[0];
      }));
    };
    std::array<FourRows, registers> samples, thresholds, results;
    forChannels<registers>([&](auto g) ZIM_LAMBDA {
      samples[g] = load4(samples_, g);
      if constexpr (Rule::usesThresholds) thresholds[g] = load4(thresholds_, g);
    });
    forChannels<4>([&](auto k) ZIM_LAMBDA {
      Step* const now = &history_[behind + i + static_cast<int>(k)];
      forChannels<registers>([&](auto g) ZIM_LAMBDA {
        constexpr std::size_t own = depth + g;
        const auto near = [now](int up, int x)
                              ZIM_LAMBDA { return now[x - up * skew][own - static_cast<std::size_t>(up)]; };
        const auto outcome = rule(samples[g][k], Rule::usesThresholds ? thresholds[g][k] : Lanes(0), near);
        (*now)[own] = outcome.error;
        results[g][k] = outcome.result;
      });
      forChannels<depth>([&](auto j) ZIM_LAMBDA {
        (*now)[j] = shiftedUp((*now)[registers + j], &incoming_[depth - 1 - j][i + static_cast<int>(k)]);
      });
    });
    forChannels<registers>([&](auto g) ZIM_LAMBDA {
      const auto columns = transpose<Element, lanes>(results[g]);
      forChannels<4>([&](auto k) ZIM_LAMBDA {
        store<Element, lanes, 1>(reinterpret_cast<std::byte*>(&results_[registers * k + g][i]), {columns[k]},
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
  Element samples_[rows][steps], thresholds_[rows][steps] = {}, results_[rows][steps];
  Element incoming_[depth][steps];
};

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
