// Leaves with the code of a skipped test where the processor cannot run what the test is about. Comes before the
// initialisation of anything that may have been compiled for that processor.
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace {

constexpr int kSkipped = 77;

[[gnu::constructor(101)]] void skipOnLesserProcessor() {
  const char* target = std::getenv("ZIMCC_EXPECT_TARGET");
  __builtin_cpu_init();
  if (target != nullptr && std::strcmp(target, "v3") == 0 && !__builtin_cpu_supports("avx2")) _exit(kSkipped);
}

}  // namespace
