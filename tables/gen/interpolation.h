// Polynomials in d for pieces of a function around their centres: interpolation at Chebyshev's points, which is next to minimax
// on intervals as short as those of tables.
#pragma once

#include <cmath>
#include <functional>
#include <vector>

#include "tables/gen/real.h"

// Coefficients of 1, d, d^2, ... of the polynomial that has the values f(d) at Chebyshev's points of [low, high].
inline std::vector<real> interpolate(const std::function<real(const real&)>& f, int terms, const real& low, const real& high) {
  std::vector<real> points, divided, c(terms);
  for (int i = 0; i < terms; i++) {
    points.push_back((low + high) / real(2) + (high - low) / real(2) * cos(real::pi() * real(2 * i + 1) / real(2 * terms)));
    divided.push_back(f(points[i]));
  }
  for (int k = 1; k < terms; k++)  // Newton's divided differences
    for (int i = terms - 1; i >= k; i--) divided[i] = (divided[i] - divided[i - 1]) / (points[i] - points[i - k]);
  for (int k = terms - 1; k >= 0; k--) {  // c = c (d - point) + difference
    for (int i = terms - 1; i > 0; i--) c[i] = c[i - 1] - points[k] * c[i];
    c[0] = divided[k] - points[k] * c[0];
  }
  return c;
}

// w, b0, b1, ... of w (1 + b0 + b1 d + ...) next to f(d) on |d| <= half, w with 26 bits.
inline std::vector<real> relative_row(const std::function<real(const real&)>& f, int terms, double half) {
  const real w = f(0).nearest_multiple(std::ilogb(f(0).to_double()) - 25);
  auto row = interpolate([&](const real& d) { return f(d) / w - real(1); }, terms, real(-half), real(half));
  row.insert(row.begin(), w);
  return row;
}

inline void print_row(const std::vector<real>& c) {
  std::printf("    ");
  for (const real& a : c) print(a.to_double());
  std::puts("");
}
