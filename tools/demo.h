// Every family of conversions on one photograph.
#pragma once

#include <string>

namespace zim::tool {

// Writes the results as PNG files and index.html, which shows them all, into a folder of this name that need not exist.
void demo(const std::string& name);

}  // namespace zim::tool
