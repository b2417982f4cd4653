// Raw video: the planes of a frame one after another, rows without gaps, incomplete groups of chroma in full, no
// header.
#pragma once

#include <string>

#include "tools/catalogue/image.h"

namespace zim::tool {

// Files that hold raw video end so.
bool isRawVideo(const std::string& path);

// The first frame of a file. Throws Failure, as all here do, unless the file consists of whole frames.
catalogue::Image readRawVideo(const std::string& path, const catalogue::Side& side, ZimiSize size);

void writeRawVideo(const std::string& path, const catalogue::Image& frame);

}  // namespace zim::tool
