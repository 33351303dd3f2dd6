// SPDX-License-Identifier: MIT
// The mouse and the keyboard on a graph page.
#include <QKeyEvent>

#include "platform/ui/Modal.h"
#include "plots/UPlotX_Tallyscope.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Rgn.h"
#include "workbench/Dlg_Axis.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/GraphMenu.h"
#include "workbench/PP_Base_Graph.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {

namespace {

constexpr double kKeyZoom = 1.5;
constexpr int kPage = 10;  // stations that a step with Shift skips

}  // namespace

void CPP_Base_Graph::OnLButtonDown(CPoint point) {
  auto* plot = GetActivePlot();
  if (plot == nullptr) return;
  const auto hit = plot->GetHitArea(point);
  ClearGlance();
  GetDlg()->ShowStatus("");
  if (hit != CUPlotX::eNone) container_.OnLButtonDown(point);
}

void CPP_Base_Graph::OnMouseMove(CPoint point, bool pressed) {
  container_.OnMouseMove(point, pressed);
  if (!pressed) ShowGlance(point);
}

void CPP_Base_Graph::OnLButtonUp(CPoint point) {
  container_.OnLButtonUp(point);
  GetDlg()->SetHoverStation(-1);
  GetDlg()->GetGrid()->Invalidate();
}

void CPP_Base_Graph::OnLButtonDblClk(CPoint point) {
  if (container_.OnLButtonDblClk(point) || !container_.IsHit(point)) return;
  const auto hit = GetPlot()->GetHitArea(point);
  if (hit == CUPlotX::eData) OnLButtonDown(point);  // the second of two quick clicks, or the start of a drag
  if (hit == CUPlotX::eLeft && GetPlot()->allowDialogY) RunAxisDialog(1);
  if (hit == CUPlotX::eBottom && GetPlot()->allowDialogX) RunAxisDialog(0);
}

void CPP_Base_Graph::OnRButtonDown(CPoint point) {
  if (!container_.OnRButtonDown(point)) RunGraphMenu(*this, canvas_->mapToGlobal(QPoint(point.x, point.y)));
}

void CPP_Base_Graph::OnWheel(CPoint point, double steps) {
  container_.OnWheel(point, steps);
}

void CPP_Base_Graph::OnLeave() {
  ClearGlance();
  GetDlg()->ShowStatus("");
}

// The station that a gesture is on shows in the spreadsheet and in the status line.
void CPP_Base_Graph::OnHovered(int hover) {
  auto* dialog = GetDlg();
  if (dialog == nullptr) return;
  const int before = dialog->GetHoverStation();
  if (hover >= 0 && dialog->GetSSData() != nullptr && hover < dialog->GetSSData()->GetSize()) {
    dialog->SetHoverStation(hover);
    if (hover != before) dialog->EnsureVisibleSS(hover + 1, GetSSCol());
  } else {
    dialog->SetHoverStation(-1);
  }
  if (dialog->GetHoverStation() != before) dialog->GetGrid()->Invalidate();
  dialog->ShowStatus(GetPlot()->Describe(hover));
}

// What a resting pointer is on. The spreadsheet stays where it is.
void CPP_Base_Graph::ShowGlance(CPoint point) {
  auto* plot = GetPlot();
  const bool free = !container_.IsInGesture() && plot->GetHitArea(point) == CUPlotX::eData;
  const int now = free ? plot->PickAt(point) : -1;
  GetDlg()->ShowStatus(now >= 0 ? plot->Describe(now) : CString());
  if (now == plot->glance) return;
  plot->glance = now;
  container_.InvalidateOver();
}

void CPP_Base_Graph::ClearGlance() {
  if (GetPlot()->glance < 0) return;
  GetPlot()->glance = -1;
  container_.InvalidateOver();
}

void CPP_Base_Graph::RunAxisDialog(std::size_t axis) {
  auto* plot = GetPlot();
  CDlg_Axis dialog(GetDlg());
  dialog.axisTitle = axis == 0 ? plot->titleX : plot->titleY;
  dialog.from = plot->axisRange.min[axis];
  dialog.to = plot->axisRange.max[axis];
  dialog.mapping = plot->maps[axis].mapping;
  dialog.band = plot->maps[axis].band;
  if (dialog.DoModal() != kIdOk) return;
  for (int i = 0; i < container_.GetPlotCount(); ++i) {
    auto* each = container_.GetPlot(i);
    each->axisRange.min[axis] = dialog.from;
    each->axisRange.max[axis] = dialog.to;
    each->maps[axis].mapping = dialog.mapping;
    each->maps[axis].band = dialog.band > 0 ? dialog.band : 1.0;
    each->SetWindowExtent();
  }
  container_.InitialiseExtents();
  container_.Invalidate();
  SetDataChanged(1, 1);
}

