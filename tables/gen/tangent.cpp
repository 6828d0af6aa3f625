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
// check() holds what the series say: row 0 is tan r, row 64 is 1/r - cot r = r/3 + r^3/45 + ... up to r^2; of row 1 the constant.
#include "tables/gen/real.h"

#include <cmath>

namespace {

constexpr int terms = 6;  // Taylor coefficients 0 to 5

// Coefficients of tan(a + r) in r, from t' = 1 + t^2.
void expand_tangent(real (&c)[terms], const real& tangent) {
  c[0] = tangent;
  for (int n = 0; n + 1 < terms; n++) {
    real sum(n == 0);
    for (int i = 0; i <= n; i++) sum = sum + c[i] * c[n - i];
    c[n + 1] = sum / real(n + 1);
  }
}

// The same without the pole at pi/2: minus the coefficients d^-(n+1) of 1/(d - r), d = pi/2 - a.
void remove_pole(real (&c)[terms], const real& d) {
  real power = real(1) / d;
  for (real& coefficient : c) {
    coefficient = coefficient - power;
    power = power / d;
  }
}

float take(real& a) {  // the nearest float; a keeps the rest
  float high = a.to_float();
  a = a - real(high);
  return high;
}

struct row {
  float field[10] = {};
};

row make(int k) {
  row f;
  real a = real::pi() * real(k) / real(128), d = real::pi() * real(64 - k) / real(128);
  bool pole = k >= 32 && k < 96;

  real c[terms];
  if (k == 64) {  // -cot r + 1/r = r/3 + r^3/45 + 2 r^5/945 + ...
    c[1] = real(1) / real(3);
    c[3] = real(1) / real(45);
    c[5] = real(2) / real(945);
  } else {
    expand_tangent(c, tan(a));
    if (pole) remove_pole(c, d);
  }

  // r^5 -> 2 (sqrt 2 - 1) R^2 r^3
  real bound = real::pi() / real(255);
  c[3] = c[3] + real(2 * (std::sqrt(2.0) - 1)) * bound * bound * c[5];

  f.field[0] = take(d);
  f.field[1] = take(d);
  f.field[2] = pole;
  f.field[3] = take(c[0]);
  f.field[4] = take(c[0]);
  f.field[5] = pole ? 0.25f : 1.0f;
  f.field[6] = (c[1] - real(f.field[5])).to_float();
  f.field[7] = c[2].to_float();
  f.field[8] = c[3].to_float();
  f.field[9] = c[4].to_float();
  for (float& x : f.field)
    if (x == 0) x = 0;  // no -0
  return f;
}

void check(int k, const row& r) {
  auto field = [&](int i, float value) {
    char what[32];
    std::snprintf(what, sizeof what, "row %d, field %d", k, i);
    require(r.field[i], std::bit_cast<uint32_t>(value), what);
  };
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
  std::puts(R"(// Made by build/tables/generate_tangent > tables/tangent.h
#pragma once

namespace vorx {

// Row k, angle a = pi k / 128: pi/2 - a (high, low), selector, then the expansion of tan(a + r), in selected rows without
// its pole: constant (high, low), r (lead, rest), r^2, r^3, r^4. Two words more, because rows are loaded in 16-byte pieces.
inline constexpr float tangent_f32[128 * 10 + 2] = {)");
  for (int k = 0; k < 128; k++) {
    row r = make(k);
    check(k, r);
    std::printf("    ");
    for (int i = 0; i < 10; i++) std::printf("%af,%c", r.field[i], i < 9 ? ' ' : '\n');
  }
  std::puts("};\n\n}  // namespace vorx");
}
