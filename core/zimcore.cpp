#include "zimcore.h"

#include <omp.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>

namespace {

constexpr std::size_t kAlignment = 64;

std::atomic<int> teamSize{0};  // 0: as the OpenMP runtime chooses

}  // namespace

extern "C" {

void* zimMalloc(std::size_t byteCount) {
  const std::size_t rounded = (byteCount + kAlignment - 1) & ~(kAlignment - 1);
  return rounded < byteCount ? nullptr : std::aligned_alloc(kAlignment, rounded);
}

void zimFree(void* memory) { std::free(memory); }

int ownGetNumThreads(void) {
  const int count = teamSize.load(std::memory_order_relaxed);
  return count > 0 ? count : std::max(1, omp_get_max_threads());
}

void zimSetNumThreads(int count) { teamSize.store(std::max(0, count), std::memory_order_relaxed); }

}  // extern "C"
