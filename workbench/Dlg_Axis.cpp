// SPDX-License-Identifier: MIT
#include "workbench/Dlg_Axis.h"

#include <cmath>

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "platform/core/ShownText.h"
#include "platform/core/StringTable.h"
#include "platform/ui/DataExchange.h"
#include "workbench/GraphControls.h"

namespace tallyscope {

namespace {

constexpr const char* kLongest = "-0.000000000000000e-000 ";  // no number is cut off

}  // namespace

CDlg_Axis::CDlg_Axis(CWnd* parent) : CDialog(parent) {}

void CDlg_Axis::CreateControls() {
  auto* form = new QFormLayout;
  const auto addEdit = [&](int id, const char* caption) {
    auto* edit = new QLineEdit;
    edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(kLongest));
    form->addRow(caption, edit);
    AddControl(id, edit, caption);
  };
  addEdit(kAxisFrom, "From");
  addEdit(kAxisTo, "To");
  auto* linear = new QRadioButton("Linear");
  auto* logarithmic = new QRadioButton("Logarithmic");
  form->addRow(linear);
  form->addRow(logarithmic);
  AddControl(kAxisLinear, linear, "Linear");
  AddControl(kAxisLogarithmic, logarithmic, "Logarithmic");
  addEdit(kAxisBand, "Linear between + -");
  GetDlgItem(kAxisBand)->setToolTip("Values nearer to zero than this are spaced evenly, so that zero has a place");
  QObject::connect(linear, &QRadioButton::clicked, this, [this] { OnLinear(); });
  QObject::connect(logarithmic, &QRadioButton::clicked, this, [this] { OnLog(); });

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(CreateButtons(/*cancel=*/true));
}

bool CDlg_Axis::OnInitDialog() {
  SetWindowText(FormatMessage(LoadString(kStringAxisTitle), ShownText(axisTitle)));
  const bool done = CDialog::OnInitDialog();
  EnableBand();
  return done;
}

void CDlg_Axis::DoDataExchange(CDataExchange* exchange) {
  DDX_Number(exchange, kAxisFrom, from);
  DDX_Number(exchange, kAxisTo, to);
  DDX_Number(exchange, kAxisBand, band);
  bool logarithmic = mapping == AxisMap::kLogarithmic;
  bool linear = !logarithmic;
  DDX_Check(exchange, kAxisLinear, linear);
  DDX_Check(exchange, kAxisLogarithmic, logarithmic);
  if (exchange->saveAndValidate) mapping = logarithmic ? AxisMap::kLogarithmic : AxisMap::kLinear;
}

void CDlg_Axis::OnMapping() {
  UpdateData(true);
  EnableBand();
}

void CDlg_Axis::EnableBand() {
  EnableDlgItem(kAxisBand, mapping == AxisMap::kLogarithmic);
}

// A range without a width shows nothing, so it isn't taken.
void CDlg_Axis::OnOK() {
  if (!UpdateData(true)) return;
  if (!(from < to) || !std::isfinite(from) || !std::isfinite(to)) {
    CDataExchange exchange(this, true);
    try {
      exchange.Fail(kAxisTo, "The axis must run from a lower to a higher value.");
    } catch (const CDataExchange::Failure&) {
    }
    return;
  }
  EndDialog(kIdOk);
}

}  // namespace tallyscope
