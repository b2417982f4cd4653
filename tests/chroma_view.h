// Luma-chroma images sample by sample, whatever their layout.
#pragma once

#include <cstddef>
#include <string>

#include "tools/catalogue/image.h"

namespace zim::test {

// A layout in words, such as "C2 CbYCr 422" or "P3 YCrCb 420", and the pixels that share a chroma sample.
struct ChromaLayout {
  std::string words;

  char kind() const { return words[0]; }
  int count() const { return words[1] - '0'; }
  std::string order() const { return words.substr(3, words.rfind(' ') - 3); }
  std::string grid() const { return words.substr(words.rfind(' ') + 1); }
  int across() const { return grid() == "411" ? 4 : grid() == "444" ? 1 : 2; }
  int down() const { return grid() == "420" ? 2 : 1; }
};

class ChromaView {
 public:
  ChromaView(catalogue::Image& image, const ChromaLayout& layout)
      : image_(image),
        packed_(layout.kind() == 'C'),
        count_(layout.count()),
        crFirst_(layout.order().find("Cr") < layout.order().find("Cb")),
        chromaFirst_(layout.order() == "CbYCr") {}

  std::byte& luma(int x, int y) const { return image_.row(0, y)[packed_ ? count_ * x + (chromaFirst_ ? 1 : 0) : x]; }

  // Of Cb ('b') or Cr ('r') at a column and a row of chroma; null where an image of an odd size has none.
  std::byte* chroma(char which, int column, int row) const {
    const std::size_t second = crFirst_ == (which == 'b') ? 1 : 0;
    const auto group = static_cast<std::size_t>(column);
    const std::size_t plane = packed_ ? 0 : count_ == 2 ? 1 : 1 + second;
    std::size_t place = count_ == 3 ? group : 2 * group + second;
    if (packed_) place = count_ == 3 ? 3 * group + 1 + second : 4 * group + (chromaFirst_ ? 0 : 1) + 2 * second;
    return row < image_.rows(plane) && place < image_.rowBytes(plane) ? image_.row(plane, row) + place : nullptr;
  }

 private:
  catalogue::Image& image_;
  bool packed_;
  int count_;
  bool crFirst_, chromaFirst_;
};

}  // namespace zim::test
