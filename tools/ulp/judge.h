// Compares a result with its reference and keeps the statistics of a kernel.
//
// The error of a number is |result - exact| in units in the last place of the binade that holds the exact value; below the normal
// range the unit is that of the subnormal numbers. Where the exact value is beyond the largest number and rounds to infinity, an
// infinite result is correctly rounded; an infinity where a number is right counts as the next power of two, and a number where
// infinity is right is measured in units of the top binade. So an error next to the end of the range is as large as elsewhere.
// What is no error of size but one of kind (see `fault`) is counted apart.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <vector>

#include "tools/claims.h"
#include "tools/ulp/reference.h"

namespace vorx::ulp {

enum class fault {
  nan_for_number,
  number_for_nan,
  signalling_nan,       // a NaN that is not quiet, where none of the arguments' bits should pass through
  infinity_for_finite,  // by more than the claim
  finite_for_infinity,
  sign_of_zero,
  wrong_bits,  // a result that is defined bit for bit
  neighbour,   // the lane's bits depend on another lane
  count
};
const char* name_of(fault f);

struct example {
  arguments in{};
  results out{};
  uint64_t expected = 0;  // of the result that is wrong; with a neighbour's influence, the other bits seen
  int result = 0;
};

// Upper ends of the histogram's classes, in ULP.
inline constexpr std::array<double, 18> histogram_ends = {0.5, 0.51, 0.55, 0.6, 0.75, 1,  1.5,  2,    2.5,
                                                          3,   4,    6,    8,   16,   64, 1024, 8192, INFINITY};

struct statistics {
  uint64_t inputs = 0;                       // argument tuples
  uint64_t measured = 0;                     // results with an error: one or two for each input
  uint64_t correct = 0;                      // of these, correctly rounded (or bit for bit right)
  uint64_t subnormal = 0;                    // of these, in subnormal units
  uint64_t nan = 0, infinite = 0, zero = 0;  // results that are right and have no error: not among the measured ones
  uint64_t outside = 0;                      // inputs about which a native kernel claims nothing; or an absolute error only
  uint64_t by_mpfr = 0;                      // results that MPFR decided
  uint64_t neighbour_matters = 0;            // inputs for which another neighbour lane gave other bits
  double largest = -1;                       // ULP
  example worst;
  double worst_signed = 0;  // result - exact, in ULP
  std::array<uint64_t, histogram_ends.size()> histogram{};
  std::array<uint64_t, static_cast<size_t>(fault::count)> faults{};
  std::array<example, static_cast<size_t>(fault::count)> fault_examples{};
  uint64_t digest = 0;             // of all inputs and results; does not depend on their order
  uint64_t estimate_breaches = 0;  // an estimate was outside its bound: the run is void
  std::vector<float> profile;      // largest error by the leading bits of the first argument

  void merge(const statistics& other);
  uint64_t fault_count() const;
};

// Judges the results of one kernel. Not shared between threads.
class judge {
 public:
  explicit judge(const entry_point& e);
  // Takes the results of one lane into the statistics; returns the largest of their errors, in ULP. `estimates`, one for each
  // result, spare a float kernel's judge the computation of its own.
  double operator()(const arguments& in, const results& out, const double* estimates = nullptr);
  // The same for a block of consecutive arguments of a float kernel with one argument and one result, if all of the block is
  // plain: numbers of one binade whose errors the estimates settle, none of them the largest so far; or right and all NaN,
  // infinite or zero. Otherwise it returns false and takes nothing.
  bool take_plain(uint32_t first, const results* out, const std::array<double, 2>* estimates);
  // Another neighbour gave other bits: measured like the first result where that is the kernel's right, a fault otherwise.
  void neighbour_matters(const arguments& in, const results& out, const results& other, bool whole_vector);

  statistics found;
  double floor = 0;  // an error known to occur in this run: what is surely smaller need not be exact
  static int profile_size(element type);

 private:
  bool take_special(uint32_t first, const results* out, const std::array<double, 2>* estimates);
  bool claimed(const arguments& in) const;
  bool absolutely_small(const arguments& in, double error, double unit) const;
  void report(fault f, const arguments& in, const results& out, int result, uint64_t expected);
  double judge_exact(const arguments& in, const results& out, int r);
  double judge_real(const arguments& in, const results& out, int r);
  bool estimate(const arguments& in, const results& out, int r, double& error);
  template <class T, class Wide>
  bool settle(Wide e, double doubt, const arguments& in, const results& out, int r, double& error);
  double decide(const arguments& in, const results& out, int r);
  double special(bool right, fault f, uint64_t expected, const arguments& in, const results& out, int r);
  double measure(uint64_t got);
  uint64_t nearest() const;
  void check_estimate(const arguments& in, int r);
  double number(const arguments& in, int a) const;
  bool can_estimate(const arguments& in, int r) const;
  double quick(const arguments& in, int r) const;
  long double fine(const arguments& in, int r) const;
  void count(double error, double signed_error, bool correct, const arguments& in, const results& out, int r);

  entry_point entry_;
  const float_format& format_;
  claims claims_;
  std::array<result_reference, 2> references_;
  bool unary_;
  double tolerated_;  // errors above are faults of kind where an infinity is involved
  bool in_claim_ = true;
  const double* estimates_ = nullptr;
  uint64_t tick_ = 0;
  std::array<std::unique_ptr<real>, 3> a_;
  const real* given_[3];
  std::unique_ptr<real> exact_, difference_;
};

}  // namespace vorx::ulp
