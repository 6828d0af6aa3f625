// The same argument gives the same bits at every width, in every lane, whatever its neighbours are.
#include "tests/arguments.h"

using namespace vorx;

namespace {

struct Widths : testing::TestWithParam<const function*> {};

// Arguments with the results that the reference width gives when all its lanes hold the same.
struct known_results {
  std::vector<argument_lane> arguments;
  std::vector<result_lane> results;

  void add(lane_caller& reference, const argument_lane& a) {
    argument_lane in[4] = {a, a, a, a};
    result_lane out[4];
    ASSERT_EQ(reference(in, out), "") << reference.entry().symbol() << '(' << hex(reference.entry(), a) << ')';
    for (int i = 1; i < reference.entry().width; i++)
      ASSERT_EQ(out[i], out[0]) << "lane " << i << ": " << hex(reference.entry(), a);
    arguments.push_back(a);
    results.push_back(out[0]);
  }
};

constexpr size_t hostile_count = 64;

// Every argument once at some lane of e, between hostile neighbours. Where a decision concerns the whole vector, neighbours are
// ordinary and only the tested lane is compared.
void compare(const entry_point& e, const known_results& known, argument_source& source, bool whole_vector) {
  lane_caller call(e);
  const auto width = static_cast<size_t>(e.width);
  size_t compared = 0, wrong = 0;
  for (size_t next = hostile_count; next < known.arguments.size();) {
    argument_lane in[16];
    result_lane out[16];
    size_t which[16];
    const size_t tested = source.random() % width;
    for (size_t i = 0; i < width; i++) {
      const bool advance = i == tested || (!whole_vector && source.random() % 4 != 0);
      which[i] = advance && next < known.arguments.size() ? next++ : source.random() % hostile_count;
      in[i] = known.arguments[which[i]];
      if (whole_vector && i != tested) in[i] = source.ordinary();
    }
    EXPECT_EQ(call(in, out), "") << e.symbol();
    for (size_t i = 0; i < width; i++) {
      if (whole_vector && i != tested) continue;
      compared++;
      if (out[i] != known.results[which[i]] && wrong++ < 3)
        ADD_FAILURE() << e.symbol() << '(' << hex(e, in[i]) << ") in lane " << i << " gives " << hex(e, out[i]) << ", alone "
                      << hex(e, known.results[which[i]]);
    }
  }
  EXPECT_EQ(wrong, 0u) << e.symbol() << ", of " << compared << " lanes";
}

TEST_P(Widths, AgreeBitForBit) {
  const function& f = *GetParam();
  const auto kernels = entry_points_of(f, 1).size();
  const size_t inputs = (quick() ? 20'000 : 1'000'000) / kernels + 1;
  for (const entry_point& kernel : entry_points_of(f, 1)) {
    const claims& claim = claims_of(kernel);
    argument_source source(kernel);
    lane_caller reference({kernel.of, kernel.type, reference_width(kernel.type), kernel.native});
    known_results known;
    size_t special_lanes = 0;
    for (size_t i = 0; i < hostile_count; i++) known.add(reference, source.hostile());
    for (size_t i = 0; i < inputs && !HasFatalFailure(); i++) {
      known.add(reference, source.next());
      special_lanes += claim.has_lane_test && claim.flags(known.arguments.back().data());
    }
    if (HasFatalFailure()) return;
    if (claim.has_lane_test) {
      EXPECT_GT(special_lanes, inputs / 1000) << kernel.symbol();
      EXPECT_EQ(special_lanes == inputs, claim.every_lane_special) << kernel.symbol();
    }
    for (const entry_point& e : entry_points_of(f))
      if (e.type == kernel.type && e.native == kernel.native) compare(e, known, source, claim.whole_vector);
  }
}
VORX_EVERY_FUNCTION(Widths);

}  // namespace
