#include "tools/job.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <set>
#include <tuple>

#include "tools/failure.h"
#include "tools/nearest.h"
#include "tools/samples.h"

namespace zim::tool {
namespace {

using namespace catalogue;

// ---- The way from colours to a source ------------------------------------------------------------------------------

bool provides(const Side& offered, const Side& needed) {
  // Operations that know no colours work on gray where they take one sample a pixel.
  const std::string_view word = needed.colourWord.empty() ? "Gray" : std::string_view(needed.colourWord);
  return offered.type == needed.type && offered.layout == needed.layout && offered.colourWord == word;
}

// How well this export undoes the next: the same variant of a model first, then the same colours.
std::tuple<bool, bool, bool, bool> likeness(const Export& e, const Export& next) {
  return {e.variant == next.variant, e.source.colourWord == next.destination.colourWord,
          e.source.type == next.destination.type, e.further.empty()};
}

// ---- Settings ------------------------------------------------------------------------------------------------------

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  const auto lower = [](unsigned char c) { return std::tolower(c); };
  return std::ranges::equal(a, b, {}, lower, lower);
}

std::optional<double> numberIn(std::string_view text, SampleType type) {
  double number;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  const bool fits = visit(type, [&]<class T>(std::type_identity<T>) {
    using Limits = std::numeric_limits<T>;
    if constexpr (Limits::is_integer) {
      return number >= Limits::min() && number <= Limits::max() && number == std::trunc(number);
    }
    return true;
  });
  return fits ? std::optional(number) : std::nullopt;
}

// Numbers between commas; where they have words of their own, those as well.
std::vector<double> numbersIn(std::string_view text, const Argument& argument) {
  std::vector<double> numbers;
  for (bool more = true; more;) {
    const auto comma = text.find(',');
    const std::string_view part = text.substr(0, comma);
    const auto word =
        std::ranges::find_if(argument.words, [&](std::string_view w) { return equalIgnoringCase(w, part); });
    const auto number = word != argument.words.end() ? static_cast<double>(word - argument.words.begin())
                                                     : numberIn(part, argument.type);
    if (!number) {
      throw Failure("'" + std::string(part) + "' is no " + std::string(name(argument.type)) + " number for " +
                    std::string(argument.name));
    }
    numbers.push_back(*number);
    more = comma != std::string_view::npos;
    if (more) text.remove_prefix(comma + 1);
  }
  if (numbers.size() != argument.usual.size()) {
    throw Failure(std::string(argument.name) + " takes " + std::to_string(argument.usual.size()) + " number" +
                  (argument.usual.size() == 1 ? "" : "s") + ", not " + std::to_string(numbers.size()));
  }
  return numbers;
}

// Where an export converts part of an image.
const Argument kRegion = {"roi", SampleType::s32, true, false, {0, 0, 1, 1}};

void setRegion(Operands& operands, const std::vector<double>& numbers) {
  const auto inside = [](double first, double count, Zim32s all) {
    return first >= 0 && count >= 1 && first + count <= all;
  };
  const ZimiSize size = operands.size;
  if (!inside(numbers[0], numbers[2], size.width) || !inside(numbers[1], numbers[3], size.height)) {
    throw Failure("roi=x,y,width,height lies outside the picture of " + std::to_string(size.width) + " x " +
                  std::to_string(size.height));
  }
  const auto at = [&](std::size_t i) { return static_cast<Zim32s>(numbers[i]); };
  operands.region = {at(0), at(1), at(2), at(3)};
}

void apply(const std::string& setting, const Export& e, Operands& operands) {
  const auto equals = setting.find('=');
  if (equals == std::string::npos) throw Failure("'" + setting + "' is no setting of the form name=value");
  const std::string_view wanted = std::string_view(setting).substr(0, equals);
  const std::string_view text = std::string_view(setting).substr(equals + 1);
  if (e.takesRegion && equalIgnoringCase(kRegion.name, wanted)) return setRegion(operands, numbersIn(text, kRegion));
  const auto argument =
      std::ranges::find_if(e.further, [&](const Argument& a) { return equalIgnoringCase(a.name, wanted); });
  if (argument == e.further.end()) {
    const std::string_view near = nearest(wanted, e.further, &Argument::name);
    throw Failure(e.name + " takes no setting '" + std::string(wanted) +
                  (near.empty() ? "'; see zimcc describe " + e.name : "'; did you mean " + std::string(near) + "?"));
  }
  Value& value = operands.value(argument->name);
  if (argument->mayBeNull && text == "null") return value.setNull();
  value.set(numbersIn(text, *argument));
}

// What a call is given besides its images.
Operands settled(const Export& e, ZimiSize size, const std::vector<std::string>& settings) {
  Operands operands(e, size);
  // Opaque unless asked otherwise, whatever the type.
  const auto fourth = std::ranges::find(operands.values, "aval", &Value::name);
  if (fourth != operands.values.end()) fourth->set({std::numeric_limits<double>::max()});
  for (const std::string& setting : settings) apply(setting, e, operands);
  return operands;
}

// ---- Calls ---------------------------------------------------------------------------------------------------------

std::string meaningOf(ZimResult result) {
  switch (result) {
    case zimWarnNoOperation:
      return "nothing to do, the maximum or mean is negative";
    case zimResultBadArgument:
      return "an argument has none of its values";
    case zimResultBadSize:
      return "the size is too small";
    case zimResultNoMemory:
      return "out of memory";
    case zimResultBadRange:
      return "the range is empty, vMax must be above vMin";
    case zimResultBadLevels:
      return "the number of levels is out of range";
    case zimResultBadNoise:
      return "the noise is out of range";
    case zimResultBadDither:
      return "this kind of dither is not supported";
    default:
      return "result " + std::to_string(result);
  }
}

Image sourceFor(const Export& e, const Picture& picture, const std::vector<std::string>& settings) {
  const ZimiSize size = {picture.width, picture.height};
  if (isMosaic(e.source)) {
    Image image(e.source, size);
    fill(image, mosaicOf(picture, settled(e, size, settings).value("grid").number()));
    return image;
  }
  auto way = wayToSource(e);
  way.push_back(&e);
  Image image(way.front()->source, size);
  fill(image, picture);
  for (std::size_t i = 0; i + 1 < way.size(); ++i) {
    Image next = roomFor(way[i + 1]->source, size);
    call(*way[i], Caller(*way[i]), Operands(*way[i], image, next));
    image = std::move(next);
  }
  return image;
}

}  // namespace

