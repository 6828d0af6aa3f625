// Made by build/tables/generate_log1pf_tab > tables/log1pf_tab.h
// Row j - 128, j = 128, ..., 256: hi, lo with hi + lo = -ln(j/256) - 127 (ln2_hi + ln2_lo), the two parts of ln 2 as the
// kernel has them, so that adding E ln 2 with the biased exponent E = 127 takes the bias back exactly. -ln(j/256) is its
// nearest multiple of 2^-15 in hi and the nearest multiple of 2^-34 of the rest in lo: both sums with E ln 2 are exact.
#pragma once

namespace vorx {

struct alignas(8) log1pf_row {
  float hi, lo;
};
alignas(16) inline constexpr log1pf_row log1pf_tab[129] = {
{-0x1.5d587p+6f, -0x1.797e1p-13f}, {-0x1.5d6068p+6f, -0x1.79d2ep-13f},
{-0x1.5d685p+6f, -0x1.7c20dp-13f}, {-0x1.5d7028p+6f, -0x1.82565p-13f},
{-0x1.5d77fp+6f, -0x1.8e568p-13f}, {-0x1.5d7fbp+6f, -0x1.61f9bp-13f},
{-0x1.5d8758p+6f, -0x1.7f0d7p-13f}, {-0x1.5d8ef8p+6f, -0x1.67552p-13f},
{-0x1.5d9688p+6f, -0x1.5c8a1p-13f}, {-0x1.5d9e08p+6f, -0x1.605bep-13f},
{-0x1.5da578p+6f, -0x1.7470dp-13f}, {-0x1.5dacd8p+6f, -0x1.9a65fp-13f},
{-0x1.5db43p+6f, -0x1.93cf68p-13f}, {-0x1.5dbb8p+6f, -0x1.6238dp-13f},
{-0x1.5dc2b8p+6f, -0x1.872558p-13f}, {-0x1.5dc9e8p+6f, -0x1.840ff8p-13f},
{-0x1.5dd108p+6f, -0x1.9a6bdp-13f}, {-0x1.5dd82p+6f, -0x1.8ba448p-13f},
{-0x1.5ddf28p+6f, -0x1.991d4p-13f}, {-0x1.5de628p+6f, -0x1.843358p-13f},
{-0x1.5ded18p+6f, -0x1.8e3c18p-13f}, {-0x1.5df4p+6f, -0x1.788618p-13f},
{-0x1.5dfad8p+6f, -0x1.84594p-13f}, {-0x1.5e01a8p+6f, -0x1.72f6f8p-13f},
{-0x1.5e0868p+6f, -0x1.859a38p-13f}, {-0x1.5e0f2p+6f, -0x1.7d77d8p-13f},
{-0x1.5e15c8p+6f, -0x1.9bbe9p-13f}, {-0x1.5e1c7p+6f, -0x1.619758p-13f},
{-0x1.5e23p+6f, -0x1.902548p-13f}, {-0x1.5e299p+6f, -0x1.688608p-13f},
{-0x1.5e301p+6f, -0x1.6bd1bp-13f}, {-0x1.5e368p+6f, -0x1.9b1b18p-13f},
{-0x1.5e3cfp+6f, -0x1.776ff8p-13f}, {-0x1.5e435p+6f, -0x1.81d8ep-13f},
{-0x1.5e49a8p+6f, -0x1.7b5998p-13f}, {-0x1.5e4ff8p+6f, -0x1.64f108p-13f},
{-0x1.5e5638p+6f, -0x1.7f9968p-13f}, {-0x1.5e5c7p+6f, -0x1.8c4868p-13f},
{-0x1.5e62ap+6f, -0x1.8bef48p-13f}, {-0x1.5e68c8p+6f, -0x1.7f7ae8p-13f},
{-0x1.5e6ee8p+6f, -0x1.67d3ep-13f}, {-0x1.5e74f8p+6f, -0x1.85decp-13f},
{-0x1.5e7bp+6f, -0x1.9a7bf8p-13f}, {-0x1.5e8108p+6f, -0x1.6688p-13f},
{-0x1.5e87p+6f, -0x1.6adb8p-13f}, {-0x1.5e8cfp+6f, -0x1.684b58p-13f},
{-0x1.5e92d8p+6f, -0x1.5fa8cp-13f}, {-0x1.5e98bp+6f, -0x1.91c15p-13f},
{-0x1.5e9e88p+6f, -0x1.7f5f18p-13f}, {-0x1.5ea458p+6f, -0x1.6948c8p-13f},
{-0x1.5eaa18p+6f, -0x1.9041a8p-13f}, {-0x1.5eafd8p+6f, -0x1.7509bp-13f},
{-0x1.5eb588p+6f, -0x1.985db8p-13f}, {-0x1.5ebb38p+6f, -0x1.7af768p-13f},
{-0x1.5ec0ep+6f, -0x1.5d8d58p-13f}, {-0x1.5ec678p+6f, -0x1.80d32p-13f},
{-0x1.5ecc1p+6f, -0x1.657968p-13f}, {-0x1.5ed198p+6f, -0x1.8c2ep-13f},
{-0x1.5ed72p+6f, -0x1.759bdp-13f}, {-0x1.5edcap+6f, -0x1.626b2p-13f},
{-0x1.5ee21p+6f, -0x1.93417p-13f}, {-0x1.5ee78p+6f, -0x1.88c1a8p-13f},
{-0x1.5eece8p+6f, -0x1.838c2p-13f}, {-0x1.5ef248p+6f, -0x1.843e98p-13f},
{-0x1.5ef7ap+6f, -0x1.8b747p-13f}, {-0x1.5efcfp+6f, -0x1.99c68p-13f},
{-0x1.5f024p+6f, -0x1.6fcb58p-13f}, {-0x1.5f078p+6f, -0x1.8e173p-13f},
{-0x1.5f0ccp+6f, -0x1.753bf8p-13f}, {-0x1.5f11f8p+6f, -0x1.65c958p-13f},
{-0x1.5f1728p+6f, -0x1.604cep-13f}, {-0x1.5f1c5p+6f, -0x1.6551f8p-13f},
{-0x1.5f217p+6f, -0x1.7561d8p-13f}, {-0x1.5f2688p+6f, -0x1.9103dp-13f},
{-0x1.5f2bap+6f, -0x1.78bd1p-13f}, {-0x1.5f30bp+6f, -0x1.6d10dp-13f},
{-0x1.5f35b8p+6f, -0x1.6e807p-13f}, {-0x1.5f3ab8p+6f, -0x1.7d8b48p-13f},
{-0x1.5f3fbp+6f, -0x1.9aaef8p-13f}, {-0x1.5f44a8p+6f, -0x1.86673p-13f},
{-0x1.5f4998p+6f, -0x1.812de8p-13f}, {-0x1.5f4e8p+6f, -0x1.8b7b48p-13f},
{-0x1.5f5368p+6f, -0x1.65c5c8p-13f}, {-0x1.5f584p+6f, -0x1.908238p-13f},
{-0x1.5f5d18p+6f, -0x1.8c23bp-13f}, {-0x1.5f61e8p+6f, -0x1.991bb8p-13f},
{-0x1.5f66b8p+6f, -0x1.77da28p-13f}, {-0x1.5f6b8p+6f, -0x1.68cd68p-13f},
{-0x1.5f704p+6f, -0x1.6c623p-13f}, {-0x1.5f74f8p+6f, -0x1.8303ep-13f},
{-0x1.5f79bp+6f, -0x1.6d1c38p-13f}, {-0x1.5f7e6p+6f, -0x1.6b13ap-13f},
{-0x1.5f8308p+6f, -0x1.7d51p-13f}, {-0x1.5f87bp+6f, -0x1.6439e8p-13f},
{-0x1.5f8c5p+6f, -0x1.603278p-13f}, {-0x1.5f90e8p+6f, -0x1.719d8p-13f},
{-0x1.5f9578p+6f, -0x1.98dc8p-13f}, {-0x1.5f9a08p+6f, -0x1.964fap-13f},
{-0x1.5f9e98p+6f, -0x1.6a55dp-13f}, {-0x1.5fa318p+6f, -0x1.954ca8p-13f},
{-0x1.5fa798p+6f, -0x1.979098p-13f}, {-0x1.5fac18p+6f, -0x1.717cdp-13f},
{-0x1.5fb09p+6f, -0x1.636b5p-13f}, {-0x1.5fb5p+6f, -0x1.6db4fp-13f},
{-0x1.5fb968p+6f, -0x1.90b16p-13f}, {-0x1.5fbddp+6f, -0x1.8cb72p-13f},
{-0x1.5fc238p+6f, -0x1.621ba8p-13f}, {-0x1.5fc69p+6f, -0x1.913358p-13f},
{-0x1.5fcae8p+6f, -0x1.9a516p-13f}, {-0x1.5fcf4p+6f, -0x1.7dc81p-13f},
{-0x1.5fd39p+6f, -0x1.7be88p-13f}, {-0x1.5fd7d8p+6f, -0x1.9502ep-13f},
{-0x1.5fdc2p+6f, -0x1.896658p-13f}, {-0x1.5fe06p+6f, -0x1.996108p-13f},
{-0x1.5fe4ap+6f, -0x1.854028p-13f}, {-0x1.5fe8d8p+6f, -0x1.8d4ff8p-13f},
{-0x1.5fed1p+6f, -0x1.71dbcp-13f}, {-0x1.5ff14p+6f, -0x1.732dd8p-13f},
{-0x1.5ff568p+6f, -0x1.918fc8p-13f}, {-0x1.5ff99p+6f, -0x1.8d4a1p-13f},
{-0x1.5ffdb8p+6f, -0x1.66a468p-13f}, {-0x1.6001d8p+6f, -0x1.5de5a8p-13f},
{-0x1.6005fp+6f, -0x1.7353cp-13f}, {-0x1.600a08p+6f, -0x1.6733d8p-13f},
{-0x1.600e18p+6f, -0x1.79ca4p-13f}, {-0x1.601228p+6f, -0x1.6b5a78p-13f},
{-0x1.60163p+6f, -0x1.7c273p-13f}, {-0x1.601a38p+6f, -0x1.6c7258p-13f},
{-0x1.601e38p+6f, -0x1.7c7d08p-13f}, };

}  // namespace vorx
