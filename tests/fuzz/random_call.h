// Any bytes as a call: an export, its arguments, and images of any size, step and place in memory.
#pragma once

#include <cstdint>
#include <span>

namespace zim::test {

// Makes the call that the bytes stand for and expects of it what holds for every call, by the assertions of GoogleTest.
// Missing bytes count as zeros. Where ZIMCC_OTHER_BUILD names a second build of the library, it has to agree.
void expectGoodCall(std::span<const std::uint8_t> bytes);

}  // namespace zim::test
