// Luma-chroma images sample by sample, whatever their layout, and what conversions between layouts make of each: slow,
// and as plain as their description.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

#include "tools/catalogue/image.h"

namespace zim::test {

// A layout in words, such as "C2 CbYCr 422" or "P3 YCrCb 420", and the pixels that share a chroma sample.
struct ChromaLayout {
  std::string words;

  bool isPacked() const { return words[0] == 'C'; }
  std::string order() const { return words.substr(3, words.rfind(' ') - 3); }
  std::string grid() const { return words.substr(words.rfind(' ') + 1); }
  int across() const { return grid() == "411" || grid() == "1620" ? 4 : 2; }
  int down() const { return grid() == "420" ? 2 : grid() == "1620" ? 4 : 1; }
};

class ChromaView {
 public:
  ChromaView(catalogue::Image& image, const ChromaLayout& layout)
      : image_(image), packed_(layout.isPacked()), pairs_(layout.words[1] == '2'), order_(layout.order()) {}

  std::byte& luma(int x, int y) { return image_.row(0, y)[packed_ ? 2 * x + (order_ == "CbYCr" ? 1 : 0) : x]; }

  // Of Cb ('b') or Cr ('r') at a column and a row of chroma.
  std::byte& chroma(char which, int column, int row) {
    const bool second = (order_.find("Cr") < order_.find("Cb")) == (which == 'b');
    if (packed_) return image_.row(0, row)[4 * column + (order_ == "CbYCr" ? 0 : 1) + (second ? 2 : 0)];
    if (pairs_) return image_.row(1, row)[2 * column + (second ? 1 : 0)];
    return image_.row(second ? 2 : 1, row)[column];
  }

 private:
  catalogue::Image& image_;
  bool packed_, pairs_;
  std::string order_;
};

enum class Chroma {
  keep,
  evenRows,
  doubleRows,
  evenColumns,
  doubleColumns,
  fold,
  unfold,
  evenRowsAndColumns,
  rowsBetween,
  columnsBetween,
  bothBetween,
};

// A sample of the destination's chroma from those of the source, s(column, row), of which there are so many.
template <class Source>
int chromaSample(Chroma rule, const Source& s, int columns, int rows, char which, int k, int j) {
  const int x = k / 2, y = j / 2, round = which == 'b' ? 1 : 0;
  const bool odd = k % 2 != 0, oddRow = j % 2 != 0, last = x == columns - 1, lastRow = y == rows - 1;
  switch (rule) {
    case Chroma::keep:
      return s(k, j);
    case Chroma::evenRows:
      return s(k, 2 * j);
    case Chroma::doubleRows:
      return s(k, y);
    case Chroma::evenColumns:
      return s(2 * k, j);
    case Chroma::doubleColumns:
      return s(x, j);
    case Chroma::fold:
      return s(x, odd ? 2 * j + 1 : 2 * j);
    case Chroma::unfold:
      return s(oddRow ? 2 * k + 1 : 2 * k, y);
    case Chroma::evenRowsAndColumns:
      return s(2 * k, 2 * j);
    case Chroma::rowsBetween:
      return !oddRow || lastRow ? s(2 * k, y) : (s(2 * k, y) + s(2 * k, y + 1)) >> 1;
    case Chroma::columnsBetween:
      return !odd || last ? s(x, 2 * j) : (s(x, 2 * j) + s(x + 1, 2 * j)) >> 1;
    case Chroma::bothBetween:
      if (lastRow) return !odd || oddRow || last ? s(x, y) : (s(x, y) + s(x + 1, y)) >> 1;
      if (last) return !oddRow ? s(x, y) : (s(x, y) + s(x, y + 1)) >> 1;
      if (odd && oddRow) return (s(x, y) + s(x + 1, y) + s(x, y + 1) + s(x + 1, y + 1) + 2 * round) >> 2;
      return odd || oddRow ? (s(x, y) + s(odd ? x + 1 : x, oddRow ? y + 1 : y) + round) >> 1 : s(x, y);
  }
  return -1;
}

}  // namespace zim::test
