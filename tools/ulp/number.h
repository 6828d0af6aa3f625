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

#include "tools/float_format.h"

namespace vorx::ulp {

using arguments = std::array<uint64_t, 3>;  // bits of one lane of each argument
using results = std::array<uint64_t, 2>;    // bits of one lane of each result

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
