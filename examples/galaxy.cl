// A field of Gaussian sources in plain OpenCL C: every pixel is the sum of all sources, in three colours. Nothing here knows the
// library; exp() is spelt as the standard spells it. Compiled once for each vector type, for example
// -DREAL=float -DLANES=16 -Dgalaxy=galaxy_float16.
#pragma OPENCL EXTENSION cl_khr_fp64 : enable

#define JOIN_(a, b) a##b
#define JOIN(a, b) JOIN_(a, b)
typedef JOIN(REAL, LANES) pixels;  // LANES neighbours in a row

typedef struct {
  REAL x, y;              // centre, in pixels
  REAL sharpness;         // 1 / (2 sigma^2)
  REAL red, green, blue;  // brightness
} source;

kernel void galaxy(global pixels* red, global pixels* green, global pixels* blue, global const source* sources, int count) {
  int column = (int)get_global_id(0), row = (int)get_global_id(1), columns = (int)get_global_size(0);

  union {
    pixels all;
    REAL each[LANES];
  } x;
  for (int lane = 0; lane < LANES; lane++) x.each[lane] = column * LANES + lane;

  pixels r = 0, g = 0, b = 0;
  for (int s = 0; s < count; s++) {
    pixels dx = x.all - sources[s].x;
    REAL dy = row - sources[s].y;
    pixels exponent = -sources[s].sharpness * (dx * dx + dy * dy);
    pixels light = exp(exponent < -80 ? (pixels)-80 : exponent);  // e^-80 is black enough
    r += sources[s].red * light;
    g += sources[s].green * light;
    b += sources[s].blue * light;
  }

  int at = row * columns + column;
  red[at] = r;
  green[at] = g;
  blue[at] = b;
}
