// Order statistics of repeated measurements.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace vorx::bench {

// The value below which the given part of the sample lies, linear between neighbours; NaN for an empty sample. Infinite or NaN
// values (a quantity that was not measured) are left out.
inline double quantile(std::vector<double> sample, double part) {
  std::erase_if(sample, [](double x) { return !std::isfinite(x); });
  if (sample.empty()) return std::numeric_limits<double>::quiet_NaN();
  std::sort(sample.begin(), sample.end());
  double at = part * double(sample.size() - 1);
  auto below = static_cast<size_t>(at);
  size_t above = std::min(below + 1, sample.size() - 1);
  return sample[below] + (at - double(below)) * (sample[above] - sample[below]);
}

inline double median(const std::vector<double>& sample) { return quantile(sample, 0.5); }

// Half of the width of the middle half, relative to the median: how far a typical repetition is from the middle one.
inline double spread(const std::vector<double>& sample) {
  return (quantile(sample, 0.75) - quantile(sample, 0.25)) / 2 / median(sample);
}

}  // namespace vorx::bench
