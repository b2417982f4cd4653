// Noise that dithering adds to its thresholds: two tables of pseudo-random numbers, made anew in every call from the
// same seed, so that equal calls have equal results.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <type_traits>

#include "zimcc.h"
#include "zimcore.h"

namespace zim {

// What a fill says of a state that is not of its kind. No export returns it.
inline constexpr ZimResult zimResultBadContext = -17;

// State of a generator of numbers spread evenly from low to high: the sum of a congruential generator and of one that
// subtracts with borrow.
template <class T>
struct UniformNoise {
  // Bounds are added and subtracted in this type.
  using Bound = std::conditional_t<std::is_integral_v<T>, Zim32s, T>;
  static constexpr Zim32s kind = std::is_integral_v<T> ? 36 : 37;

  Zim32s identifier;
  Zim32u seed;
  T low, high;
  double mid, scale;
  Zim32u lcg;
  Zim32u a, b, c;  // the last three words, newest first
  Zim32s carry;    // 0 or -1
};
using ZimUniformNoise16s = UniformNoise<Zim16s>;
using ZimUniformNoise32f = UniformNoise<Zim32f>;

// A state of its own memory; zimResultNullPointer, or zimResultNoMemory.
template <class T>
ZimResult uniformNoiseInit(UniformNoise<T>** ppState, T low, T high, Zim32u seed);
// The next numbers. zimResultNullPointer, zimResultBadSize for a count below 1, or zimResultBadContext.
template <class T>
ZimResult uniformNoiseFill(T* pDst, Zim32s count, UniformNoise<T>* pState);
// zimResultNullPointer, or zimResultBadContext.
template <class T>
ZimResult uniformNoiseFree(UniformNoise<T>* pState);

// The tables of one call: values between two bounds, and indices that scatter them over the image. Pixel x, y has the
// value (index[x] + x + 2 y) modulo kEntries; along a row they repeat after as many.
class NoiseTables {
 public:
  static constexpr Zim32s kEntries = 1024;

  // zimResultOk, or zimResultNoMemory with nothing kept.
  ZimResult make(Zim32f low, Zim32f high);
  // Leaves the memory allocated for good.
  void abandon();

  // Those of so many pixels of a row, from x on.
  void read(std::ptrdiff_t x, Zim32s y, std::ptrdiff_t count, Zim32f* to) const;

 private:
  struct Free {
    void operator()(void* memory) const { zimFree(memory); }
    template <class T>
    void operator()(UniformNoise<T>* state) const {
      uniformNoiseFree(state);
    }
  };
  template <class T>
  using Memory = std::unique_ptr<T, Free>;

  template <class T>
  static ZimResult fillTable(Memory<T[]>& table, Memory<UniformNoise<T>>& state, T low, T high);

  Memory<Zim32f[]> valueTable_;
  Memory<Zim16s[]> indexTable_;
  Memory<ZimUniformNoise16s> indexState_;
  Memory<ZimUniformNoise32f> valueState_;

  // As they are read: the values twice over, so that a row's begin at an even place of the first half, and where a
  // column's lies from there.
  std::array<Zim32f, std::size_t{2 * kEntries}> values_;
  std::array<Zim16u, std::size_t{kEntries}> places_;
};

}  // namespace zim
