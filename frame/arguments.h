// Argument tests, declared as the order in which an export makes them. The first test that fails decides the result.
#pragma once

#include "zimcc.h"

namespace zim {

enum class Test {
  pointers,  // the pointers as passed, arrays of planes by their own address
  planes,    // the pointers inside arrays
  size,      // width and height of at least 1, or of what the arguments name as least
  steps,     // every step of at least 1
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
    } else if constexpr (test == Test::size) {
      constexpr ZimiSize least = leastSize<Arguments>();
      return arguments.roiSize.width >= least.width && arguments.roiSize.height >= least.height ? zimResultOk
                                                                                                : zimResultBadSize;
    } else {
      return arguments.stepsPositive() ? zimResultOk : zimResultBadStep;
    }
  }
};

// N: pointers as passed, Q: pointers inside arrays, S: size, T: steps.
using N_Q = Order<Test::pointers, Test::planes>;
using N_S = Order<Test::pointers, Test::size>;
using N_S_Q = Order<Test::pointers, Test::size, Test::planes>;
using N_Q_S = Order<Test::pointers, Test::planes, Test::size>;
using N_S_T = Order<Test::pointers, Test::size, Test::steps>;
using S_N = Order<Test::size, Test::pointers>;
using N_Q_S_T = Order<Test::pointers, Test::planes, Test::size, Test::steps>;

}  // namespace zim
