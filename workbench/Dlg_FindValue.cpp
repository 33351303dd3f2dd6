// SPDX-License-Identifier: MIT
#include "workbench/Dlg_FindValue.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "platform/ui/DataExchange.h"
#include "workbench/ControlIds.h"

namespace tallyscope {

CDlg_FindValue::CDlg_FindValue(CWnd* parent) : CDialog(parent) {
  SetWindowText("Find value");
}

void CDlg_FindValue::CreateControls() {
  auto* explanation = new QLabel(
      "Find the first or last occurance of a value that is lss than, less than or equal to, equal to, greater than or "
      "equal to, or greater than the target value");
  explanation->setWordWrap(true);
  auto* occurrenceBox = new QComboBox;
  occurrenceBox->addItems({"First", "Last"});
  auto* comparisonBox = new QComboBox;
  comparisonBox->addItems({"<", "<=", "==", ">=", ">"});
  auto* valueEdit = new QLineEdit;
  AddControl(kControlOccurrence, occurrenceBox, "Occurrence");
  AddControl(kControlComparison, comparisonBox, "Comparison");
  AddControl(kControlValue, valueEdit, "Value");

  auto* form = new QFormLayout;
  form->addRow("&Occurrence", occurrenceBox);
  form->addRow("&Comparison", comparisonBox);
  form->addRow("&Value", valueEdit);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(explanation);
  layout->addLayout(form);
  layout->addStretch(1);
  layout->addWidget(CreateButtons(/*cancel=*/true));
  valueEdit->setFocus();
}

void CDlg_FindValue::DoDataExchange(CDataExchange* exchange) {
  DDX_CBIndex(exchange, kControlOccurrence, occurrence);
  DDX_CBIndex(exchange, kControlComparison, comparison);
  DDX_Text(exchange, kControlValue, value);
}

}  // namespace tallyscope
