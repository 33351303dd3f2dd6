// SPDX-License-Identifier: MIT
#include "spatial/LagGridFiller.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "spatial/LeafTests.h"

namespace tallyscope {

namespace {

using pair_kernel::Estimate;
using pair_kernel::Shape;

// Arctangent of 0 to 1 within 1e-5: Abramowitz and Stegun, "Handbook of Mathematical Functions" (1964), 4.4.47.
constexpr double kAtanTerms[5] = {0.9998660, -0.3302995, 0.1801410, -0.0851330, 0.0208351};

// How wrong an estimate can be. With u = 2^-24, the most that a float is off its number, and all lengths in cells:
//
// The offset of a station from its block's middle and that of the first station from there are each rounded once, and
// their difference once more. If neither is larger than `largest` the difference is off by less than e = 4.04 u
// largest; what the doubles lose before that, and the plain formula itself, is a millionth of that.
//
// Distance: the differences shift it by less than sqrt(3) e; squares, sums and root are off by a factor of less than
// 1 + 3 u. So lags are right within 1.8 e + 4 u (lags + 1).
//
// Angles: the plain formula takes a dx of up to 1e-6 units for none, which turns a direction like an error of
// t = 1e-6 units would. Directions are taken only from pairs whose horizontal distance is at least kSureDirection times
// 1.8 e + t, so these two turn them by less than 1.02e-5 radians. The polynomial adds 1e-5, and rounding in it, in its
// argument and in its factors less than 1e-6. Complements to 90, 180 and 360 degrees round the bin by 3 u bins. So bins
// are right within kAngleError of the bins of a full circle, a dip within twice that of those of a half.
//
// Cartesian bins: e, and the rounding of the sum with the half width, within 2 u (bins + 3).
constexpr double kU = 0x1p-24;
constexpr double kSureDirection = 1e5;
constexpr double kAngleError = (1.02e-5 + 1e-5 + 1e-6) / (2 * leaf_tests::kPi) + 4 * kU;

// Where squares of co-ordinates vanish or overflow the plain formula goes its own ways.
constexpr double kLeastPerUnit = 1e-140;
constexpr double kMostPerUnit = 1e140;
constexpr double kWithinCell = 0.5;  // parts of a cell on each axis: such a separation is less than one on the whole
constexpr double kSlack = 1 + 1e-6;  // far more than any rounding of a distance
constexpr float kNeverDoubtful = 2.0f;
constexpr int kMostFloatCells = 1 << 24;  // cell numbers beyond aren't exact in float

// Sums over many pairs drift off if the pairs are alike, by half a unit in the last place each at worst. A sum of this
// many is closed and added to the total of its cell.
constexpr std::uint32_t kManyPairs = 4096;
constexpr std::int64_t kLeastPairsPerLook = 1 << 12;
constexpr std::int64_t kMostPairsPerLook = 1 << 15;

float GetGuard(double error) {
  return static_cast<float>(0.5 - error - kU);
}

}  // namespace

LagGridFiller::LagGridFiller(const LagBinning& binning, pair_kernel::Level level, double scale)
    : binning_(binning), scale_(scale) {
  const auto cells = static_cast<std::size_t>(binning.GetCellCount());
  sums_.assign(cells, {});
  pairs_.assign(cells, 0);
  totals_.assign(cells, {});
  estimates_ = binning.GetCellCount() < kMostFloatCells;
  for (int axis = 0; axis < 3; ++axis) {
    const auto a = static_cast<std::size_t>(axis);
    if (!binning.IsActive(axis)) continue;
    perUnit_[a] = scale / binning.GetWidth(axis);
    const bool isSplit = binning.IsPolar() || binning.GetCount(axis) > 1;
    if (!(perUnit_[a] > kLeastPerUnit && perUnit_[a] < kMostPerUnit) || !isSplit) estimates_ = false;
  }
  if (!estimates_) perUnit_ = {};
  for (int axis = 0; axis < 3; ++axis) {
    const double limit = binning.IsPolar() ? binning.GetCount(0) : binning.IsActive(axis) ? binning.GetHalf(axis) : 1;
    limits_[static_cast<std::size_t>(axis)] = limit * scale * kSlack;
  }
  SetUpEstimate();
  const Shape polar = binning.IsActive(2) ? Shape::kSolid : Shape::kPlane;
  kernel_ = pair_kernel::GetKernel(binning.IsPolar() ? polar : Shape::kBoxes, level);
}

void LagGridFiller::SetUpEstimate() {
  Estimate& e = estimate_;
  const int rows = binning_.GetCount(1);
  const int levels = binning_.GetCount(2);
  e.columns = static_cast<float>(binning_.GetCount(0));
  e.plane = static_cast<float>(binning_.GetCount(0)) * static_cast<float>(rows);
  const bool isTurned = !binning_.IsMirrorMutual();
  e.lags = static_cast<float>(binning_.GetCount(0));
  e.azimuthGuard = kNeverDoubtful;
  if (rows > 1) {
    for (int i = 0; i < 5; ++i) e.azimuthTerms[i] = static_cast<float>(kAtanTerms[i] * rows / (2 * leaf_tests::kPi));
    e.azimuthQuarter = static_cast<float>(rows) / 4;
    e.azimuthHalf = static_cast<float>(rows) / 2;
    e.azimuthTurn = isTurned ? e.azimuthHalf : 0;
    e.azimuthGuard = GetGuard(kAngleError * rows);
  }
  e.flip = isTurned ? 0 : 0x80000000;
  e.dipGuard = kNeverDoubtful;
  if (levels > 1) {
    const int half = levels / 2;
    for (int i = 0; i < 5; ++i) e.dipTerms[i] = static_cast<float>(kAtanTerms[i] * half / (leaf_tests::kPi / 2));
    e.dipHalf = static_cast<float>(half);
    e.dipGuard = GetGuard(2 * kAngleError * levels);
  }
  for (int axis = 0; axis < 3; ++axis) {
    const auto a = static_cast<std::size_t>(axis);
    e.before[a] = binning_.IsActive(axis) ? static_cast<float>(binning_.GetHalf(axis) + 1) : 1.5f;
    e.last[a] = binning_.IsActive(axis) ? static_cast<float>(2 * binning_.GetHalf(axis)) : 1.0f;
  }
}

// For offsets that are nowhere larger. False if floats can't tell.
bool LagGridFiller::SetUpGuards(double largest) {
  Estimate& e = estimate_;
  const double error = 4.04 * kU * largest;
  if (!estimates_ || !(error < 0.1)) return false;
  if (scale_ > 1 && !(largest < kWithinCell)) return false;
  e.lagGuard = GetGuard(1.8 * error + 4 * kU * (binning_.GetCount(0) + 1));
  const bool hasDirection = binning_.GetCount(1) > 1 || binning_.GetCount(2) > 1;
  const double sure = kSureDirection * (1.8 * error + leaf_tests::kFlat * perUnit_[0]);
  e.nearSquare = hasDirection ? static_cast<float>(std::min(sure * sure * kSlack, 1e30)) : 0;
  for (int axis = 0; axis < 3; ++axis) {
    const bool isActive = binning_.IsActive(axis);
    e.guard[axis] = isActive ? GetGuard(error + 2 * kU * (binning_.GetCount(axis) + 3)) : kNeverDoubtful;
  }
  return true;
}

// Whether all pairs that are so far apart, less the reach on each axis, are out of range. What isn't a number, for a
// distance that overflows less a reach that does, may be anywhere.
bool LagGridFiller::IsOutOfReach(const Point3& distance, const Point3& reach) const {
  double square = 0;
  bool isOut = false;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double gap = std::max(0.0, distance[axis] - reach[axis]);
    square += gap * gap;
    isOut = isOut || gap > limits_[axis];
  }
  return binning_.IsPolar() ? square > limits_[0] * limits_[0] : isOut;
}

