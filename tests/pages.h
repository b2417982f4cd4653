// Memory straight from the system, of whole pages.
#pragma once

#include <cstddef>

namespace zim::test {

std::size_t pageSize();

// So many bytes that cannot be touched; null if there is no address space for them.
std::byte* reservePages(std::size_t count);

// Lets the pages that these bytes lie in be read and written; throws std::bad_alloc if it cannot.
void openPages(std::byte* start, std::size_t count);

// Gives back what reservePages returned.
void releasePages(std::byte* start, std::size_t count);

}  // namespace zim::test
