// Prints what is generated from the catalogue: the machine-readable catalogue, the version script of the library, and how many of
// the entry points exist.
#include <cstdio>
#include <cstring>

#include "tools/claims.h"

using namespace vorx;

namespace {

const char* name_of(kind k, element e) {
  switch (k) {
    case kind::i32:
      return "i32";
    case kind::u32:
      return "u32";
    case kind::i64:
      return "i64";
    case kind::u64:
      return "u64";
    case kind::bits:
      return e == element::f32 ? "u32" : "u64";
    default:
      return e == element::f32 ? "f32" : "f64";
  }
}

const char* name_of(where w) {
  switch (w) {
    case where::xmm:
      return "xmm";
    case where::stack:
      return "stack";
    case where::eax:
      return "eax";
    case where::edx_eax:
      return "edx:eax";
    case where::hidden:
      return "hidden";
    case where::pointer:
      return "pointer";
    default:
      return "nowhere";
  }
}

// {"kind": "f32", "place": "xmm", "at": 0, "registers": 1}
void print_placement(kind k, element e, const placement& p, const char* separator) {
  std::printf("%s{\"kind\": \"%s\", \"place\": \"%s\", \"at\": %d, \"registers\": %d}", separator, name_of(k, e),
              name_of(p.place), p.at, p.count);
}

// Whether a lane may send all others through another path, whose last bits differ; not known before there is a kernel.
const char* decides_for_whole_vector(const entry_point& p) {
  return !p.of->ready ? "null" : claims_of(p).whole_vector ? "true" : "false";
}

void print_json() {
  std::printf("[");
  const char* separator = "\n";
  for (const entry_point& p : entry_points(false)) {
    const layout l = p.where_things_are();
    const function& f = *p.of;
    std::printf(
        "%s{\"name\": \"%s\", \"function\": \"%s\", \"family\": \"%s\", \"shape\": \"%s\", \"type\": \"%s\", \"lanes\": %d, ",
        separator, p.symbol().c_str(), f.name, f.family, f.shape_name, p.type == element::f32 ? "f32" : "f64", p.width);
    std::printf("\"variant\": \"%s\", \"exists\": %s, \"decides_for_whole_vector\": %s, ", p.native ? "native" : "accurate",
                f.ready ? "true" : "false", decides_for_whole_vector(p));
    std::printf("\"fourth_lane\": \"%s\", \"arguments\": [", f.fourth_lane);
    for (int a = 0; a < f.form.argument_count(); a++) print_placement(f.form.arguments[a], p.type, l.arguments[a], a ? ", " : "");
    std::printf("], \"results\": [");
    for (int r = 0; r < f.form.result_count(); r++) print_placement(f.form.results[r], p.type, l.results[r], r ? ", " : "");
    std::printf("], \"argument_registers\": %d, \"result_registers\": %d, \"stack_bytes\": %d, \"hidden_bytes\": %d}",
                l.argument_registers, l.result_registers, l.stack_bytes, l.hidden_bytes);
    separator = ",\n";
  }
  std::printf("\n]\n");
}

void print_exports() {
  std::printf("{\n");
  if (auto ready = entry_points(); !ready.empty()) {
    std::printf("  global:\n");
    for (const entry_point& p : ready) std::printf("    %s;\n", p.symbol().c_str());
  }
  std::printf("  local: *;\n};\n");
}

}  // namespace

int main(int argc, char** argv) {
  const char* what = argc == 2 ? argv[1] : "";
  if (!std::strcmp(what, "json")) {
    print_json();
  } else if (!std::strcmp(what, "exports")) {
    print_exports();
  } else if (!std::strcmp(what, "names")) {
    for (const entry_point& p : entry_points()) std::printf("%s\n", p.symbol().c_str());
  } else if (!std::strcmp(what, "count")) {
    std::printf("%zu of %zu entry points exist\n", entry_points().size(), entry_points(false).size());
  } else {
    std::fprintf(stderr, "usage: list_catalogue json | exports | names | count\n");
    return 2;
  }
}
