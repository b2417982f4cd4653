// Error diffusion of an image's channels, with memory and team: what the forms differ in comes as data. A build may
// compile it for a lower target than its callers, so nothing here depends on one.
#pragma once

#include <cstddef>

#include "reduce/levels.h"

namespace zim {

// Results of the diffusion, as samples: trunc(result * scale + rounding) >> shift, of which the low bits are stored:
// noise may lift a value just below white to the level above it.
struct StoredLevels {
  Zim32f white;  // the result of white; that of black is 0
  Zim32f scale, rounding = 0.5F;
  int shift = 0;
};

template <class Byte>
struct ChannelRows {
  Byte* first;
  std::ptrdiff_t step;         // bytes, of whole samples
  std::ptrdiff_t sampleBytes;  // from channel to channel
  std::ptrdiff_t pixelBytes;
};

struct Diffusion {
  ZimiSize size;
  int channels;
  ChannelRows<const std::byte> source;
  ChannelRows<std::byte> destination;
  // So many samples of one channel as values, where so many more pixels follow in the row; and results as samples.
  void (*read)(const std::byte* from, std::ptrdiff_t count, std::ptrdiff_t following, Zim32f* to);
  void (*write)(const Zim32f* from, std::ptrdiff_t count, const StoredLevels& stored, std::byte* to);
  Levels levels;
  Zim32f black, white;  // values below the one and from the other on are at the limit
  StoredLevels stored;
  ZimDitherKind kind;
  Zim32s noise;
};

// zimResultOk or zimResultNoMemory.
ZimResult diffuse(const Diffusion& diffusion);

}  // namespace zim
