// The sine-cosine tables: sine and cosine of a_k = 2 pi k / N, N = 256 for float and 512 for double. The sine is the sum of two
// numbers, Sh + Sl. The cosine is a power of two and a tail, Cl + Ct: products with the power of two are exact.
//
//   float    Cl is the power of two that is nearest to the cosine in ratio, 1 where it is 1 / sqrt 2
//   double   Cl is the power of two p with 0.75 p <= |cosine| < 1.5 p; the two rules differ on purpose
//
// The rows of multiples of a quarter revolution are exact: pi rounded to any precision would leave tiny values there.
#include <mpfr.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int precision = 400;

void require(bool condition, const char* what) {
  if (condition) return;
  fprintf(stderr, "sine_cosine: %s\n", what);
  exit(1);
}

template <class T>
T nearest(mpfr_t a) {
  if constexpr (sizeof(T) == 4)
    return mpfr_get_flt(a, MPFR_RNDN);
  else
    return mpfr_get_d(a, MPFR_RNDN);
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
  mpfr_t a, s, c;
  mpfr_inits2(precision, a, s, c, nullptr);
  mpfr_const_pi(a, MPFR_RNDN);
  mpfr_mul_si(a, a, 2 * k, MPFR_RNDN);
  mpfr_div_si(a, a, n, MPFR_RNDN);
  mpfr_sin_cos(s, c, a, MPFR_RNDN);

  row<T> r;
  double magnitude = std::fabs(mpfr_get_d(c, MPFR_RNDN));
  bool diagonal = k % (n / 8) == 0;
  double upper = sizeof(T) == 4 ? std::sqrt(0.5) : 0.75;  // the cosine is at least this times its lead
  double lead = 1;
  while (magnitude < upper * lead && !(diagonal && sizeof(T) == 4)) lead /= 2;
  r.cos_lead = static_cast<T>(mpfr_sgn(c) < 0 ? -lead : lead);
  mpfr_sub_d(c, c, r.cos_lead, MPFR_RNDN);
  r.cos_tail = nearest<T>(c);
  r.sin_high = nearest<T>(s);
  mpfr_sub_d(s, s, r.sin_high, MPFR_RNDN);
  r.sin_low = nearest<T>(s);
  mpfr_clears(a, s, c, nullptr);
  return r;
}

}  // namespace

int main() {
  printf("// Made by build/tables/generate_sine_cosine > tables/sine_cosine.h\n");
  printf("#pragma once\n\nnamespace vorx {\n\n");

  printf("// Row k, angle 2 pi k / 256: cosine tail, sine high, sine low, cosine lead (a power of two).\n");
  printf("alignas(16) inline constexpr float sine_cosine_f32[256][4] = {\n");
  for (int k = 0; k < 256; k++) {
    auto r = make<float>(k, 256);
    if (k == 0) require(r.cos_tail == 0 && r.sin_high == 0 && r.sin_low == 0 && r.cos_lead == 1, "row 0");
    if (k == 64) require(r.cos_tail == 0 && r.sin_high == 1 && r.sin_low == 0 && r.cos_lead == 0, "row 64");
    if (k == 32) require(r.cos_lead == 1, "row 32");
    printf("    {%af, %af, %af, %af},\n", r.cos_tail, r.sin_high, r.sin_low, r.cos_lead);
  }
  printf("};\n\n");

  printf("// Row k, angle 2 pi k / 512: cosine tail, cosine lead (a power of two), sine high, sine low.\n");
  printf("alignas(16) inline constexpr double sine_cosine_f64[512][4] = {\n");
  for (int k = 0; k < 512; k++) {
    auto r = make<double>(k, 512);
    double cosine = std::fabs(r.cos_lead + r.cos_tail), lead = std::fabs(r.cos_lead);
    require(k % 128 == 0 || (0.75 * lead <= cosine && cosine < 1.5 * lead), "lead");
    printf("    {%a, %a, %a, %a},\n", r.cos_tail, r.cos_lead, r.sin_high, r.sin_low);
  }
  printf("};\n\n}  // namespace vorx\n");
}
