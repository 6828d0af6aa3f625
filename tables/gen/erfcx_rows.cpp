// e^(x^2) erfc(x) in pieces, for erfc. With u = x + 1/2, every binade of u has 64 pieces of the same length.
#include <cmath>

#include "tables/gen/interpolation.h"

namespace {

constexpr int rows = 5 * 64 + 47;  // to u = 27.75
double start(int i) { return std::ldexp(1 + (i % 64) / 64.0, i / 64 - 1) - 0.5; }

real scaled_erfc(const real& x) { return exp(x * x) * erfc(x); }

}  // namespace

int main() {
  real::precision = 300;
  std::puts(R"(// Made by build/tables/generate_erfcx_rows > tables/erfcx_rows.h
// Row i: e^(x^2) erfc(x) for x + 1/2 in [1 + i % 64 / 64, 1 + (i % 64 + 1) / 64) 2^(i div 64 - 1), around the middle, where d = 0.
#pragma once

#include <array>

namespace vorx {

// w (1 + b0 + b1 d + ... + b6 d^6): w of 26 bits, b0 ... b6.
inline constexpr std::array<double, 367 * 8> erfcx_rows = {)");
  std::vector<std::vector<real>> cubics;
  for (int i = 0; i < rows; i++) {
    const double middle = (start(i) + start(i + 1)) / 2, half = (start(i + 1) - start(i)) / 2;
    auto f = [&](const real& d) { return scaled_erfc(real(middle) + d); };
    print_row(relative_row(f, 7, half));
    cubics.push_back(interpolate(f, 4, real(-half), real(half)));
  }
  std::puts(R"(};

// c0 + c1 d + c2 d^2 + c3 d^3.
inline constexpr std::array<double, 367 * 4> erfcx_cubics = {)");
  for (const auto& row : cubics) print_row(row);
  std::puts("};\n\n}  // namespace vorx");
}
