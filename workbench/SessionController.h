// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "statistics/Tallyscope.h"

namespace tallyscope {

class CStats_Data;
class CStats_Rgn;

// The stack of sessions that a workbench has open, and what is done to the one on top: fields repaired after another
// mode, the order of the spreadsheet's rows, stations selected by rows, a selection pushed as the new working table and
// popped. It owns the sessions and knows no window: who shows them asks again after each act.
//   SessionController sessions;
//   sessions.Push(&table, /*owns=*/false);
//   sessions.SelectRow(4, {});
//   sessions.PushSelection();   // the top session is now of one station
//   sessions.Pop();
// "Position" is a row of the spreadsheet, from 0, "station" a row of the table; they differ while it is sorted.
class SessionController {
 public:
  // Null before the first Push; all else that asks about tables and selections is for use after it.
  CTallyscope* GetTop() const { return sessions_.empty() ? nullptr : sessions_.back().get(); }
  int GetDepth() const { return static_cast<int>(sessions_.size()); }

  // Stacks a session on a table, and takes the table over when `owns`.
  void Push(CStats_Data* data, bool owns);
  // Ends the top session and brings the one below back as it was. False at the bottom, which stays.
  bool Pop();
  // Ends all of them; the lowest one's table gets its search back as it is made by default.
  void EndAll();

  // Fields. A table has `axes` dims below 0 and its fields from 0 on.
  int RepairedDim(int dim) const;  // the dim if the table has it, else 0
  // Gives a mode that has just been set the fields that it had last, as far as the table has them.
  void RepairFields();
  bool HasKeyAndAncillary() const;  // the table has both

  // Order of rows. Off, the spreadsheet is a plain table: neither sorted nor selected from.
  bool allowSelection = true;
  bool WantsSort() const;   // the spreadsheet shows the session's table, which is to be shown sorted
  bool SortStands() const;  // and the table is sorted that way now
  // WantsSort, with a sort that something else has replaced brought back first.
  bool IsSorted();
  int GetStation(int position);
  int GetPosition(int station);
  // Sorts by a column of the spreadsheet; by the one that it is sorted by already in that direction, back to the order
  // of the stations. False when the spreadsheet shows another table, or has no such column.
  bool SortBy(int column, bool ascending);

  // The selection.
  struct RowClick {
    bool extends = false;  // from the nearest selected row to this one
    bool removes = false;  // a row that is selected is taken out
  };
  // False when nothing came of it. The stations that changed are recorded in the spatial calculator until
  // ForgetChanges, which the caller owes when whoever reads them has been told.
  bool SelectRow(int position, RowClick click);
  void ForgetChanges();
  // Whether a station is selected, as far as the spreadsheet shows as many as the selection is of.
  bool IsSelected(int station) const;
  int CountSelected() const;  // of the session's table
  bool CanPushSelection() const;
  // Makes the selected stations the table of a new session on top. False, and nothing done, without a selection.
  bool PushSelection();

 private:
  std::pair<int, int> FindExtendedRange(int position);
  std::unique_ptr<CStats_Rgn> MakeRowRegion(int first, int last);

  std::vector<std::unique_ptr<CTallyscope>> sessions_;
};

}  // namespace tallyscope
