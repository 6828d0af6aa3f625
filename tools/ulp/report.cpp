#include "tools/ulp/report.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>

#include "tools/ulp/limits.h"

namespace vorx::ulp {
namespace {

const char* type_name(element e) { return e == element::f32 ? "f32" : "f64"; }
const char* variant_name(const entry_point& k) { return k.native ? "native" : "accurate"; }

std::string number(double x) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", x);
  return text;
}

// Shares are cut, not rounded: 100 % means all.
double percent(uint64_t part, uint64_t whole) {
  return whole == 0 ? 100 : std::floor(1e6 * static_cast<double>(part) / static_cast<double>(whole)) / 1e4;
}

std::string bits_of_all(const entry_point& k, const uint64_t* bits, const kind* kinds, int count) {
  std::string text;
  for (int i = 0; i < count; i++) text += (i ? " " : "") + bits_text(bits[i], lane_bytes(kinds[i], k.type));
  return text;
}
std::string values_of_all(const entry_point& k, const uint64_t* bits, const kind* kinds, int count) {
  std::string text;
  for (int i = 0; i < count; i++) text += (i ? ", " : "") + value_text(kinds[i], k.type, bits[i]);
  return text;
}
std::string in_bits(const entry_point& k, const example& e) {
  return bits_of_all(k, e.in.data(), k.of->form.arguments, k.of->form.argument_count());
}
std::string out_bits(const entry_point& k, const example& e) {
  return bits_of_all(k, e.out.data(), k.of->form.results, k.of->form.result_count());
}

}  // namespace

std::string bits_text(uint64_t bits, int bytes) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*" PRIx64, 2 * bytes, bits);
  return text;
}

std::string value_text(kind k, element e, uint64_t bits) {
  char text[64];
  if (k == kind::real)
    std::snprintf(text, sizeof text, "%.*g", e == element::f32 ? 9 : 17, as_double(e, bits));
  else if (k == kind::i32)
    std::snprintf(text, sizeof text, "%d", static_cast<int32_t>(bits));
  else if (k == kind::i64)
    std::snprintf(text, sizeof text, "%" PRId64, static_cast<int64_t>(bits));
  else
    std::snprintf(text, sizeof text, "%" PRIu64, bits);
  return text;
}

std::optional<uint64_t> lane_of(const std::string& text, kind k, element e) {
  const bool is_bits = text.compare(0, 2, "0x") == 0 && text.find_first_of("p.") == std::string::npos;
  if (is_bits && text.size() > 2 + 2 * static_cast<size_t>(lane_bytes(k, e))) return {};
  char* end;
  uint64_t lane;
  if (k != kind::real || is_bits)
    lane = std::strtoull(text.c_str(), &end, 0);
  else if (e == element::f32)
    lane = bits_of(std::strtof(text.c_str(), &end));
  else
    lane = bits_of(std::strtod(text.c_str(), &end));
  if (text.empty() || *end != '\0') return {};
  return lane;
}

std::string verdict(const entry_point& kernel, const outcome& o) {
  const statistics& s = o.found;
  const claims& c = claims_of(kernel);
  const double limit = kernel.native ? INFINITY : limit_of(*kernel.of, kernel.type);
  std::string text;
  auto add = [&](const std::string& what) { text += (text.empty() ? "" : "; ") + what; };
  if (s.estimate_breaches != 0) add("void: an estimate is outside its bound");
  for (size_t f = 0; f < s.faults.size(); f++)
    if (s.faults[f] != 0) add(name_of(static_cast<fault>(f)));
  // Up to half a unit, "correctly rounded" and "exact" both mean the nearest number, every time.
  if (s.largest > std::max(limit, 0.5)) add("above the limit");
  if (s.largest > std::max(c.max_ulp, 0.5)) add("above the claim");
  if (std::min(limit, c.max_ulp) <= 0.5 && s.correct != s.measured) add("not correctly rounded");
  if (o.exhaustive && o.complete && c.max_ulp > 0.5 && !c.by_definition && s.largest < 0.8 * c.max_ulp) add("claim padded");
  if (s.inputs == 0) add("nothing tested");
  if (text.empty()) text = "pass";
  if (!o.complete) text += " (interrupted)";
  return text;
}

