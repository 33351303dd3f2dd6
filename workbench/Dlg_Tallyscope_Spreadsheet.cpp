// SPDX-License-Identifier: MIT
// The spreadsheet half of the workbench: cells as the grid asks for them, sorting, finding, the menu.

#include <optional>

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>

#include "platform/core/Messages.h"
#include "platform/core/NumberText.h"
#include "platform/core/StringTable.h"
#include "platform/ui/Menu.h"
#include "platform/ui/Modal.h"
#include "platform/ui/WaitCursor.h"
#include "plots/StationText.h"
#include "statistics/AnalysisKind.h"
#include "statistics/DimIndex.h"
#include "statistics/Stats_Data.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_FindValue.h"
#include "workbench/Dlg_StatsBasic.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {

namespace {

constexpr int kDefaultWidth = 64;  // of the menu's item

int IsDown(Qt::KeyboardModifier key) {
  return QApplication::keyboardModifiers().testFlag(key) ? 1 : 0;
}

}  // namespace

void CDlg_Tallyscope::ConnectSpreadsheet(CStats_Data* data, bool highlightKey) {
  const bool wasWorking = GetSSData() == GetData();
  const bool isWorking = data == GetData();
  GetTallyscope()->SetSSData(data);
  highlightKey_ = highlightKey;
  if (grid_ == nullptr) return;  // not opened yet
  if (wasWorking && !isWorking) workingWidths_ = grid_->GetColumnWidths();
  if (data != nullptr) {
    grid_->SetRowCount(data->GetSize() + 1);
    grid_->SetColumnCount(data->GetSpatialSize() + data->GetValueSize() + 1);
    if (!isWorking) grid_->AutoSizeColumns();
    if (!wasWorking && isWorking) RestoreWidths();
    ShowSelectedCount();
  }
  UpdateSortFlag();
  ShowStatus("");  // what stood there was of the table before
  grid_->Invalidate();
}

// Column 0 keeps the width that its row numbers need.
void CDlg_Tallyscope::RestoreWidths() {
  if (workingWidths_.empty()) return;
  workingWidths_[0] = grid_->GetColumnWidth(0);
  grid_->SetColumnWidths(workingWidths_);
}

void CDlg_Tallyscope::UpdateSortFlag() {
  if (grid_ == nullptr) return;
  const auto& sort = GetTallyscope()->sort;
  if (IsSortedSS()) {
    grid_->SetSortColumn(sort.column);
    grid_->SetSortAscending(sort.descending == 0);
  } else {
    grid_->SetSortColumn(-1);
  }
}

bool CDlg_Tallyscope::IsSortedSS() {
  std::optional<CWaitCursor> wait;
  if (sessions_.WantsSort() && !sessions_.SortStands()) wait.emplace();
  return sessions_.IsSorted();
}

void CDlg_Tallyscope::EnsureVisibleSS(int row, int col) {
  if (grid_ != nullptr) grid_->EnsureVisible(sessions_.GetPosition(row - 1) + 1, col);
}

// Messages and notifications of the grid.

std::intptr_t CDlg_Tallyscope::OnMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) {
  if (message == kMessageRowSelect) {
    SelectRow(static_cast<int>(wParam) - 1, IsDown(Qt::ShiftModifier), IsDown(Qt::ControlModifier));
    return 0;
  }
  if (message != kMessageColSelect) return CDialog::OnMessage(message, wParam, lParam);
  if (sessions_.allowSelection && grid_->GetSelectColMode() != CTSSelectGridCtrl::eNone) {
    SelectCol(static_cast<int>(wParam) - 1, IsDown(Qt::ShiftModifier), IsDown(Qt::ControlModifier));
  }
  return 0;
}

void CDlg_Tallyscope::SelectCol(int, int, int) {}

