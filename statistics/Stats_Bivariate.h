// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "statistics/Dim.h"
#include "statistics/Stats_Calculator.h"

namespace tallyscope {

class CStats_Univariate;

// How two fields go together: item 0 is X, item 1 is Y.
//   CStats_Bivariate pair;
//   pair.Add(&table, 0);
//   pair.Add(&table, 3);
//   pair.xLink = session.GetUniStats(0);   // spares a pass each; both may stay null
//   pair.yLink = session.GetUniStats(3);
//   pair.Calculate(15, nullptr);
// Bits of Calculate, held on item 0:
//   1  basic figures of the pairs
//   2  covariance, correlation, inertia, regressions (and 1)
//   4  rank correlation (and 1)
//   8  conditional expectation curves (and 1)
// A pair is a station where both fields have a value; the others are skipped. Bits 4 and 8 fail when a data set is too
// large to sort. Where a cancel leaves the basic figures or a link without its own, nothing that needs them is
// computed. Items of different size are compared over their common first stations.
class CStats_Bivariate : public CStats_Calculator {
 public:
  int total = 0;    // stations: the smaller size of the two data sets
  int valid = 0;    // pairs
  int invalid = 0;  // total - valid

  // Over the pairs. Without one the start values 1e10 and -1e10 of the extremes stay.
  double xMinimum = 0;
  double yMinimum = 0;
  double xMaximum = 0;
  double yMaximum = 0;
  double xMean = 0;
  double yMean = 0;

  // The products are summed over the pairs about each field's own mean, that of all its values. The covariance divides
  // by total - 1, nulls included.
  double covariance = 0;
  double correlation = 0;        // the covariance itself where a field is constant
  double inertia = 0;            // moment of inertia about the line Y = X
  bool vertical = false;         // X is constant and Y is not: the display line is X = its second value
  std::array<double, 2> yOnX{};  // slope, intercept of Y = slope * X + intercept
  std::array<double, 2> xOnY{};  // slope, intercept of X = slope * Y + intercept
  std::array<double, 2>
      displayLine{};  // slope, intercept of the line on show; not finite where it can't be solved for Y

  // Of m pairs in perfect agreement (m - 1) / m. Ranks count nulls and do not average ties.
  double rankCorrelation = 0;

  // Curves of E[Y given X] and E[X given Y]: moving means over a thirty-second of the pairs. Empty below two pairs.
  std::vector<double> expectationX;
  std::vector<double> expectationYGivenX;
  std::vector<double> expectationXGivenY;
  std::vector<double> expectationY;

  // Statistics of the two fields, not owned. While null, Calculate makes its own for the length of the call.
  CStats_Univariate* xLink = nullptr;
  CStats_Univariate* yLink = nullptr;

  bool Calculate(int flags, CProgressSink* progress) override;
  void Serialize(CArchive& archive) override;

  // The runs behind Calculate, which sees to what they need: both items, the basic figures before the last three, both
  // links before the correlation.
  virtual bool CalcBasic(CProgressSink* progress);
  virtual bool CalcCorrelation(CProgressSink* progress);
  virtual bool CalcRank(CProgressSink* progress);
  virtual bool CalcExpectation(CProgressSink* progress);

 private:
  CColumnRef GetColumn(int item) { return {GetItemData(item), GetItemDim(item)}; }
  bool HasFlags(int flags);
  void CalculateMissing(int missing, CProgressSink* progress);
  void CalcRegressions();
  bool SortBoth(const char* task, CProgressSink* progress);
};

}  // namespace tallyscope
