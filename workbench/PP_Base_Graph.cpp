// SPDX-License-Identifier: MIT
// The life of a graph page: its settings and its view.
#include "workbench/PP_Base_Graph.h"

#include <QComboBox>

#include "outside/colour/ColourTables.h"
#include "platform/core/Messages.h"
#include "platform/core/ShownText.h"
#include "platform/core/StringTable.h"
#include "platform/ui/DataExchange.h"
#include "plots/PlotSettings.h"
#include "plots/UPlotX_Tallyscope.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"
#include "workbench/ColourBarView.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/FieldBox.h"
#include "workbench/GraphControls.h"
#include "workbench/PS_BaseTS.h"
#include "workbench/TSSelectGridCtrl.h"

namespace tallyscope {

namespace {

constexpr const char* kZoomHKey = "ZOOM_H";

}  // namespace

CPP_Base_Graph::CPP_Base_Graph(int templateId, const CString& caption) : CPP_BaseTS(templateId, caption) {
  container_.SetZoomAxes(1);
}

CPP_Base_Graph::~CPP_Base_Graph() {
  container_.SetWindow(nullptr);
}

ViewSubject CPP_Base_Graph::GetViewSubject() const {
  const auto& dialog = *GetDlg();
  return ViewSubject::Of(dialog.GetMode(), dialog.GetLevelID(), dialog.GetKeyDim(), dialog.GetAncDim());
}

void CPP_Base_Graph::ApplyViewRule() {
  viewChange = ViewChange::Between(ViewSubject::Read(GetApp(), GetRegistryID()), GetViewSubject());
  resetView = viewChange.Resets(GetDlg()->GetMode());
}

void CPP_Base_Graph::ConnectPlot() {
  auto* plot = GetPlot();
  plot->calculator = GetDlg()->GetCalculator();
  plot->spatial = GetDlg()->GetSpatialCalculator();
  plot->data = GetDlg()->GetData();
  plot->colourTable = IsPerceptual() ? MakePerceptual() : MakeBlueToRed();
}

void CPP_Base_Graph::Initialise() {
  QStringList names{"<NONE>"};
  if (auto* data = GetDlg()->GetData()) names += GetFieldNames(*data);
  for (const int id : {kGraphColour, kGraphSize}) FillFieldBox(*GetControl<QComboBox>(id), names);
  ConnectPlot();
  ApplyViewRule();
  CPP_BaseTS::Initialise();
}

void CPP_Base_Graph::FinishInitialise() {
  UpdateData(false);
  if (sheet != nullptr && sheet->IsInitialised()) PrePSFinalise();
}

void CPP_Base_Graph::PrePSFinalise() {
  if (!IsCreated()) return;
  container_.SetWindow(this);
  container_.SetClientSize({canvas_->width(), canvas_->height()});
  if (container_.GetPlotCount() == 0) container_.AddPlot(GetPlot(), true);
  ConnectPlot();
  if (!resetView) RestoreView();
  container_.InitialiseExtents();
  if (resetView) {
    container_.ZoomFit();
  } else {
    container_.SetWindowExtent();
  }
  UpdateData(false);
  ShowLegend();
}

void CPP_Base_Graph::RestoreView() {
  const auto& profile = GetApp();
  const CString prefix = GetRegistryID();
  container_.ReadFromRegistry(prefix);
  SetZoomH(profile.GetProfileInt(kPlotSection, prefix + kZoomHKey, container_.GetZoomAxes() == 1), false);
  container_.SetTool(ReadTool(profile, prefix, container_.GetTool()));
  colourField = profile.GetProfileInt(kPlotSection, prefix + "COLOUR_FIELD", colourField);
  sizeField = profile.GetProfileInt(kPlotSection, prefix + "SIZE_FIELD", sizeField);
  GetPlot()->SetColourDim(colourField);
  GetPlot()->SetSizeDim(sizeField);
}

// A page that was never shown has nothing of its own to store.
void CPP_Base_Graph::Write2Registry() {
  if (!IsInitialised()) return;
  auto& profile = GetApp();
  const CString prefix = GetRegistryID();
  profile.WriteProfileInt(kPlotSection, prefix + kZoomHKey, container_.GetZoomAxes() == 1);
  WriteTool(profile, prefix, container_.GetTool());
  profile.WriteProfileInt(kPlotSection, prefix + "COLOUR_FIELD", colourField);
  profile.WriteProfileInt(kPlotSection, prefix + "SIZE_FIELD", sizeField);
  GetViewSubject().Write(profile, prefix);
  container_.Write2Registry(prefix);
}

bool CPP_Base_Graph::IsPerceptual() const {
  return GetApp().GetProfileBool(kPlotSection, "COLOUR_TABLE", false);
}

void CPP_Base_Graph::SetPerceptual(bool on) {
  GetApp().WriteProfileBool(kPlotSection, "COLOUR_TABLE", on);
  GetPlot()->colourTable = on ? MakePerceptual() : MakeBlueToRed();
  container_.Invalidate();
  ShowLegend();
}

void CPP_Base_Graph::DoDataExchange(unsigned, CDataExchange* exchange) {
  if (!exchange->saveAndValidate) ShowTools(exchange);
  DDX_CBIndex(exchange, kGraphColour, colourField);
  DDX_CBIndex(exchange, kGraphSize, sizeField);
}

void CPP_Base_Graph::EnableControls() {
  const auto* spatial = GetDlg()->GetSpatialCalculator();
  if (spatial != nullptr) {
    const int total = spatial->regions.GetCount();
    int active = 0;
    for (int i = 0; i < total; ++i) active += spatial->regions.Get(i).IsActive() ? 1 : 0;
    EnableDlgItem(kGraphRedoSelection, active < total);
    EnableDlgItem(kGraphUndoSelection, active > 0);
    EnableDlgItem(kGraphClearSelection, active > 0);
  }
  GetDlg()->EnableControls();
}

// The selection may have changed while another page was shown.
bool CPP_Base_Graph::OnSetActive() {
  GetDlg()->SetAllowSSSelection(true);
  GetDlg()->UpdateSortFlag();
  container_.Invalidate();
  return CPP_BaseTS::OnSetActive();
}

std::intptr_t CPP_Base_Graph::OnMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) {
  if (message == kMessageSelectionChanged) {
    container_.Invalidate();
    return 0;
  }
  return CPP_BaseTS::OnMessage(message, wParam, lParam);
}

void CPP_Base_Graph::OnRedraw(bool all) {
  if (!all) return canvas_->update();
  container_.Prepare(nullptr);
  canvas_->InvalidateKept();
}

void CPP_Base_Graph::OnViewChanged() {
  SetDataChanged(1, 1);
}

void CPP_Base_Graph::OnSelectionMade() {
  if (GetDlg() == nullptr) return;
  GetDlg()->update();
  GetDlg()->GetGrid()->Invalidate();
  EnableControls();
}

void CPP_Base_Graph::ShowLegend() {
  bar_->SetLegend(MakeModulationLegend(*GetPlot()), GetNullNote());
}

CUPlotX* CPP_Base_Graph::GetActivePlot() {
  return container_.GetActivePlot();
}

int CPP_Base_Graph::GetSSCol() {
  return GetDlg()->GetData()->GetSpatialSize() + GetDlg()->GetKeyDim() + 1;
}

}  // namespace tallyscope
