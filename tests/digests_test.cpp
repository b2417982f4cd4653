// Frozen digests of what every export makes of fixed pseudo-random images, so that no later change of its results
// passes unseen. Both builds of the library have the same.
//
// ZIMCC_UPDATE_DIGESTS=1 writes the file anew.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <map>
#include <sstream>

#include "tests/exports.h"
#include "zimcore.h"

namespace zim::test {
namespace {

using namespace catalogue;

constexpr const char* kFile = ZIMCC_TESTS_FOLDER "/digests.txt";
// Digests that differ where the C library is another; none if it has no name.
#ifdef _WIN32
constexpr const char* kFileOfPlatform = ZIMCC_TESTS_FOLDER "/digests_windows.txt";
#else
constexpr const char* kFileOfPlatform = "";
#endif

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

using Digests = std::map<std::string, std::string>;

Digests readDigests(const char* path) {
  Digests digests;
  std::ifstream file(path);
  for (std::string name, digest; file >> name >> digest;) digests[name] = digest;
  return digests;
}

TEST(Digests, AreAsFrozen) {
  zimSetNumThreads(2);
  Digests digests;
  for (const Export& e : forms()) {
    if (hasTeams() || !showsTeamSize(e)) digests[e.name] = digestOf(e);
  }
  Digests frozen = readDigests(kFile);

  if (std::getenv("ZIMCC_UPDATE_DIGESTS") != nullptr) {
    const bool ofPlatform = *kFileOfPlatform != '\0';
    std::ofstream file(ofPlatform ? kFileOfPlatform : kFile, std::ios::binary);
    for (const auto& [name, digest] : digests) {
      if (!ofPlatform || frozen[name] != digest) file << name << ' ' << digest << '\n';
    }
    ASSERT_TRUE(file.flush());
    return;
  }
  for (const auto& [name, digest] : readDigests(kFileOfPlatform)) frozen[name] = digest;
  for (const Export& e : forms()) {
    if (!hasTeams() && showsTeamSize(e)) frozen.erase(e.name);
  }
  for (const auto& [name, digest] : frozen) {
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
