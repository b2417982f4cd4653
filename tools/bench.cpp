#include "tools/bench.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "tools/job.h"
#include "tools/measure.h"
#include "tools/progress.h"
#include "zimcore.h"

namespace zim::tool {
namespace {

using namespace catalogue;

struct Times {
  Timing own, copy;  // copy: memcpy of as many bytes
};

Times timesOf(const Export& e, const BenchSettings& settings, int rounds) {
  zimSetNumThreads(settings.threads);
  const ZimiSize size = settings.size;
  Image source(e.source, size), destination(e.destination, size);
  source.fillRandom(1);
  const Operands operands(e, source, e.inPlace ? source : destination);
  const Caller caller(e);
  call(e, caller, operands);

  const std::size_t bytes = bytesMoved(e, size) / 2;
  std::vector<char> from(bytes, 1), to(bytes);
  const auto timings = measure({[&] { caller(operands); },
                                [&] {
                                  std::memcpy(to.data(), from.data(), bytes);
                                  asm volatile("" : : "r"(to.data()) : "memory");
                                }},
                               rounds);
  return {timings[0], timings[1]};
}

std::string describe(const BenchSettings& settings) {
  const std::string threads = settings.threads == 1 ? "one thread" : std::to_string(settings.threads) + " threads";
  return std::to_string(settings.size.width) + " x " + std::to_string(settings.size.height) + ", " + threads;
}

}  // namespace

void bench(const Export& e, const BenchSettings& settings) {
  constexpr int kRounds = 41;
  const ZimiSize size = settings.size;
  const auto [own, copy] = timesOf(e, settings, kRounds);
  std::printf("%s  %s\n", e.name.c_str(), describe(settings).c_str());
  std::printf("  %-8s%12s%12s%12s\n", "", "ms", "MP/s", "of memcpy");
  const auto row = [&](const char* name, double seconds, double copySeconds) {
    std::printf("  %-8s%12.4f%12.1f%12.2f\n", name, 1e3 * seconds, megapixels(size) / seconds, copySeconds / seconds);
  };
  row("best", own.best, copy.best);
  row("median", own.median, copy.median);
}

void benchAll(std::vector<const Export*> exports, const BenchSettings& settings) {
  constexpr int kRounds = 9;
  const ZimiSize size = settings.size;
  std::ranges::stable_sort(exports, {}, &Export::family);
  std::size_t width = 0;
  for (const Export* e : exports) width = std::max(width, e->name.size());
  const int nameWidth = static_cast<int>(width);

  std::printf("%s, %.4s; medians, and the speed of memcpy on as many bytes as 1\n", describe(settings).c_str(),
              zimccGetLibVersion()->targetTag);
  std::vector<double> ratios;
  Progress progress(exports.size());
  std::string_view family;
  for (const Export* e : exports) {
    progress.next(e->name);
    const auto [own, copy] = timesOf(*e, settings, kRounds);
    ratios.push_back(copy.median / own.median);
    progress.clear();
    if (e->family != family) {
      family = e->family;
      std::printf("\n%-*s%12s%12s%12s\n", nameWidth + 2, std::string(family).c_str(), "ms", "MP/s", "of memcpy");
    }
    std::printf("  %-*s%12.4f%12.1f%12.2f\n", nameWidth, e->name.c_str(), 1e3 * own.median,
                megapixels(size) / own.median, ratios.back());
    std::fflush(stdout);
  }
  std::ranges::sort(ratios);
  std::printf("\n%zu conversion%s from %.2f to %.2f of memcpy, half of them from %.2f on\n", ratios.size(),
              ratios.size() == 1 ? "," : "s,", ratios.front(), ratios.back(), ratios[ratios.size() / 2]);
}

}  // namespace zim::tool
