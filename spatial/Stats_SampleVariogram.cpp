// SPDX-License-Identifier: MIT
#include "spatial/Stats_SampleVariogram.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <utility>
#include <vector>

#include "spatial/CancelMemory.h"
#include "spatial/CoordinateRange.h"
#include "spatial/PairProgress.h"
#include "spatial/Rollback.h"
#include "spatial/StationIndex.h"
#include "spatial/StationQuery.h"
#include "spatial/Stats_VariogramData.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"
#include "statistics/Stats_vdData.h"

namespace tallyscope {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kLagGrid = 4;
constexpr int kBasicFigures = 1;
constexpr int kQuantiles = 16;
constexpr double kNoRange = 1000.0;

// Diameter of the circle or sphere that is a point's share of the leaf's box.
double GetSpacing(const Box& box, std::size_t points, int dimensions) {
  double volume = 1;
  for (int axis = 0; axis < dimensions; ++axis) {
    const auto a = static_cast<std::size_t>(axis);
    const double extent = std::fabs(box.max[a] - box.min[a]);
    volume *= extent > 0 ? extent : 1.0;
  }
  volume /= static_cast<double>(points);
  if (!(volume > 0)) return 0;
  return dimensions == 3 ? 2 * std::pow(0.75 * volume / kPi, 0.3333333333) : 2 * std::pow(volume / kPi, 0.5);
}

double GetDistance(const PointIndex& index, const PointIndex::Node& leaf, std::size_t i, std::size_t j) {
  double squares = 0;
  for (int axis = 0; axis < index.axes; ++axis) {
    const double* places = index.GetLeafCoordinates(leaf, axis);
    squares += (places[j] - places[i]) * (places[j] - places[i]);
  }
  return std::sqrt(squares);
}

StationQuery::Leaves ListLeaves(const StationIndex& index) {
  if (!index) return {};
  StationQuery query(*index.points);
  query.SearchAll();
  return query.GetLeaves();
}

double GetSpreadRange(CStats_Data* data) {
  if (data->GetSpatialSize() < 1) return kNoRange;
  CStats_Univariate x;
  x.Add(data, -1);
  x.Calculate(kBasicFigures, nullptr);
  const CoordinateRange range = FindCoordinateRange(*data, -1, x);
  return x.valid < 2 ? kNoRange : (range.high - range.low) * 0.25;
}

// To the nearest multiple of a power of ten that leaves one or two digits.
double RoundRange(double range) {
  if (!(range > 0) || !std::isfinite(range)) range = kNoRange;
  double exponent = std::trunc(std::log10(range / 5));
  if (exponent < 0) exponent -= 1;
  const double unit = std::pow(10.0, exponent);
  double rounded = std::trunc(range / unit) * unit;
  if (range - rounded > 0.5 * unit) rounded += unit;
  return std::isfinite(rounded) ? rounded : range;
}

// How much of each of the bins that divide [0, whole] lies within the tolerance of an angle, or of the same angle a
// turn off. Where two of these windows meet a bin the later one counts.
std::vector<double> GetWeights(std::size_t bins, double whole, double angle, double tolerance) {
  std::vector<double> weights(bins, 0.0);
  const double step = whole / static_cast<double>(bins);
  for (std::size_t bin = 0; bin < bins; ++bin) {
    for (const double turn : {angle - 2 * kPi, angle, angle + 2 * kPi}) {
      const double low = std::max(static_cast<double>(bin) * step, turn - tolerance);
      const double high = std::min(static_cast<double>(bin + 1) * step, turn + tolerance);
      if (high > low) weights[bin] = (high - low) / step;
    }
  }
  return weights;
}

}  // namespace

bool CStats_SampleVariogram::CalcVariogram(int item, double newRange, int newLimit, CProgressSink* progress) {
  if (!IsItem(item)) return false;
  CStats_Data* data = GetItemData(item);
  CCancelMemory memory(progress);
  LagSettings settings;
  settings.flags = kPolar | kUseSearch;
  if (newLimit >= 1) settings.flags |= kSample;
  for (int axis = 0; axis < data->GetSpatialSize() && axis < 3; ++axis) settings.flags |= kLagX << axis;
  settings.range.fill(newRange > 0 ? newRange : GetDefaultRange(*data, memory.GetSink()));
  settings.count = GetSpatialDimCount() == 3 ? std::array{25, 36, 18} : std::array{50, 72, 36};
  settings.sampleLimit = newLimit;
  if (memory.IsCancelled()) return false;

  // The grid that stands keeps its flag and its settings unless another one takes its place.
  const LagSettings former = GetLagSettings();
  const int formerFlags = GetFlags(item);
  CRollback rollback([&] {
    SetLagSettings(former);
    SetFlags(item, formerFlags & kLagGrid);
  });
  ClearFlags(item, kLagGrid);
  SetLagSettings(settings);
  if (!CalculateItem(item, kLagGrid, memory.GetSink())) return false;
  rollback.Keep();
  return true;
}

double CStats_SampleVariogram::GetDefaultRange(CStats_Data& data, CProgressSink* progress) {
  const StationIndex index = PrepareStationIndex(data, GetSpatialDims(), GetSpatialDimCount(), progress);
  std::vector<double> spacings;
  for (const auto* leaf : ListLeaves(index)) {
    if (leaf->points.size() < 2) continue;
    const double spacing = GetSpacing(leaf->box, leaf->points.size(), index.points->axes);
    if (spacing > 0) spacings.push_back(spacing);
  }
  if (spacings.empty()) return RoundRange(GetSpreadRange(&data));
  CStats_vdData table(&spacings);
  CStats_Univariate figures;
  figures.Add(&table, 0);
  figures.Calculate(kBasicFigures | kQuantiles, nullptr);
  return RoundRange((figures.standardDeviation + figures.median) * 10.0);
}

