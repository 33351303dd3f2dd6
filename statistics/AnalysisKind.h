// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "statistics/Tallyscope.h"

namespace tallyscope {

class CProgressSink;

enum class SearchedBy { kNothing, kFields, kAxes };

// One kind of analysis: what it is called, what it needs, and what it starts with. The mode box, the starts of
// analyses, the rule of views and the command line all read the one table of these; the window adds a row of its own
// for the sheet (Dlg_Tallyscope_Sheets.cpp).
struct AnalysisKind {
  CTallyscope::eAnalysisMode mode;
  const char* name;  // on the command line
  bool hasPages;     // whether the window shows it
  int title;         // text by number (platform/core/StringTable.h)
  int columns;       // without which a user isn't offered it, axes among them
  int axes;          // without which it can't be
  int fields;        // that the user chooses: the key field, and an ancillary one
  int viewFields;    // of these, those that its plots' views hang on
  void (CTallyscope::*setKey)(int dim);
  int (CTallyscope::*getKey)() const;                  // what the session remembers
  void (CTallyscope::*setByHeading)(int dim);          // by a double click in the table; null: that does nothing
  void (*compute)(CTallyscope&, CProgressSink* sink);  // the first figures, on calculators that stand; null: no start
  SearchedBy searchedBy;                               // where its plots show stations

  bool CanStart(CStats_Data& data) const;    // on fields that the table has, which may be one and the same
  bool IsPossible(CStats_Data& data) const;  // whether a user is offered it
};

// In the order in which the user meets them.
std::span<const AnalysisKind> GetAnalysisKinds();
const AnalysisKind& GetAnalysisKind(CTallyscope::eAnalysisMode mode);

}  // namespace tallyscope
