// SPDX-License-Identifier: MIT
#include "cli/command_table.h"

#include <algorithm>

#include "base/text_format.h"

namespace brevant::cli {

std::vector<Command> Commands() {
  std::vector<Command> commands;
  for (const auto group :
       {TargetCommands(), CodeCommands(), RunCommands(), FileIoCommands(), ValueCommands(),
        ChipCommands(), ImageCommands(), SymbolCommands(), FlashCommands(), ConsoleCommands()}) {
    commands.insert(commands.end(), group.begin(), group.end());
  }
  return commands;
}

std::optional<Command> FindCommand(std::string_view name) {
  const std::vector<Command> commands = Commands();
  const auto found = std::ranges::find(commands, name, &Command::name);
  return found == commands.end() ? std::nullopt : std::optional(*found);
}

std::string CommandSummary() {
  std::string summary;
  for (const Command& command : Commands()) {
    const std::string usage = Usage(command.arguments);
    summary +=
        base::Format("  %-28s %s\n", std::string(command.name) + (usage.empty() ? "" : " ") + usage,
                     std::string(command.help));
  }
  return summary;
}

}  // namespace brevant::cli
