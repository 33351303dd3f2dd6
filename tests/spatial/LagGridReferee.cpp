// SPDX-License-Identifier: MIT
#include "LagGridReferee.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>

#include "spatial/Stats_PointSearch.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope::testing_spatial {

namespace {

constexpr double kPi = std::numbers::pi;

double FullCircle(double dx, double dy) {
  if (std::fabs(dx) > 1e-6) {
    const double angle = std::atan(dy / dx);
    return dx < 0 ? angle + kPi : dy < 0 ? angle + 2 * kPi : angle;
  }
  if (std::fabs(dy) < 1e-6) return 0;
  return dy < 0 ? 3 * kPi / 2 : kPi / 2;
}

class Referee {
 public:
  Referee(CStats_Spatial& settings, CStats_Data& data, int field) : s_(settings), data_(data), field_(field) {
    CStats_Univariate figures;
    figures.Add(&data, field);
    figures.Calculate(1, nullptr);
    mean_ = figures.mean;
    for (std::size_t axis = 0; axis < 3; ++axis) size_[axis] = IsActive(axis) ? s_.lagCount[axis] : 1;
    grid.assign(Size(2), std::vector<std::vector<RefereeCell>>(Size(1), std::vector<RefereeCell>(Size(0))));
    if ((s_.lagFlags & 0x10) == 0) return;
    const int limit = s_.sampleLimit < 0 ? data.GetSize() : s_.sampleLimit;
    stride_ = std::max(1, data.GetSize() / std::max(1, limit));
  }

  void WalkAll() {
    for (int i = 0; i < data_.GetSize(); i += stride_) {
      for (int j = i + stride_; HasValue(i) && j < data_.GetSize(); j += stride_) {
        if (HasValue(j)) AddPair(i, j);
      }
    }
  }

  void WalkLeaves() {
    CStats_PointSearch* search = data_.GetPointSearch();
    search->SetFields(s_.GetSpatialDimX(), s_.GetSpatialDimY(), s_.GetSpatialDimZ(), s_.GetSpatialDimCount());
    if (!data_.PreparePointSearch(nullptr) || !search->IsPartitioned()) return;
    CPointSearch::Leaves leaves;
    search->CollectLeaves(leaves, false);
    for (auto* leaf : leaves) {
      Box box = leaf->box;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        box.min[axis] -= s_.lagRange[axis];
        box.max[axis] += s_.lagRange[axis];
      }
      search->SearchBox(box);
      for (std::size_t p = 0; p < leaf->points.size(); p += static_cast<std::size_t>(stride_)) {
        if (HasValue(leaf->points[p])) WalkFrom(*search, *leaf, p);
      }
      search->GetTree()->Delete(leaf);
    }
    search->SetPartitioned(false);
  }

  RefereeGrid grid;

 private:
  void WalkFrom(CStats_PointSearch& search, const CPointSearch::Node& leaf, std::size_t p) {
    std::size_t c = 0;
    for (const auto* other : search.GetLeaves()) {
      if (other == &leaf) c = p + static_cast<std::size_t>(stride_);
      for (; c < other->points.size(); c += static_cast<std::size_t>(stride_)) {
        if (HasValue(other->points[c])) AddPair(leaf.points[p], other->points[c]);
      }
      c -= other->points.size();
    }
  }

