#include "tools/describe.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <iostream>
#include <regex>
#include <vector>

#include "tools/catalogue/catalogue.h"
#include "tools/catalogue/pattern.h"
#include "tools/failure.h"
#include "tools/job.h"
#include "zimcc.h"

namespace zim::tool {
namespace {

using namespace catalogue;

using Row = std::vector<std::string>;

// Columns as wide as their longest cell, save the last.
void printTable(const std::vector<Row>& rows, int indent) {
  std::vector<std::size_t> widths;
  for (const Row& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  for (const Row& row : rows) {
    std::string line(static_cast<std::size_t>(indent), ' ');
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i];
      if (i + 1 < row.size()) line += std::string(widths[i] - row[i].size() + 2, ' ');
    }
    std::cout << line << '\n';
  }
}

std::string text(std::string_view view) { return std::string(view); }

std::string text(double number) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%g", number);
  return buffer;
}

std::string typeName(SampleType type) { return "Zim" + text(name(type == SampleType::u1 ? SampleType::u8 : type)); }

std::string inShort(const Side& side) {
  return (side.colourWord.empty() ? "" : side.colourWord + " ") + side.layout + " " + text(name(side.type));
}

std::string samplesOf(const Plane& plane) {
  std::string words = text(plane.usedSamples) + " sample" + (plane.usedSamples == 1 ? "" : "s");
  if (plane.usedSamples < plane.samples)
    words = "the first " + text(plane.usedSamples) + " of " + text(plane.samples) + " samples";
  if (plane.pixelsAcross * plane.pixelsDown == 1) return words + " a pixel";
  words += " for " + text(plane.pixelsAcross) + " x " + text(plane.pixelsDown) + " pixels";
  return plane.wholeGroupsOnly ? words + ", none for an incomplete last group" : words;
}

std::string contentsOf(const Side& side, std::size_t p) {
  const auto channels = channelsOf(side);
  const std::size_t planes = side.planes.size();
  std::string which;
  if (planes > 2) {
    which = p < channels.size() ? channels[p] : "plane " + text(static_cast<double>(p));
  } else if (planes == 2 && !channels.empty()) {
    which = p == 0 ? channels[0] : channels[1] + ", " + channels[2];
  } else if (side.planes[0].usedSamples > 2 && !channels.empty()) {
    which = channels[0] + ", " + channels[1] + ", " + channels[2];
    if (side.planes[0].usedSamples > 3) which += ", fourth";
  }
  return (which.empty() ? "" : which + ": ") + samplesOf(side.planes[p]);
}

using Rows = std::vector<Row>;

// Type, name, meaning.
void addSide(Rows& rows, const Side& side, const std::string& role, bool readOnly) {
  const std::string type = (readOnly ? "const " : "") + typeName(side.type) + "*";
  const std::string pointer = "p" + role;
  std::string stepName = role + "Step";
  stepName.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(stepName.front())));
  const std::size_t count = side.planes.size();
  if (side.pointerArray) {
    const std::string extent = "[" + text(static_cast<double>(count)) + "]";
    rows.push_back({type + " const", pointer + extent, contentsOf(side, 0)});
    for (std::size_t p = 1; p < count; ++p) rows.push_back({"", "", contentsOf(side, p)});
    if (side.steps == Steps::one) rows.push_back({"Zim32s", stepName, "bytes from row to row, in all planes"});
    if (side.steps == Steps::perPlane)
      rows.push_back({"const Zim32s", stepName + extent, "bytes from row to row, plane by plane"});
    return;
  }
  for (std::size_t p = 0; p < count; ++p) {
    const std::string suffix = count == 1 ? "" : p == 0 ? "Y" : "CbCr";
    rows.push_back({type, pointer + suffix, contentsOf(side, p)});
    if (side.steps != Steps::none) {
      rows.push_back({"Zim32s", stepName.substr(0, stepName.size() - 4) + suffix + "Step", "bytes from row to row"});
    }
  }
}

// A region of a whole image, which stands with its source.
void addSourceOfRegion(Rows& rows, const Side& side) {
  addSide(rows, side, "Src", true);
  rows.insert(rows.end() - 1, {{"ZimiRegion", "srcRoi", "x, y, width and height of the part to be converted"},
                               {"ZimiSize", "srcSize", "width and height of the whole image in pixels"}});
}

