#include "tools/complete.h"

#include <iostream>

#include "tools/catalogue/catalogue.h"

namespace zim::tool {
namespace {

using namespace catalogue;
using Words = std::vector<std::string>;

Words exportNames() {
  Words names;
  for (const Export& e : exports()) names.push_back(e.name);
  return names;
}

Words settingsOf(const Argument& argument) {
  const std::string setting = std::string(argument.name) + "=";
  Words settings;
  for (const std::string_view word : argument.words) settings.push_back(setting + std::string(word));
  return argument.words.empty() ? Words{setting} : settings;
}

Words settingsOf(const std::string& name) {
  Words settings = {"size="};
  const Export* e = find(name);
  if (e == nullptr) return settings;
  if (e->takesRegion) settings.push_back("roi=");
  for (const Argument& argument : e->further) {
    for (std::string& setting : settingsOf(argument)) settings.push_back(std::move(setting));
  }
  return settings;
}

// All that fits the place, whatever has been typed there.
Words candidates(const Words& words, const Words& commands) {
  const std::size_t place = words.size() - 1;
  if (place == 0) return commands;
  const std::string& command = words[0];
  const auto namesAnd = [](Words others) {
    for (std::string& name : exportNames()) others.push_back(std::move(name));
    return others;
  };
  if (command == "list" && place <= 2) return namesAnd({"--json"});
  if (command == "describe" && place == 1) return namesAnd({});
  if (command == "bench") return place == 1 ? namesAnd({"--all"}) : Words{"--size", "--threads"};
  if (command == "run") {
    if (place == 1) return namesAnd({});
    if (place > 3) return settingsOf(words[1]);
  }
  if (command == "mosaic" && place == 3) return settingsOf(find("zimiCFAToRGB_8u_C1C3R")->further.front());
  return {};
}

}  // namespace

void complete(const Words& words, const Words& commands) {
  if (words.empty()) return;
  const std::string& typed = words.back();
  const Words all = candidates(words, commands);
  const auto print = [&](auto&& fits) {
    bool any = false;
    for (const std::string& candidate : all) {
      if (!fits(candidate)) continue;
      any = true;
      std::cout << candidate << '\n';
    }
    return any;
  };
  // A word from the middle of a name leads to its beginning.
  if (!print([&](const std::string& candidate) { return candidate.starts_with(typed); }) && words.size() == 2) {
    print([&](const std::string& candidate) { return candidate.find(typed) != std::string::npos; });
  }
}

}  // namespace zim::tool
