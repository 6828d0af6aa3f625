#include "tools/bench/call_loop.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <tuple>

#include "tools/bench/assembler.h"

namespace vorx::bench {
namespace {

constexpr reg at_record = esi, at_end = edi;
constexpr int stack_room = 1024;  // for the argument image of one call
constexpr int chain = 7;          // the register that carries zero from one call's result to the next one's argument
alignas(16) const uint32_t zero[4] = {};

// One piece of an argument or result: a register, a slot of the stack image or a scalar integer, and its bytes in the record.
struct piece {
  enum { xmm, slot, integer_slot, in_eax, in_edx, in_st, address_slot } where;
  int at;      // number of the register, offset in the stack image
  int offset;  // in the record
  int bytes;   // 4, 8 or 16
  bool chained = false;
};

// One call: what goes in, what comes out.
struct call {
  const void* target;
  std::vector<piece> in, out;
  bool pops_a_word = false;
};

int vector_bytes(kind k, element e, int width) { return carried_lanes(width) * lane_bytes(k, e); }

// The registers or slots of a vector.
template <class Function>
void for_each_register(int bytes, Function f) {
  for (int i = 0; 16 * i < bytes; i++) f(i, std::min(16, bytes - 16 * i));
}

call entry_call(const entry_point& e, const void* target) {
  const shape& s = e.of->form;
  const layout l = e.where_things_are();
  const record r = record_of(s, e.type, e.width);
  call c{target, {}, {}};
  if (l.hidden_bytes != 0) c.in.push_back({piece::address_slot, 0, r.result[0], 4});
  for (int a = 0; a < s.argument_count(); a++) {
    const placement& p = l.arguments[a];
    int bytes = vector_bytes(s.arguments[a], e.type, e.width);
    bool first = a == 0;
    if (p.place == where::eax)
      c.in.push_back({piece::in_eax, 0, r.argument[a], 4, first});
    else if (p.count == 0)  // a scalar integer: its words, as a caller pushes them
      for (int word = 0; word < bytes; word += 4)
        c.in.push_back({piece::integer_slot, p.at - 4 + word, r.argument[a] + word, 4, first});
    else
      for_each_register(bytes, [&](int i, int part) {
        if (p.place == where::xmm)
          c.in.push_back({piece::xmm, p.at + i, r.argument[a] + 16 * i, part, first});
        else
          c.in.push_back({piece::slot, p.at - 4 + 16 * i, r.argument[a] + 16 * i, part, first});
      });
  }
  if (s.has_pointer()) c.in.push_back({piece::address_slot, l.results[1].at - 4, r.result[1], 4});
  for (int i = 0; i < s.result_count(); i++) {
    const placement& p = l.results[i];
    int bytes = vector_bytes(s.results[i], e.type, e.width);
    if (p.place == where::eax || p.place == where::edx_eax) c.out.push_back({piece::in_eax, 0, r.result[i], 4});
    if (p.place == where::edx_eax) c.out.push_back({piece::in_edx, 0, r.result[i] + 4, 4});
    if (p.place == where::xmm)
      for_each_register(bytes, [&](int j, int part) { c.out.push_back({piece::xmm, p.at + j, r.result[i] + 16 * j, part}); });
    if (p.place == where::hidden)
      for_each_register(bytes, [&](int j, int part) { c.out.push_back({piece::slot, 0, r.result[i] + 16 * j, part}); });
  }
  return c;
}

// One lane of a record by the scalar C library.
call scalar_call(const entry_point& e, const peer& p, int lane) {
  const shape& s = e.of->form;
  const record r = record_of(s, e.type, e.width);
  call c{p.address, {}, {}};
  int offset = 0;
  for (int a = 0; a < s.argument_count(); a++) {
    int bytes = lane_bytes(s.arguments[a], e.type);
    c.in.push_back({piece::slot, offset, r.argument[a] + lane * bytes, bytes});
    offset += bytes;
  }
  for (int i = p.kind == peer_kind::scalar_sincos ? 0 : 1; i < s.result_count(); i++, offset += 4)
    c.in.push_back({piece::address_slot, offset, r.result[i] + lane * lane_bytes(s.results[i], e.type), 4});
  int bytes = lane_bytes(s.results[0], e.type);
  if (p.kind == peer_kind::scalar)
    c.out.push_back({s.results[0] == kind::real ? piece::in_st : piece::in_eax, 0, r.result[0] + lane * bytes, bytes});
  return c;
}

// All lanes of a record by one call of a loop in C.
call scalar_loop_call(const entry_point& e, const peer& p) {
  const shape& s = e.of->form;
  const record r = record_of(s, e.type, e.width);
  const int behind_last = r.argument[0] + e.width * lane_bytes(s.arguments[0], e.type);
  return {p.address,
          {{piece::address_slot, 0, r.argument[0], 4},
           {piece::address_slot, 4, behind_last, 4},
           {piece::address_slot, 8, r.result[0], 4}},
          {}};
}

// One register of a record by the independent vector library.
call vector_call(const entry_point& e, const peer& p, int i) {
  const shape& s = e.of->form;
  const record r = record_of(s, e.type, e.width);
  const int lanes = e.type == element::f32 ? 4 : 2;
  call c{p.address, {}, {}};
  if (p.kind == peer_kind::vector_pair) {
    c.in.push_back({piece::address_slot, 0, r.result[0] + 16 * i, 4});
    c.pops_a_word = true;
  }
  for (int a = 0; a < s.argument_count(); a++) {
    int bytes = lanes * lane_bytes(s.arguments[a], e.type);
    c.in.push_back({piece::xmm, a, r.argument[a] + i * bytes, bytes});
  }
  int bytes = lanes * lane_bytes(s.results[0], e.type);
  if (p.kind == peer_kind::vector) c.out.push_back({piece::xmm, 0, r.result[0] + i * bytes, bytes});
  return c;
}

void emit_argument(assembler& a, const piece& p, bool chained) {
  const memory from{at_record, p.offset}, to{esp, p.at};
  switch (p.where) {
    case piece::xmm:
      a.load(p.at, from, p.bytes);
      if (chained) a.por(p.at, chain);
      break;
    case piece::slot:
      a.load(4, from, p.bytes);
      if (chained) a.por(4, chain);
      a.store(to, 4, p.bytes);
      break;
    case piece::address_slot:
      a.lea(ecx, from);
      a.store(to, ecx);
      break;
    default:  // a scalar integer, in eax or in a slot
      const reg carrier = p.where == piece::in_eax ? eax : ecx;
      a.load(carrier, from);
      if (chained) a.movd(edx, chain), a.or_(carrier, edx);
      if (p.where == piece::integer_slot) a.store(to, carrier);
  }
}

void emit_result(assembler& a, const piece& p) {
  const memory to{at_record, p.offset};
  if (p.where == piece::xmm) a.store(to, p.at, p.bytes);
  if (p.where == piece::in_eax) a.store(to, eax);
  if (p.where == piece::in_edx) a.store(to, edx);
  if (p.where == piece::in_st) a.fstp(to, p.bytes);
}

// chain = 0, but not before every piece of the result is there.
void emit_chain(assembler& a, const std::vector<piece>& out) {
  a.pxor(chain, chain);
  for (const piece& p : out) {
    if (p.where == piece::xmm) a.por(chain, p.at);
    if (p.where == piece::slot) a.por(chain, memory{at_record, p.offset});
    if (p.where == piece::in_eax) a.movd(4, eax), a.por(chain, 4);
    if (p.where == piece::in_edx) a.movd(4, edx), a.por(chain, 4);
  }
  a.pand_absolute(chain, zero);
}

void emit_call(assembler& a, const call& c, bool chained, uintptr_t start) {
  for (const piece& p : c.in)
    if (p.where != piece::xmm) emit_argument(a, p, chained && p.chained);
  for (const piece& p : c.in)
    if (p.where == piece::xmm) emit_argument(a, p, chained && p.chained);
  a.call(c.target, start);
  if (c.pops_a_word) a.sub(esp, 4);
  if (chained) emit_chain(a, c.out);
  for (const piece& p : c.out) emit_result(a, p);
}

// The code of a function (first record, behind last record) that makes the calls on every record.
std::vector<uint8_t> loop_code(const std::vector<call>& calls, int record_bytes, bool chained, uintptr_t start) {
  assembler a;
  for (reg r : {ebx, esi, edi, ebp}) a.push(r);
  a.mov(ebp, esp);
  a.load(at_record, {esp, 20});
  a.load(at_end, {esp, 24});
  a.sub(esp, stack_room);
  a.and_(esp, -64);
  a.pxor(chain, chain);
  size_t top = a.code.size();
  for (const call& c : calls) emit_call(a, c, chained, start);
  a.add(at_record, record_bytes);
  a.cmp(at_record, at_end);
  a.jump_below(top);
  a.mov(esp, ebp);
  for (reg r : {ebp, edi, esi, ebx}) a.pop(r);
  a.ret();
  return a.code;
}

// Executable memory with the code in it.
std::pair<void*, size_t> place_code(const std::vector<call>& calls, int record_bytes, bool chained) {
  size_t bytes = (loop_code(calls, record_bytes, chained, 0).size() + 4095) & ~size_t{4095};
  void* p = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (p == MAP_FAILED) std::perror("mmap"), std::exit(2);
  std::vector<uint8_t> code = loop_code(calls, record_bytes, chained, reinterpret_cast<uintptr_t>(p));
  std::copy(code.begin(), code.end(), static_cast<uint8_t*>(p));
  if (mprotect(p, bytes, PROT_READ | PROT_EXEC) != 0) std::perror("mprotect"), std::exit(2);
  return {p, bytes};
}

}  // namespace

record record_of(const shape& s, element e, int width) {
  record r;
  auto take = [&](kind k) {
    int bytes = vector_bytes(k, e, width);
    int alignment = std::min(bytes, 16);
    int offset = (r.bytes + alignment - 1) / alignment * alignment;
    r.bytes = offset + bytes;
    return offset;
  };
  for (int a = 0; a < s.argument_count(); a++) r.argument[a] = take(s.arguments[a]);
  for (int i = 0; i < s.result_count(); i++) r.result[i] = take(s.results[i]);
  r.bytes = (r.bytes + 15) / 16 * 16;
  return r;
}

call_loop::call_loop(const entry_point& e, const void* address, chaining c) {
  int bytes = record_of(e.of->form, e.type, e.width).bytes;
  std::tie(code_, bytes_) = place_code({entry_call(e, address)}, bytes, c == chaining::result);
}

call_loop::call_loop(const entry_point& e, const peer& p) {
  int bytes = record_of(e.of->form, e.type, e.width).bytes;
  std::vector<call> calls;
  if (p.kind == peer_kind::scalar_loop)
    calls.push_back(scalar_loop_call(e, p));
  else if (p.kind == peer_kind::scalar || p.kind == peer_kind::scalar_sincos)
    for (int lane = 0; lane < e.width; lane++) calls.push_back(scalar_call(e, p, lane));
  else
    for (int i = 0; i < registers(kind::real, e.type, e.width); i++) calls.push_back(vector_call(e, p, i));
  std::tie(code_, bytes_) = place_code(calls, bytes, false);
}

call_loop::~call_loop() {
  if (code_ != nullptr) munmap(code_, bytes_);
}

namespace {
[[gnu::naked]] void nothing() { asm("ret"); }
}  // namespace
const void* empty_entry() { return reinterpret_cast<const void*>(&nothing); }

}  // namespace vorx::bench
