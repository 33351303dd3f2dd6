// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace tallyscope {

// Up to six points in a row of one co-ordinate over the curve's parameter: entry 2 is where a segment starts, in front
// of it stand `before` points (0 to 2), behind it `after` (0 to 3).
struct SlopeKnots {
  std::array<double, 6> at{};
  std::array<double, 6> value{};
  int before = 0;
  int after = 0;
};

// One segment of a smooth curve whose slope at a point weighs the slopes around it, each by how much those on the other
// side differ (H. Akima, Journal of the ACM 17, 1970). A slope that is missing at an end is 0.95 of the one inside;
// where both weights are 0 the slope is 0.
class LocalSlopeSegment {
 public:
  explicit LocalSlopeSegment(const SlopeKnots& knots) : start_(knots.value[2]) {
    const bool follows = knots.after >= 1;
    const double m2 = follows ? Slope(knots, 2) : 0;
    const double m1 = knots.before >= 1 ? Slope(knots, 1) : 0.95 * m2;
    const double m0 = knots.before >= 2 ? Slope(knots, 0) : 0.95 * m1;
    const double m3 = knots.after >= 2 ? Slope(knots, 3) : 0.95 * m2;
    const double m4 = knots.after >= 3 ? Slope(knots, 4) : 0.95 * m3;
    const double left = Weigh(m1, std::fabs(m3 - m2), m2, std::fabs(m1 - m0));
    const double right = Weigh(m3, std::fabs(m2 - m1), m2, std::fabs(m4 - m3));
    const double rise = follows ? knots.value[3] - knots.value[2] : 0;
    length_ = follows ? knots.at[3] - knots.at[2] : 1.0;
    slope_ = left;
    square_ = 3 * rise / length_ - 2 * left - right;
    cube_ = left + right - 2 * rise / length_;
  }

  // At a distance `u` of the parameter from the segment's start.
  double At(double u) const {
    return start_ + u * slope_ + square_ * (u * u) / length_ + cube_ * (u * u * u) / (length_ * length_);
  }

 private:
  static double Slope(const SlopeKnots& knots, std::size_t i) {
    return (knots.value[i + 1] - knots.value[i]) / (knots.at[i + 1] - knots.at[i]);
  }
  static double Weigh(double one, double oneWeight, double other, double otherWeight) {
    const double sum = oneWeight + otherWeight;
    return (oneWeight * one + otherWeight * other) / (sum == 0 ? 1000.0 : sum);
  }

  double start_;
  double slope_ = 0;
  double square_ = 0;
  double cube_ = 0;
  double length_ = 1.0;
};

}  // namespace tallyscope