void print_summary(const entry_point& kernel, const outcome& o) {
  const statistics& s = o.found;
  const double limit = kernel.native ? INFINITY : limit_of(*kernel.of, kernel.type);
  char name[64];
  std::snprintf(name, sizeof name, "%s %s %s", kernel.of->name, type_name(kernel.type), variant_name(kernel));
  std::printf("%-28s %11s ULP  %8.4f%% correct  %10" PRIu64 " %s  limit %s, claim %s: %s\n", name,
              number(std::max(s.largest, 0.0)).c_str(), percent(s.correct, s.measured), s.inputs,
              o.exhaustive && o.complete ? "inputs, all" : "inputs", std::isinf(limit) ? "none" : number(limit).c_str(),
              number(claims_of(kernel).max_ulp).c_str(), verdict(kernel, o).c_str());
  for (size_t f = 0; f < s.faults.size(); f++) {
    if (s.faults[f] == 0) continue;
    const example& e = s.fault_examples[f];
    const shape& form = kernel.of->form;
    kind k = form.results[e.result];
    std::printf("    %s: %" PRIu64 " inputs, first (%s) = (%s): result %s = %s, %s %s = %s\n", name_of(static_cast<fault>(f)),
                s.faults[f], in_bits(kernel, e).c_str(),
                values_of_all(kernel, e.in.data(), form.arguments, form.argument_count()).c_str(),
                bits_text(e.out[e.result], lane_bytes(k, kernel.type)).c_str(),
                value_text(k, kernel.type, e.out[e.result]).c_str(),
                static_cast<fault>(f) == fault::neighbour ? "also" : "expected",
                bits_text(e.expected, lane_bytes(k, kernel.type)).c_str(), value_text(k, kernel.type, e.expected).c_str());
  }
}

void print_details(const entry_point& kernel, const outcome& o) {
  const statistics& s = o.found;
  const shape& form = kernel.of->form;
  if (s.largest >= 0) {
    std::printf("    worst: (%s) = (%s) gives %s = %s, off by %+.6f ULP\n", in_bits(kernel, s.worst).c_str(),
                values_of_all(kernel, s.worst.in.data(), form.arguments, form.argument_count()).c_str(),
                out_bits(kernel, s.worst).c_str(),
                values_of_all(kernel, s.worst.out.data(), form.results, form.result_count()).c_str(), s.worst_signed);
  }
  double from = 0;
  for (size_t i = 0; i < s.histogram.size(); i++) {
    if (s.histogram[i] != 0)
      std::printf("    %8s to %8s ULP  %12" PRIu64 "  %9.5f%%\n", number(from).c_str(), number(histogram_ends[i]).c_str(),
                  s.histogram[i], 100 * static_cast<double>(s.histogram[i]) / static_cast<double>(s.measured));
    from = histogram_ends[i];
  }
  if (s.nan + s.infinite + s.zero + s.subnormal != 0)
    std::printf("    right and not among these: NaN %" PRIu64 ", infinity %" PRIu64 ", zero %" PRIu64
                "; among these, subnormal: %" PRIu64 "\n",
                s.nan, s.infinite, s.zero, s.subnormal);
  if (s.outside != 0)
    std::printf(
        "    %s: %" PRIu64 " inputs\n",
        kernel.native ? "outside the native kernel's claim" : "within the absolute error that the kernel claims next to zeros",
        s.outside);
  const bool may = claims_of(kernel).whole_vector;
  if (s.neighbour_matters != 0 || may)
    std::printf("    decides for the whole vector: %s; another neighbour changed the bits of %" PRIu64 " inputs\n",
                may ? "yes, declared" : "not declared", s.neighbour_matters);
  std::printf("    decided by MPFR: %" PRIu64 "; digest %016" PRIx64 "; %.1f s\n", s.by_mpfr, s.digest, o.seconds);
}

