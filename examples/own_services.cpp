// A program that gives zimcc its own memory and its own thread count: it defines the three functions that zimcc
// imports, and the dynamic linker prefers a program's definitions to those of libzimcore.
#include <zimcc.h>
#include <zimcore.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

std::atomic<int> allocations{0};
std::atomic<int> questions{0};

}  // namespace

extern "C" {

void* zimMalloc(size_t byteCount) {
  ++allocations;
  return std::aligned_alloc(64, (byteCount + 63) / 64 * 64);
}

void zimFree(void* memory) { std::free(memory); }

int ownGetNumThreads(void) {
  ++questions;
  return 2;
}

}  // extern "C"

int main() {
  constexpr int width = 640, height = 480;
  const std::vector<double> rgb(3 * width * height, 0.5);
  std::vector<double> gray(width * height);
  const double coeffs[] = {0.25, 0.5, 0.25};

  const ZimResult result = zimiColorToGray_64f_C3C1R(rgb.data(), 3 * width * sizeof(double), gray.data(),
                                                     width * sizeof(double), {width, height}, coeffs);
  std::printf("result %d, gray %g, thread count asked for %d time(s), memory %d time(s)\n", result, gray.back(),
              questions.load(), allocations.load());
  return result == zimResultOk && gray.back() == 0.5 && questions > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
