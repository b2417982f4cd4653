// Images in memory where a stray access cannot pass unseen: each plane between pages that cannot be touched, and every
// byte that does not belong to its pixels of one value that has to stay.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tools/catalogue/image.h"

namespace zim::test {

inline constexpr std::byte kCanary{0xA5};

// Readable and writable bytes with an untouchable page before the first and behind the last: whole pages, at least so
// many bytes.
class GuardedBytes {
 public:
  explicit GuardedBytes(std::size_t count);

  std::span<std::byte> bytes() const { return {memory_.get(), memory_.get_deleter().count}; }

 private:
  // Back to those that wait for the next use.
  struct Release {
    std::size_t count;
    void operator()(std::byte* start) const;
  };
  std::unique_ptr<std::byte[], Release> memory_;
};

// How the rows of a canvas lie in memory.
struct Placement {
  enum class Edge { start, end };
  Edge edge = Edge::end;  // first byte of the first pixel behind a guard page, or last used byte of the last before one
  int padding = 0;        // bytes between rows, unless the side takes no steps
};

class Canvas {
 public:
  Canvas(const catalogue::Side& side, ZimiSize size, Placement placement = {});

  catalogue::Buffers buffers() const;
  // The same from the last row upwards.
  catalogue::Buffers buffersUpwards() const;

  // Takes over the upper left part of an image, without samples that do not count.
  void put(const catalogue::Image& image);

  // Where the canvas differs from the upper left part of an image, any NaN being equal to any other, or where something
  // has been written between and around the pixels; empty if nowhere. Afterwards the canvas is blank.
  std::string differenceFrom(const catalogue::Image& image);
  // The same for a canvas that nothing was put to.
  std::string differenceFromBlank() const;
  // Whatever its pixels are: where something has been written between and around them. Afterwards the canvas is blank.
  std::string differenceAround();

 private:
  struct PlaneMemory {
    catalogue::Plane geometry;
    std::size_t rowBytes;
    std::ptrdiff_t step;
    int rows;
    GuardedBytes memory;
    std::byte* first;
  };
  template <class Visitor>
  void forEachRun(const Visitor& visitor) const;

  std::vector<PlaneMemory> planes_;
};

// An image with the rows of each plane in the opposite order.
catalogue::Image upsideDown(const catalogue::Image& image);

}  // namespace zim::test
