// Images larger than 32 bits can count: rows more than 4 GiB apart, and rows of as many pixels as there are numbers.
// Little of their memory exists: between rows nothing is touched, and along a row the same few pages come again and
// again.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "tests/canvas.h"
#include "tests/reference.h"

namespace zim::test {
namespace {

using namespace catalogue;

constexpr auto kGiB = std::size_t{1} << 30, kHugePage = std::size_t{1} << 21;

// Address space that costs nothing until it is touched, from the start of a huge page on; empty if there is not so
// much.
class Reservation {
 public:
  explicit Reservation(std::size_t bytes) : bytes_(bytes + kHugePage) {
    void* mapping = mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapping != MAP_FAILED) start_ = static_cast<std::byte*>(mapping);
  }
  ~Reservation() {
    if (start_ != nullptr) munmap(start_, bytes_);
  }
  Reservation(Reservation&& other) noexcept : start_(std::exchange(other.start_, nullptr)), bytes_(other.bytes_) {}
  Reservation& operator=(Reservation&&) = delete;

  explicit operator bool() const { return start_ != nullptr; }
  std::byte* operator+(std::size_t offset) const {
    return reinterpret_cast<std::byte*>((reinterpret_cast<std::uintptr_t>(start_) | (kHugePage - 1)) + 1) + offset;
  }

 private:
  std::byte* start_ = nullptr;
  std::size_t bytes_;
};

// ---- Rows far apart -----------------------------------------------------------------------------------------------

// Exports that count from the first row in 32 bits, in bytes or in samples.
constexpr const char* kCountBytesIn32Bits[] = {"zimi*ToGray_64f_*", "zimiRGBToLUV_32f_*"};
constexpr const char* kCountSamplesIn32Bits[] = {"zimi*ToGray_*", "zimi@(RGBToLUV|LUVToRGB)_*",
                                                 "zimi@(RGBTo@(XYZ|YCC|HLS|HSV)|@(XYZ|YCC|HLS|HSV)ToRGB)_*"};

Zim32s wrapped(std::int64_t number) { return static_cast<Zim32s>(static_cast<Zim32u>(number)); }

std::ptrdiff_t offsetOfRow(const Export& e, std::int64_t row, Zim32s step, SampleType type) {
  if (matchesAny(e, kCountBytesIn32Bits)) return wrapped(row * step);
  const int sample = std::max(bits(type) / 8, 1);
  if (matchesAny(e, kCountSamplesIn32Bits)) return std::ptrdiff_t{wrapped(row * (step / sample))} * sample;
  return row * step;
}

// Planes of which every row lies in the middle of its own reservation, or far from there.
class FarRows {
 public:
  FarRows() {
    for (int i = 0; i < 4; ++i) planes_.emplace_back(2 * kReach);
  }

  bool exist() const {
    return std::ranges::all_of(planes_, [](const Reservation& r) { return static_cast<bool>(r); });
  }
  std::byte* row(std::size_t plane, std::ptrdiff_t offset) { return (planes_[plane] + kReach) + offset; }

  Buffers buffers(Zim32s step) {
    Buffers buffers;
    buffers.steps.fill(step);
    for (std::size_t i = 0; i < planes_.size(); ++i) buffers.planes[i] = row(i, 0);
    return buffers;
  }

