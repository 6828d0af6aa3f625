// From a row of the catalogue to symbols: the only place where the names of entry points are formed.
//
// An entry point is three pieces. The body takes its vectors in registers and, in ecx, the address of its stack arguments. The
// cold part has the same signature, so that the body leaves for it by a jump and needs no frame. The exported symbol is the body
// itself or, where something is on the stack or in eax, one instruction that fills ecx and a jump to the body.
#pragma once

#include "frame/entry.h"

// clang-format off

// vectorcall passes a homogeneous aggregate in consecutive registers and returns it in the same; a label that starts with \01
// keeps the compiler from adding a suffix to the name.
#define VORX_ENTRY(SHAPE, KERNEL, LANES, FILL, SYMBOL)                                                                     \
  namespace SYMBOL {                                                                                                       \
  using e = ::vorx::entry<::vorx::shapes::SHAPE, ::vorx::kernel_at<KERNEL, LANES>::type, LANES, ::vorx::fill::FILL>;       \
  [[gnu::cold, gnu::noinline]] inline e::out VORX_CALL cold(e::in, e::word) asm("\01" #SYMBOL ".cold");                   \
  [[gnu::used]] static e::out VORX_CALL body(e::in, e::word) asm("\01" #SYMBOL ".body");                                  \
  static e::out VORX_CALL body(e::in r, e::word w) {                                                                       \
    r = e::filled(r);                                                                                                      \
    auto k = e::address_of_constants();                                                                                    \
    if constexpr (e::aligns_frame) e::align_frame();                                                                       \
    if constexpr (e::tests_with_path) {                                                                                    \
      e::out o;                                                                                                            \
      if (e::compute_and_test(r, w, k, o)) [[unlikely]] [[clang::musttail]] return cold(r, e::forward(w));                 \
      return o;                                                                                                            \
    }                                                                                                                      \
    if constexpr (e::has_cold_part)                                                                                        \
      if (e::leaves_path(r, w, k)) [[unlikely]] [[clang::musttail]] return cold(r, e::forward(w));                         \
    return e::compute(r, w, k);                                                                                            \
  }                                                                                                                        \
  inline e::out VORX_CALL cold(e::in r, e::word w) {                                                                       \
    if constexpr (e::has_cold_part) return e::recompute(r, w);                                                             \
    __builtin_unreachable();                                                                                               \
  }                                                                                                                        \
  [[gnu::naked, gnu::used]] static void exported() { asm(VORX_EXPORT(#SYMBOL) ::"i"(e::front)); }                          \
  }

#define VORX_CALL __attribute__((vectorcall))

#define VORX_EXPORT(SYMBOL)                     \
  ".globl " SYMBOL "\n"                         \
  ".type " SYMBOL ", @function\n"               \
  ".if %c0 == 0\n"                              \
  ".set " SYMBOL ", " SYMBOL ".body\n"          \
  ".else\n"                                     \
  SYMBOL ":\n"                                  \
  ".if %c0 == 1\n"                              \
  "\tleal 4(%%esp), %%ecx\n"                    \
  ".else\n"                                     \
  "\tmovl %%eax, %%ecx\n"                       \
  ".endif\n"                                    \
  "\tjmp " SYMBOL ".body\n"                     \
  ".size " SYMBOL ", . - " SYMBOL "\n"          \
  ".endif\n"

// The six widths of one type and accuracy.
#define VORX_WIDTHS(SHAPE, KERNEL, FILL, NAME, SUFFIX)                           \
  VORX_ENTRY(SHAPE, KERNEL, 1, FILL, __ocl_vorx_p8_##NAME##1##SUFFIX)            \
  VORX_ENTRY(SHAPE, KERNEL, 2, FILL, __ocl_vorx_p8_##NAME##2##SUFFIX)            \
  VORX_ENTRY(SHAPE, KERNEL, 3, FILL, __ocl_vorx_p8_##NAME##3##SUFFIX)            \
  VORX_ENTRY(SHAPE, KERNEL, 4, FILL, __ocl_vorx_p8_##NAME##4##SUFFIX)            \
  VORX_ENTRY(SHAPE, KERNEL, 8, FILL, __ocl_vorx_p8_##NAME##8##SUFFIX)            \
  VORX_ENTRY(SHAPE, KERNEL, 16, FILL, __ocl_vorx_p8_##NAME##16##SUFFIX)

#define VORX_ENTRIES_accurate(NAME, SHAPE, FILL)            \
  VORX_WIDTHS(SHAPE, NAME##_f32, FILL, NAME##f, )           \
  VORX_WIDTHS(SHAPE, NAME##_f64, FILL, NAME, )

#define VORX_ENTRIES_and_native(NAME, SHAPE, FILL)                   \
  VORX_ENTRIES_accurate(NAME, SHAPE, FILL)                           \
  VORX_WIDTHS(SHAPE, NAME##_f32_native, FILL, NAME##f, _native)      \
  VORX_WIDTHS(SHAPE, NAME##_f64_native, FILL, NAME, _native)

#define VORX_ENTRIES_ready(NAME, SHAPE, VARIANTS, FILL) VORX_ENTRIES_##VARIANTS(NAME, SHAPE, FILL)
#define VORX_ENTRIES_planned(NAME, SHAPE, VARIANTS, FILL)

// A row of the catalogue: a function without kernels has no entries.
#define VORX(NAME, SHAPE, VARIANTS, FILL, STATE) VORX_ENTRIES_##STATE(NAME, SHAPE, VARIANTS, FILL)
