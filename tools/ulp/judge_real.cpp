// The error of one real-valued result by an estimate in double or long double precision, where that settles it.
#include <algorithm>

#include "tools/ulp/judge_parts.h"

namespace vorx::ulp {
double judge::number(const arguments& in, int a) const {
  kind k = entry_.of->form.arguments[a];
  return k == kind::real ? as_double(entry_.type, in[a]) : k == kind::i32 ? static_cast<int32_t>(in[a]) : 0;
}

// The C library is trusted with special arguments where there is one argument only.
bool judge::can_estimate(const arguments& in, int r) const {
  if (!references_[r].real->quick) return false;
  if (unary_) return true;
  const shape& form = entry_.of->form;
  for (int a = 0; a < form.argument_count(); a++)
    if (form.arguments[a] == kind::real && !format_.is_normal(in[a])) return false;
  return true;
}

// Settles what the estimate can settle beyond doubt: everything but the neighbourhood of rounding boundaries, the largest error
// so far, and special results of more than one argument. Returns whether it did.
bool judge::estimate(const arguments& in, const results& out, int r, double& error) {
  const real_reference& reference = *references_[r].real;
  if (!can_estimate(in, r)) return false;
  if (entry_.type == element::f32)
    return settle<float>(quick(in, r), power_of_two(-reference.quick_bits, 0.0), in, out, r, error);
  return settle<double>(fine(in, r), power_of_two(-reference.fine_bits, 0.0), in, out, r, error);
}

double judge::quick(const arguments& in, int r) const {
  return estimates_ ? estimates_[r] : references_[r].real->quick(number(in, 0), number(in, 1));
}
long double judge::fine(const arguments& in, int r) const { return references_[r].real->fine(number(in, 0), number(in, 1)); }

template <class T, class Wide>
bool judge::settle(Wide e, double doubt, const arguments& in, const results& out, int r, double& error) {
  const uint64_t got = out[r];
  auto right = [&] {
    count(0, 0, true, in, out, r);
    error = 0;
    return true;
  };
  if (e != e) return format_.is_nan(got) && !format_.is_signalling(got) && right();
  int exponent = exponent_of(e);
  bool negative = std::signbit(e), beyond = exponent > format_.highest_exponent, subnormal = exponent < format_.lowest_exponent;
  if (entry_.native && (beyond || subnormal)) {
    in_claim_ = false;
    error = 0;
    return true;
  }
  if (beyond) return format_.is_infinite(got) && format_.is_negative(got) == negative && right();
  if (!format_.is_finite(got)) return false;
  if (format_.is_zero(got) && format_.is_negative(got) != negative) return false;
  if (e == 0) return format_.is_zero(got) && right();

  Wide per_unit = power_of_two(format_.fraction_bits() - (subnormal ? format_.lowest_exponent : exponent), Wide());
  double signed_error = static_cast<double>((static_cast<Wide>(value_of<T>(got)) - e) * per_unit);
  double magnitude = static_cast<double>(std::fabs(e) * per_unit);  // in units: from 2^23 to 2^24, or 2^52 to 2^53
  error = std::fabs(signed_error);
  if (absolutely_small(in, error, static_cast<double>(1 / per_unit))) {
    in_claim_ = false;
    error = 0;
    return true;
  }
  doubt *= magnitude;
  double most = error + doubt, least = error - doubt;
  const double lowest = power_of_two(format_.fraction_bits(), 0.0);
  const bool unit_in_doubt = !subnormal && (magnitude < lowest + doubt || magnitude > 2 * lowest - doubt);
  // The power of two nearby may be on the other side of the exact value: then the error is twice what is counted, or half of it.
  if (unit_in_doubt) (magnitude < lowest + doubt ? most *= 2 : least /= 2);
  if (least <= 0.5 && most >= 0.5) return false;
  if (exponent == format_.highest_exponent && magnitude > 2 * lowest - 1) return false;  // rounds to infinity, or nearly
  // A new largest error, by more than its ninth digit; small doubts do not show in it.
  if (most > 1.000000001 * std::max({found.largest, floor, 0.5}) && (unit_in_doubt || doubt > 1e-6)) return false;
  count(error, signed_error, error < 0.5, in, out, r);
  return true;
}

}  // namespace vorx::ulp
