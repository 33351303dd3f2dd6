// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <utility>
#include <vector>

#include "platform/core/String.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Tallyscope.h"

namespace tallyscope {

class CHostTable;

// How two columns of a table go together, as the program prints it.
class CBivariateReport {
 public:
  CBivariateReport(CHostTable& table, int key, int ancillary);

  void PrintText(std::ostream& out);
  // Numbers with the digits that read back to the same double; what can't be told is null.
  void PrintJson(std::ostream& out);

 private:
  static constexpr int kRank = 4;
  static constexpr int kExpectation = 8;

  bool Has(int flag) { return (pair_->GetFlags(0) & flag) != 0; }
  // Quantiles of both fields at 5, 10 ... 95 percent, each field's over all of its values. Empty when one has none.
  std::vector<std::pair<double, double>> GetQuantiles();
  void PrintFigures(std::ostream& out);
  void PrintCurves(std::ostream& out);
  void PrintQuantiles(std::ostream& out);

  CTallyscope session_;
  CStats_Bivariate* pair_;  // the session's
  CString key_;
  CString ancillary_;
};

}  // namespace tallyscope
