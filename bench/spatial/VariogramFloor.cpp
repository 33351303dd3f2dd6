// SPDX-License-Identifier: MIT
#include "VariogramFloor.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace tallyscope::bench_variogram {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kTile = 64;
constexpr int kStep = 16;

struct Shape {
  int lags, rows, levels;
};

Shape GetShape(int axes, bool cartesian) {
  return cartesian ? Shape{40, 40, 1} : axes == 3 ? Shape{25, 36, 18} : Shape{50, 72, 1};
}

[[gnu::always_inline]] inline float GetAngle(float x, float y) {
  const float larger = x > y ? x : y;
  const float smaller = x > y ? y : x;
  const float ratio = smaller / (larger + 1e-30f);
  const float s = ratio * ratio;
  const float angle = ratio * (0.9998660f + s * (-0.3302995f + s * (0.1801410f + s * (-0.0851330f + s * 0.0208351f))));
  return y > x ? 1.57079633f - angle : angle;
}

struct Scale {
  float perLag, lags, rows, perRow;
};

// The cell of a separation, -1 out of range.
template <int kAxes, bool kCartesian>
[[gnu::always_inline]] inline std::int32_t FindCell(float dx, float dy, float dz, const Scale& scale) {
  if constexpr (kCartesian) {
    const float lags = scale.lags;
    const float rows = scale.rows;
    const float x = dx * std::copysign(1.0f, dy) + 0.5f * lags;
    const float y = std::fabs(dy) + 0.5f * rows;
    const float row = static_cast<float>(static_cast<std::int32_t>(y));
    const auto cell = static_cast<std::int32_t>(row * lags + x);
    const float acrossX = std::fabs(x - 0.5f * lags) / lags;
    const float acrossY = std::fabs(dy) / rows;
    const float across = acrossX > acrossY ? acrossX : acrossY;
    return across < 0.5f ? cell : -1;
  } else {
    const float square = dx * dx + dy * dy;
    const float distance = std::sqrt(square + dz * dz);
    const float lag = distance < scale.lags ? distance : scale.lags;
    float angle = GetAngle(std::fabs(dx), std::fabs(dy));
    angle = dx * dy < 0 ? 3.14159265f - angle : angle;
    float row = static_cast<float>(static_cast<std::int32_t>(angle * scale.perRow));
    if constexpr (kAxes > 2) {
      const float steep = GetAngle(std::sqrt(square), std::fabs(dz)) * (9 / 1.57079633f);
      const float dip = dz * dy < 0 ? 9 - steep : 9 + steep;
      row += static_cast<float>(static_cast<std::int32_t>(dip)) * scale.rows;
    }
    const auto cell = static_cast<std::int32_t>(row * scale.lags + static_cast<float>(static_cast<std::int32_t>(lag)));
    return lag < scale.lags ? cell : -1;
  }
}

template <int kAxes, bool kCartesian>
[[gnu::always_inline]] inline void FindCells(const float* const* at, int count, const float* from, const Scale& given,
                                             std::int32_t* cells) {
  const Scale scale = given;
  for (int j = 0; j < count; ++j) {
    const float dz = kAxes > 2 ? (at[2][j] - from[2]) * scale.perLag : 0;
    cells[j] = FindCell<kAxes, kCartesian>((at[0][j] - from[0]) * scale.perLag, (at[1][j] - from[1]) * scale.perLag, dz,
                                           scale);
  }
}

struct Work {
  const float* at[3];
  const double* values;
  Scale scale;
  Floor::Sums* sums;
  std::uint32_t* pairs;
};

template <int kAxes, bool kCartesian>
[[gnu::always_inline]] inline void AddTiles(const Work& work, const Floor::Tile& a, const Floor::Tile& b) {
  std::int32_t cells[kTile + kStep];
  for (int i = a.first; i < a.first + a.count; ++i) {
    const int first = std::max(b.first, &a == &b ? i + 1 : 0);
    const int count = b.first + b.count - first;
    const float* at[3];
    float from[3];
    for (int axis = 0; axis < 3; ++axis) {
      at[axis] = work.at[axis] + first;
      from[axis] = work.at[axis][i];
    }
    FindCells<kAxes, kCartesian>(at, (count + kStep - 1) / kStep * kStep, from, work.scale, cells);
    const double value = work.values[i];
    const auto add = [&](int j) __attribute__((always_inline)) {
      Floor::Sums& sums = work.sums[cells[j]];
      const double other = work.values[first + j];
      sums.covariance += value * other;
      sums.moment += (value - other) * (value - other);
      ++work.pairs[cells[j]];
    };
    std::int32_t all = 0;
    for (int j = 0; j < count; ++j) all |= cells[j];
    if (all >= 0) {
      for (int j = 0; j < count; ++j) add(j);
      continue;
    }
    std::int32_t kept[kTile];
    int keptCount = 0;
    for (int j = 0; j < count; ++j) {
      kept[keptCount] = j;
      keptCount += static_cast<int>(cells[j] >= 0);
    }
    for (int k = 0; k < keptCount; ++k) add(kept[k]);
  }
}

#if defined(__x86_64__)
#define TALLYSCOPE_WIDE [[gnu::target("avx2")]]
#else
#define TALLYSCOPE_WIDE
#endif

template <int kAxes, bool kCartesian>
TALLYSCOPE_WIDE void AddTilesWide(const Work& work, const Floor::Tile& a, const Floor::Tile& b) {
  AddTiles<kAxes, kCartesian>(work, a, b);
}

}  // namespace

