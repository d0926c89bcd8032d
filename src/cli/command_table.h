// SPDX-License-Identifier: MIT
// The console's commands as rows: dispatch, argument checks, help and completion read them. The
// rows of a group stand at the end of its commands_*.cpp, below what they do.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/arguments.h"
#include "cli/result.h"

namespace brevant::cli {

class Session;

struct Command {
  std::string_view name;
  ArgumentList arguments;
  bool while_running = false;  // allowed while the target runs
  Result (*run)(Session& session, const ParsedArguments& arguments) = nullptr;
  std::string_view help;
};
inline constexpr bool kStopped = false;
inline constexpr bool kAlways = true;

std::span<const Command> TargetCommands();
std::span<const Command> CodeCommands();
std::span<const Command> RunCommands();
std::span<const Command> FileIoCommands();
std::span<const Command> ValueCommands();
std::span<const Command> ChipCommands();
std::span<const Command> ImageCommands();
std::span<const Command> SymbolCommands();
std::span<const Command> FlashCommands();
std::span<const Command> ConsoleCommands();

// All groups' rows, in the order of help.
std::vector<Command> Commands();
// Nothing when there is no such command.
std::optional<Command> FindCommand(std::string_view name);
// One line a command.
std::string CommandSummary();

}  // namespace brevant::cli
