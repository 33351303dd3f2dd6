// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

#include "statistics/Stats_Data.h"
#include "workbench/Dlg_Tallyscope.h"

namespace tallyscope {

// A table written out column by column, axes first. A NaN in the text stands for a null, stored as -1e32.
class WrittenTable : public CStats_Data {
 public:
  struct Column {
    std::string name;
    std::vector<double> values;
  };
  static constexpr double kNull = std::numeric_limits<double>::quiet_NaN();

  WrittenTable(int axes, std::vector<Column> columns) : axes_(axes), columns_(std::move(columns)) {}

  using CStats_Data::GetValue;
  int GetSize() override { return columns_.empty() ? 0 : static_cast<int>(columns_.front().values.size()); }
  int GetSpatialSize() override { return axes_; }
  int GetValueSize() override { return static_cast<int>(columns_.size()) - axes_; }
  CString GetValueName(int field) override { return At(field).name; }
  double GetValue(int field, int station) override {
    return IsValueValid(field, station) ? Read(field, station) : -1e32;
  }
  bool IsValueValid(int field, int station) override { return Read(field, station) == Read(field, station); }

 private:
  const Column& At(int field) const { return columns_[field < 0 ? -field - 1 : axes_ + field]; }
  double Read(int field, int station) const { return At(field).values[station]; }

  int axes_;
  std::vector<Column> columns_;
};

// Five stations on two axes with three fields; a null in "Pb".
WrittenTable SmallTable();

// What a read-only figure of a window shows.
std::string FigureText(const CWnd& window, int id);

// The workbench with its inner operations open to a test, created but not shown modally.
class OpenWorkbench : public CDlg_Tallyscope {
 public:
  using CDlg_Tallyscope::ComposeMenu;
  using CDlg_Tallyscope::CreateSC_Bivariate;
  using CDlg_Tallyscope::CreateSC_Spatial;
  using CDlg_Tallyscope::CreateSC_Variogram;
  using CDlg_Tallyscope::HandleSpreadsheetCE;
  using CDlg_Tallyscope::OnDestroy;
  using CDlg_Tallyscope::OnPopData;
  using CDlg_Tallyscope::OnPushData;
  using CDlg_Tallyscope::OnSelchangeAncField;
  using CDlg_Tallyscope::OnSelchangeKeyField;
  using CDlg_Tallyscope::OnSelchangeMode;
  using CDlg_Tallyscope::ProcessMenu;
  using CDlg_Tallyscope::SelectRow;
  using CDlg_Tallyscope::SortGridByCol;

  explicit OpenWorkbench(CStats_Data& table);

  bool offersAll = false;    // as if every mode had its sheet
  std::vector<int> started;  // modes whose sheet was started
  int refreshed = 0;         // how often the window's controls were enabled anew

  void ChooseMode(const char* name);
  void ChooseKey(const char* name);
  void ChooseAncillary(const char* name);
  void ShowPage(const char* caption);
  // A cell as the grid would get it.
  GV_DISPINFO Cell(int row, int col);
  std::string Text(int row, int col);
  // Column `col` from row 1 down, joined by blanks.
  std::string ColumnText(int col);
  std::vector<std::string> Modes() const;

 protected:
  bool HasSheet(CTallyscope::eAnalysisMode mode) const override;
  void CreatePS(int startPage) override;
  void ShowSelectedCount() override;
};

}  // namespace tallyscope
