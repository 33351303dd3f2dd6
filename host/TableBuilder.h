// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "host/HostColumn.h"
#include "host/Labels.h"
#include "host/NullRules.h"
#include "host/ReaderOptions.h"

namespace tallyscope {

// The columns of a table while its rows are read.
//   while (more) {
//     const std::size_t row = builder.StartRow();
//     for (each column) builder.PutCell(column, row, text, line);   // or a number straight into
//     GetValues()[column][row]
//   }
//   for (column of builder.FindColumnsToReread()) ... the rows once more, with PutLabel
//   std::vector<CHostColumn> columns = builder.Finish(warnings);
// Whether a column holds numbers or texts is known at its end: it is one of texts if more of its cells are texts than
// numbers. Nulls have no say, and "<0.01" speaks for numbers. Until then a text is kept by its code, in the slot of its
// value.
class CTableBuilder {
 public:
  CTableBuilder(const std::vector<CString>& names, CNullRules rules, Censored censored);

  std::size_t GetColumnCount() const { return columns_.size(); }
  std::size_t GetRowCount() const { return rows_; }
  const CNullRules& GetRules() const { return rules_; }

  void Expect(std::size_t rows);  // room for so many. Throws bad_alloc, as StartRow does
  // A new row. All its cells have to be put.
  std::size_t StartRow() {
    if (rows_ == capacity_) Grow(capacity_ + capacity_ / 4 + 64);
    return rows_++;
  }
  double* const* GetValues() const { return values_.data(); }  // by column; until the next StartRow

  void PutEmpty(std::size_t column, std::size_t row);
  void PutCell(std::size_t column, std::size_t row, std::string_view text, long line);

  // Columns of texts that have numbers or limits among them: these are labels too, but their texts were not kept. Every
  // cell of theirs has to come again, in the order of the rows, to PutLabel.
  std::vector<std::size_t> FindColumnsToReread();
  // False, and nothing is written, for a cell that is not what came the first time, and for a row that did not come.
  bool PutLabel(std::size_t column, std::size_t row, std::string_view text);

  bool IsLatin1() const { return latin1_; }  // a text was no UTF-8
  std::vector<CHostColumn> Finish(std::vector<CString>& warnings);

 private:
  struct Building {
    CHostColumn column;
    CLabels labels;
    int texts = 0;
    bool reread = false;
    std::vector<int> newCodes{};  // while it is read again: by code - 1, in order of appearance; 0: not met yet
    int met = 0;                  // the highest of these
    CString firstText;
    long firstLine = 0;
  };
  // What a column keeps of a cell that is no text.
  struct Slot {
    double value;
    bool isValid;
    bool operator==(const Slot&) const = default;
  };

  void Grow(std::size_t rows);
  Slot MakeSlot(CellKind kind, double value) const;
  void PutText(Building& building, std::size_t row, std::string_view text, long line);
  static void PutCode(Building& building, std::size_t row, int code);
  int GetNumberCount(const Building& building) const;
  bool IsTextColumn(const Building& building) const { return building.texts > GetNumberCount(building); }
  void FinishTexts(Building& building, bool isText);
  static std::vector<CString> TakeLabels(Building& building);
  void WarnOfBadCells(const Building& building, std::vector<CString>& warnings) const;

  CNullRules rules_;
  Censored censored_;
  std::vector<Building> columns_;
  std::vector<double*> values_;
  std::size_t rows_ = 0;
  std::size_t capacity_ = 0;
  bool latin1_ = false;
};

}  // namespace tallyscope
