// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>

#include <QTimer>

namespace tallyscope {

class CDialog;

// Acts of a window that take down what code may be running in: pages, sessions, the window itself. While a menu, a
// dialog or anything else with an event loop of its own is open on top of the window, the page that opened it is on the
// stack; then an act waits, and runs in its turn when the stack is the window's own again.
class WaitingActs {
 public:
  explicit WaitingActs(CDialog& window);
  WaitingActs(const WaitingActs&) = delete;
  WaitingActs& operator=(const WaitingActs&) = delete;

  // At once where nothing is open and no act waits. An act may run others, which are parts of it.
  void Run(std::function<void()> act);
  void Forget() { waiting_.clear(); }  // none of those that wait is wanted any more
  bool AreWaiting() const { return !waiting_.empty(); }

 private:
  void RunNow(const std::function<void()>& act);
  void RunWaiting();

  CDialog& window_;
  std::deque<std::function<void()>> waiting_;
  int running_ = 0;
  QTimer timer_;
};

}  // namespace tallyscope
