// The few x86 instructions that a call loop consists of, encoded into a buffer. Memory operands are a base register and a 32-bit
// displacement.
#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <vector>

namespace vorx::bench {

enum reg : uint8_t { eax, ecx, edx, ebx, esp, ebp, esi, edi };
struct memory {
  reg base;
  int32_t displacement;
};

class assembler {
 public:
  std::vector<uint8_t> code;

  // movss, movsd, movaps: 4, 8 or 16 bytes; a load clears the rest of the register.
  void load(int xmm, memory m, int bytes) { vector_move(0x10, 0x28, xmm, m, bytes); }
  void store(memory m, int xmm, int bytes) { vector_move(0x11, 0x29, xmm, m, bytes); }
  void por(int to, int from) { put({0x66, 0x0f, 0xeb, both(to, from)}); }
  void por(int to, memory from) { put({0x66, 0x0f, 0xeb}), operand(to, from); }
  void pand_absolute(int to, const void* from) { put({0x66, 0x0f, 0xdb, modrm(0, to, 5)}), word(address(from)); }
  void pxor(int to, int from) { put({0x66, 0x0f, 0xef, both(to, from)}); }
  void movaps(int to, int from) { put({0x0f, 0x28, both(to, from)}); }
  void movd(int to_xmm, reg from) { put({0x66, 0x0f, 0x6e, both(to_xmm, from)}); }
  void movd(reg to, int from_xmm) { put({0x66, 0x0f, 0x7e, both(from_xmm, to)}); }

  void load(reg to, memory m) { put({0x8b}), operand(to, m); }
  void store(memory m, reg from) { put({0x89}), operand(from, m); }
  void lea(reg to, memory m) { put({0x8d}), operand(to, m); }
  void mov(reg to, reg from) { put({0x89, both(from, to)}); }
  void or_(reg to, reg from) { put({0x09, both(from, to)}); }
  void and_(reg to, int32_t a) { put({0x81, both(4, to)}), word(static_cast<uint32_t>(a)); }
  void add(reg to, int32_t a) { put({0x81, both(0, to)}), word(static_cast<uint32_t>(a)); }
  void sub(reg to, int32_t a) { put({0x81, both(5, to)}), word(static_cast<uint32_t>(a)); }
  void cmp(reg a, reg b) { put({0x39, both(b, a)}); }
  void push(reg a) { put({static_cast<uint8_t>(0x50 + a)}); }
  void pop(reg a) { put({static_cast<uint8_t>(0x58 + a)}); }
  void ret() { put({0xc3}); }

  // The x87 result to memory, 4 or 8 bytes.
  void fstp(memory m, int bytes) { put({static_cast<uint8_t>(bytes == 4 ? 0xd9 : 0xdd)}), operand(3, m); }

  // A call of an address: relative, so where the code will be must be known.
  void call(const void* target, uintptr_t start_of_code) {
    put({0xe8});
    word(address(target) - static_cast<uint32_t>(start_of_code + code.size() + 4));
  }
  // A jump back to an offset of the code, taken when the last comparison was below.
  void jump_below(size_t to) {
    put({0x0f, 0x82});
    word(static_cast<uint32_t>(to - (code.size() + 4)));
  }

 private:
  void put(std::initializer_list<uint8_t> bytes) { code.insert(code.end(), bytes); }
  void word(uint32_t a) {
    for (int i = 0; i < 4; i++) code.push_back(static_cast<uint8_t>(a >> 8 * i));
  }
  static uint32_t address(const void* p) { return reinterpret_cast<uintptr_t>(p); }
  static uint8_t modrm(int mode, int a, int b) { return static_cast<uint8_t>(mode << 6 | a << 3 | b); }
  static uint8_t both(int a, int b) { return modrm(3, a, b); }
  void operand(int a, memory m) {
    put({modrm(2, a, m.base)});
    if (m.base == esp) put({0x24});
    word(static_cast<uint32_t>(m.displacement));
  }
  void vector_move(uint8_t scalar, uint8_t whole, int xmm, memory m, int bytes) {
    if (bytes == 16)
      put({0x0f, whole});
    else
      put({static_cast<uint8_t>(bytes == 4 ? 0xf3 : 0xf2), 0x0f, scalar});
    operand(xmm, m);
  }
};

}  // namespace vorx::bench
