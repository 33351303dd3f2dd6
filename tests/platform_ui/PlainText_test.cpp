// SPDX-License-Identifier: MIT
#include "platform/ui/PlainText.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTextDocument>

#include "platform/ui/Dialog.h"

namespace tallyscope {
namespace {

// What a reader sees of a tool tip, which is taken for markup when it looks like it.
std::string SeenOfTip(const QString& tip) {
  if (!Qt::mightBeRichText(tip)) return tip.toStdString();
  QTextDocument document;
  document.setHtml(tip);
  return document.toPlainText().toStdString();
}

TEST(PlainText, IsShownAsItStandsEverywhere) {
  for (const CString text : {"<b>Pb & Zn</b>", "<img src='secret.png'>", "a &amp; b && c", "Cu [*]", "[*][*]", "plain",
                             "<qt>x</qt>", "100% %1", ""}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(SeenOfTip(TipText(text)), text);
    EXPECT_EQ(ItemText(text).replace("&&", "&").toStdString(), text) << "no lone ampersand";
    EXPECT_EQ(ItemText(text).count('&') % 2, 0);
    QLabel label("<i>before</i>");
    SetPlainText(label, OneLine(text));
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
    EXPECT_EQ(label.text().toStdString(), text);
    CDialog dialog;
    dialog.SetWindowText(text);
    EXPECT_EQ(dialog.GetWindowText(), text);
    EXPECT_EQ(dialog.windowTitle().count("[*]") % 2, 0) << "a lone mark is swallowed";
  }
  EXPECT_EQ(SeenOfTip(TipText("one\n  two <3")), "one\n  two <3") << "lines and blanks stay";
}

TEST(PlainText, IsCutAndBroughtOnALineWhereItIsOnlyShown) {
  EXPECT_EQ(OneLine("two\nlines\tand a tab"), "two lines and a tab");
  EXPECT_EQ(ItemText("a\tb"), "a b") << "no column of its own";
  EXPECT_EQ(OneLine("\xff\xfe z\xc3\xa4hl").right(4), QString::fromUtf8("z\xc3\xa4hl")) << "bad bytes stay bad";
  for (const char* each : {"x", "\xc3\xa4", "\xf0\x9f\x9c\xa8"}) {
    CString text;
    for (int i = 0; i < 100'000; ++i) text += each;
    const QString shown = CutText(text);
    EXPECT_LT(shown.size(), 1100);
    EXPECT_TRUE(shown.endsWith(QChar(0x2026)));
    EXPECT_FALSE(shown[shown.size() - 2].isHighSurrogate()) << "half a character";
  }
}

}  // namespace
}  // namespace tallyscope
