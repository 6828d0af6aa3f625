// Runs lanes with known results through an entry point at all six widths. Lanes are shuffled, so that each has hostile
// neighbours, and every lane visits every width; results are compared by bits.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "tests/lanes.h"
#include "tools/float_format.h"

namespace vorx {

// Bits of one lane's arguments and of the results that they must give, whatever the element type.
struct lane_case {
  argument_lane in;
  result_lane out;
};

// Zeros, subnormals, powers of two and their neighbours, integers and halves, the largest numbers, infinities, quiet and
// signalling NaN, all with both signs; and random bits.
template <class T>
std::vector<uint64_t> interesting_values(int random, unsigned seed) {
  constexpr const float_format& F = format_of(element_of<T>);
  std::vector<uint64_t> values = {0,
                                  1,
                                  2,
                                  3,
                                  F.quiet,
                                  2 * F.quiet - 1,
                                  F.infinity,
                                  F.infinity - 1,
                                  F.infinity + 1,
                                  F.infinity + 0x1234,
                                  F.infinity | F.quiet,
                                  F.infinity | F.quiet | 0x321};
  for (int n : {-1000, -130, -126, -60, -25, -2, -1, 0, 1, 2, F.fraction_bits() - 1, F.fraction_bits(), F.fraction_bits() + 1, 31,
                63, 120, 1000}) {
    uint64_t power = bits_of(static_cast<T>(std::ldexp(1.0, n)));
    for (uint64_t d : {0, 1, 2}) values.insert(values.end(), {power + d, power > d ? power - d : d});
  }
  for (int i = 1; i < 20; i++) values.push_back(bits_of(static_cast<T>(i * 0.5)));
  std::mt19937_64 generator(seed);
  for (int i = 0; i < random; i++) {
    values.push_back(sizeof(T) == 4 ? generator() >> 32 : generator());
    values.push_back(bits_of(static_cast<T>(std::uniform_real_distribution<double>(-100, 100)(generator))));
  }
  std::vector<uint64_t> both;
  for (uint64_t b : values) both.insert(both.end(), {b, b ^ F.sign});
  return both;
}

// Calls `function` with all cases at all widths. `inspect(flags, first, width)` is told what each call raised and which cases it
// had, by the index of the first; indices wrap.
template <class Inspect>
void run_every_width(const std::string& function, element type, std::vector<lane_case> cases, const call_options& options,
                     Inspect inspect) {
  std::shuffle(cases.begin(), cases.end(), std::mt19937(7));
  for (int width : widths) {
    const entry_point& e = find_entry(function, type, width);
    ASSERT_NE(library_symbol(e.symbol()), nullptr) << e.symbol();
    lane_caller call(e);
    int failures = 0;
    for (size_t first = 0; first < cases.size(); first += static_cast<size_t>(width)) {
      const lane_case* lane[16];
      argument_lane in[16];
      result_lane out[16];
      for (int i = 0; i < width; i++) {
        lane[i] = &cases[(first + static_cast<size_t>(i)) % cases.size()];
        in[i] = lane[i]->in;
      }
      ASSERT_EQ(call(in, out, options), "") << e.symbol();
      for (int i = 0; i < width; i++)
        for (int r = 0; r < e.of->form.result_count(); r++) {
          const uint64_t mask = lane_bytes(e.of->form.results[r], type) == 8 ? ~uint64_t{0} : 0xffffffff;
          if (out[i][r] == (lane[i]->out[r] & mask)) continue;
          if (++failures <= 5)
            ADD_FAILURE() << e.symbol() << " lane " << i << " result " << r << std::hex << ": of " << hex(e, in[i]) << " got "
                          << out[i][r] << " want " << (lane[i]->out[r] & mask);
        }
      inspect(call.flags(), lane, width);
    }
    EXPECT_EQ(failures, 0) << e.symbol();
  }
}

inline void run_every_width(const std::string& function, element type, const std::vector<lane_case>& cases,
                            const call_options& options = {}) {
  run_every_width(function, type, cases, options, [](uint32_t, const lane_case* const*, int) {});
}

}  // namespace vorx
