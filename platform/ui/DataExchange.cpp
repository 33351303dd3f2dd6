// SPDX-License-Identifier: MIT
#include "platform/ui/DataExchange.h"

#include <charconv>

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include "platform/core/NumberText.h"
#include "platform/ui/Modal.h"
#include "platform/ui/PlainText.h"

namespace tallyscope {

namespace {

constexpr std::size_t kLongestNumber = 64;

// The text of a control that holds one; false if it is not there.
bool GetText(const CDataExchange& exchange, int id, CString& text) {
  if (const auto* edit = exchange.window->GetControl<QLineEdit>(id)) {
    text = FromQString(edit->text());
  } else if (const auto* label = exchange.window->GetControl<QLabel>(id)) {
    text = FromQString(label->text());
  } else {
    return false;
  }
  return true;
}

void SetText(const CDataExchange& exchange, int id, const CString& text) {
  if (auto* edit = exchange.window->GetControl<QLineEdit>(id)) {
    edit->setText(ToQString(text));
  } else if (auto* label = exchange.window->GetControl<QLabel>(id)) {
    SetPlainText(*label, ToQString(text));
  }
}

template <class Real>
void ExchangeReal(CDataExchange* exchange, int id, Real& value, int precision) {
  if (!exchange->saveAndValidate) {
    SetText(*exchange, id, FormatLocale(static_cast<double>(value), precision));
    return;
  }
  CString text;
  if (!GetText(*exchange, id, text)) return;
  double typed = 0;
  if (!ParseStrict(text.substr(0, kLongestNumber), typed)) exchange->Fail(id, "\"" + text + "\" is not a number.");
  value = static_cast<Real>(typed);
}

}  // namespace

void CDataExchange::Fail(int id, const CString& sentence) {
  GetModal().Tell(window->GetWidget(), sentence);
  if (auto* control = window->GetDlgItem(id)) {
    control->setFocus();
    if (auto* edit = dynamic_cast<QLineEdit*>(control)) edit->selectAll();
  }
  throw Failure();
}

void DDX_Text(CDataExchange* exchange, int id, CString& value) {
  if (exchange->saveAndValidate) {
    GetText(*exchange, id, value);
  } else {
    SetText(*exchange, id, value);
  }
}

void DDX_Text(CDataExchange* exchange, int id, int& value) {
  if (!exchange->saveAndValidate) {
    SetText(*exchange, id, std::to_string(value));
    return;
  }
  CString text;
  if (!GetText(*exchange, id, text)) return;
  int typed = 0;
  const QByteArray digits = ToQString(text).trimmed().toLatin1();
  const auto [end, error] = std::from_chars(digits.begin(), digits.end(), typed);
  if (error != std::errc() || end != digits.end()) {
    exchange->Fail(id, "\"" + text + "\" is not a whole number.");
  }
  value = typed;
}

void DDX_Number(CDataExchange* exchange, int id, double& value, int precision) {
  ExchangeReal(exchange, id, value, precision);
}

void DDX_Number(CDataExchange* exchange, int id, float& value, int precision) {
  ExchangeReal(exchange, id, value, precision);
}

void DDX_Check(CDataExchange* exchange, int id, bool& value) {
  auto* button = exchange->window->GetControl<QAbstractButton>(id);
  if (button == nullptr) return;
  if (exchange->saveAndValidate) {
    value = button->isChecked();
  } else {
    button->setChecked(value);
  }
}

void DDX_CBIndex(CDataExchange* exchange, int id, int& value) {
  auto* box = exchange->window->GetControl<QComboBox>(id);
  if (box == nullptr) return;
  if (exchange->saveAndValidate) {
    value = box->currentIndex();
  } else {
    box->setCurrentIndex(value < box->count() ? value : -1);
  }
}

}  // namespace tallyscope
