// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/String.h"

namespace tallyscope {

// What the directed types share: a nest's size, its ranges in the units of the co-ordinates, and its orientation in
// degrees.
struct NestShape {
  double nugget = 0;  // added to the curve away from zero lag
  double sill = 0;    // the slope where the curve has one instead: "Linear" and "Power law"

  double primaryRange = 1.0;  // along the principal axis; of the hole effects the distance of the first peak
  double minorRange = 0;      // along the other two axes
  double depthRange = 0;

  // The bearing of the principal axis, clockwise from north (+y), its tilt downward, and the roll of the other two axes
  // about it, right-hand side down.
  double strike = 0;
  double plunge = 0;
  double dip = 0;
};

// One curve of a nested model: a type of the table in NestType.h, its parameters and its anisotropy. What a type
// doesn't use keeps its default and counts for nothing in the curve. Ranges are practical ranges: the exponential and
// Gaussian curves have reached 95 % of their sill there.
//   const auto nest = CModelVariogram::Spherical({.sill = 10, .primaryRange = 500, .minorRange = 250, .strike = 30});
//   nest.Evaluate(500);   // 10
class CModelVariogram : public NestShape {
 public:
  int type = 0;
  double totalSill = 0;  // of the whole model, from CStats_ModelVariogram::Update
  double dampedRange = 0;
  double power = 2.0;

  CModelVariogram() = default;
  static CModelVariogram PureNugget(double nugget) { return {0, {.nugget = nugget}}; }
  static CModelVariogram Linear(const NestShape& shape) { return {1, shape}; }
  static CModelVariogram Spherical(const NestShape& shape) { return {2, shape}; }
  static CModelVariogram Exponential(const NestShape& shape) { return {3, shape}; }
  static CModelVariogram Gaussian(const NestShape& shape) { return {4, shape}; }
  static CModelVariogram PowerLaw(const NestShape& shape, double power);
  static CModelVariogram HoleEffect(const NestShape& shape) { return {6, shape}; }
  static CModelVariogram DampedHoleEffect(const NestShape& shape, double dampedRange);

  static CString GetTypeName(int type);  // empty for a number that is no type

  // The semivariance at a distance, of which the absolute value counts; 0 for a number that is no type. A range of 0
  // gives what the formula gives, infinite or not a number.
  double Evaluate(double distance) const;

  CString GetDescription() const;  // as in "Sill = 10, Range = 500"

  // Whether the ranges that count in 2 or 3 dimensions agree to 1e-10. True for any other dimension.
  bool IsIsotropic(int dimension) const;

 private:
  CModelVariogram(int number, const NestShape& shape) : NestShape(shape), type(number) {}
};

}  // namespace tallyscope
