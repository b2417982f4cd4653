// Every test program that uses the library first makes sure that the loader took the build it is to test.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/exports.h"
#include "zimcc.h"

namespace {

class LoadedBuild : public testing::Environment {
  void SetUp() override {
    if (const char* target = std::getenv("ZIMCC_EXPECT_TARGET")) {
      ASSERT_STREQ(zimccGetLibVersion()->targetTag, target);
    }
  }
};

[[maybe_unused]] const testing::Environment* const loadedBuild = testing::AddGlobalTestEnvironment(new LoadedBuild);

}  // namespace

bool zim::test::hasTeams() { return ZIMCC_OPENMP; }
