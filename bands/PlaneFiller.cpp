// SPDX-License-Identifier: MIT
#include "bands/PlaneFiller.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>

#include "bands/RelaxedSurface.h"

namespace tallyscope {

namespace {

constexpr int kLeastSize = 4;

// From small to large.
std::vector<int> PrimeFactors(int number) {
  std::vector<int> factors;
  for (int p = 2; p <= number / p; ++p) {
    for (; number % p == 0; number /= p) factors.push_back(p);
  }
  if (number > 1) factors.push_back(number);
  return factors;
}

// One plane of samples with what it is measured against.
class Plane {
 public:
  Plane(std::span<double> samples, const bvector& nulls, int columns, int rows)
      : samples_(samples), nulls_(nulls), columns_(columns), rows_(rows) {}

  int GetColumns() const { return columns_; }
  int GetRows() const { return rows_; }
  bool IsNull(int i, int j) const { return nulls_.Get(Index(i, j)); }
  bool IsEdge(int i, int j) const { return i == 0 || j == 0 || i == columns_ - 1 || j == rows_ - 1; }
  double Normalise(int i, int j) const { return (samples_[At(i, j)] - Trend(i, j)) / amplitude_; }
  void Put(int i, int j, double value) { samples_[At(i, j)] = value * amplitude_ + Trend(i, j); }

  void FitTrend();
  // Returns the root mean square about the trend in units of the amplitude that the plane takes.
  double MeasureAmplitude(bool normalise);

  template <class Visit>
  void EachValid(Visit visit) const {
    for (int j = 0; j < rows_; ++j) {
      for (int i = 0; i < columns_; ++i) {
        if (!IsNull(i, j)) visit(i, j, samples_[At(i, j)]);
      }
    }
  }

 private:
  int Index(int i, int j) const { return j * columns_ + i; }
  std::size_t At(int i, int j) const { return static_cast<std::size_t>(Index(i, j)); }
  static double Scale(int at, int size) { return size > 1 ? static_cast<double>(at) / (size - 1) : 0; }
  double Trend(int i, int j) const {
    return mean_ + uSlope_ * (Scale(i, columns_) - uMean_) + vSlope_ * (Scale(j, rows_) - vMean_);
  }

