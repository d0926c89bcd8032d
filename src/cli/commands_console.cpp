// SPDX-License-Identifier: MIT
// The console itself.
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/session.h"

namespace brevant::cli {

Result Help(Session&, Arguments arguments) {
  Result result;
  if (arguments.empty()) {
    result.text = CommandSummary();
    for (const Command& command : Commands()) result.fields["commands"].push_back(command.name);
    return result;
  }
  const Command* command = FindCommand(arguments[0]);
  if (command == nullptr)
    return UsageError(fmt::format("there is no command \"{}\"", arguments[0]));
  result.text = fmt::format("{} {}\n  {}\n", command->name, command->arguments, command->help);
  result.fields = {
      {"name", command->name}, {"arguments", command->arguments}, {"help", command->help}};
  return result;
}

Result Quit(Session&, Arguments) {
  Result result;
  result.quit = true;
  return result;
}

}  // namespace brevant::cli
