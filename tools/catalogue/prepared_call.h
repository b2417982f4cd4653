// Calls to functions whose parameters are only known at run time.
#pragma once

#include <functional>
#include <vector>

#include "tools/catalogue/sample_type.h"
#include "zimcc.h"

namespace zim::catalogue {

using AnyFunction = void (*)();

// A number by its type, a pointer, or a record passed by value.
struct Parameter {
  enum class Kind { number, pointer, size, region };
  Kind kind;
  SampleType type = SampleType::u8;
};

inline constexpr std::size_t kMostParameters = 16;

// Calls a function of these parameters with the arguments that the pointers lead to. May be used by several threads at
// once. Empty if there is no way.
using PreparedCall = std::function<ZimResult(AnyFunction, void* const* arguments)>;
PreparedCall prepareCall(const std::vector<Parameter>& parameters);

}  // namespace zim::catalogue
