// What an export makes of a source, by the plainest calls there are, to compare other calls with.
#pragma once

#include "tests/exports.h"
#include "tools/catalogue/caller.h"

namespace zim::test {

// Calls visitor(start, extent) for each cell along an image, the rest of which goes with the last.
template <class Visitor>
void forEachCell(int extent, int cell, const Visitor& visitor) {
  for (int start = 0; start < extent;) {
    const int next = extent - start < 2 * cell ? extent : start + cell;
    visitor(start, next - start);
    start = next;
  }
}

// The buffers of an image from a pixel on.
catalogue::Buffers at(catalogue::Image& image, int x, int y);

// A result for which the samples count as well as the size.
inline ZimResult whateverTheContents(ZimResult result) { return result == zimWarnNoOperation ? zimResultOk : result; }

// A source and what an export makes of it, in plain memory. Where cells of pixels are independent, each has come about
// by a call of its own. One thread makes it, or, where the size of the team shows, a team of the size asked for, which
// stays set for the calls to compare. (Going to and fro between sizes would start threads anew each time.)
struct Reference {
  Reference(const catalogue::Export& e, catalogue::Image source, const catalogue::Caller& call, int team = 1);

  catalogue::Image source, destination;
};

}  // namespace zim::test
