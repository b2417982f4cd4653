// What the tool says about exports and about the library.
#pragma once

#include <string>

namespace zim::tool {

// Exports that match a shell pattern, or contain a plain word; all for an empty pattern.
void list(const std::string& pattern);

void describe(const std::string& name);

void version();

}  // namespace zim::tool
