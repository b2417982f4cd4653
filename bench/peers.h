// Exports paired with functions of other libraries that do the same job.
//
// The job is the same where as many samples of the same types are read and written, in the same kind of calculation:
// the order of channels does not matter, nor do the digits of a coefficient or the exactness of the result. A peer that
// knows only planes is given the memory of interleaved samples as planes; labels say so.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "bench/workload.h"
#include "tools/catalogue/image.h"

namespace zim::bench {

// Memory of an image as peers take it.
struct Picture {
  std::array<std::uint8_t*, 4> data = {};
  std::array<int, 4> step = {};
};

// The planes of an image; an interleaved image is cut into as many equal planes, one after another.
Picture picture(catalogue::Image& image, std::size_t planes);

struct Pair {
  std::string exportName;
  std::string peer;   // the library: the second part of the benchmark's name
  std::string label;  // what of it is called
  // Everything that comes before the call, which is returned.
  std::function<Call(catalogue::Image& source, catalogue::Image& destination)> prepare;
  int levels = 0;  // that the peer reduces to, where the export takes their number
};

// All pairs of the libraries that this program is built with.
std::vector<Pair>& pairs();

// Each peer's file enters its own pairs, so that nothing else has to know which of them are there.
struct Enter {
  explicit Enter(std::vector<Pair> some);
};

}  // namespace zim::bench
