// What stands under all operations: the version record, which rows go to which thread, where rows begin, scratch
// memory, and that a program's own core services take the place of the library's.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <limits>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "frame/rows.h"
#include "frame/scratch.h"
#include "tests/exports.h"

// ---- The program's own services ----------------------------------------------------------------------------------

namespace {

std::atomic<int> teamSize{1};
std::atomic<int> timesAskedForTeam{0};
std::atomic<bool> memoryFails{false};
std::vector<std::size_t> allocations;
int allocationsAlive = 0;

}  // namespace

extern "C" {

void* zimMalloc(std::size_t byteCount) {
  allocations.push_back(byteCount);
  if (memoryFails || byteCount > (std::size_t{1} << 31)) return nullptr;
  ++allocationsAlive;
  return std::malloc(byteCount);
}

void zimFree(void* memory) {
  if (memory != nullptr) --allocationsAlive;
  std::free(memory);
}

int ownGetNumThreads() {
  ++timesAskedForTeam;
  return teamSize;
}

}  // extern "C"

namespace zim {
namespace {

using catalogue::Caller;
using catalogue::Export;
using catalogue::Image;
using catalogue::Operands;

TEST(Version, Record) {
  const ZimLibraryVersion* version = zimccGetLibVersion();
  EXPECT_EQ(zimccGetLibVersion(), version);
  EXPECT_EQ(version->versionMajor, 7);
  EXPECT_EQ(version->versionMinor, 0);
  EXPECT_EQ(version->buildMajor, 205);
  EXPECT_EQ(version->buildMinor, 963);
  EXPECT_EQ((std::string{version->targetTag, 4}), (std::string{version->targetTag, 2} + std::string(2, '\0')));
  EXPECT_EQ(version->libraryFileName, "zimcc" + std::string(version->targetTag) + "-7.0.dll");
  EXPECT_STREQ(version->versionText, "7.0 build 205.58");
  EXPECT_STREQ(version->buildDateText, "Apr 18 2011");
}

// ---- Rows --------------------------------------------------------------------------------------------------------

struct Block {
  Zim32s first, count;
  bool operator==(const Block&) const = default;
};

// The blocks of rows that each thread took, in the order in which it took them.
template <class Walker>
std::map<int, std::vector<Block>> blocksOf(ZimiSize size, int team) {
  teamSize = team;
  timesAskedForTeam = 0;
  std::map<int, std::vector<Block>> blocks;
  std::mutex mutex;
  Walker::run(size, [&](Zim32s first, Zim32s count) {
    const std::lock_guard lock(mutex);
    blocks[threadNumber()].push_back({first, count});
  });
  return blocks;
}

using Blocks = std::vector<Block>;

TEST(Rows, FewPixelsRunSerially) {
  // The last two have a product of 32 bits that wraps: to zero, and to a negative number.
  for (const ZimiSize size : {ZimiSize{64, 64}, {4096, 1}, {1, 4096}, {65536, 65536}, {46341, 46341}}) {
    const auto blocks = blocksOf<RowParallel>(size, 4);
    EXPECT_EQ(timesAskedForTeam, 0) << size.width << " x " << size.height;
    ASSERT_EQ(blocks.size(), 1U);
    EXPECT_EQ(blocks.at(0), (Blocks{{0, size.height}}));
  }
}

template <class Walker>
void expectContiguousBlocks(ZimiSize size, int team) {
  SCOPED_TRACE(std::to_string(size.width) + " x " + std::to_string(size.height));
  const auto blocks = blocksOf<Walker>(size, team);
  EXPECT_EQ(timesAskedForTeam, test::hasTeams() ? 1 : 0);
  if (!test::hasTeams()) team = 1;
  Zim32s next = 0;
  for (const auto& [thread, rows] : blocks) {
    for (const Block& block : rows) {
      EXPECT_EQ(block.first, next) << "thread " << thread;
      next += block.count;
    }
    const auto share = static_cast<Zim32s>(rows.size());
    EXPECT_TRUE(share == size.height / team || share == size.height / team + 1) << share << " rows in a thread";
  }
  EXPECT_EQ(next, size.height);
}

TEST(Rows, ManyPixelsAreSharedInContiguousBlocks) {
  for (const ZimiSize size : {ZimiSize{65, 64}, {1, 4097}, {4097, 1}, {4097, 3}}) {
    expectContiguousBlocks<RowParallel>(size, 4);
  }
  expectContiguousBlocks<RowParallel>({65, 64}, 1);
  expectContiguousBlocks<AlwaysParallel>({1, 1}, 4);
  expectContiguousBlocks<AlwaysParallel>({1, 7}, 3);
}

TEST(Rows, BandsTakeTheRestLast) {
  if (!test::hasTeams()) GTEST_SKIP() << "no teams in this build";
  struct Case {
    ZimiSize size;
    int team;
    std::vector<Block> bands;  // of thread 0, 1 and so on
  };
  const Case cases[] = {
      {{32, 32}, 4, {{0, 8}, {8, 8}, {16, 8}, {24, 8}}},
      {{32, 35}, 4, {{0, 8}, {8, 8}, {16, 8}, {24, 11}}},
      {{32, 35}, 1, {{0, 35}}},
      {{31, 1000}, 4, {{0, 1000}}},
      {{1000, 31}, 4, {{0, 31}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.size.width) + " x " + std::to_string(c.size.height));
    const auto blocks = blocksOf<Bands<32, 32>>(c.size, c.team);
    ASSERT_EQ(blocks.size(), c.bands.size());
    for (const auto& [thread, bands] : blocks) EXPECT_EQ(bands, Blocks{c.bands[static_cast<std::size_t>(thread)]});
  }
}

TEST(Rows, OffsetsByKindOfStep) {
  constexpr Zim32s big = 1 << 30;
  EXPECT_EQ((rowOffset<Offsets::bytes, Zim16u>(3, 7)), 21);
  EXPECT_EQ((rowOffset<Offsets::bytes, Zim16u>(3, -7)), -21);
  EXPECT_EQ((rowOffset<Offsets::bytes, Zim16u>(4, big)), std::ptrdiff_t{4} * big);
  EXPECT_EQ((rowOffset<Offsets::bytes32, Zim16u>(3, -7)), -21);
  EXPECT_EQ((rowOffset<Offsets::bytes32, Zim16u>(2, big)), std::numeric_limits<Zim32s>::min());
  EXPECT_EQ((rowOffset<Offsets::bytes32, Zim16u>(5, big)), big);
  // Whole samples, rounded down for negative steps, too.
  EXPECT_EQ((rowOffset<Offsets::elements32, Zim8u>(3, 7)), 21);
  EXPECT_EQ((rowOffset<Offsets::elements32, Zim16u>(3, 7)), 18);
  EXPECT_EQ((rowOffset<Offsets::elements32, Zim16s>(3, -7)), -24);
  EXPECT_EQ((rowOffset<Offsets::elements32, Zim32f>(3, 15)), 36);
  EXPECT_EQ((rowOffset<Offsets::elements32, Zim32f>(3, -1)), -12);
  EXPECT_EQ((rowOffset<Offsets::elements32, Zim64f>(3, 23)), 48);
  EXPECT_EQ((rowOffset<Offsets::elements32, Zim16u>(4, big)), std::ptrdiff_t{-4} * big);
  EXPECT_EQ((rowOffset<Offsets::elements32, Zim32f>(9, big)), std::ptrdiff_t{-7} * big);
}

// ---- Scratch memory ----------------------------------------------------------------------------------------------

TEST(ScratchMemory, CountsOfElements) {
  constexpr std::size_t refused = std::numeric_limits<std::size_t>::max() - 0xFFFFFFFFU;  // a 32-bit product widened
  constexpr Zim32s half = 1 << 30;
  struct Case {
    Zim32s count;
    std::vector<std::size_t> bytes16, bytes32;
  };
  const Case cases[] = {
      {std::numeric_limits<Zim32s>::min(), {}, {}},
      {-1, {}, {}},
      {0, {}, {}},
      {1, {2}, {4}},
      {65536, {131072}, {262144}},
      {half, {refused + 0x80000000U}, {std::size_t{4} * half}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.count);
    allocations.clear();
    const Scratch<Zim16u> scratch16(scratchAlloc16(c.count));
    EXPECT_EQ(allocations, c.bytes16);
    allocations.clear();
    const Scratch<Zim32u> scratch32(scratchAlloc32(c.count));
    EXPECT_EQ(allocations, c.bytes32);
    EXPECT_EQ(scratch16 != nullptr, c.count > 0 && c.count < half);
    EXPECT_EQ(scratch32 != nullptr, c.count > 0 && c.count < half);
  }
  EXPECT_EQ(allocationsAlive, 0);
}

// ---- The library on these services -------------------------------------------------------------------------------

TEST(OwnServices, LibraryAsksForTheTeam) {
  const Export& e = *catalogue::find("zimiColorToGray_64f_C3C1R");
  Image source(e.source, {32, 32}), destination(e.destination, {32, 32});
  teamSize = 3;
  timesAskedForTeam = 0;
  EXPECT_EQ(Caller(e)(Operands(e, source, destination)), zimResultOk);
  EXPECT_EQ(timesAskedForTeam, test::hasTeams() ? 1 : 0);
}

struct Use {
  const char* pattern;
  ZimiSize largestWithout, leastWith;  // scratch memory
};

// Exports that allocate, from which size on. All others but bit reduction never do.
constexpr Use kUses[] = {
    {"zimiGamma*_16u_*", {21845, 1}, {21846, 1}},
};

TEST(OwnServices, ScratchIsAskedForGivenBackAndMissed) {
  for (const Export& e : catalogue::exports()) {
    SCOPED_TRACE(e.name);
    // Bit reduction asks several times at any size; its own tests have each of them fail.
    if (test::matches(e, "zimiReduceBits_*")) continue;
    const Caller call(e);
    const auto resultAt = [&](ZimiSize size, bool failing) {
      Image source(e.source, size), destination(e.destination, size);
      source.fillRandom(3);
      destination.fillRandom(4);
      const auto before = destination.digest();
      allocations.clear();
      memoryFails = failing;
      const ZimResult result = call(Operands(e, source, destination));
      memoryFails = false;
      EXPECT_EQ(allocationsAlive, 0);
      EXPECT_EQ(destination.digest() == before, result == zimResultNoMemory);
      return result;
    };
    const auto* use = std::ranges::find_if(kUses, [&](const Use& u) { return test::matches(e, u.pattern); });
    if (use == std::end(kUses)) {
      EXPECT_EQ(resultAt({300, 80}, true), zimResultOk);
      EXPECT_TRUE(allocations.empty());
      continue;
    }
    EXPECT_EQ(resultAt(use->largestWithout, true), zimResultOk);
    EXPECT_TRUE(allocations.empty());
    EXPECT_EQ(resultAt(use->leastWith, false), zimResultOk);
    EXPECT_EQ(allocations.size(), 1U);
    EXPECT_EQ(resultAt(use->leastWith, true), zimResultNoMemory);
  }
}

}  // namespace
}  // namespace zim
