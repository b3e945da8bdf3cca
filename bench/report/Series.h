// One figure, measured once a round.
#pragma once

#include <cstddef>
#include <vector>

namespace tavrel::bench {

class Series {
 public:
  Series() = default;
  Series(std::vector<double> values) : values_(std::move(values)) {}
  Series(double value) : values_{value} {}

  void Add(double value) { values_.push_back(value); }
  [[nodiscard]] double operator[](std::size_t round) const { return values_[round]; }
  [[nodiscard]] std::size_t size() const { return values_.size(); }
  [[nodiscard]] const std::vector<double>& values() const { return values_; }

  // All of these ask for one value at least.
  [[nodiscard]] double Least() const { return At(0); }
  [[nodiscard]] double Median() const { return At(0.5); }
  [[nodiscard]] double Most() const { return At(1); }
  // The value that the given share of all values does not exceed, between two of them in proportion.
  [[nodiscard]] double At(double share) const;

  // Round by round; both have as many rounds.
  [[nodiscard]] Series Over(const Series& other) const;
  [[nodiscard]] Series Times(double factor) const;

 private:
  std::vector<double> values_;
};

}  // namespace tavrel::bench
