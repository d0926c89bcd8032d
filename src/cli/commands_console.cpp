// SPDX-License-Identifier: MIT
// The console itself.
#include <fmt/format.h>

#include "cli/command_table.h"
#include "cli/session.h"

namespace brevant::cli {
namespace {

Result Help(Session&, const ParsedArguments& arguments) {
  Result result;
  if (!arguments.Has(0)) {
    result.text = CommandSummary();
    for (const Command& command : Commands()) result.fields["commands"].push_back(command.name);
    return result;
  }
  const auto command = FindCommand(arguments.Text(0));
  if (!command) return UsageError(fmt::format("there is no command \"{}\"", arguments.Text(0)));
  const std::string usage = Usage(command->arguments);
  result.text = fmt::format("{} {}\n  {}\n", command->name, usage, command->help);
  result.fields = {{"name", command->name}, {"arguments", usage}, {"help", command->help}};
  return result;
}

Result Quit(Session&, const ParsedArguments&) {
  Result result;
  result.quit = true;
  return result;
}

Result Report(Session& session, const ParsedArguments& arguments) {
  const std::string& path = arguments.Text(0);
  const bool with_security = arguments.HasFlag("--with-security");
  const std::string error =
      session.WriteReport(path, with_security ? link::Secrets::Show : link::Secrets::Hide);
  if (!error.empty()) {
    return Failure(ExitStatus::File, fmt::format("cannot write {}: {}", path, error));
  }
  Result result;
  result.text = fmt::format("report {}\n", path);
  result.fields = {{"file", path}, {"security", with_security}};
  return result;
}

constexpr Command kRows[] = {
    {"help", {Optional(Text("COMMAND"))}, kAlways, Help, "this list, or one command"},
    {"report",
     {File("FILE"), Flag("--with-security")},
     kAlways,
     Report,
     "save versions, settings and the last of the wire as a text"},
    {"quit", {}, kAlways, Quit, "leave; the target keeps its state"},
};

}  // namespace

std::span<const Command> ConsoleCommands() {
  return kRows;
}

}  // namespace brevant::cli
