// References for real-valued results. The estimates are glibc's: its x87 and double functions are good to one or two units in the
// last place; the bounds below leave at least a factor of four, and every value that MPFR decides is held against them
// (judge_mpfr.cpp).
#include <map>
#include <string>

#include "tools/ulp/reference.h"

namespace vorx::ulp {
namespace {

constexpr int in_double = 49, in_long_double = 60;  // 16 units in the last place

constexpr long double pi = 3.141592653589793238462643383279502884L;

// x - 2k for the integer k that makes it smallest: exact.
template <class T>
T half_turns(T x) {
  return std::remainder(x, T(2));
}

// sin(pi x), cos(pi x): the argument of the sine is at most pi/4, so that a relative error of it is one of the result.
template <class T>
T sin_of_half_turns(T x) {
  if (!std::isfinite(x)) return x - x;
  T r = half_turns(x), q = std::nearbyint(2 * r), s = (r - q / 2) * T(pi);  // r - q/2 is exact
  int quadrant = static_cast<int>(q) & 3;
  T y = quadrant & 1 ? std::cos(s) : std::sin(s);
  if (quadrant & 2) y = -y;
  return y == 0 ? std::copysign(y, x) : y;
}
template <class T>
T cos_of_half_turns(T x) {
  if (!std::isfinite(x)) return x - x;
  T r = half_turns(x), q = std::nearbyint(2 * r), s = (r - q / 2) * T(pi);
  int quadrant = static_cast<int>(q) & 3;
  T y = quadrant & 1 ? std::sin(s) : std::cos(s);
  if (quadrant == 1 || quadrant == 2) y = -y;
  return y == 0 ? T(0) : y;
}
template <class T>
T tan_of_half_turns(T x) {
  return sin_of_half_turns(x) / cos_of_half_turns(x);
}

using value = void (*)(mpfr_ptr, const real* const*);
// Towards zero: a value just below a power of two stays below it, in the binade whose unit counts.
constexpr mpfr_rnd_t toward_zero = MPFR_RNDZ;

// A function of MPFR with one or two arguments as a `value`.
template <int (*F)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t)>
void of_x(mpfr_ptr r, const real* const* a) {
  F(r, *a[0], toward_zero);
}
template <int (*F)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t)>
void of_x_y(mpfr_ptr r, const real* const* a) {
  F(r, *a[0], *a[1], toward_zero);
}

void rsqrt(mpfr_ptr r, const real* const* a) {  // of -0: -infinity, unlike MPFR
  mpfr_rec_sqrt(r, *a[0], toward_zero);
  if (mpfr_zero_p(*a[0])) mpfr_setsign(r, r, mpfr_signbit(*a[0]), toward_zero);
}
void rcbrt(mpfr_ptr r, const real* const* a) {
  mpfr_cbrt(r, *a[0], toward_zero);
  mpfr_ui_div(r, 1, r, toward_zero);
}
void inv(mpfr_ptr r, const real* const* a) { mpfr_ui_div(r, 1, *a[0], toward_zero); }

// For x >= 0 only, and without the exceptions that make pow(1, y) and pow(x, 0) one whatever the other argument.
void powr(mpfr_ptr r, const real* const* a) {
  mpfr_srcptr x = *a[0], y = *a[1];
  bool undefined = mpfr_nan_p(x) || mpfr_nan_p(y) || mpfr_sgn(x) < 0 || (mpfr_zero_p(y) && !mpfr_regular_p(x)) ||
                   (mpfr_inf_p(y) && mpfr_cmp_ui(x, 1) == 0);
  if (undefined) return mpfr_set_nan(r);
  mpfr_pow(r, x, y, toward_zero);
  mpfr_abs(r, r, toward_zero);  // (-0)^y is +0 or +infinity
}
void pown(mpfr_ptr r, const real* const* a) { mpfr_pow_si(r, *a[0], mpfr_get_si(*a[1], toward_zero), toward_zero); }
void rootn(mpfr_ptr r, const real* const* a) {
  mpfr_srcptr x = *a[0];
  long n = mpfr_get_si(*a[1], toward_zero);
  if (n == 0 || mpfr_nan_p(x)) return mpfr_set_nan(r);
  if (n % 2 == 0 && !mpfr_zero_p(x) && mpfr_signbit(x)) return mpfr_set_nan(r);
  bool negative = n % 2 != 0 && mpfr_signbit(x);
  if (mpfr_zero_p(x) || mpfr_inf_p(x)) {
    if (mpfr_zero_p(x) == (n > 0))
      mpfr_set_zero(r, 1);
    else
      mpfr_set_inf(r, 1);
  } else {
    mpfr_rootn_si(r, x, n, toward_zero);
  }
  mpfr_setsign(r, r, negative, toward_zero);
}
void lgamma_of(mpfr_ptr r, const real* const* a) {
  int sign;
  mpfr_lgamma(r, &sign, *a[0], toward_zero);
}
void fma_of(mpfr_ptr r, const real* const* a) { mpfr_fma(r, *a[0], *a[1], *a[2], toward_zero); }
void ldexp_of(mpfr_ptr r, const real* const* a) { mpfr_mul_2si(r, *a[0], mpfr_get_si(*a[1], toward_zero), toward_zero); }

double ten_to(double x) { return ::exp10(x); }
long double ten_to(long double x) { return ::exp10l(x); }

