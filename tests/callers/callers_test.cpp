// Compiled callers, one for each way to reach an entry point (a built-in in an OpenCL C kernel, a function of the C or C++
// header), give the bits that the entry points give when they are called from data.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "tests/callers/callers.h"
#include "tools/invoke.h"

using namespace vorx;

// What callers in functions with a frame call, and what they found.
volatile size_t callers_room = 24;
volatile int callers_one = 1;
static int faults_in_frames = 0;
void callers_check(int holds) { faults_in_frames += !holds; }
void callers_check_magnitudes(const void* a, const void* b, size_t lane_bytes, int lanes) {
  auto x = static_cast<const unsigned char*>(a), y = static_cast<const unsigned char*>(b);
  for (size_t i = 0; i < lane_bytes * static_cast<size_t>(lanes); i++) {
    const int mask = i % lane_bytes == lane_bytes - 1 ? 0x7f : 0xff;
    faults_in_frames += (x[i] & mask) != (y[i] & mask);
  }
}

// The tables, from the build: CALLER_TABLES is TABLE(name) TABLE(name)...
#define TABLE(NAME) extern "C" const caller NAME[];
CALLER_TABLES
#undef TABLE

namespace {

struct table {
  const char* name;
  const caller* callers;
};
const table tables[] = {
#define TABLE(NAME) {#NAME, NAME},
    CALLER_TABLES
#undef TABLE
};

struct alignas(64) buffer {
  unsigned char bytes[256];
};

// Lanes of moderate values, or of arbitrary bits, so that special lanes occur as well.
class lane_source {
 public:
  void fill(buffer& b, kind k, element e, bool wild) {
    for (size_t at = 0; at < sizeof b.bytes;) {
      if (wild) {
        at += put(b, at, static_cast<uint32_t>(bits_()));
      } else if (k != kind::real) {
        at += lane_bytes(k, e) == 4 ? put(b, at, static_cast<uint32_t>(bits_() % 1000)) : put(b, at, uint64_t{bits_() % 1000});
      } else {
        at += e == element::f32 ? put(b, at, static_cast<float>(value_(bits_))) : put(b, at, value_(bits_));
      }
    }
  }

 private:
  template <class T>
  static size_t put(buffer& b, size_t at, T lane) {
    std::memcpy(b.bytes + at, &lane, sizeof lane);
    return sizeof lane;
  }
  std::mt19937 bits_{20};
  std::uniform_real_distribution<double> value_{-3, 3};
};

std::string hex(const buffer& b, size_t bytes) {
  std::string text;
  char word[10];
  for (size_t at = 0; at < bytes; at += 4) {
    uint32_t w;
    std::memcpy(&w, b.bytes + at, 4);
    std::snprintf(word, sizeof word, "%08x ", w);
    text += word;
  }
  return text;
}

class Callers : public testing::TestWithParam<table> {};

TEST_P(Callers, GiveTheBitsOfTheEntryPoint) {
  std::unordered_map<std::string, entry_point> entries;
  for (const entry_point& e : entry_points()) entries.emplace(e.symbol(), e);
  lane_source source;
  std::set<std::string> called;
  for (const caller* at = GetParam().callers; at->name; at++) {
    const caller& c = *at;
    called.insert(c.entry);
    SCOPED_TRACE(c.name);
    const entry_point& e = entries.at(c.entry);
    const shape& form = e.of->form;
    invoker call(e, library_symbol(c.entry));
    for (int repetition = 0; repetition < 8; repetition++) {
      buffer arguments[3], expected[2] = {}, got[2];
      std::memset(got, 0xcc, sizeof got);
      for (int a = 0; a < form.argument_count(); a++) source.fill(arguments[a], form.arguments[a], e.type, repetition % 4 == 3);
      c.run(&arguments[0], &arguments[1], &arguments[2], &got[0], &got[1]);
      ASSERT_EQ(faults_in_frames, 0) << "what the caller had before the call, or a call on the result";
      if (c.one_for_all) {
        auto size = static_cast<size_t>(lane_bytes(form.arguments[1], e.type));
        for (int i = 1; i < e.width; i++) std::memcpy(arguments[1].bytes + size * i, arguments[1].bytes, size);
      }
      const void* in[] = {&arguments[0], &arguments[1], &arguments[2]};
      void* out[] = {&expected[0], &expected[1]};
      ASSERT_EQ(call(in, out), "");
      for (int r = 0; r < form.result_count(); r++) {
        auto bytes = static_cast<size_t>(e.width * lane_bytes(form.results[r], e.type));
        ASSERT_EQ(hex(got[r], bytes), hex(expected[r], bytes)) << "result " << r;
      }
    }
  }
  // The headers declare every entry point, OpenCL C has no name for some; in frames it is one of each caller; inline are few.
  const std::string name = GetParam().name;
  EXPECT_GE(called.size(), name.starts_with("in_frames")       ? 190
                           : name.starts_with("opencl_inline") ? 150
                                                               : entries.size() * 7 / 10);
}

INSTANTIATE_TEST_SUITE_P(Tables, Callers, testing::ValuesIn(tables), [](const auto& t) { return t.param.name; });

// Kernels of rounding.cl, one for each LLVM: ROUNDING_KERNELS is ROUNDING(name) ROUNDING(name)...
#define ROUNDING(NAME) extern "C" void NAME(const void*, const void*, void*, void*);
ROUNDING_KERNELS
#undef ROUNDING

TEST(Bindings, ConversionsRoundAsTheirNamesSayInOpenCl) {
  using kernel_type = void (*)(const void*, const void*, void*, void*);
#define ROUNDING(NAME) NAME,
  const std::vector<kernel_type> kernels = {ROUNDING_KERNELS};
#undef ROUNDING
  alignas(16) const float x[] = {2.5f, -2.5f, 3.7f, -3.7f};
  const int n = (1 << 24) + 1;
  const std::vector<int> integers = {2, -2, 3, -3, 2, -2, 4, -4, 2, -2, 3, -3, 3, -2, 4, -3, 2, -3, 3, -4};
  const std::vector<float> reals = {16777216, 16777216, 16777216, 16777218, -16777218};
  for (kernel_type kernel : kernels) {
    alignas(16) int r[20];
    float s[5];
    kernel(x, &n, r, s);
    EXPECT_EQ(std::vector<int>(r, r + 20), integers);
    EXPECT_EQ(std::vector<float>(s, s + 5), reals);
  }
}

}  // namespace
