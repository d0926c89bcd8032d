// SPDX-License-Identifier: MIT
// Line editing with history and completion of command names, on libedit.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace brevant::cli {

class Prompt {
 public:
  // idle is called about ten times a second while a line is awaited; what it returns is shown above
  // the line being typed.
  explicit Prompt(std::function<std::optional<std::string>()> idle);
  ~Prompt();
  Prompt(const Prompt&) = delete;
  Prompt& operator=(const Prompt&) = delete;

  // Nothing at end of input.
  std::optional<std::string> ReadLine();

 private:
  std::string history_file_;
};

}  // namespace brevant::cli
