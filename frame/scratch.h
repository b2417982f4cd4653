// Scratch memory of a call, from the core library. Null for a count below 1, without asking, or when there is none.
#pragma once

#include <memory>

#include "zimcc.h"

namespace zim {

[[nodiscard]] Zim16u* scratchAlloc16(Zim32s count);
[[nodiscard]] Zim32u* scratchAlloc32(Zim32s count);
void scratchFree16(Zim16u* memory);
void scratchFree32(Zim32u* memory);

struct ScratchRelease {
  void operator()(Zim16u* memory) const { scratchFree16(memory); }
  void operator()(Zim32u* memory) const { scratchFree32(memory); }
};

// Owns what scratchAlloc16 or scratchAlloc32 returned, on every path out of a call.
template <class T>
using Scratch = std::unique_ptr<T[], ScratchRelease>;

}  // namespace zim
