// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "spatial/Stats_PointSearch.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr int kLeafCapacity = 64;
constexpr double kMargin = 1000.0;  // the search's box sticks out by range / 1000 on each side

}  // namespace

void CStats_Data::PointSearchDeleter::operator()(CStats_PointSearch* search) const {
  delete search;
}

CStats_PointSearch* CStats_Data::GetPointSearch() {
  if (pointSearch_ == nullptr) pointSearch_.reset(new CStats_PointSearch(this));
  return pointSearch_.get();
}

void CStats_Data::DestroyPointSearch() {
  pointSearch_.reset();
}

void CStats_Data::DropPointSearch(const DataChange& change) {
  if (pointSearch_ == nullptr) return;
  if (change.kind != DataChange::kColumn) {
    DestroyPointSearch();  // its dims name other columns now
    return;
  }
  const int fields[3] = {pointSearch_->GetFieldX(), pointSearch_->GetFieldY(), pointSearch_->GetFieldZ()};
  const int* end = fields + pointSearch_->GetDimensions();
  if (std::find(fields, end, change.dim) != end) pointSearch_->SetPartitioned(false);
}

bool CStats_Data::PreparePointSearch(CProgressSink* progress) {
  CStats_PointSearch* search = GetPointSearch();
  if (search == nullptr) return false;
  if (search->IsPartitioned() || search->GetDimensions() < 2) return true;
  const int fields[3] = {search->GetFieldX(), search->GetFieldY(), search->GetFieldZ()};
  Box box;
  for (int axis = 0; axis < search->GetDimensions(); ++axis) {
    CStats_Univariate figures;
    figures.Add(this, fields[axis]);
    if (!figures.Calculate(1, progress)) return false;
    // A constant co-ordinate gets a margin too, so that the box has an extent and is cut.
    const double range = figures.maximum - figures.minimum;
    const double margin = (range != 0 ? range : std::max(1.0, std::fabs(figures.minimum))) / kMargin;
    // No station lies on a face, even where the margin is lost in the rounding: a high face isn't part of its box.
    constexpr double kFar = std::numeric_limits<double>::infinity();
    box.min[static_cast<std::size_t>(axis)] =
        std::min(figures.minimum - margin, std::nextafter(figures.minimum, -kFar));
    box.max[static_cast<std::size_t>(axis)] = std::max(figures.maximum + margin, std::nextafter(figures.maximum, kFar));
  }
  search->Reset();
  search->Initialise(box, kLeafCapacity);
  search->Partition();
  return search->IsPartitioned();
}

}  // namespace tallyscope
