// Cube roots of lanes against the C library's, over all floats that they are meant for. It takes a minute or two and
// tells of the library as much as of the lanes, so it is no part of the test suite: build and run cube_roots_check_mx
// or _v3 wherever the library is new.

#include <cmath>
#include <cstdio>
#include <limits>

#include "models/cube_root.h"

namespace {

using namespace zim;

constexpr int kN = 2 * kLanes<Zim32f>;

// visit(x, roots of x) for all floats from low to high.
template <class Visit>
void forAllFloats(Zim32f low, Zim32f high, const auto& root, const Visit& visit) {
  for (Zim32s bits = std::bit_cast<Zim32s>(low); bits <= std::bit_cast<Zim32s>(high); bits += kN) {
    std::array<Zim32f, kN> x;
    for (int k = 0; k < kN; ++k) x[static_cast<std::size_t>(k)] = std::bit_cast<Zim32f>(bits + k);
    const auto roots = asArray(root(fromArray(x)));
    for (std::size_t k = 0; k < kN; ++k) visit(x[k], roots[k]);
  }
}

bool checkExactRoots() {
  long differences = 0, misrounded = 0;
  double furthest = 0;
  forAllFloats(
      std::numeric_limits<Zim32f>::min(), std::numeric_limits<Zim32f>::max(),
      [](auto x) { return CubeRoot::inLanes(x); },
      [&](Zim32f x, Zim32f root) {
        const Zim32f library = std::cbrt(x);
        if (std::bit_cast<Zim32s>(root) != std::bit_cast<Zim32s>(library) && !(std::isnan(x) && std::isnan(root))) {
          if (++differences <= 10) std::printf("  %a: %a in place of %a\n", x, root, library);
        }
        if (!std::isfinite(x)) return;
        const double exact = std::cbrt(static_cast<double>(x));
        misrounded += static_cast<Zim32f>(exact) != library;
        const double unit = std::ldexp(1.0, std::ilogb(exact) - 23);
        furthest = std::max(furthest, std::abs(library - exact) / unit);
      });
  std::printf("all normal floats: %ld roots of lanes differ from cbrtf\n", differences);
  std::printf("cbrtf itself: %ld roots are not the nearest, the furthest is off by %.4f units in the last place\n",
              misrounded, furthest);
  return differences == 0;
}

bool checkRootsOfShares() {
  long differences = 0;
  forAllFloats(
      0x1p-15F, 0x1.fffffep0F, [](auto x) { return CubeRoot::ofShares(x) - CubeRoot::inLanes(x); },
      [&](Zim32f, Zim32f difference) { differences += difference != 0; });
  std::printf("all floats from 2^-15 to 2: %ld roots of shares differ from roots\n", differences);
  return differences == 0;
}

bool checkNearRoots() {
  double furthest = 0;
  forAllFloats(
      0.0088F, 1.01F, [](auto x) { return nearCubeRoot(x); },
      [&](Zim32f x, Zim32f root) {
        const double exact = std::cbrt(static_cast<double>(x));
        furthest = std::max(furthest, std::abs(root - exact) / exact);
      });
  const double allowed = double{kNearCubeRootError} - 0x1p-23;
  std::printf("near roots: off by %.3g of the exact ones, %.3g allowed\n", furthest, allowed);
  return furthest < allowed;
}

}  // namespace

int main() {
  const bool near = checkNearRoots(), shares = checkRootsOfShares(), exact = checkExactRoots();
  return near && shares && exact ? 0 : 1;
}
