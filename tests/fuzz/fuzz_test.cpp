// Calls that once went wrong, and some at random. scripts/fuzz looks for more.
#include <gtest/gtest.h>

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
  std::mt19937_64 draw(20);
  std::vector<std::uint8_t> bytes(160);
  for (int i = 0; i < (getenv("N") ? atoi(getenv("N")) : 4000) && !HasFailure(); ++i) {
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(draw());
    expectGoodCall(bytes);
  }
}

}  // namespace
}  // namespace zim::test
