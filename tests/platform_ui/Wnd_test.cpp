// SPDX-License-Identifier: MIT
#include "platform/ui/Wnd.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <memory>
#include <vector>

namespace tallyscope {
namespace {

struct Message {
  unsigned number;
  std::uintptr_t first;
  std::intptr_t second;
  bool operator==(const Message&) const = default;
};

class Listener : public QWidget, public CWnd {
 public:
  explicit Listener(std::vector<Message>* heard) : heard_(heard) {}
  QWidget* GetWidget() override { return this; }

 protected:
  std::intptr_t OnMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) override {
    heard_->push_back({message, wParam, lParam});
    return 42;
  }

 private:
  std::vector<Message>* heard_;
};

TEST(Messages, SentOnesArriveAtOnceAndPostedOnesInTheirTurn) {
  std::vector<Message> heard;
  Listener window(&heard);
  window.PostMessage(1, 10, -10);
  window.PostMessage(2);
  EXPECT_EQ(window.SendMessage(3, 30, -30), 42);
  EXPECT_EQ(heard, (std::vector<Message>{{3, 30, -30}}));
  QApplication::processEvents();
  EXPECT_EQ(heard, (std::vector<Message>{{3, 30, -30}, {1, 10, -10}, {2, 0, 0}}));
}

TEST(Messages, APostedOneDiesWithItsTarget) {
  std::vector<Message> heard;
  auto window = std::make_unique<Listener>(&heard);
  window->PostMessage(1);
  window.reset();
  QApplication::processEvents();
  EXPECT_TRUE(heard.empty());
}

TEST(Controls, AreFoundByIdAndNamedForAScreenReader) {
  std::vector<Message> heard;
  Listener window(&heard);
  auto* edit = new QLineEdit(&window);
  window.AddControl(5, edit, "Key field");
  EXPECT_EQ(window.GetDlgItem(5), edit);
  EXPECT_EQ(window.GetControl<QLineEdit>(5), edit);
  EXPECT_EQ(window.GetDlgItem(6), nullptr);
  EXPECT_EQ(edit->accessibleName(), "Key field");
  EXPECT_FALSE(edit->objectName().isEmpty());
  window.EnableDlgItem(5, false);
  window.ShowDlgItem(5, false);
  window.EnableDlgItem(6, false);
  EXPECT_FALSE(edit->isEnabled());
  EXPECT_TRUE(edit->isHidden());
  delete edit;
  EXPECT_EQ(window.GetDlgItem(5), nullptr) << "a control that has gone is no longer found";
  window.EnableDlgItem(5, true);
}

TEST(Controls, TabOrderFollowsThePlaceNotTheTimeOfMaking) {
  std::vector<Message> heard;
  Listener window(&heard);
  QLineEdit before(&window), after(&window);
  QWidget part(&window);
  QLineEdit one(&part), two(&part);
  SetTabOrderAfter(&before, &part);
  std::vector<QWidget*> order;
  for (auto* each = before.nextInFocusChain(); each != &before; each = each->nextInFocusChain()) {
    if (each->focusPolicy() != Qt::NoFocus) order.push_back(each);
  }
  EXPECT_EQ(order, (std::vector<QWidget*>{&one, &two, &after}));
}

}  // namespace
}  // namespace tallyscope
