// Register types: one struct for each reading of a 128-bit register. Every operator and every function below is one instruction,
// or a fixed short sequence where its comment says so; the reader can predict the machine code.
//
//   f32x4  four binary32 lanes       i32x4  four 32-bit integer lanes (signed), also the mask type of 32-bit comparisons
//   f64x2  two binary64 lanes        i64x2  two 64-bit integer lanes, also the mask type of 64-bit comparisons
//
// A mask lane is all ones or all zeros.
#pragma once

#include <smmintrin.h>

#include <cstdint>
#include <type_traits>

namespace vorx {

#define VORX_INLINE [[gnu::always_inline]] inline

struct f32x4 {
  __m128 v;
};
struct f64x2 {
  __m128d v;
};
struct i32x4 {
  __m128i v;
};
struct i64x2 {
  __m128i v;
};

// Bit casts: no instruction.
VORX_INLINE i32x4 as_int(f32x4 a) { return {_mm_castps_si128(a.v)}; }
VORX_INLINE i64x2 as_int(f64x2 a) { return {_mm_castpd_si128(a.v)}; }
VORX_INLINE f32x4 as_float(i32x4 a) { return {_mm_castsi128_ps(a.v)}; }
VORX_INLINE f64x2 as_float(i64x2 a) { return {_mm_castsi128_pd(a.v)}; }
VORX_INLINE i32x4 as_i32(i64x2 a) { return {a.v}; }  // the four 32-bit halves: lanes 1 and 3 are the high words
VORX_INLINE i64x2 as_i64(i32x4 a) { return {a.v}; }
VORX_INLINE i32x4 words(f64x2 a) { return {_mm_castpd_si128(a.v)}; }

// The same value in every lane.
VORX_INLINE f32x4 all(float a) { return {_mm_set1_ps(a)}; }
VORX_INLINE f64x2 all(double a) { return {_mm_set1_pd(a)}; }

// f32x4: arithmetic, bit operations, comparisons (false for a NaN operand, != is true).
VORX_INLINE f32x4 operator+(f32x4 a, f32x4 b) { return {_mm_add_ps(a.v, b.v)}; }
VORX_INLINE f32x4 operator-(f32x4 a, f32x4 b) { return {_mm_sub_ps(a.v, b.v)}; }
VORX_INLINE f32x4 operator*(f32x4 a, f32x4 b) { return {_mm_mul_ps(a.v, b.v)}; }
VORX_INLINE f32x4 operator/(f32x4 a, f32x4 b) { return {_mm_div_ps(a.v, b.v)}; }
VORX_INLINE f32x4 operator&(f32x4 a, f32x4 b) { return {_mm_and_ps(a.v, b.v)}; }
VORX_INLINE f32x4 operator|(f32x4 a, f32x4 b) { return {_mm_or_ps(a.v, b.v)}; }
VORX_INLINE f32x4 operator^(f32x4 a, f32x4 b) { return {_mm_xor_ps(a.v, b.v)}; }
VORX_INLINE f32x4 clear(f32x4 mask, f32x4 a) { return {_mm_andnot_ps(mask.v, a.v)}; }  // a & ~mask
VORX_INLINE i32x4 operator<(f32x4 a, f32x4 b) { return {_mm_castps_si128(_mm_cmplt_ps(a.v, b.v))}; }
VORX_INLINE i32x4 operator<=(f32x4 a, f32x4 b) { return {_mm_castps_si128(_mm_cmple_ps(a.v, b.v))}; }
VORX_INLINE i32x4 operator==(f32x4 a, f32x4 b) { return {_mm_castps_si128(_mm_cmpeq_ps(a.v, b.v))}; }
VORX_INLINE i32x4 operator!=(f32x4 a, f32x4 b) { return {_mm_castps_si128(_mm_cmpneq_ps(a.v, b.v))}; }
VORX_INLINE i32x4 not_less_equal(f32x4 a, f32x4 b) { return {_mm_castps_si128(_mm_cmpnle_ps(a.v, b.v))}; }  // true for a NaN

// f64x2: the same.
VORX_INLINE f64x2 operator+(f64x2 a, f64x2 b) { return {_mm_add_pd(a.v, b.v)}; }
VORX_INLINE f64x2 operator-(f64x2 a, f64x2 b) { return {_mm_sub_pd(a.v, b.v)}; }
VORX_INLINE f64x2 operator*(f64x2 a, f64x2 b) { return {_mm_mul_pd(a.v, b.v)}; }
VORX_INLINE f64x2 operator/(f64x2 a, f64x2 b) { return {_mm_div_pd(a.v, b.v)}; }
VORX_INLINE f64x2 operator&(f64x2 a, f64x2 b) { return {_mm_and_pd(a.v, b.v)}; }
VORX_INLINE f64x2 operator|(f64x2 a, f64x2 b) { return {_mm_or_pd(a.v, b.v)}; }
VORX_INLINE f64x2 operator^(f64x2 a, f64x2 b) { return {_mm_xor_pd(a.v, b.v)}; }
VORX_INLINE f64x2 clear(f64x2 mask, f64x2 a) { return {_mm_andnot_pd(mask.v, a.v)}; }
VORX_INLINE i64x2 operator<(f64x2 a, f64x2 b) { return {_mm_castpd_si128(_mm_cmplt_pd(a.v, b.v))}; }
VORX_INLINE i64x2 operator<=(f64x2 a, f64x2 b) { return {_mm_castpd_si128(_mm_cmple_pd(a.v, b.v))}; }
VORX_INLINE i64x2 operator==(f64x2 a, f64x2 b) { return {_mm_castpd_si128(_mm_cmpeq_pd(a.v, b.v))}; }
VORX_INLINE i64x2 operator!=(f64x2 a, f64x2 b) { return {_mm_castpd_si128(_mm_cmpneq_pd(a.v, b.v))}; }
VORX_INLINE i64x2 not_less_equal(f64x2 a, f64x2 b) { return {_mm_castpd_si128(_mm_cmpnle_pd(a.v, b.v))}; }

// i32x4: arithmetic modulo 2^32, signed comparisons, >> is the arithmetic shift.
VORX_INLINE i32x4 operator+(i32x4 a, i32x4 b) { return {_mm_add_epi32(a.v, b.v)}; }
VORX_INLINE i32x4 operator-(i32x4 a, i32x4 b) { return {_mm_sub_epi32(a.v, b.v)}; }
VORX_INLINE i32x4 operator&(i32x4 a, i32x4 b) { return {_mm_and_si128(a.v, b.v)}; }
VORX_INLINE i32x4 operator|(i32x4 a, i32x4 b) { return {_mm_or_si128(a.v, b.v)}; }
VORX_INLINE i32x4 operator^(i32x4 a, i32x4 b) { return {_mm_xor_si128(a.v, b.v)}; }
VORX_INLINE i32x4 clear(i32x4 mask, i32x4 a) { return {_mm_andnot_si128(mask.v, a.v)}; }
VORX_INLINE i32x4 operator<<(i32x4 a, int n) { return {_mm_slli_epi32(a.v, n)}; }
VORX_INLINE i32x4 operator>>(i32x4 a, int n) { return {_mm_srai_epi32(a.v, n)}; }
VORX_INLINE i32x4 shift_right_logical(i32x4 a, int n) { return {_mm_srli_epi32(a.v, n)}; }
VORX_INLINE i32x4 operator>(i32x4 a, i32x4 b) { return {_mm_cmpgt_epi32(a.v, b.v)}; }
VORX_INLINE i32x4 operator<(i32x4 a, i32x4 b) { return {_mm_cmpgt_epi32(b.v, a.v)}; }
VORX_INLINE i32x4 operator==(i32x4 a, i32x4 b) { return {_mm_cmpeq_epi32(a.v, b.v)}; }
VORX_INLINE i32x4 min(i32x4 a, i32x4 b) { return {_mm_min_epi32(a.v, b.v)}; }
VORX_INLINE i32x4 max(i32x4 a, i32x4 b) { return {_mm_max_epi32(a.v, b.v)}; }
VORX_INLINE i32x4 magnitude(i32x4 a) { return {_mm_abs_epi32(a.v)}; }  // -2^31 becomes the unsigned 2^31

// i64x2: arithmetic modulo 2^64. There is no 64-bit comparison for order and no arithmetic shift before SSE4.2 and AVX-512:
// compare high words instead.
VORX_INLINE i64x2 operator+(i64x2 a, i64x2 b) { return {_mm_add_epi64(a.v, b.v)}; }
VORX_INLINE i64x2 operator-(i64x2 a, i64x2 b) { return {_mm_sub_epi64(a.v, b.v)}; }
VORX_INLINE i64x2 operator&(i64x2 a, i64x2 b) { return {_mm_and_si128(a.v, b.v)}; }
VORX_INLINE i64x2 operator|(i64x2 a, i64x2 b) { return {_mm_or_si128(a.v, b.v)}; }
VORX_INLINE i64x2 operator^(i64x2 a, i64x2 b) { return {_mm_xor_si128(a.v, b.v)}; }
VORX_INLINE i64x2 clear(i64x2 mask, i64x2 a) { return {_mm_andnot_si128(mask.v, a.v)}; }
VORX_INLINE i64x2 operator<<(i64x2 a, int n) { return {_mm_slli_epi64(a.v, n)}; }
VORX_INLINE i64x2 shift_right_logical(i64x2 a, int n) { return {_mm_srli_epi64(a.v, n)}; }
VORX_INLINE i64x2 operator==(i64x2 a, i64x2 b) { return {_mm_cmpeq_epi64(a.v, b.v)}; }
// Each unsigned 16-bit word of a less that of b, 0 where it would be negative.
VORX_INLINE i64x2 subtract_or_zero(i64x2 a, i64x2 b) { return {_mm_subs_epu16(a.v, b.v)}; }

// mask ? a : b, by the sign bit of each mask lane (one blend).
VORX_INLINE f32x4 select(i32x4 mask, f32x4 a, f32x4 b) { return {_mm_blendv_ps(b.v, a.v, _mm_castsi128_ps(mask.v))}; }
VORX_INLINE f64x2 select(i64x2 mask, f64x2 a, f64x2 b) { return {_mm_blendv_pd(b.v, a.v, _mm_castsi128_pd(mask.v))}; }
VORX_INLINE i32x4 select(i32x4 mask, i32x4 a, i32x4 b) { return as_int(select(mask, as_float(a), as_float(b))); }
VORX_INLINE i64x2 select(i64x2 mask, i64x2 a, i64x2 b) { return as_int(select(mask, as_float(a), as_float(b))); }

// A mask made in registers, by two or three instructions where the address of a constant would cost four: ones in every lane but
// for so many zero bits above and below them. Assembly, because the compiler turns the intrinsics into loads.
template <class V, int above, int below>
VORX_INLINE V ones() {
  V a;
  if constexpr (sizeof(a.v[0]) == 4 || std::is_same_v<V, i32x4>)
    asm("pcmpeqd %0, %0\n\t.if %c1\n\tpslld %1, %0\n\t.endif\n\tpsrld %2, %0"
        : "=x"(a.v)
        : "i"(below ? above + below : 0), "i"(above));
  else
    asm("pcmpeqd %0, %0\n\t.if %c1\n\tpsllq %1, %0\n\t.endif\n\tpsrlq %2, %0"
        : "=x"(a.v)
        : "i"(below ? above + below : 0), "i"(above));
  return a;
}
template <class V>
VORX_INLINE V magnitude_mask() {
  return ones<V, 1, 0>();
}

// Packed minimum and maximum: the second operand where either is a NaN or both are zeros. These are the intrinsics, which keep
// the order of the operands; a generic minimum may be commuted.
VORX_INLINE f32x4 min(f32x4 a, f32x4 b) { return {_mm_min_ps(a.v, b.v)}; }
VORX_INLINE f32x4 max(f32x4 a, f32x4 b) { return {_mm_max_ps(a.v, b.v)}; }
VORX_INLINE f64x2 min(f64x2 a, f64x2 b) { return {_mm_min_pd(a.v, b.v)}; }
VORX_INLINE f64x2 max(f64x2 a, f64x2 b) { return {_mm_max_pd(a.v, b.v)}; }

// Rounding to an integral value. `current` follows the caller's rounding mode; `current_quiet` does so without the inexact flag.
enum rounding : int { to_nearest = 0, downward = 1, upward = 2, toward_zero = 3, current = 4, current_quiet = 0xc };
template <rounding mode>
VORX_INLINE f32x4 round_to_integral(f32x4 a) {
  return {_mm_round_ps(a.v, mode)};
}
template <rounding mode>
VORX_INLINE f64x2 round_to_integral(f64x2 a) {
  return {_mm_round_pd(a.v, mode)};
}

// Conversions. Out-of-range values and NaN become 0x80000000.
VORX_INLINE i32x4 to_int(f32x4 a) { return {_mm_cvtps_epi32(a.v)}; }
VORX_INLINE i32x4 to_int(f64x2 a) { return {_mm_cvtpd_epi32(a.v)}; }  // lanes 0 and 1, the rest zero
VORX_INLINE f32x4 to_float(i32x4 a) { return {_mm_cvtepi32_ps(a.v)}; }
VORX_INLINE f64x2 to_double(i32x4 a) { return {_mm_cvtepi32_pd(a.v)}; }  // lanes 0 and 1
VORX_INLINE f64x2 to_double(f32x4 a) { return {_mm_cvtps_pd(a.v)}; }     // lanes 0 and 1
VORX_INLINE f32x4 to_float(f64x2 a) { return {_mm_cvtpd_ps(a.v)}; }      // lanes 0 and 1, the rest zero

// The upper two of four float lanes as doubles; the lower two are to_double. And back.
VORX_INLINE f64x2 widen_high(f32x4 a) { return {_mm_cvtps_pd(_mm_movehl_ps(a.v, a.v))}; }
VORX_INLINE f32x4 narrow(f64x2 low, f64x2 high) { return {_mm_movelh_ps(_mm_cvtpd_ps(low.v), _mm_cvtpd_ps(high.v))}; }

// The processor's 12-bit estimates.
VORX_INLINE f32x4 estimate_reciprocal(f32x4 a) { return {_mm_rcp_ps(a.v)}; }
VORX_INLINE f32x4 estimate_reciprocal_sqrt(f32x4 a) { return {_mm_rsqrt_ps(a.v)}; }
VORX_INLINE f32x4 sqrt(f32x4 a) { return {_mm_sqrt_ps(a.v)}; }
VORX_INLINE f64x2 sqrt(f64x2 a) { return {_mm_sqrt_pd(a.v)}; }

// Lane movements between the 64-bit lanes of double kernels and the packed 32-bit lanes of integer vectors.
VORX_INLINE i32x4 pack_high_words(i64x2 a) { return {_mm_shuffle_epi32(a.v, 0x8d)}; }       // words 1 3 | 0 2
VORX_INLINE i32x4 duplicate_words(i32x4 a) { return {_mm_shuffle_epi32(a.v, 0x50)}; }       // lanes 0 0 1 1
VORX_INLINE i32x4 duplicate_high_words(i64x2 a) { return {_mm_shuffle_epi32(a.v, 0xf5)}; }  // words 1 1 3 3
VORX_INLINE i64x2 extend_zero(i32x4 a) { return {_mm_cvtepu32_epi64(a.v)}; }                // lanes 0 and 1, zero-extended
VORX_INLINE i32x4 upper_half(i32x4 a) { return {_mm_shuffle_epi32(a.v, 0xee)}; }            // lanes 2 3 | 2 3
VORX_INLINE i32x4 swap_halves(i32x4 a) { return {_mm_shuffle_epi32(a.v, 0x4e)}; }           // lanes 2 3 | 0 1
VORX_INLINE i32x4 join(i32x4 a, i32x4 b) { return {_mm_unpacklo_epi64(a.v, b.v)}; }         // lanes 0 1 of a, 0 1 of b
VORX_INLINE i32x4 low_half(i32x4 a) { return {_mm_move_epi64(a.v)}; }                       // lanes 0 1, the rest zero
VORX_INLINE i32x4 join_low_words(i64x2 a, i64x2 b) {                                        // words 0 2 of a, 0 2 of b
  return {_mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a.v), _mm_castsi128_ps(b.v), 0x88))};
}
VORX_INLINE i32x4 join_high_words(i64x2 a, i64x2 b) {  // words 1 3 of a, 1 3 of b
  return {_mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a.v), _mm_castsi128_ps(b.v), 0xdd))};
}