void write_csv_head(std::FILE* f) {
  std::fprintf(
      f,
      "function,type,variant,width,inputs,exhaustive,seed,largest_ulp,worst_arguments,worst_results,correctly_rounded_percent,"
      "nan_results,infinite_results,zero_results,subnormal_results,limit,claim,domain,outside_claim,whole_vector,neighbour_"
      "matters,faults,digest,verdict\n");
}

void write_csv_row(std::FILE* f, const entry_point& k, const outcome& o, const options& how) {
  const statistics& s = o.found;
  const double limit = limit_of(*k.of, k.type);
  const claims& c = claims_of(k);
  std::string domain;
  for (size_t i = 0; i + 1 < c.domain.size(); i += 2)
    domain += (i ? " and y from " : "") + number(c.domain[i]) + " to " + number(c.domain[i + 1]);
  std::fprintf(f,
               "%s,%s,%s,%d,%" PRIu64 ",%s,%" PRIu64 ",%.6g,%s,%s,%.4f,%" PRIu64 ",%" PRIu64 ",%" PRIu64 ",%" PRIu64
               ",%s,%.6g,%s,%" PRIu64 ",%s,%" PRIu64 ",%" PRIu64 ",%016" PRIx64 ",%s\n",
               k.of->name, type_name(k.type), variant_name(k), how.width, s.inputs, o.exhaustive && o.complete ? "yes" : "no",
               how.seed, std::max(s.largest, 0.0), in_bits(k, s.worst).c_str(), out_bits(k, s.worst).c_str(),
               percent(s.correct, s.measured), s.nan, s.infinite, s.zero, s.subnormal,
               k.native || std::isinf(limit) ? "" : number(limit).c_str(), c.max_ulp, domain.c_str(), s.outside,
               c.whole_vector ? "yes" : "no", s.neighbour_matters, s.fault_count(), s.digest, verdict(k, o).c_str());
  std::fflush(f);
}

void write_witness_head(std::FILE* f) { std::fprintf(f, "function,type,variant,argument_bits,result_bits,result,signed_ulp\n"); }

void write_witness(std::FILE* f, const entry_point& k, const outcome& o) {
  const statistics& s = o.found;
  if (s.largest > 0)
    std::fprintf(f, "%s,%s,%s,%s,%s,%d,%.9g\n", k.of->name, type_name(k.type), variant_name(k), in_bits(k, s.worst).c_str(),
                 out_bits(k, s.worst).c_str(), s.worst.result, s.worst_signed);
}

bool write_profile(const std::string& directory, const entry_point& k, const outcome& o) {
  if (o.found.profile.empty()) return true;
  std::string path = directory + "/" + k.of->name + "_" + type_name(k.type) + (k.native ? "_native" : "") + ".csv";
  std::FILE* f = std::fopen(path.c_str(), "w");
  if (!f) return false;
  std::fprintf(f, "argument,ulp\n");
  const auto n = static_cast<int>(o.found.profile.size());
  const int shift = 8 * lane_bytes(kind::real, k.type) - static_cast<int>(std::bit_width(static_cast<unsigned>(n)) - 1);
  auto row = [&](int i) {
    if (o.found.profile[static_cast<size_t>(i)] >= 0)
      std::fprintf(f, "%.9g,%.4g\n", as_double(k.type, static_cast<uint64_t>(i) << shift),
                   static_cast<double>(o.found.profile[static_cast<size_t>(i)]));
  };
  for (int i = n - 1; i >= n / 2; i--) row(i);  // negative arguments, the largest in magnitude first
  for (int i = 0; i < n / 2; i++) row(i);
  return std::fclose(f) == 0;
}

}  // namespace vorx::ulp
