// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "platform/core/String.h"

class QLabel;

namespace tallyscope {

// Text of a table or a file on its way into a widget. A heading or a path may hold anything: tags, ampersands, line
// breaks, megabytes. Each place that shows it has characters of its own that it doesn't take as they are, and what no
// screen has room for is cut off, with an ellipsis.

// As it is, but cut.
QString CutText(const CString& text);
// Line breaks, tabs and the like become blanks.
QString OneLine(const CString& text);
// For a menu's item and a tab, where '&' would mark a key and a tab a column.
QString ItemText(const CString& text);
// For a tool tip, which would guess whether it holds markup. Lines break where they do in `text` or where they must.
QString TipText(const CString& text);
// For a window's title, where "[*]" would stand for the mark of a changed document; and back.
QString TitleText(const CString& text);
CString FromTitleText(const QString& title);
// Shows a text on a label, which takes nothing for markup from then on.
void SetPlainText(QLabel& label, const QString& text);

}  // namespace tallyscope
