// SPDX-License-Identifier: MIT
// A user who reads every message and answers Ok.
#pragma once

#include <string>
#include <vector>

#include "base/user_interface.h"

namespace brevant::link {

class RecordingUi final : public base::UserInterface {
 public:
  std::vector<base::Message> messages;

  base::Answer ShowMessage(const base::Message& message) override {
    messages.push_back(message);
    return base::Answer::Ok;
  }
  void Beep() override {}
  void SetTitle(std::string_view) override {}
  void BeginProgress(std::string_view, std::string_view, bool) override {}
  bool UpdateProgress(std::string_view, long, long) override { return true; }
  void EndProgress() override {}
  void SetBusyCursor(bool) override {}

  // The texts since the last call.
  std::vector<std::string> TakeTexts() {
    std::vector<std::string> texts;
    for (const base::Message& message : messages) texts.push_back(message.text);
    messages.clear();
    return texts;
  }
};

}  // namespace brevant::link
