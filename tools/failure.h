// What the user is told when a command cannot do its work.
#pragma once

#include <stdexcept>

namespace zim::tool {

struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace zim::tool