pair_kernel::Run LagGridFiller::MakeRun(const LagStations& stations, const LagStations::Block& block) {
  pair_kernel::Run run{};
  run.estimate = &estimate_;
  run.binning = &binning_;
  for (int axis = 0; axis < 3; ++axis) {
    run.offsets[axis] = stations.GetOffsets(axis) + block.first;
    run.places[axis] = stations.GetPlaces(axis) + block.first;
  }
  run.values = stations.GetValues() + block.first;
  run.count = block.count;
  run.sums = sums_.data();
  run.pairs = pairs_.data();
  return run;
}

void LagGridFiller::AddPairs(const LagStations& firsts, int firstBlock, const LagStations& seconds, int secondBlock) {
  const LagStations::Block& from = firsts.GetBlock(firstBlock);
  const LagStations::Block& to = seconds.GetBlock(secondBlock);
  if (sums_.empty()) return;
  Point3 distance;
  Point3 reach;
  double largest = 0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    distance[axis] = std::fabs((to.centre[axis] - from.centre[axis]) * perUnit_[axis]);
    reach[axis] = from.reach[axis] + to.reach[axis];
    largest = std::max(largest, distance[axis] + reach[axis]);
  }
  if (estimates_ && IsOutOfReach(distance, reach)) return;
  const bool canEstimate = SetUpGuards(largest);
  if (canEstimate) FindFroms(firsts, from, to);
  pair_kernel::Run run = MakeRun(seconds, to);
  for (int i = 0; i < from.count; ++i) {
    if (!canEstimate || !isOut_[i]) AddRun(run, firsts, from.first + i, i, canEstimate);
  }
  CountPairs(std::int64_t{from.count} * to.count);
}

void LagGridFiller::AddPairsWithin(const LagStations& stations, int block) {
  const LagStations::Block& whole = stations.GetBlock(block);
  if (sums_.empty()) return;
  const bool canEstimate = SetUpGuards(2 * std::max({whole.reach[0], whole.reach[1], whole.reach[2]}));
  if (canEstimate) FindFroms(stations, whole, whole);
  LagStations::Block rest = whole;
  for (int i = 0; i + 1 < whole.count; ++i) {
    ++rest.first;
    --rest.count;
    pair_kernel::Run run = MakeRun(stations, rest);
    AddRun(run, stations, whole.first + i, i, canEstimate);
  }
  CountPairs(std::int64_t{whole.count} * whole.count / 2);
}

