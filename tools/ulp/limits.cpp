#include "tools/ulp/limits.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>

namespace vorx::ulp {
namespace {

double number(const std::string& field) {
  if (field == "CR") return 0.5;
  char* end;
  double limit = std::strtod(field.c_str(), &end);
  return end != field.c_str() && *end == 0 ? limit : INFINITY;  // empty, undefined, any, or a choice of definitions
}

// function,type,limit,...; lines that begin with # are remarks.
std::map<std::string, double> read() {
  std::map<std::string, double> limits;
  std::ifstream file(VORX_LIMITS);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    size_t type = line.find(','), limit = line.find(',', type + 1), end = line.find(',', limit + 1);
    limits[line.substr(0, limit)] = number(line.substr(limit + 1, end - limit - 1));
  }
  return limits;
}

}  // namespace

double limit_of(const function& f, element type) {
  static const std::map<std::string, double> limits = read();
  auto found = limits.find(f.name + std::string(type == element::f32 ? ",f32" : ",f64"));
  if (found == limits.end()) {
    std::fprintf(stderr, "ulp: no line for %s in %s\n", f.name, VORX_LIMITS);
    std::exit(2);
  }
  return found->second;
}

}  // namespace vorx::ulp
