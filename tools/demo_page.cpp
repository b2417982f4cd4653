#include "tools/demo_page.h"

#include <algorithm>
#include <cstdio>

#include "zimcc.h"

namespace zim::tool {
namespace {

constexpr const char* kHead = R"(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>zimcc contact sheet</title>
<style>
:root {
  color-scheme: light dark;
  --paper: #f6f5f2; --card: #fff; --ink: #1d2021; --quiet: #686c6e; --line: #dedbd4; --accent: #a3470a;
}
@media (prefers-color-scheme: dark) {
  :root { --paper: #16181a; --card: #1f2225; --ink: #ecebe8; --quiet: #9a9fa3; --line: #34383c; --accent: #f0a45d; }
}
* { box-sizing: border-box; }
body { margin: 0; background: var(--paper); color: var(--ink); font: 15px/1.5 system-ui, "Segoe UI", Roboto, "DejaVu Sans", sans-serif; }
main, header { max-width: 1480px; margin: auto; padding: 0 clamp(16px, 4vw, 56px); }
header { display: grid; grid-template-columns: minmax(0, 1fr) minmax(0, 600px); gap: 24px 56px; align-items: center; padding-top: 48px; padding-bottom: 16px; }
h1 { margin: 0; font-size: clamp(32px, 5vw, 52px); line-height: 1.1; letter-spacing: -.025em; }
header p { max-width: 34em; color: var(--quiet); }
dl { display: grid; grid-template-columns: max-content 1fr; gap: 2px 18px; margin: 24px 0 0; font-variant-numeric: tabular-nums; }
dt { color: var(--quiet); }
dd { margin: 0; }
nav { display: flex; flex-wrap: wrap; gap: 6px 20px; margin-top: 24px; }
a { color: inherit; }
nav a { color: var(--accent); text-decoration: none; border-bottom: 1px solid currentColor; }
section { margin-top: 44px; padding-top: 20px; border-top: 1px solid var(--line); }
h2 { margin: 0; font-size: 21px; letter-spacing: -.01em; }
h2 + p { margin: 2px 0 16px; color: var(--quiet); }
.grid { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 350px), 1fr)); grid-auto-flow: dense; gap: 22px; }
.grid.pairs { grid-template-columns: repeat(auto-fill, minmax(min(100%, 500px), 1fr)); }
figure { margin: 0; display: flex; flex-direction: column; overflow: hidden; background: var(--card); border: 1px solid var(--line); border-radius: 8px; }
figure.wide { grid-column: span 2; }
.pairs figure.wide { grid-column: auto; }
.picture { display: block; position: relative; }
.picture i { position: absolute; top: 8px; margin-left: 8px; padding: 0 7px; border-radius: 4px; background: #1d2021b8; color: #fff; font-size: 12.5px; font-style: normal; }
img { display: block; width: 100%; height: auto; background: #fff; }
figcaption { padding: 12px 16px 14px; display: flex; flex-direction: column; gap: 2px; flex: 1; }
figcaption b { font-weight: 600; }
code { font: 12.5px/1.5 ui-monospace, "SF Mono", Menlo, "DejaVu Sans Mono", monospace; color: var(--accent); overflow-wrap: anywhere; }
code i { font-style: normal; color: var(--quiet); }
small { margin-top: auto; padding-top: 6px; display: flex; flex-wrap: wrap; justify-content: space-between; gap: 0 16px; font-size: 13px; color: var(--quiet); font-variant-numeric: tabular-nums; }
footer { margin: 48px 0 40px; padding-top: 16px; border-top: 1px solid var(--line); color: var(--quiet); font-size: 13px; }
@media (max-width: 860px) { header { grid-template-columns: 1fr; } figure.wide { grid-column: auto; } }
</style>
</head>
<body>
)";

constexpr const char* kIntroduction =
    "<p>A library of 493 conversions of images between colour models, chroma layouts, curves and depths, exact to the "
    "last bit. Here is one photograph through every family of them, each result as the library wrote it.</p>\n";

constexpr const char* kFooter = R"(<footer>Photograph: <i>Aitzgorri</i> by Aitzol Berasategi, 2018,
<a href="https://creativecommons.org/licenses/by/4.0/">CC BY 4.0</a>, scaled down and cropped; the other pictures are made of it.
Times are medians of one call on one thread, without reading and writing files.</footer>
</main>
</body>
</html>
)";

