// The catalogue as data: one record for each of the 120 functions, in the order of the rows. Generators, tools and tests walk it.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "frame/convention.h"

namespace vorx {

struct function {
  const char* name;
  const char* family;
  const char* shape_name;
  shape form;
  bool native;              // has _native variants
  const char* fourth_lane;  // what replaces the fourth lane of three: three_quarters, one, two
  bool ready;               // its kernels exist and its entry points are exported
};

inline const std::vector<function>& catalogue() {
  static const std::vector<function> rows = [] {
    std::vector<function> f;
    [[maybe_unused]] const char* family = "";
    [[maybe_unused]] constexpr bool accurate = false, and_native = true, ready = true, planned = false;
#define VORX_FAMILY(NAME) family = #NAME;
#define VORX(NAME, SHAPE, VARIANTS, FILL, STATE) f.push_back({#NAME, family, #SHAPE, shapes::SHAPE, VARIANTS, #FILL, STATE});
#include "frame/catalogue.inc"
#undef VORX
#undef VORX_FAMILY
    return f;
  }();
  return rows;
}

// One entry point.
struct entry_point {
  const function* of;
  element type;
  int width;
  bool native;

  std::string symbol() const {
    return std::string("__ocl_vorx_p8_") + of->name + (type == element::f32 ? "f" : "") + std::to_string(width) +
           (native ? "_native" : "");
  }
  layout where_things_are() const { return place(of->form, type, width); }
};

// All entry points, or those that exist: accurate before native, float before double, widths ascending.
inline std::vector<entry_point> entry_points(bool only_ready = true) {
  std::vector<entry_point> all;
  for (const function& f : catalogue())
    if (f.ready || !only_ready)
      for (bool native : {false, true})
        if (!native || f.native)
          for (element type : {element::f32, element::f64})
            for (int width : widths) all.push_back({&f, type, width, native});
  return all;
}

// The entry point of a function that is in the catalogue, whether it exists or not.
inline const entry_point& find_entry(const std::string& function, element type, int width, bool native = false) {
  static const std::vector<entry_point> all = entry_points(false);
  for (const entry_point& e : all)
    if (e.of->name == function && e.type == type && e.width == width && e.native == native) return e;
  throw std::out_of_range("no entry point of " + function);
}

}  // namespace vorx
