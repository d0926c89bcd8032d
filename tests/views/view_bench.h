// SPDX-License-Identifier: MIT
// Views on a simulated board, and a user who only counts.
#pragma once

#include <string>
#include <vector>

#include "base/user_interface.h"
#include "control/bench.h"

namespace brevant::views {

using control::ByteList;

struct User final : base::UserInterface {
  int beeps = 0;
  std::vector<std::string> messages;

  base::Answer ShowMessage(const base::Message& message) override {
    messages.push_back(message.text);
    return base::Answer::Ok;
  }
  void Beep() override { ++beeps; }
  void SetTitle(std::string_view) override {}
  void BeginProgress(std::string_view, std::string_view, bool) override {}
  bool UpdateProgress(std::string_view, long, long) override { return true; }
  void EndProgress() override {}
  void SetBusyCursor(bool) override {}
};

class ViewBench : public control::Bench {
 protected:
  User user;

  // Host bytes sent since the last call.
  std::size_t BytesSent() {
    const std::size_t count = target.board().host_log().size();
    target.board().ClearHostLog();
    return count;
  }
};

}  // namespace brevant::views
