// Pictures as files hold them, and the files that hold them.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace zim::tool {

// Gray, RGB or RGBA samples, interleaved, rows from the top: 0 is black, 1 is white, more is possible in float files.
struct Picture {
  int width, height, channels;
  std::vector<float> samples;
  bool deep = false;  // of 16 bits a sample instead of 8 in files of integers

  Picture(int w, int h, int c)
      : width(w),
        height(h),
        channels(c),
        samples(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * static_cast<std::size_t>(c)) {}

  float* pixel(int x, int y) { return samples.data() + offset(x, y); }
  const float* pixel(int x, int y) const { return samples.data() + offset(x, y); }

 private:
  std::size_t offset(int x, int y) const {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) *
           static_cast<std::size_t>(channels);
  }
};

// A PNG of any kind, a portable float map or a portable gray map, as RGB or RGBA. Throws Failure, as all here do.
Picture readPicture(const std::string& path);

Picture readPng(std::FILE* file, const std::string& name);
Picture readFloatMap(std::FILE* file, const std::string& name);
Picture readGrayMap(std::FILE* file, const std::string& name);
void writePng(const std::string& path, const Picture& picture);
// Of the first channel.
void writeGrayMap(const std::string& path, const Picture& picture);

// A sample as an integer, from 0 to this white; what lies beyond the range, or is no number, stops at its ends.
unsigned quantised(float sample, int white);

// A file that takes its name only once it is whole.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  std::FILE* get() const { return file_; }
  void commit();

 private:
  [[noreturn]] void fail() const;

  std::string path_, temporary_;
  std::FILE* file_;
};

}  // namespace zim::tool
