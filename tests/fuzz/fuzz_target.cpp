// For libFuzzer, which supplies main: a failed expectation ends the process, like any other fault.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>

#include "tests/fuzz/random_call.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zim::test::expectGoodCall({data, size});
  if (testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed()) std::abort();
  return 0;
}
