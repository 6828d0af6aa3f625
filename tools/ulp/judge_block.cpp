// The errors of a block of float results by their estimates, all at once: most blocks of an exhaustive run need no more.
#include <algorithm>

#include "tools/ulp/interpolate.h"
#include "tools/ulp/judge_parts.h"

namespace vorx::ulp {

// A block of NaN, of infinities or of zeros.
bool judge::take_special(uint32_t first, const results* out, const std::array<double, 2>* estimates) {
  const double e = estimates[0][0];
  const bool nan = e != e, negative = std::signbit(e), infinite = exponent_of(e) > format_.highest_exponent;
  if (entry_.native || !(nan || infinite || e == 0)) return false;
  const uint64_t wanted = (negative ? format_.sign : 0) | (infinite ? format_.infinity : 0);
  bool right = true;
  uint64_t digest = 0;
  for (uint32_t i = 0; i < block; i++) {
    const double other = estimates[i][0];
    const uint64_t got = out[i][0];
    if (nan)
      right &= other != other && format_.is_nan(got) && !format_.is_signalling(got);
    else
      right &= got == wanted && std::signbit(other) == negative &&
               (infinite ? exponent_of(other) > format_.highest_exponent && other == other : other == 0);
    digest += mix(mix(0, first + i), got);
  }
  if (!right) return false;
  tick_ += block, found.inputs += block, found.digest += digest;
  (nan ? found.nan : infinite ? found.infinite : found.zero) += block;
  return true;
}

bool judge::take_plain(uint32_t first, const results* out, const std::array<double, 2>* estimates) {
  if (tick_ / sample_every != (tick_ + block) / sample_every) return false;
  if (take_special(first, out, estimates)) return true;
  const int exponent = exponent_of(estimates[0][0]);
  const bool claims_all = claims_.max_absolute == 0 && (!entry_.native || (claimed({first}) && claimed({first + block - 1})));
  if (!claims_all || exponent <= format_.lowest_exponent || exponent >= format_.highest_exponent) return false;

  const double relative_doubt = power_of_two(-references_[0].real->quick_bits, 0.0);
  const double unit = power_of_two(exponent - format_.fraction_bits(), 0.0), doubt = relative_doubt * 0x1p24;
  const double sign = std::copysign(1 / unit, estimates[0][0]);
  const double lowest = 0x1p23 * (1 + 2 * relative_doubt), highest = 0x1p24 * (1 - 2 * relative_doubt);  // no power of two nearby
  const double ceiling = std::min(std::max(found.largest, floor) - doubt, 0x1p20);
  std::array<double, block> errors;
  bool plain = true;
  double most = 0;
  uint64_t digest = 0;
  uint32_t correct = 0;
  for (uint32_t i = 0; i < block; i++) {
    const double units = estimates[i][0] * sign, error = std::fabs(value_of<float>(out[i][0]) * sign - units);
    plain &= units >= lowest && units <= highest && error <= ceiling && std::fabs(error - 0.5) > doubt;
    most = std::max(most, error);
    errors[i] = error;
    correct += error < 0.5;
    digest += mix(mix(0, first + i), out[i][0]);
  }
  if (!plain) return false;
  tick_ += block, found.inputs += block, found.measured += block;
  found.correct += correct, found.digest += digest, found.histogram[0] += correct;
  if (correct != block)
    for (double error : errors)
      if (error > 0.5) found.histogram[bin_of(error)]++;
  float& p = found.profile[static_cast<size_t>(profile_class(entry_.type, first))];
  p = std::max(p, static_cast<float>(most));
  return true;
}

}  // namespace vorx::ulp
