// 2^(j/128) to twice the precision of a double: for exponentials of arguments in two parts.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_exp2_j128_pairs > tables/exp2_j128_pairs.h
// Row j: high = 2^(j/128) rounded to nearest; low = (2^(j/128) - high) / high, the relative rest.
#pragma once

namespace vorx {

struct exp2_j128_pair {
  double high, low;
};
alignas(16) inline constexpr exp2_j128_pair exp2_j128_pairs[128] = {)");
  for (int j = 0; j < 128; j++) {
    real v = exp2(real(j) / real(128));
    double high = v.to_double();
    std::printf("{%a, %a},%c", high, ((v - real(high)) / real(high)).to_double(), j % 2 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
