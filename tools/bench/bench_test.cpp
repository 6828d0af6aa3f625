// What the speed tool times is the right thing: its call loops give the results of the generic invoker, its peers compute the
// same functions, its arguments take the ordinary path.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string_view>

#include "tools/bench/inlined.h"
#include "tools/bench/peers.h"
#include "tools/bench/statistics.h"
#include "tools/bench/subject.h"
#include "tools/invoke.h"

using namespace vorx;
using namespace vorx::bench;

namespace {

constexpr int lanes = 48;  // whole calls at every width

// The records of an entry point with ordinary arguments, and the lanes of its results.
struct fixture {
  explicit fixture(const entry_point& entry)
      : e(entry),
        form(entry.of->form),
        layout_of_record(record_of(form, e.type, e.width)),
        arguments(ordinary_arguments(*e.of, e.type, lanes)),
        calls(lanes / e.width),
        bytes(static_cast<char*>(aligned_alloc(64, (size_t(calls * layout_of_record.bytes) + 63) & ~size_t{63}))) {
    std::memset(bytes, 0xee, size_t(calls * layout_of_record.bytes));
    fill_records(e, arguments, lanes, bytes);
  }
  ~fixture() { std::free(bytes); }
  void run(const call_loop& loop) { loop(bytes, bytes + calls * layout_of_record.bytes); }
  int result_bytes(int r) const { return lane_bytes(form.results[r], e.type); }
  const char* result(int r, int lane) const {
    return bytes + lane / e.width * layout_of_record.bytes + layout_of_record.result[r] + lane % e.width * result_bytes(r);
  }
  double value(int r, int lane) const {
    auto lane_as = [&](auto type) { return std::memcpy(&type, result(r, lane), sizeof type), static_cast<double>(type); };
    switch (form.results[r]) {
      case kind::i32:
        return lane_as(int32_t{});
      case kind::u32:
        return lane_as(uint32_t{});
      case kind::i64:
        return lane_as(int64_t{});
      case kind::u64:
        return lane_as(uint64_t{});
      default:
        return e.type == element::f32 ? lane_as(float{}) : lane_as(double{});
    }
  }

  entry_point e;
  shape form;
  record layout_of_record;
  lane_bytes_of_arguments arguments;
  int calls;
  char* bytes;
};

// Result lanes that differ from those of the generic invoker.
int lanes_unlike_the_invoker(const fixture& f) {
  invoker invoke(f.e, library_symbol(f.e.symbol()));
  int unlike = 0;
  for (int n = 0; n < f.calls; n++) {
    alignas(16) unsigned char results[2][128];
    const void* in[3];
    void* out[] = {results[0], results[1]};
    for (int a = 0; a < f.form.argument_count(); a++)
      in[a] = &f.arguments[size_t(a)][size_t(n * f.e.width * lane_bytes(f.form.arguments[a], f.e.type))];
    EXPECT_EQ(invoke(in, out), "") << f.e.symbol();
    for (int r = 0; r < f.form.result_count(); r++)
      for (int i = 0; i < f.e.width; i++)
        unlike += std::memcmp(f.result(r, n * f.e.width + i), results[r] + i * f.result_bytes(r), size_t(f.result_bytes(r))) != 0;
  }
  return unlike;
}

}  // namespace

TEST(CallLoop, GivesTheResultsOfTheInvoker) {
  for (const entry_point& e : entry_points())
    for (chaining c : {chaining::none, chaining::result}) {
      fixture f(e);
      f.run(call_loop(e, library_symbol(e.symbol()), c));
      EXPECT_EQ(lanes_unlike_the_invoker(f), 0) << e.symbol() << (c == chaining::result ? ", chained" : "");
    }
}

