// The revolution tables: for each exponent the stretch of bits of 1/(2 pi) that decides the fraction of |x| / (2 pi). Row E of
// the float table is floor(2^(E - 54) / (2 pi)) mod 2^96, row E of the double table floor(2^(E - 883) / (2 pi)) mod 2^192: the
// significand, an integer, times the row has the fraction of x / (2 pi) in its upper bits, and whole revolutions fall off the
// top.
#include <gmp.h>
#include <mpfr.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

// 2^1164 / (2 pi) is the largest number whose integer part is wanted: 2600 bits leave more than 1400 behind it.
constexpr int precision = 2600;

struct span {
  uint32_t word[6];  // most significant first
};

// floor(2^exponent / (2 pi)) mod 2^(32 words)
span row(int exponent, int words) {
  mpfr_t a;
  mpfr_init2(a, precision);
  mpfr_const_pi(a, MPFR_RNDN);
  mpfr_ui_div(a, 1, a, MPFR_RNDN);
  mpfr_mul_2si(a, a, exponent - 1, MPFR_RNDN);
  mpz_t n;
  mpz_init(n);
  mpfr_get_z(n, a, MPFR_RNDD);
  span s{};
  for (int i = words; i-- > 0; mpz_fdiv_q_2exp(n, n, 32)) s.word[i] = static_cast<uint32_t>(mpz_get_ui(n));
  mpz_clear(n);
  mpfr_clear(a);
  return s;
}

void require(bool condition, const char* what) {
  if (condition) return;
  fprintf(stderr, "revolution: %s\n", what);
  exit(1);
}

}  // namespace

int main() {
  printf("// Made by build/tables/generate_revolution > tables/revolution.h\n");
  printf("#pragma once\n\n#include <cstdint>\n\nnamespace vorx {\n\n");

  printf(
      "// Row E, for biased exponent E: floor(2^(E - 54) / (2 pi)) mod 2^96, most significant word first. One word more, because "
      "rows\n");
  printf("// are loaded as 16 bytes.\n");
  printf("inline constexpr uint32_t revolution_f32[256 * 3 + 1] = {\n");
  for (int e = 0; e < 256; e++) {
    span s = row(e - 54, 3);
    if (e < 54) require(!(s.word[0] | s.word[1] | s.word[2]), "rows below 54 are zero");
    if (e == 150) require(s.word[0] == 0x28be60db && s.word[1] == 0x9391054a && s.word[2] == 0x7f09d5f4, "row 150");
    printf("    0x%08x, 0x%08x, 0x%08x,\n", s.word[0], s.word[1], s.word[2]);
  }
  printf("};\n\n");

  printf("// Row E, for biased exponent E: floor(2^(E - 883) / (2 pi)) mod 2^192, most significant word first.\n");
  printf("inline constexpr uint64_t revolution_f64[2048 * 3] = {\n");
  for (int e = 0; e < 2048; e++) {
    span s = row(e - 883, 6);
    if (e < 883) require(!(s.word[0] | s.word[1] | s.word[2] | s.word[3] | s.word[4] | s.word[5]), "rows below 883 are zero");
    if (e == 1075) require(s.word[0] == 0x28be60db && s.word[1] == 0x9391054a && s.word[2] == 0x7f09d5f4, "row 1075");
    printf("    0x%08x%08x, 0x%08x%08x, 0x%08x%08x,\n", s.word[0], s.word[1], s.word[2], s.word[3], s.word[4], s.word[5]);
  }
  printf("};\n\n}  // namespace vorx\n");
}