  std::span<double> samples_;
  const bvector& nulls_;
  int columns_;
  int rows_;
  double mean_ = 0, uMean_ = 0, vMean_ = 0;
  double uSlope_ = 0, vSlope_ = 0;
  double amplitude_ = 1;
};

// By least squares about the means. Samples on one line give the plane of the least slope through their own.
void Plane::FitTrend() {
  double count = 0;
  EachValid([&](int i, int j, double value) {
    ++count;
    mean_ += value;
    uMean_ += Scale(i, columns_);
    vMean_ += Scale(j, rows_);
  });
  if (count == 0) return;
  mean_ /= count;
  uMean_ /= count;
  vMean_ /= count;
  double uu = 0, uv = 0, vv = 0, uz = 0, vz = 0;
  EachValid([&](int i, int j, double value) {
    const double u = Scale(i, columns_) - uMean_;
    const double v = Scale(j, rows_) - vMean_;
    uu += u * u;
    uv += u * v;
    vv += v * v;
    uz += u * (value - mean_);
    vz += v * (value - mean_);
  });
  const double determinant = uu * vv - uv * uv;
  const double spread = uu + vv;
  if (determinant > 1e-12 * spread * spread) {
    uSlope_ = (uz * vv - vz * uv) / determinant;
    vSlope_ = (vz * uu - uz * uv) / determinant;
  } else if (spread > 0) {
    uSlope_ = uz / spread;
    vSlope_ = vz / spread;
  }
}

double Plane::MeasureAmplitude(bool normalise) {
  double squares = 0;
  double count = 0;
  EachValid([&](int i, int j, double value) {
    ++count;
    squares += (value - Trend(i, j)) * (value - Trend(i, j));
  });
  const double spread = count > 0 ? std::sqrt(squares / count) : 0;
  if (!normalise || spread == 0) return spread;
  amplitude_ = spread;
  return 1;
}

// The cells of one level, `step` samples wide: fixed at the mean of the samples and anchors in them.
RelaxedSurface MakeLevel(const Plane& plane, const PlaneFillSettings& settings, PlaneGridSize grid, int step) {
  RelaxedSurface level(grid.columns / step, grid.rows / step);
  const auto cells = static_cast<std::size_t>(level.GetColumns());
  std::vector<double> sums(cells);
  std::vector<int> counts(cells);
  for (int row = 0; row < level.GetRows(); ++row) {
    std::fill(sums.begin(), sums.end(), 0.0);
    std::fill(counts.begin(), counts.end(), 0);
    const int first = row * step;
    for (int j = first; j < std::min(first + step, plane.GetRows()); ++j) {
      for (int i = 0; i < plane.GetColumns(); ++i) {
        const bool null = plane.IsNull(i, j);
        if (null && !(settings.pinEnds && plane.IsEdge(i, j))) continue;
        const auto cell = static_cast<std::size_t>(i / step);
        sums[cell] += null ? settings.endValue : plane.Normalise(i, j);
        ++counts[cell];
      }
    }
    for (int cell = 0; cell < level.GetColumns(); ++cell) {
      const auto at = static_cast<std::size_t>(cell);
      if (counts[at] > 0) level.Fix(cell, row, sums[at] / counts[at]);
    }
  }
  return level;
}

// Cells times sweeps, when a level takes as many sweeps as the square of the cells that the one before left in one.
double EstimateWork(PlaneGridSize size) {
  int step = std::gcd(size.columns, size.rows);
  const auto cells = [&] { return 1.0 * size.columns / step * size.rows / step; };
  const auto sweeps = [](double across) { return std::min(across * across, 100.0); };
  double work = cells() * sweeps(std::max(size.columns / step, size.rows / step));
  const std::vector<int> factors = PrimeFactors(step);
  for (auto factor = factors.rbegin(); factor != factors.rend(); ++factor) {
    step /= *factor;
    work += cells() * sweeps(*factor);
  }
  return work;
}

// Products of 2, 3 and 5 from `size` to twice that.
std::vector<int> ListSizes(int size) {
  std::vector<int> sizes;
  const std::int64_t least = std::max(size, kLeastSize);
  const std::int64_t most = std::min<std::int64_t>(2 * least, std::numeric_limits<int>::max());
  for (std::int64_t two = 1; two <= most; two *= 2) {
    for (std::int64_t three = two; three <= most; three *= 3) {
      for (std::int64_t five = three; five <= most; five *= 5) {
        if (five >= least) sizes.push_back(static_cast<int>(five));
      }
    }
  }
  return sizes;
}

}  // namespace

PlaneGridSize FindPlaneGridSize(int columns, int rows) {
  PlaneGridSize best{columns, rows};
  double least = std::numeric_limits<double>::infinity();
  const std::vector<int> rowSizes = ListSizes(rows);
  for (const int width : ListSizes(columns)) {
    for (const int height : rowSizes) {
      const double work = EstimateWork({width, height});
      if (work >= least) continue;
      least = work;
      best = {width, height};
    }
  }
  return best;
}

void PlaneFiller::Fill(std::span<double> samples, const bvector& nulls, int columns, int rows) {
  Plane plane(samples, nulls, columns, rows);
  if (settings_.removeTrend) plane.FitTrend();
  const double limit = settings_.convergence * plane.MeasureAmplitude(settings_.normalise);
  const PlaneGridSize grid = settings_.enlarge ? FindPlaneGridSize(columns, rows) : PlaneGridSize{columns, rows};

  int step = std::gcd(grid.columns, grid.rows);
  std::vector<int> factors = PrimeFactors(step);
  RelaxedSurface surface = MakeLevel(plane, settings_, grid, step);
  surface.Relax(settings_.iterations, limit);
  for (; !factors.empty(); factors.pop_back()) {
    step /= factors.back();
    RelaxedSurface finer = MakeLevel(plane, settings_, grid, step);
    finer.StartFrom(surface, factors.back());
    finer.Relax(settings_.iterations, limit);
    surface = std::move(finer);
  }
  for (int j = 0; j < rows; ++j) {
    for (int i = 0; i < columns; ++i) {
      if (plane.IsNull(i, j)) plane.Put(i, j, surface.Get(i, j));
    }
  }
}

}  // namespace tallyscope
