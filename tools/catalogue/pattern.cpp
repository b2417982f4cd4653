#include "tools/catalogue/pattern.h"

#include <algorithm>

namespace zim::catalogue {
namespace {

// What has to follow a pattern.
struct Rest {
  std::string_view pattern;
  const Rest* next;
};

bool match(std::string_view pattern, std::string_view text, const Rest* rest);

// The length of the first of several alternatives, or of the group, that starts a pattern.
std::size_t lengthUpTo(std::string_view ends, std::string_view pattern) {
  int depth = 0;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (depth == 0 && ends.find(pattern[i]) != ends.npos) return i;
    depth += (pattern[i] == '(') - (pattern[i] == ')');
  }
  return pattern.size();
}

bool matchGroup(std::string_view alternatives, std::string_view text, const Rest* rest) {
  for (;;) {
    const std::size_t length = lengthUpTo("|", alternatives);
    if (match(alternatives.substr(0, length), text, rest)) return true;
    if (length == alternatives.size()) return false;
    alternatives.remove_prefix(length + 1);
  }
}

bool isOf(std::string_view set, char c) {
  const bool others = set.starts_with('!');
  if (others) set.remove_prefix(1);
  bool found = false;
  for (std::size_t i = 0; i < set.size(); ++i) {
    const bool range = i + 2 < set.size() && set[i + 1] == '-';
    found |= range ? set[i] <= c && c <= set[i + 2] : c == set[i];
    if (range) i += 2;
  }
  return found != others;
}

bool match(std::string_view pattern, std::string_view text, const Rest* rest) {
  if (pattern.empty()) return rest == nullptr ? text.empty() : match(rest->pattern, text, rest->next);
  if (pattern.starts_with("@(") || pattern.starts_with("?(")) {
    const std::string_view inside = pattern.substr(2, lengthUpTo(")", pattern.substr(2)));
    const Rest after{pattern.substr(std::min(inside.size() + 3, pattern.size())), rest};
    return (pattern[0] == '?' && match(after.pattern, text, rest)) || matchGroup(inside, text, &after);
  }
  if (pattern[0] == '*') {
    for (std::size_t i = 0; i <= text.size(); ++i) {
      if (match(pattern.substr(1), text.substr(i), rest)) return true;
    }
    return false;
  }
  if (text.empty()) return false;
  std::size_t length = 1;
  if (const std::size_t end = pattern.find(']', 1); pattern[0] == '[' && end != pattern.npos) {
    if (!isOf(pattern.substr(1, end - 1), text[0])) return false;
    length = end + 1;
  } else if (pattern[0] != '?' && pattern[0] != text[0]) {
    return false;
  }
  return match(pattern.substr(length), text.substr(1), rest);
}

}  // namespace

bool matches(std::string_view pattern, std::string_view text) { return match(pattern, text, nullptr); }

bool isPattern(std::string_view word) { return word.find_first_of("*?[(") != word.npos; }

}  // namespace zim::catalogue
