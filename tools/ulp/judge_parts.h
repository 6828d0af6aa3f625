// What the files of the judge share.
#pragma once

#include "tools/ulp/judge.h"

namespace vorx::ulp {

inline constexpr uint64_t sample_every = 4096;   // every so many results MPFR decides anyway, which checks the estimates
inline constexpr int profile_fraction_bits = 3;  // classes of a binade in a float profile; a double one has binades only

// Mixes a lane into a digest; 32-bit arithmetic, for it happens for every input.
inline uint32_t mix(uint32_t h, uint64_t lane) {
  h = (h ^ static_cast<uint32_t>(lane)) * 0x9e3779b1;
  h = ((h ^ (h >> 15)) ^ static_cast<uint32_t>(lane >> 32)) * 0x85ebca6b;
  return h ^ (h >> 13);
}

inline int profile_class(element type, uint64_t bits) {
  return static_cast<int>(type == element::f32 ? bits >> (23 - profile_fraction_bits) : bits >> 52);
}
inline size_t bin_of(double error) {
  size_t bin = 0;
  while (error > histogram_ends[bin]) bin++;
  return bin;
}

inline int exponent_of(double x) { return static_cast<int>(std::bit_cast<uint64_t>(x) >> 52 & 0x7ff) - 1023; }
inline int exponent_of(long double x) {
  uint16_t field;
  std::memcpy(&field, reinterpret_cast<const char*>(&x) + 8, 2);
  return (field & 0x7fff) - 16383;
}
inline double power_of_two(int n, double) { return std::bit_cast<double>(static_cast<uint64_t>(n + 1023) << 52); }
inline long double power_of_two(int n, long double) { return two_to(n); }

}  // namespace vorx::ulp
