// Many threads that call many exports at once, with memory that suffices and with memory that runs out. Runs for
// ZIMCC_LOAD_SECONDS in all, or a few seconds.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <random>
#include <set>
#include <thread>

#include "tests/exports.h"
#include "zimcore.h"

namespace {

// What the calls of a thread have asked for. The library allocates and releases on the caller's thread.
struct Memory {
  std::minstd_rand draw;
  bool scarce = false;
  int requests = 0;
  int refusals = 0;
  std::set<void*> held;
};
thread_local Memory memory;

}  // namespace

extern "C" {

void* zimMalloc(std::size_t byteCount) {
  ++memory.requests;
  if (memory.scarce && memory.draw() % 6 == 0) {
    ++memory.refusals;
    return nullptr;
  }
  return *memory.held.insert(std::malloc(byteCount)).first;
}

void zimFree(void* released) {
  EXPECT_TRUE(released == nullptr || memory.held.erase(released) == 1) << "released what the caller does not hold";
  std::free(released);
}

int ownGetNumThreads() { return 2; }

}  // extern "C"

namespace zim::test {
namespace {

using namespace catalogue;
using Clock = std::chrono::steady_clock;

constexpr int kThreads = 6;
// Tables of noise and their generators, which stay where the rows of errors that come next cannot be had.
constexpr int kNoiseRequests = 4;

class Call {
 public:
  explicit Call(const Export& e) : e_(e), call_(e), source_(e.source, size()) {
    source_.fillRandom(2);
    Image destination = blank();
    untouched_ = destination.digest();
    EXPECT_EQ(call_(Operands(e_, source_, destination)), resultOf(e_, size())) << e_.name;
    expected_ = destination.digest();
  }

  // Expects what the same call has given before, or nothing at all for want of memory.
  void repeat() const {
    Image destination = blank();
    memory.requests = memory.refusals = 0;
    const ZimResult result = call_(Operands(e_, source_, destination));
    EXPECT_EQ(result, memory.refusals > 0 ? zimResultNoMemory : resultOf(e_, size())) << e_.name;
    EXPECT_EQ(destination.digest(), memory.refusals > 0 ? untouched_ : expected_) << e_.name;
    const bool leavesNoise = memory.refusals > 0 && memory.requests > kNoiseRequests;
    EXPECT_EQ(memory.held.size(), leavesNoise ? kNoiseRequests : 0U) << e_.name;
    for (void* left : memory.held) std::free(left);
    memory.held.clear();
  }

 private:
  // Beyond every size from which an export works in a team or allocates.
  ZimiSize size() const { return goodSize(e_, {170, 131}); }
  Image blank() const {
    Image image(e_.destination, size());
    image.fillRandom(1);
    return image;
  }

  const Export& e_;
  Caller call_;
  Image source_;
  std::uint64_t untouched_, expected_;
};

Clock::duration share() {
  const char* seconds = std::getenv("ZIMCC_LOAD_SECONDS");
  return std::chrono::milliseconds(seconds == nullptr ? 1500 : std::atoi(seconds) * 500);
}

// Repeats calls at random in many threads; returns how often memory was refused.
int load(const std::vector<Call>& calls, bool scarce) {
  std::atomic<int> refusals = 0, made = 0;
  const auto end = Clock::now() + share();
  {
    std::vector<std::jthread> threads;
    for (unsigned seed = 1; seed <= kThreads; ++seed) {
      threads.emplace_back([&, seed] {
        memory.draw.seed(seed);
        memory.scarce = scarce;
        std::mt19937 choice(seed);
        while (Clock::now() < end && !testing::Test::HasFailure()) {
          calls[choice() % calls.size()].repeat();
          refusals += memory.refusals;
          ++made;
        }
      });
    }
  }
  testing::Test::RecordProperty("calls", made);
  return refusals;
}

TEST(Load, AllExportsAtOnce) {
  const std::vector<Call> calls(forms().begin(), forms().end());
  EXPECT_EQ(load(calls, false), 0);
}

TEST(Load, MemoryRunsOut) {
  const auto allocating = formsWhere([](const Export& e) {
    memory.requests = 0;
    const Call once(e);
    return memory.requests > 0;
  });
  for (const Export& e : allocating) {
    EXPECT_TRUE(matches(e, "zimi@(Gamma*_16u|ReduceBits)_*")) << e.name << " allocates";
  }
  const std::vector<Call> calls(allocating.begin(), allocating.end());
  EXPECT_GT(load(calls, true), 0);
}

}  // namespace
}  // namespace zim::test
