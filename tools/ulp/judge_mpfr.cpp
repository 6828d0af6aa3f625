// The error of one real-valued result by MPFR.
#include <algorithm>

#include "tools/ulp/judge.h"

namespace vorx::ulp {
namespace {

constexpr mpfr_prec_t working_precision = 160;  // decides all but exact ties and their closest neighbours
constexpr mpfr_prec_t tie_precision = 2400;     // then decides; what is a tie even so is taken for one

}  // namespace

// A result that is right or wrong: NaN, infinity, zero.
double judge::special(bool right, fault f, uint64_t expected, const arguments& in, const results& out, int r) {
  if (right)
    count(0, 0, true, in, out, r);
  else
    report(f, in, out, r, expected);
  return 0;
}

// (result - exact) in units in the last place of the exact value, in difference_ and returned. An infinite result stands for the
// next power of two.
double judge::measure(uint64_t got) {
  if (format_.is_infinite(got))
    mpfr_set_si_2exp(*difference_, format_.is_negative(got) ? -1 : 1, format_.highest_exponent + 1, MPFR_RNDN);
  else
    mpfr_set_d(*difference_, as_double(entry_.type, got), MPFR_RNDN);
  mpfr_sub(*difference_, *difference_, *exact_, MPFR_RNDN);
  long exponent = mpfr_zero_p(*exact_) ? format_.lowest_exponent : mpfr_get_exp(*exact_) - 1;
  exponent = std::clamp<long>(exponent, format_.lowest_exponent, format_.highest_exponent);
  mpfr_mul_2si(*difference_, *difference_, format_.fraction_bits() - exponent, MPFR_RNDN);
  return mpfr_get_d(*difference_, MPFR_RNDN);
}

// The exact value rounded to the type.
uint64_t judge::nearest() const {
  if (entry_.type == element::f32) return bits_of(mpfr_get_flt(*exact_, MPFR_RNDN));
  return bits_of(mpfr_get_d(*exact_, MPFR_RNDN));
}

double judge::decide(const arguments& in, const results& out, int r) {
  const uint64_t got = out[r];
  const bool got_infinity = format_.is_infinite(got);
  found.by_mpfr++;
  for (int a = 0; a < entry_.of->form.argument_count(); a++) mpfr_set_d(*a_[a], number(in, a), MPFR_RNDN);
  auto evaluate = [&](mpfr_prec_t precision) {
    mpfr_set_prec(*exact_, precision);
    mpfr_set_prec(*difference_, precision + 64);
    mpfr_clear_flags();
    references_[r].real->value(*exact_, given_);
  };
  evaluate(working_precision);
  uint64_t wanted = nearest();
  const bool to_infinity = format_.is_infinite(wanted);

  if (entry_.native) {  // claims nothing about results outside the normal range
    in_claim_ = format_.is_normal(wanted);
    if (!in_claim_) return 0;
  }
  if (mpfr_nan_p(*exact_)) {
    fault f = format_.is_nan(got) ? fault::signalling_nan : fault::number_for_nan;
    return special(format_.is_nan(got) && !format_.is_signalling(got), f, wanted, in, out, r);
  }
  if (format_.is_nan(got)) return special(false, fault::nan_for_number, wanted, in, out, r);
  if (to_infinity && (got == wanted || (mpfr_inf_p(*exact_) && !mpfr_overflow_p())))
    return special(got == wanted, fault::finite_for_infinity, wanted, in, out, r);
  if (format_.is_zero(got) && (mpfr_zero_p(*exact_) || format_.is_negative(got) != format_.is_negative(wanted)))
    return special(got == wanted, fault::sign_of_zero, wanted, in, out, r);
  // What is beyond even MPFR's range came as infinity or zero: far beyond the range of the type is as good.
  if (!mpfr_regular_p(*exact_) && (mpfr_overflow_p() || mpfr_underflow_p()))
    mpfr_set_si_2exp(*exact_, format_.is_negative(wanted) ? -1 : 1, to_infinity ? 100000 : -100000, MPFR_RNDN);

  double signed_error = measure(got), error = std::fabs(signed_error);
  if (error == 0.5) {  // so near to a tie that more digits must tell
    evaluate(tie_precision);
    wanted = nearest();
    signed_error = measure(got), error = std::fabs(signed_error);
  }
  if (got_infinity != to_infinity && error > tolerated_)
    return special(false, got_infinity ? fault::infinity_for_finite : fault::finite_for_infinity, wanted, in, out, r);
  if (mpfr_regular_p(*exact_) &&
      absolutely_small(in, error, std::ldexp(1, mpfr_get_exp(*exact_) - 1 - format_.fraction_bits()))) {
    in_claim_ = false;
    return 0;
  }
  check_estimate(in, r);
  count(error, signed_error, got == wanted, in, out, r);
  return error;
}

// The estimate of this result must be within its bound.
void judge::check_estimate(const arguments& in, int r) {
  if (!can_estimate(in, r) || !mpfr_regular_p(*exact_)) return;
  long exponent = mpfr_get_exp(*exact_) - 1;
  if (exponent < format_.lowest_exponent || exponent > format_.highest_exponent) return;
  const real_reference& reference = *references_[r].real;
  int bits = entry_.type == element::f32 ? reference.quick_bits : reference.fine_bits;
  mpfr_set_ld(*difference_, entry_.type == element::f32 ? quick(in, r) : fine(in, r), MPFR_RNDN);
  mpfr_sub(*difference_, *difference_, *exact_, MPFR_RNDN);
  mpfr_div(*difference_, *difference_, *exact_, MPFR_RNDN);
  mpfr_mul_2si(*difference_, *difference_, bits, MPFR_RNDN);
  if (!(std::fabs(mpfr_get_d(*difference_, MPFR_RNDN)) <= 1)) found.estimate_breaches++;
}

}  // namespace vorx::ulp
