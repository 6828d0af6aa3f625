// Functions on whole arrays are as fast for each element as a bare loop over aligned full vectors, within 10%, or one cycle for
// each call of the entry point: the cheapest (fabs, rint ...) take four cycles a call, and where a loop lies decides whether it
// is five. Both are measured in turn, the quietest run of each counts, and runs go on until they agree or there were very many:
// only what is slow in all of them fails. ARRAYS_SPEED_TABLE=1 prints cycles per element of every function.
#include <gtest/gtest.h>
#include <x86intrin.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "tests/callers/arrays.h"

#define TABLE(NAME) extern "C" const array_function NAME[];
ARRAY_TABLES
#undef TABLE

namespace {

constexpr size_t n = 2048, calls = 4;  // elements in the first cache; calls between two readings of the clock
constexpr double limit = 1.1;
constexpr int least = 20;                           // runs of each
constexpr unsigned long long most = 1'000'000'000;  // cycles for one function

struct alignas(64) elements {
  unsigned char bytes[8 * n];
};

struct quietest {
  double cycles = std::numeric_limits<double>::infinity();  // per element
  template <class Function>
  void run(Function f, elements (&e)[4]) {
    const unsigned long long start = __rdtsc();
    for (size_t i = 0; i < calls; i++) f(&e[0], &e[1], &e[2], &e[3], n);
    cycles = std::min(cycles, static_cast<double>(__rdtsc() - start) / (n * calls));
  }
};

void compare(const char* table, const array_function& f) {
  static elements e[4];
  for (elements& argument : e)
    for (size_t i = 0; i < n; i++) {
      const double d = 0.5 + static_cast<double>(i % 97) / 200;
      if (f.lane_bytes == 4)
        reinterpret_cast<float*>(argument.bytes)[i] = static_cast<float>(d);
      else
        reinterpret_cast<double*>(argument.bytes)[i] = d;
    }
  quietest array, bare;
  const auto longest = [&] { return std::max(limit * bare.cycles, bare.cycles + 1.0 / f.lanes); };
  const unsigned long long start = __rdtsc();
  for (int run = 0; run < least || (array.cycles > longest() && __rdtsc() - start < most); run++) {
    array.run(f.array, e);
    bare.run(f.bare_loop, e);
  }
  if (std::getenv("ARRAYS_SPEED_TABLE"))
    std::printf("%-12s %-32s %6.2f %6.2f %5.2f\n", table, f.name, array.cycles, bare.cycles, array.cycles / bare.cycles);
  EXPECT_LE(array.cycles, longest()) << f.name << ", " << table;
}

TEST(ArraysSpeed, IsThatOfABareLoop) {
#define TABLE(NAME) \
  for (const array_function* f = NAME; f->name; f++) compare(#NAME, *f);
  ARRAY_TABLES
#undef TABLE
}

}  // namespace
