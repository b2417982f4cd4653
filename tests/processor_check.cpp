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
  const auto isFor = [target](const char* level) { return target != nullptr && std::strcmp(target, level) == 0; };
  const bool hasV3 = __builtin_cpu_supports("avx2");
  const bool hasV4 = hasV3 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                     __builtin_cpu_supports("avx512cd") && __builtin_cpu_supports("avx512dq") &&
                     __builtin_cpu_supports("avx512vl");
  if ((isFor("v3") && !hasV3) || (isFor("v4") && !hasV4)) _exit(kSkipped);
}

}  // namespace
