// Calls an entry point often: a frame with the registers and the stack as the convention wants them is prepared once, lanes are
// written to and read from it in place, and a call costs little more than the entry point. tools/invoke.h is the counterpart that
// checks what an entry point must leave alone.
#pragma once

#include <cstdint>
#include <cstring>

#include "frame/catalogue.h"

namespace vorx::ulp {

// What enter() loads before the call and stores after it.
struct alignas(16) call_frame {
  unsigned char xmm[4][16];
  uint32_t eax, edx;
  const void* entry;
  uint32_t stack_bytes;                       // of `stack` that are copied: a multiple of 16
  alignas(16) unsigned char stack[416];       // from 4(%esp) at the entry on, aligned as it will be
  alignas(16) unsigned char hidden[256];      // the hidden result area
  alignas(16) unsigned char pointed_to[128];  // the vector behind the trailing pointer
};

class caller {
 public:
  explicit caller(const entry_point& e);
  caller(const caller&) = delete;
  caller& operator=(const caller&) = delete;

  void set(int argument, int lane, uint64_t bits) {
    const lanes& l = argument_[argument];
    if (l.bytes == 4)
      std::memcpy(l.start + 4 * lane, &bits, 4);
    else
      std::memcpy(l.start + 8 * lane, &bits, 8);
  }
  uint64_t get(int result, int lane) const {
    const lanes& l = result_[result];
    uint64_t bits = 0;
    if (l.bytes == 4)
      std::memcpy(&bits, l.start + 4 * lane, 4);
    else
      std::memcpy(&bits, l.start + 8 * lane, 8);
    return bits;
  }
  void operator()();

  // The SSE control register during calls: round to nearest with exceptions masked, unless set otherwise.
  static uint32_t mxcsr;

 private:
  struct lanes {
    unsigned char* start = nullptr;
    int bytes = 0;  // of one lane
  };
  call_frame frame_;
  lanes argument_[3], result_[2];
};

}  // namespace vorx::ulp
