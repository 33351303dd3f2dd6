// SPDX-License-Identifier: MIT
// The real windows of the modal seam. Each is answered from the event loop it runs itself.
#include "platform/ui/Modal.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "platform/ui/Menu.h"
#include "platform/ui/WaitCursor.h"
#include "platform/ui/Wnd.h"

namespace tallyscope {
namespace {

// Runs `answer` on the modal window once it is open.
template <class Window, class Answer>
void WhenOpen(Answer answer) {
  QTimer::singleShot(0, [answer] {
    QWidget* open = QApplication::activePopupWidget();
    if (open == nullptr) open = QApplication::activeModalWidget();
    auto* window = dynamic_cast<Window*>(open);
    if (window == nullptr) {
      if (open == nullptr) return WhenOpen<Window>(answer);
      ADD_FAILURE() << "another window: " << open->metaObject()->className();
      open->close();
      return;
    }
    answer(*window);
  });
}

struct RealModal : testing::Test {
  RealModal() { SetModal(nullptr); }
};

TEST_F(RealModal, SentencesAreNoMarkup) {
  QString text;
  WhenOpen<QMessageBox>([&](QMessageBox& box) {
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    text = box.text();
    box.button(QMessageBox::Ok)->click();
  });
  GetModal().Tell(nullptr, "<b>x</b>.csv can't be read.");
  EXPECT_EQ(text, "<b>x</b>.csv can't be read.");
}

TEST_F(RealModal, AQuestionIsAnsweredByYesOnly) {
  for (const auto answer : {QMessageBox::Yes, QMessageBox::No}) {
    WhenOpen<QMessageBox>([answer](QMessageBox& box) { box.button(answer)->click(); });
    EXPECT_EQ(GetModal().Confirm(nullptr, "Replace it?"), answer == QMessageBox::Yes);
  }
  WhenOpen<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_FALSE(GetModal().Confirm(nullptr, "Replace it?"));
}

TEST_F(RealModal, AMenuGivesTheItemPicked) {
  CMenu menu;
  menu.AppendItem(106, "<b>Pb & Zn</b>");
  menu.AppendSeparator();
  menu.AppendItem(100, "Sort Ascending", /*checked=*/true);
  menu.AppendItem(101, "Sort Descending", false, /*enabled=*/false);
  WhenOpen<QMenu>([](QMenu& popup) {
    const auto actions = popup.actions();
    ASSERT_EQ(actions.size(), 4);
    EXPECT_EQ(actions[0]->text(), "<b>Pb && Zn</b>") << "no key is marked";
    EXPECT_EQ(GetModalDepth(), 1);
    EXPECT_TRUE(actions[1]->isSeparator());
    EXPECT_TRUE(actions[2]->isChecked());
    EXPECT_FALSE(actions[0]->isChecked());
    EXPECT_FALSE(actions[3]->isEnabled());
    popup.setActiveAction(actions[2]);
    QTest::keyClick(&popup, Qt::Key_Return);
  });
  EXPECT_EQ(GetModal().RunMenu(nullptr, menu, QPoint(10, 10)), 100);
  EXPECT_EQ(GetModalDepth(), 0);
  WhenOpen<QMenu>([](QMenu& popup) { QTest::keyClick(&popup, Qt::Key_Escape); });
  EXPECT_EQ(GetModal().RunMenu(nullptr, menu, QPoint(10, 10)), 0);
}

TEST_F(RealModal, ASavedFileGetsTheEndingOfItsKind) {
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  const QTemporaryDir folder;
  const auto save = [&](const char* name, const char* filter) {
    WhenOpen<QFileDialog>([name](QFileDialog& dialog) {
      dialog.findChild<QLineEdit*>()->setText(name);
      QMetaObject::invokeMethod(&dialog, "accept");
    });
    const auto path = GetModal().AskSaveFile(nullptr, "Save", folder.path().toStdString() + "/plot.png", filter);
    return path ? QFileInfo(ToQString(*path)).fileName().toStdString() : std::string("nothing");
  };
  EXPECT_EQ(save("chart", "Picture (*.png *.bmp);;Drawing (*.svg)"), "chart.png");
  EXPECT_EQ(save("chart.svg", "Picture (*.png *.bmp);;Drawing (*.svg)"), "chart.svg");
  EXPECT_EQ(save("chart", "All files (*)"), "chart");
  WhenOpen<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
  EXPECT_FALSE(GetModal().AskSaveFile(nullptr, "Save", folder.path().toStdString(), "All files (*)"));
}

TEST(WaitCursor, StandsWhileOneLives) {
  {
    const CWaitCursor outer;
    { const CWaitCursor inner; }
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  }
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

}  // namespace
}  // namespace tallyscope
