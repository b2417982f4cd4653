// zimcc: lists, explains, runs and times the library's exports.
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <exception>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/bench.h"
#include "tools/catalogue/pattern.h"
#include "tools/complete.h"
#include "tools/demo.h"
#include "tools/describe.h"
#include "tools/failure.h"
#include "tools/job.h"
#include "tools/nearest.h"
#include "tools/raw_video.h"
#include "tools/samples.h"

namespace zim::tool {
namespace {

using Words = std::vector<std::string>;

ZimiSize sizeIn(const std::string& text) {
  constexpr int kLargestExtent = 1 << 14;
  ZimiSize size = {};
  const char* end = text.data() + text.size();
  const auto [cross, noWidth] = std::from_chars(text.data(), end, size.width);
  const auto [rest, noHeight] = std::from_chars(cross == end ? end : cross + 1, end, size.height);
  if (noWidth != std::errc() || noHeight != std::errc() || *cross != 'x' || rest != end || size.width < 1 ||
      size.height < 1 || size.width > kLargestExtent || size.height > kLargestExtent) {
    throw Failure("'" + text + "' is no size such as 1920x1080, up to " + std::to_string(kLargestExtent) + " each");
  }
  return size;
}

// Takes the setting that tells the size of raw video out of the others.
ZimiSize takeSize(Words& settings) {
  constexpr std::string_view kSize = "size=";
  const auto found = std::ranges::find_if(settings, [&](const std::string& word) { return word.starts_with(kSize); });
  if (found == settings.end()) throw Failure("raw video needs its size, such as size=1920x1080");
  const ZimiSize size = sizeIn(found->substr(kSize.size()));
  settings.erase(found);
  return size;
}

Job jobOn(const catalogue::Export& e, const std::string& path, Words settings) {
  if (!isRawVideo(path)) return {e, readPicture(path), settings};
  const ZimiSize size = takeSize(settings);
  return {e, readRawVideo(path, e.source, size), settings};
}

void run(const Words& words) {
  Job job = jobOn(exportNamed(words[0]), words[1], Words(words.begin() + 3, words.end()));
  job.run();
  isRawVideo(words[2]) ? writeRawVideo(words[2], job.result()) : writePng(words[2], job.picture());
}

void listExports(const Words& words) {
  const bool json = !words.empty() && words[0] == "--json";
  const Words patterns(words.begin() + (json ? 1 : 0), words.end());
  if (patterns.size() > 1) throw Failure("list takes one pattern");
  (json ? listAsJson : list)(patterns.empty() ? "" : patterns[0]);
}

void mosaic(const Words& words) {
  const Picture picture = mosaicOf(readPicture(words[0]), gridIn(Words(words.begin() + 2, words.end())));
  words[1].ends_with(".pgm") ? writeGrayMap(words[1], picture) : writePng(words[1], picture);
}

int threadsIn(const std::string& text) {
  constexpr int kMost = 1024;
  int threads = 0;
  const char* end = text.data() + text.size();
  const auto [rest, failure] = std::from_chars(text.data(), end, threads);
  if (failure != std::errc() || rest != end || threads < 1 || threads > kMost) {
    throw Failure("'" + text + "' is no count of threads from 1 to " + std::to_string(kMost));
  }
  return threads;
}

void benchWords(const Words& words) {
  BenchSettings settings;
  for (std::size_t i = 1; i < words.size(); i += 2) {
    const bool hasValue = i + 1 < words.size();
    if (hasValue && words[i] == "--size") {
      settings.size = sizeIn(words[i + 1]);
    } else if (hasValue && words[i] == "--threads") {
      settings.threads = threadsIn(words[i + 1]);
    } else {
      throw Failure("bench takes NAME, PATTERN or --all, [--size WxH] and [--threads N]");
    }
  }
  const std::string& which = words[0];
  if (which == "--all" || catalogue::isPattern(which))
    return benchAll(exportsLike(which == "--all" ? "" : which), settings);
  bench(exportNamed(which), settings);
}

void completeWords(const Words& words);

constexpr std::size_t kAny = static_cast<std::size_t>(-1);

struct Command {
  const char* name;
  std::size_t least, most;  // words after the name
  const char* usage;
  const char* help;
  const char* details;
  void (*function)(const Words& words);
};

constexpr Command kCommands[] = {
    {"list", 0, 2, "[--json] [PATTERN]", "exports whose names match a shell pattern or contain a word",
     "A line for each: what it reads and writes, and its family. --json tells programs all that is known of each.\n\n"
     "  zimcc list YCbCr422\n"
     "  zimcc list 'zimi*To*_16u_*'\n",
     listExports},
    {"describe", 1, 1, "NAME", "what an export converts, and its arguments in order",
     "  zimcc describe zimiColorTwist32f_8u_C3R\n", [](const Words& words) { describe(words[0]); }},
    {"run", 3, kAny, "NAME IN OUT [SETTING=VALUE ...]", "converts a PNG, PGM, PFM or raw YUV file to a PNG or raw YUV",
     "A setting is an argument by its name, as describe tells it. Colours are converted to what the export reads.\n"
     "Results that are no colours are shown as their channels side by side. A file IN.yuv is one frame or more of\n"
     "just what the export reads, planes one after another, and needs a setting size=WxH; OUT.yuv becomes what the\n"
     "export writes. Exports that read the mosaic of a sensor convert a part of it by roi=x,y,width,height.\n\n"
     "  zimcc run zimiRGBToHLS_8u_C3R photo.png hls.png\n"
     "  zimcc run zimiColorToGray_8u_C3C1R photo.png gray.png coeffs=0.2,0.7,0.1\n"
     "  zimcc run zimiReduceBits_8u_C3R photo.png few.png levels=4 dither=stucki\n"
     "  zimcc run zimiYCbCr420ToRGB_8u_P3C3R video.yuv frame.png size=1280x720\n",
     run},
    {"mosaic", 2, 3, "IN OUT.(pgm|png) [grid=RGGB]", "what a sensor behind a colour filter array sees of a picture",
     "The grid is one of BGGR, RGGB, GBRG and GRBG, the colours of the 2 x 2 pixels at the origin.\n\n"
     "  zimcc mosaic photo.png raw.pgm grid=GRBG\n"
     "  zimcc run zimiDemosaicAHD_8u_C1C3R raw.pgm back.png grid=GRBG\n",
     mosaic},
    {"bench", 1, 5, "NAME|PATTERN|--all [--size WxH] [--threads N]", "times exports beside memcpy",
     "The size is 1920x1080 unless told. memcpy copies half of the bytes that the export reads and writes.\n\n"
     "  zimcc bench zimiRGBToGray_8u_C3C1R\n"
     "  zimcc bench 'zimiGamma*' --size 640x480 --threads 2\n"
     "  zimcc bench --all\n",
     benchWords},
    {"demo", 1, 1, "DIR", "converts a photograph by every family into a web page",
     "The page is DIR/index.html, the pictures lie beside it.\n", [](const Words& words) { demo(words[0]); }},
    {"version", 0, 0, "", "the version record of the loaded library",
     "Its target is the processor level that the library is built for: mx (SSE2), v3 (AVX2) or v4 (AVX-512).\n",
     [](const Words&) { version(); }},
    {"complete", 0, kAny, "[WORD ...]", "what may take the place of the last word", "For the completion of shells.\n",
     completeWords},
};

// Those that people call; the last is for shells.
constexpr auto kShown = std::span(kCommands).first(std::size(kCommands) - 1);

void completeWords(const Words& words) {
  Words names;
  for (const Command& c : kShown) names.emplace_back(c.name);
  complete(words, names);
}

void help() {
  std::puts("usage: zimcc COMMAND ...\n");
  for (const Command& c : kShown) std::printf("  %-9s%-36s  %s\n", c.name, c.usage, c.help);
  std::puts(
      "\nA setting is an argument by its name, as describe tells it: coeffs=0.2,0.7,0.1  vMax=2  aval=128\n"
      "Bad input ends with exit code 2 and writes nothing. zimcc COMMAND --help tells more.");
}

void help(const Command& c) { std::printf("usage: zimcc %s %s\n\n%s.\n%s", c.name, c.usage, c.help, c.details); }

bool asksForHelp(const std::string& word) { return word == "--help" || word == "-h"; }

void dispatch(const Words& words) {
  if (words.empty()) throw Failure("no command; see zimcc --help");
  std::string name = words[0];
  if (name == "--version") name = "version";
  if (asksForHelp(name) || (name == "help" && words.size() == 1)) return help();
  const bool helpFirst = name == "help";
  if (helpFirst) name = words[1];
  const auto* const command = std::ranges::find(kCommands, name, &Command::name);
  if (command == std::end(kCommands)) {
    const std::string_view near = nearest(name, kShown, &Command::name);
    throw Failure("no command is named '" + name + "'" +
                  (near.empty() ? "; see zimcc --help" : "; did you mean " + std::string(near) + "?"));
  }
  const Words rest(words.begin() + 1, words.end());
  if (helpFirst || (command->function != completeWords && std::ranges::any_of(rest, asksForHelp))) {
    return help(*command);
  }
  if (rest.size() < command->least || rest.size() > command->most) {
    throw Failure("usage: zimcc " + name + " " + command->usage);
  }
  command->function(rest);
}

}  // namespace
}  // namespace zim::tool

int main(int count, char** arguments) {
  try {
    zim::tool::dispatch({arguments + 1, arguments + count});
    return 0;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "zimcc: out of memory\n");
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "zimcc: %s\n", failure.what());
  }
  return 2;
}
