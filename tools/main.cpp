// zimcc: lists, explains, runs and times the library's exports.
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "tools/demo.h"
#include "tools/describe.h"
#include "tools/failure.h"
#include "tools/job.h"
#include "tools/measure.h"
#include "tools/raw_video.h"
#include "tools/samples.h"
#include "zimcore.h"

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
  if (!isRawVideo(path)) return Job(e, readPicture(path), settings);
  const ZimiSize size = takeSize(settings);
  return Job(e, readRawVideo(path, e.source, size), settings);
}

void run(const Words& words) {
  Job job = jobOn(exportNamed(words[0]), words[1], Words(words.begin() + 3, words.end()));
  job.run();
  isRawVideo(words[2]) ? writeRawVideo(words[2], job.result()) : writePng(words[2], job.picture());
}

void listExports(const Words& words) {
  const bool json = !words.empty() && words[0] == "--json";
  const Words patterns(words.begin() + json, words.end());
  if (patterns.size() > 1) throw Failure("list takes one pattern");
  (json ? listAsJson : list)(patterns.empty() ? "" : patterns[0]);
}

void mosaic(const Words& words) {
  const Picture picture = mosaicOf(readPicture(words[0]), gridIn(Words(words.begin() + 2, words.end())));
  words[1].ends_with(".pgm") ? writeGrayMap(words[1], picture) : writePng(words[1], picture);
}

void bench(const Words& words) {
  const auto& e = exportNamed(words[0]);
  if (words.size() > 1 && (words[1] != "--size" || words.size() != 3)) throw Failure("bench takes NAME [--size WxH]");
  const ZimiSize size = words.size() == 3 ? sizeIn(words[2]) : ZimiSize{1920, 1080};

  zimSetNumThreads(1);
  catalogue::Image source(e.source, size), destination(e.destination, size);
  source.fillRandom(1);
  const catalogue::Operands operands(e, source, e.inPlace ? source : destination);
  const catalogue::Caller caller(e);
  call(e, caller, operands);

  const std::size_t bytes = bytesMoved(e, size) / 2;
  std::vector<char> from(bytes, 1), to(bytes);
  constexpr int kRounds = 41;
  const auto timings = measure({[&] { caller(operands); },
                                [&] {
                                  std::memcpy(to.data(), from.data(), bytes);
                                  asm volatile("" : : "r"(to.data()) : "memory");
                                }},
                               kRounds);
  const Timing& time = timings[0];
  const Timing& copy = timings[1];
  std::printf("%s  %d x %d, one thread\n", e.name.c_str(), size.width, size.height);
  std::printf("  %-8s%12s%12s%12s\n", "", "ms", "MP/s", "of memcpy");
  const auto row = [&](const char* name, double seconds, double copySeconds) {
    std::printf("  %-8s%12.4f%12.1f%12.2f\n", name, 1e3 * seconds, megapixels(size) / seconds, copySeconds / seconds);
  };
  row("best", time.best, copy.best);
  row("median", time.median, copy.median);
}

constexpr std::size_t kAny = static_cast<std::size_t>(-1);

struct Command {
  const char* name;
  std::size_t least, most;  // words after the name
  const char* usage;
  const char* help;
  void (*function)(const Words& words);
};

constexpr Command kCommands[] = {
    {"list", 0, 2, "[--json] [PATTERN]", "exports whose names match a shell pattern or contain a word", listExports},
    {"describe", 1, 1, "NAME", "what an export converts, and its arguments in order",
     [](const Words& words) { describe(words[0]); }},
    {"run", 3, kAny, "NAME IN OUT [SETTING=VALUE ...]", "converts a PNG, PFM or raw YUV file to a PNG or raw YUV", run},
    {"mosaic", 2, 3, "IN OUT.(pgm|png) [grid=RGGB]", "what a sensor behind a colour filter array sees of a picture",
     mosaic},
    {"bench", 1, 3, "NAME [--size WxH]", "times an export on one thread beside memcpy", bench},
    {"demo", 1, 1, "DIR", "converts a photograph by every family into a web page",
     [](const Words& words) { demo(words[0]); }},
    {"version", 0, 0, "", "the version record of the loaded library", [](const Words&) { version(); }},
};

void help() {
  std::puts("usage: zimcc COMMAND ...\n");
  for (const Command& c : kCommands) std::printf("  %-9s%-36s  %s\n", c.name, c.usage, c.help);
  std::puts(
      "\nA setting is an argument by its name, as describe tells it: coeffs=0.2,0.7,0.1  vMax=2  aval=128\n"
      "Colours are converted to what the export reads. Results that are no colours are shown as their\n"
      "channels side by side. A file IN.yuv is one frame or more of just what the export reads, planes one\n"
      "after another, and needs a setting size=WxH; OUT.yuv becomes what the export writes. Bad input ends\n"
      "with exit code 2 and writes nothing.");
}

void dispatch(const Words& words) {
  if (words.empty()) throw Failure("no command; see zimcc --help");
  if (words[0] == "--help" || words[0] == "-h" || words[0] == "help") return help();
  for (const Command& c : kCommands) {
    if (words[0] != c.name) continue;
    if (words.size() == 2 && words[1] == "--help") return help();
    if (words.size() - 1 < c.least || words.size() - 1 > c.most) {
      throw Failure("usage: zimcc " + words[0] + " " + c.usage);
    }
    return c.function(Words(words.begin() + 1, words.end()));
  }
  throw Failure("no command is named '" + words[0] + "'; see zimcc --help");
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
