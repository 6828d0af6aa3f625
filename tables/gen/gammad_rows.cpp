// The gamma function and its logarithm in pieces, for the double kernels.
#include <cmath>

#include "tables/gen/interpolation.h"

int main() {
  real::precision = 300;
  std::puts(R"(// Made by build/tables/generate_gammad_rows > tables/gammad_rows.h
#pragma once

#include <array>

namespace vorx {

// gamma(c + d) = w (1 + b0 + b1 d + ... + b8 d^8): w of 26 bits, b0 ... b8. Row i to 32: c = 1 + i/32, |d| <= 1/64; from there
// on c = i/16, |d| <= 1/32.
inline constexpr std::array<double, 321 * 10> gammad_rows = {)");
  for (int i = 0; i <= 320; i++) {
    const real c = i < 32 ? real(1) + real(i) / real(32) : real(i) / real(16);
    print_row(relative_row([&](const real& d) { return gamma(c + d); }, 9, i < 32 ? 1.0 / 64 : 1.0 / 32));
  }
  std::puts(R"(};

// log gamma(x) = (x - z) w (1 + b0 + b1 d + ... + b6 d^6) with z = 1 for x < 3/2, 2 above: row i for x in
// [1 + i % 64 / 64, 1 + (i % 64 + 1) / 64) 2^(i div 64 - 1), d the distance from the middle.
inline constexpr std::array<double, 384 * 8> lgammad_rows = {)");
  for (int i = 0; i < 384; i++) {
    const double start = std::ldexp(1 + (i % 64) / 64.0, i / 64 - 1), half = std::ldexp(1, i / 64 - 8);
    const real c = start + half, z = start < 1.5 ? 1 : 2;
    print_row(relative_row([&](const real& d) { return log_gamma(c + d) / (c + d - z); }, 7, half));
  }
  std::puts("};\n\n}  // namespace vorx");
}
