// What the kernels say about themselves, as data: tools and tests look it up by entry point.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/catalogue.h"

namespace vorx {

struct claims {
  double max_ulp = 0;               // largest error in ULP; 0 where the kernel states none: the result is exact
  double max_absolute = 0;          // largest absolute error beyond the domain, where max_ulp does not hold: next to zeros
  std::vector<double> seams;        // arguments where the algorithm changes (a float kernel's are exact here)
  std::vector<double> domain;       // lowest and highest x, then y, for which max_ulp holds; empty: all
  bool by_definition = false;       // max_ulp is what the processor's estimates may be off by; this processor's may be less
  bool whole_vector = false;        // a decision concerns all lanes: a lane's last bits may depend on its neighbours
  bool has_lane_test = false;       // some lanes go to a rare-case routine
  bool every_lane_special = false;  // all lanes that exist do, and no other
  std::vector<int> in_line;         // widths at which they do not: the kernel there is right for every argument
  // The kernel's own lane test on the bits of one lane of each argument; null without a lane test.
  bool (*flags)(const uint64_t* argument_bits) = nullptr;
  // Whether such a lane sends the whole vector through the large path; null without a large path. Only there are lanes flagged.
  bool (*large)(const uint64_t* argument_bits) = nullptr;
};

// The claims of the kernel behind an entry point that exists; the same for all widths.
const claims& claims_of(const entry_point& e);

}  // namespace vorx
