// What the tool says about exports and about the library.
#pragma once

#include <string>
#include <vector>

#include "tools/catalogue/catalogue.h"

namespace zim::tool {

// The exports that match a shell pattern, or contain a plain word; all for an empty pattern. Throws Failure if there
// are none.
std::vector<const catalogue::Export*> exportsLike(const std::string& pattern);

// "YCbCr420" has the channels Y, Cb and Cr. Empty where the word does not tell.
std::vector<std::string> channelsOf(const catalogue::Side& side);

void list(const std::string& pattern);
// The same with all that is known of each, for programs.
void listAsJson(const std::string& pattern);

void describe(const std::string& name);

void version();

}  // namespace zim::tool
