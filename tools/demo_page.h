// The contact sheet.
#pragma once

#include <string>
#include <vector>

namespace zim::tool {

struct Card {
  std::string group, title;
  std::string exportName;  // empty where the picture is no result
  std::string settings, note, file;
  int width, height;  // of the file's picture
  double milliseconds, megapixelsPerSecond;
};

// The page; the cards of a group follow one another.
std::string contactSheet(const Card& original, const std::vector<Card>& cards);

}  // namespace zim::tool
