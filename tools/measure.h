// Times of calls.
#pragma once

#include <functional>
#include <vector>

#include "tools/catalogue/catalogue.h"

namespace zim::tool {

struct Timing {
  double best, median;  // seconds a call
};

// Times several functions in turns, so that what disturbs one disturbs the others as well; in fewer rounds where they
// take long.
std::vector<Timing> measure(const std::vector<std::function<void()>>& functions, int rounds);

// What one call reads and writes.
std::size_t bytesMoved(const catalogue::Export& e, ZimiSize size);

double megapixels(ZimiSize size);

}  // namespace zim::tool