// The keyboard.

bool CPP_Base_Graph::OnKey(QKeyEvent* event) {
  const int step = (event->modifiers() & Qt::ShiftModifier) != 0 ? kPage : 1;
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
      StepHover(-step);
      return true;
    case Qt::Key_Right:
    case Qt::Key_Down:
      StepHover(step);
      return true;
    case Qt::Key_Home:
      GoToNext(0, 1);
      return true;
    case Qt::Key_End:
      GoToNext(GetPlot()->GetHoverCount() - 1, -1);
      return true;
    case Qt::Key_Space:
      SelectHover();
      return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      container_.ZoomStep(kKeyZoom);
      return true;
    case Qt::Key_Minus:
      container_.ZoomStep(1 / kKeyZoom);
      return true;
    case Qt::Key_Escape: {
      CPoint nowhere;
      if (!container_.CancelStep() && GetPlot()->hover >= 0) GetPlot()->CancelSelect(nowhere, true);
      return true;
    }
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return container_.OnLButtonDblClk({});
    case Qt::Key_Menu:
      RunGraphMenu(*this, canvas_->mapToGlobal(canvas_->rect().center()));
      return true;
    default:
      return false;
  }
}

// From the mark, else from what the pointer rests on, to the next index that has a place, in this direction. With
// neither, to the first thing in view whichever way one goes.
void CPP_Base_Graph::StepHover(int by) {
  auto* plot = GetPlot();
  const int from = plot->hover >= 0 ? plot->hover : plot->glance;
  if (from < 0) {
    GoToFirst();
  } else {
    GoToNext(from + by, by < 0 ? -1 : 1);
  }
}

void CPP_Base_Graph::GoToFirst() {
  auto* plot = GetPlot();
  const int count = plot->GetHoverCount();
  const Box visible = plot->GetVisible();
  double x = 0;
  double y = 0;
  for (int index = 0; index < count; ++index) {
    if (!plot->GetPlace(index, x, y)) continue;
    const bool isIn = visible.min[0] <= x && x <= visible.max[0] && visible.min[1] <= y && y <= visible.max[1];
    if (isIn) return GoToHover(index);
  }
  GoToNext(0, 1);
}

// To the index or, where that has no place, on in this direction.
void CPP_Base_Graph::GoToNext(int index, int direction) {
  auto* plot = GetPlot();
  const int count = plot->GetHoverCount();
  if (count == 0) return;
  index = std::clamp(index, 0, count - 1);
  double x = 0;
  double y = 0;
  while (index >= 0 && index < count && !plot->GetPlace(index, x, y)) index += direction;
  if (index >= 0 && index < count) GoToHover(index);
}

void CPP_Base_Graph::GoToHover(int index) {
  auto* plot = GetPlot();
  ClearGlance();
  plot->SetHover(index);
  double x = 0;
  double y = 0;
  const auto& frame = plot->GetFrame();
  if (plot->GetPlace(index, x, y)) {
    const auto at = plot->World2Device(x, y);
    const bool besides = at[0] < frame.left || at[0] > frame.right;
    const bool beyond = at[1] < frame.top || at[1] > frame.bottom;
    if (besides || (beyond && container_.GetZoomAxes() != 1)) {
      plot->Pan(besides ? (frame.left + frame.right) / 2.0 - at[0] : 0,
                beyond && container_.GetZoomAxes() != 1 ? (frame.top + frame.bottom) / 2.0 - at[1] : 0, 3);
      container_.Invalidate();
    }
  }
}

void CPP_Base_Graph::SelectHover() {
  auto* plot = GetPlot();
  const int index = plot->hover >= 0 ? plot->hover : plot->glance;
  auto region = plot->MakeRegionOf(index);
  if (region == nullptr) return;
  plot->AddSelRegion(std::move(region));
}

}  // namespace tallyscope
