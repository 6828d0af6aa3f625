// The exact value of a function, from MPFR, and distances of results from it: infinite for a NaN.
#pragma once

#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vorx {

using mpfr_function = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);

// f(x) in 160 bits.
class exact_value {
 public:
  exact_value(mpfr_function f, double x) {
    mpfr_init2(x_, 53);
    mpfr_init2(y_, 160);
    mpfr_set_d(x_, x, MPFR_RNDN);
    f(y_, x_, MPFR_RNDN);
  }
  ~exact_value() { mpfr_clears(x_, y_, nullptr); }
  exact_value(const exact_value&) = delete;

  // In units of the last place that a T of the exact value's size has.
  template <class T>
  double ulp_from(T y) const {
    using limits = std::numeric_limits<T>;
    return scaled_distance(y, std::max<long>(mpfr_get_exp(y_), limits::min_exponent) - limits::digits);
  }
  double relative_distance(double y) const {
    long exponent;
    const double significand = mpfr_get_d_2exp(&exponent, y_, MPFR_RNDN);
    return scaled_distance(y, exponent) / std::fabs(significand);
  }
  template <class T>
  bool overflows() const {
    return mpfr_get_exp(y_) > std::numeric_limits<T>::max_exponent;
  }
  template <class T>
  bool subnormal() const {
    return mpfr_get_exp(y_) < std::numeric_limits<T>::min_exponent;
  }

 private:
  double scaled_distance(double y, long place) const {
    mpfr_t d;
    mpfr_init2(d, 160);
    mpfr_sub_d(d, y_, y, MPFR_RNDN);
    mpfr_mul_2si(d, d, -place, MPFR_RNDN);
    const double distance = std::fabs(mpfr_get_d(d, MPFR_RNDN));
    mpfr_clear(d);
    return std::isnan(distance) ? std::numeric_limits<double>::infinity() : distance;
  }
  mpfr_t x_, y_;
};

}  // namespace vorx
