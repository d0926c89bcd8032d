// SPDX-License-Identifier: MIT
// The engine's user interface with messages that can be kept back until an operation has ended.
#pragma once

#include <utility>
#include <vector>

#include "base/user_interface.h"

namespace brevant::frontend {

class HoldingUi final : public base::UserInterface {
 public:
  // Borrows the one that shows.
  explicit HoldingUi(base::UserInterface& ui) : ui_(ui) {}

  // Messages that only inform are kept back from now on; Take returns them and ends it.
  void Hold() { holding_ = true; }
  std::vector<base::Message> Take() {
    holding_ = false;
    return std::exchange(held_, {});
  }

  base::Answer ShowMessage(const base::Message& message) override {
    if (!holding_ || message.buttons != base::Buttons::Ok) return ui_.ShowMessage(message);
    held_.push_back(message);
    return base::Answer::Ok;
  }
  void Beep() override { ui_.Beep(); }
  void SetTitle(std::string_view title) override { ui_.SetTitle(title); }
  void BeginProgress(std::string_view title, std::string_view text, bool can_cancel) override {
    ui_.BeginProgress(title, text, can_cancel);
  }
  bool UpdateProgress(std::string_view text, long done, long total) override {
    return ui_.UpdateProgress(text, done, total);
  }
  void EndProgress() override { ui_.EndProgress(); }
  void SetBusyCursor(bool busy) override { ui_.SetBusyCursor(busy); }

 private:
  base::UserInterface& ui_;
  bool holding_ = false;
  std::vector<base::Message> held_;
};

}  // namespace brevant::frontend
