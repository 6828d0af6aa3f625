// Time, in ticks of the time stamp counter, and how many cycles of the core one tick is at the moment.
#pragma once

#include <x86intrin.h>

#include <chrono>
#include <cstdint>

namespace vorx::bench {

inline uint64_t ticks() {
  _mm_lfence();
  uint64_t t = __rdtsc();
  _mm_lfence();
  return t;
}

// Core cycles per tick: a chain of additions that depend on each other takes one cycle each. (Additions of a register: those
// of a constant may be free.)
inline double cycles_per_tick() {
  constexpr int rounds = 32, additions = 128;
  uint32_t n = rounds, one = 1, sum = 0;
  uint64_t start = ticks();
  asm volatile("1:\n\t.rept 128\n\taddl %[one], %[sum]\n\t.endr\n\tdecl %[n]\n\tjnz 1b"
               : [n] "+r"(n), [sum] "+r"(sum)
               : [one] "r"(one)
               : "cc");
  return double(rounds * additions) / double(ticks() - start);
}

inline double ticks_per_second() {
  static const double rate = [] {
    auto start = std::chrono::steady_clock::now();
    uint64_t first = ticks();
    while (std::chrono::steady_clock::now() - start < std::chrono::milliseconds(20)) {
    }
    uint64_t count = ticks() - first;
    return double(count) / std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }();
  return rate;
}

}  // namespace vorx::bench
