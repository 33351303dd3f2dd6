// SPDX-License-Identifier: MIT
#include "workbench/Dlg_StatsBasic.h"

#include <QVBoxLayout>

#include "workbench/BasicFigures.h"
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
  ExchangeBasicFigures(exchange, *this);
}

}  // namespace tallyscope
