// SPDX-License-Identifier: MIT
#include "workbench/Dlg_StatsBasic.h"

#include <QVBoxLayout>

#include "platform/ui/DataExchange.h"
#include "workbench/ControlIds.h"
#include "workbench/FigurePanel.h"

namespace tallyscope {

CDlg_StatsBasic::CDlg_StatsBasic(CWnd* parent) : CDialog(parent) {}

void CDlg_StatsBasic::CreateControls() {
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new FigurePanel(*this, {SampleCountGroup(), DataRangeGroup(), VarianceGroup()}));
  layout->addWidget(CreateButtons(/*cancel=*/false));
}

bool CDlg_StatsBasic::OnInitDialog() {
  const bool done = CDialog::OnInitDialog();
  SetWindowText(title);
  return done;
}

void CDlg_StatsBasic::DoDataExchange(CDataExchange* exchange) {
  DDX_Text(exchange, kControlTotal, total);
  DDX_Text(exchange, kControlValid, valid);
  DDX_Text(exchange, kControlInvalid, invalid);
  DDX_Number(exchange, kControlMinimum, minimum);
  DDX_Number(exchange, kControlMaximum, maximum);
  DDX_Number(exchange, kControlMean, mean);
  DDX_Number(exchange, kControlVariance, variance);
  DDX_Number(exchange, kControlStdDeviation, standardDeviation);
  DDX_Number(exchange, kControlRatio, ratio);
}

}  // namespace tallyscope
