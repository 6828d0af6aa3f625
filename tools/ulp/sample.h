// Inputs of a kernel that cannot be tried exhaustively: special values, the neighbourhood of seams, of powers of two and of the
// ends of the range, hard cases, and random ones that go where the errors are.
#pragma once

#include <random>
#include <vector>

#include "tools/claims.h"
#include "tools/ulp/number.h"

namespace vorx::ulp {

class sampler {
 public:
  // Shard s of n takes every n-th of the fixed inputs, and random inputs of its own.
  sampler(const entry_point& kernel, uint64_t seed, uint64_t shard, uint64_t shards);
  void next(std::vector<arguments>& inputs, uint64_t count);
  // The largest error of each of the inputs that next() gave: later inputs follow the errors.
  void learn(const std::vector<arguments>& inputs, const std::vector<double>& errors);

 private:
  arguments random_input();
  uint64_t random_lane(kind k);
  uint64_t random_number();
  uint64_t between_seams();
  uint64_t class_of(const arguments& in) const;
  arguments from_class(uint64_t c);
  arguments near_worst();

  entry_point kernel_;
  const float_format& format_;
  std::vector<double> seams_;
  std::vector<arguments> fixed_;
  size_t next_fixed_;
  std::mt19937_64 random_;

  std::vector<float> errors_;    // the largest by class (leading bits) of the arguments
  std::vector<double> weights_;  // by class, summed up
  uint64_t learned_ = 0;
  std::vector<std::pair<double, arguments>> worst_;
};

}  // namespace vorx::ulp
