#include "tools/bench/peers.h"

#include <dlfcn.h>

#include <map>
#include <string>

namespace vorx::bench {
namespace {

// Functions that the peers call by another name, and names that mean something else there.
const std::map<std::string, std::string> other_names = {
    {"powr", "pow"}, {"sincosreg", "sincos"}, {"lgammar", "lgamma"}, {"maxmag", "fmaxmag"}, {"minmag", "fminmag"}, {"nan", ""},
    {"div", ""},
};

std::string name_at_peers(const function& f) {
  auto other = other_names.find(f.name);
  return other == other_names.end() ? f.name : other->second;
}

// Whether the form of a function has a counterpart in C at all.
bool has_c_form(const shape& s) {
  auto is_c = [](kind k) { return k == kind::none || k == kind::real || k == kind::i32; };
  return is_c(s.arguments[0]) && s.arguments[0] != kind::i32 && is_c(s.results[0]) && is_c(s.results[1]);
}

const void* symbol(const char* library, const std::string& name) {
  void* handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  return handle ? dlsym(handle, name.c_str()) : nullptr;
}

}  // namespace

peer scalar_peer(const function& f, element e) {
  if (peer p = conversion_loop(f, e); p.address) return p;
  std::string name = name_at_peers(f);
  if (name.empty() || !has_c_form(f.form)) return {};
  if (e == element::f32) name += "f";
  if (f.form.results[1] == kind::i32 && f.form.argument_count() == 1 && name.starts_with("lgamma")) name += "_r";
  return {symbol("libm.so.6", name), name.starts_with("sincos") ? peer_kind::scalar_sincos : peer_kind::scalar};
}

peer vector_peer(const function& f, element e, bool accurate) {
  std::string name = name_at_peers(f);
  // Decomposition into fraction and exponent is two functions there.
  if (name.empty() || !has_c_form(f.form) || name == "frexp") return {};
  name = "Sleef_" + name + (e == element::f32 ? "f4" : "d2");
  peer p;
  for (const char* bound : {"_u10", "_u05", "_u15", "_", "_u35"})
    if (p.address == nullptr && accurate == (std::string(bound) != "_u35"))
      p.address = symbol("libsleef.so.3", name + bound + "sse4");
  bool pair = f.form.result_count() == 2 && f.form.results[1] == kind::real;
  p.kind = pair ? peer_kind::vector_pair : peer_kind::vector;
  return p;
}

}  // namespace vorx::bench
