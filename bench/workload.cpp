#include "bench/workload.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
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

// Time that this thread has had a processor, so that what else runs on the machine counts for little.
double processorSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Time of a run of calls; the clock, which costs half a microsecond, is read between them only if it has to be.
double secondsOf(const Job& job, int calls) {
  const int atOnce = job.prepare ? 1 : calls;
  bool done = true;
  double seconds = 0;
  for (int i = 0; i < calls; i += atOnce) {
    if (job.prepare) job.prepare();
    const double start = processorSeconds();
    for (int j = 0; j < atOnce; ++j) done &= job.run();
    seconds += processorSeconds() - start;
  }
  if (!done) throw std::runtime_error("a call failed");
  return seconds;
}

// Time of one call of a round. One more goes first, so that the caches hold what this job leaves in them.
double secondsOfCall(const Job& job, int calls) {
  secondsOf(job, 1);
  return secondsOf(job, calls) / calls;
}

int callsPerRound(const Job& job) {
  return static_cast<int>(std::clamp(std::ceil(kSecondsPerRound / secondsOfCall(job, 1)), 1.0, 1e6));
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
    seconds.push_back(secondsOfCall(job, calls));
    otherSeconds.push_back(secondsOfCall(other, otherCalls));
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
