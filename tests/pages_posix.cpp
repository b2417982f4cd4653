#include <sys/mman.h>
#include <unistd.h>

#include <new>

#include "tests/pages.h"

namespace zim::test {

std::size_t pageSize() {
  static const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return size;
}

std::byte* reservePages(std::size_t count) {
  void* start = mmap(nullptr, count, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  return start == MAP_FAILED ? nullptr : static_cast<std::byte*>(start);
}

void openPages(std::byte* start, std::size_t count) {
  const std::size_t before = reinterpret_cast<std::size_t>(start) % pageSize();
  if (mprotect(start - before, before + count, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
}

void releasePages(std::byte* start, std::size_t count) { munmap(start, count); }

}  // namespace zim::test
