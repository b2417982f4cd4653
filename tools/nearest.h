// What a mistyped word was probably meant to be.
#pragma once

#include <algorithm>
#include <cctype>
#include <functional>
#include <numeric>
#include <string_view>
#include <vector>

namespace zim::tool {

// Letters to be inserted, removed, replaced or exchanged with their neighbour to make one word of another, in whatever
// case.
inline std::size_t distance(std::string_view a, std::string_view b) {
  const auto same = [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
  };
  // Distances of the first letters of a to all beginnings of b: of as many letters as the loop has come to, of one
  // fewer and of two fewer.
  std::vector<std::size_t> row(b.size() + 1), last, beforeLast;
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    beforeLast = std::move(last);
    last = row;
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      row[j + 1] = std::min({row[j] + 1, last[j + 1] + 1, last[j] + (same(a[i], b[j]) ? 0 : 1)});
      if (i > 0 && j > 0 && same(a[i], b[j - 1]) && same(a[i - 1], b[j])) {
        row[j + 1] = std::min(row[j + 1], beforeLast[j - 1] + 1);
      }
    }
  }
  return row.back();
}

// The nearest of the candidates if it is near, or nothing. The name of a candidate comes from a projection.
template <class Candidates, class Projection = std::identity>
std::string_view nearest(std::string_view word, const Candidates& candidates, Projection name = {}) {
  std::string_view best;
  std::size_t least = word.size() / 3 + 1;
  for (const auto& candidate : candidates) {
    const std::string_view other = std::invoke(name, candidate);
    if (const std::size_t d = distance(word, other); d < least) {
      least = d;
      best = other;
    }
  }
  return best;
}

}  // namespace zim::tool
