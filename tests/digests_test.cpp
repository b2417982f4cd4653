// Frozen digests of what every export makes of fixed pseudo-random images, so that no later change of its results
// passes unseen. Both builds of the library have the same.
//
// ZIMCC_UPDATE_DIGESTS=1 writes the file anew.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <map>
#include <set>
#include <sstream>

#include "tests/exports.h"
#include "zimcore.h"

namespace zim::test {
namespace {

using namespace catalogue;

constexpr const char* kFile = ZIMCC_TESTS_FOLDER "/digests.txt";

std::string digestOf(const Export& e) {
  const Caller call(e);
  std::uint64_t digest = 0;
  std::uint64_t seed = 0;
  // The last is beyond every size at which an export changes its ways.
  for (const ZimiSize& asked : {ZimiSize{1, 1}, {7, 3}, {33, 5}, {257, 129}}) {
    const ZimiSize size = goodSize(e, asked);
    if (overflows(e, size)) continue;
    for (const Contents contents : kAllContents) {
      Image source(e.source, size), destination(e.destination, size);
      fill(source, contents, ++seed);
      if (e.inPlace) fill(destination, contents, seed);
      call(Operands(e, source, destination));
      digest = digest * 0x100000001b3u ^ destination.digest();
    }
  }
  std::ostringstream text;
  text << std::hex << std::setw(16) << std::setfill('0') << digest;
  return text.str();
}

TEST(Digests, AreAsFrozen) {
  std::map<std::string, std::string> digests;
  zimSetNumThreads(2);
  std::set<std::string> ofOtherTeams;
  for (const Export& e : forms()) {
    if (showsTeamSize(e) && !hasTeams()) {
      ofOtherTeams.insert(e.name);
    } else {
      digests[e.name] = digestOf(e);
    }
  }

  if (std::getenv("ZIMCC_UPDATE_DIGESTS") != nullptr) {
    std::ofstream file(kFile);
    for (const auto& [name, digest] : digests) file << name << ' ' << digest << '\n';
    ASSERT_TRUE(file.flush());
    return;
  }
  std::ifstream file(kFile);
  for (std::string name, digest; file >> name >> digest;) {
    if (ofOtherTeams.contains(name)) continue;
    const auto found = digests.find(name);
    if (found == digests.end()) {
      ADD_FAILURE() << name << " is frozen, but not exported";
      continue;
    }
    EXPECT_EQ(found->second, digest) << name;
    digests.erase(found);
  }
  for (const auto& [name, digest] : digests) ADD_FAILURE() << name << " has no frozen digest; it is " << digest;
}

}  // namespace
}  // namespace zim::test
