// Portable gray maps: "P5", width, height, white, then rows from the top, of one byte a sample up to a white of 255,
// else of two, the higher first. Lines of the header that begin with # are comments.
#include <algorithm>
#include <cctype>

#include "tools/failure.h"
#include "tools/picture.h"

namespace zim::tool {
namespace {

// The next number of a header; -1 if there is none.
int numberIn(std::FILE* file) {
  int c = std::fgetc(file);
  while (c == '#' || std::isspace(c)) {
    if (c == '#') {
      while (c != '\n' && c != EOF) c = std::fgetc(file);
    }
    c = std::fgetc(file);
  }
  std::ungetc(c, file);
  int number;
  return std::isdigit(c) && std::fscanf(file, "%9d", &number) == 1 ? number : -1;
}

}  // namespace

Picture readGrayMap(std::FILE* file, const std::string& name) {
  constexpr int kLargestExtent = 1 << 15;
  std::fseek(file, 2, SEEK_SET);
  const int width = numberIn(file), height = numberIn(file), white = numberIn(file);
  if (width < 1 || height < 1 || width > kLargestExtent || height > kLargestExtent || white < 1 || white > 65535 ||
      !std::isspace(std::fgetc(file))) {
    throw Failure("cannot read " + name + ": no portable gray map");
  }
  Picture picture(width, height, 3);
  picture.deep = white > 255;
  const std::size_t sampleBytes = picture.deep ? 2 : 1;
  std::vector<unsigned char> row(static_cast<std::size_t>(width) * sampleBytes);
  for (int y = 0; y < height; ++y) {
    if (std::fread(row.data(), 1, row.size(), file) != row.size()) {
      throw Failure("cannot read " + name + ": it ends early");
    }
    const unsigned char* from = row.data();
    for (int x = 0; x < width; ++x, from += sampleBytes) {
      const int sample = picture.deep ? from[0] << 8 | from[1] : from[0];
      std::fill_n(picture.pixel(x, y), 3, static_cast<float>(sample) / static_cast<float>(white));
    }
  }
  return picture;
}

void writeGrayMap(const std::string& path, const Picture& picture) {
  const int white = picture.deep ? 65535 : 255;
  OutputFile output(path);
  std::fprintf(output.get(), "P5\n%d %d\n%d\n", picture.width, picture.height, white);
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      const unsigned sample = quantised(*picture.pixel(x, y), white);
      if (picture.deep) std::fputc(static_cast<int>(sample >> 8), output.get());
      std::fputc(static_cast<int>(sample & 255), output.get());
    }
  }
  output.commit();
}

}  // namespace zim::tool
