// SPDX-License-Identifier: MIT
#include "workbench/PP_Bivariate_Stats.h"

#include <algorithm>
#include <string>

#include <QGroupBox>
#include <QVBoxLayout>

#include "gridctrl/GridCtrl.h"
#include "platform/core/Messages.h"
#include "platform/core/NumberText.h"
#include "platform/ui/DataExchange.h"
#include "statistics/Stats_Bivariate.h"
#include "statistics/Stats_Data.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope.h"

namespace tallyscope {

namespace {

constexpr const char kExpectation[] = "Conditional expectation";
constexpr int kColumns = 3;
constexpr int kMostColumnWidth = 2 * CGridCtrl::kDefaultWidth;  // a long field name leaves room for the figures
constexpr int kShownDigits = 8;

}  // namespace

CPP_Bivariate_Stats::CPP_Bivariate_Stats() : CPP_Stats(kPageBivariateStats) {}

std::vector<FigureGroup> CPP_Bivariate_Stats::GetGroups() const {
  return {SampleCountGroup(),
          AxisRangeGroup(2),
          {"Correlation",
           {{kControlCovariance, "Covariance"},
            {kControlCorrelation, "Correlation"},
            {kControlInertia, "Inertia"},
            {kControlRank, "Rank"}}},
          {"Regression", {{kControlIntercept, "Intercept"}, {kControlSlope, "Slope"}}}};
}

QWidget* CPP_Bivariate_Stats::CreateBeside() {
  auto* box = new QGroupBox(kExpectation);
  auto* layout = new QVBoxLayout(box);
  grid_ = new CGridCtrl;
  grid_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Expanding);
  layout->addWidget(grid_);
  AddControl(kControlExpectation, grid_, kExpectation);
  return box;
}

const CStats_Bivariate* CPP_Bivariate_Stats::GetPairs() const {
  return dynamic_cast<const CStats_Bivariate*>(GetDlg()->GetCalculator());
}

void CPP_Bivariate_Stats::Initialise() {
  grid_->SetNotifyTarget(this, kControlExpectation);
  SizeGrid();
  for (const auto& [id, dim] :
       {std::pair{kControlXMinimum, GetDlg()->GetKeyDim()}, {kControlYMinimum, GetDlg()->GetAncDim()}}) {
    figures_->SetRowTip(id, GetDlg()->GetData()->GetValueName(dim));
  }
  CPP_Stats::Initialise();
}

void CPP_Bivariate_Stats::SizeGrid() {
  const auto* pairs = GetPairs();
  if (pairs == nullptr) return;
  grid_->SetRowCount(static_cast<int>(pairs->expectationX.size()) + 1);
  grid_->SetColumnCount(kColumns);
  grid_->AutoSizeColumns();
  for (int column = 0; column < kColumns; ++column) {
    grid_->SetColumnWidth(column, std::min(grid_->GetColumnWidth(column), kMostColumnWidth));
  }
  grid_->updateGeometry();
}

void CPP_Bivariate_Stats::UploadData() {
  const auto* pairs = GetPairs();
  if (pairs == nullptr) return;
  total = pairs->total;
  valid = pairs->valid;
  invalid = pairs->invalid;
  x = {pairs->xMinimum, pairs->xMaximum, pairs->xMean};
  y = {pairs->yMinimum, pairs->yMaximum, pairs->yMean};
  covariance = pairs->covariance;
  correlation = pairs->correlation;
  inertia = pairs->inertia;
  rankCorrelation = pairs->rankCorrelation;
  intercept = pairs->displayLine[1];
  slope = pairs->displayLine[0];
}

void CPP_Bivariate_Stats::DoDataExchange(unsigned, CDataExchange* exchange) {
  DDX_Text(exchange, kControlTotal, total);
  DDX_Text(exchange, kControlValid, valid);
  DDX_Text(exchange, kControlInvalid, invalid);
  DDX_Range(exchange, kControlXMinimum, x);
  DDX_Range(exchange, kControlYMinimum, y);
  DDX_Number(exchange, kControlCovariance, covariance);
  DDX_Number(exchange, kControlCorrelation, correlation);
  DDX_Number(exchange, kControlInertia, inertia);
  DDX_Number(exchange, kControlRank, rankCorrelation);
  DDX_Number(exchange, kControlIntercept, intercept);
  DDX_Number(exchange, kControlSlope, slope);
}

bool CPP_Bivariate_Stats::OnSetActive() {
  ConnectWorkingTable();
  return CPP_Stats::OnSetActive();
}

bool CPP_Bivariate_Stats::OnNotify(NMHDR* header) {
  if (header->idFrom != kControlExpectation || header->code != kNotifyCellRequest) return CPP_Stats::OnNotify(header);
  SupplyCell(*static_cast<GV_DISPINFO*>(header));
  return true;
}

void CPP_Bivariate_Stats::SupplyCell(GV_DISPINFO& info) const {
  const auto* pairs = GetPairs();
  const int points = pairs != nullptr ? static_cast<int>(pairs->expectationX.size()) : -1;
  if (info.row < 0 || info.row > points || info.col < 0 || info.col >= kColumns) return;
  info.alignment = CellAlignment::kRight;
  if (info.row == 0) {
    const int dim = info.col == 1 ? GetDlg()->GetKeyDim() : GetDlg()->GetAncDim();
    info.text = info.col == 0 ? "     " : GetDlg()->GetData()->GetValueName(dim);
    if (info.col > 0) info.alignment = CellAlignment::kCentre;
  } else if (info.col == 0) {
    info.text = std::to_string(info.row);
  } else {
    const auto& curve = info.col == 1 ? pairs->expectationX : pairs->expectationYGivenX;
    info.text = FormatLocale(curve[static_cast<std::size_t>(info.row - 1)], kShownDigits);
  }
}

CString CPP_Bivariate_Stats::GetText() const {
  CString text = CPP_Stats::GetText();
  for (int row = 0; row < grid_->GetRowCount(); ++row) {
    text += kExpectation;
    for (int col = 0; col < kColumns; ++col) {
      GV_DISPINFO cell;
      cell.row = row;
      cell.col = col;
      SupplyCell(cell);
      text += "\t" + (row == 0 && col == 0 ? CString() : cell.text);
    }
    text += "\n";
  }
  return text;
}

}  // namespace tallyscope
