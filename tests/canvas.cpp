#include "tests/canvas.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <new>

#include "tests/pages.h"

namespace zim::test {

using namespace catalogue;

namespace {

// Mapped memory that is not in use, by its size. Mapping it anew for each image would take most of a test's time.
std::vector<std::byte*>& unusedOf(std::size_t count) {
  static std::map<std::size_t, std::vector<std::byte*>> unused;
  return unused[count];
}

std::byte* mapGuarded(std::size_t count) {
  std::byte* const pages = reservePages(count + 2 * pageSize());
  if (pages == nullptr) throw std::bad_alloc();
  std::byte* const start = pages + pageSize();
  openPages(start, count);
  return start;
}

void blank(std::span<std::byte> bytes) { std::memset(bytes.data(), std::to_integer<int>(kCanary), bytes.size()); }

// Two calls of the C library, which are quick under sanitizers, too.
bool isBlank(std::span<const std::byte> bytes) {
  return bytes.empty() ||
         (bytes.front() == kCanary && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0);
}

}  // namespace

GuardedBytes::GuardedBytes(std::size_t count) {
  const std::size_t page = pageSize();
  const std::size_t wholePages = (count + page - 1) / page * page;
  auto& unused = unusedOf(wholePages);
  if (unused.empty()) unused.push_back(mapGuarded(wholePages));
  memory_ = {unused.back(), Release{wholePages}};
  unused.pop_back();
}

void GuardedBytes::Release::operator()(std::byte* start) const { unusedOf(count).push_back(start); }

Canvas::Canvas(const Side& side, ZimiSize size, Placement placement) {
  for (const Plane& plane : side.planes) {
    const std::size_t rowBytes = plane.rowBytes(size.width);
    // Where every plane has a step of its own, none is like another.
    const std::ptrdiff_t more = side.steps == Steps::perPlane && placement.padding != 0
                                    ? static_cast<std::ptrdiff_t>(planes_.size()) * 3 * bits(plane.type) / 8
                                    : 0;
    const auto step = static_cast<std::ptrdiff_t>(rowBytes) +
                      (side.steps == Steps::none ? 0 : std::ptrdiff_t{placement.padding} + more);
    const int rows = plane.rows(size.height);
    // An unused last sample may lie in the guard page.
    const auto unused = static_cast<std::size_t>((plane.samples - plane.usedSamples) * bits(plane.type) / 8);
    const bool empty = rows < 1 || rowBytes == 0;
    const std::size_t extent = empty ? 0 : static_cast<std::size_t>(step * (rows - 1)) + rowBytes - unused;
    PlaneMemory& p = planes_.emplace_back(PlaneMemory{plane, rowBytes, step, rows, GuardedBytes(extent), nullptr});
    const auto memory = p.memory.bytes();
    blank(memory);
    p.first = memory.data() + (placement.edge == Placement::Edge::start ? 0 : memory.size() - extent);
  }
}

Buffers Canvas::buffers() const {
  Buffers buffers;
  for (std::size_t i = 0; i < planes_.size(); ++i) {
    buffers.planes[i] = planes_[i].first;
    buffers.steps[i] = static_cast<Zim32s>(planes_[i].step);
  }
  return buffers;
}

Buffers Canvas::buffersUpwards() const {
  Buffers buffers;
  for (std::size_t i = 0; i < planes_.size(); ++i) {
    buffers.planes[i] = planes_[i].first + planes_[i].step * (planes_[i].rows - 1);
    buffers.steps[i] = static_cast<Zim32s>(-planes_[i].step);
  }
  return buffers;
}

// Calls visitor(plane, row, byte within the row, bytes) for each run of used samples.
template <class Visitor>
void Canvas::forEachRun(const Visitor& visitor) const {
  for (std::size_t i = 0; i < planes_.size(); ++i) {
    const PlaneMemory& p = planes_[i];
    for (int y = 0; y < p.rows; ++y) {
      std::byte* row = p.first + p.step * y;
      if (p.geometry.usedSamples == p.geometry.samples) {
        visitor(i, y, std::size_t{0}, std::span(row, p.rowBytes));
        continue;
      }
      const auto sampleBytes = static_cast<std::size_t>(bits(p.geometry.type) / 8);
      const std::size_t group = static_cast<std::size_t>(p.geometry.samples) * sampleBytes;
      const std::size_t used = static_cast<std::size_t>(p.geometry.usedSamples) * sampleBytes;
      for (std::size_t x = 0; x < p.rowBytes; x += group) visitor(i, y, x, std::span(row + x, used));
    }
  }
}

void Canvas::put(const Image& image) {
  forEachRun([&](std::size_t plane, int y, std::size_t x, std::span<std::byte> run) {
    std::memcpy(run.data(), image.row(plane, y) + x, run.size());
  });
}

namespace {

bool bothNaN(SampleType type, const std::byte* a, const std::byte* b) {
  const auto nan = [&]<class T>(const std::byte* p, T sample) {
    std::memcpy(&sample, p, sizeof sample);
    return std::isnan(sample);
  };
  return type == SampleType::f32 ? nan(a, 0.0F) && nan(b, 0.0F) : nan(a, 0.0) && nan(b, 0.0);
}

std::string hex(std::span<const std::byte> bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const std::byte b : bytes) {
    text += {kDigits[std::to_integer<int>(b) >> 4], kDigits[std::to_integer<int>(b) & 15]};
  }
  return text;
}

}  // namespace

std::string Canvas::differenceFrom(const Image& image) {
  std::string difference;
  forEachRun([&](std::size_t plane, int y, std::size_t x, std::span<std::byte> run) {
    const SampleType type = planes_[plane].geometry.type;
    const std::byte* expected = image.row(plane, y) + x;
    if (difference.empty() && std::memcmp(run.data(), expected, run.size()) != 0) {
      const auto sampleBytes = static_cast<std::size_t>(std::max(bits(type), 8) / 8);
      for (std::size_t b = 0; b < run.size() && difference.empty(); b += sampleBytes) {
        if (std::memcmp(&run[b], expected + b, sampleBytes) == 0) continue;
        if (isFloat(type) && bothNaN(type, &run[b], expected + b)) continue;
        difference = "plane " + std::to_string(plane) + ", row " + std::to_string(y) + ", byte " +
                     std::to_string(x + b) + ": " + hex(run.subspan(b, sampleBytes)) + " in place of " +
                     hex({expected + b, sampleBytes}) + " (in order of memory)";
      }
    }
    blank(run);
  });
  return difference.empty() ? differenceFromBlank() : difference;
}

std::string Canvas::differenceFromBlank() const {
  for (std::size_t i = 0; i < planes_.size(); ++i) {
    const auto memory = planes_[i].memory.bytes();
    if (!isBlank(memory)) {
      const auto found = std::ranges::find_if(memory, [](std::byte b) { return b != kCanary; });
      return "plane " + std::to_string(i) + " written to outside its pixels, at byte " +
             std::to_string(&*found - planes_[i].first) + " from its start";
    }
  }
  return {};
}

std::string Canvas::differenceAround() {
  forEachRun([](std::size_t, int, std::size_t, std::span<std::byte> run) { blank(run); });
  return differenceFromBlank();
}

Image upsideDown(const Image& image) {
  Image turned(image.side(), image.size());
  for (std::size_t plane = 0; plane < image.planes(); ++plane) {
    const int rows = image.rows(plane);
    for (int y = 0; y < rows; ++y)
      std::memcpy(turned.row(plane, rows - 1 - y), image.row(plane, y), image.rowBytes(plane));
  }
  return turned;
}

}  // namespace zim::test
