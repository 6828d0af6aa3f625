// A real number (MPFR) with the operators that the table generators need, and the ways a table rounds it. The revolution table
// needs 2600 bits: 2^1164 / (2 pi) is the largest number whose integer part it takes, and more than 1400 bits follow. For the
// other tables 300 would do; slow generators say so.
#pragma once

#include <mpfr.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

class real {
 public:
  static inline mpfr_prec_t precision = 2600;  // of all numbers made from now on

  real(double x = 0) {
    mpfr_init2(v_, precision);
    mpfr_set_d(v_, x, MPFR_RNDN);
  }
  real(const real& x) : real() { mpfr_set(v_, x.v_, MPFR_RNDN); }
  ~real() { mpfr_clear(v_); }
  real& operator=(const real& x) {
    mpfr_set(v_, x.v_, MPFR_RNDN);
    return *this;
  }

  friend real operator+(const real& a, const real& b) { return apply(mpfr_add, a, b); }
  friend real operator-(const real& a, const real& b) { return apply(mpfr_sub, a, b); }
  friend real operator*(const real& a, const real& b) { return apply(mpfr_mul, a, b); }
  friend real operator/(const real& a, const real& b) { return apply(mpfr_div, a, b); }
  friend real operator-(const real& a) { return real(0) - a; }
  friend real log(const real& a) { return apply(mpfr_log, a); }
  friend real log2(const real& a) { return apply(mpfr_log2, a); }
  friend real log10(const real& a) { return apply(mpfr_log10, a); }
  friend real cbrt(const real& a) { return apply(mpfr_cbrt, a); }
  friend real exp(const real& a) { return apply(mpfr_exp, a); }
  friend real exp2(const real& a) { return apply(mpfr_exp2, a); }
  friend real sin(const real& a) { return apply(mpfr_sin, a); }
  friend real cos(const real& a) { return apply(mpfr_cos, a); }
  friend real tan(const real& a) { return apply(mpfr_tan, a); }
  friend real atan(const real& a) { return apply(mpfr_atan, a); }
  friend real tanh(const real& a) { return apply(mpfr_tanh, a); }
  friend real erf(const real& a) { return apply(mpfr_erf, a); }
  friend real erfc(const real& a) { return apply(mpfr_erfc, a); }
  friend real gamma(const real& a) { return apply(mpfr_gamma, a); }
  friend real log_gamma(const real& a) { return apply(mpfr_lngamma, a); }
  friend real sqrt(const real& a) { return apply(mpfr_sqrt, a); }
  friend real floor(const real& a) { return apply(mpfr_rint_floor, a); }
  static real pi() { return apply(mpfr_const_pi); }

  // The nearest double and float; the nearest multiple of 2^exponent.
  double to_double() const { return mpfr_get_d(v_, MPFR_RNDN); }
  float to_float() const { return mpfr_get_flt(v_, MPFR_RNDN); }
  float cut_to_float() const { return mpfr_get_flt(v_, MPFR_RNDZ); }
  double magnitude() const { return std::fabs(to_double()); }
  real nearest_multiple(int exponent) const {
    real r;
    mpfr_mul_2si(r.v_, v_, -exponent, MPFR_RNDN);
    mpfr_rint(r.v_, r.v_, MPFR_RNDN);
    mpfr_mul_2si(r.v_, r.v_, exponent, MPFR_RNDN);
    return r;
  }

 private:
  template <class F, class... A>
  static real apply(F f, const A&... a) {
    real r;
    f(r.v_, a.v_..., MPFR_RNDN);
    return r;
  }
  mpfr_t v_;
};

// A number of a table as it stands in C++: hexadecimal, so that it is exact.
inline void print(double x) { std::printf("%a,", x); }

// Stops the generator when a value is not these bits, or when a condition does not hold.
inline void require(double value, uint64_t bits, const char* what) {
  if (std::bit_cast<uint64_t>(value) == bits) return;
  std::fprintf(stderr, "%s: %a is %016llx, not %016llx\n", what, value,
               static_cast<unsigned long long>(std::bit_cast<uint64_t>(value)), static_cast<unsigned long long>(bits));
  std::exit(1);
}
inline void require(float value, uint32_t bits, const char* what) {
  if (std::bit_cast<uint32_t>(value) == bits) return;
  std::fprintf(stderr, "%s: %a is %08x, not %08x\n", what, value, std::bit_cast<uint32_t>(value), bits);
  std::exit(1);
}
inline void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "%s does not hold\n", what);
  std::exit(1);
}
