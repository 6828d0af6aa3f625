// The tool itself: its references, its measure, and that it sees a fault of one bit.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

#include "tools/invoke.h"
#include "tools/ulp/limits.h"
#include "tools/ulp/run.h"

using namespace vorx;
using namespace vorx::ulp;

namespace {

const entry_point& kernel_of(const std::string& name, element type, bool native = false) {
  return find_entry(name, type, 4, native);
}

struct output {
  int status;
  std::string text;
};
output run_tool(const std::string& arguments, const char* library = nullptr) {
  std::string command = (library ? "VORX_LIBRARY=" + std::string(library) + " " : "") + VORX_ULP + " " + arguments;
  std::FILE* pipe = popen(command.c_str(), "r");
  std::string text;
  for (char line[512]; std::fgets(line, sizeof line, pipe);) text += line;
  return {WEXITSTATUS(pclose(pipe)), text};
}

}  // namespace

TEST(References, EveryResultOfEveryFunctionHasOneAndALimit) {
  int results = 0;
  for (const function& f : catalogue())
    for (element type : {element::f32, element::f64}) {
      limit_of(f, type);
      for (int r = 0; r < f.form.result_count(); r++, results++) {
        result_reference reference = reference_of(f, type, r);
        EXPECT_TRUE(reference.real || reference.exact.bits) << f.name;
      }
    }
  EXPECT_EQ(results, 2 * (120 + 7));
}

// The estimates of every function are within their bounds: for arguments of all sizes, and those of both types.
TEST(References, EstimatesAreWithinTheirBounds) {
  std::mt19937_64 random(7);
  real x(64), y(64), exact(160), error(200);
  const real* a[] = {&x, &y, &y};
  int compared = 0;
  for (const function& f : catalogue()) {
    const real_reference* reference = real_reference_of(f.name, 0);
    if (!reference || !reference->quick) continue;
    for (int i = 0; i < 2000; i++) {
      double u = std::ldexp(1 + 0x1p-52 * static_cast<double>(random() >> 12), static_cast<int>(random() % 40) - 30);
      double v = static_cast<double>(static_cast<int64_t>(random())) * 0x1p-60;
      if (f.form.arguments[1] == kind::i32) v = static_cast<double>(random() % 64) - 32;
      if (random() % 2) u = -u;
      const bool wide = i % 2;
      if (!wide) u = static_cast<float>(u), v = static_cast<float>(v);
      mpfr_set_d(x, u, MPFR_RNDN);
      mpfr_set_d(y, v, MPFR_RNDN);
      reference->value(exact, a);
      if (!mpfr_regular_p(exact) || std::abs(mpfr_get_exp(exact)) > (wide ? 1020 : 120)) continue;
      mpfr_set_ld(error, wide ? reference->fine(u, v) : reference->quick(u, v), MPFR_RNDN);
      mpfr_sub(error, error, exact, MPFR_RNDN);
      mpfr_div(error, error, exact, MPFR_RNDN);
      mpfr_mul_2si(error, error, wide ? reference->fine_bits : reference->quick_bits, MPFR_RNDN);
      ASSERT_LE(std::fabs(mpfr_get_d(error, MPFR_RNDN)), 1.0) << f.name << (wide ? "" : "f") << " of " << u << ", " << v;
      compared++;
    }
  }
  EXPECT_GT(compared, 40000);
}

