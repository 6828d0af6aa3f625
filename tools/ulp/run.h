// Runs a kernel over its inputs: all of them, or a sample. Every argument is computed twice, at the width under test among other
// arguments and at four lanes beside a hostile neighbour; the bits must agree unless the kernel decides for the whole vector.
#pragma once

#include <atomic>
#include <functional>

#include "tools/ulp/call.h"
#include "tools/ulp/judge.h"

namespace vorx::ulp {

struct options {
  int width = 16;
  int threads = 2;
  uint64_t count = 1000000;  // sampled inputs
  uint64_t seed = 1;
  uint64_t stride = 1;      // exhaustive: every so many-th input
  bool exhaustive = false;  // all inputs, where there are 2^32
  bool progress = false;
  std::vector<uint64_t> interval;  // bits of both ends, if any: inputs of one argument from there only
  std::vector<arguments> extra;    // further inputs
};

extern std::atomic<bool> interrupted;  // set by SIGINT: runs stop at the next batch

struct outcome {
  statistics found;
  bool exhaustive = false;  // all 2^32 inputs were asked for
  bool complete = false;    // the run was not interrupted
  double seconds = 0;
};

// Whether all inputs of a kernel can be tried: one argument of 32 bits.
bool has_32_bits_of_input(const entry_point& e);

outcome run(const entry_point& kernel, const options& o);

// Calls one entry point at two widths and judges what comes back.
class runner {
 public:
  // An error of at least `floor` is known to occur in the run that it takes part in.
  runner(const entry_point& kernel, int width, double floor = 0);
  // errors, if given, receives the largest error of each input.
  void operator()(const std::vector<arguments>& inputs, std::vector<double>* errors = nullptr);
  // The same for blocks of 64 consecutive 32-bit arguments: those numbered first, first + stride, ...
  void blocks(uint64_t first, uint64_t count, uint64_t stride);
  statistics& found() { return judge_.found; }

 private:
  void call_among_peers(const std::vector<arguments>& inputs);
  void call_beside_hostile(const std::vector<arguments>& inputs);

  entry_point at_width_, beside_hostile_;
  bool whole_vector_;
  judge judge_;
  caller wide_, four_;
  uint32_t turn_ = 0;
  std::vector<results> among_peers_;
  std::array<std::optional<real_reference>, 2> estimates_;  // of float kernels of one argument
  std::vector<std::array<double, 2>> estimated_;
  std::vector<arguments> inputs_;
};

}  // namespace vorx::ulp
