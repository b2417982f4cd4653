#include "tools/measure.h"

#include <algorithm>
#include <chrono>

namespace zim::tool {
namespace {

constexpr double kRoundSeconds = 2e-3;
constexpr double kMostSeconds = 0.5;  // after which there are no more rounds

double secondsOf(const std::function<void()>& function, int calls) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < calls; ++i) function();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Calls that fill a round, at least one. The caches are warm afterwards.
int callsInRound(const std::function<void()>& function) {
  int calls = 1;
  while (secondsOf(function, calls) < kRoundSeconds / 2) calls *= 2;
  return calls;
}

}  // namespace

std::vector<Timing> measure(const std::vector<std::function<void()>>& functions, int rounds) {
  std::vector<int> calls(functions.size());
  std::ranges::transform(functions, calls.begin(), callsInRound);
  std::vector<std::vector<double>> seconds(functions.size());
  double total = 0;
  for (int round = 0; round < rounds && total < kMostSeconds; ++round) {
    for (std::size_t i = 0; i < functions.size(); ++i) {
      const double ofRound = secondsOf(functions[i], calls[i]);
      seconds[i].push_back(ofRound / calls[i]);
      total += ofRound;
    }
  }
  std::vector<Timing> timings;
  for (auto& s : seconds) {
    std::ranges::sort(s);
    timings.push_back({s.front(), s[s.size() / 2]});
  }
  return timings;
}

std::size_t bytesMoved(const catalogue::Export& e, ZimiSize size) {
  std::size_t bytes = 0;
  for (const auto* side : {&e.source, &e.destination}) {
    for (const auto& plane : side->planes) {
      bytes += plane.rowBytes(size.width) * static_cast<std::size_t>(plane.rows(size.height));
    }
  }
  return bytes;
}

double megapixels(ZimiSize size) { return 1e-6 * size.width * size.height; }

}  // namespace zim::tool