// a << n, each 64-bit lane by its own count; 0 for a count of 64 or more as an unsigned number. The shift takes one count for the
// register, so this is two shifts and a blend.
VORX_INLINE i64x2 shift_left_each(i64x2 a, i64x2 n) {
  __m128i low = _mm_sll_epi64(a.v, n.v), high = _mm_sll_epi64(a.v, _mm_unpackhi_epi64(n.v, n.v));
  return {_mm_blend_epi16(low, high, 0xf0)};
}

// Sign bits of the lanes as an integer, bit i for lane i.
VORX_INLINE int sign_mask(f32x4 a) { return _mm_movemask_ps(a.v); }
VORX_INLINE int sign_mask(f64x2 a) { return _mm_movemask_pd(a.v); }

// Short multiplication: the high half of the product of unsigned 16-bit words.
VORX_INLINE i32x4 multiply_high_words(i32x4 a, i32x4 b) { return {_mm_mulhi_epu16(a.v, b.v)}; }
// Long multiplication: the 64-bit products of the even 32-bit lanes.
VORX_INLINE i64x2 multiply_even(i64x2 a, i64x2 b) { return {_mm_mul_epu32(a.v, b.v)}; }
VORX_INLINE i32x4 even_odd(i32x4 a, i32x4 b) { return {_mm_blend_epi16(a.v, b.v, 0xcc)}; }  // lanes 0 2 of a, 1 3 of b

