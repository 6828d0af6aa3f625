// Kernels in OpenCL C, one for each built-in of the binding module, give the bits that the entry points give when they are called
// from data.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/invoke.h"

using namespace vorx;

extern "C" {
#define KERNEL(NAME, ENTRY, ONE_FOR_ALL) void NAME(const void*, const void*, const void*, void*, void*);
#include "table.inc"
#undef KERNEL
}

namespace {

struct kernel_of_builtin {
  const char* name;
  const char* entry;
  bool one_for_all;  // the second argument is one scalar for all lanes
  void (*run)(const void*, const void*, const void*, void*, void*);
};
const kernel_of_builtin kernels[] = {
#define KERNEL(NAME, ENTRY, ONE_FOR_ALL) {#NAME, ENTRY, ONE_FOR_ALL, NAME},
#include "table.inc"
#undef KERNEL
};

struct alignas(64) buffer {
  unsigned char bytes[256];
};

// Lanes of moderate values, every fourth call of arbitrary bits, so that special lanes occur as well.
class lane_source {
 public:
  void fill(buffer& b, kind k, element e, bool wild) {
    for (size_t at = 0; at < sizeof b.bytes;) {
      if (wild || k != kind::real) {
        uint32_t word = static_cast<uint32_t>(bits_());
        if (!wild) word = lane_bytes(k, e) == 4 || at % 8 == 0 ? word % 1000 : 0;
        at += put(b, at, word);
      } else if (e == element::f32) {
        at += put(b, at, static_cast<float>(value_(bits_)));
      } else {
        at += put(b, at, value_(bits_));
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

TEST(Bindings, EveryBuiltinGivesTheBitsOfItsEntryPoint) {
  std::unordered_map<std::string, entry_point> entries;
  for (const entry_point& e : entry_points()) entries.emplace(e.symbol(), e);
  lane_source source;
  for (const kernel_of_builtin& k : kernels) {
    SCOPED_TRACE(k.name);
    const entry_point& e = entries.at(k.entry);
    const shape& form = e.of->form;
    invoker call(e, library_symbol(k.entry));
    for (int repetition = 0; repetition < 8; repetition++) {
      buffer arguments[3], expected[2] = {}, got[2];
      std::memset(got, 0xcc, sizeof got);
      for (int a = 0; a < form.argument_count(); a++) source.fill(arguments[a], form.arguments[a], e.type, repetition % 4 == 3);
      k.run(&arguments[0], &arguments[1], &arguments[2], &got[0], &got[1]);
      if (k.one_for_all) {
        int size = lane_bytes(form.arguments[1], e.type);
        for (int i = 1; i < e.width; i++)
          std::memcpy(arguments[1].bytes + size * i, arguments[1].bytes, static_cast<size_t>(size));
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
}

}  // namespace
