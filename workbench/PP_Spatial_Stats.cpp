// SPDX-License-Identifier: MIT
#include "workbench/PP_Spatial_Stats.h"

#include <algorithm>

#include "platform/ui/DataExchange.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Multivariate.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope.h"

namespace tallyscope {

namespace {

constexpr int kAxisRows[] = {kControlXMinimum, kControlYMinimum, kControlZMinimum};

}  // namespace

CPP_Spatial_Stats::CPP_Spatial_Stats() : CPP_Stats(kPageSpatialStats) {}

std::vector<FigureGroup> CPP_Spatial_Stats::GetGroups() const {
  return {SampleCountGroup(), AxisRangeGroup(3)};
}

void CPP_Spatial_Stats::Initialise() {
  for (int axis = 0; axis < std::min(GetDlg()->GetDimension(), 3); ++axis) {
    figures_->SetRowTip(kAxisRows[axis], GetDlg()->GetData()->GetValueName(-1 - axis));
  }
  CPP_Stats::Initialise();
}

// The calculator of the axes is the session's own: the mode's calculator holds the selection.
void CPP_Spatial_Stats::UploadData() {
  auto* figures = dynamic_cast<CStats_Multivariate*>(GetDlg()->GetTallyscope()->GetOwnCalculator());
  if (figures == nullptr) return;
  total = figures->total;
  valid = figures->valid;
  invalid = figures->invalid;
  const auto count = std::min({static_cast<std::size_t>(figures->GetItemCount()), axes.size(), figures->means.size()});
  for (std::size_t i = 0; i < count; ++i) axes[i] = {figures->minima[i], figures->maxima[i], figures->means[i]};
}

void CPP_Spatial_Stats::DoDataExchange(unsigned, CDataExchange* exchange) {
  DDX_Text(exchange, kControlTotal, total);
  DDX_Text(exchange, kControlValid, valid);
  DDX_Text(exchange, kControlInvalid, invalid);
  for (std::size_t i = 0; i < axes.size(); ++i) DDX_Range(exchange, kAxisRows[i], axes[i]);
}

void CPP_Spatial_Stats::EnableControls() {
  if (figures_ == nullptr) return;  // exchanged before it was first shown
  figures_->ShowRow(kControlZMinimum, GetDlg()->GetDimension() >= 3);
}

}  // namespace tallyscope