// Rows of tables: 16 bytes at any address or at an aligned one, twice 8 bytes; 64-bit lanes of two rows; four rows to four
// columns.
VORX_INLINE i32x4 load_row(const void* p) { return {_mm_loadu_si128(static_cast<const __m128i_u*>(p))}; }
VORX_INLINE f32x4 load_floats(const void* p) { return {_mm_loadu_ps(static_cast<const float*>(p))}; }
VORX_INLINE f32x4 load_aligned(const float* p) { return {_mm_load_ps(p)}; }
VORX_INLINE f64x2 load_aligned(const double* p) { return {_mm_load_pd(p)}; }
VORX_INLINE f64x2 load_halves(const void* low, const void* high) {
  return {_mm_loadh_pd(_mm_load_sd(static_cast<const double*>(low)), static_cast<const double*>(high))};
}
VORX_INLINE i64x2 lower_lanes(i64x2 a, i64x2 b) { return {_mm_unpacklo_epi64(a.v, b.v)}; }
VORX_INLINE i64x2 upper_lanes(i64x2 a, i64x2 b) { return {_mm_unpackhi_epi64(a.v, b.v)}; }
VORX_INLINE f64x2 lower_lanes(f64x2 a, f64x2 b) { return {_mm_unpacklo_pd(a.v, b.v)}; }
VORX_INLINE f64x2 upper_lanes(f64x2 a, f64x2 b) { return {_mm_unpackhi_pd(a.v, b.v)}; }
VORX_INLINE void transpose(f32x4& a, f32x4& b, f32x4& c, f32x4& d) { _MM_TRANSPOSE4_PS(a.v, b.v, c.v, d.v); }