// A reference whose estimates, in double and in long double, are one generic function; its bound is 2^doublings times the usual.
template <class Estimate>
real_reference by(value f, Estimate estimate, int doublings = 0) {
  return {f, estimate, in_double - doublings, estimate, in_long_double - doublings};
}
template <class Estimate>
real_reference on_circle(value f, Estimate estimate, decltype(real_reference::circle) which) {
  real_reference reference = by(f, estimate, which == real_reference::tangent ? 1 : 0);
  reference.circle = which;
  return reference;
}
#define VORX_C(F) [](auto x, auto) { return std::F(x); }

using row = std::map<std::string, real_reference>;
const row& table() {
  static const row functions = {
      {"exp", by(of_x<mpfr_exp>, VORX_C(exp))},
      {"exp2", by(of_x<mpfr_exp2>, VORX_C(exp2))},
      {"exp10", by(of_x<mpfr_exp10>, [](auto x, auto) { return ten_to(x); })},
      {"expm1", by(of_x<mpfr_expm1>, VORX_C(expm1))},
      {"log", by(of_x<mpfr_log>, VORX_C(log))},
      {"log2", by(of_x<mpfr_log2>, VORX_C(log2))},
      {"log10", by(of_x<mpfr_log10>, VORX_C(log10))},
      {"log1p", by(of_x<mpfr_log1p>, VORX_C(log1p))},
      {"pow", by(of_x_y<mpfr_pow>, [](auto x, auto y) { return std::pow(x, y); })},
      {"powr", by(powr, [](auto x, auto y) { return x < 0 ? decltype(x)(NAN) : std::pow(x, y); })},
      {"pown", by(pown, [](auto x, auto y) { return std::pow(x, y); })},
      {"rootn", {rootn}},
      {"sqrt", by(of_x<mpfr_sqrt>, VORX_C(sqrt))},
      {"rsqrt", by(rsqrt, [](auto x, auto) { return 1 / std::sqrt(x); })},
      {"cbrt", by(of_x<mpfr_cbrt>, VORX_C(cbrt))},
      {"rcbrt", by(rcbrt, [](auto x, auto) { return 1 / std::cbrt(x); })},
      {"inv", by(inv, [](auto x, auto) { return 1 / x; })},
      {"div", by(of_x_y<mpfr_div>, [](auto x, auto y) { return x / y; })},
      {"hypot", by(of_x_y<mpfr_hypot>, [](auto x, auto y) { return std::hypot(x, y); })},
      {"sin", on_circle(of_x<mpfr_sin>, VORX_C(sin), real_reference::sine)},
      {"cos", on_circle(of_x<mpfr_cos>, VORX_C(cos), real_reference::cosine)},
      {"tan", on_circle(of_x<mpfr_tan>, VORX_C(tan), real_reference::tangent)},
      {"sinpi", by(of_x<mpfr_sinpi>, [](auto x, auto) { return sin_of_half_turns(x); })},
      {"cospi", by(of_x<mpfr_cospi>, [](auto x, auto) { return cos_of_half_turns(x); })},
      {"tanpi", by(of_x<mpfr_tanpi>, [](auto x, auto) { return tan_of_half_turns(x); })},
      {"asin", by(of_x<mpfr_asin>, VORX_C(asin))},
      {"acos", by(of_x<mpfr_acos>, VORX_C(acos))},
      {"atan", by(of_x<mpfr_atan>, VORX_C(atan))},
      {"asinpi", by(of_x<mpfr_asinpi>, [](auto x, auto) { return std::asin(x) / decltype(x)(pi); })},
      {"acospi", by(of_x<mpfr_acospi>, [](auto x, auto) { return std::acos(x) / decltype(x)(pi); })},
      {"atanpi", by(of_x<mpfr_atanpi>, [](auto x, auto) { return std::atan(x) / decltype(x)(pi); })},
      {"atan2", by(of_x_y<mpfr_atan2>, [](auto x, auto y) { return std::atan2(x, y); })},
      {"atan2pi", by(of_x_y<mpfr_atan2pi>, [](auto x, auto y) { return std::atan2(x, y) / decltype(x)(pi); })},
      {"sinh", by(of_x<mpfr_sinh>, VORX_C(sinh))},
      {"cosh", by(of_x<mpfr_cosh>, VORX_C(cosh))},
      {"tanh", by(of_x<mpfr_tanh>, VORX_C(tanh))},
      {"asinh", by(of_x<mpfr_asinh>, VORX_C(asinh))},
      {"acosh", by(of_x<mpfr_acosh>, VORX_C(acosh))},
      {"atanh", by(of_x<mpfr_atanh>, VORX_C(atanh))},
      {"erf", by(of_x<mpfr_erf>, VORX_C(erf))},
      {"erfc", by(
                   of_x<mpfr_erfc>, [](auto x, auto) { return std::erfc(x); }, 1)},
      {"tgamma", by(
                     of_x<mpfr_gamma>, [](auto x, auto) { return std::tgamma(x); }, 2)},
      {"lgamma", by(
                     lgamma_of, [](auto x, auto) { return std::lgamma(x); }, 2)},
      {"fma", {fma_of}},
      {"ldexp", {ldexp_of}},
  };
  return functions;
}

}  // namespace

const real_reference* real_reference_of(const std::string& name, int r) {
  std::string base = name == "sincos" || name == "sincosreg" ? (r == 0 ? "sin" : "cos")
                     : name == "lgammar" && r == 0           ? "lgamma"
                                                             : name;
  auto found = table().find(base);
  return found == table().end() ? nullptr : &found->second;
}

}  // namespace vorx::ulp
