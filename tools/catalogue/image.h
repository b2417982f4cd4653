// Memory for one side of a call, with reproducible contents.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

#include "tools/catalogue/catalogue.h"

namespace zim::catalogue {

// The pointers and steps of one side of a call. Unused elements are ignored; a side with one step takes the first.
struct Buffers {
  std::array<void*, 4> planes = {};
  std::array<Zim32s, 4> steps = {};
  bool nullArray = false;  // pass null in place of the array of plane pointers,
  bool nullSteps = false;  // or of the array of steps
};

// The planes of a side at a size, each from a 64-byte boundary. Rows are stepPadding bytes apart, save where the side
// takes no steps.
class Image {
 public:
  Image(const Side& side, ZimiSize size, int stepPadding = 0);

  const Side& side() const { return side_; }
  ZimiSize size() const { return size_; }
  Buffers buffers() const;

  std::size_t planes() const { return planes_.size(); }
  std::size_t rowBytes(std::size_t plane) const { return planes_[plane].rowBytes; }
  int rows(std::size_t plane) const { return planes_[plane].rows; }
  std::byte* row(std::size_t plane, int y);
  const std::byte* row(std::size_t plane, int y) const { return const_cast<Image*>(this)->row(plane, y); }

  // Contents of the rows by a generator that depends on nothing but the seed; padding keeps its zeros.
  void fill(std::byte value);
  void fillRandom(std::uint64_t seed);  // integers of all values, floats from 0 to below 1
  // Limits and their neighbours; for floats any bits, NaN and infinities as well.
  void fillExtremes(std::uint64_t seed);

  // 64-bit FNV-1a of the rows without padding, in which any NaN counts as the same.
  std::uint64_t digest() const;

 private:
  static constexpr std::align_val_t kAlignment{64};
  struct Free {
    void operator()(std::byte* memory) const { ::operator delete(memory, kAlignment); }
  };
  struct PlaneMemory {
    std::size_t rowBytes, step;
    int rows;
    std::unique_ptr<std::byte[], Free> memory;
  };

  template <class Visitor>
  void forEachRow(Visitor&& visitor) const;

  Side side_;
  ZimiSize size_;
  std::vector<PlaneMemory> planes_;
};

}  // namespace zim::catalogue
