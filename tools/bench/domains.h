// The arguments that a function is measured on: where ordinary programs call it, on the path that nearly all lanes take.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "frame/catalogue.h"

namespace vorx::bench {

struct domain {
  enum spread { even, logarithmic } how = even;
  double low = -10, high = 10;
};

// One domain for each argument of a function.
std::array<domain, 3> domains_of(const function& f);

// `lanes` lanes of each argument, in the function's domains: the bits of the lanes, argument by argument. The same in each run.
using lane_bytes_of_arguments = std::array<std::vector<unsigned char>, 3>;
lane_bytes_of_arguments ordinary_arguments(const function& f, element e, int lanes);

// Arguments that may take a lane from the ordinary path, the likeliest first.
struct unusual {
  const char* name;
  double value;
};
extern const std::array<unusual, 6> unusual_arguments;

}  // namespace vorx::bench
