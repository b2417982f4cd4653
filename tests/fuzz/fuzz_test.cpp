// Calls that once went wrong, and ZIMCC_FUZZ_CALLS calls at random, or 2000. scripts/fuzz looks for more.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "tests/fuzz/random_call.h"

namespace zim::test {
namespace {

TEST(Fuzz, Corpus) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(ZIMCC_CORPUS_FOLDER)) {
    SCOPED_TRACE(entry.path().filename());
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    expectGoodCall({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    ++files;
  }
  EXPECT_GT(files, 0);
}

TEST(Fuzz, RandomCalls) {
  const char* asked = std::getenv("ZIMCC_FUZZ_CALLS");
  const int calls = asked == nullptr ? 2000 : std::atoi(asked);
  std::mt19937_64 draw(20);
  std::vector<std::uint8_t> bytes(160);
  for (int i = 0; i < calls && !HasFailure(); ++i) {
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(draw());
    expectGoodCall(bytes);
  }
}

}  // namespace
}  // namespace zim::test
