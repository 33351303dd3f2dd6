// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "statistics/Stats_Calculator.h"

namespace tallyscope {

// Joint ranges and means of any number of fields, over the stations where all of them have a value. One bit of
// Calculate, 1, held on item 0.
class CStats_Multivariate : public CStats_Calculator {
 public:
  int total = 0;    // stations: the smallest size among the items
  int valid = 0;    // where every item has a value
  int invalid = 0;  // total - valid

  // One per item. Without a valid station the start values 1e10 and -1e10 of the extremes stay, and the means are 0.
  std::vector<double> minima;
  std::vector<double> maxima;
  std::vector<double> means;

  // Computes nothing unless every item has a data set. False with no items.
  bool Calculate(int flags, CProgressSink* progress) override;
  void Serialize(CArchive& archive) override;

  virtual bool CalcBasic(CProgressSink* progress);
};

}  // namespace tallyscope
