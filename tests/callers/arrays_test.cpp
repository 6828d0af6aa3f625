// Functions on whole arrays: the bits of every element, no byte around them, no flag from lanes that are none, at every length.
#include <gtest/gtest.h>

#include <cfenv>
#include <cstring>
#include <random>
#include <string>

#include "tests/callers/arrays.h"

// The tables, from the build: ARRAY_TABLES is TABLE(name) TABLE(name)...
#define TABLE(NAME) extern "C" const array_function NAME[];
ARRAY_TABLES
#undef TABLE

namespace {

struct table {
  const char* name;
  const array_function* functions;
};
const table tables[] = {
#define TABLE(NAME) {#NAME, NAME},
    ARRAY_TABLES
#undef TABLE
};

constexpr size_t most = 40, around = 4;  // elements
// inexact may come from lanes that are none: their results are rounded.
constexpr int flags = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW;

struct alignas(64) elements {
  unsigned char bytes[8 * (most + 2 * around)];
  unsigned char* at(const array_function& f, size_t i) { return bytes + f.lane_bytes * i; }
};

// Ordinary arguments, from 0.5 to 1, for which every function has a result; where wild, some arbitrary ones between.
void fill(elements& e, const array_function& f, bool wild, std::mt19937& bits) {
  std::uniform_real_distribution<double> ordinary(0.5, 1);
  for (size_t i = 0; i < most + 2 * around; i++) {
    const double d = ordinary(bits);
    const float s = static_cast<float>(d);
    std::memcpy(e.at(f, i), f.lane_bytes == 4 ? static_cast<const void*>(&s) : &d, f.lane_bytes);
    const uint32_t low = bits(), high = bits();
    if (wild && bits() % 5 == 0) {
      std::memcpy(e.at(f, i), &low, 4);
      std::memcpy(e.at(f, i) + f.lane_bytes - 4, &high, 4);
    }
  }
}

class Arrays : public testing::TestWithParam<table> {};

TEST_P(Arrays, GiveTheResultOfEachElementAndTouchNothingElse) {
  std::mt19937 bits(11);
  for (const array_function* at = GetParam().functions; at->name; at++) {
    const array_function& f = *at;
    for (size_t n = 0; n <= most; n++) {
      SCOPED_TRACE(std::string(f.name) + ", " + std::to_string(n) + " elements");
      for (int target = 0; target <= f.arguments; target++) {  // the place of an argument, or one of its own
        elements in[4], expected;
        for (elements& e : in) fill(e, f, n % 3 == 2 && !f.decides_for_whole_vector, bits);
        const size_t first = around - n % 4;  // every alignment that a lane has
        std::memcpy(&expected, &in[target == f.arguments ? 3 : target], sizeof expected);
        elements& out = in[target == f.arguments ? 3 : target];
        std::feclearexcept(FE_ALL_EXCEPT);
        for (size_t i = first; i < first + n; i++)
          f.one_lane(in[0].at(f, i), in[1].at(f, i), in[2].at(f, i), expected.at(f, i), 1);
        const int raised = std::fetestexcept(flags);
        std::feclearexcept(FE_ALL_EXCEPT);
        f.array(in[0].at(f, first), in[1].at(f, first), in[2].at(f, first), out.at(f, first), n);
        EXPECT_EQ(std::fetestexcept(flags), raised);
        for (size_t i = 0; i < most + 2 * around; i++)
          ASSERT_EQ(std::memcmp(out.at(f, i), expected.at(f, i), f.lane_bytes), 0) << "element " << i << " from " << first;
      }
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Tables, Arrays, testing::ValuesIn(tables), [](const auto& t) { return t.param.name; });

}  // namespace
