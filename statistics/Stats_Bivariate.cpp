// SPDX-License-Identifier: MIT
#include "statistics/Stats_Bivariate.h"

#include <algorithm>
#include <memory>

#include "platform/core/Archive.h"
#include "statistics/BlockReader.h"
#include "statistics/RunningRange.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"
#include "statistics/WorkProgress.h"

namespace tallyscope {

namespace {

constexpr int kBasic = 1;
constexpr int kCorrelation = 2;
constexpr int kRank = 4;
constexpr int kExpectation = 8;

// Two links, of which those that the creator left null are ours for as long as this lives.
class LinkLoan {
 public:
  LinkLoan(CStats_Bivariate& owner, const CColumnRef& x, const CColumnRef& y) : owner_(owner) {
    Lend(owner.xLink, x, xOwn_);
    Lend(owner.yLink, y, yOwn_);
  }
  LinkLoan(const LinkLoan&) = delete;
  LinkLoan& operator=(const LinkLoan&) = delete;
  ~LinkLoan() {
    if (xOwn_) owner_.xLink = nullptr;
    if (yOwn_) owner_.yLink = nullptr;
  }

 private:
  static void Lend(CStats_Univariate*& link, const CColumnRef& column, std::unique_ptr<CStats_Univariate>& own) {
    if (link) return;
    own = std::make_unique<CStats_Univariate>();
    own->Add(column.data, column.dim);
    link = own.get();
  }

  CStats_Bivariate& owner_;
  std::unique_ptr<CStats_Univariate> xOwn_;
  std::unique_ptr<CStats_Univariate> yOwn_;
};

bool CountsAsZero(double deviation) {
  constexpr double kTiny = 2.220446049250313e-14;
  return -kTiny < deviation && deviation < kTiny;
}

double DivisorOrOne(double divisor) {
  return divisor == 0 ? 1 : divisor;
}

}  // namespace

bool CStats_Bivariate::HasFlags(int flags) {
  return GetItemCount() > 0 && (GetFlags(0) & flags) == flags;
}

bool CStats_Bivariate::Calculate(int flags, CProgressSink* progress) {
  if (flags & kCorrelation) flags |= kBasic;
  if (!HasFlags(flags) && IsItem(0) && IsItem(1)) CalculateMissing(flags & ~GetFlags(0), progress);
  return HasFlags(flags);
}

void CStats_Bivariate::CalculateMissing(int missing, CProgressSink* progress) {
  const int dependent = missing & (kCorrelation | kRank | kExpectation);
  if (!HasFlags(kBasic) && (missing & kBasic || dependent)) {
    if (!CalcBasic(progress)) return;
    SetFlags(0, kBasic);
  }
  if (!dependent) return;

  const LinkLoan loan(*this, GetColumn(0), GetColumn(1));
  const bool xKnown = xLink->Calculate(kBasic, progress);
  const bool yKnown = yLink->Calculate(kBasic, progress);
  if (missing & kCorrelation && xKnown && yKnown && CalcCorrelation(progress)) SetFlags(0, kCorrelation);
  if (missing & kRank && CalcRank(progress)) SetFlags(0, kRank);
  if (missing & kExpectation && CalcExpectation(progress)) SetFlags(0, kExpectation);
}

void CStats_Bivariate::Serialize(CArchive& archive) {
  std::int32_t version = 0;
  if (archive.IsStoring()) {
    archive << version;
  } else {
    archive >> version;
    if (version != 0) archive.Fail();
  }
  CStats_Calculator::Serialize(archive);
}

bool CStats_Bivariate::CalcBasic(CProgressSink* progress) {
  total = std::min(GetItemData(0)->GetSize(), GetItemData(1)->GetSize());
  StationProgress reports(progress, total);
  if (!reports.Start("Basic bivariate computation")) return false;
  valid = 0;
  invalid = 0;
  CRunningRange x;
  CRunningRange y;
  CBlockReader pairs({GetColumn(0), GetColumn(1)}, total);
  const bool done = pairs.VisitJoint(reports, [&] {
    valid += static_cast<int>(pairs.Values(0).size());
    x.Add(pairs.Values(0));
    y.Add(pairs.Values(1));
  });
  if (!done) return false;
  invalid = total - valid;
  xMinimum = x.minimum;
  xMaximum = x.maximum;
  yMinimum = y.minimum;
  yMaximum = y.maximum;
  xMean = x.sum / std::max(valid, 1);
  yMean = y.sum / std::max(valid, 1);
  return true;
}

bool CStats_Bivariate::SortBoth(const char* task, CProgressSink* progress) {
  if (!GetItemData(0)->CanSort() || !GetItemData(1)->CanSort()) return false;
  for (int item = 0; item < 2; ++item) {
    const CColumnRef column = GetColumn(item);
    CInnerTask sorting(progress);
    column.data->Sort(column.dim, 0, sorting.GetSink());
    sorting.Leave(task);
    if (!column.data->IsSorted(column.dim, 0)) return false;
  }
  return true;
}

bool CStats_Bivariate::CalcCorrelation(CProgressSink* progress) {
  StationProgress reports(progress, total);
  if (!xLink || !yLink || !reports.Start("Correlation computation")) return false;
  const double xCentre = xLink->mean;
  const double yCentre = yLink->mean;
  double products = 0;
  double differences = 0;
  CBlockReader pairs({GetColumn(0), GetColumn(1)}, total);
  const bool done = pairs.VisitJoint(reports, [&] {
    const std::span<const double> x = pairs.Values(0);
    const std::span<const double> y = pairs.Values(1);
    double p = products;
    double d = differences;
    for (std::size_t i = 0; i < x.size(); ++i) {
      p += (x[i] - xCentre) * (y[i] - yCentre);
      d += (x[i] - y[i]) * (x[i] - y[i]);
    }
    products = p;
    differences = d;
  });
  if (!done) return false;
  const double xDeviation = xLink->standardDeviation;
  const double yDeviation = yLink->standardDeviation;
  covariance = products / std::max(total - 1, 1);
  correlation = xDeviation == 0 || yDeviation == 0 ? covariance : covariance / (xDeviation * yDeviation);
  inertia = valid < 1 ? differences : differences / (2.0 * valid);
  CalcRegressions();
  return true;
}

void CStats_Bivariate::CalcRegressions() {
  const double xDeviation = xLink->standardDeviation;
  const double yDeviation = yLink->standardDeviation;
  const double xCentre = xLink->mean;
  const double yCentre = yLink->mean;
  yOnX[0] = correlation * yDeviation / DivisorOrOne(xDeviation);
  yOnX[1] = yCentre - xCentre * yOnX[0];
  xOnY[0] = xDeviation * correlation / DivisorOrOne(yDeviation);
  xOnY[1] = xCentre - yCentre * xOnY[0];
  vertical = false;
  if (CountsAsZero(yDeviation)) {
    yOnX = {0, yCentre};
    displayLine = yOnX;
  } else if (CountsAsZero(xDeviation)) {
    vertical = true;
    xOnY = {0, xCentre};
    displayLine = xOnY;
  } else if (xDeviation < yDeviation) {
    displayLine = {1 / xOnY[0], -xOnY[1] / xOnY[0]};
  } else {
    displayLine = yOnX;
  }
}

}  // namespace tallyscope
