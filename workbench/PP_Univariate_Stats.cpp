// SPDX-License-Identifier: MIT
#include "workbench/PP_Univariate_Stats.h"

#include "platform/core/StringTable.h"
#include "platform/ui/DataExchange.h"
#include "workbench/BasicFigures.h"
#include "workbench/ControlIds.h"
#include "workbench/Dlg_Tallyscope.h"

namespace tallyscope {

CPP_Univariate_Stats::CPP_Univariate_Stats() : CPP_Stats(kPageUnivariateStats) {}

std::vector<FigureGroup> CPP_Univariate_Stats::GetGroups() const {
  return {SampleCountGroup(),
          DataRangeGroup(),
          VarianceGroup(),
          {"Skewness", {{kControlSkewness, "Skewness"}, {kControlDirection, "Direction"}}},
          {"Histogram", {{kControlMedian, "Median"}, {kControlModeFigure, "Mode"}}},
          {"Histogram quartiles",
           {{kControlLowerQuartile, "Lower (25%)"},
            {kControlUpperQuartile, "Upper (75%)"},
            {kControlInterquartileRange, "Interquartile Range"}}}};
}

void CPP_Univariate_Stats::UploadData() {
  const auto* figures = dynamic_cast<CStats_Univariate*>(GetDlg()->GetCalculator());
  if (figures == nullptr) return;
  static_cast<UnivariateFigures&>(*this) = *figures;
  direction = LoadString(skewness > 0 ? kStringPositivelySkewed : kStringNegativelySkewed);
}

void CPP_Univariate_Stats::DoDataExchange(unsigned, CDataExchange* exchange) {
  ExchangeBasicFigures(exchange, *this);
  DDX_Number(exchange, kControlSkewness, skewness);
  DDX_Text(exchange, kControlDirection, direction);
  DDX_Number(exchange, kControlMedian, median);
  DDX_Number(exchange, kControlModeFigure, mode);
  DDX_Number(exchange, kControlLowerQuartile, lowerQuartile);
  DDX_Number(exchange, kControlUpperQuartile, upperQuartile);
  DDX_Number(exchange, kControlInterquartileRange, interquartileRange);
}

bool CPP_Univariate_Stats::OnSetActive() {
  ConnectWorkingTable();
  return CPP_Stats::OnSetActive();
}

}  // namespace tallyscope
