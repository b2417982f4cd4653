// Portable float maps: "PF" (colour) or "Pf" (gray), width, height, a scale whose sign tells the byte order, then rows
// from the bottom.
#include <bit>
#include <cstdint>

#include "tools/failure.h"
#include "tools/picture.h"

namespace zim::tool {
namespace {

float fromBytes(const unsigned char* bytes, bool littleEndian) {
  std::uint32_t bits = 0;
  for (int i = 0; i < 4; ++i) bits |= std::uint32_t{bytes[i]} << 8 * (littleEndian ? i : 3 - i);
  return std::bit_cast<float>(bits);
}

}  // namespace

Picture readFloatMap(std::FILE* file, const std::string& name) {
  constexpr int kLargestExtent = 1 << 15;
  char kind = 0;
  int width = 0, height = 0;
  double scale = 0;
  if (std::fscanf(file, "P%c %d %d %lf", &kind, &width, &height, &scale) != 4 || (kind != 'F' && kind != 'f') ||
      width < 1 || height < 1 || width > kLargestExtent || height > kLargestExtent || scale == 0) {
    throw Failure("cannot read " + name + ": no portable float map");
  }
  std::fgetc(file);  // one white space ends the header
  const int channels = kind == 'F' ? 3 : 1;
  Picture picture(width, height, 3);
  std::vector<unsigned char> row(static_cast<std::size_t>(width * channels) * 4);
  for (int y = height - 1; y >= 0; --y) {
    if (std::fread(row.data(), 1, row.size(), file) != row.size())
      throw Failure("cannot read " + name + ": it ends early");
    for (int i = 0; i < width * 3; ++i) {
      const int sample = channels == 3 ? i : i / 3;
      picture.pixel(0, y)[i] = fromBytes(row.data() + 4 * static_cast<std::size_t>(sample), scale < 0);
    }
  }
  return picture;
}

}  // namespace zim::tool
