// The gamma function and its logarithm in pieces, for the float kernels, which evaluate them in double.
#include "tables/gen/interpolation.h"

int main() {
  real::precision = 300;
  const real half = real(1) / real(32);
  std::puts(R"(// Made by build/tables/generate_gammaf_rows > tables/gammaf_rows.h
#pragma once

#include <array>

namespace vorx {

// Row i: coefficients of 1, d, ... d^5 of gamma(c + d), c = 1 + i/16, |d| <= 1/32.
inline constexpr std::array<double, 561 * 6> gammaf_rows = {)");
  for (int i = 0; i <= 560; i++) {
    const real c = real(1) + real(i) / real(16);
    print_row(interpolate([&](const real& d) { return gamma(c + d); }, 6, -half, half));
  }
  std::puts(R"(};

// Row i: the same of log gamma(c + d), c = i/16; around its zeros, c = 1 and c = 2, d times a polynomial. Rows 0 to 7 are not used.
inline constexpr std::array<double, 577 * 6> lgammaf_rows = {)");
  for (int i = 0; i <= 576; i++) {
    const real c = real(i) / real(16);
    std::vector<real> row(6);
    if (i == 16 || i == 32) {
      auto quotient =
          interpolate([&](const real& d) { return log_gamma(c + d) / d; }, 5, -half, half + real(0x1p-20));  // no point at d = 0
      std::copy(quotient.begin(), quotient.end(), row.begin() + 1);
    } else if (i >= 8) {
      row = interpolate([&](const real& d) { return log_gamma(c + d); }, 6, -half, half);
    }
    print_row(row);
  }
  std::puts("};\n\n}  // namespace vorx");
}
