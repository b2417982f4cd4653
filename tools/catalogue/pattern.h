// Shell patterns over names.
#pragma once

#include <string_view>

namespace zim::catalogue {

// Whether the whole text matches: * stands for any text, ? for any character, [abc], [a-c] and [!abc] for one that is,
// or is not, of these; @(one|other) for one of several patterns, ?(one|other) for one of them or nothing.
bool matches(std::string_view pattern, std::string_view text);

// Whether a word is such a pattern, and not itself a name or a part of one.
bool isPattern(std::string_view word);

}  // namespace zim::catalogue
