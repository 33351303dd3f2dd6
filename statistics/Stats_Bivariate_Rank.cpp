// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "statistics/BlockReader.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr int kBlock = 512;
constexpr int kNoRank = -1;
constexpr const char* kTask = "Rank computation";

void UnrankNulls(const std::vector<CColumnRef>& pair, std::vector<int>& xRanks, std::vector<int>& yRanks, int total) {
  const bvector marks = MarkJoint(pair, total);
  for (int station = 0; station < total; ++station) {
    if (marks.Get(station)) continue;
    xRanks[static_cast<std::size_t>(station)] = kNoRank;
    yRanks[static_cast<std::size_t>(station)] = kNoRank;
  }
}

// Sums over ranks, counted from 1. In double: the squares of ten million ranks add up past 64 bits.
struct RankSums {
  double sum = 0;
  double squares = 0;

  double Mean(int valid) const { return sum / std::max(valid, 1); }
  double Deviation(int valid) const { return valid < 2 ? 0 : std::sqrt((squares - sum * sum / valid) / (valid - 1)); }
};

// The loops below stand in functions of their own, since GCC keeps running sums in memory when it inlines them. A
// station without a rank adds a zero, which changes no running sum.

[[gnu::noinline]] void AddRanks(std::span<const int> xRanks, std::span<const int> yRanks, RankSums& xSums,
                                RankSums& ySums) {
  RankSums x = xSums;
  RankSums y = ySums;
  for (std::size_t i = 0; i < xRanks.size(); ++i) {
    const double xRank = xRanks[i] + 1;
    const double yRank = yRanks[i] + 1;
    x.sum += xRank;
    y.sum += yRank;
    x.squares += xRank * xRank;
    y.squares += yRank * yRank;
  }
  xSums = x;
  ySums = y;
}

[[gnu::noinline]] double AddProducts(double products, std::span<const int> xRanks, std::span<const int> yRanks,
                                     double xMean, double yMean) {
  for (std::size_t i = 0; i < xRanks.size(); ++i) {
    const double product = (xRanks[i] + 1 - xMean) * (yRanks[i] + 1 - yMean);
    products += xRanks[i] == kNoRank ? 0 : product;
  }
  return products;
}

// visit(ranks of X, ranks of Y) for the stations of one block after the other. False when the sink cancels.
template <class Visit>
bool VisitRanks(const std::vector<int>& xRanks, const std::vector<int>& yRanks, int total, StationProgress& reports,
                Visit visit) {
  for (int first = 0; first < total; first += kBlock) {
    const int count = std::min(kBlock, total - first);
    const auto run = [=](const std::vector<int>& ranks) {
      return std::span(ranks.begin() + first, ranks.begin() + first + count);
    };
    visit(run(xRanks), run(yRanks));
    if (!reports.ReportRun(first, count)) return false;
  }
  return true;
}

}  // namespace

bool CStats_Bivariate::CalcRank(CProgressSink* progress) {
  StationProgress reports(progress, total);
  reports.SetStretch(0.0, 33.3);
  if (!reports.Start(kTask) || !SortBoth(kTask, progress)) return false;
  std::vector<int> xRanks;
  std::vector<int> yRanks;
  GetItemData(0)->GetRanks(GetItemDim(0), xRanks);
  GetItemData(1)->GetRanks(GetItemDim(1), yRanks);
  if (std::min(xRanks.size(), yRanks.size()) < static_cast<std::size_t>(total)) return false;
  if (valid < total) UnrankNulls({GetColumn(0), GetColumn(1)}, xRanks, yRanks, total);
  if (!reports.ReportRun(0, total)) return false;

  RankSums x;
  RankSums y;
  reports.SetStretch(33.3, 33.3);
  const auto addRanks = [&](std::span<const int> xBlock, std::span<const int> yBlock) {
    AddRanks(xBlock, yBlock, x, y);
  };
  if (!VisitRanks(xRanks, yRanks, total, reports, addRanks)) return false;

  const double xCentre = x.Mean(valid);
  const double yCentre = y.Mean(valid);
  double products = 0;
  reports.SetStretch(66.6, 33.3);
  const auto addProducts = [&](std::span<const int> xBlock, std::span<const int> yBlock) {
    products = AddProducts(products, xBlock, yBlock, xCentre, yCentre);
  };
  if (!VisitRanks(xRanks, yRanks, total, reports, addProducts)) return false;

  const double xDeviation = x.Deviation(valid);
  const double yDeviation = y.Deviation(valid);
  const double deviations = xDeviation == 0 || yDeviation == 0 ? 1 : xDeviation * yDeviation;
  rankCorrelation = products / std::max(valid, 1) / deviations;
  return true;
}

}  // namespace tallyscope
