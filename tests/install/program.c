/* A user's program in C, built by pkg-config: eight floats through the installed library. */
#include <stdio.h>
#include <vorx/array.h>

int main(void) {
  const float values[8] = {-1, 2, -3, 4, -5, 6, -7, -0.0f};
  vorx_float8 x = vorx_loadf8(values);
  float y[8];
  vorx_int8 exponent;
  vorx_float8 significand = vorx_frexpf8(x, &exponent);
  int i;
  vorx_array_fabsf(values, y, 8);
  for (i = 0; i < 8; i++) printf("%g=%g*2^%d ", (double)y[i], (double)significand.lane[i], exponent.lane[i]);
  return 0;
}
