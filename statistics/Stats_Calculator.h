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

  virtual void Add(CStats_Data* data, int dim);
  virtual void Remove(int item);
  virtual void Clear();
  virtual bool IsItem(int item);               // in range, with a data set
  virtual CStats_Data* GetItemData(int item);  // no range check, as below
  virtual int GetItemDim(int item);
  virtual int GetItemCount();

  // Computes the items in order, never stopping early. True when every item has all bits of `flags`, and with no items.
  virtual bool Calculate(int flags, CProgressSink* progress);
  virtual bool CalculateItem(int item, int flags, CProgressSink* progress);

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
