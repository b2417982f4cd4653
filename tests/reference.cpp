#include "tests/reference.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "tests/canvas.h"
#include "zimcore.h"

namespace zim::test {

using namespace catalogue;

Buffers at(Image& image, int x, int y) {
  Buffers buffers = image.buffers();
  for (std::size_t plane = 0; plane < image.planes(); ++plane) {
    const Plane& geometry = image.side().planes[plane];
    buffers.planes[plane] = image.row(plane, y / geometry.pixelsDown) + geometry.rowBytes(x);
  }
  return buffers;
}

namespace {

// Of larger images, rows go in one call each.
constexpr int kMostSinglePixels = 1 << 13;

void compute(const Export& e, Image& source, Image& destination, const Caller& call) {
  Operands whole(e, source, destination);
  const ZimiSize size = whole.size, cell = cellOf(e);
  if (!consistsOfCells(e) || resultOf(e, size) < zimResultOk) {
    ASSERT_EQ(whateverTheContents(call(whole)), resultOf(e, size));
    return;
  }
  Operands part = whole;
  const int width = size.width * size.height > kMostSinglePixels ? size.width : cell.width;
  forEachCell(size.height, cell.height, [&](int y, int rows) {
    forEachCell(size.width, width, [&](int x, int columns) {
      part.size = {columns, rows};
      part.source = at(source, x, y);
      part.destination = at(destination, x, y);
      ASSERT_EQ(call(part), resultOf(e, part.size));
    });
  });
}

}  // namespace

Reference::Reference(const Export& e, Image contents, const Caller& call, int team)
    : source(std::move(contents)), destination(e.destination, source.size()) {
  destination.fill(kCanary);
  if (e.inPlace) {
    for (std::size_t plane = 0; plane < source.planes(); ++plane) {
      for (int y = 0; y < source.rows(plane); ++y) {
        std::memcpy(destination.row(plane, y), source.row(plane, y), source.rowBytes(plane));
      }
    }
  }
  zimSetNumThreads(showsTeamSize(e) ? team : 1);
  compute(e, source, destination, call);
  zimSetNumThreads(team);
}

}  // namespace zim::test
