#include "bench/report/Series.h"

#include <algorithm>
#include <stdexcept>

namespace tavrel::bench {

double Series::At(double share) const {
  if (values_.empty()) throw std::logic_error("nothing was measured");
  std::vector<double> sorted = values_;
  std::sort(sorted.begin(), sorted.end());
  const double place = share * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  const std::size_t above = std::min(below + 1, sorted.size() - 1);
  return sorted[below] + (sorted[above] - sorted[below]) * (place - static_cast<double>(below));
}

Series Series::Over(const Series& other) const {
  if (size() != other.size()) throw std::logic_error("the rounds do not match");
  Series ratios;
  for (std::size_t i = 0; i < size(); ++i) ratios.Add(values_[i] / other[i]);
  return ratios;
}

Series Series::Times(double factor) const {
  Series products;
  for (const double value : values_) products.Add(value * factor);
  return products;
}

}  // namespace tavrel::bench
