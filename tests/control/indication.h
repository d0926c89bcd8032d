// SPDX-License-Identifier: MIT
// What the user would see of repeated stepping and tracing.
#pragma once

#include <string>

#include "base/user_interface.h"
#include "control/run_indication.h"

namespace brevant::control {

struct Indication final : RunIndication {
  void ShowNStepping(bool on) override { n_stepping = on; }
  void ShowTracing(bool on) override { tracing = on; }
  void OpenTraceWindow() override { window_open = true; }
  void ShowTraceLog(const std::string& path, int count) override {
    log_path = path;
    line_count = count;
  }
  bool n_stepping = false, tracing = false, window_open = false;
  std::string log_path;
  int line_count = -1;
};

struct MessageCatcher final : base::UserInterface {
  base::Answer ShowMessage(const base::Message& message) override {
    last = message;
    ++count;
    return base::Answer::Ok;
  }
  void Beep() override {}
  void SetTitle(std::string_view) override {}
  void BeginProgress(std::string_view, std::string_view, bool) override {}
  bool UpdateProgress(std::string_view, long, long) override { return true; }
  void EndProgress() override {}
  void SetBusyCursor(bool) override {}
  base::Message last;
  int count = 0;
};

}  // namespace brevant::control
