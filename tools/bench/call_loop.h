// Loops that call: an entry point of the library, a function of the scalar C library lane by lane, or a function of the
// independent vector library register by register. Each loop walks an array of records, one record for one call of an entry
// point: its argument vectors and room for its results. The code is generated from the layout of the call and does what a
// compiler's caller does, no more: loads registers, copies what is passed on the stack, calls, stores the results.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/catalogue.h"

namespace vorx::bench {

// Where the vectors of one call are in its record. Three lanes take the memory of four.
struct record {
  int argument[3] = {};
  int result[2] = {};
  int bytes = 0;
};
record record_of(const shape& s, element e, int width);

// How a peer takes its arguments.
enum class peer_kind {
  scalar,         // cdecl: arguments on the stack, pointers behind them, result in st(0) or eax
  scalar_sincos,  // the same with two pointers and no result
  scalar_loop,    // cdecl: addresses of the first argument lane, of the end of these lanes, and of the first result lane
  vector,         // registers in xmm0, xmm1, xmm2; result in xmm0
  vector_pair,    // two results through a hidden pointer, which the callee removes
};
struct peer {
  const void* address = nullptr;  // null where the library has no such function
  peer_kind kind = peer_kind::scalar;
};

enum class chaining {
  none,    // calls are independent: throughput
  result,  // all bits of the first argument wait for the result of the call before: latency
};

class call_loop {
 public:
  // A loop over the entry point at an address, or over anything else with its convention.
  call_loop(const entry_point& e, const void* address, chaining c = chaining::none);
  // A loop over the calls of a peer that do the work of one call of the entry point.
  call_loop(const entry_point& e, const peer& p);
  call_loop(call_loop&& other) : code_(other.code_), bytes_(other.bytes_) { other.code_ = nullptr; }
  ~call_loop();

  // Walks the records once.
  void operator()(void* first_record, void* behind_last_record) const {
    reinterpret_cast<void (*)(void*, void*)>(code_)(first_record, behind_last_record);
  }

 private:
  void* code_ = nullptr;
  size_t bytes_ = 0;
};

// An entry point that does nothing: the cost of the loop around it is the cost of calling.
const void* empty_entry();

}  // namespace vorx::bench