bool CDlg_Tallyscope::OnNotify(NMHDR* header) {
  if (header->idFrom != kControlGrid || GetSSData() == nullptr) return CDialog::OnNotify(header);
  if (header->code == kNotifyCellRequest) return SupplyCell(static_cast<GV_DISPINFO*>(header));
  const auto* click = static_cast<NM_GRIDVIEW*>(header);
  if (header->code == kNotifyRClick) {
    OnGridRClick(click->row, click->col);
    return true;
  }
  if (header->code == kNotifyDblClick) {
    OnGridDblClick(click->row, click->col);
    return true;
  }
  return CDialog::OnNotify(header);
}

bool CDlg_Tallyscope::SupplyCell(GV_DISPINFO* info) {
  auto* data = GetSSData();
  const int axes = data->GetSpatialSize();
  if (info->row < 0 || info->row > data->GetSize() || info->col < 0 || info->col > axes + data->GetValueSize()) {
    return true;
  }
  info->alignment = CellAlignment::kRight;
  if (info->row == 0) {
    info->text = info->col == 0 ? "     " : data->GetValueName(DimFromColumn(info->col, axes));
    if (info->col > 0) info->alignment = CellAlignment::kCentre;
    return true;
  }
  if (info->col == 0) {
    info->text = std::to_string(info->row);
    return true;
  }
  const int dim = DimFromColumn(info->col, axes);
  const int station = sessions_.GetStation(info->row - 1);
  info->text = ShownNumber(data->GetValue(dim, station));
  info->background = GetCellColour(dim, station);
  info->hasBackground = true;
  return true;
}

bool CDlg_Tallyscope::IsDimInUse(int dim) const {
  return dim == GetKeyDim() || (GetAnalysisKind(GetMode()).fields > 1 && dim == GetAncDim());
}

COLORREF CDlg_Tallyscope::GetCellColour(int dim, int station) const {
  if (sessions_.allowSelection && IsSelectedRow(station)) return selectedColour_;
  if (!GetSSData()->IsValueValid(dim, station)) return nullColour_;
  if (highlightKey_ && IsDimInUse(dim)) return keyColour_;
  return station == hoverStation_ ? keyColour_ : normalColour_;
}

void CDlg_Tallyscope::OnGridDblClick(int row, int col) {
  if (row != 0 || col < 1 || GetSSData() != GetData()) return;  // another table's columns are no fields
  const int dim = DimFromColumn(col, GetSSData()->GetSpatialSize());
  const AnalysisKind& kind = GetAnalysisKind(GetMode());
  if (kind.setByHeading == nullptr) return;
  const int before = kind.fields > 1 ? GetAncDim() : GetKeyDim();
  if (dim == before) return;
  acts_.Run([this, set = kind.setByHeading, dim] {
    if (sheet_) sheet_->Process(0);
    (GetTallyscope()->*set)(dim);
    UpdateData(false);
    RefreshDialog(false);
  });
}

// The menu.

void CDlg_Tallyscope::OnGridRClick(int row, int col) {
  if (row < 0 || col < 0) return;  // beside the table
  const auto* data = GetSSData();
  CMenu menu;
  if (ComposeMenu(&menu, row, col) == 0) return;
  const QPoint at = grid_->viewport()->mapToGlobal(grid_->GetCellRect(row, col).center());
  const int id = GetModal().RunMenu(this, menu, at);
  if (id != 0 && GetSSData() == data) ProcessMenu(row, col, id);  // another table has other columns
}

int CDlg_Tallyscope::ComposeMenu(CMenu* menu, int, int col) {
  const auto& sort = GetTallyscope()->sort;
  if (sessions_.allowSelection) {
    menu->AppendItem(kMenuStatistics, LoadString(kStringStatistics));
    menu->AppendSeparator();
    if (col >= 1 && GetSSData() != nullptr && GetSSData() == GetData() && GetSSData()->CanSort()) {
      const bool byThis = IsSortedSS() && sort.column == col;
      menu->AppendItem(kMenuSortAscending, LoadString(kStringSortAscending), byThis && sort.descending == 0);
      menu->AppendItem(kMenuSortDescending, LoadString(kStringSortDescending), byThis && sort.descending != 0);
      if (byThis) menu->AppendItem(kMenuFindValue, LoadString(kStringFindValue));
      menu->AppendSeparator();
    }
  }
  const int mode = grid_->GetAutoSizeMode();
  menu->AppendItem(kMenuFitHeadings, LoadString(kStringFitHeadings), mode == 1);
  menu->AppendItem(kMenuFitData, LoadString(kStringFitData), mode == 2);
  menu->AppendItem(kMenuFitBoth, LoadString(kStringFitBoth), mode == 3);
  menu->AppendItem(kMenuDefaultWidth, LoadString(kStringDefaultWidth));
  return 1;
}

