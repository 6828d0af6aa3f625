// The sine-cosine tables: sine and cosine of a_k = 2 pi k / N, N = 256 for float and 512 for double. The sine is the sum of two
// numbers, Sh + Sl. The cosine is a power of two and a tail, Cl + Ct: products with the power of two are exact.
//
//   float    Cl is the power of two that is nearest to the cosine in ratio, 1 where it is 1 / sqrt 2
//   double   Cl is the power of two p with 0.75 p <= |cosine| < 1.5 p; the two rules differ on purpose
//
// The rows of multiples of a quarter revolution are exact: pi rounded to any precision would leave tiny values there.
#include "tables/gen/real.h"

#include <cmath>

namespace {

template <class T>
T nearest(const real& a) {
  if constexpr (sizeof(T) == 4)
    return a.to_float();
  else
    return a.to_double();
}

template <class T>
struct row {
  T cos_tail, cos_lead, sin_high, sin_low;
};

template <class T>
row<T> make(int k, int n) {
  if (k % (n / 4) == 0) {
    const T sine[] = {0, 1, 0, -1}, cosine[] = {1, 0, -1, 0};
    int quarter = k / (n / 4);
    return {0, cosine[quarter], sine[quarter], 0};
  }
  real a = real::pi() * real(2 * k) / real(n), s = sin(a), c = cos(a);

  row<T> r;
  double cosine = c.to_double();
  bool diagonal = k % (n / 8) == 0;
  double upper = sizeof(T) == 4 ? std::sqrt(0.5) : 0.75;  // the cosine is at least this times its lead
  double lead = 1;
  while (std::fabs(cosine) < upper * lead && !(diagonal && sizeof(T) == 4)) lead /= 2;
  r.cos_lead = static_cast<T>(std::copysign(lead, cosine));
  r.cos_tail = nearest<T>(c - real(r.cos_lead));
  r.sin_high = nearest<T>(s);
  r.sin_low = nearest<T>(s - real(r.sin_high));
  return r;
}

}  // namespace

int main() {
  std::puts(R"(// Made by build/tables/generate_sine_cosine > tables/sine_cosine.h
#pragma once

namespace vorx {

// Row k, angle 2 pi k / 256: cosine tail, sine high, sine low, cosine lead (a power of two).
alignas(16) inline constexpr float sine_cosine_f32[256][4] = {)");
  for (int k = 0; k < 256; k++) {
    auto r = make<float>(k, 256);
    if (k == 0) require(r.cos_tail == 0 && r.sin_high == 0 && r.sin_low == 0 && r.cos_lead == 1, "row 0");
    if (k == 64) require(r.cos_tail == 0 && r.sin_high == 1 && r.sin_low == 0 && r.cos_lead == 0, "row 64");
    if (k == 32) require(r.cos_lead == 1, "row 32");
    std::printf("    {%af, %af, %af, %af},\n", r.cos_tail, r.sin_high, r.sin_low, r.cos_lead);
  }
  std::puts(R"(};

// Row k, angle 2 pi k / 512: cosine tail, cosine lead (a power of two), sine high, sine low.
alignas(16) inline constexpr double sine_cosine_f64[512][4] = {)");
  for (int k = 0; k < 512; k++) {
    auto r = make<double>(k, 512);
    double cosine = std::fabs(r.cos_lead + r.cos_tail), lead = std::fabs(r.cos_lead);
    require(k % 128 == 0 || (0.75 * lead <= cosine && cosine < 1.5 * lead), "0.75 lead <= |cosine| < 1.5 lead");
    std::printf("    {%a, %a, %a, %a},\n", r.cos_tail, r.cos_lead, r.sin_high, r.sin_low);
  }
  std::puts("};\n\n}  // namespace vorx");
}
