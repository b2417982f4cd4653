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
std::atomic<int> releases{0};
std::atomic<int> teamsAsked{0};

}  // namespace

extern "C" {

void* zimMalloc(size_t byteCount) {
  ++allocations;
  return std::aligned_alloc(64, (byteCount + 63) / 64 * 64);
}

void zimFree(void* memory) {
  ++releases;
  std::free(memory);
}

int ownGetNumThreads(void) {
  ++teamsAsked;
  return 2;
}

}  // extern "C"

int main() {
  constexpr ZimiSize size = {640, 480};
  constexpr auto pixels = std::size_t{size.width} * std::size_t{size.height};
  constexpr Zim32s samples = 3 * size.width;

  // From this size on, a curve of 16-bit samples fills a table first: scratch memory for the time of the call.
  std::vector<Zim16u> curved(3 * pixels, 0x8000);
  const ZimResult gamma = zimiGammaFwd_16u_C3IR(curved.data(), samples * Zim32s{sizeof(Zim16u)}, size);

  // Gray of doubles runs on a team of threads.
  const std::vector<Zim64f> rgb(3 * pixels, 0.5);
  std::vector<Zim64f> gray(pixels);
  const ZimResult luma = zimiColorToGray_64f_C3C1R(rgb.data(), samples * Zim32s{sizeof(Zim64f)}, gray.data(),
                                                   size.width * Zim32s{sizeof(Zim64f)}, size, nullptr);

  std::printf("%d allocation(s), %d release(s), %d question(s) for the team size\n", allocations.load(),
              releases.load(), teamsAsked.load());
  const bool served = allocations > 0 && releases == allocations && teamsAsked > 0;
  return gamma == zimResultOk && luma == zimResultOk && served ? EXIT_SUCCESS : EXIT_FAILURE;
}
