// SPDX-License-Identifier: MIT
#include "workbench/PP_Univariate_Stats.h"

#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "platform/core/StringTable.h"
#include "platform/ui/DataExchange.h"
#include "platform/ui/Icon.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope.h"
#include "workbench/FigurePanel.h"

namespace tallyscope {

CPP_Univariate_Stats::CPP_Univariate_Stats() : CPP_BaseTS(kPageUnivariateStats, "Statistics") {}

void CPP_Univariate_Stats::CreateControls() {
  figures_ = new FigurePanel(*this, {SampleCountGroup(),
                                     DataRangeGroup(),
                                     VarianceGroup(),
                                     {"Skewness", {{kControlSkewness, "Skewness"}, {kControlDirection, "Direction"}}},
                                     {"Histogram", {{kControlMedian, "Median"}, {kControlModeFigure, "Mode"}}},
                                     {"Histogram quartiles",
                                      {{kControlLowerQuartile, "Lower (25%)"},
                                       {kControlUpperQuartile, "Upper (75%)"},
                                       {kControlInterquartileRange, "Interquartile Range"}}}});
  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(figures_);

  auto* copy = new QPushButton(MakeIcon("copy"), "&Copy");
  copy->setToolTip("Copy all figures of this page");
  AddControl(kControlCopy, copy, "Copy");
  QObject::connect(copy, &QPushButton::clicked, this, [this] { figures_->CopyText(); });

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(area, 1);
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(copy);
  layout->addLayout(row);
}

void CPP_Univariate_Stats::UploadData() {
  const auto* figures = dynamic_cast<CStats_Univariate*>(GetDlg()->GetCalculator());
  if (figures == nullptr) return;
  static_cast<UnivariateFigures&>(*this) = *figures;
  direction = LoadString(skewness > 0 ? kStringPositivelySkewed : kStringNegativelySkewed);
}

void CPP_Univariate_Stats::DoDataExchange(unsigned, CDataExchange* exchange) {
  DDX_Text(exchange, kControlTotal, total);
  DDX_Text(exchange, kControlValid, valid);
  DDX_Text(exchange, kControlInvalid, invalid);
  DDX_Number(exchange, kControlMinimum, minimum);
  DDX_Number(exchange, kControlMaximum, maximum);
  DDX_Number(exchange, kControlMean, mean);
  DDX_Number(exchange, kControlVariance, variance);
  DDX_Number(exchange, kControlStdDeviation, standardDeviation);
  DDX_Number(exchange, kControlRatio, ratio);
  DDX_Number(exchange, kControlSkewness, skewness);
  DDX_Text(exchange, kControlDirection, direction);
  DDX_Number(exchange, kControlMedian, median);
  DDX_Number(exchange, kControlModeFigure, mode);
  DDX_Number(exchange, kControlLowerQuartile, lowerQuartile);
  DDX_Number(exchange, kControlUpperQuartile, upperQuartile);
  DDX_Number(exchange, kControlInterquartileRange, interquartileRange);
}

bool CPP_Univariate_Stats::OnSetActive() {
  GetDlg()->ConnectSpreadsheet(GetDlg()->GetData(), true);
  GetDlg()->SetAllowSSSelection(true);
  GetDlg()->UpdateSortFlag();
  return CPP_BaseTS::OnSetActive();
}

}  // namespace tallyscope
