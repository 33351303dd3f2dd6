// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/Box.h"

namespace tallyscope {

// A smooth curve through points in space, sampled along its parameter.
//   std::vector<Point3> points{{0, 0, 0}, {1, 2, 0}, {3, 1, 0}};
//   std::vector<Point3> curve;
//   CGSpline spline;
//   spline.SetArray(CGSpline::kControlPoints, &points);
//   spline.SetArray(CGSpline::kOutput, &curve);
//   spline.Compute();
// The curve passes through every point. With the same data it gives the same curve: nothing is kept from run to run.
class CGSpline {
 public:
  using Points = std::vector<Point3>;

  enum Array { kControlPoints = 0, kParameters = 1, kBezierPoints = 2, kOutput = 3, kIndexList = 4 };
  enum Interpolation { kLocalSlopes = 0, kBezier = 1 };
  enum Sampling { kPointsOnly = 0, kByStep = 1, kByCount = 2 };
  enum Closure { kOpen = 0, kClosed = 1, kClosedIfNear = 2 };  // near: the last gap is no longer than the mean segment

  CGSpline() = default;
  CGSpline(const CGSpline&) = default;  // shares the arrays that were given, copies its own
  CGSpline& operator=(const CGSpline&) = default;
  virtual ~CGSpline() = default;

  // Gives an array that stays the caller's and must outlive the spline's use of it; null takes it away again. Control
  // points are read, Bezier points (two a point: the handles before and after it) and output are written.
  virtual void SetArray(int which, Points* array);
  // One for each point and one at the end, rising. Without them the chord lengths serve, the last one back to the first
  // point.
  virtual void SetParameters(std::vector<double>* parameters);
  // Receives where each control point stands in the output.
  virtual void SetIndexList(std::vector<int>* list);
  virtual bool IsOwned(int which);  // not given by a caller

  // Points written; 0, and the output as it was, without an output array, with fewer than two points, parameters of the
  // wrong number, a step not above 0, a count below 1, more than an int can count, or Bezier points that would go over
  // the control points. A closed curve doesn't repeat its
  // first point. Local slopes take no neighbour across the closing, so that segment runs on from the last slopes alone.
  virtual int Compute();

  void SetInterpolation(int interpolation) { interpolation_ = interpolation; }
  void SetSampling(int sampling) { sampling_ = sampling; }
  void SetClosure(int closure) { closure_ = closure; }
  void SetCountPerSegment(int count) { countPerSegment_ = count; }  // by count: the mean segment's
  void SetStep(double step) { step_ = step; }
  void SetTolerance(double tolerance) { tolerance_ = tolerance; }  // parameters closer count as one; 0: half a step
  void SetTension(double tension) { tension_ = tension; }          // length of a handle as a share of its segment
  // Below 2 a chord is as long as its |dx|, otherwise as in space. With 1 an inner point's x is the first point's plus
  // its parameter.
  void SetMeasure(int measure) { measure_ = measure; }

  double GetMeanSegment() const { return meanSegment_; }  // of the last Compute
  bool IsClosed() const { return closed_; }

 private:
  struct Plan;

  const Points& GetControl() const { return control_ == nullptr ? ownControl_ : *control_; }
  const std::vector<double>& GetParameters() const { return parameters_ == nullptr ? ownParameters_ : *parameters_; }
  Points& GetBezier() { return bezier_ == nullptr ? ownBezier_ : *bezier_; }
  double GetChord(const Point3& a, const Point3& b) const;
  void MakeParameters();
  void MakeBezierPoints();
  bool MakePlan(Plan& plan) const;
  int CountInner(const Plan& plan, std::size_t segment) const;
  void AddInner(const Plan& plan, std::size_t segment, int count, Points& curve) const;
  Point3 GetBezierAt(std::size_t segment, double parameter) const;

  Points* control_ = nullptr;
  std::vector<double>* parameters_ = nullptr;
  Points* bezier_ = nullptr;
  Points* output_ = nullptr;
  std::vector<int>* indexList_ = nullptr;
  Points ownControl_;
  std::vector<double> ownParameters_;
  Points ownBezier_;

  int interpolation_ = kLocalSlopes;
  int sampling_ = kByCount;
  int closure_ = kClosedIfNear;
  int countPerSegment_ = 10;
  double step_ = 0;
  double tolerance_ = 0;
  double tension_ = 0.4;
  double meanSegment_ = 0;
  bool closed_ = false;
  int measure_ = 3;
};

}  // namespace tallyscope
