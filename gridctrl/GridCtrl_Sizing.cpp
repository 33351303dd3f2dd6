// SPDX-License-Identifier: MIT
// Column widths that fit their text.

#include <algorithm>

#include "gridctrl/GridCtrl.h"
#include "gridctrl/GridPainter.h"
#include "platform/ui/PlainText.h"

namespace tallyscope {

namespace {

constexpr int kFitHeadings = 1, kFitData = 2;  // bits of the auto-size mode
constexpr int kMostOfColumn = 96;              // cells that are asked for
constexpr int kMostOfAll = 20000;
constexpr int kLeastFit = 32;
constexpr int kMostFit = 480;  // one long heading must not fill the view
constexpr int kLeastDigits = 3;

}  // namespace

// Half of them from the rows in view down, the others spread over the whole grid with its first and last row.
std::vector<int> CGridCtrl::SampleRows(int most) const {
  const std::int64_t rows = GetRowCount() - 1;
  std::vector<int> sample;
  if (rows <= 0) return sample;
  if (rows <= most) {
    for (int row = 1; row <= rows; ++row) sample.push_back(row);
    return sample;
  }
  const int near = most / 2;
  for (int i = 0; i < near && geometry_.FirstRow() <= rows - i; ++i) sample.push_back(geometry_.FirstRow() + i);
  const int spread = std::max(most - near, 1);
  for (int i = 0; i < spread; ++i) {
    sample.push_back(static_cast<int>(1 + (spread > 1 ? (rows - 1) * i / (spread - 1) : 0)));
  }
  return sample;
}

int CGridCtrl::FittingWidth(int column, const std::vector<int>& rows) const {
  int widest = 0;
  const auto take = [&](int row) { widest = std::max(widest, text_->Width(OneLine(Request(row, column).text))); };
  if ((autoSizeMode_ & kFitData) != 0) {
    for (const int row : rows) take(row);
  }
  if ((autoSizeMode_ & kFitHeadings) != 0) {
    const int data = std::exchange(widest, 0);
    take(0);
    widest = std::max(data, widest + GetArrowWidth());  // sorting must not cut the heading
  }
  return std::clamp(ToUnits(widest + 2 * padding_), kLeastFit, kMostFit);
}

void CGridCtrl::AutoSizeColumns() {
  const int columns = std::max(GetColumnCount() - 1, 1);
  const auto rows = SampleRows(std::clamp(kMostOfAll / columns, 1, kMostOfColumn));
  for (int column = 1; column < GetColumnCount(); ++column) {
    widths_[static_cast<std::size_t>(column)] = FittingWidth(column, rows);
  }
  FitRowNumbers();
  Arrange();
}

void CGridCtrl::AutoSizeColumn(int column) {
  if (column < 0 || column >= GetColumnCount()) return;
  if (column == 0) {
    FitRowNumbers();
  } else {
    widths_[static_cast<std::size_t>(column)] = FittingWidth(column, SampleRows(kMostOfColumn));
  }
  Arrange();
}

void CGridCtrl::FitRowNumbers() {
  if (widths_.empty()) return;
  const int digits = static_cast<int>(std::to_string(std::max(GetRowCount() - 1, 0)).size());
  widths_[0] = std::max(ToUnits(text_->NumberWidth(std::max(digits, kLeastDigits)) + 2 * padding_), kLeastFit);
}

}  // namespace tallyscope
