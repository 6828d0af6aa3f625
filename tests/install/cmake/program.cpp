// A user's program in C++, built by CMake: the same function on several types, and one with two results.
#include <cstdio>
#include <vector>
#include <vorx/array.hpp>

int main() {
  vorx::double16 x = -vorx::splat<vorx::double16>(2);
  x -= 0.5;
  x[15] = 40;
  vorx::double16 y = vorx::fabs(x);
  auto [significand, exponent] = vorx::frexp(vorx::double3{{0.75, -12, 1e300}});
  std::vector<double> z = {-1.5};
  vorx::fabs(z, z);
  std::printf("%g %g %g %g*2^%d", z[0], y[0], y[15], significand[1], exponent[1]);
}
