// SPDX-License-Identifier: MIT
#include "spatial/Stats_Spatial.h"

#include <algorithm>
#include <cmath>

#include "spatial/CoordinateRange.h"
#include "spatial/Stats_PointSearch.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr int kExtraction = 1;
constexpr int kLagPairs = 2;
constexpr int kLagGrid = 4;
constexpr int kSurfaceFit = 8;
constexpr double kSingular = 1e-12;  // a determinant this small against its terms is zero

// Sums of the normal equations of a plane, and their solution by Cramer's rule.
struct PlaneSums {
  double n = 0, sx = 0, sy = 0, sv = 0, sxx = 0, syy = 0, sxy = 0, sxv = 0, syv = 0;

  void Add(double x, double y, double v) {
    n += 1;
    sx += x;
    sy += y;
    sv += v;
    sxx += x * x;
    syy += y * y;
    sxy += x * y;
    sxv += x * v;
    syv += y * v;
  }
  // False on one line.
  bool Solve(double& a, double& b, double& c) const {
    const double terms[5] = {2 * sx * sy * sxy, n * sxx * syy, -(n * sxy * sxy), -(sx * sx * syy), -(sy * sy * sxx)};
    const double d = terms[0] + terms[1] + terms[2] + terms[3] + terms[4];
    double size = 0;
    for (const double term : terms) size += std::fabs(term);
    if (!(std::fabs(d) > kSingular * size)) return false;
    a = (sxx * sv * syy + sxy * sx * syv + sxy * sy * sxv - sxy * sv * sxy - sxv * sx * syy - syv * sy * sxx) / d;
    b = (n * sxv * syy + sv * sy * sxy + sy * sx * syv - n * sxy * syv - sv * sx * syy - sy * sy * sxv) / d;
    c = (sy * sx * sxv + n * sxx * syv + sv * sx * sxy - n * sxy * sxv - sx * sx * syv - sv * sy * sxx) / d;
    return true;
  }
};

void Normalise(const CoordinateRange& found, double& start, double& range) {
  start = found.low;
  range = found.high - found.low;
  if (range == 0) range = 1.0;
}

}  // namespace

CStats_Spatial::CStats_Spatial() {
  CStats_Spatial::ResetSpatialDims();
}

void CStats_Spatial::SetSpatialDims(int dimX, int dimY, int dimZ, int dimCount) {
  dims_[0] = dimX;
  dims_[1] = dimY;
  dims_[2] = dimZ;
  dimCount_ = dimCount;
}

void CStats_Spatial::ResetSpatialDims() {
  SetSpatialDims(-1, -2, -3, IsItem(0) ? GetItemData(0)->GetSpatialSize() : 2);
}

bool CStats_Spatial::HasDims(CStats_Data* data, const int* dims, int dimCount) {
  const auto isColumn = [data](int dim) { return dim >= -data->GetSpatialSize() && dim < data->GetValueSize(); };
  return dimCount >= 2 && dimCount <= 3 && std::all_of(dims, dims + dimCount, isColumn);
}

CStats_PointSearch* CStats_Spatial::PrepareSearch(CStats_Data* data, const int* dims, int dimCount,
                                                  CProgressSink* progress) {
  if (!HasDims(data, dims, dimCount)) return nullptr;
  CStats_PointSearch* search = data->GetPointSearch();
  if (search == nullptr) return nullptr;
  search->SetFields(dims[0], dims[1], dims[2], dimCount);
  return data->PreparePointSearch(progress) && search->IsPartitioned() ? search : nullptr;
}

bool CStats_Spatial::CalculateItem(int item, int flags, CProgressSink* progress) {
  if (!IsItem(item)) return false;
  CStats_Data* data = GetItemData(item);
  const int dim = GetItemDim(item);
  const auto isWanted = [&](int flag) { return (flags & ~GetFlags(item) & flag) != 0; };
  const bool searches = isWanted(kExtraction | kLagPairs);
  if (searches) PrepareSearch(data, dims_, dimCount_, progress);
  if (isWanted(kExtraction) && CalcExtraction(data, dim, progress)) SetFlags(item, kExtraction);
  // A region in other dims has left the search on these.
  if (searches) PrepareSearch(data, dims_, dimCount_, progress);
  if (isWanted(kLagPairs) && CalcLagPairs(data, dim, progress)) SetFlags(item, kLagPairs);
  if (isWanted(kLagGrid) && (lagFlags & kUseSearch) != 0) PrepareSearch(data, dims_, dimCount_, progress);
  if (isWanted(kLagGrid) && FillLagGrid(item, progress)) SetFlags(item, kLagGrid);
  if (isWanted(kSurfaceFit) && FitSurface(item, progress)) SetFlags(item, kSurfaceFit);
  return (GetFlags(item) & flags) == flags;
}