// One lane as a scalar index. Lane numbers are compile-time constants.
template <int lane>
VORX_INLINE uint32_t extract(i32x4 a) {
  if constexpr (lane == 0) return static_cast<uint32_t>(_mm_cvtsi128_si32(a.v));
  return static_cast<uint32_t>(_mm_extract_epi32(a.v, lane));
}

// Fixes the order in the compiled code: what is computed from `later` comes after all that leads to `earlier`. Keeps the compiler
// from holding more values in registers than there are; the processor still overlaps both.
VORX_INLINE void in_order(auto& earlier, auto& later) { asm("" : "+x"(earlier.v), "+x"(later.v)); }

// The same value in a register of its own. A copy costs the processor nothing, but for its place in the instruction stream: with
// it, what follows takes its constant from memory, where the compiler would load the constant to save the copy.
template <class V>
VORX_INLINE V copy(V a) {
  asm volatile("" : "+x"(a.v));
  return a;
}

// Says that a value is in a register here: what is in use is less likely to be spilled.
VORX_INLINE void in_register(const auto& a) { asm volatile("" ::"x"(a.v)); }

// Table look-up: lane i is table[index in lane i]. The indices of doubles stand in the low words of 64-bit lanes. No more than
// two indices are in general registers at a time.
VORX_INLINE f64x2 lookup(const double* table, i64x2 index) {
  __m128d low = _mm_load_sd(table + extract<0>(as_i32(index)));
  return {_mm_loadh_pd(low, table + extract<2>(as_i32(index)))};
}
VORX_INLINE f32x4 lookup(const float* table, i32x4 index) {
  f32x4 y = {_mm_load_ss(table + extract<0>(index))};
  y = {_mm_insert_ps(y.v, _mm_load_ss(table + extract<1>(index)), 0x10)};
  in_order(y, index);
  y = {_mm_insert_ps(y.v, _mm_load_ss(table + extract<2>(index)), 0x20)};
  return {_mm_insert_ps(y.v, _mm_load_ss(table + extract<3>(index)), 0x30)};
}

