// What may come next on a command line, for the completion of shells.
#pragma once

#include <string>
#include <vector>

namespace zim::tool {

// Prints what may take the place of the last word, one a line; nothing where a file is expected.
void complete(const std::vector<std::string>& words, const std::vector<std::string>& commands);

}  // namespace zim::tool
