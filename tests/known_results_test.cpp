// Replays what no generator can know: results that are exact by definition (specials.csv), and the worst inputs that the accuracy
// tool found (witnesses.csv), whose error must stay within the kernel's claim.
#include "tests/rows.h"
#include "tools/claims.h"

using namespace vorx;

namespace {

TEST(KnownResults, Specials) {
  const auto rows = read_rows(VORX_TESTS "/specials.csv");
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
  EXPECT_GE(compared, 6 * rows.size());
  std::printf("%zu results compared\n", compared);
}

// The error of a result in units in the last place of the exact value.
double error_in_ulp(uint64_t bits, element type, long double exact) {
  const long double got = type == element::f32 ? std::bit_cast<float>(static_cast<uint32_t>(bits)) : std::bit_cast<double>(bits);
  const int least = type == element::f32 ? -126 : -1022, fraction_bits = type == element::f32 ? 23 : 52;
  const int exponent = exact == 0 ? least : std::max(std::ilogb(exact), least);
  return static_cast<double>(std::fabs(got - exact) / std::ldexp(1.0L, exponent - fraction_bits));
}

// A witness row: function,type,variant,arguments,exact results as hexadecimal floating-point numbers of 64 bits.
TEST(KnownResults, Witnesses) {
  const auto rows = read_rows(VORX_TESTS "/witnesses.csv");
  for (const row& r : rows)
    for (int width : widths) {
      const result_lane got = call_with_all_lanes(r, width);
      for (size_t i = 0; i < r.results.size(); i++) {
        if (is_integer(r.kernel.of->form.results[i])) continue;
        const double error = error_in_ulp(got[i], r.kernel.type, std::strtold(r.results[i].c_str(), nullptr));
        EXPECT_LE(error, claims_of(r.kernel).max_ulp)
            << "witnesses.csv:" << r.line << ": " << r.kernel.of->name << '(' << hex(r.kernel, r.arguments) << ") of " << width
            << " lanes gives " << hex(r.kernel, got) << ", exactly " << r.results[i];
      }
    }
  std::printf("%zu worst inputs replayed\n", rows.size());
}

}  // namespace