// Look-up by bytes: one load for each lane, at a byte offset that stands in a 32-bit lane, counted from a place before the table.
// The offsets are extracted one after the other, so that one integer register does.
template <int lane>
VORX_INLINE const char* row_address(const void* table, i32x4 offsets, int before) {
  return static_cast<const char*>(table) - before + extract<lane>(offsets);
}
VORX_INLINE f64x2 gather(const double* table, i32x4 offsets, int before = 0) {  // offsets in lanes 0 and 1
  f64x2 a = {_mm_load_sd(reinterpret_cast<const double*>(row_address<0>(table, offsets, before)))};
  in_order(a, offsets);
  return {_mm_loadh_pd(a.v, reinterpret_cast<const double*>(row_address<1>(table, offsets, before)))};
}
VORX_INLINE f64x2 gather(const double* table, i64x2 offsets) {  // offsets in the low words of both lanes
  i32x4 words = as_i32(offsets);
  f64x2 a = {_mm_load_sd(reinterpret_cast<const double*>(row_address<0>(table, words, 0)))};
  in_order(a, words);
  return {_mm_loadh_pd(a.v, reinterpret_cast<const double*>(row_address<2>(table, words, 0)))};
}

// The same for rows of two numbers, in one load each: the first numbers of the rows, and the second.
struct f32x4_pair {
  f32x4 first, second;
};
struct f64x2_pair {
  f64x2 first, second;
};
VORX_INLINE f32x4_pair gather_pairs(const float* table, i32x4 offsets, int before = 0) {
  auto at = [](const char* p) { return reinterpret_cast<const __m64*>(p); };
  f32x4 a = {_mm_loadl_pi(_mm_setzero_ps(), at(row_address<0>(table, offsets, before)))};
  in_order(a, offsets);
  a = {_mm_loadh_pi(a.v, at(row_address<1>(table, offsets, before)))};
  in_order(a, offsets);
  f32x4 b = {_mm_loadl_pi(_mm_setzero_ps(), at(row_address<2>(table, offsets, before)))};
  in_order(b, offsets);
  b = {_mm_loadh_pi(b.v, at(row_address<3>(table, offsets, before)))};
  return {{_mm_shuffle_ps(a.v, b.v, 0x88)}, {_mm_shuffle_ps(a.v, b.v, 0xdd)}};
}
// Rows of three floats, the third as a column of its own.
struct f32x4_triple {
  f32x4 first, second, third;
};
VORX_INLINE f32x4_triple gather_triples(const float* table, i32x4 offsets) {
  auto at = [](const float* p) { return reinterpret_cast<const __m64*>(p); };
  auto row = reinterpret_cast<const float*>(row_address<0>(table, offsets, 0));
  f32x4 third = {_mm_load_ss(row + 2)}, a = {_mm_loadl_pi(_mm_setzero_ps(), at(row))};
  in_order(third, a), in_order(a, offsets);
  row = reinterpret_cast<const float*>(row_address<1>(table, offsets, 0));
  third = {_mm_insert_ps(third.v, _mm_load_ss(row + 2), 0x10)}, a = {_mm_loadh_pi(a.v, at(row))};
  in_order(third, a), in_order(a, offsets);
  row = reinterpret_cast<const float*>(row_address<2>(table, offsets, 0));
  third = {_mm_insert_ps(third.v, _mm_load_ss(row + 2), 0x20)};
  f32x4 b = {_mm_loadl_pi(_mm_setzero_ps(), at(row))};
  in_order(third, b), in_order(b, offsets);
  row = reinterpret_cast<const float*>(row_address<3>(table, offsets, 0));
  third = {_mm_insert_ps(third.v, _mm_load_ss(row + 2), 0x30)}, b = {_mm_loadh_pi(b.v, at(row))};
  return {{_mm_shuffle_ps(a.v, b.v, 0x88)}, {_mm_shuffle_ps(a.v, b.v, 0xdd)}, third};
}
VORX_INLINE f64x2_pair gather_pairs(const double* table, i32x4 offsets, int before = 0) {  // offsets in lanes 0 and 1
  f64x2 a = {_mm_loadu_pd(reinterpret_cast<const double*>(row_address<0>(table, offsets, before)))};
  in_order(a, offsets);
  f64x2 b = {_mm_loadu_pd(reinterpret_cast<const double*>(row_address<1>(table, offsets, before)))};
  return {{_mm_unpacklo_pd(a.v, b.v)}, {_mm_unpackhi_pd(a.v, b.v)}};
}
VORX_INLINE f64x2_pair gather_pairs(const double* table, i64x2 offsets) {  // offsets in the low words of both lanes
  i32x4 words = as_i32(offsets);
  f64x2 a = {_mm_load_pd(reinterpret_cast<const double*>(row_address<0>(table, words, 0)))};
  in_order(a, words);
  f64x2 b = {_mm_load_pd(reinterpret_cast<const double*>(row_address<2>(table, words, 0)))};
  return {{_mm_unpacklo_pd(a.v, b.v)}, {_mm_unpackhi_pd(a.v, b.v)}};
}
// The same numbers by a load for each of them: one register less while they are loaded.
VORX_INLINE f64x2_pair gather_columns(const double* table, i64x2 offsets) {
  i32x4 words = as_i32(offsets);
  auto row = reinterpret_cast<const double*>(row_address<0>(table, words, 0));
  f64x2 first = {_mm_load_sd(row)}, second = {_mm_load_sd(row + 1)};
  in_order(first, words);
  row = reinterpret_cast<const double*>(row_address<2>(table, words, 0));
  return {{_mm_loadh_pd(first.v, row)}, {_mm_loadh_pd(second.v, row + 1)}};
}

}  // namespace vorx