  bool IsActive(std::size_t axis) const { return (s_.lagFlags >> axis & 1) != 0; }
  std::size_t Size(std::size_t axis) const { return static_cast<std::size_t>(size_[axis]); }
  // And a place: a co-ordinate that isn't finite is none.
  bool HasValue(int station) {
    const int dims[3] = {s_.GetSpatialDimX(), s_.GetSpatialDimY(), s_.GetSpatialDimZ()};
    double value = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (IsActive(axis) && !std::isfinite(data_.GetValue(dims[axis], station))) return false;
    }
    return data_.GetValue(field_, station, value);
  }

  void AddPair(int i, int j) {
    const int dims[3] = {s_.GetSpatialDimX(), s_.GetSpatialDimY(), s_.GetSpatialDimZ()};
    double d[3] = {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (IsActive(axis)) d[axis] = data_.GetValue(dims[axis], j) - data_.GetValue(dims[axis], i);
    }
    a_ = data_.GetValue(field_, i);
    b_ = data_.GetValue(field_, j);
    if ((s_.lagFlags & 8) != 0) return AddPolar(d[0], d[1], d[2]);
    AddBox(d);
  }

  void AddPolar(double dx, double dy, double dz) {
    const double h = std::sqrt(dx * dx + dy * dy);
    const double d = IsActive(2) ? std::sqrt(dz * dz + h * h) : h;
    const double quotient = d / (s_.lagRange[0] / size_[0]);
    if (!(quotient < size_[0])) return;
    const int lag = static_cast<int>(quotient);
    const int row = std::min(size_[1] - 1, static_cast<int>(size_[1] * FullCircle(dx, dy) / (2 * kPi)));
    int opposite = row + size_[1] / 2;
    if (opposite >= size_[1]) opposite -= size_[1];
    if (!IsActive(2)) {
      Add(0, row, lag);
      return Add(0, opposite, lag);
    }
    const int half = size_[2] / 2;
    int dip = half;
    if (std::fabs(h) <= 1e-12) {
      dip = dz < 0 ? 0 : dz > 0 ? size_[2] - 1 : half;
    } else if (std::fabs(dz) > 1e-12) {
      dip = std::min(size_[2] - 1, static_cast<int>(std::atan(dz / h) * half / (kPi / 2) + half));
    }
    Add(dip, row, lag);
    Add(std::max(0, 2 * half - dip - 1), opposite, lag);
  }

  void AddBox(const double* d) {
    int there[3] = {};
    int mirror[3] = {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (!IsActive(axis)) continue;
      const int half = std::max(1, size_[axis] / 2);
      const double place = std::floor(d[axis] / (2 * s_.lagRange[axis] / size_[axis]));
      if (!(place >= -half && place < half)) return;
      there[axis] = static_cast<int>(place) + half;
      mirror[axis] = half - (static_cast<int>(place) + 1);
    }
    Add(there[2], there[1], there[0]);
    Add(mirror[2], mirror[1], mirror[0]);
  }

  void Add(int level, int row, int column) {
    if (level >= size_[2] || row < 0 || row >= size_[1] || column >= size_[0]) return;
    RefereeCell& cell =
        grid[static_cast<std::size_t>(level)][static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    const long double a = a_;
    const long double b = b_;
    ++cell.count;
    cell.covariance += (a - mean_) * (b - mean_);
    cell.moment += (a - b) * (a - b);
  }

  CStats_Spatial& s_;
  CStats_Data& data_;
  int field_;
  double mean_ = 0;
  int size_[3] = {};
  int stride_ = 1;
  double a_ = 0;
  double b_ = 0;
};

}  // namespace

RefereeGrid MakeRefereeGrid(CStats_Spatial& settings, CStats_Data& data, int field) {
  Referee referee(settings, data, field);
  if ((settings.lagFlags & 0x20) != 0) {
    referee.WalkLeaves();
  } else {
    referee.WalkAll();
  }
  for (auto& level : referee.grid) {
    for (auto& row : level) {
      for (auto& cell : row) {
        if (cell.count == 0) continue;
        cell.covariance /= cell.count;
        cell.moment /= 2 * cell.count;
      }
    }
  }
  return std::move(referee.grid);
}

std::string Compare(const LagGrid& grid, const RefereeGrid& referee, double variance) {
  std::ostringstream out;
  if (grid.size() != referee.size()) return "another number of levels";
  for (std::size_t level = 0; level < grid.size(); ++level) {
    if (grid[level].size() != referee[level].size()) return "another number of rows";
    for (std::size_t row = 0; row < grid[level].size(); ++row) {
      if (grid[level][row].size() != referee[level][row].size()) return "another number of columns";
      for (std::size_t column = 0; column < grid[level][row].size(); ++column) {
        const LagCell& is = grid[level][row][column];
        const RefereeCell& should = referee[level][row][column];
        const auto covariance = static_cast<double>(should.covariance);
        const auto moment = static_cast<double>(should.moment);
        const double scale = std::max(std::fabs(covariance), variance);
        if (is.count == should.count && std::fabs(is.moment - moment) <= 1e-12 * moment &&
            std::fabs(is.covariance - covariance) <= 1e-12 * scale) {
          continue;
        }
        out << "cell " << level << " " << row << " " << column << ": " << is.count << " pairs for " << should.count
            << ", " << is.moment << " for " << moment << ", " << is.covariance << " for " << covariance << "\n";
        if (out.tellp() > 1000) return out.str();
      }
    }
  }
  return out.str();
}

}  // namespace tallyscope::testing_spatial