int CDlg_Tallyscope::ProcessMenu(int, int col, int id) {
  switch (id) {
    case kMenuSortAscending:
    case kMenuSortDescending:
      SortGridByCol(id == kMenuSortAscending ? 1 : 0, col, IsDown(Qt::ShiftModifier), IsDown(Qt::ControlModifier));
      return 1;
    case kMenuFitHeadings:
    case kMenuFitData:
    case kMenuFitBoth:
      grid_->SetAutoSizeMode(id - kMenuFitHeadings + 1);
      grid_->AutoSizeColumns();
      return 1;
    case kMenuDefaultWidth:
      grid_->SetColumnWidths(std::vector<int>(static_cast<std::size_t>(grid_->GetColumnCount()), kDefaultWidth));
      return 0;
    case kMenuStatistics:
      ShowSummary(col);
      return 0;
    case kMenuFindValue:
      FindValue(col);
      return 0;
    default:
      return 0;
  }
}

void CDlg_Tallyscope::SortGridByCol(int ascending, int col, int, int) {
  const CWaitCursor wait;
  if (!sessions_.SortBy(col, ascending != 0)) return;
  UpdateSortFlag();
  grid_->Invalidate();
}

void CDlg_Tallyscope::ShowSummary(int col) {
  auto* shown = GetSSData();
  if (shown == nullptr) return;
  const int dim = DimFromColumn(col, shown->GetSpatialSize());
  for (auto* table : {shown, GetData()}) {
    if (!IsDimInRange(dim, table->GetSpatialSize(), table->GetValueSize())) return;
  }
  auto* figures = GetUniStats(dim);
  {
    const CWaitCursor wait;
    figures->Calculate(1, nullptr);
  }
  CDlg_StatsBasic dialog(this);
  dialog.SetFigures(*figures);
  dialog.title = FormatMessage(LoadString(kStringSummaryTitle), shown->GetValueName(dim));
  dialog.DoModal();
}

void CDlg_Tallyscope::FindValue(int col) {
  CDlg_FindValue dialog(this);
  if (dialog.DoModal() != kIdOk || !IsSortedSS()) return;
  const int dim = DimFromColumn(col, GetSSData()->GetSpatialSize());
  if (dim != GetTallyscope()->sort.field) return;
  int position = 0;
  if (GetSSData()->Find(dim, ParseLocale(dialog.value), position, dialog.comparison, dialog.occurrence + 1)) {
    EnsureVisibleSS(GetSSData()->GetSortedStation(dim, position) + 1, col);
  }
}

// The status line names the station under the pointer.

bool CDlg_Tallyscope::eventFilter(QObject* watched, QEvent* event) {
  if (grid_ != nullptr && watched == grid_->viewport()) {
    if (event->type() == QEvent::MouseMove) {
      ShowCellStatus(grid_->GetCellFromPoint(static_cast<QMouseEvent*>(event)->pos()).row);
    } else if (event->type() == QEvent::Leave) {
      ShowStatus("");
    }
  }
  return CDialog::eventFilter(watched, event);
}

void CDlg_Tallyscope::ShowCellStatus(int row) {
  auto* data = GetSSData();
  if (data == nullptr || row < 1 || row > data->GetSize()) {
    ShowStatus("");
    return;
  }
  if (data != GetData()) {
    ShowStatus("row " + std::to_string(row));
    return;
  }
  ShowStatus(DescribeStation(*data, sessions_.GetStation(row - 1), {GetKeyDim()}));
}

}  // namespace tallyscope