 private:
  static constexpr std::size_t kReach = 32 * kGiB;
  std::vector<Reservation> planes_;
};

template <class Visitor>
void forEachRow(const Image& image, const Visitor& visitor) {
  for (std::size_t plane = 0; plane < image.planes(); ++plane) {
    for (int y = 0; y < image.rows(plane); ++y) visitor(plane, y, image.rowBytes(plane));
  }
}

TEST(Large, RowsFarApart) {
  FarRows source, destination;
  if (!source.exist() || !destination.exist()) GTEST_SKIP() << "no such address space";
  // Multiples of every sample; no two of 16 rows meet where offsets wrap.
  constexpr Zim32s kSourceStep = 0x60001010, kDestinationStep = 0x58002020;
  for (const Export& e : forms()) {
    if (e.source.steps == Steps::none || e.destination.steps == Steps::none) continue;
    Image contents(e.source, goodSize(e, {37, 16}));
    contents.fillRandom(11);
    const Reference reference(e, std::move(contents), Caller(e));
    for (const int direction : {1, -1}) {
      if (direction < 0 && !takesAnyStep(e)) continue;
      const Zim32s sourceStep = direction * kSourceStep, destinationStep = direction * kDestinationStep;
      const auto destinationRow = [&](std::size_t plane, int y) {
        return destination.row(plane, offsetOfRow(e, y, destinationStep, e.destination.type));
      };
      forEachRow(reference.source, [&](std::size_t plane, int y, std::size_t bytes) {
        const std::byte* row = reference.source.row(plane, y);
        std::memcpy(source.row(plane, offsetOfRow(e, y, sourceStep, e.source.type)), row, bytes);
        // The scan counts in full, the conversion in 32 bits.
        if (matches(e, "zimiToneMap*")) {
          std::memcpy(source.row(plane, wrapped(std::int64_t{y} * sourceStep)), row, bytes);
        }
      });
      forEachRow(reference.destination, [&](std::size_t plane, int y, std::size_t bytes) {
        std::memset(destinationRow(plane, y), std::to_integer<int>(kCanary), bytes);
        if (e.inPlace) std::memcpy(destinationRow(plane, y), reference.source.row(plane, y), bytes);
      });
      Operands operands(e, reference.source.size());
      operands.source = source.buffers(sourceStep);
      operands.destination = destination.buffers(destinationStep);
      ASSERT_EQ(Caller(e)(operands), resultOf(e, operands.size)) << e.name;
      forEachRow(reference.destination, [&](std::size_t plane, int y, std::size_t bytes) {
        EXPECT_EQ(std::memcmp(destinationRow(plane, y), reference.destination.row(plane, y), bytes), 0)
            << e.name << ", plane " << plane << ", row " << y << ", direction " << direction;
      });
    }
  }
}

// ---- Rows without end ---------------------------------------------------------------------------------------------

constexpr int kWidth = std::numeric_limits<int>::max(), kPeriod = 1 << 21, kPeriods = kWidth / kPeriod;
constexpr int kEnd = kWidth - (kPeriods - 1) * kPeriod;  // the last period, and what is left

// The rows of an image, all at one place in memory: the first row of one image over and over, at the end that of
// another.
class EndlessRows {
 public:
  EndlessRows(const Image& period, const Image& end) {
    for (std::size_t plane = 0; plane < period.planes(); ++plane) {
      const std::size_t bytes = period.rowBytes(plane);
      const Reservation& row = rows_.emplace_back((kPeriods - 1) * bytes + end.rowBytes(plane));
      periodBytes_.push_back(bytes);
      const int pages = memfd_create("period", 0);
      complete_ = complete_ && row && ftruncate(pages, static_cast<off_t>(bytes)) == 0;
      for (std::size_t i = 0; complete_ && i + 1 < kPeriods; ++i) {
        complete_ =
            mmap(row + i * bytes, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, pages, 0) != MAP_FAILED;
      }
      madvise(row + 0, (kPeriods - 1) * bytes, MADV_HUGEPAGE);  // a thousand faults in place of half a million
      close(pages);
      if (!complete_) return;
      std::memcpy(row + 0, period.row(plane, 0), bytes);
      std::memcpy(endOf(plane), end.row(plane, 0), end.rowBytes(plane));
    }
  }

  bool exist() const { return complete_; }
  const std::byte* startOf(std::size_t plane) const { return rows_[plane] + 0; }
  std::byte* endOf(std::size_t plane) const { return rows_[plane] + (kPeriods - 1) * periodBytes_[plane]; }

  Buffers buffers(Zim32s step) const {
    Buffers buffers;
    buffers.steps.fill(step);
    for (std::size_t i = 0; i < rows_.size(); ++i) buffers.planes[i] = rows_[i] + 0;
    return buffers;
  }

