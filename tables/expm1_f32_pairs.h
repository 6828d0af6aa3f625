// Made by build/tables/generate_expm1_f32_pairs > tables/expm1_f32_pairs.h
// Numbers 2j, 2j + 1: the significand bits of high, the float nearest to 2^(j/64), without its exponent, for 2^m high is those
// of 2^m or-ed to them; and low, the float nearest to 2^(j/64) - high.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<float, 128> expm1_f32_pairs = {
0x0p+0f, 0x0p+0f, 0x1.64d2p-133f, -0x1.887fap-28f, 0x1.66c38p-132f, -0x1.9d4f52p-25f, 0x1.0e8a4p-131f, -0x1.e2990ep-26f,
0x1.6ab0cp-131f, 0x1.9f3122p-25f, 0x1.c7d88p-131f, -0x1.a585ccp-25f, 0x1.1301ep-130f, -0x1.fdb496p-25f, 0x1.429aap-130f, 0x1.d525bcp-25f,
0x1.72b84p-130f, -0x1.c15742p-27f, 0x1.a35bep-130f, 0x1.6df96ep-25f, 0x1.d4874p-130f, -0x1.d2e8cap-25f, 0x1.031dcp-129f, 0x1.0c519ap-25f,
0x1.1c3d3p-129f, 0x1.ceac48p-25f, 0x1.35a2bp-129f, 0x1.789f38p-26f, 0x1.4f4fp-129f, -0x1.5c0424p-25f, 0x1.6942dp-129f, 0x1.b900c2p-26f,
0x1.837fp-129f, 0x1.4636e2p-25f, 0x1.9e046p-129f, -0x1.b37d2p-25f, 0x1.b8d3ap-129f, -0x1.18aac6p-25f, 0x1.d3edap-129f, -0x1.634c02p-25f,
0x1.ef532p-129f, 0x1.824684p-25f, 0x1.058288p-128f, 0x1.f72e2ap-28f, 0x1.138218p-128f, 0x1.8624b4p-30f, 0x1.21a8bp-128f, -0x1.47d866p-25f,
0x1.2ff6b8p-128f, -0x1.593abcp-25f, 0x1.3e6cap-128f, -0x1.2c5a6cp-25f, 0x1.4d0ad8p-128f, -0x1.2c561p-25f, 0x1.5bd1dp-128f, -0x1.295b04p-25f,
0x1.6ac1f8p-128f, -0x1.5bd5ecp-27f, 0x1.79dbc8p-128f, -0x1.4a5bd6p-25f, 0x1.891fbp-128f, -0x1.f8b55p-25f, 0x1.988e2p-128f, 0x1.2a9112p-27f,
0x1.a82798p-128f, 0x1.9fcef4p-26f, 0x1.b7ec9p-128f, -0x1.cd72e8p-27f, 0x1.c7dd78p-128f, 0x1.1d8beep-25f, 0x1.d7fad8p-128f, -0x1.37b306p-25f,
0x1.e8452p-128f, -0x1.829fdp-25f, 0x1.f8bcdp-128f, -0x1.261634p-25f, 0x1.04b134p-127f, -0x1.accc7cp-26f, 0x1.0d1b34p-127f, -0x1.2edb44p-26f,
0x1.159ca8p-127f, 0x1.15506ep-27f, 0x1.1e35d4p-127f, -0x1.baa232p-26f, 0x1.26e6f8p-127f, -0x1.e64744p-25f, 0x1.2fb054p-127f, -0x1.0d8d84p-31f,
0x1.38923p-127f, 0x1.51f848p-27f, 0x1.418cdp-127f, -0x1.2886a6p-26f, 0x1.4aa078p-127f, -0x1.b83b54p-25f, 0x1.53cd6cp-127f, -0x1.50c048p-25f,
0x1.5d13f4p-127f, -0x1.a94b14p-26f, 0x1.667458p-127f, -0x1.ec3a82p-26f, 0x1.6feeep-127f, -0x1.a09438p-25f, 0x1.7983d4p-127f, -0x1.f687c6p-25f,
0x1.83337cp-127f, -0x1.3d56b2p-27f, 0x1.8cfe24p-127f, 0x1.cafa2ap-25f, 0x1.96e41cp-127f, -0x1.8837ccp-27f, 0x1.a0e5a8p-127f, 0x1.40f13p-25f,
0x1.ab031cp-127f, -0x1.822dbcp-27f, 0x1.b53ccp-127f, 0x1.ed9942p-27f, 0x1.bf92e8p-127f, -0x1.908c94p-25f, 0x1.ca05dcp-127f, 0x1.e2cffep-26f,
0x1.d495f4p-127f, 0x1.52486cp-27f, 0x1.df437cp-127f, 0x1.cc2b44p-25f, 0x1.ea0eccp-127f, -0x1.246ebp-26f, 0x1.f4f83p-127f, 0x1.9e90d8p-28f,
};

}  // namespace vorx