// Cuts the longest side at the median until a tile's stations are left.
static void CutTiles(const Stations& s, int axes, std::vector<int>& order, std::ptrdiff_t first, std::ptrdiff_t last,
                     std::vector<Floor::Tile>& tiles) {
  Floor::Tile tile{static_cast<int>(first), static_cast<int>(last - first), {}, {}};
  int longest = 0;
  for (int axis = 0; axis < axes; ++axis) {
    const auto [low, high] = std::minmax_element(order.begin() + first, order.begin() + last, [&](int a, int b) {
      return s.at[axis][static_cast<std::size_t>(a)] < s.at[axis][static_cast<std::size_t>(b)];
    });
    const double from = s.at[axis][static_cast<std::size_t>(*low)];
    const double to = s.at[axis][static_cast<std::size_t>(*high)];
    tile.middle[axis] = static_cast<float>((from + to) / 2);
    tile.reach[axis] = static_cast<float>((to - from) / 2);
    if (tile.reach[axis] > tile.reach[longest]) longest = axis;
  }
  if (tile.count <= kTile) {
    tiles.push_back(tile);
    return;
  }
  const std::ptrdiff_t middle = first + (last - first) / 2;
  std::nth_element(order.begin() + first, order.begin() + middle, order.begin() + last, [&](int a, int b) {
    return s.at[longest][static_cast<std::size_t>(a)] < s.at[longest][static_cast<std::size_t>(b)];
  });
  CutTiles(s, axes, order, first, middle, tiles);
  CutTiles(s, axes, order, middle, last, tiles);
}

Floor::Floor(const Stations& stations, int axes, double range, bool cartesian)
    : axes_(axes), cartesian_(cartesian), range_(range) {
  std::vector<int> order(stations.values.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
  CutTiles(stations, axes, order, 0, static_cast<std::ptrdiff_t>(order.size()), tiles_);
  for (const int station : order) {
    for (int axis = 0; axis < 3; ++axis) {
      at_[axis].push_back(static_cast<float>(stations.at[axis][static_cast<std::size_t>(station)]));
    }
    values_.push_back(stations.values[static_cast<std::size_t>(station)]);
  }
  for (auto& at : at_) at.resize(order.size() + kStep);
}

std::int64_t Floor::Run() {
  const Shape shape = GetShape(axes_, cartesian_);
  const auto cells = static_cast<std::size_t>(shape.lags * (shape.rows + 1) * (shape.levels + 1));
  std::vector<Sums> sums(cells);
  std::vector<std::uint32_t> pairs(cells);
  const auto rows = static_cast<float>(shape.rows);
  const Scale scale{static_cast<float>((cartesian_ ? shape.lags / 2 : shape.lags) / range_),
                    static_cast<float>(shape.lags), rows, rows / 6.2831853f};
  const Work work{{at_[0].data(), at_[1].data(), at_[2].data()}, values_.data(), scale, sums.data(), pairs.data()};
  const auto add = axes_ == 3 ? AddTilesWide<3, false> : cartesian_ ? AddTilesWide<2, true> : AddTilesWide<2, false>;
  const auto limit = static_cast<float>(range_);
  for (std::size_t a = 0; a < tiles_.size(); ++a) {
    for (std::size_t b = a; b < tiles_.size(); ++b) {
      float square = 0;
      float farthest = 0;
      for (int axis = 0; axis < axes_; ++axis) {
        const float gap = std::max(0.0f, std::fabs(tiles_[a].middle[axis] - tiles_[b].middle[axis]) -
                                             tiles_[a].reach[axis] - tiles_[b].reach[axis]);
        square += gap * gap;
        farthest = std::max(farthest, gap);
      }
      if (cartesian_ ? farthest <= limit : square <= limit * limit) add(work, tiles_[a], tiles_[b]);
    }
  }
  std::int64_t inRange = 0;
  for (const std::uint32_t count : pairs) inRange += count;
  return inRange;
}

std::int64_t RunPlainLoop(const Stations& stations, int axes, double range, bool cartesian) {
  const Shape shape = GetShape(axes, cartesian);
  std::vector<Floor::Sums> sums(static_cast<std::size_t>(shape.lags * (shape.rows + 1) * (shape.levels + 1)));
  std::vector<int> pairs(sums.size());
  const double width = (cartesian ? 2 * range : range) / shape.lags;
  const std::size_t count = stations.values.size();
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t j = i + 1; j < count; ++j) {
      const double dx = stations.at[0][j] - stations.at[0][i];
      const double dy = stations.at[1][j] - stations.at[1][i];
      const double dz = stations.at[2][j] - stations.at[2][i];
      int column = 0;
      int row = 0;
      if (cartesian) {
        column = static_cast<int>(std::floor(dx / width)) + shape.lags / 2;
        row = static_cast<int>(std::floor(dy / width)) + shape.rows / 2;
        if (column < 0 || column >= shape.lags || row < 0 || row >= shape.rows) continue;
      } else {
        const double h = std::sqrt(dx * dx + dy * dy);
        column = static_cast<int>((axes == 3 ? std::sqrt(dz * dz + h * h) : h) / width);
        if (column >= shape.lags) continue;
        double angle = std::atan2(dy, dx);
        if (angle < 0) angle += 2 * kPi;
        row = static_cast<int>(shape.rows * angle / (2 * kPi));
        if (axes == 3) row += shape.rows * static_cast<int>((std::atan2(dz, h) / kPi + 0.5) * shape.levels);
      }
      const auto cell = static_cast<std::size_t>(row * shape.lags + column);
      const double difference = stations.values[i] - stations.values[j];
      sums[cell].covariance += stations.values[i] * stations.values[j];
      sums[cell].moment += difference * difference;
      ++pairs[cell];
    }
  }
  std::int64_t inRange = 0;
  for (const int cell : pairs) inRange += cell;
  return inRange;
}

}  // namespace tallyscope::bench_variogram