// Where the stations of a block are from the middle of another one, and which of them are out of its reach.
void LagGridFiller::FindFroms(const LagStations& firsts, const LagStations::Block& from, const LagStations::Block& to) {
  double squares[LagStations::kBlock] = {};
  for (int axis = 0; axis < 3; ++axis) {
    const auto a = static_cast<std::size_t>(axis);
    const double* places = firsts.GetPlaces(axis) + from.first;
    const double centre = to.centre[a];
    const double perUnit = perUnit_[a];
    const double reach = to.reach[a];
    // A distance of an axis alone counts as the limit's: beyond it on one axis is beyond it.
    const double scale = binning_.IsPolar() ? 1 : limits_[0] / limits_[a];
    for (int i = 0; i < from.count; ++i) {
      const double offset = (places[i] - centre) * perUnit;
      const double least = std::fabs(offset) - reach;
      const double gap = (least > 0 ? least : 0) * scale;
      froms_[axis][i] = static_cast<float>(offset);
      squares[i] = binning_.IsPolar() ? squares[i] + gap * gap : std::max(squares[i], gap * gap);
    }
  }
  const double limit = limits_[0] * limits_[0];
  for (int i = 0; i < from.count; ++i) isOut_[i] = squares[i] > limit * kSlack;
}

inline void LagGridFiller::AddRun(pair_kernel::Run& run, const LagStations& firsts, int station, int entry,
                                  bool canEstimate) {
  for (int axis = 0; axis < 3; ++axis) {
    run.place[axis] = firsts.GetPlaces(axis)[station];
    run.from[axis] = froms_[axis][entry];
  }
  run.value = firsts.GetValues()[station];
  if (canEstimate) {
    kernel_(run);
  } else {
    AddRunPlainly(run);
  }
}

void LagGridFiller::AddRunPlainly(const pair_kernel::Run& run) {
  for (int j = 0; j < run.count; ++j) {
    const int cell = binning_.GetCell(run.places[0][j] - run.place[0], run.places[1][j] - run.place[1],
                                      run.places[2][j] - run.place[2]);
    if (cell < 0) continue;
    const auto c = static_cast<std::size_t>(cell);
    const double difference = run.values[j].raw - run.value.raw;
    sums_[c].covariance += run.values[j].centred * run.value.centred;
    sums_[c].moment += difference * difference;
    ++pairs_[c];
  }
}

// Looks at the sums when the fullest of them could hold many pairs, if pairs go on as they have since the last close.
void LagGridFiller::CountPairs(std::int64_t pairs) {
  unflushed_ += pairs;
  if (unflushed_ < lookAt_) return;
  std::uint32_t most = 1;  // or up to twice as many
  for (const std::uint32_t count : pairs_) most |= count;
  const std::int64_t many = kManyPairs * unflushed_ / most;
  const std::int64_t longest = std::max(kMostPairsPerLook, static_cast<std::int64_t>(pairs_.size()) * 8);
  if (most >= kManyPairs) Flush();
  lookAt_ = unflushed_ + std::clamp(many - unflushed_, kLeastPairsPerLook, longest);
}

void LagGridFiller::Flush() {
  for (std::size_t cell = 0; cell < sums_.size(); ++cell) {
    if (pairs_[cell] == 0) continue;
    totals_[cell].pairs += pairs_[cell];
    totals_[cell].covariance += sums_[cell].covariance;
    totals_[cell].moment += sums_[cell].moment;
    sums_[cell] = {};
    pairs_[cell] = 0;
  }
  unflushed_ = 0;
}

LagGrid::Cells LagGridFiller::Finish() {
  Flush();
  const auto size = [this](int axis) { return static_cast<std::size_t>(binning_.GetCount(axis)); };
  std::vector<Total> both = totals_;
  for (std::size_t cell = 0; cell < totals_.size(); ++cell) {
    const int mirror = binning_.GetMirror(static_cast<int>(cell));
    if (totals_[cell].pairs == 0 || mirror < 0) continue;
    Total& other = both[static_cast<std::size_t>(mirror)];
    other.pairs += totals_[cell].pairs;
    other.covariance += totals_[cell].covariance;
    other.moment += totals_[cell].moment;
  }
  LagGrid::Cells cells(size(2), LagGrid::Level(size(1), LagGrid::Row(size(0))));
  std::size_t cell = 0;
  for (auto& level : cells) {
    for (auto& row : level) {
      for (LagCell& out : row) {
        const Total& total = both[cell++];
        if (total.pairs == 0) continue;
        const auto pairs = static_cast<double>(total.pairs);
        out.pairs = total.pairs;
        out.count = Saturate(total.pairs);
        out.covariance = total.covariance / pairs;
        out.moment = total.moment / (2 * pairs);
      }
    }
  }
  return cells;
}

}  // namespace tallyscope
