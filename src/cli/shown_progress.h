// SPDX-License-Identifier: MIT
// Progress of one transfer on the console; ends with its scope.
#pragma once

#include <string>
#include <utility>

#include "cli/console_ui.h"

namespace brevant::cli {

class ShownProgress {
 public:
  ShownProgress(ConsoleUi& ui, std::string text) : ui_(ui), text_(std::move(text)) {
    ui_.BeginProgress(text_, text_, true);
  }
  ~ShownProgress() { ui_.EndProgress(); }
  ShownProgress(const ShownProgress&) = delete;
  ShownProgress& operator=(const ShownProgress&) = delete;
  bool operator()(long done, long total) { return ui_.UpdateProgress(text_, done, total); }

 private:
  ConsoleUi& ui_;
  std::string text_;
};

}  // namespace brevant::cli