Row furtherRow(const Argument& argument) {
  if (!argument.words.empty()) {
    std::string meaning = "one of";
    for (const std::string_view& word : argument.words) {
      meaning += (&word == &argument.words.front() ? " " : ", ") + text(word) + " (" +
                 text(static_cast<double>(&word - &argument.words.front())) + ")";
    }
    return {typeName(argument.type), text(argument.name), meaning};
  }
  std::string meaning = argument.array ? "e.g. " : "a number, e.g. ";
  for (const double& number : argument.usual)
    meaning += (&number == &argument.usual.front() ? "" : ", ") + text(number);
  if (argument.mayBeNull) meaning += "; null for the operation's own";
  if (!argument.array) return {typeName(argument.type), text(argument.name), meaning};
  const std::size_t count = argument.usual.size();
  const std::string extent = count == 12   ? "[3][4]"
                             : count == 16 ? "[4][4]"
                                           : "[" + text(static_cast<double>(count)) + "]";
  return {"const " + typeName(argument.type), text(argument.name) + extent, meaning};
}

// What zimcc run calls, one after the other.
std::string wayOf(const Export& e) {
  try {
    std::string way;
    for (const Export* step : wayToSource(e)) way += step->name + ", then ";
    return way + e.name;
  } catch (const Failure& failure) {
    return "none: " + text(failure.what());
  }
}

}  // namespace

std::vector<std::string> channelsOf(const Side& side) {
  static const std::regex channel("[A-Z][a-z]?");
  std::string word = side.colourWord == "SBGR" ? "BGR" : side.colourWord;
  if (word == "Lab") return {"L", "a", "b"};
  if (word == "YCC") return {"Y", "C1", "C2"};
  std::vector<std::string> names(std::sregex_token_iterator(word.begin(), word.end(), channel), {});
  return names.size() == 3 && word.front() != 'C' ? names : std::vector<std::string>();
}

std::vector<const Export*> exportsLike(const std::string& pattern) {
  auto found = matching(isPattern(pattern) ? pattern : "*" + pattern + "*");
  if (found.empty()) throw Failure("no export matches '" + pattern + "'");
  return found;
}

void list(const std::string& pattern) {
  Rows rows;
  for (const Export* e : exportsLike(pattern)) {
    rows.push_back(
        {e->name, inShort(e->source), e->inPlace ? "in place" : "-> " + inShort(e->destination), text(e->family)});
  }
  printTable(rows, 0);
}

void describe(const std::string& name) {
  const Export& e = exportNamed(name);
  std::cout << e.name << "\n\n";
  Rows facts = {
      {"operation", e.operation + (e.variant.empty() ? "" : ", variant " + e.variant)},
      {"family", text(e.family)},
      {"source", inShort(e.source)},
      {"destination", e.inPlace ? "in place" : inShort(e.destination)},
      {"size", e.least.width == 0 ? "any, not tested" : "from " + text(e.least.width) + " x " + text(e.least.height)},
      {"zimcc run", wayOf(e)}};
  printTable(facts, 2);

  Rows arguments;
  if (e.takesRegion) {
    addSourceOfRegion(arguments, e.source);
  } else if (!e.inPlace) {
    addSide(arguments, e.source, "Src", true);
  }
  addSide(arguments, e.destination, e.inPlace ? "SrcDst" : "Dst", false);
  const auto addFurther = [&](bool aheadOfSize) {
    for (const Argument& argument : e.further) {
      if (argument.aheadOfSize == aheadOfSize) arguments.push_back(furtherRow(argument));
    }
  };
  addFurther(true);
  if (!e.takesRegion) arguments.push_back({"ZimiSize", "roiSize", "width and height in pixels"});
  addFurther(false);
  if (e.scratch) {
    arguments.push_back({typeName(e.scratch->side.type) + "*", "pBuf",
                         text(e.scratch->rows) + " rows of scratch, each of the region's width and " +
                             text(e.scratch->margin) + " samples"});
    arguments.push_back({"Zim32s", "bufStep", "bytes from row to row"});
  }
  std::cout << "\n  arguments\n";
  int number = 0;
  for (Row& row : arguments) {
    const std::string digits = row[0].empty() ? "" : text(++number);
    row.insert(row.begin(), std::string(2 - std::min<std::size_t>(2, digits.size()), ' ') + digits);
  }
  printTable(arguments, 2);
}

void version() {
  const ZimLibraryVersion& v = *zimccGetLibVersion();
  printTable({{"version", text(v.versionMajor) + "." + text(v.versionMinor)},
              {"build", text(v.buildMajor) + "." + text(v.buildMinor)},
              {"target", std::string(v.targetTag, std::find(v.targetTag, v.targetTag + sizeof v.targetTag, '\0'))},
              {"file name", v.libraryFileName},
              {"text", v.versionText},
              {"build date", v.buildDateText}},
             0);
}

}  // namespace zim::tool
