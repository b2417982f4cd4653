#include "frame/scratch.h"

#include "zimcore.h"

namespace zim {

// The byte count of 16-bit elements is a 32-bit product, that of 32-bit elements a 64-bit one.
Zim16u* scratchAlloc16(Zim32s count) {
  if (count < 1) return nullptr;
  const auto bytes = static_cast<Zim32s>(static_cast<Zim32u>(count) * 2U);
  return static_cast<Zim16u*>(zimMalloc(static_cast<std::size_t>(bytes)));
}

Zim32u* scratchAlloc32(Zim32s count) {
  if (count < 1) return nullptr;
  return static_cast<Zim32u*>(zimMalloc(static_cast<std::size_t>(count) * 4U));
}

void scratchFree16(Zim16u* memory) { zimFree(memory); }
void scratchFree32(Zim32u* memory) { zimFree(memory); }

}  // namespace zim
