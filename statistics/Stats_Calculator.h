// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace tallyscope {

class CArchive;
class CProgressSink;
class CStats_Data;

// The frame of every computation: a list of items (a data set and a dim), each with bits that say what has been
// computed for it. Add the items, set what the class wants beside them, Calculate, read the public figures.
//   CStats_Univariate zinc;
//   zinc.Add(&table, 3);
//   zinc.Calculate(11, nullptr);   // zinc.mean, zinc.skewness, zinc.median ...
// Calculate does only what isn't done yet. Nothing notices a change of the data: a changed table wants a new
// calculator. The figures are shared by all items; with several, those of the last one computed stand. Data sets are
// not owned.
class CStats_Calculator {
 public:
  virtual ~CStats_Calculator() = default;

  virtual void Add(CStats_Data* data, int dim);  // an item that nothing has been computed for
  virtual void Remove(int item);                 // nothing for an item that isn't there
  virtual void Clear();                          // of the items; figures stay as they are
  virtual bool IsItem(int item);                 // in range, with a data set
  virtual CStats_Data* GetItemData(int item);    // REQUIRES: an item in range, here and below; may be null
  virtual int GetItemDim(int item);
  virtual int GetItemCount();

  // Computes the items in order, never stopping early. True when every item has all bits of `flags`, and with no items.
  // The sink, which may be null, hears of tasks and of whole percents of stations; a cancel ends the item at hand,
  // whose bits stay clear. Figures may then be partial, unless the class says that they stand.
  virtual bool Calculate(int flags, CProgressSink* progress);
  virtual bool CalculateItem(int item, int flags, CProgressSink* progress);

  // What has been computed for an item. Clearing bits asks for the work again; setting them claims it done.
  virtual void ClearFlags(int item, int mask);
  virtual void ResetFlags(int item);
  virtual void SetFlags(int item, int mask);
  virtual int GetFlags(int item);

  // Stores or restores the flags of the items, not their data sets, dims or figures. A count of flags below 0, or above
  // what the archive still holds, fails it.
  virtual void Serialize(CArchive& archive);

 private:
  std::vector<CStats_Data*> data_;
  std::vector<int> dims_;
  std::vector<int> flags_;
};

}  // namespace tallyscope
