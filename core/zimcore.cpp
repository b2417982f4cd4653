#include "zimcore.h"

#include <algorithm>
#include <atomic>
#include <new>

#include "frame/team.h"

namespace {

constexpr std::align_val_t kAlignment{64};

std::atomic<int> teamSize{0};  // 0: as the OpenMP runtime chooses

}  // namespace

extern "C" {

void* zimMalloc(std::size_t byteCount) { return ::operator new(byteCount, kAlignment, std::nothrow); }

void zimFree(void* memory) { ::operator delete(memory, kAlignment); }

int ownGetNumThreads(void) {
  const int count = teamSize.load(std::memory_order_relaxed);
  return count > 0 ? count : std::max(1, zim::usualTeamSize());
}

void zimSetNumThreads(int count) { teamSize.store(std::max(0, count), std::memory_order_relaxed); }

}  // extern "C"
