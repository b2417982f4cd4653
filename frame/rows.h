// Row walkers: which thread takes which rows, and where a row begins.
#pragma once

#include <cstddef>

#include "frame/team.h"
#include "zimcc.h"

namespace zim {

// 32-bit product that wraps.
constexpr Zim32s wrappingProduct(Zim32s a, Zim32s b) {
  return static_cast<Zim32s>(static_cast<Zim32u>(a) * static_cast<Zim32u>(b));
}

// How the byte offset of a row follows from the step.
enum class Offsets {
  bytes,       // exact bytes, product of pointer width
  bytes32,     // exact bytes, product of 32 bits that wraps
  elements,    // whole samples: low bits of the step are dropped; product of pointer width
  elements32,  // whole samples: low bits of the step are dropped; product of 32 bits that wraps
};

template <Offsets offsets, class T>
std::ptrdiff_t rowOffset(Zim32s row, Zim32s step) {
  constexpr auto sampleBytes = static_cast<Zim32s>(sizeof(T));
  if constexpr (offsets == Offsets::bytes) {
    return std::ptrdiff_t{row} * step;
  } else if constexpr (offsets == Offsets::bytes32) {
    return wrappingProduct(row, step);
  } else if constexpr (offsets == Offsets::elements) {
    return std::ptrdiff_t{row} * (step & -sampleBytes);
  } else {
    constexpr int shift = sampleBytes == 1 ? 0 : sampleBytes == 2 ? 1 : sampleBytes == 4 ? 2 : 3;
    return std::ptrdiff_t{wrappingProduct(row, step >> shift)} * sampleBytes;
  }
}

// Each walker calls rows(first, count) for blocks of rows that together make up the image.

struct Serial {
  template <class Rows>
  [[gnu::always_inline]] static void run(ZimiSize size, const Rows& rows) {
    rows(0, size.height);
  }
};

// A team for every image, in one contiguous block of rows a thread.
struct AlwaysParallel {
  template <class Rows>
  static void run(ZimiSize size, const Rows& rows) {
    shareOut(size.height, wantedTeamSize(), [&](int row) { rows(row, 1); });
  }
};

// The same from so many pixels on, serial below; the count of pixels is a 32-bit product that wraps.
template <Zim32s leastPixels>
struct ParallelFrom {
  template <class Rows>
  static void run(ZimiSize size, const Rows& rows) {
    // One copy of the kernel serves both ways.
    const auto called = [&](Zim32s first, Zim32s count) __attribute__((noinline)) { rows(first, count); };
    if (wrappingProduct(size.width, size.height) < leastPixels) {
      Serial::run(size, called);
    } else {
      AlwaysParallel::run(size, called);
    }
  }
};
using RowParallel = ParallelFrom<4097>;

// Equal bands of rows, one to each thread that was asked for; the last takes the rest. The team is taken as granted: if
// the runtime gives fewer threads, the bands of the missing ones stay unconverted.
template <Zim32s leastWidth, Zim32s leastHeight>
struct Bands {
  static constexpr bool countsFromBand = true;  // row offsets are those from the first row of a band

  template <class Rows>
  static void run(ZimiSize size, const Rows& rows) {
    const int count = wantedTeamSize();
    if (count == 1 || size.width < leastWidth || size.height < leastHeight) {
      Serial::run(size, rows);
      return;
    }
    const Zim32s band = size.height / count, rest = size.height % count;
    inTeam(count, [&](int thread, int) { rows(thread * band, band + (thread == count - 1 ? rest : 0)); });
  }
};

}  // namespace zim
