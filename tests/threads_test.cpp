// Results depend neither on the size of the team nor on what other threads do.
#include <gtest/gtest.h>

#include <thread>

#include "tests/exports.h"
#include "zimcore.h"

namespace zim::test {
namespace {

using namespace catalogue;

// Beyond every size from which an export works in a team.
ZimiSize sizeOf(const Export& e) { return goodSize(e, {131, 133}); }

std::uint64_t digestOf(const Export& e, const Image& source) {
  Image destination(e.destination, sizeOf(e));
  destination.fillRandom(1);
  EXPECT_EQ(Caller(e)(Operands(e, source, destination)), resultOf(e, sizeOf(e)));
  return destination.digest();
}

Image sourceOf(const Export& e) {
  Image source(e.source, sizeOf(e));
  source.fillRandom(2);
  return source;
}

std::vector<std::uint64_t> digestsOfAll() {
  std::vector<std::uint64_t> digests;
  for (const Export& e : exports()) digests.push_back(digestOf(e, sourceOf(e)));
  return digests;
}

TEST(Threads, TeamSizeDoesNotShow) {
  for (const Export& e : exports()) {
    const Image source = sourceOf(e);
    zimSetNumThreads(1);
    const auto expected = digestOf(e, source);
    for (const int team : {2, 3, 4, 7}) {
      zimSetNumThreads(team);
      EXPECT_EQ(digestOf(e, source), expected) << e.name << " in a team of " << team;
    }
  }
  zimSetNumThreads(0);
}

TEST(Threads, CallsAtOnceDoNotMeet) {
  zimSetNumThreads(2);
  const auto expected = digestsOfAll();
  std::vector<std::uint64_t> digests[4];
  {
    std::vector<std::jthread> threads;
    for (auto& result : digests) threads.emplace_back([&result] { result = digestsOfAll(); });
  }
  for (const auto& result : digests) EXPECT_EQ(result, expected);
  zimSetNumThreads(0);
}

}  // namespace
}  // namespace zim::test
