// SPDX-License-Identifier: MIT
#pragma once

#include "statistics/Stats_Data.h"

namespace tallyscope {

class CStats_Histogram;

// The bins of a histogram as a table: a station per bin, fields Bin (from 1), BinMin, BinCentre, BinMax, DataMin,
// DataCentre, DataMax, Count, Cumulative. It shows the bins as they are at each read, so a sort table or a search of it
// is stale after the histogram has been computed again. The three data fields of an empty bin are null; a checked read
// of a null stores -1e32.
class CStats_HistData : public CStats_Data {
 public:
  CStats_Histogram* histogram = nullptr;  // not owned

  int GetSize() override;
  int GetValueSize() override { return 9; }
  CString GetValueName(int field) override;
  bool GetValue(int field, int station, double& value) override;
  double GetValue(int field, int station) override;
  bool IsValueValid(int field, int station) override;
};

}  // namespace tallyscope