Image roomFor(Side side, ZimiSize size) {
  for (Plane& plane : side.planes) plane.wholeGroupsOnly = plane.wholeGroupsOnly && side.steps == Steps::none;
  return {side, size};
}

ZimBayerGrid gridIn(const std::vector<std::string>& settings) {
  return settled(exportNamed("zimiCFAToRGB_8u_C1C3R"), {}, settings).value("grid").number();
}

const Export& exportNamed(const std::string& name) {
  const Export* e = find(name);
  if (e != nullptr) return *e;
  const std::string unknown = "no export is named '" + name + "'";
  if (!name.empty() && !matching("*" + name + "*").empty()) throw Failure(unknown + "; see zimcc list " + name);
  const std::string_view near = nearest(name, exports(), &Export::name);
  throw Failure(unknown + (near.empty() ? "; see zimcc list" : "; did you mean " + std::string(near) + "?"));
}

void call(const Export& e, const Caller& caller, const Operands& operands) {
  const ZimResult result = caller(operands);
  if (result == zimResultOk || result == zimWarnOddSize) return;
  const ZimiSize size = operands.size;
  const std::string extent = std::to_string(size.width) + " x " + std::to_string(size.height);
  throw Failure(e.name + " on " + extent + ": " + meaningOf(result));
}

std::vector<const Export*> wayToSource(const Export& e) {
  // Breadth first, backwards: each candidate leads on to the end by the exports after it.
  struct Candidate {
    const Export* first;
    std::size_t after;  // index of the candidate that it leads to
  };
  if (holdsColours(e.source) || isMosaic(e.source)) return {};
  std::vector<Candidate> candidates = {{&e, 0}};
  std::set<const Export*> seen = {&e};
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const Export& next = *candidates[i].first;
    if (i > 0 && holdsColours(next.source)) {
      std::vector<const Export*> way;
      for (std::size_t step = i; step > 0; step = candidates[step].after) way.push_back(candidates[step].first);
      return way;
    }
    const auto first = static_cast<std::ptrdiff_t>(candidates.size());
    for (const Export& before : exports()) {
      if (!before.inPlace && provides(before.destination, next.source) && seen.insert(&before).second) {
        candidates.push_back({&before, i});
      }
    }
    std::ranges::stable_sort(candidates.begin() + first, candidates.end(), std::ranges::greater(),
                             [&](const Candidate& c) { return likeness(*c.first, next); });
  }
  throw Failure("no export makes the " + e.source.colourWord + " source (" + e.source.layout + ", " +
                std::string(name(e.source.type)) + ") of " + e.name + " from a picture");
}

Job::Job(const Export& e, const Picture& picture, const std::vector<std::string>& settings)
    : Job(e, sourceFor(e, picture, settings), settings) {}

Job::Job(const Export& e, Image source, const std::vector<std::string>& settings)
    : export_(e),
      source_(std::move(source)),
      operands_(settled(e, source_.size(), settings)),
      destination_(roomFor(e.destination, {operands_.region.width, operands_.region.height})),
      caller_(e) {
  operands_.source = source_.buffers();
  operands_.destination = e.inPlace ? operands_.source : destination_.buffers();
}

void Job::run() { call(export_, caller_, operands_); }

Picture Job::picture() const { return show(result(), export_.source); }

}  // namespace zim::tool
