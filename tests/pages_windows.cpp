#include <windows.h>

#include <new>

#include "tests/pages.h"

namespace zim::test {

std::size_t pageSize() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwPageSize;
}

std::byte* reservePages(std::size_t count) {
  return static_cast<std::byte*>(VirtualAlloc(nullptr, count, MEM_RESERVE, PAGE_NOACCESS));
}

void openPages(std::byte* start, std::size_t count) {
  if (count != 0 && VirtualAlloc(start, count, MEM_COMMIT, PAGE_READWRITE) == nullptr) throw std::bad_alloc();
}

void releasePages(std::byte* start, std::size_t) { VirtualFree(start, 0, MEM_RELEASE); }

}  // namespace zim::test
