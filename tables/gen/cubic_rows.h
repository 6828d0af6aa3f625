// Tables of cubics for float functions that are evaluated in double (special/cubic_rows.h): intervals of a sixteenth of a binade,
// for each the cubic with the smallest relative error, by the exchange algorithm of Remez in MPFR.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "tables/gen/real.h"

using real_function = std::function<real(const real&)>;

struct cubic {
  double c[4];  // of x^0 to x^3
};

// Row i begins at the float of these bits; row 0 is used for everything below as well.
inline double start_of_row(int i) { return std::bit_cast<float>(0x3cf80000u + (static_cast<uint32_t>(i) << 19)); }

// The solution of a system of linear equations, each with its right side as the last number.
inline std::vector<real> solve(std::vector<std::vector<real>> m) {
  const size_t n = m.size();
  for (size_t i = 0; i < n; i++) {
    size_t pivot = i;
    for (size_t j = i + 1; j < n; j++)
      if (m[j][i].magnitude() > m[pivot][i].magnitude()) pivot = j;
    std::swap(m[i], m[pivot]);
    for (size_t j = 0; j < n; j++) {
      if (j == i) continue;
      real factor = m[j][i] / m[i][i];
      for (size_t k = i; k <= n; k++) m[j][k] = m[j][k] - factor * m[i][k];
    }
  }
  std::vector<real> x;
  for (size_t i = 0; i < n; i++) x.push_back(m[i][n] / m[i][i]);
  return x;
}

// The polynomial of so many terms whose error relative to f is smallest on [low, high]. Ends of the interval are points of the
// largest error for the functions that this is used for.
inline std::vector<real> relative_minimax(const real_function& f, int terms, const real& low, const real& high) {
  std::vector<real> points, c;
  for (int i = 0; i <= terms; i++)  // where the error of an interpolation at Chebyshev's points is largest
    points.push_back((low + high) / real(2) - (high - low) / real(2) * cos(real::pi() * real(i) / real(terms)));

  auto error = [&](const real& x) {
    real p(0);
    for (int k = terms - 1; k >= 0; k--) p = p * x + c[k];
    return p / f(x) - real(1);
  };
  const real h = (high - low) * real(0x1p-60);
  for (int round = 0; round < 6; round++) {
    std::vector<std::vector<real>> equations;
    for (int i = 0; i <= terms; i++) {
      real value = f(points[i]), power = 1;
      std::vector<real> row;
      for (int k = 0; k < terms; k++, power = power * points[i]) row.push_back(power);
      row.push_back(i % 2 ? value : -value);
      row.push_back(value);
      equations.push_back(row);
    }
    c = solve(equations);
    c.pop_back();
    for (int i = 1; i < terms; i++)  // Newton's method for the extrema between the ends
      for (int step = 0; step < 2; step++) {
        real before = error(points[i] - h), at = error(points[i]), after = error(points[i] + h);
        points[i] = points[i] - h * (after - before) / (real(2) * (after - at - at + before));
      }
  }
  return c;
}

// The cubic of row i for f; of row 0, f is an odd function of x with f(x) = slope x for the smallest, and its cubic is x times a
// polynomial, fitted up to 0.03128125.
inline cubic fit_row(const real_function& f, const real& slope, int i) {
  if (i == 0) {
    auto quotient = [&](const real& x) { return x.magnitude() == 0 ? slope : f(x) / x; };
    auto c = relative_minimax(quotient, 3, real(0), real(0.03128125));
    return {{0, c[0].to_double(), c[1].to_double(), c[2].to_double()}};
  }
  auto c = relative_minimax(f, 4, real(start_of_row(i)), real(start_of_row(i + 1)));
  return {{c[0].to_double(), c[1].to_double(), c[2].to_double(), c[3].to_double()}};
}

// How far two rows are apart on an interval, relative to the first.
inline double distance(const cubic& a, const cubic& b, double low, double high) {
  auto value = [](const cubic& row, const real& x) {
    return ((real(row.c[3]) * x + real(row.c[2])) * x + real(row.c[1])) * x + real(row.c[0]);
  };
  double largest = 0;
  for (int i = 1; i <= 256; i++) {
    real x = real(low) + real(high - low) * real(i) / real(256);
    largest = std::max(largest, ((value(b, x) - value(a, x)) / value(a, x)).magnitude());
  }
  return largest;
}

inline void print(const cubic& row) { std::printf("    %a, %a, %a, %a,\n", row.c[0], row.c[1], row.c[2], row.c[3]); }
