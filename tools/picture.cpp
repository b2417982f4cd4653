#include "tools/picture.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <memory>
#include <utility>

#include "tools/failure.h"

namespace zim::tool {

Picture readPicture(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
  if (!file) throw Failure("cannot read " + path + ": " + std::strerror(errno));
  const int first = std::fgetc(file.get()), second = std::fgetc(file.get());
  std::rewind(file.get());
  if (first != 'P') return readPng(file.get(), path);
  return second == '5' ? readGrayMap(file.get(), path) : readFloatMap(file.get(), path);
}

unsigned quantised(float sample, int white) {
  const float inRange = sample > 0 ? std::min(sample, 1.0f) : 0;  // NaN becomes 0
  return static_cast<unsigned>(std::lround(inRange * static_cast<float>(white)));
}

OutputFile::OutputFile(const std::string& path)
    : path_(path),
      temporary_(path + "." + std::to_string(getpid()) + ".tmp"),
      file_(std::fopen(temporary_.c_str(), "wbx")) {
  if (file_ == nullptr) fail();
}

OutputFile::~OutputFile() {
  if (file_ != nullptr) std::fclose(file_);
  if (!temporary_.empty()) std::remove(temporary_.c_str());
}

void OutputFile::commit() {
  const bool written = std::ferror(file_) == 0;
  const bool closed = std::fclose(std::exchange(file_, nullptr)) == 0;
  if (!written || !closed || std::rename(temporary_.c_str(), path_.c_str()) != 0) fail();
  temporary_.clear();
}

void OutputFile::fail() const { throw Failure("cannot write " + path_ + ": " + std::strerror(errno)); }

}  // namespace zim::tool
