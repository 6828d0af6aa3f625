// The calling convention, for every entry point: nothing but the results changes, nothing but the arguments matters.
#include <algorithm>
#include <atomic>
#include <thread>

#include "tests/arguments.h"
#include "tests/call_counter.h"

using namespace vorx;

namespace {

struct Convention : testing::TestWithParam<const function*> {};

// Lanes of three sorts: ordinary, flagged by the kernel's lane test (where it has one), and anything.
struct lane_sets {
  std::vector<std::array<argument_lane, 16>> sets;
  size_t special_lanes = 0;

  explicit lane_sets(const entry_point& e) {
    const claims& claim = claims_of(e);
    argument_source source(e);
    std::array<argument_lane, 16> ordinary, special, mixed;
    auto flagged = [&](const argument_lane& a) { return claim.has_lane_test && claim.flags(a.data()); };
    for (auto& lane : ordinary) lane = source.ordinary();
    for (auto& lane : special) {
      do lane = source.next();
      while (claim.has_lane_test && !flagged(lane));
      special_lanes += flagged(lane);
    }
    for (auto& lane : mixed) lane = source.next();
    sets = {ordinary, special, mixed};
  }
};

bool vectors_on_the_stack(const layout& l) {
  for (const placement& p : l.arguments)
    if (p.place == where::stack && p.count > 0) return true;
  return false;
}

// What fills lanes, registers and stack words that carry no element: NaNs, infinities, huge and tiny values, zeros.
constexpr uint64_t garbage_patterns[] = {
    0xffa5a5a5ffa5a5a5, 0x7f8000007f800000, 0x7ff0000000000000, 0x7f7fffff7f7fffff, 0x7fefffffffffffff, 0x0000000100000001, 0,
    0xffffffffffffffff, 0x3f8000003f800000};

TEST_P(Convention, HoldsWhateverIsInTheRestOfTheMachine) {
  for (const entry_point& e : entry_points_of(*GetParam())) {
    lane_caller call(e);
    const layout l = call.where_things_are();
    const lane_sets lanes(e);
    if (claims_of(e).has_lane_test) EXPECT_EQ(lanes.special_lanes, 16u);
    for (const auto& set : lanes.sets) {
      result_lane expected[16], out[16];
      ASSERT_EQ(call(set.data(), expected), "") << e.symbol();
      auto check = [&](const call_options& options) {
        EXPECT_EQ(call(set.data(), out, options), "") << e.symbol();
        for (int i = 0; i < e.width; i++)
          ASSERT_EQ(out[i], expected[i]) << e.symbol() << '(' << hex(e, set[i]) << ") in lane " << i << ", garbage " << std::hex
                                         << options.garbage << ", stack off by " << options.misalignment;
      };
      for (uint64_t garbage : garbage_patterns) check({.garbage = garbage});
      if (!vectors_on_the_stack(l))
        for (int misalignment : {4, 8, 12}) check({.misalignment = misalignment});
      for (int offset : {0, 8}) check({.hidden_offset = offset});
      // The caller's rounding, flushed results, subnormal arguments read as zero and raised flags stay as they are: what they do
      // to the results is not looked at.
      for (uint32_t rounding : {0u, 0x2000u, 0x4000u, 0x6000u})
        for (uint32_t more : {0u, 0x8000u, 0x40u, 0x8040u, 0x3fu})
          EXPECT_EQ(call(set.data(), out, {.mxcsr = 0x1f80 | rounding | more}), "") << e.symbol();
    }
  }
}

// What the fourth lane of three is replaced by.
argument_lane fill_of(const entry_point& e) {
  const std::string_view name = e.of->fourth_lane;
  const double value = name == "three_quarters" ? 0.75 : name == "one" ? 1 : 2;
  argument_lane lane{};
  for (int a = 0; a < e.of->form.argument_count(); a++) {
    const kind k = e.of->form.arguments[a];
    lane[a] = is_integer(k) ? k != kind::bits : bits_of(e.type, value);
  }
  return lane;
}

// A lane goes to the rare-case routine when the lane test flags it, and only then: not lanes beyond the width, not the fourth
// lane of three, whatever they hold. Kernels with a large path have their cold part and flag lanes only beside a large lane.
TEST_P(Convention, SendsFlaggedLanesAndNoOthersToTheRareCase) {
  auto count_calls = [](const char* what, bool once_per_vector) {
    const call_counter counter([&](std::string_view name) { return name.find(what) != name.npos; });
    for (const entry_point& e : entry_points_of(*GetParam())) {
      const claims& claim = claims_of(e);
      if (claim.has_lane_test) ASSERT_GT(counter.functions(), 0u);
      // The fill is an ordinary argument, but nextafter flags, deliberately, what has like signs; of one register, the lane test
      // is cut to three lanes.
      const bool fill_flagged = claim.has_lane_test && !claim.every_lane_special && e.width == 3 && e.type == element::f64 &&
                                claim.flags(fill_of(e).data());
      EXPECT_TRUE(!fill_flagged || e.of->name == std::string_view("nextafter")) << e.symbol();
      lane_caller call(e);
      for (const auto& set : lane_sets(e).sets) {
        size_t flagged = fill_flagged;
        for (int i = 0; i < e.width; i++) flagged += claim.has_lane_test && claim.flags(set[i].data());
        if (claim.large) {
          const bool large = std::any_of(set.begin(), set.begin() + e.width, [&](auto& a) { return claim.large(a.data()); });
          flagged = once_per_vector ? large : large ? flagged : 0;
        } else if (once_per_vector) {
          flagged = flagged != 0;
        } else if (std::count(claim.in_line.begin(), claim.in_line.end(), e.width) != 0) {
          flagged = 0;
        }
        for (uint64_t garbage : garbage_patterns) {
          result_lane out[16];
          call(set.data(), out, {.garbage = garbage});
          EXPECT_EQ(call_counter::take(), flagged) << what << " of " << e.symbol() << ", garbage " << std::hex << garbage;
        }
      }
    }
  };
  count_calls("rare_case", false);
  count_calls(".cold", true);
}
VORX_EVERY_FUNCTION(Convention);

// Every entry point from eight threads at once, each with arguments of its own.
TEST(Threads, DoNotDisturbEachOther) {
  constexpr int threads = 8;
  const size_t rounds = quick() ? 2 : 20;
  std::atomic<size_t> wrong = 0;
  struct job {
    lane_caller call;
    std::array<argument_lane, 16> in[threads];
    std::array<result_lane, 16> expected[threads];
  };
  std::vector<job> jobs;
  for (const entry_point& e : entry_points()) {
    job& j = jobs.emplace_back(job{lane_caller(e), {}, {}});
    argument_source source(e);
    for (int t = 0; t < threads; t++) {
      for (auto& lane : j.in[t]) lane = source.next();
      ASSERT_EQ(j.call(j.in[t].data(), j.expected[t].data()), "") << e.symbol();
    }
  }
  ASSERT_FALSE(jobs.empty());
  std::vector<std::thread> running;
  for (int t = 0; t < threads; t++)
    running.emplace_back([&, t] {
      for (size_t round = 0; round < rounds; round++)
        for (const job& j : jobs) {
          lane_caller call = j.call;
          result_lane out[16];
          if (!call(j.in[t].data(), out).empty()) wrong++;
          for (int i = 0; i < call.entry().width; i++) wrong += out[i] != j.expected[t][i];
        }
    });
  for (auto& t : running) t.join();
  EXPECT_EQ(wrong, 0u);
}

}  // namespace
