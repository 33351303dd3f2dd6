// SPDX-License-Identifier: MIT
#include "host/TableBuilder.h"

#include <algorithm>
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

// A null keeps a value of its own, as a limit does that is one.
CTableBuilder::Slot CTableBuilder::MakeSlot(CellKind kind, double value) const {
  switch (kind) {
    case CellKind::kNumber:
      return {value, true};
    case CellKind::kBelowDetection:
      return {censored_ == Censored::kHalf ? value / 2 : value, censored_ != Censored::kNull};
    case CellKind::kAboveDetection:
      return {value, censored_ != Censored::kNull};
    default:
      return {value, false};
  }
}

void CTableBuilder::PutCell(std::size_t column, std::size_t row, std::string_view text, long line) {
  auto& building = columns_[column];
  double value = 0;
  const CellKind kind = rules_.Classify(text, value);
  if (kind == CellKind::kText) return PutText(building, row, text, line);
  const Slot slot = MakeSlot(kind, value);
  building.column.GetValues()[row] = slot.value;
  if (!slot.isValid) building.column.SetValid(row, false);
  auto& counts = building.column.counts;
  counts.belowDetection += kind == CellKind::kBelowDetection ? 1 : 0;
  counts.aboveDetection += kind == CellKind::kAboveDetection ? 1 : 0;
  counts.declaredNulls += kind == CellKind::kDeclaredNull ? 1 : 0;
  counts.nulls += kind == CellKind::kDeclaredNull || kind == CellKind::kEmpty ? 1 : 0;
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
    building.column.counts = {};
  }
  return found;
}

bool CTableBuilder::PutLabel(std::size_t column, std::size_t row, std::string_view text) {
  if (row >= rows_) return false;
  auto& building = columns_[column];
  const Slot was{building.column.GetValues()[row], building.column.IsValid(row)};
  const int code = UnboxCode(was.value);
  double value = 0;
  const CellKind kind = rules_.Classify(text, value);
  if ((kind == CellKind::kText) != (code > 0)) return false;
  if (kind == CellKind::kText) {
    CString converted;
    if (!IsUtf8(text)) text = converted = Latin1ToUtf8(text);
    if (building.labels.GetText(code) != text) return false;
    PutCode(building, row, code);
    return true;
  }
  if (was != MakeSlot(kind, value)) return false;
  const bool isNull = kind == CellKind::kDeclaredNull || kind == CellKind::kEmpty;
  building.column.counts.declaredNulls += kind == CellKind::kDeclaredNull ? 1 : 0;
  building.column.counts.nulls += isNull ? 1 : 0;
  if (!isNull) PutCode(building, row, building.labels.GetCode(text));
  return true;
}

// A label has the code that fits its place among those met in this pass.
void CTableBuilder::PutCode(Building& building, std::size_t row, int code) {
  const auto label = static_cast<std::size_t>(code) - 1;
  if (label >= building.newCodes.size()) building.newCodes.resize(std::max(label + 1, label + label / 2));
  int& newCode = building.newCodes[label];
  if (newCode == 0) newCode = ++building.met;
  building.column.GetValues()[row] = newCode;
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

// In the order of their codes.
std::vector<CString> CTableBuilder::TakeLabels(Building& building) {
  auto texts = building.labels.TakeTexts();
  if (!building.reread) return texts;
  std::vector<CString> ordered(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    ordered[static_cast<std::size_t>(building.newCodes[i]) - 1] = std::move(texts[i]);
  }
  return ordered;
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
      building.column.holdsTexts = true;
      building.column.labels = TakeLabels(building);
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
