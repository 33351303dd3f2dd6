// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

class CHostTable;
class CStats_Spatial;

// A selection as the command line tells it, step by step:
//   plan.Add(SelectionStep::kWhere, "zinc in 500..", true);
//   plan.Add(SelectionStep::kRows, "1..10", false);
// Each step becomes the region that the same gesture makes in the window, in the same order.
struct SelectionStep {
  enum Kind { kWhere, kInside, kRows, kInvert } kind;
  CString text;       // "FIELD in LOW..HIGH", a polygon's file, "A" or "A..B"
  bool takes = true;  // false: takes stations out
};

class CSelectionPlan {
 public:
  // Rows may be a list with commas, which makes a step of each.
  void Add(SelectionStep::Kind kind, const CString& text, bool takes);
  bool IsEmpty() const { return steps_.empty(); }

  std::vector<CString> GetFiles() const;  // the polygons' files

  // A sentence on the first step that can't be read; empty when all can.
  CString Check() const;
  // Appends the regions to the calculator, whose item 0 is the table. A plan that starts by taking stations out starts
  // from all of them. False, and the sentence has been said, when a step doesn't fit the table.
  bool Build(CHostTable& table, const CString& file, CStats_Spatial& spatial, std::ostream& err) const;

 private:
  std::vector<SelectionStep> steps_;
};

// "LOW..HIGH" with both ends included; an end left out is infinite. False for anything else, also for a low end above
// the high one.
bool ParseRange(const CString& text, double& low, double& high);

}  // namespace tallyscope
