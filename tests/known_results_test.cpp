// Replays what no generator can know: results that are exact by definition (specials.csv), and the worst inputs that the accuracy
// tool found (witnesses.csv), whose error must stay within the kernel's claim.
#include <algorithm>
#include <cmath>

#include "tests/rows.h"
#include "tools/claims.h"

using namespace vorx;

namespace {

TEST(KnownResults, Specials) {
  const auto rows = read_rows(VORX_TESTS "/specials.csv");
  ASSERT_FALSE(rows.empty());
  size_t compared = 0;
  for (const row& r : rows)
    for (int width : widths) {
      const result_lane got = call_with_all_lanes(r, width);
      for (size_t i = 0; i < r.results.size(); i++, compared++) {
        const kind k = r.kernel.of->form.results[i];
        const bool good =
            r.results[i] == "nan" ? is_quiet_nan(got[i], r.kernel.type) : got[i] == parse_bits(r.results[i], k, r.kernel.type);
        EXPECT_TRUE(good) << "specials.csv:" << r.line << ": " << r.kernel.of->name << '(' << hex(r.kernel, r.arguments)
                          << ") of " << width << " lanes gives " << hex(r.kernel, got) << ", not " << r.results[i];
      }
    }
  std::printf("%zu results compared\n", compared);
}

// Rows of the accuracy tool: after the results the number of the one measured and its error, result - exact, in ULP. A processor
// with other reciprocal estimates may give a neighbouring result, so what counts is the error, not the bits.
TEST(KnownResults, Witnesses) {
  const auto rows = read_rows(VORX_TESTS "/witnesses.csv");
  ASSERT_FALSE(rows.empty());
  for (const row& r : rows) {
    ASSERT_EQ(r.more.size(), 2u) << "witnesses.csv:" << r.line;
    const size_t which = r.more[0] == "1";
    const element type = r.kernel.type;
    const float_format& format = format_of(type);
    const double recorded = as_double(type, parse_bits(r.results[which], kind::real, type)), error = std::stod(r.more[1]);
    const double ulp = std::ldexp(1.0, std::max(std::ilogb(recorded), format.lowest_exponent) - format.fraction_bits());
    for (int width : widths) {
      const result_lane got = call_with_all_lanes(r, width);
      const double error_now = std::fabs((as_double(type, got[which]) - recorded) / ulp + error);
      EXPECT_LE(error_now, std::max(claims_of(r.kernel).max_ulp, 0.5))
          << "witnesses.csv:" << r.line << ": " << r.kernel.of->name << '(' << hex(r.kernel, r.arguments) << ") of " << width
          << " lanes gives " << hex(r.kernel, got) << ", recorded " << r.results[which];
    }
  }
  std::printf("%zu worst inputs replayed\n", rows.size());
}

}  // namespace
