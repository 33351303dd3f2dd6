// SPDX-License-Identifier: MIT
#include "spatial/Stats_PointSearch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "spatial/CoordinateRange.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr int kLeafCapacity = 64;
constexpr double kMargin = 1000.0;

}  // namespace

CStats_PointSearch::CStats_PointSearch(CStats_Data* data) : data_(data) {
  CStats_PointSearch::SetDefaultFields();
}

// The table as points.

void CStats_PointSearch::SetPartitioned(bool partitioned) {
  CPointSearch::SetPartitioned(partitioned);
  query_ = StationQuery();
}

bool CStats_PointSearch::IsPointValid(int index) {
  return std::all_of(fields_, fields_ + dimensions_, [&](int field) {
    return data_->IsValueValid(field, index) && std::isfinite(data_->GetValue(field, index));
  });
}

int CStats_PointSearch::GetPointCount() {
  return data_ != nullptr ? data_->GetSize() : 0;
}

double CStats_PointSearch::GetX(int index) {
  return data_->GetValue(fields_[0], index);
}

double CStats_PointSearch::GetY(int index) {
  return data_->GetValue(fields_[1], index);
}

double CStats_PointSearch::GetZ(int index) {
  return data_->GetValue(fields_[2], index);
}

void CStats_PointSearch::ReadPoints(int first, int count, double* const* coordinates, unsigned char* valid) {
  std::vector<unsigned char> also(static_cast<std::size_t>(count));
  std::fill(valid, valid + count, static_cast<unsigned char>(1));
  for (int axis = 0; axis < dimensions_; ++axis) {
    const double* values = coordinates[axis];
    data_->ReadValues(fields_[axis], first, count, coordinates[axis], also.data());
    for (int i = 0; i < count; ++i) {
      if (also[static_cast<std::size_t>(i)] == 0 || !std::isfinite(values[i])) valid[i] = 0;
    }
  }
}

void CStats_PointSearch::ReadPointsAt(const int* indices, int count, double* const* coordinates) {
  for (int axis = 0; axis < dimensions_; ++axis) {
    data_->ReadRawValuesAt(fields_[axis], indices, count, coordinates[axis]);
  }
}

void CStats_PointSearch::SetFields(int fieldX, int fieldY, int fieldZ, int dimensions) {
  const int fields[3] = {fieldX, fieldY, fieldZ};
  dimensions = std::clamp(dimensions, 1, 3);
  if (dimensions == dimensions_ && std::equal(fields, fields + 3, fields_)) return;
  dimensions_ = dimensions;
  std::copy(fields, fields + 3, fields_);
  SetPartitioned(false);
}

void CStats_PointSearch::SetDefaultFields() {
  SetFields(-1, -2, -3, data_ != nullptr ? data_->GetSpatialSize() : 2);
}

// The build.

bool CStats_PointSearch::Prepare(CProgressSink* progress) {
  if (data_ == nullptr) return false;
  if (IsPartitioned() || dimensions_ < 2) return true;
  Box box;
  for (int axis = 0; axis < dimensions_; ++axis) {
    if (!FindBounds(axis, box, progress)) return false;
  }
  Reset();
  Initialise(box, kLeafCapacity);
  return PartitionUnlessCancelled(progress);
}

// Sets the faces of an axis: the column's range and a thousandth of it on each side.
bool CStats_PointSearch::FindBounds(int axis, Box& box, CProgressSink* progress) {
  constexpr double kFar = std::numeric_limits<double>::infinity();
  CStats_Univariate figures;
  figures.Add(data_, fields_[axis]);
  if (!figures.Calculate(1, progress)) return false;
  const CoordinateRange found = FindCoordinateRange(*data_, fields_[axis], figures);
  const double range = found.high - found.low;
  // A constant co-ordinate gets a margin too, so that the box has an extent and is cut.
  const double margin = (range != 0 ? range : std::max(1.0, std::fabs(found.low))) / kMargin;
  // No station lies on a face, even where the margin is lost in the rounding: a high face isn't part of its box.
  box.min[static_cast<std::size_t>(axis)] = std::min(found.low - margin, std::nextafter(found.low, -kFar));
  box.max[static_cast<std::size_t>(axis)] = std::max(found.high + margin, std::nextafter(found.high, kFar));
  return true;
}

// Queries.

StationQuery& CStats_PointSearch::StartQuery() {
  if (!query_.IsOf(GetIndex())) query_ = GetIndex() != nullptr ? StationQuery(*GetIndex()) : StationQuery();
  return query_;
}

void CStats_PointSearch::SearchAll() {
  StartQuery().SearchAll();
}

void CStats_PointSearch::SearchBox(const Box& box) {
  StartQuery().SearchBox(box);
}

void CStats_PointSearch::SearchRotatedRectangle(const Point3& origin, const Point3& size, double angleDegrees) {
  StartQuery().SearchRotatedRectangle(origin, size, angleDegrees);
}

void CStats_PointSearch::SearchBetweenBoxes(const Box& outer, const Box& inner) {
  StartQuery().SearchBetweenBoxes(outer, inner);
}

void CStats_PointSearch::SearchSphere(const Point3& centre, double radius) {
  StartQuery().SearchSphere(centre, radius);
}

void CStats_PointSearch::SearchSector(const Point3& centre, double outerRadius, double innerRadius, double startAngle,
                                      double endAngle) {
  StartQuery().SearchSector(centre, outerRadius, innerRadius, startAngle, endAngle);
}

void CStats_PointSearch::SearchRay(const Point3& origin, const Point3& direction) {
  StartQuery().SearchRay(origin, direction);
}

void CStats_PointSearch::SearchRays(const std::vector<Point3>& origins, const std::vector<Point3>& directions) {
  StartQuery().SearchRays(origins, directions);
}

}  // namespace tallyscope
