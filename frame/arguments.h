// Argument tests, declared as the order in which an export makes them. The first test that fails decides the result.
#pragma once

#include "zimcc.h"

namespace zim {

enum class Test {
  pointers,    // the pointers as passed, arrays of planes by their own address
  planes,      // the pointers inside arrays
  size,        // as the export accepts it: width and height of at least 1 if it says no more
  empty,       // width and height of at least 1, where the size is tested again later
  steps,       // every step of at least 1
  stepArrays,  // the arrays of steps as passed
};

template <class Arguments>
constexpr ZimiSize leastSize() {
  if constexpr (requires { Arguments::least; }) {
    return Arguments::least;
  } else {
    return {1, 1};
  }
}

template <Test... Tests>
struct Order {
  // The result of the first failing test, or zimResultOk.
  template <class Arguments>
  static ZimResult check(const Arguments& arguments) {
    ZimResult result = zimResultOk;
    static_cast<void>(((result = one<Tests>(arguments), result == zimResultOk) && ...));
    return result;
  }

 private:
  template <Test test, class Arguments>
  static ZimResult one(const Arguments& arguments) {
    if constexpr (test == Test::pointers) {
      return arguments.pointersGiven() ? zimResultOk : zimResultNullPointer;
    } else if constexpr (test == Test::planes) {
      return arguments.planesGiven() ? zimResultOk : zimResultNullPointer;
    } else if constexpr (test == Test::size && requires { arguments.sizeAccepted(); }) {
      return arguments.sizeAccepted() ? zimResultOk : zimResultBadSize;
    } else if constexpr (test == Test::size || test == Test::empty) {
      constexpr ZimiSize least = leastSize<Arguments>();
      return arguments.roiSize.width >= least.width && arguments.roiSize.height >= least.height ? zimResultOk
                                                                                                : zimResultBadSize;
    } else if constexpr (test == Test::stepArrays) {
      return arguments.stepArraysGiven() ? zimResultOk : zimResultNullPointer;
    } else {
      return arguments.stepsPositive() ? zimResultOk : zimResultBadStep;
    }
  }
};

// N: pointers as passed, Q: pointers inside arrays, S: size, E: empty size, T: steps, A: arrays of steps.
using N_Q = Order<Test::pointers, Test::planes>;
using N_S = Order<Test::pointers, Test::size>;
using N_S_T = Order<Test::pointers, Test::size, Test::steps>;
using N_S_Q = Order<Test::pointers, Test::size, Test::planes>;
using N_Q_S = Order<Test::pointers, Test::planes, Test::size>;
using N_Q_T_S = Order<Test::pointers, Test::planes, Test::steps, Test::size>;
using S_N = Order<Test::size, Test::pointers>;
using N_Q_S_T = Order<Test::pointers, Test::planes, Test::size, Test::steps>;
using N_S_Q_A = Order<Test::pointers, Test::size, Test::planes, Test::stepArrays>;
using N_Q_S_A = Order<Test::pointers, Test::planes, Test::size, Test::stepArrays>;
using N_A_Q_S = Order<Test::pointers, Test::stepArrays, Test::planes, Test::size>;
using N_E_Q_S_A = Order<Test::pointers, Test::empty, Test::planes, Test::size, Test::stepArrays>;

}  // namespace zim
