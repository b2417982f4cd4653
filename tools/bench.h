// Exports timed beside memcpy.
#pragma once

#include <vector>

#include "tools/catalogue/catalogue.h"

namespace zim::tool {

// One export at length.
void bench(const catalogue::Export& e, ZimiSize size);

// A table of several, by families, each a little less thoroughly.
void benchAll(std::vector<const catalogue::Export*> exports, ZimiSize size);

}  // namespace zim::tool