// A peer called by a wrong convention, or one that means something else, is far off.
TEST(Peers, ComputeTheSameFunctions) {
  int compared = 0;
  for (const entry_point& e : entry_points()) {
    bool whole_registers = e.width * lane_bytes(kind::real, e.type) >= 16 && e.width != 3;
    fixture own(e);
    own.run(call_loop(e, library_symbol(e.symbol())));
    for (int which = 0; which < (whole_registers ? 3 : 1); which++) {
      peer p = which == 0 ? scalar_peer(*e.of, e.type) : vector_peer(*e.of, e.type, which == 1);
      if (p.address == nullptr || e.native) continue;
      fixture f(e);
      f.run(call_loop(e, p));
      for (int lane = 0; lane < lanes; lane++) {
        double expected = own.value(0, lane);
        EXPECT_NEAR(f.value(0, lane), expected, 1e-5 * std::max(1.0, std::fabs(expected))) << e.symbol() << ", peer " << which;
        compared++;
      }
    }
  }
  EXPECT_GT(compared, 0);
}

// Loops of casts are a fair peer only if they do all that the conversions do: bit for bit, on integers of any size and, where the
// conversion saturates, on numbers out of range. (A NaN is left out: C programs have no reason to treat it as we do.)
TEST(Peers, ConversionLoopsGiveTheBitsOfTheEntryPoints) {
  std::mt19937_64 random(1);
  int compared = 0;
  for (const entry_point& e : entry_points()) {
    peer p = conversion_loop(*e.of, e.type);
    if (p.address == nullptr) continue;
    fixture own(e), f(e);
    const kind from = e.of->form.arguments[0];
    auto size = size_t(lane_bytes(from, e.type));
    for (size_t at = 0; at < own.arguments[0].size(); at += size) {
      uint64_t integer = random() >> random() % 64;
      double wide = std::ldexp(double(random() >> 11), int(random() % 90) - 70) * (random() % 2 ? 1 : -1);
      auto single = static_cast<float>(wide);
      const void* lane = is_integer(from) ? static_cast<void*>(&integer) : size == 4 ? static_cast<void*>(&single) : &wide;
      if (is_integer(from) || !std::string_view(e.of->name).ends_with("nosat")) std::memcpy(&own.arguments[0][at], lane, size);
    }
    fill_records(e, own.arguments, lanes, own.bytes);
    fill_records(e, own.arguments, lanes, f.bytes);
    own.run(call_loop(e, library_symbol(e.symbol())));
    f.run(call_loop(e, p));
    for (int lane = 0; lane < lanes; lane++, compared++)
      EXPECT_EQ(std::memcmp(f.result(0, lane), own.result(0, lane), size_t(own.result_bytes(0))), 0)
          << e.symbol() << ", lane " << lane;
  }
  EXPECT_EQ(compared, 48 * 2 * 6 * lanes);
}

TEST(Inlined, EveryKernelIsThereAndItsArgumentsAreOrdinary) {
  for (const entry_point& e : entry_points()) {
    const inlined_kernel* k = inlined_kernel_of(e);
    ASSERT_NE(k, nullptr) << e.symbol();
    if (e.width != 4 || k->flags == nullptr) continue;
    if (e.of->name == std::string("nextafter")) continue;  // like signs, half of all arguments, are recomputed
    lane_bytes_of_arguments arguments = ordinary_arguments(*e.of, e.type, lanes);
    int flagged = 0;
    for (int lane = 0; lane < lanes; lane++) {
      alignas(16) unsigned char x[3][32] = {};
      for (int a = 0; a < e.of->form.argument_count(); a++) {
        auto size = size_t(lane_bytes(e.of->form.arguments[a], e.type));
        for (size_t i = 0; i < 16 / size; i++) std::memcpy(x[a] + i * size, &arguments[size_t(a)][size_t(lane) * size], size);
      }
      const void* in[] = {x[0], x[1], x[2]};
      flagged += k->flags(in);
    }
    EXPECT_EQ(flagged, 0) << e.symbol() << " needs a row in tools/bench/domains.cpp";
  }
}

TEST(Statistics, QuantilesAndSpread) {
  const double none = std::nan("");
  EXPECT_EQ(quantile({5, 1, 3}, 0.5), 3);
  EXPECT_EQ(quantile({1, 2, 3, 4}, 0.5), 2.5);
  EXPECT_EQ(quantile({none, 7, none}, 0.25), 7);
  EXPECT_TRUE(std::isnan(quantile({none}, 0.5)));
  EXPECT_EQ(spread({1, 2, 3, 4, 5}), 1.0 / 3);
}
