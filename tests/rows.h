// Comma-separated files of known results: `function,type,variant,arguments,results[,more]`, a value or its bits for each argument
// and result, separated by blanks.
#pragma once

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "tests/lanes.h"
#include "tools/float_format.h"

namespace vorx {

inline std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
  return parts;
}

// A value as the bits of a kind: 0x3f800000, 1.5, -inf, nan, an integer.
inline uint64_t parse_bits(const std::string& text, kind k, element type) {
  if (text.starts_with("0x")) return std::strtoull(text.c_str(), nullptr, 16);
  const uint64_t mask = lane_bytes(k, type) == 4 ? 0xffffffff : ~uint64_t{0};
  if (is_integer(k)) return static_cast<uint64_t>(std::strtoll(text.c_str(), nullptr, 10)) & mask;
  return type == element::f32 ? bits_of(std::strtof(text.c_str(), nullptr)) : bits_of(std::strtod(text.c_str(), nullptr));
}

inline bool is_quiet_nan(uint64_t bits, element type) {
  const float_format& format = format_of(type);
  return format.is_nan(bits) && !format.is_signalling(bits);
}

struct row {
  int line;
  entry_point kernel;  // at width 1
  argument_lane arguments{};
  std::vector<std::string> results;
  std::vector<std::string> more;
};

// All rows of a file for kernels that exist; `both` for the type or the variant stands for two rows. Every function that a row
// names must be in the catalogue.
inline std::vector<row> read_rows(const std::string& path) {
  std::vector<row> rows;
  std::ifstream file(path);
  EXPECT_TRUE(file) << path;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    number++;
    if (line.empty() || line[0] == '#' || line.starts_with("function,")) continue;
    auto field = split(line, ',');
    if (field.size() < 5) {
      ADD_FAILURE() << path << ':' << number << ": too few fields";
      continue;
    }
    bool known = false;
    for (const entry_point& e : entry_points(false)) {
      if (e.width != 1 || field[0] != e.of->name) continue;
      if (field[1] != "both" && field[1] != (e.type == element::f32 ? "f32" : "f64")) continue;
      if (field[2] != "both" && field[2] != (e.native ? "native" : "accurate")) continue;
      known = true;
      if (!e.of->ready) continue;
      row r{number, e, {}, split(field[4], ' '), {field.begin() + 5, field.end()}};
      const auto arguments = split(field[3], ' ');
      known = static_cast<int>(arguments.size()) == e.of->form.argument_count() &&
              static_cast<int>(r.results.size()) == e.of->form.result_count();
      for (size_t a = 0; known && a < arguments.size(); a++)
        r.arguments[a] = parse_bits(arguments[a], e.of->form.arguments[a], e.type);
      if (known) rows.push_back(r);
    }
    EXPECT_TRUE(known) << path << ':' << number << ": no such kernel, or a wrong number of values: " << line;
  }
  return rows;
}

// The result of a row at one width, with the arguments of the row in all lanes; fails where the lanes differ.
inline result_lane call_with_all_lanes(const row& r, int width) {
  lane_caller call({r.kernel.of, r.kernel.type, width, r.kernel.native});
  argument_lane in[16];
  result_lane out[16];
  std::fill(in, in + 16, r.arguments);
  EXPECT_EQ(call(in, out), "") << call.entry().symbol();
  for (int i = 1; i < width; i++) EXPECT_EQ(out[i], out[0]) << call.entry().symbol() << " lane " << i;
  return out[0];
}

}  // namespace vorx
