// Speed of every export beside that of a memory copy, and the cost of a call.

#include <cstring>
#include <type_traits>

#include "bench/workload.h"
#include "zimcc.h"

using namespace zim;
using bench::Job;

namespace {

// A copy of as many bytes, on memory of the same kind as that of the images.
class MemoryCopy {
 public:
  explicit MemoryCopy(std::size_t bytes)
      : bytes_(bytes), from_(row(), {static_cast<int>(bytes), 1}), to_(from_.side(), from_.size()) {
    from_.fillRandom(2);
  }

  Job job() {
    return {.run = [this] { return std::memcpy(to_.row(0, 0), from_.row(0, 0), bytes_) != nullptr; }};
  }

 private:
  static catalogue::Side row() {
    catalogue::Side side;
    side.planes.emplace_back();
    return side;
  }

  std::size_t bytes_;
  catalogue::Image from_, to_;
};

void addExport(const catalogue::Export& e, ZimiSize size) {
  const auto body = [&e, size](benchmark::State& state) {
    bench::Workload workload(e, size);
    MemoryCopy copy(workload.bytes() / 2);
    const bench::Comparison result = compare(state, workload.ours(), copy.job());
    state.counters["MP/s"] = workload.megapixels() / result.seconds;
    state.counters["vs_memcpy"] = result.ratio;
    state.SetLabel(bench::targetTag());
  };
  bench::add(e.name + "/" + std::to_string(size.width) + "x" + std::to_string(size.height), body);
}

// Argument tests and stub, with a single pixel to convert: called directly, unlike the rest.
template <class Sample, class... Further>
void addOverhead(const std::string& name,
                 ZimResult (*function)(const Sample*, Zim32s, Sample*, Zim32s, ZimiSize, Further...),
                 std::type_identity_t<Further>... further) {
  const auto body = [=](benchmark::State& state) {
    constexpr Zim32s kStep = 4 * sizeof(Sample);
    const Sample source[4] = {};
    Sample destination[4] = {};
    for (auto _ : state) benchmark::DoNotOptimize(function(source, kStep, destination, kStep, {1, 1}, further...));
    state.SetLabel(bench::targetTag());
  };
  benchmark::RegisterBenchmark(("call_overhead/" + name).c_str(), body);
}

}  // namespace

int main(int argc, char** argv) {
  for (const catalogue::Export& e : catalogue::forms()) {
    for (const ZimiSize size : {bench::kFullHd, bench::kVga}) addExport(e, size);
  }
#define ADD_OVERHEAD(name, ...) addOverhead(#name, name __VA_OPT__(, ) __VA_ARGS__)
  ADD_OVERHEAD(zimiRGBToGray_8u_C3C1R);
  ADD_OVERHEAD(zimiRGBToGray_32f_C3C1R);
  ADD_OVERHEAD(zimiColorToGray_8u_C3C1R, nullptr);
  ADD_OVERHEAD(zimiColorToGray_64f_C3C1R, nullptr);
#undef ADD_OVERHEAD
  return bench::runAll(argc, argv);
}
