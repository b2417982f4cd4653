#include "tools/raw_video.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>

#include "tools/failure.h"
#include "tools/job.h"
#include "tools/picture.h"

namespace zim::tool {

using namespace catalogue;

bool isRawVideo(const std::string& path) { return path.ends_with(".yuv"); }

Image readRawVideo(const std::string& path, const Side& side, ZimiSize size) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
  std::error_code error;
  const auto bytes = std::filesystem::file_size(path, error);
  if (!file || error) throw Failure("cannot read " + path + ": " + std::strerror(errno));
  Image frame = roomFor(side, size);
  std::size_t frameBytes = 0, read = 0;
  for (std::size_t plane = 0; plane < frame.planes(); ++plane) {
    for (int y = 0; y < frame.rows(plane); ++y) {
      frameBytes += frame.rowBytes(plane);
      read += std::fread(frame.row(plane, y), 1, frame.rowBytes(plane), file.get());
    }
  }
  if (read < frameBytes || bytes % frameBytes != 0) {
    throw Failure(path + " does not consist of frames of " + std::to_string(size.width) + " x " +
                  std::to_string(size.height) + " in " + side.colourWord + " " + side.layout);
  }
  return frame;
}

void writeRawVideo(const std::string& path, const Image& frame) {
  OutputFile output(path);
  for (std::size_t plane = 0; plane < frame.planes(); ++plane) {
    for (int y = 0; y < frame.rows(plane); ++y) {
      std::fwrite(frame.row(plane, y), 1, frame.rowBytes(plane), output.get());
    }
  }
  output.commit();
}

}  // namespace zim::tool
