// Any bytes as a call: an export, its arguments, and images of any size, step and place in memory.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "tools/catalogue/catalogue.h"

namespace zim::test {

// The symbols of a second build of the library.
using OtherBuild = std::function<catalogue::AnyFunction(const std::string& name)>;

// Makes the call that the bytes stand for and expects of it what holds for every call, by the assertions of GoogleTest.
// Missing bytes count as zeros. The other build, if there is one, has to agree.
void expectGoodCall(std::span<const std::uint8_t> bytes, const OtherBuild& otherBuild = nullptr);

}  // namespace zim::test