std::string escaped(const std::string& text) {
  std::string html;
  for (const char c : text) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += c;
    }
  }
  return html;
}

// Long settings break after a comma.
std::string breakable(const std::string& settings) {
  std::string html;
  for (const char c : escaped(settings)) {
    html += c;
    if (c == ',') html += "<wbr>";
  }
  return html;
}

std::string fixed(double number, int digits) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.*f", digits, number);
  return buffer;
}

std::string thousands(double number) {
  std::string digits = fixed(number, 0);
  for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, 1, ',');
  return digits;
}

std::string extent(const Card& card) { return std::to_string(card.width) + " × " + std::to_string(card.height); }

std::string image(const Card& card) {
  std::string html = "<a href=\"" + card.file + R"("><span class="picture"><img src=")" + card.file + "\" width=\"" +
                     std::to_string(card.width) + "\" height=\"" + std::to_string(card.height) + "\" alt=\"" +
                     escaped(card.title) + "\">";
  for (const Label& label : card.labels) {
    html += "<i style=\"left:" + fixed(100 * label.left, 2) + "%\">" + escaped(label.name) + "</i>";
  }
  return html + "</span></a>";
}

// Anchors count the groups.
std::string anchor(std::size_t group) { return "group-" + std::to_string(group); }

std::string header(const Card& original, const std::vector<Card>& cards) {
  const ZimLibraryVersion& v = *zimccGetLibVersion();
  std::string html = "<header>\n<div>\n<h1>zimcc</h1>\n" + std::string(kIntroduction) + "<dl>\n";
  const auto fact = [&](const std::string& name, const std::string& value) {
    html += "<dt>" + name + "</dt><dd>" + escaped(value) + "</dd>\n";
  };
  fact("Version", v.versionText);
  const std::string target(v.targetTag, std::find(v.targetTag, v.targetTag + sizeof v.targetTag, '\0'));
  fact("Build for", target == "mx" ? "SSE2" : "x86-64-" + target);
  fact("Photograph", extent(original));
  fact("Conversions",
       std::to_string(std::ranges::count_if(cards, [](const Card& card) { return !card.exportName.empty(); })));
  html += "</dl>\n<nav>\n";
  std::size_t groups = 0;
  for (const Card& card : cards) {
    if (&card != cards.data() && card.group == (&card)[-1].group) continue;
    html += "<a href=\"#" + anchor(groups++) + "\">" + escaped(card.group) + "</a>\n";
  }
  return html + "</nav>\n</div>\n<figure>" + image(original) + "</figure>\n</header>\n";
}

bool isWide(const Card& card) { return card.width > 2 * card.height; }

std::string figure(const Card& card) {
  std::string html = isWide(card) ? "<figure class=\"wide\">" : "<figure>";
  html += image(card) + "\n<figcaption><b>" + escaped(card.title) + "</b>";
  if (!card.exportName.empty()) {
    html += "<code>" + escaped(card.exportName);
    if (!card.settings.empty()) html += " <i>" + breakable(card.settings) + "</i>";
    html += "</code>";
  }
  html += "<small><span>" + extent(card) + "</span>";
  if (!card.note.empty()) html += "<span>" + escaped(card.note) + "</span>";
  if (!card.exportName.empty()) {
    html += "<span>" + fixed(card.milliseconds, 3) + " ms · " + thousands(card.megapixelsPerSecond) + " MP/s</span>";
  }
  return html + "</small></figcaption></figure>\n";
}

}  // namespace

std::string contactSheet(const Card& original, const std::vector<Card>& cards) {
  std::string html = kHead + header(original, cards) + "<main>\n";
  std::size_t groups = 0;
  for (auto first = cards.begin(); first != cards.end();) {
    const auto last = std::find_if(first, cards.end(), [&](const Card& card) { return card.group != first->group; });
    // Wide cards leave a column to narrow ones, unless there are not enough of those.
    const auto wide = std::count_if(first, last, isWide);
    const char* grid = wide > 2 * (last - first - wide) ? "grid pairs" : "grid";
    html += "<section id=\"" + anchor(groups++) + "\">\n<h2>" + escaped(first->group) + "</h2>\n<p>" +
            escaped(first->about) + "</p>\n<div class=\"" + grid + "\">\n";
    for (; first != last; ++first) html += figure(*first);
    html += "</div>\n</section>\n";
  }
  return html + kFooter;
}

}  // namespace zim::tool
