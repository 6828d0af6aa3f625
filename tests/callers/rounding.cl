// The rounding words of OpenCL C, whose meaning is not that of the catalogue's words: x = (2.5, -2.5, 3.7, -3.7), n = 2^24 + 1.
kernel void ROUNDING(global const float4* x, global const int* n, global int4* r, global float* s) {
  r[0] = convert_int4(*x);
  r[1] = convert_int4_rte(*x);
  r[2] = convert_int4_rtz(*x);
  r[3] = convert_int4_rtp(*x);
  r[4] = convert_int4_rtn(*x);
  s[0] = convert_float(*n);
  s[1] = convert_float_rte(*n);
  s[2] = convert_float_rtz(*n);
  s[3] = convert_float_rtp(*n);
  s[4] = convert_float_rtn(-*n);
}
