// The catalogue for programs, such as bindings to other languages.
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>

#include "tools/describe.h"

namespace zim::tool {
namespace {

using namespace catalogue;
using Json = nlohmann::ordered_json;

Json toJson(ZimiSize size) { return {size.width, size.height}; }

Json toJson(const Plane& plane) {
  return {{"samples", plane.samples},
          {"usedSamples", plane.usedSamples},
          {"pixelsAcross", plane.pixelsAcross},
          {"pixelsDown", plane.pixelsDown},
          {"wholeGroupsOnly", plane.wholeGroupsOnly}};
}

Json toJson(const Side& side) {
  constexpr const char* kSteps[] = {"none", "one", "perPlane"};
  Json planes = Json::array();
  for (const Plane& plane : side.planes) planes.push_back(toJson(plane));
  return {{"type", name(side.type)},
          {"layout", side.layout},
          {"colours", side.colourWord},
          {"channels", channelsOf(side)},
          {"planes", planes},
          {"pointerArray", side.pointerArray},
          {"steps", kSteps[static_cast<int>(side.steps)]}};
}

// Numbers have a default, save the fourth sample, which is opaque; choices and arrays have to be given, unless null
// stands for the operation's own.
void addDefault(Json& json, const Argument& argument) {
  if (argument.mayBeNull) {
    json["default"] = nullptr;
  } else if (argument.name == "aval") {
    json["default"] = visit(argument.type, []<class T>(std::type_identity<T>) -> Json {
      return std::numeric_limits<T>::is_integer ? std::numeric_limits<T>::max() : T(1);
    });
  } else if (!argument.array && argument.words.empty()) {
    json["default"] = argument.usual.front();
  }
}

Json toJson(const Argument& argument) {
  Json json = {{"name", argument.name},
               {"type", name(argument.type)},
               {"array", argument.array},
               {"mayBeNull", argument.mayBeNull},
               {"example", argument.usual},
               {"words", argument.words},
               {"aheadOfSize", argument.aheadOfSize}};
  addDefault(json, argument);
  return json;
}

Json toJson(const Export& e) {
  Json further = Json::array();
  for (const Argument& argument : e.further) further.push_back(toJson(argument));
  Json json = {{"name", e.name},
               {"operation", e.operation},
               {"variant", e.variant},
               {"family", e.family},
               {"inPlace", e.inPlace},
               {"takesRegion", e.takesRegion},
               {"source", toJson(e.source)},
               {"destination", toJson(e.destination)},
               {"further", further},
               {"least", toJson(e.least)},
               {"multiple", toJson(e.multiple)},
               {"whole", toJson(e.whole)}};
  if (e.scratch) json["scratch"] = {{"rows", e.scratch->rows}, {"margin", e.scratch->margin}};
  return json;
}

}  // namespace

void listAsJson(const std::string& pattern) {
  Json all = Json::array();
  for (const Export* e : exportsLike(pattern)) all.push_back(toJson(*e));
  std::cout << all << '\n';
}

}  // namespace zim::tool
