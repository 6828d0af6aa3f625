// What every function of the catalogue must return. A result is either a real number, given by MPFR at any precision and by two
// faster estimates with a known bound, or defined bit for bit.
#pragma once

#include <functional>
#include <optional>

#include "frame/catalogue.h"
#include "tools/ulp/number.h"

namespace vorx::ulp {

// A real-valued result. Arguments are x, y, z; integer arguments are given as numbers.
struct real_reference {
  // The value, cut to r's precision (error below 4 units in its last place); special results included.
  void (*value)(mpfr_ptr r, const real* const* a);
  // The same by the C library in double and in long double precision, within 2^-bits relative. Null where there is none.
  double (*quick)(double x, double y) = nullptr;
  int quick_bits = 0;
  long double (*fine)(long double x, long double y) = nullptr;
  int fine_bits = 0;
  // Of sine and cosine, and of tangent as their quotient: makes estimates of consecutive arguments that are far apart from each
  // other by the addition theorem (interpolate.h).
  enum { no_circle, sine, cosine, tangent } circle = no_circle;
};

// A result that is defined bit for bit, for one element type. Nothing where every result is acceptable.
struct exact_reference {
  std::function<std::optional<uint64_t>(const uint64_t* arguments)> bits;
  bool nan_bits_count = false;  // otherwise any quiet NaN will do where a NaN is expected
};

struct result_reference {
  const real_reference* real = nullptr;  // or:
  exact_reference exact;
};

// The reference of result r of a function. A function without one is a mistake in this tool: it stops.
result_reference reference_of(const function& f, element type, int r);

// The two tables behind it; null or empty for functions that are not in them.
const real_reference* real_reference_of(const std::string& name, int r);
exact_reference exact_reference_of(const std::string& name, element type, int r);

}  // namespace vorx::ulp
