// SPDX-License-Identifier: MIT
// A user who reads every message, answers as told and may cancel.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/user_interface.h"

namespace brevant::base {

class TestUser final : public UserInterface {
 public:
  bool agrees = true;
  // Cancels once progress has been shown this often; never when negative.
  int cancels_after = -1;
  std::vector<Message> messages;
  std::vector<std::string> texts;  // of the messages
  std::string title;
  std::string progress_text;
  int beeps = 0;
  int progress_windows = 0;
  int busy_cursors = 0;

  Answer ShowMessage(const Message& message) override {
    messages.push_back(message);
    texts.push_back(message.text);
    switch (message.buttons) {
      case Buttons::Ok:
        return Answer::Ok;
      case Buttons::OkCancel:
        return agrees ? Answer::Ok : Answer::Cancel;
      case Buttons::YesNo:
        return agrees ? Answer::Yes : Answer::No;
    }
    return Answer::Cancel;
  }
  // What is offered most is taken last.
  std::optional<std::size_t> takes_offer = {};
  std::size_t offers = 0;  // with the last message
  std::optional<std::size_t> Offer(const Message& message,
                                   std::span<const char* const> buttons) override {
    ShowMessage(message);
    offers = buttons.size();
    return takes_offer;
  }
  void Beep() override { ++beeps; }
  void SetTitle(std::string_view text) override { title = text; }
  void BeginProgress(std::string_view, std::string_view, bool) override { ++progress_windows; }
  bool UpdateProgress(std::string_view text, long, long) override {
    progress_text = text;
    return cancels_after < 0 || cancels_after-- > 0;
  }
  void EndProgress() override { --progress_windows; }
  void SetBusyCursor(bool busy) override { busy_cursors += busy ? 1 : -1; }

  // Since the last call.
  std::vector<std::string> TakeTexts() { return std::exchange(texts, {}); }
};

}  // namespace brevant::base
