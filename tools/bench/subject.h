// One entry point and everything it is measured beside: argument records, call loops, and rounds of time slices.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tools/bench/call_loop.h"
#include "tools/bench/domains.h"

namespace vorx::bench {

// What is timed. The loops of `empty` and `empty_latency` call an entry point that does nothing.
enum class quantity { throughput, empty, scalar, vector_accurate, vector_fast, inlined, latency, empty_latency, special };
constexpr size_t quantities = 9;

// Ticks of one pass over all lanes, by quantity; NaN for what does not exist.
using round_result = std::array<double, quantities>;

// Argument lanes to the records of consecutive calls, as many as there are whole calls.
void fill_records(const entry_point& e, const lane_bytes_of_arguments& arguments, int lanes, char* first_record);

class subject {
 public:
  // Each slice of time is about so long; 0 makes one pass a slice.
  subject(const entry_point& e, double slice_microseconds);
  subject(const subject&) = delete;

  round_result round();

  // From the rounds of one repetition:
  //   cycles, inlined                   core cycles per lane: the entry point, its kernel inlined into a loop
  //   ns                                nanoseconds per lane
  //   empty, latency, empty_latency     core cycles per call
  //   special                           additional core cycles per call when one lane is special
  //   scalar_ratio, vector_accurate_ratio, vector_fast_ratio   time of the peer over time of the entry point
  // What does not exist is left out.
  std::map<std::string, double> summary(const std::vector<round_result>& rounds) const;

 private:
  static constexpr int lanes = 512;  // of each argument, in all records together

  struct aligned_bytes {
    explicit aligned_bytes(size_t n) : bytes(n + 64) {}
    char* data() { return reinterpret_cast<char*>((reinterpret_cast<uintptr_t>(bytes.data()) + 63) & ~uintptr_t{63}); }
    std::vector<char> bytes;
  };
  // What one slice of a quantity does: a pass over all lanes, so many times.
  struct slice {
    std::function<void()> pass;
    int passes = 1;
  };

  void add(quantity q, call_loop loop, aligned_bytes& records);
  void add(quantity q, std::function<void()> pass);
  void add_inlined(const lane_bytes_of_arguments& arguments);
  void add_special(const void* address, lane_bytes_of_arguments arguments);

  entry_point entry_;
  record record_;
  double slice_ticks_;
  aligned_bytes ordinary_, special_;
  std::vector<aligned_bytes> lane_arrays_;
  std::array<slice, quantities> slices_;
  std::vector<double> cycles_per_tick_;
};

}  // namespace vorx::bench
