// SPDX-License-Identifier: MIT
#include "host/TableBuilder.h"

#include <bit>
#include <cstdint>
#include <utility>

#include "host/Sentences.h"
#include "host/TextEncoding.h"

namespace tallyscope {

namespace {

// A text's code in the slot of a value: a NaN, which no number of a file is.
constexpr std::uint64_t kCodeTag = 0x7FFC'0000'0000'0000;

double BoxCode(int code) {
  return std::bit_cast<double>(kCodeTag | static_cast<std::uint32_t>(code));
}

int UnboxCode(double value) {  // 0 for a value that is no code
  const auto bits = std::bit_cast<std::uint64_t>(value);
  return bits >> 32 == kCodeTag >> 32 ? static_cast<int>(bits & 0xFFFF'FFFF) : 0;
}

}  // namespace

CTableBuilder::CTableBuilder(const std::vector<CString>& names, CNullRules rules, Censored censored)
    : rules_(std::move(rules)), censored_(censored), columns_(names.size()), values_(names.size()) {
  for (std::size_t i = 0; i < names.size(); ++i) columns_[i].column.name = names[i];
}

void CTableBuilder::Expect(std::size_t rows) {
  if (rows > capacity_) Grow(rows);
}

void CTableBuilder::Grow(std::size_t rows) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    columns_[i].column.Reserve(rows);
    values_[i] = columns_[i].column.GetValues();
  }
  capacity_ = rows;
}

void CTableBuilder::PutEmpty(std::size_t column, std::size_t row) {
  columns_[column].column.SetNull(row, kEmptyCell);
  ++columns_[column].column.counts.nulls;
}

void CTableBuilder::PutCell(std::size_t column, std::size_t row, std::string_view text, long line) {
  auto& building = columns_[column];
  double value = 0;
  const CellKind kind = rules_.Classify(text, value);
  switch (kind) {
    case CellKind::kNumber:
      building.column.GetValues()[row] = value;
      return;
    case CellKind::kText:
      PutText(building, row, text, line);
      return;
    case CellKind::kBelowDetection:
    case CellKind::kAboveDetection:
      PutLimit(building, row, kind, value);
      return;
    case CellKind::kDeclaredNull:
      ++building.column.counts.declaredNulls;
      [[fallthrough]];
    case CellKind::kEmpty:
      building.column.SetNull(row, value);
      ++building.column.counts.nulls;
  }
}

void CTableBuilder::PutLimit(Building& building, std::size_t row, CellKind kind, double limit) {
  const bool below = kind == CellKind::kBelowDetection;
  ++(below ? building.column.counts.belowDetection : building.column.counts.aboveDetection);
  const bool half = below && censored_ == Censored::kHalf;
  building.column.GetValues()[row] = half ? limit / 2 : limit;
  if (censored_ == Censored::kNull) building.column.SetValid(row, false);
}

void CTableBuilder::PutText(Building& building, std::size_t row, std::string_view text, long line) {
  CString converted;
  if (!IsUtf8(text)) {
    latin1_ = true;
    text = converted = Latin1ToUtf8(text);
  }
  if (building.texts == 0) {
    building.firstText = text;
    building.firstLine = line;
  }
  ++building.texts;
  building.column.SetNull(row, BoxCode(building.labels.GetCode(text)));
}

int CTableBuilder::GetNumberCount(const Building& building) const {
  return static_cast<int>(rows_) - building.column.counts.nulls - building.texts;
}

std::vector<std::size_t> CTableBuilder::FindColumnsToReread() {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    auto& building = columns_[i];
    if (!IsTextColumn(building) || GetNumberCount(building) == 0) continue;
    found.push_back(i);
    building.reread = true;
    building.labels.Clear();
    building.column.counts = {};
  }
  return found;
}

void CTableBuilder::PutLabel(std::size_t column, std::size_t row, std::string_view text) {
  auto& building = columns_[column];
  double value = 0;
  if (rules_.IsNullText(text)) {
    building.column.counts.declaredNulls += rules_.Classify(text, value) == CellKind::kDeclaredNull ? 1 : 0;
    building.column.SetNull(row, value);
    ++building.column.counts.nulls;
    return;
  }
  CString converted;
  if (!IsUtf8(text)) text = converted = Latin1ToUtf8(text);
  building.column.GetValues()[row] = building.labels.GetCode(text);
  building.column.SetValid(row, true);
}

void CTableBuilder::FinishTexts(Building& building, bool isText) {
  double* values = building.column.GetValues();
  for (std::size_t row = 0; row < rows_; ++row) {
    const int code = UnboxCode(values[row]);
    if (code == 0) continue;
    values[row] = isText ? code : kEmptyCell;
    if (isText) building.column.SetValid(row, true);
  }
}

void CTableBuilder::WarnOfBadCells(const Building& building, std::vector<CString>& warnings) const {
  const int count = building.column.counts.badCells;
  warnings.push_back("Column " + building.column.name + ": " +
                     Counted(count, "cell is no number", "cells are no numbers") + (count == 1 ? ", " : ", first ") +
                     Quoted(building.firstText) + " at line " + std::to_string(building.firstLine) + "; read as " +
                     (count == 1 ? "a null." : "nulls."));
}

std::vector<CHostColumn> CTableBuilder::Finish(std::vector<CString>& warnings) {
  std::vector<CHostColumn> finished;
  finished.reserve(columns_.size());
  for (auto& building : columns_) {
    const bool isText = building.reread || IsTextColumn(building);
    if (building.texts > 0 && !building.reread) FinishTexts(building, isText);
    if (isText) {
      building.column.labels = building.labels.TakeTexts();
    } else if (building.texts > 0) {
      building.column.counts.badCells = building.texts;
      WarnOfBadCells(building, warnings);
    }
    building.column.Finish(rows_);
    finished.push_back(std::move(building.column));
  }
  return finished;
}

}  // namespace tallyscope
