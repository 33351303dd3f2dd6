// SPDX-License-Identifier: MIT
#include "tests/workbench/WorkbenchTesting.h"

#include <QComboBox>
#include <QLabel>

#include "platform/core/Messages.h"
#include "workbench/ControlIds.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {

WrittenTable SmallTable() {
  return WrittenTable(2, {{"x", {10, 20, 30, 40, 50}},
                          {"y", {5, 4, 3, 2, 1}},
                          {"Cu", {3.5, 1.25, 9, 7, 5}},
                          {"Pb", {200, WrittenTable::kNull, 100, 400, 300}},
                          {"Zn", {1, 2, 3, 4, 10}}});
}

std::string FigureText(const CWnd& window, int id) {
  const auto* label = window.GetControl<QLabel>(id);
  return label != nullptr ? label->text().toStdString() : "no such figure";
}

OpenWorkbench::OpenWorkbench(CStats_Data& table) {
  PushData(&table, false);
  SetUniDim(0);
}

void OpenWorkbench::ChooseMode(const char* name) {
  GetControl<QComboBox>(kControlMode)->setCurrentText(name);
  OnSelchangeMode();
}

void OpenWorkbench::ChooseKey(const char* name) {
  GetControl<QComboBox>(kControlKeyField)->setCurrentText(name);
  OnSelchangeKeyField();
}

void OpenWorkbench::ChooseAncillary(const char* name) {
  GetControl<QComboBox>(kControlAncField)->setCurrentText(name);
  OnSelchangeAncField();
}

void OpenWorkbench::ShowPage(const char* caption) {
  for (int i = 0; i < GetSheet()->GetPageCount(); ++i) {
    if (GetSheet()->GetPage(i)->GetCaption() == caption) GetSheet()->SetActivePage(i);
  }
}

GV_DISPINFO OpenWorkbench::Cell(int row, int col) {
  GV_DISPINFO info;
  info.idFrom = kControlGrid;
  info.code = kNotifyCellRequest;
  info.row = row;
  info.col = col;
  SendNotify(&info);
  return info;
}

std::string OpenWorkbench::Text(int row, int col) {
  return Cell(row, col).text;
}

std::string OpenWorkbench::ColumnText(int col) {
  std::string text;
  for (int row = 1; row <= GetSSData()->GetSize(); ++row) text += (row > 1 ? " " : "") + Text(row, col);
  return text;
}

std::vector<std::string> OpenWorkbench::Modes() const {
  std::vector<std::string> names;
  const auto* box = GetControl<QComboBox>(kControlMode);
  for (int i = 0; i < box->count(); ++i) names.push_back(box->itemText(i).toStdString());
  return names;
}

bool OpenWorkbench::HasSheet(CTallyscope::eAnalysisMode mode) const {
  return offersAll || CDlg_Tallyscope::HasSheet(mode);
}

void OpenWorkbench::ShowSelectedCount() {
  ++refreshed;
  CDlg_Tallyscope::ShowSelectedCount();
}

void OpenWorkbench::CreatePS(int startPage) {
  started.push_back(GetMode());
  CDlg_Tallyscope::CreatePS(startPage);
}

}  // namespace tallyscope
