// Speed of exports beside that of their peers.

#include <algorithm>
#include <iterator>

#include "bench/peers.h"
#include "bench/workload.h"

namespace zim::bench {

Picture picture(catalogue::Image& image, std::size_t planes) {
  Picture picture;
  const bool asTheyAre = planes == image.planes();
  for (std::size_t i = 0; i < planes; ++i) {
    const std::size_t step = asTheyAre ? image.rowBytes(i) : image.rowBytes(0) / planes;
    const std::size_t offset = asTheyAre ? 0 : i * step * static_cast<std::size_t>(image.rows(0));
    picture.data[i] = reinterpret_cast<std::uint8_t*>(image.row(asTheyAre ? i : 0, 0) + offset);
    picture.step[i] = static_cast<int>(step);
  }
  return picture;
}

std::vector<Pair>& pairs() {
  static std::vector<Pair> all;
  return all;
}

Enter::Enter(std::vector<Pair> some) { std::ranges::move(some, std::back_inserter(pairs())); }

namespace {

void addPair(const catalogue::Export& e, const Pair& pair) {
  const auto body = [&](benchmark::State& state) {
    Workload workload(e, kFullHd);
    if (pair.levels > 0) workload.set("levels", pair.levels);
    const Job peer = workload.peer(pair.prepare(workload.source(), workload.destination()));
    const Comparison result = compare(state, workload.ours(), peer);
    state.counters["MP/s"] = workload.megapixels() / result.seconds;
    state.counters["peer_MP/s"] = workload.megapixels() / result.otherSeconds;
    state.counters["ratio"] = result.ratio;
    state.SetLabel(targetTag() + ", " + pair.label);
  };
  add(e.name + "/" + pair.peer, body);
}

}  // namespace
}  // namespace zim::bench

int main(int argc, char** argv) {
  using namespace zim;
  for (const bench::Pair& pair : bench::pairs()) {
    if (const auto* e = catalogue::find(pair.exportName)) bench::addPair(*e, pair);
  }
  return bench::runAll(argc, argv);
}
