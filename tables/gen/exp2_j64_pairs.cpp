// 2^(j/64) to twice the precision of a double: for the scalar routines of the exponential family.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_exp2_j64_pairs > tables/exp2_j64_pairs.h
// Row j: high = 2^(j/64) rounded to nearest; low = (2^(j/64) - high) / high, the relative rest.
#pragma once

namespace vorx {

struct exp2_j64_pair {
  double high, low;
};
inline constexpr exp2_j64_pair exp2_j64_pairs[64] = {)");
  for (int j = 0; j < 64; j++) {
    real v = exp2(real(j) / real(64));
    double high = v.to_double();
    std::printf("{%a, %a},%c", high, ((v - real(high)) / real(high)).to_double(), j % 2 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