// exp and its neighbours at one, at the ends of the range, and results of the wrong kind: what error or fault each counts as.
TEST(Measure, ErrorsAtBinadesSubnormalsAndTheEndsOfTheRange) {
  struct sample {
    uint32_t in, out;
    double error;  // ULP; -1 where the result is one of the wrong kind
  };
  const sample samples[] = {
      {0x00000000, 0x3f800000, 0},     // exp(0) = 1
      {0x00000000, 0x3f7fffff, 0.5},   // below one: half a unit of one's binade
      {0x00000000, 0x3f800001, 1},     //
      {0xa4800000, 0x3f7fffff, 1},     // exp(-2^-54) is just below one: the unit is the smaller one
      {0xc2cff1b4, 0x00000001, 0.5},   // exp(-103.97208) is half the smallest subnormal, nearly
      {0xc2cff1b4, 0x00000003, 2.5},   // subnormal units below the normal range
      {0xc3480000, 0x00000000, 0},     // exp(-200) underflows
      {0xc3480000, 0x80000000, -1},    // sign of zero
      {0x42b17217, 0x7f7fff84, 0.09},  // exp(88.7228317): near the largest number
      {0x42b17217, 0x7f800000, 252},   // infinity stands for the next power of two: 252 units off, beyond the claim
      {0x42b17218, 0x7f800000, 0},     // overflow
      {0x7f800000, 0x7f7fffff, -1},    // infinity expected
      {0x7fc00000, 0x7fc00000, 0},     // NaN
      {0x7fc00000, 0x7fa00000, -1},    // a signalling one
      {0x7fc00000, 0x3f800000, -1},    // a number
      {0x3f800000, 0x7fc00000, -1},    // NaN for a number
  };
  for (const sample& s : samples) {
    judge j(kernel_of("exp", element::f32));
    j({s.in, 0, 0}, {s.out, 0});
    if (s.error == 252) {
      EXPECT_EQ(j.found.faults[static_cast<size_t>(fault::infinity_for_finite)], 1u);
    } else if (s.error < 0) {
      EXPECT_EQ(j.found.fault_count(), 1u) << std::hex << s.in << " " << s.out;
      EXPECT_EQ(j.found.measured, 0u);
    } else {
      EXPECT_EQ(j.found.fault_count(), 0u) << std::hex << s.in << " " << s.out;
      EXPECT_NEAR(std::max(j.found.largest, 0.0), s.error, 0.01) << std::hex << s.in << " " << s.out;
      const bool apart = s.error == 0 && (binary32.is_zero(s.out) || !binary32.is_finite(s.out));
      EXPECT_EQ(j.found.measured, apart ? 0u : 1u);
      EXPECT_EQ(j.found.zero + j.found.infinite + j.found.nan, apart ? 1u : 0u);
    }
  }
}

// A million inputs of float exp by the exhaustive path, against a loop that shares nothing with the tool but MPFR.
TEST(Exhaustive, AgreesWithAnIndependentCount) {
  const uint32_t stride = 4099;
  const std::string csv = std::string(VORX_SCRATCH) + "/independent.csv";
  output tool = run_tool("exp --type f32 --variant accurate --exhaustive --stride " + std::to_string(stride) + " --csv " + csv);
  ASSERT_EQ(tool.status, 0) << tool.text;
  std::ifstream file(csv);
  std::string line, field;
  std::getline(file, line);
  std::getline(file, line);
  std::vector<std::string> fields;
  for (std::istringstream row(line); std::getline(row, field, ',');) fields.push_back(field);

  auto call = invoker(kernel_of("exp", element::f32), library_symbol("__ocl_vorx_p8_expf4"));
  const mpfr_exp_t emin = mpfr_get_emin(), emax = mpfr_get_emax();
  mpfr_t x, rounded, exact, difference;
  mpfr_inits2(24, x, rounded, nullptr);
  mpfr_inits2(100, exact, difference, nullptr);
  uint64_t inputs = 0, correct = 0, special = 0;
  double largest = 0;
  for (uint64_t block = 0; block < (1ull << 32) / 64; block += stride)
    for (uint32_t i = 0; i < 64; i += 4) {
      float in[4], out[4];
      for (uint32_t lane = 0; lane < 4; lane++) in[lane] = value_of<float>(block * 64 + i + lane);
      const void* arguments[] = {in};
      void* results[] = {out};
      ASSERT_EQ(call(arguments, results), "");
      for (int lane = 0; lane < 4; lane++, inputs++) {
        mpfr_set_flt(x, in[lane], MPFR_RNDN);
        mpfr_set_emin(-148);  // the format's own range, subnormals included
        mpfr_set_emax(128);
        mpfr_subnormalize(rounded, mpfr_exp(rounded, x, MPFR_RNDN), MPFR_RNDN);
        mpfr_set_emin(emin);
        mpfr_set_emax(emax);
        const float nearest = mpfr_get_flt(rounded, MPFR_RNDN);
        if (std::isnan(nearest) ? std::isnan(out[lane]) : nearest == out[lane] && (nearest == 0 || std::isinf(nearest))) {
          special++;
          continue;
        }
        correct += nearest == out[lane];
        if (!std::isfinite(nearest) || !std::isfinite(out[lane])) continue;
        mpfr_exp(exact, x, MPFR_RNDZ);
        mpfr_sub_d(difference, exact, out[lane], MPFR_RNDN);
        const long unit = std::max<long>(mpfr_get_exp(exact) - 24, -149);
        largest = std::max(largest, std::fabs(std::ldexp(mpfr_get_d(difference, MPFR_RNDN), static_cast<int>(-unit))));
      }
    }
  mpfr_clears(x, rounded, exact, difference, nullptr);
  EXPECT_GT(inputs, 1000000u);
  EXPECT_EQ(fields.at(4), std::to_string(inputs));
  EXPECT_NEAR(std::stod(fields.at(7)), largest, 1e-5);
  EXPECT_NEAR(std::stod(fields.at(10)), 100.0 * static_cast<double>(correct) / static_cast<double>(inputs - special), 1e-4);
  EXPECT_EQ(std::stoull(fields.at(11)) + std::stoull(fields.at(12)) + std::stoull(fields.at(13)), special);
}

