// The calling convention, computed: from the shape of a function (what goes in, what comes out), the element type and the number
// of lanes to registers, stack offsets and the hidden result area. Everything that touches the convention is derived from
// place(): the entry points, the machine-readable catalogue, the callers' headers, the bindings and the tests.
//
//   - Vectors take consecutive registers xmm0-xmm3 from left to right. The first that does not fit goes to the stack, and so do
//     all vectors after it, in 16-byte slots from 4(%esp) on. Pointers follow, 4 bytes each.
//   - A result of up to four registers returns in xmm0-xmm3. A larger one goes to an area whose address is a hidden first stack
//     argument in a slot of its own; all vectors are then on the stack, and eax returns the address.
//   - Scalar integers (width 1) take no xmm register: a first argument of 32 bits is in eax, of 64 bits in the first two stack
//     words, one that follows a floating argument in the first stack word; results return in eax and edx:eax.
//   - Three lanes are passed as four.
#pragma once

#include <cstdint>

namespace vorx {

enum class element { f32, f64 };

// What one argument or result holds per lane.
enum class kind : uint8_t {
  none,
  real,  // the element type
  i32,   // a 32-bit integer, packed like float lanes in double functions too
  u32,   // the same without sign
  i64,   // a 64-bit integer, packed like double lanes
  u64,   // the same without sign
  bits,  // an integer of the element's size (the codes of nan)
};

// The shape of a function: its vector arguments and its results; the second result leaves through a trailing pointer unless it
// stays in registers.
struct shape {
  kind arguments[3] = {};
  kind results[2] = {};
  bool second_in_registers = false;

  constexpr int argument_count() const {
    return (arguments[0] != kind::none) + (arguments[1] != kind::none) + (arguments[2] != kind::none);
  }
  constexpr int result_count() const { return results[1] == kind::none ? 1 : 2; }
  constexpr bool has_pointer() const { return result_count() == 2 && !second_in_registers; }
};

namespace shapes {
using enum kind;
inline constexpr shape unary{{real}, {real}};
inline constexpr shape binary{{real, real}, {real}};
inline constexpr shape ternary{{real, real, real}, {real}};
inline constexpr shape with_int{{real, i32}, {real}};              // pown, rootn, ldexp
inline constexpr shape two_results{{real}, {real, real}};          // sincos, fract, modf
inline constexpr shape and_int{{real}, {real, i32}};               // frexp, lgammar
inline constexpr shape binary_and_int{{real, real}, {real, i32}};  // remquo
inline constexpr shape pair{{real}, {real, real}, true};           // sincosreg
inline constexpr shape to_i32{{real}, {i32}};                      // ilogb, cvtfptoi32*
inline constexpr shape to_u32{{real}, {u32}};                      // cvtfptou32*
inline constexpr shape to_i64{{real}, {i64}};                      // cvtfptoi64*
inline constexpr shape to_u64{{real}, {u64}};                      // cvtfptou64*
inline constexpr shape from_i32{{i32}, {real}};                    // cvti32tofp*
inline constexpr shape from_u32{{u32}, {real}};                    // cvtu32tofp*
inline constexpr shape from_i64{{i64}, {real}};                    // cvti64tofp*
inline constexpr shape from_u64{{u64}, {real}};                    // cvtu64tofp*
inline constexpr shape from_bits{{bits}, {real}};                  // nan
}  // namespace shapes

inline constexpr int widths[] = {1, 2, 3, 4, 8, 16};

constexpr int lane_bytes(kind k, element e) {
  switch (k) {
    case kind::none:
      return 0;
    case kind::i32:
    case kind::u32:
      return 4;
    case kind::i64:
    case kind::u64:
      return 8;
    default:
      return e == element::f32 ? 4 : 8;
  }
}
constexpr bool is_integer(kind k) { return k != kind::none && k != kind::real; }

// Lanes that the registers of a width carry: three lanes are treated as four.
constexpr int carried_lanes(int width) { return width == 3 ? 4 : width; }
// 16-byte registers (or stack slots) of a vector.
constexpr int registers(kind k, element e, int width) { return (carried_lanes(width) * lane_bytes(k, e) + 15) / 16; }

enum class where : uint8_t {
  nowhere,
  xmm,      // registers xmm[at], xmm[at + 1], ...
  stack,    // 16-byte slots, or a scalar integer, from at(%esp) on at the entry
  eax,      // a scalar of 32 bits
  edx_eax,  // a scalar of 64 bits
  hidden,   // the hidden result area, from byte `at` of it on
  pointer,  // the vector that the pointer at at(%esp) addresses
};

struct placement {
  where place = where::nowhere;
  int at = 0;
  int count = 0;  // registers or slots; 0 for a scalar integer
};

struct layout {
  placement arguments[3];
  placement results[2];
  int argument_registers = 0;  // xmm0 up to this number carry arguments
  int result_registers = 0;    // xmm0 up to this number carry results
  int stack_bytes = 0;         // argument bytes from 4(%esp) on
  int hidden_bytes = 0;        // size of the hidden result area, 0 without one
};

constexpr layout place(shape s, element e, int width) {
  layout l;
  // Results first: they decide whether there is a hidden area.
  int in_registers = 0;
  for (int i = 0; i < 2; i++)
    if (s.results[i] != kind::none && (i == 0 || s.second_in_registers)) in_registers += registers(s.results[i], e, width);
  bool hidden = in_registers > 4;
  int next_result = 0;
  for (int i = 0; i < 2; i++) {
    if (s.results[i] == kind::none || (i == 1 && !s.second_in_registers)) continue;
    int count = registers(s.results[i], e, width);
    if (width == 1 && is_integer(s.results[i]))
      l.results[i] = {lane_bytes(s.results[i], e) == 4 ? where::eax : where::edx_eax, 0, 0};
    else {
      l.results[i] = {hidden ? where::hidden : where::xmm, hidden ? 16 * next_result : next_result, count};
      next_result += count;
    }
  }
  l.result_registers = hidden ? 0 : next_result;
  l.hidden_bytes = hidden ? 16 * next_result : 0;

  int next_register = hidden ? 4 : 0;  // nothing fits once there is a hidden area
  int offset = hidden ? 4 + 16 : 4;    // the first free stack byte, as seen at the entry
  for (int i = 0; i < s.argument_count(); i++) {
    kind k = s.arguments[i];
    int count = registers(k, e, width);
    if (width == 1 && is_integer(k)) {
      if (i == 0 && lane_bytes(k, e) == 4) {
        l.arguments[i] = {where::eax, 0, 0};
      } else {
        l.arguments[i] = {where::stack, offset, 0};
        offset += lane_bytes(k, e);
      }
    } else if (next_register + count <= 4) {
      l.arguments[i] = {where::xmm, next_register, count};
      next_register += count;
    } else {
      l.arguments[i] = {where::stack, offset, count};
      offset += 16 * count;
      next_register = 4;
    }
  }
  for (const placement& p : l.arguments)
    if (p.place == where::xmm) l.argument_registers = p.at + p.count;
  if (s.has_pointer()) {
    l.results[1] = {where::pointer, offset, registers(s.results[1], e, width)};
    offset += 4;
  }
  l.stack_bytes = offset - 4;
  return l;
}

}  // namespace vorx
