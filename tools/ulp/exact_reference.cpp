// References for results that are defined bit for bit: selections, roundings, remainders, fields of a number, conversions. They
// are written with the C library and long double arithmetic (which holds every double and every 64-bit integer), on bits where a
// NaN passes through, and share nothing with the kernels.
#include <cfenv>
#include <climits>
#include <limits>
#include <map>
#include <string>

#include "tools/ulp/reference.h"

namespace vorx::ulp {
namespace {

using bits = std::optional<uint64_t>;

template <class T>
struct exactly {
  static constexpr const float_format& format = format_of(element_of<T>);
  static T value(uint64_t b) { return value_of<T>(b); }
  static uint64_t of(T x) { return bits_of(x); }
  static uint64_t of_int(int n) { return static_cast<uint32_t>(n); }
  static uint64_t nan() { return format.infinity | format.quiet; }

  // ---- rounding to integral values ----
  template <T (*F)(T)>
  static bits rounded(const uint64_t* a) {
    return of(F(value(a[0])));
  }
  static bits fract(const uint64_t* a) {
    T x = value(a[0]), below_one = std::nextafter(T(1), T(0));
    if (std::isinf(x)) return of(std::copysign(T(0), x));
    return x == 0 || x != x ? a[0] : of(std::fmin(x - std::floor(x), below_one));
  }
  static bits modf_fraction(const uint64_t* a) {
    T x = value(a[0]);
    if (std::isinf(x)) return of(std::copysign(T(0), x));
    T f = x - std::trunc(x);
    return of(f == 0 ? T(0) : f);  // +0 for every integer, negative ones and -0 too
  }
  static bits modf_integer(const uint64_t* a) { return of(std::trunc(value(a[0]))); }

  // ---- fields ----
  static bits significand(const uint64_t* a) {
    int e;
    return of(std::frexp(value(a[0]), &e));
  }
  static bits exponent(const uint64_t* a) {
    int e = 0;
    if (format.is_finite(a[0])) static_cast<void>(std::frexp(value(a[0]), &e));
    return of_int(e);
  }
  static bits ilogb(const uint64_t* a) {
    if (format.is_zero(a[0])) return of_int(INT_MIN);
    return of_int(format.is_finite(a[0]) ? std::ilogb(value(a[0])) : INT_MAX);
  }
  static bits logb(const uint64_t* a) {
    if (!format.is_finite(a[0])) return format.magnitude(a[0]);  // the NaN that came, without its sign
    return of(std::logb(value(a[0])));
  }

  // ---- selections: a NaN passes with its bits ----
  static bits fabs(const uint64_t* a) { return format.magnitude(a[0]); }
  static bits copysign(const uint64_t* a) { return format.magnitude(a[0]) | (a[1] & format.sign); }
  static bits nan_code(const uint64_t* a) { return nan() | a[0]; }
  static std::optional<bits> other_of_nan(const uint64_t* a) {  // y where x is NaN, x where y is; y of two
    if (format.is_nan(a[0])) return a[1];
    if (format.is_nan(a[1])) return a[0];
    return {};
  }
  static bits fmax(const uint64_t* a) {
    if (auto n = other_of_nan(a)) return *n;
    return value(a[0]) > value(a[1]) ? a[0] : a[1];  // of zeros: y
  }
  static bits fmin(const uint64_t* a) {
    if (auto n = other_of_nan(a)) return *n;
    return value(a[0]) < value(a[1]) ? a[0] : a[1];
  }
  static bits maxmag(const uint64_t* a) {
    if (auto n = other_of_nan(a)) return *n;
    uint64_t x = format.magnitude(a[0]), y = format.magnitude(a[1]);
    if (x != y) return x > y ? a[0] : a[1];
    return value(a[1]) > value(a[0]) ? a[1] : a[0];  // of zeros: x
  }
  static bits minmag(const uint64_t* a) {
    if (auto n = other_of_nan(a)) return *n;
    uint64_t x = format.magnitude(a[0]), y = format.magnitude(a[1]);
    if (x != y) return x < y ? a[0] : a[1];
    return value(a[1]) < value(a[0]) ? a[1] : a[0];
  }
  static bits fdim(const uint64_t* a) {
    if (format.is_nan(a[1])) return a[1];
    if (format.is_nan(a[0])) return a[0];
    return value(a[1]) < value(a[0]) ? of(value(a[0]) - value(a[1])) : 0;
  }
  static bits nextafter(const uint64_t* a) {
    if (format.is_nan(a[0]) || format.is_nan(a[1])) return nan();
    return of(std::nextafter(value(a[0]), value(a[1])));
  }

