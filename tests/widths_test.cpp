// The same argument gives the same bits at every width, in every lane, whatever its neighbours are.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "tools/invoke.h"

using namespace vorx;

TEST(Widths, Smoke) {
  for (const entry_point& e : entry_points()) {
    if (e.type != element::f32) continue;
    invoker call(e, library_symbol(e.symbol()));
    float x[16], y[16];
    for (int i = 0; i < 16; i++) x[i] = 0.5f * i - 3;
    x[0] = 100;
    const void* in[] = {x};
    void* out[] = {y};
    EXPECT_EQ(call(in, out), "") << e.symbol();
    for (int i = 0; i < e.width; i++) printf("%g ", y[i] - std::fabs(x[i]));
    printf("%s\n", e.symbol().c_str());
  }
}
