// SPDX-License-Identifier: MIT
#include "spatial/Stats_ModelVariogram.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "spatial/NestType.h"
#include "spatial/Stats_VariogramData.h"

namespace tallyscope {

namespace {

constexpr double kOnePoint = 1e-10;
constexpr double kNoRange = 1e10;  // scale of an axis without a range: everything is far beyond it
constexpr int kDirectionalLags = 50;

double Radians(double degrees) {
  return degrees * std::numbers::pi / 180.0;
}

double GetLength(const Point3& v) {
  return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

// Length of M v.
double GetDistance(const CStats_ModelVariogram::Matrix& m, const Point3& v) {
  Point3 turned;
  for (std::size_t i = 0; i < 3; ++i) turned[i] = m[i][0] * v[0] + m[i][1] * v[1] + m[i][2] * v[2];
  return GetLength(turned);
}

// The cosines and sines of a bearing and a dip.
struct Direction {
  double cosD, sinD, cosE, sinE;

  Direction(double bearing, double dip)
      : cosD(std::cos(Radians(90.0 - bearing))),
        sinD(std::sin(Radians(90.0 - bearing))),
        cosE(std::cos(Radians(dip))),
        sinE(std::sin(Radians(dip))) {}
  Point3 At(double r) const { return {r * cosD * cosE, r * sinD * cosE, -r * sinE}; }
};

// Directions of an averaged curve, in the order in which they are summed.
std::vector<Direction> ListDirections(int dimension) {
  std::vector<Direction> directions;
  if (dimension == 2) {
    for (int bearing = 0; bearing < 360; bearing += 5) directions.emplace_back(bearing, 0);
  } else if (dimension == 3) {
    for (int bearing = 0; bearing < 360; bearing += 10) {
      for (int dip = 90; dip >= -80; dip -= 10) directions.emplace_back(bearing, dip);
    }
  }
  return directions;
}

const std::vector<Direction>& GetDirections(int dimension) {
  static const std::vector<Direction> flat = ListDirections(2);
  static const std::vector<Direction> solid = ListDirections(3);
  static const std::vector<Direction> none;
  return dimension == 2 ? flat : dimension == 3 ? solid : none;
}

// One row for each of the two other axes: its ratio to the principal range scales it.
double GetScale(const CModelVariogram& nest, double range) {
  const double ratio = nest.primaryRange > 0 ? range / nest.primaryRange : range;
  return ratio > 0 ? 1.0 / ratio : kNoRange;
}

CStats_ModelVariogram::Matrix MakeTransform(const CModelVariogram& nest) {
  const double cosA = std::cos(Radians(90.0 - nest.strike)), sinA = std::sin(Radians(90.0 - nest.strike));
  const double cosB = std::cos(Radians(nest.plunge)), sinB = std::sin(Radians(nest.plunge));
  const double cosC = std::cos(Radians(nest.dip)), sinC = std::sin(Radians(nest.dip));
  const double k1 = GetScale(nest, nest.minorRange);
  const double k2 = GetScale(nest, nest.depthRange);
  return {{{cosB * cosA, cosB * sinA, -sinB},
           {k1 * (sinC * sinB * cosA - cosC * sinA), k1 * (sinC * sinB * sinA + cosC * cosA), k1 * cosB * sinC},
           {k2 * (sinC * sinA + cosC * sinB * cosA), k2 * (cosC * sinB * sinA - sinC * cosA), k2 * cosC * cosB}}};
}

// The curve's lags at 0 and at the middles of equal steps, its values still to be filled in.
void LayOut(CStats_VariogramData& data, int count) {
  const auto size = static_cast<std::size_t>(count) + 1;
  data.pairCount.assign(size, 0);
  data.lag.assign(size, 0.0);
  data.covariance.assign(size, 0.0);
  data.momentOfInertia.assign(size, 0.0);
  data.pairCount[0] = 1;
}

void SetEntry(CStats_VariogramData& data, std::size_t entry, double lag, const CStats_ModelVariogram::Values& values) {
  data.lag[entry] = lag;
  data.covariance[entry] = values.covariance;
  data.momentOfInertia[entry] = values.variogram;
}

double GetMiddle(int entry, double range, int count) {
  return (entry - 0.5) * range / count;
}

}  // namespace

void CStats_ModelVariogram::Reset() {
  SetIsotropicNugget(0);
  nests.clear();
}

void CStats_ModelVariogram::SetIsotropicNugget(double nugget) {
  isotropicNugget = CModelVariogram::PureNugget(nugget);
}

CModelVariogram& CStats_ModelVariogram::AddNest() {
  return nests.emplace_back();
}

bool CStats_ModelVariogram::IsNestIsotropic(int index) const {
  if (index < 0 || index >= static_cast<int>(nests.size())) return true;
  return nests[static_cast<std::size_t>(index)].IsIsotropic(dimension);
}

void CStats_ModelVariogram::Update(int newDimension) {
  transforms.resize(nests.size());
  std::transform(nests.begin(), nests.end(), transforms.begin(), MakeTransform);
  totalNugget = isotropicNugget.nugget;
  for (const auto& nest : nests) totalNugget += nest.nugget;
  totalSill = totalNugget;
  for (const auto& nest : nests) {
    const NestType* row = FindNestType(nest.type);
    totalSill += nest.nugget;
    totalSill += row != nullptr ? row->sillPart(nest) : nest.sill;
  }
  for (auto& nest : nests) nest.totalSill = totalSill;
  dimension = newDimension;
}

CStats_ModelVariogram::Values CStats_ModelVariogram::GetValuesAt(const Point3& separation) const {
  const double distance = GetLength(separation);
  if (distance < kOnePoint) return {totalSill, totalNugget};
  Values sum;
  const auto add = [&sum](const CModelVariogram& nest, double r) {
    const double value = nest.Evaluate(r);
    sum.covariance += nest.nugget + nest.sill - value;
    sum.variogram += value;
  };
  add(isotropicNugget, distance);
  for (std::size_t i = 0; i < std::min(nests.size(), transforms.size()); ++i) {
    add(nests[i], GetDistance(transforms[i], separation));
  }
  return sum;
}

CStats_ModelVariogram::Values CStats_ModelVariogram::GetValues(double direction, double dip, double distance) const {
  return GetValuesAt(Direction(direction, dip).At(distance));
}

double CStats_ModelVariogram::GetCovariance(const Point3& a, const Point3& b) const {
  return GetValuesAt({b[0] - a[0], b[1] - a[1], b[2] - a[2]}).covariance;
}

double CStats_ModelVariogram::GetVariogram(const Point3& a, const Point3& b) const {
  return GetValuesAt({b[0] - a[0], b[1] - a[1], b[2] - a[2]}).variogram;
}

double CStats_ModelVariogram::GetCovariance(double direction, double dip, double distance) const {
  return GetValues(direction, dip, distance).covariance;
}

double CStats_ModelVariogram::GetVariogram(double direction, double dip, double distance) const {
  return GetValues(direction, dip, distance).variogram;
}

CStats_ModelVariogram::Values CStats_ModelVariogram::GetAveragedValues(double distance) const {
  const auto& directions = GetDirections(dimension);
  if (directions.empty()) return {};
  Values sum;
  for (const auto& direction : directions) {
    const Values values = GetValuesAt(direction.At(distance));
    sum.covariance += values.covariance;
    sum.variogram += values.variogram;
  }
  const auto count = static_cast<double>(directions.size());
  return {sum.covariance / count, sum.variogram / count};
}

void CStats_ModelVariogram::GetAveragedData(CStats_VariogramData& data, int count, double range) const {
  count = std::max(count, 0);
  LayOut(data, count);
  SetEntry(data, 0, 0, GetValuesAt({}));
  if (dimension != 2 && dimension != 3) return;
  for (int i = 1; i <= count; ++i) {
    const double lag = GetMiddle(i, range, count);
    SetEntry(data, static_cast<std::size_t>(i), lag, GetAveragedValues(lag));
  }
}

void CStats_ModelVariogram::GetDirectionalData(CStats_VariogramData& data, double direction, double dip,
                                               double range) const {
  LayOut(data, kDirectionalLags);
  SetEntry(data, 0, 0, GetValuesAt({}));
  const Direction way(direction, dip);
  for (int i = 1; i <= kDirectionalLags; ++i) {
    const double lag = GetMiddle(i, range, kDirectionalLags);
    SetEntry(data, static_cast<std::size_t>(i), lag, GetValuesAt(way.At(lag)));
  }
}

}  // namespace tallyscope
