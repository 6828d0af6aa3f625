#include "tools/ulp/judge_parts.h"

#include <algorithm>

namespace vorx::ulp {
const char* name_of(fault f) {
  static const char* const names[] = {"NaN for a number",    "number for NaN", "signalling NaN", "infinity for a finite number",
                                      "finite for infinity", "sign of zero",   "wrong bits",     "depends on a neighbour lane"};
  return names[static_cast<size_t>(f)];
}

uint64_t statistics::fault_count() const {
  uint64_t n = 0;
  for (uint64_t f : faults) n += f;
  return n;
}

void statistics::merge(const statistics& o) {
  inputs += o.inputs, measured += o.measured, correct += o.correct, outside += o.outside, by_mpfr += o.by_mpfr;
  nan += o.nan, infinite += o.infinite, zero += o.zero, subnormal += o.subnormal;
  neighbour_matters += o.neighbour_matters;
  digest += o.digest, estimate_breaches += o.estimate_breaches;
  if (o.largest > largest || (o.largest == largest && o.worst.in < worst.in))
    largest = o.largest, worst = o.worst, worst_signed = o.worst_signed;
  for (size_t i = 0; i < histogram.size(); i++) histogram[i] += o.histogram[i];
  for (size_t i = 0; i < faults.size(); i++) {
    if (o.faults[i] && (!faults[i] || o.fault_examples[i].in < fault_examples[i].in)) fault_examples[i] = o.fault_examples[i];
    faults[i] += o.faults[i];
  }
  if (profile.size() < o.profile.size()) profile.resize(o.profile.size(), -1);
  for (size_t i = 0; i < o.profile.size(); i++) profile[i] = std::max(profile[i], o.profile[i]);
}

judge::judge(const entry_point& e) : entry_(e), format_(format_of(e.type)), claims_(claims_of(e)) {
  const shape& form = e.of->form;
  for (int r = 0; r < form.result_count(); r++) references_[r] = reference_of(*e.of, e.type, r);
  unary_ = form.argument_count() == 1 && form.arguments[0] == kind::real;
  tolerated_ = std::max(claims_.max_ulp, 0.5);
  for (int a = 0; a < 3; a++) {
    a_[a] = std::make_unique<real>(64);
    given_[a] = a_[a].get();
  }
  exact_ = std::make_unique<real>(64);
  difference_ = std::make_unique<real>(64);
  if (form.arguments[0] == kind::real) found.profile.assign(static_cast<size_t>(profile_size(e.type)), -1);
}

int judge::profile_size(element type) { return profile_class(type, format_of(type).mask()) + 1; }

double judge::operator()(const arguments& in, const results& out, const double* estimates) {
  found.inputs++;
  estimates_ = estimates;
  const shape& form = entry_.of->form;
  in_claim_ = !entry_.native || claimed(in);
  double worst = -1;
  uint32_t h = 0;
  for (int a = 0; a < form.argument_count(); a++) h = mix(h, in[a]);
  for (int r = 0; r < form.result_count(); r++) {
    h = mix(h, out[r]);
    if (in_claim_) worst = std::max(worst, references_[r].real ? judge_real(in, out, r) : judge_exact(in, out, r));
  }
  found.digest += h;
  if (!in_claim_) {
    found.outside++;
    return -1;
  }
  if (!found.profile.empty() && worst > 0) {  // NaN, infinite, zero and exact results have no error to show
    float& p = found.profile[static_cast<size_t>(profile_class(entry_.type, in[0]))];
    p = std::max(p, static_cast<float>(worst));
  }
  return worst;
}

// Above the claim, where the kernel claims an absolute error instead: beyond its domain.
bool judge::absolutely_small(const arguments& in, double error, double unit) const {
  if (claims_.max_absolute == 0 || !(error > claims_.max_ulp && error * unit <= claims_.max_absolute)) return false;
  const double x = as_double(entry_.type, in[0]);
  return x < claims_.domain[0] || x > claims_.domain[1];
}

// What a native kernel's claim covers: normal arguments (and zeros) in its domain; and results in the normal range, see decide().
bool judge::claimed(const arguments& in) const {
  const shape& form = entry_.of->form;
  for (int a = 0; a < form.argument_count(); a++) {
    if (form.arguments[a] != kind::real) continue;
    if (!format_.is_normal(in[a]) && !format_.is_zero(in[a])) return false;
    double x = as_double(entry_.type, in[a]);
    const size_t low = 2 * static_cast<size_t>(a);
    if (low < claims_.domain.size() && !(x >= claims_.domain[low] && x <= claims_.domain[low + 1])) return false;
  }
  return true;
}

void judge::neighbour_matters(const arguments& in, const results& out, const results& other, bool whole_vector) {
  found.neighbour_matters++;
  if (!whole_vector) return report(fault::neighbour, in, out, 0, other[0]);
  const uint64_t digest = found.digest, inputs = found.inputs, outside = found.outside;
  (*this)(in, other);
  found.digest = digest, found.inputs = inputs, found.outside = outside;
}

void judge::report(fault f, const arguments& in, const results& out, int result, uint64_t expected) {
  auto i = static_cast<size_t>(f);
  if (found.faults[i]++ == 0) found.fault_examples[i] = {in, out, expected, result};
}

void judge::count(double error, double signed_error, bool correct, const arguments& in, const results& out, int r) {
  if (entry_.of->form.results[r] == kind::real) {
    const uint64_t got = out[r];
    if (correct && !format_.is_normal(got)) {
      if (format_.is_nan(got)) return void(found.nan++);
      if (format_.is_infinite(got)) return void(found.infinite++);
      if (format_.is_zero(got)) return void(found.zero++);
    }
    found.subnormal += format_.is_finite(got) && !format_.is_normal(got);
  }
  found.measured++;
  found.correct += correct;
  found.histogram[bin_of(error)]++;
  if (error > found.largest) {
    found.largest = error;
    found.worst = {in, out, 0, r};
    found.worst_signed = signed_error;
  }
}

double judge::judge_exact(const arguments& in, const results& out, int r) {
  const exact_reference& reference = references_[r].exact;
  std::optional<uint64_t> expected = reference.bits(in.data());
  bool right = !expected || *expected == out[r];
  fault f = fault::wrong_bits;
  if (expected && !right && entry_.of->form.results[r] == kind::real) {
    if (format_.is_nan(*expected) && format_.is_nan(out[r])) {
      right = !reference.nan_bits_count && !format_.is_signalling(out[r]);
      f = format_.is_signalling(out[r]) ? fault::signalling_nan : fault::wrong_bits;
    } else if (format_.is_nan(*expected) != format_.is_nan(out[r])) {
      f = format_.is_nan(out[r]) ? fault::nan_for_number : fault::number_for_nan;
    } else if (format_.is_zero(*expected) && format_.is_zero(out[r])) {
      f = fault::sign_of_zero;
    }
  }
  if (!right) report(f, in, out, r, *expected);
  count(right ? 0 : 1, 0, right, in, out, r);  // a wrong bit counts as one ULP: it fails whatever its size
  return right ? 0 : 1;
}

double judge::judge_real(const arguments& in, const results& out, int r) {
  double error;
  if (++tick_ % sample_every != 0 && estimate(in, out, r, error)) return error;
  return decide(in, out, r);
}

}  // namespace vorx::ulp
