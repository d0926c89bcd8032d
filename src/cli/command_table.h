// SPDX-License-Identifier: MIT
// The console's commands as rows: dispatch, argument checks, help and completion read them.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "cli/result.h"

namespace brevant::cli {

class Session;
using Arguments = std::span<const std::string>;

struct Command {
  std::string_view name;
  std::string_view arguments;  // as help shows them
  int least = 0;               // how many arguments
  int most = 0;                // -1: any number
  bool while_running = false;  // allowed while the target runs
  Result (*run)(Session& session, Arguments arguments) = nullptr;
  std::string_view help;
};

std::span<const Command> Commands();
// Nothing when there is no such command.
const Command* FindCommand(std::string_view name);
// One line a command.
std::string CommandSummary();

}  // namespace brevant::cli
