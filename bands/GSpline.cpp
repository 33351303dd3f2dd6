// SPDX-License-Identifier: MIT
#include "bands/GSpline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "bands/LocalSlopes.h"

namespace tallyscope {

namespace {

double Distance(const Point3& a, const Point3& b) {
  double square = 0;
  for (std::size_t c = 0; c < 3; ++c) square += (b[c] - a[c]) * (b[c] - a[c]);
  return std::sqrt(square);
}

// The points around `centre` that a segment from it looks at; those whose parameter is no more than the tolerance from
// the one before count as the same.
struct Neighbours {
  std::array<std::size_t, 6> point{};
  int before = 0;
  int after = 0;

  Neighbours(const std::vector<double>& at, std::size_t points, std::size_t centre, double tolerance) {
    point[2] = centre;
    for (std::size_t i = centre; i > 0 && before < 2;) {
      --i;
      if (std::fabs(at[i] - at[point[static_cast<std::size_t>(2 - before)]]) > tolerance) {
        point[static_cast<std::size_t>(2 - ++before)] = i;
      }
    }
    for (std::size_t i = centre + 1; i < points && after < 3; ++i) {
      if (std::fabs(at[i] - at[point[static_cast<std::size_t>(2 + after)]]) > tolerance) {
        point[static_cast<std::size_t>(2 + ++after)] = i;
      }
    }
  }
};

}  // namespace

// How the curve is cut, with what the settings leave open filled in.
struct CGSpline::Plan {
  double step = 0;
  double tolerance = 0;
  std::size_t points = 0;
  std::size_t segments = 0;
};

void CGSpline::SetArray(int which, Points* array) {
  if (which == kControlPoints) control_ = array;
  if (which == kBezierPoints) bezier_ = array;
  if (which == kOutput) output_ = array;
}

void CGSpline::SetParameters(std::vector<double>* parameters) {
  parameters_ = parameters;
}

void CGSpline::SetIndexList(std::vector<int>* list) {
  indexList_ = list;
}

bool CGSpline::IsOwned(int which) {
  switch (which) {
    case kControlPoints:
      return control_ == nullptr;
    case kParameters:
      return parameters_ == nullptr;
    case kBezierPoints:
      return bezier_ == nullptr;
    case kOutput:
      return output_ == nullptr;
    default:
      return indexList_ == nullptr;
  }
}

double CGSpline::GetChord(const Point3& a, const Point3& b) const {
  return measure_ < 2 ? std::fabs(b[0] - a[0]) : Distance(a, b);
}

void CGSpline::MakeParameters() {
  const Points& control = GetControl();
  ownParameters_.assign(control.size() + 1, 0.0);
  for (std::size_t i = 1; i < control.size(); ++i) {
    ownParameters_[i] = ownParameters_[i - 1] + GetChord(control[i - 1], control[i]);
  }
  ownParameters_.back() = ownParameters_[control.size() - 1] + GetChord(control.back(), control.front());
}

void CGSpline::MakeBezierPoints() {
  const Points& control = GetControl();
  Points handles(2 * control.size());
  const std::size_t last = control.size() - 1;
  for (std::size_t i = 0; i <= last; ++i) {
    const Point3& point = control[i];
    const Point3& before = i > 0 ? control[i - 1] : closed_ ? control[last] : point;
    const Point3& after = i < last ? control[i + 1] : closed_ ? control[0] : point;
    const double length = Distance(before, after);
    const double toBefore = Distance(point, before);
    const double toAfter = Distance(point, after);
    for (std::size_t c = 0; c < 3; ++c) {
      double direction = after[c] - before[c];
      if (!(length < 1e-15)) direction /= length;
      handles[2 * i][c] = point[c] - direction * tension_ * toBefore;
      handles[2 * i + 1][c] = point[c] + direction * tension_ * toAfter;
    }
  }
  GetBezier() = std::move(handles);
}

bool CGSpline::MakePlan(Plan& plan) const {
  plan.points = GetControl().size();
  plan.segments = closed_ ? plan.points : plan.points - 1;
  if (sampling_ == kPointsOnly) return true;
  if (sampling_ == kByStep && !(step_ > 0)) return false;
  if (sampling_ == kByCount && countPerSegment_ < 1) return false;
  plan.step = sampling_ == kByStep ? step_ : meanSegment_ / countPerSegment_;
  plan.tolerance = tolerance_ > 0 ? tolerance_ : plan.step / 2;
  double total = static_cast<double>(plan.points);
  for (std::size_t i = 0; i < plan.segments; ++i) {
    const double length = GetParameters()[i + 1] - GetParameters()[i];
    if (length >= plan.tolerance) total += sampling_ == kByStep ? length / plan.step : countPerSegment_;
  }
  return total < std::numeric_limits<int>::max();
}

// Points inside a segment.
int CGSpline::CountInner(const Plan& plan, std::size_t segment) const {
  if (sampling_ == kPointsOnly || segment >= plan.segments) return 0;
  const double length = GetParameters()[segment + 1] - GetParameters()[segment];
  if (!(length >= plan.tolerance)) return 0;
  const int parts = sampling_ == kByStep ? static_cast<int>(std::round(length / plan.step)) : countPerSegment_;
  return std::max(parts - 1, 0);
}

void CGSpline::AddInner(const Plan& plan, std::size_t segment, int count, Points& curve) const {
  const Points& control = GetControl();
  const std::vector<double>& at = GetParameters();
  const Neighbours near(at, plan.points, segment, plan.tolerance);
  std::array<SlopeKnots, 3> knots{};
  for (std::size_t c = 0; c < 3; ++c) {
    for (std::size_t k = 0; k < near.point.size(); ++k) {
      knots[c].at[k] = at[near.point[k]];
      knots[c].value[k] = control[near.point[k]][c];
    }
    knots[c].before = near.before;
    knots[c].after = near.after;
  }
  const LocalSlopeSegment x(knots[0]);
  const LocalSlopeSegment y(knots[1]);
  const LocalSlopeSegment z(knots[2]);
  const double spacing = (at[segment + 1] - at[segment]) / (count + 1);
  for (int k = 1; k <= count; ++k) {
    const double parameter = at[segment] + k * spacing;
    const double u = parameter - at[segment];
    Point3 point = interpolation_ == kBezier ? GetBezierAt(segment, parameter) : Point3{x.At(u), y.At(u), z.At(u)};
    if (measure_ == 1) point[0] = control[0][0] + parameter;
    curve.push_back(point);
  }
}

Point3 CGSpline::GetBezierAt(std::size_t segment, double parameter) const {
  const Points& control = GetControl();
  const Points& handles = bezier_ == nullptr ? ownBezier_ : *bezier_;
  const std::vector<double>& at = GetParameters();
  const std::size_t next = segment + 1 < control.size() ? segment + 1 : 0;
  const double u = (parameter - at[segment]) / (at[segment + 1] - at[segment]);
  const double v = 1 - u;
  Point3 point{};
  for (std::size_t c = 0; c < 3; ++c) {
    point[c] = v * v * v * control[segment][c] + 3 * u * v * v * handles[2 * segment + 1][c] +
               3 * u * u * v * handles[2 * next][c] + u * u * u * control[next][c];
  }
  return point;
}

int CGSpline::Compute() {
  const Points& control = GetControl();
  if (output_ == nullptr || control.size() < 2 || bezier_ == &control) return 0;
  if (parameters_ == nullptr) MakeParameters();
  const std::vector<double>& at = GetParameters();
  if (at.size() != control.size() + 1) return 0;
  const std::size_t last = control.size() - 1;
  meanSegment_ = (at[last] - at[0]) / static_cast<double>(last);
  closed_ = closure_ == kClosedIfNear ? at[last + 1] - at[last] <= meanSegment_ : closure_ == kClosed;
  Plan plan;
  if (!MakePlan(plan)) return 0;
  if (interpolation_ == kBezier) MakeBezierPoints();

  Points curve;
  std::vector<int> places;
  places.reserve(control.size());
  for (std::size_t i = 0; i < control.size(); ++i) {
    places.push_back(static_cast<int>(curve.size()));
    curve.push_back(control[i]);
    const int inner = CountInner(plan, i);
    if (inner > 0) AddInner(plan, i, inner, curve);
  }
  if (indexList_ != nullptr) *indexList_ = std::move(places);
  *output_ = std::move(curve);
  return static_cast<int>(output_->size());
}

}  // namespace tallyscope
