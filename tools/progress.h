// How far a long command has come, on the standard error if that is a terminal.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <string>

namespace zim::tool {

class Progress {
 public:
  explicit Progress(std::size_t steps) : steps_(steps) {}
  ~Progress() { clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void next(const std::string& what) {
    constexpr std::size_t kWidth = 24;
    const std::string done(kWidth * step_ / steps_, '#'), rest(kWidth - done.size(), '.');
    ++step_;
    if (shown_)
      std::fprintf(stderr, "\r\033[K[%s%s] %zu/%zu %s", done.c_str(), rest.c_str(), step_, steps_, what.c_str());
  }
  // Before other output to the terminal.
  void clear() const {
    if (shown_) std::fputs("\r\033[K", stderr);
  }

 private:
  std::size_t step_ = 0, steps_;
  bool shown_ = isatty(STDERR_FILENO) != 0;
};

}  // namespace zim::tool
