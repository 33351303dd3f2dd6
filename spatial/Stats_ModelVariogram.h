// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "platform/core/Box.h"
#include "spatial/ModelVariogram.h"

namespace tallyscope {

class CStats_VariogramData;

// A nested model variogram: an isotropic nugget and a list of nests, each with an anisotropy of its own. A value.
//   CStats_ModelVariogram model;
//   model.SetIsotropicNugget(2);
//   model.AddNest() = CModelVariogram::Spherical({.sill = 10, .primaryRange = 500, .minorRange = 250, .strike = 30});
//   model.Update(2);
//   model.GetVariogram(30, 0, 400);   // 400 units away along the principal axis
// Update must follow any change of a nest: until then a nest without a transform counts for nothing. Directions are
// bearings in degrees, clockwise from north (+y); dips are degrees, positive downward.
class CStats_ModelVariogram {
 public:
  using Matrix = std::array<std::array<double, 3>, 3>;

  struct Values {
    double covariance = 0;
    double variogram = 0;
  };

  CModelVariogram isotropicNugget;  // "Pure Nugget"
  std::vector<CModelVariogram> nests;

  // From Update. The nugget of a nest is in totalSill twice, once by way of totalNugget.
  double totalSill = 0;
  double totalNugget = 0;
  int dimension = 2;
  // For each nest: the length of M v is the distance along v that counts against the nest's primaryRange.
  std::vector<Matrix> transforms;

  void Reset();  // isotropic nugget 0, no nests
  void SetIsotropicNugget(double nugget);
  CModelVariogram& AddNest();  // valid until the list changes
  bool IsEmpty() const { return nests.empty() && isotropicNugget.nugget == 0; }
  bool IsNestIsotropic(int index) const;  // true for an index out of range
  void Update(int newDimension);

  // Between two points. At less than 1e-10 apart they are one: the variogram is then totalNugget, not 0.
  double GetCovariance(const Point3& a, const Point3& b) const;
  double GetVariogram(const Point3& a, const Point3& b) const;
  // Between the origin and a point in a direction.
  double GetCovariance(double direction, double dip, double distance) const;
  double GetVariogram(double direction, double dip, double distance) const;
  Values GetValues(double direction, double dip, double distance) const;

  // The mean over directions, every 5 degrees in 2 dimensions, every 10 degrees of bearing and dip in 3; zeroes in any
  // other dimension.
  Values GetAveragedValues(double distance) const;

  // Curves to set beside those of a sample. Entry 0 is the model at lag 0, with a pair count of 1; then the middles of
  // `count` (50 in a direction) equal lags up to `range`, with a pair count of 0. In dimensions other than 2 and 3 the
  // entries of an averaged curve from 1 on are left at 0.
  void GetAveragedData(CStats_VariogramData& data, int count, double range) const;
  void GetDirectionalData(CStats_VariogramData& data, double direction, double dip, double range) const;

 private:
  Values GetValuesAt(const Point3& separation) const;
};

}  // namespace tallyscope
