// erf and its derivative at multiples of 1/128, for double erf.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_erfd_tab > tables/erfd_tab.h
// Row i, r = i/128: erf r, 2/sqrt(pi) e^(-r^2), both rounded to nearest, and what the first lacks of erf r.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 769 * 3> erfd_tab = {)");
  for (int i = 0; i <= 768; i++) {
    real r = real(i) / real(128), value = erf(r);
    double head = value.to_double();
    std::printf("    ");
    print(head);
    std::printf(" ");
    print((real(2) / sqrt(real::pi()) * exp(-(r * r))).to_double());
    std::printf(" ");
    print((value - real(head)).to_double());
    std::puts("");
  }
  std::puts("};\n\n}  // namespace vorx");
}