  // ---- arithmetic ----
  static bits mad(const uint64_t* a) {
    volatile T product = value(a[0]) * value(a[1]);  // rounded: never fused
    return of(product + value(a[2]));
  }
  static bits fmod(const uint64_t* a) { return of(std::fmod(value(a[0]), value(a[1]))); }
  static bits remainder(const uint64_t* a) { return of(std::remainder(value(a[0]), value(a[1]))); }
  // The low 31 bits of |x/y| rounded to nearest even, with the sign of x/y; 0 where the remainder is NaN.
  static bits quotient(const uint64_t* a) {
    T x = value(a[0]), y = value(a[1]);
    if (!format.is_finite(a[0]) || format.is_nan(a[1]) || y == 0) return 0;
    if (std::isinf(y)) return 0;
    real u(64), v(64), r(64);
    mpfr_set_d(u, x, MPFR_RNDN);
    mpfr_set_d(v, y, MPFR_RNDN);
    mpz_t n, m, k;
    mpz_inits(n, m, k, nullptr);
    // x = n 2^e and y = m 2^f with integers; the quotient of n 2^(e-f) and m, or of n and m 2^(f-e).
    long e = mpfr_zero_p(u) ? 0 : mpfr_get_z_2exp(n, u), f = mpfr_get_z_2exp(m, v);
    if (e >= f)
      mpz_mul_2exp(n, n, static_cast<unsigned long>(e - f));
    else
      mpz_mul_2exp(m, m, static_cast<unsigned long>(f - e));
    mpz_abs(n, n);
    mpz_abs(m, m);
    mpz_tdiv_qr(k, n, n, m);
    mpz_mul_2exp(n, n, 1);
    int half = mpz_cmp(n, m);
    if (half > 0 || (half == 0 && mpz_odd_p(k))) mpz_add_ui(k, k, 1);
    uint32_t low = static_cast<uint32_t>(mpz_get_ui(k)) & 0x7fffffff;
    mpz_clears(n, m, k, nullptr);
    return std::signbit(x) != std::signbit(y) ? static_cast<uint32_t>(-low) : low;
  }
  // The sign of the gamma function: 0 at its poles; open for -infinity and NaN.
  static bits gamma_sign(const uint64_t* a) {
    T x = value(a[0]);
    if (std::isnan(x) || (std::isinf(x) && x < 0)) return {};
    if (x == 0 || (x < 0 && x == std::floor(x))) return 0;
    return of_int(x > 0 || std::fmod(std::floor(x), T(2)) == 0 ? 1 : -1);
  }
};

struct row {
  bits (*f32)(const uint64_t*);
  bits (*f64)(const uint64_t*);
  bool nan_bits_count = false;
};
#define VORX_BOTH(F) exactly<float>::F, exactly<double>::F
#define VORX_ROUNDED(F) exactly<float>::rounded<F##f>, exactly<double>::rounded<F>

const std::map<std::string, row>& table(int r) {
  static const std::map<std::string, row> first = {
      {"ceil", {VORX_ROUNDED(::ceil)}},
      {"floor", {VORX_ROUNDED(::floor)}},
      {"round", {VORX_ROUNDED(::round)}},
      {"trunc", {VORX_ROUNDED(::trunc)}},
      {"rint", {VORX_ROUNDED(::rint)}},
      {"nearbyint", {VORX_ROUNDED(::nearbyint)}},
      {"fract", {VORX_BOTH(fract)}},
      {"modf", {VORX_BOTH(modf_fraction)}},
      {"frexp", {VORX_BOTH(significand)}},
      {"ilogb", {VORX_BOTH(ilogb)}},
      {"logb", {VORX_BOTH(logb), true}},
      {"fabs", {VORX_BOTH(fabs), true}},
      {"copysign", {VORX_BOTH(copysign), true}},
      {"fmax", {VORX_BOTH(fmax), true}},
      {"fmin", {VORX_BOTH(fmin), true}},
      {"maxmag", {VORX_BOTH(maxmag), true}},
      {"minmag", {VORX_BOTH(minmag), true}},
      {"fdim", {VORX_BOTH(fdim), true}},
      {"fmod", {VORX_BOTH(fmod)}},
      {"remainder", {VORX_BOTH(remainder)}},
      {"nextafter", {VORX_BOTH(nextafter)}},
      {"remquo", {VORX_BOTH(remainder)}},
      {"mad", {VORX_BOTH(mad)}},
      {"nan", {VORX_BOTH(nan_code), true}},
  };
  static const std::map<std::string, row> second = {
      {"fract", {VORX_ROUNDED(::floor)}}, {"modf", {VORX_BOTH(modf_integer)}},  {"frexp", {VORX_BOTH(exponent)}},
      {"remquo", {VORX_BOTH(quotient)}},  {"lgammar", {VORX_BOTH(gamma_sign)}},
  };
  return r == 0 ? first : second;
}

// ---- conversions ----

struct conversion {
  bool to_integer, is_signed, is_wide, saturates;
  int direction;  // of <cfenv>
};

long double round_to_integer(long double x, int direction) {
  const long double nearest = std::rint(x);  // by far the fastest of the C library's roundings
  const bool down = direction == FE_DOWNWARD || (direction == FE_TOWARDZERO && x > 0);
  const bool up = direction == FE_UPWARD || (direction == FE_TOWARDZERO && x < 0);
  if (down && nearest > x) return nearest - 1;
  if (up && nearest < x) return nearest + 1;
  return nearest;
}

bits to_integer(const conversion& c, const float_format& f, uint64_t source) {
  const int size = c.is_wide ? 64 : 32;
  const uint64_t lowest = 1ull << (size - 1), all = c.is_wide ? ~0ull : 0xffffffffull;
  const uint64_t highest = c.is_signed ? lowest - 1 : all;
  const bool negative = f.is_negative(source);
  if (f.is_nan(source)) {
    if (!c.saturates) return lowest;
    return !c.is_signed && !c.is_wide && !negative ? all : 0;  // only the 32-bit unsigned conversions look at a NaN's sign
  }
  long double r = round_to_integer(f.bytes == 4 ? value_of<float>(source) : value_of<double>(source), c.direction);
  if (!c.is_signed && !c.saturates) r = std::fabs(r);  // the conversion of the magnitude
  const long double limit = two_to(c.is_signed ? size - 1 : size);
  if (r >= limit) return c.saturates ? highest : lowest;
  if (c.is_signed ? r < -limit : r < 0) return c.saturates && !c.is_signed ? 0 : lowest;
  uint64_t n = static_cast<uint64_t>(std::fabs(r));
  return (r < 0 ? 0 - n : n) & all;
}

// Every source is exact in a long double; where rounding to nearest went to the wrong side, the neighbour is right.
template <class T>
uint64_t rounded_from(long double exact, int direction) {
  const T nearest = static_cast<T>(exact), infinity = std::numeric_limits<T>::infinity();
  const bool above = nearest > exact, below = nearest < exact;
  const bool to_zero = direction == FE_TOWARDZERO;
  if (above && (direction == FE_DOWNWARD || (to_zero && exact > 0))) return bits_of(std::nextafter(nearest, -infinity));
  if (below && (direction == FE_UPWARD || (to_zero && exact < 0))) return bits_of(std::nextafter(nearest, infinity));
  return bits_of(nearest);
}

bits from_integer(const conversion& c, const float_format& f, uint64_t source) {
  const int64_t extended = c.is_wide ? static_cast<int64_t>(source) : static_cast<int32_t>(source);
  const long double exact = c.is_signed ? static_cast<long double>(extended) : static_cast<long double>(source);
  return f.bytes == 4 ? rounded_from<float>(exact, c.direction) : rounded_from<double>(exact, c.direction);
}

std::optional<conversion> parse(const std::string& name) {
  auto has = [&](const char* word) { return name.find(word) != std::string::npos; };
  if (name.compare(0, 3, "cvt") != 0) return {};
  conversion c{};
  c.to_integer = name.compare(0, 7, "cvtfpto") == 0;
  c.is_signed = has("toi") || has("cvti");
  c.is_wide = has("64");
  c.saturates = has("sat") && !has("nosat");
  c.direction = has("down") ? FE_DOWNWARD : has("up") ? FE_UPWARD : has("rtz") ? FE_TOWARDZERO : FE_TONEAREST;
  return c;
}

}  // namespace

exact_reference exact_reference_of(const std::string& name, element type, int r) {
  const float_format& f = format_of(type);
  if (auto c = parse(name)) {
    if (c->to_integer) return {[c = *c, &f](const uint64_t* a) { return to_integer(c, f, a[0]); }};
    return {[c = *c, &f](const uint64_t* a) { return from_integer(c, f, a[0]); }};
  }
  auto found = table(r).find(name);
  if (found == table(r).end()) return {};
  const row& e = found->second;
  return {type == element::f32 ? e.f32 : e.f64, e.nan_bits_count};
}

}  // namespace vorx::ulp
