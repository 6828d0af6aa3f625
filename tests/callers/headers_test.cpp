// What the callers' headers add to the functions (operators, ...), compiled by gcc and clang in every dialect.
#include "tests/callers/headers.h"

#include <gtest/gtest.h>

// The programs, from the build: HEADER_PROGRAMS is PROGRAM(name) PROGRAM(name)...
#define PROGRAM(NAME) extern "C" void NAME();
HEADER_PROGRAMS
#undef PROGRAM

static int faults = 0;
void headers_fault(const char* what, const char* type, int lane) {
  if (++faults <= 20) ADD_FAILURE() << what << ", lane " << lane << ", " << type;
}

namespace {

struct program {
  const char* name;
  void (*run)();
};
const program programs[] = {
#define PROGRAM(NAME) {#NAME, NAME},
    HEADER_PROGRAMS
#undef PROGRAM
};

class Headers : public testing::TestWithParam<program> {};
TEST_P(Headers, HoldWhatTheySay) {
  faults = 0;
  GetParam().run();
  EXPECT_EQ(faults, 0);
}
INSTANTIATE_TEST_SUITE_P(Programs, Headers, testing::ValuesIn(programs), [](const auto& p) { return p.param.name; });

}  // namespace
