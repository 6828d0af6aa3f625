/* A user's program in C, built by pkg-config: eight floats through the installed library. */
#include <stdio.h>
#include <vorx/vorx.h>

int main(void) {
  vorx_float8 x = {{-1, 2, -3, 4, -5, 6, -7, -0.0f}};
  vorx_float8 y = vorx_fabsf8(x);
  vorx_int8 exponent;
  vorx_float8 significand = vorx_frexpf8(x, &exponent);
  int i;
  for (i = 0; i < 8; i++) printf("%g=%g*2^%d ", (double)y.lane[i], (double)significand.lane[i], exponent.lane[i]);
  return 0;
}
