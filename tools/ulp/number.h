// Lanes as bit patterns: what the tool moves around is always a uint64_t that holds the bits of one lane, whatever its kind.
#pragma once

#include <mpfr.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "frame/convention.h"

namespace vorx::ulp {

using arguments = std::array<uint64_t, 3>;  // bits of one lane of each argument
using results = std::array<uint64_t, 2>;    // bits of one lane of each result

// What distinguishes the two element types.
struct float_format {
  int bytes, precision, lowest_exponent, highest_exponent;  // values: 2^lowest_exponent is the smallest normal number
  uint64_t sign, infinity, quiet;                           // bits: the sign, +infinity, the bit that makes a NaN quiet

  uint64_t magnitude(uint64_t b) const { return b & (sign - 1); }
  bool is_nan(uint64_t b) const { return magnitude(b) > infinity; }
  bool is_infinite(uint64_t b) const { return magnitude(b) == infinity; }
  bool is_finite(uint64_t b) const { return magnitude(b) < infinity; }
  bool is_zero(uint64_t b) const { return magnitude(b) == 0; }
  bool is_negative(uint64_t b) const { return (b & sign) != 0; }
  bool is_signalling(uint64_t b) const { return is_nan(b) && !(b & quiet); }
  bool is_normal(uint64_t b) const { return is_finite(b) && magnitude(b) >> (precision - 1) != 0; }
  int fraction_bits() const { return precision - 1; }
  uint64_t mask() const { return sign | (sign - 1); }
};
inline constexpr float_format single{4, 24, -126, 127, 0x80000000, 0x7f800000, 0x00400000};
inline constexpr float_format twice{8, 53, -1022, 1023, 0x8000000000000000, 0x7ff0000000000000, 0x0008000000000000};
constexpr const float_format& format_of(element e) { return e == element::f32 ? single : twice; }

// Bits to and from values, by type.
template <class T>
T value_of(uint64_t b) {
  if constexpr (sizeof(T) == 4)
    return std::bit_cast<T>(static_cast<uint32_t>(b));
  else
    return std::bit_cast<T>(b);
}
template <class T>
uint64_t bits_of_value(T x) {
  if constexpr (sizeof(T) == 4)
    return std::bit_cast<uint32_t>(x);
  else
    return std::bit_cast<uint64_t>(x);
}
// A number of either type as a double: exact for all but signalling NaNs, which become quiet.
inline double as_double(element e, uint64_t b) { return e == element::f32 ? value_of<float>(b) : value_of<double>(b); }

// 2^n, also beyond double's range; n within long double's.
inline long double two_to(int n) {
  long double x = 1;
  uint16_t exponent = static_cast<uint16_t>(n + 16383);
  std::memcpy(reinterpret_cast<char*>(&x) + 8, &exponent, 2);
  return x;
}

// A variable of MPFR that cleans up after itself.
class real {
 public:
  explicit real(mpfr_prec_t precision) { mpfr_init2(v_, precision); }
  ~real() { mpfr_clear(v_); }
  real(const real&) = delete;
  real& operator=(const real&) = delete;
  operator mpfr_ptr() { return v_; }
  operator mpfr_srcptr() const { return v_; }

 private:
  mpfr_t v_;
};

// What a lane holds, for people: its bits, and the number they stand for.
std::string bits_text(uint64_t bits, int bytes);
std::string value_text(kind k, element e, uint64_t bits);
// What people write for a lane: bits (0x...) or a number, hexadecimal or decimal. Nothing if it is neither.
std::optional<uint64_t> lane_of(const std::string& text, kind k, element e);

}  // namespace vorx::ulp