 private:
  std::vector<Reservation> rows_;
  std::vector<std::size_t> periodBytes_;
  bool complete_ = true;
};

// Images of as few rows as share chroma, all alike.
Reference shortReference(const Export& e, int width, std::uint64_t seed) {
  int rows = 1;
  for (const Side* side : {&e.source, &e.destination}) {
    for (const Plane& plane : side->planes) rows = std::max(rows, plane.pixelsDown);
  }
  Image source(e.source, {width, rows});
  source.fillRandom(seed);
  forEachRow(source, [&](std::size_t plane, int y, std::size_t bytes) {
    if (y > 0) std::memcpy(source.row(plane, y), source.row(plane, 0), bytes);
  });
  return {e, std::move(source), Caller(e)};
}

class EndlessRow : public testing::TestWithParam<Export> {};

TEST_P(EndlessRow, AsItsPieces) {
  const Export& e = GetParam();
  const Reference period = shortReference(e, kPeriod, 12), end = shortReference(e, kEnd, 13);
  const EndlessRows source(period.source, end.source);
  Image blankPeriod(e.destination, period.source.size()), blankEnd(e.destination, end.source.size());
  for (Image* image : {&blankPeriod, &blankEnd}) image->fill(kCanary);
  const EndlessRows destination(blankPeriod, blankEnd);
  if (!source.exist() || !destination.exist()) GTEST_SKIP() << "no such address space";
  Operands operands(e, {kWidth, period.source.size().height});
  operands.source = source.buffers(takesAnyStep(e) ? 0 : 1);
  operands.destination = destination.buffers(takesAnyStep(e) ? 0 : 1);
  ASSERT_EQ(Caller(e)(operands), resultOf(e, operands.size));
  for (std::size_t plane = 0; plane < e.destination.planes.size(); ++plane) {
    const Image &first = period.destination, &last = end.destination;
    EXPECT_EQ(std::memcmp(destination.startOf(plane), first.row(plane, 0), first.rowBytes(plane)), 0);
    EXPECT_EQ(std::memcmp(destination.endOf(plane), last.row(plane, 0), last.rowBytes(plane)), 0);
  }
}

// One of each way along a row; only the first ones, unless ZIMCC_LARGE is set.
constexpr const char* kKinds[] = {"zimiRGBToGray_8u_C3C1R",
                                  "zimiYCbCr422_8u_C2P3R",

                                  "zimiRGBToYCbCr_8u_C3P3R",
                                  "zimiYCbCrToRGB_8u_P3C4R",
                                  "zimiRGBToXYZ_8u_AC4R",
                                  "zimiHSVToRGB_8u_C3R",
                                  "zimiColorTwist32f_8u_C3R",
                                  "zimiGammaFwd_8u_P3R",
                                  "zimiGammaInv_16u_C3R",
                                  "zimiRGBToYCoCg_8u_C3P3R",
                                  "zimiYCbCr420ToRGB_8u_P3C3R",
                                  "zimiYCbCr411ToBGR_8u_P3C3R",
                                  "zimiRGBToYUV420_8u_C3P3R",
                                  "zimiBGRToCbYCr422_8u_AC4C2R",
                                  "zimiBGRToYCbCr411_8u_AC4P3R",
                                  "zimiBGRToBGR565_8u16u_C3R",
                                  "zimiBGR565ToYCbCr422_16u8u_C3P3R",
                                  "zimiYCbCr422ToBGR565Dither_8u16u_P3C3R",
                                  "zimiYCbCr411_8u_P3P2R",
                                  "zimiYCbCr422ToYCbCr420_8u_C2P2R",
                                  "zimiReduceBits_8u_C1R:none",
                                  "zimiReduceBits_8u_C3R:bayer"};
constexpr std::size_t kKindsAlways = 2;

std::vector<Export> kindsOfRows() {
  const std::size_t count = std::getenv("ZIMCC_LARGE") == nullptr ? kKindsAlways : std::size(kKinds);
  std::vector<Export> found;
  for (const char* name : std::span(kKinds).first(count)) found.push_back(*find(name));
  return found;
}

INSTANTIATE_TEST_SUITE_P(Large, EndlessRow, testing::ValuesIn(kindsOfRows()), nameOf);

}  // namespace
}  // namespace zim::test
