// The table of double exp: 2^(j/1024), divided by the constant that its cubic is multiplied with.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_exp_f64_table > tables/exp_f64_table.h
// Entry j = 2^(j/1024) / C, rounded to nearest, for a cubic with leading coefficient 1 that approximates C e^r. C is the
// midpoint of the cubic's two lowest coefficients, which are neighbours: halfway between 0x4017fffffe3ca7af and ...b0.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 1024> exp_f64_table = {)");
  real c = (real(std::bit_cast<double>(0x4017fffffe3ca7af)) + real(std::bit_cast<double>(0x4017fffffe3ca7b0))) / real(2);
  for (int j = 0; j < 1024; j++) {
    double t = (exp2(real(j) / real(1024)) / c).to_double();
    if (j == 0) require(t, 0x3fc5555556e68764, "j = 0");
    if (j == 1023) require(t, 0x3fd551a348610137, "j = 1023");
    print(t);
    std::putchar(j % 4 == 3 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
