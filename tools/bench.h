// Exports timed beside memcpy.
#pragma once

#include <vector>

#include "tools/catalogue/catalogue.h"

namespace zim::tool {

struct BenchSettings {
  ZimiSize size = {1920, 1080};
  int threads = 1;
};

// One export at length.
void bench(const catalogue::Export& e, const BenchSettings& settings);

// A table of several, by families, each a little less thoroughly.
void benchAll(std::vector<const catalogue::Export*> exports, const BenchSettings& settings);

}  // namespace zim::tool
