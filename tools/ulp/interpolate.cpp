#include "tools/ulp/interpolate.h"

#include <array>
#include <bit>
#include <cmath>

namespace vorx::ulp {
namespace {

constexpr int nodes = 6;
// Both ends, dense towards them; with all remainders modulo four, so that no period of the argument's last bits goes unseen.
constexpr int at[nodes] = {0, 7, 22, 41, 58, 63};
constexpr int checks[2] = {13, 52};
constexpr double agreement = 0x1p-50;  // relative

constexpr double position(int i) { return (i - 31.5) / 31.5; }  // in [-1, 1]

// Row k holds the weights of the nodes' values in the coefficient of t^k: the monomials of the Lagrange polynomials.
std::array<std::array<long double, nodes>, nodes> make_weights() {
  std::array<std::array<long double, nodes>, nodes> w{};
  for (int n = 0; n < nodes; n++) {
    std::array<long double, nodes + 1> product{1};
    long double scale = 1;
    for (int m = 0, degree = 0; m < nodes; m++) {
      if (m == n) continue;
      const long double root = (at[m] - 31.5L) / 31.5L;
      for (int k = ++degree; k > 0; k--) product[k] = product[k - 1] - root * product[k];
      product[0] *= -root;
      scale *= (at[n] - 31.5L) / 31.5L - root;
    }
    for (int k = 0; k < nodes; k++) w[k][n] = product[k] / scale;
  }
  return w;
}

bool interpolate(double (*f)(double, double), uint32_t first, double* values) {
  static const auto weights = make_weights();
  auto value = [&](int i) { return f(std::bit_cast<float>(first + static_cast<uint32_t>(i)), 0); };
  double y[nodes];
  bool same = true;
  for (int n = 0; n < nodes; n++) {
    y[n] = value(at[n]);
    if (n == 1 && !(y[0] * y[1] > 0) && std::bit_cast<uint64_t>(y[0]) != std::bit_cast<uint64_t>(y[1])) return false;
    same &= std::bit_cast<uint64_t>(y[n]) == std::bit_cast<uint64_t>(y[0]);
  }
  if (same) {  // a constant, infinity, zero or NaN
    for (int c : checks) same &= std::bit_cast<uint64_t>(value(c)) == std::bit_cast<uint64_t>(y[0]);
    if (!same) return false;
    for (int i = 0; i < block; i++) values[i] = y[0];
    return true;
  }
  double least = INFINITY, most = 0;
  for (double v : y) {
    if (!(v * y[0] > 0)) return false;
    least = std::fmin(least, std::fabs(v));
    most = std::fmax(most, std::fabs(v));
  }
  if (!(most <= 4 * least) || least < 0x1p-1000) return false;

  double c[nodes];
  for (int k = 0; k < nodes; k++) {
    long double sum = 0;
    for (int n = 0; n < nodes; n++) sum += weights[k][n] * y[n];
    c[k] = static_cast<double>(sum);
  }
  for (int i = 0; i < block; i++) {
    const double t = position(i);
    values[i] = c[0] + t * (c[1] + t * (c[2] + t * (c[3] + t * (c[4] + t * c[5]))));
  }
  for (int n : checks)
    if (const double exact = value(n); !(std::fabs(values[n] - exact) <= agreement * std::fabs(exact))) return false;
  return true;
}

// sin(x + ih) and cos(x + ih) from those of x and of the multiples of h, the distance of neighbours, which are made once for a
// binade: absolute error below 2^-51. Where that is too much for the value's size, the C library computes it.
void on_circle(const real_reference& r, uint32_t first, double* values) {
  struct multiples {
    double h = 0, sine[block], cosine[block];
  };
  thread_local multiples of;
  const double x = std::bit_cast<float>(first), h = std::bit_cast<float>(first + 1) - x;
  if (of.h != h) {
    of.h = h;
    for (int i = 0; i < block; i++) of.sine[i] = std::sin(i * h), of.cosine[i] = std::cos(i * h);
  }
  const double s = std::sin(x), c = std::cos(x);
  constexpr double smallest = 0.25;
  for (int i = 0; i < block; i++) {
    const double sine = s * of.cosine[i] + c * of.sine[i], cosine = c * of.cosine[i] - s * of.sine[i];
    const bool good = (r.circle == real_reference::cosine || std::fabs(sine) >= smallest) &&
                      (r.circle == real_reference::sine || std::fabs(cosine) >= smallest);
    values[i] = !good                                ? r.quick(std::bit_cast<float>(first + static_cast<uint32_t>(i)), 0)
                : r.circle == real_reference::sine   ? sine
                : r.circle == real_reference::cosine ? cosine
                                                     : sine / cosine;
  }
}

}  // namespace

void estimate_block(const real_reference& r, uint32_t first, double* values) {
  if (interpolate(r.quick, first, values)) return;
  if (r.circle != real_reference::no_circle && std::isfinite(std::bit_cast<float>(first + block - 1)))
    return on_circle(r, first, values);
  for (uint32_t i = 0; i < block; i++) values[i] = r.quick(std::bit_cast<float>(first + i), 0);
}

}  // namespace vorx::ulp
