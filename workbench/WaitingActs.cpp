// SPDX-License-Identifier: MIT
#include "workbench/WaitingActs.h"

#include <utility>

#include "platform/ui/Dialog.h"

namespace tallyscope {

namespace {

constexpr int kLookAgain = 10;  // milliseconds, while an act waits

class Counted {
 public:
  explicit Counted(int& count) : count_(count) { ++count_; }
  ~Counted() { --count_; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

 private:
  int& count_;
};

}  // namespace

WaitingActs::WaitingActs(CDialog& window) : window_(window) {
  timer_.setInterval(kLookAgain);
  QObject::connect(&timer_, &QTimer::timeout, &window, [this] { RunWaiting(); });
}

void WaitingActs::Run(std::function<void()> act) {
  if (!window_.IsCovered() && (waiting_.empty() || running_ > 0)) return RunNow(act);
  waiting_.push_back(std::move(act));
  if (!timer_.isActive()) timer_.start();  // each start counts anew
}

void WaitingActs::RunNow(const std::function<void()>& act) {
  const Counted counted(running_);
  act();
}

// An act may open something itself, which the next one then waits for.
void WaitingActs::RunWaiting() {
  while (!waiting_.empty() && running_ == 0 && !window_.IsCovered()) {
    const auto act = std::move(waiting_.front());
    waiting_.pop_front();
    RunNow(act);
  }
  if (waiting_.empty()) timer_.stop();
}

}  // namespace tallyscope