bool CStats_SampleVariogram::CalcErrorVariance(int item, double limit, CProgressSink* progress) {
  if (!IsItem(item)) return false;
  CStats_Data* data = GetItemData(item);
  const int dim = GetItemDim(item);
  const StationIndex index = PrepareStationIndex(*data, GetSpatialDims(), GetSpatialDimCount(), progress);
  CStats_Univariate figures;
  figures.Add(data, dim);
  if (!index || !figures.Calculate(kBasicFigures, progress)) return false;

  const StationQuery::Leaves leaves = ListLeaves(index);
  PairProgress reporter(progress);
  if (!reporter.Start("Error variance computation")) return false;
  std::int64_t pairs = 0;
  double covariance = 0;
  double moment = 0;
  int step = 0;
  for (const auto* leaf : leaves) {
    const std::size_t count = leaf->points.size();
    std::vector<double> values(count);
    std::vector<unsigned char> valid(count);
    data->ReadValuesAt(dim, leaf->points.data(), static_cast<int>(count), values.data(), valid.data());
    for (std::size_t i = 0; i < count; ++i) {
      for (std::size_t j = i + 1; j < count && valid[i] != 0; ++j) {
        if (valid[j] == 0 || !(GetDistance(*index.points, *leaf, i, j) < limit)) continue;
        ++pairs;
        moment += (values[i] - values[j]) * (values[i] - values[j]);
        covariance += (values[i] - figures.mean) * (values[j] - figures.mean);
      }
      if (!reporter.Work(static_cast<std::int64_t>(count - i))) return false;
    }
    if (!reporter.Report(step++, static_cast<std::int64_t>(leaves.size()))) return false;
  }
  errorPairs = pairs;
  errorPairCount = Saturate(pairs);
  errorCovariance = pairs > 0 ? covariance / static_cast<double>(pairs) : 0;
  errorMoment = pairs > 0 ? moment / (2.0 * static_cast<double>(pairs)) : 0;
  return true;
}

bool CStats_SampleVariogram::GetVariogramData(CStats_VariogramData& data) {
  return Hand(GetCurve(), data);
}

bool CStats_SampleVariogram::GetVariogramData(CStats_VariogramData& data, double direction, double dip,
                                              double tolerance) {
  return Hand(GetCurve(direction, dip, tolerance), data);
}

bool CStats_SampleVariogram::Hand(VariogramCurve curve, CStats_VariogramData& data) const {
  if (!grid.IsPolar()) return false;
  data.pairCount.resize(curve.pairCount.size());
  std::transform(curve.pairCount.begin(), curve.pairCount.end(), data.pairCount.begin(), Saturate);
  data.lag = std::move(curve.lag);
  data.covariance = std::move(curve.covariance);
  data.momentOfInertia = std::move(curve.momentOfInertia);
  return true;
}

VariogramCurve CStats_SampleVariogram::GetCurve() const {
  return ReadCurve([](std::size_t levels, std::size_t rows) {
    return Weights{std::vector<double>(levels, 1.0), std::vector<double>(rows, 1.0)};
  });
}

VariogramCurve CStats_SampleVariogram::GetCurve(double direction, double dip, double tolerance) const {
  const double spread = tolerance * kPi / 180;
  return ReadCurve([&](std::size_t levels, std::size_t rows) {
    std::vector<double> ofLevels(levels, 0.0);
    if (grid.GetSettings().dimCount >= 3) {
      ofLevels = GetWeights(levels, kPi, (90 - dip) * kPi / 180, spread);
    } else if (levels > 0) {
      ofLevels[0] = 1.0;
    }
    return Weights{std::move(ofLevels), GetWeights(rows, 2 * kPi, (90 - direction) * kPi / 180, spread)};
  });
}

template <class GetWeights>
VariogramCurve CStats_SampleVariogram::ReadCurve(const GetWeights& getWeights) const {
  VariogramCurve curve;
  if (!grid.IsPolar()) return curve;
  const std::size_t rows = grid.GetRowCount();
  const std::size_t lags = grid.GetColumnCount();
  const Weights weights = getWeights(grid.size(), rows);
  struct Sum {
    double weight = 0, covariance = 0, moment = 0;
  };
  std::vector<Sum> sums(lags);
  for (std::size_t level = 0; level < grid.size(); ++level) {
    for (std::size_t row = 0; row < rows && weights.levels[level] > 0; ++row) {
      if (!(weights.rows[row] > 0)) continue;
      for (std::size_t lag = 0; lag < lags; ++lag) {
        const LagCell& cell = grid[level][row][lag];
        const double weight = static_cast<double>(cell.pairs) * weights.rows[row] * weights.levels[level];
        sums[lag].weight += weight;
        sums[lag].covariance += cell.covariance * weight;
        sums[lag].moment += cell.moment * weight;
      }
    }
  }
  const double lagWidth = grid.GetSettings().range[0] / static_cast<double>(lags);
  for (std::size_t lag = 0; lag < lags; ++lag) {
    const Sum& sum = sums[lag];
    if (!(sum.weight > 0)) continue;
    curve.pairCount.push_back(static_cast<std::int64_t>(sum.weight));
    curve.lag.push_back((static_cast<double>(lag) + 0.5) * lagWidth);
    curve.covariance.push_back(sum.covariance / sum.weight);
    curve.momentOfInertia.push_back(sum.moment / sum.weight);
  }
  return curve;
}

}  // namespace tallyscope
