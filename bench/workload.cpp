#include "bench/workload.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <utility>
#include <vector>

#include "zimcore.h"

namespace zim::bench {
namespace {

constexpr double kSecondsPerRound = 2e-3;

std::size_t planeBytes(const catalogue::Image& image, std::size_t plane) {
  return image.rowBytes(plane) * static_cast<std::size_t>(image.rows(plane));
}

std::size_t imageBytes(const catalogue::Image& image) {
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < image.planes(); ++i) bytes += planeBytes(image, i);
  return bytes;
}

// Time of one call. A further call goes first, so that the caches hold what this job leaves in them.
double secondsOf(const Job& job, int calls) {
  using Clock = std::chrono::steady_clock;
  Clock::duration total = {};
  for (int i = 0; i <= calls; ++i) {
    job.prepare();
    const auto start = Clock::now();
    const bool done = job.run();
    if (i > 0) total += Clock::now() - start;
    if (!done) throw std::runtime_error("a call failed");
  }
  return std::chrono::duration<double>(total).count() / calls;
}

int callsPerRound(const Job& job) {
  return static_cast<int>(std::clamp(std::ceil(kSecondsPerRound / secondsOf(job, 1)), 1.0, 1e6));
}

double median(std::vector<double>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, middle);
  return *middle;
}

}  // namespace

Workload::Workload(const catalogue::Export& e, ZimiSize size)
    : export_(e),
      source_(e.source, size),
      destination_(e.destination, size),
      caller_(e),
      operands_(e, source_, destination_) {
  source_.fillRandom(1);
  if (e.inPlace) restore();
}

Job Workload::ours() {
  return peer([this] { return caller_(operands_) == zimResultOk; });
}

Job Workload::peer(Call call) {
  Job job = {.run = std::move(call)};
  if (export_.inPlace) job.prepare = [this] { restore(); };
  return job;
}

std::size_t Workload::bytes() const { return imageBytes(source_) + imageBytes(destination_); }

double Workload::megapixels() const { return 1e-6 * operands_.size.width * operands_.size.height; }

void Workload::restore() {
  for (std::size_t i = 0; i < source_.planes(); ++i) {
    std::memcpy(destination_.row(i, 0), source_.row(i, 0), planeBytes(source_, i));
  }
}

Comparison compare(benchmark::State& state, const Job& job, const Job& other) {
  const int calls = callsPerRound(job), otherCalls = callsPerRound(other);
  std::vector<double> seconds, otherSeconds, ratios;
  while (state.KeepRunningBatch(calls)) {
    seconds.push_back(secondsOf(job, calls));
    otherSeconds.push_back(secondsOf(other, otherCalls));
    ratios.push_back(otherSeconds.back() / seconds.back());
    state.SetIterationTime(seconds.back() * calls);
  }
  return {median(seconds), median(otherSeconds), median(ratios)};
}

void add(const std::string& name, std::function<void(benchmark::State&)> body) {
  const auto guarded = [body = std::move(body)](benchmark::State& state) {
    try {
      body(state);
    } catch (const std::exception& problem) {
      state.SkipWithError(problem.what());
    }
  };
  benchmark::RegisterBenchmark(name.c_str(), guarded)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

std::string targetTag() {
  const auto& tag = zimccGetLibVersion()->targetTag;
  return {tag, strnlen(tag, sizeof tag)};
}

int runAll(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  zimSetNumThreads(1);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace zim::bench