// Selections.

void CStats_Spatial::AddSelRegion(std::unique_ptr<CStats_Rgn> region) {
  extractFlags &= ~static_cast<unsigned>(kRegularCells | kLists | kExtractZ);
  extractFlags |= kBitmaps | kExtractX | kExtractY;
  regions.DropUndone();
  regions.Append(std::move(region));
  Reselect(true);
}

void CStats_Spatial::ClearLastSelRegion() {
  CStats_Rgn* region = regions.GetLastActive();
  if (region == nullptr) return;
  region->SetActive(false);
  Reselect(false);
}

void CStats_Spatial::RestoreLastSelRegion() {
  CStats_Rgn* region = regions.GetFirstInactive();
  if (region == nullptr) return;
  region->SetActive(true);
  Reselect(true);
}

void CStats_Spatial::ClearAllSelRegion() {
  if (regions.IsEmpty()) return;
  regions.DeactivateAll();
  Reselect(false);
}

void CStats_Spatial::Reselect(bool incremental) {
  extractFlags &= ~static_cast<unsigned>(kIncremental);
  if (incremental) extractFlags |= kIncremental;
  if (!IsItem(0)) return;
  ClearFlags(0, kExtraction);
  Calculate(kExtraction, nullptr);
}

// Surface fit.

bool CStats_Spatial::FitSurface(int item, CProgressSink* progress) {
  CStats_Data* data = GetItemData(item);
  CStats_Univariate made[3];
  CStats_Univariate** statistics[3] = {&xStatistics_, &yStatistics_, &valueStatistics_};
  const int dims[3] = {dims_[0], dims_[1], GetItemDim(item)};
  if (!HasDims(data, dims, 3)) return false;
  bool good = true;
  bool isMade[3] = {};
  for (int i = 0; i < 3; ++i) {
    if (*statistics[i] != nullptr) continue;
    isMade[i] = true;
    *statistics[i] = &made[i];
    made[i].Add(data, dims[i]);
    good = made[i].Calculate(1, progress) && good;
  }
  good = good && CalcSurfaceFit(data, GetItemDim(item), progress);
  for (int i = 0; i < 3; ++i) {
    if (isMade[i]) *statistics[i] = nullptr;
  }
  return good;
}

// Stations without a finite co-ordinate have no part in it.
bool CStats_Spatial::CalcSurfaceFit(CStats_Data* data, int dim, CProgressSink* progress) {
  constexpr int kBlock = 512;
  const int dims[3] = {dims_[0], dims_[1], dim};
  double values[3][kBlock];
  unsigned char valid[3][kBlock];
  fitA = fitB = fitC = 0;
  if (xStatistics_ == nullptr || yStatistics_ == nullptr || valueStatistics_ == nullptr) return false;
  Normalise(FindCoordinateRange(*data, dims[0], *xStatistics_), xMin, xRange);
  Normalise(FindCoordinateRange(*data, dims[1], *yStatistics_), yMin, yRange);
  Normalise({valueStatistics_->minimum, valueStatistics_->maximum}, valueMin, valueRange);

  const int total = data->GetSize();
  StationProgress reporter(progress, total);
  if (!reporter.Start("First Order Surface Fit")) return false;
  PlaneSums sums;
  for (int first = 0; first < total;) {
    const int count = reporter.Cut(first, std::min(kBlock, total - first));
    for (int i = 0; i < 3; ++i) data->ReadValues(dims[i], first, count, values[i], valid[i]);
    for (int i = 0; i < count; ++i) {
      if (valid[0][i] == 0 || valid[1][i] == 0 || valid[2][i] == 0) continue;
      if (!std::isfinite(values[0][i]) || !std::isfinite(values[1][i])) continue;
      sums.Add((values[0][i] - xMin) / xRange, (values[1][i] - yMin) / yRange, (values[2][i] - valueMin) / valueRange);
    }
    first += count;
    if (!reporter.Report(first - 1)) return false;
  }
  sums.Solve(fitA, fitB, fitC);
  return true;
}

}  // namespace tallyscope
