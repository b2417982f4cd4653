// The call that a benchmark times, and its time beside that of another call on as many bytes.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <string>

#include "tools/catalogue/caller.h"
#include "tools/catalogue/catalogue.h"
#include "tools/catalogue/image.h"

namespace zim::bench {

inline constexpr ZimiSize kFullHd = {1920, 1080};
inline constexpr ZimiSize kVga = {640, 480};

// One call; false if it failed.
using Call = std::function<bool()>;

// The call that is timed, and what, if anything, must go before it each time without being timed.
struct Job {
  Call run;
  std::function<void()> prepare = nullptr;
};

// An export with images for it: integers of all values, floats from 0 to below 1. An in-place export works on the
// destination, which gets the contents of the source back before every call: repeated upon its own result, a curve or a
// matrix would soon have nothing but its limits (or its infinities) before it.
class Workload {
 public:
  Workload(const catalogue::Export& e, ZimiSize size);

  // A further argument of the export, in place of the usual one.
  void set(const std::string& argument, double value) { operands_.value(argument).set({value}); }

  // The export itself, or a peer that does the same job on the same images.
  Job ours();
  Job peer(Call call);

  catalogue::Image& source() { return source_; }
  catalogue::Image& destination() { return destination_; }

  // Bytes that a call reads plus those that it writes: whole rows, since a sample that is skipped lies in a cache line
  // that is not. What is read twice counts once.
  std::size_t bytes() const;
  double megapixels() const;

 private:
  void restore();

  const catalogue::Export& export_;
  catalogue::Image source_, destination_;
  catalogue::Caller caller_;
  catalogue::Operands operands_;
};

// Medians over the rounds of a run.
struct Comparison {
  double seconds, otherSeconds;  // of one call
  double ratio;                  // speed of the first to that of the other, within a round
};

// Runs both jobs in turn, a few milliseconds each, for as long as the state asks of the first, whose time it is given.
// Throws if a call fails.
Comparison compare(benchmark::State& state, const Job& job, const Job& other);

// Registers a benchmark whose time comes from compare. What it throws becomes its error.
void add(const std::string& name, std::function<void(benchmark::State&)> body);

// "mx", "v3" or "v4": the build of the library that the loader has picked.
std::string targetTag();

// Runs what has been registered, with the library on one thread.
int runAll(int argc, char** argv);

}  // namespace zim::bench