TEST(Command, SaysWhatItCannotRead) {
  std::ofstream(std::string(VORX_SCRATCH) + "/inputs") << "# a comment\n1.5 # a number\n0xzz\n";
  const std::string file = " --count 0 --file " + std::string(VORX_SCRATCH) + "/inputs";
  for (const std::string& command :
       {"exp" + file, std::string("exp --type f16"), std::string("exp --count many"), std::string("exp --interval 5 1"),
        std::string("fmax --interval 1 2"), std::string("expo"), std::string("exp --count 0")})
    EXPECT_EQ(run_tool(command).status, 2) << command;
}

TEST(Sample, HoldsEveryNumberOfASmallInterval) {
  output tool = run_tool("log --type f32 --variant accurate --interval 0x1.fcp-1 0x1.02p0 --brief");
  EXPECT_NE(tool.text.find(" 196609 inputs"), std::string::npos) << tool.text;  // 2^17 below 1, 2^16 above, and 1
  tool = run_tool("fabs --type f32 --interval -0x3p-149 0x1p-149 --brief");
  EXPECT_NE(tool.text.find(" 6 inputs"), std::string::npos) << tool.text;  // both zeros
}

// Kernels whose lanes depend on their neighbours, so that any difference between two samples would show.
TEST(Sample, DoesNotDependOnThreads) {
  std::string found[2];
  for (int threads : {1, 3}) {
    const std::string csv = std::string(VORX_SCRATCH) + "/threads.csv";
    run_tool("sin --count 200000 --seed 9 --threads " + std::to_string(threads) + " --csv " + csv);
    std::ifstream file(csv);
    found[threads / 3].assign(std::istreambuf_iterator<char>(file), {});
  }
  EXPECT_GT(found[0].size(), 400u);
  EXPECT_EQ(found[0], found[1]);
}

// Two libraries that differ from ours in one bit: of exp's constant term, and of one of the 1024 entries of double exp's table.
TEST(Faults, OneWrongBitFails) {
  output coefficient = run_tool("exp --brief --type f32 --variant accurate --exhaustive --stride 1009", VORX_CHANGED_COEFFICIENT);
  EXPECT_EQ(coefficient.status, 1);
  EXPECT_NE(coefficient.text.find("above the claim"), std::string::npos) << coefficient.text;
  output table = run_tool("exp --brief --type f64 --variant accurate --count 2000000", VORX_CHANGED_TABLE);
  EXPECT_EQ(table.status, 1);
  EXPECT_NE(table.text.find("above the claim"), std::string::npos) << table.text;
  output ours = run_tool("exp --brief --type f64 --variant accurate --count 2000000");
  EXPECT_EQ(ours.status, 0) << ours.text;
}
