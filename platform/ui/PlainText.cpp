// SPDX-License-Identifier: MIT
#include "platform/ui/PlainText.h"

#include <algorithm>

#include <QLabel>

namespace tallyscope {

namespace {

constexpr qsizetype kLongestShown = 1000;  // characters
constexpr QChar kEllipsis(0x2026);
constexpr QLatin1String kChangedMark("[*]");
constexpr QLatin1String kChangedMarkText("[*][*]");

}  // namespace

QString CutText(const CString& text) {
  constexpr std::size_t kMostBytes = 4 * kLongestShown;
  const auto bytes = std::min(text.size(), kMostBytes);
  QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(bytes));
  if (shown.size() <= kLongestShown) return shown;
  const bool split = shown[kLongestShown - 1].isHighSurrogate();
  return shown.left(kLongestShown - (split ? 1 : 0)) + kEllipsis;
}

QString OneLine(const CString& text) {
  QString line = CutText(text);
  for (QChar& each : line) {
    if (each.unicode() < u' ' || each == QChar::LineSeparator || each == QChar::ParagraphSeparator) each = u' ';
  }
  return line;
}

QString ItemText(const CString& text) {
  return OneLine(text).replace('&', "&&");
}

QString TipText(const CString& text) {
  if (text.empty()) return {};
  return "<span style='white-space:pre-wrap'>" + CutText(text).toHtmlEscaped() + "</span>";
}

QString TitleText(const CString& text) {
  return OneLine(text).replace(kChangedMark, kChangedMarkText);
}

CString FromTitleText(const QString& title) {
  return QString(title).replace(kChangedMarkText, kChangedMark).toStdString();
}

void SetPlainText(QLabel& label, const QString& text) {
  label.setTextFormat(Qt::PlainText);
  label.setText(text);
}

}  // namespace tallyscope
