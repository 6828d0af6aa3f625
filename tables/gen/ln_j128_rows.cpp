// Reciprocals and logarithms of 128 points, with twice the precision of a double: for logarithms in two parts.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_ln_j128_rows > tables/ln_j128_rows.h
// Row j belongs to significands from 1 + (2j - 1)/256 to 1 + (2j + 1)/256 (row 0 begins at 1 - 1/512): 1/c = the multiple of 2^-8
// next to 1/(1 + j/128), but 1/2 in row 127, whose ln c then cancels that of 2 exactly; ln c rounded to nearest; the nearest
// multiple of 2^-42 to it and the rest. |z/c - 1| < 0.00587 for all significands z.
#pragma once

namespace vorx {

struct ln_row {
  double reciprocal, ln, hi, lo;
};
alignas(32) inline constexpr ln_row ln_j128_rows[128] = {)");
  for (int j = 0; j < 128; j++) {
    double reciprocal = j == 127 ? 0.5 : (real(1) / (real(1) + real(j) / real(128))).nearest_multiple(-8).to_double();
    real v = j == 0 ? real(0) : -log(real(reciprocal)), hi = v.nearest_multiple(-42);
    double below = (j == 0 ? 511 : 255 + 2 * j) / (j == 0 ? 512.0 : 256.0), above = (257 + 2 * j) / 256.0;
    require(-0.00587 < below * reciprocal - 1 && above * reciprocal - 1 < 0.00587, "|z/c - 1| < 0.00587");
    std::printf("{%a, %a, %a, %a},\n", reciprocal, v.to_double(), hi.to_double(), (v - hi).to_double());
  }
  std::puts("};\n\n}  // namespace vorx");
}
