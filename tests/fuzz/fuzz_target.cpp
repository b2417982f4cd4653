// For libFuzzer, which supplies main: a failed expectation ends the process, like any other fault.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/fuzz/random_call.h"

namespace {

zim::test::OtherBuild otherBuild() {
  const char* path = std::getenv("ZIMCC_OTHER_BUILD");
  if (path == nullptr) return nullptr;
  void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(EXIT_FAILURE);
  }
  return [library](const std::string& name) {
    return reinterpret_cast<zim::catalogue::AnyFunction>(dlsym(library, name.c_str()));
  };
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const zim::test::OtherBuild other = otherBuild();
  zim::test::expectGoodCall({data, size}, other);
  if (testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed()) std::abort();
  return 0;
}
