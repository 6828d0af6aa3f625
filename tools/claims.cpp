#include "tools/claims.h"

#include <cstring>
#include <map>
#include <string>
#include <utility>

#include "frame/kernels.h"

namespace vorx {
namespace {

// One lane's bits in every lane of a register step.
template <class Step>
typename Step::type replicate(uint64_t bits) {
  constexpr size_t lane = sizeof(typename Step::lane);
  typename Step::type x;
  for (size_t i = 0; i < sizeof x; i += lane) std::memcpy(reinterpret_cast<char*>(&x) + i, &bits, lane);
  return x;
}

// A lane test of the kernel, K::special or K::large, on one lane.
template <class K, shape S, auto Test>
bool flags(const uint64_t* bits) {
  using E = typename K::type;
  return [bits]<int... a>(std::integer_sequence<int, a...>) {
    i32x4 lanes = Test(replicate<step<S.arguments[a], E>>(bits[a])..., constant_pool<typename K::constants>);
    return (sign_mask(as_float(lanes)) & 8) != 0;  // the highest lane of either type
  }
  (std::make_integer_sequence<int, S.argument_count()>{});
}

template <class K, shape S>
claims read() {
  claims c;
  if constexpr (requires { K::max_ulp; }) c.max_ulp = K::max_ulp;
  if constexpr (requires { K::max_absolute; }) c.max_absolute = K::max_absolute;
  if constexpr (requires { K::seams; })
    for (auto seam : K::seams) c.seams.push_back(seam);
  if constexpr (requires { K::domain; })
    for (auto end : K::domain) c.domain.push_back(end);
  if constexpr (requires { K::by_definition; }) c.by_definition = K::by_definition;
  if constexpr (requires { K::whole_vector; }) c.whole_vector = K::whole_vector;
  if constexpr (has_lane_test<K>) {
    c.has_lane_test = true;
    c.every_lane_special = always_special<K>;
    c.flags = flags<K, S, &K::special>;
    [&]<size_t... i>(std::index_sequence<i...>) {
      ((has_lane_test<typename kernel_at<K, widths[i]>::type> ? void() : c.in_line.push_back(widths[i])), ...);
    }
    (std::make_index_sequence<std::size(widths)>{});
  }
  if constexpr (has_large_path<K>) c.large = flags<K, S, &K::large>;
  return c;
}

std::string key(const std::string& name, element type, bool native) {
  return name + (type == element::f32 ? "f" : "") + (native ? "_native" : "");
}

std::map<std::string, claims> read_all() {
  std::map<std::string, claims> all;
#define VORX_CLAIMS_accurate(NAME, SHAPE)                                   \
  all[key(#NAME, element::f32, false)] = read<NAME##_f32, shapes::SHAPE>(); \
  all[key(#NAME, element::f64, false)] = read<NAME##_f64, shapes::SHAPE>();
#define VORX_CLAIMS_and_native(NAME, SHAPE)                                                                         \
  VORX_CLAIMS_accurate(NAME, SHAPE) all[key(#NAME, element::f32, true)] = read<NAME##_f32_native, shapes::SHAPE>(); \
  all[key(#NAME, element::f64, true)] = read<NAME##_f64_native, shapes::SHAPE>();
#define VORX_CLAIMS_ready(NAME, SHAPE, VARIANTS) VORX_CLAIMS_##VARIANTS(NAME, SHAPE)
#define VORX_CLAIMS_planned(NAME, SHAPE, VARIANTS)
#define VORX_FAMILY(NAME)
#define VORX(NAME, SHAPE, VARIANTS, FILL, STATE) VORX_CLAIMS_##STATE(NAME, SHAPE, VARIANTS)
#include "frame/catalogue.inc"
#undef VORX
#undef VORX_FAMILY
  return all;
}

}  // namespace

const claims& claims_of(const entry_point& e) {
  static const std::map<std::string, claims> all = read_all();
  return all.at(key(e.of->name, e.type, e.native));
}

}  // namespace vorx
