// The contact sheet.
#pragma once

#include <string>
#include <vector>

namespace zim::tool {

// Over a picture of several channels, at a part of its width.
struct Label {
  std::string name;
  double left;
};

struct Card {
  std::string group, about, title;
  std::string exportName;  // empty where the picture is no result
  std::string settings, note, file;
  int width, height;  // of the file's picture
  double milliseconds, megapixelsPerSecond;
  std::vector<Label> labels;
};

// The page; the cards of a group follow one another.
std::string contactSheet(const Card& original, const std::vector<Card>& cards);

}  // namespace zim::tool
