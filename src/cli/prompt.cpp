// SPDX-License-Identifier: MIT
#include "cli/prompt.h"

#include <editline/readline.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "cli/command_table.h"

namespace brevant::cli {
namespace {

constexpr int kHistoryLines = 1000;
constexpr const char* kPromptText = "brevant> ";

// The line editor calls back without an argument of ours.
std::function<std::optional<std::string>()>& IdleHook() {
  static std::function<std::optional<std::string>()> hook;
  return hook;
}

int CallIdleHook() {
  if (const auto line = IdleHook()()) {
    fmt::print("\r{}\n", *line);
    rl_on_new_line();
    rl_forced_update_display();
  }
  return 0;
}

char* CompleteName(const char* start, int state) {
  static std::size_t next = 0;
  if (state == 0) next = 0;
  for (const std::vector<Command> commands = Commands(); next < commands.size();) {
    const std::string_view name = commands[next++].name;
    if (name.starts_with(start)) return strdup(std::string(name).c_str());
  }
  return nullptr;
}

bool TakesFile(const Command& command) {
  return std::ranges::find(command.arguments, Kind::File, &Argument::kind) !=
         command.arguments.end();
}

// Command names at the start of the line; after a command that takes one file names, which are the
// editor's own completion.
char** Complete(const char* text, int start, int) {
  if (start == 0) return rl_completion_matches(text, CompleteName);
  const std::string_view line = rl_line_buffer;
  const auto command = FindCommand(line.substr(0, line.find(' ')));
  rl_attempted_completion_over = command && TakesFile(*command) ? 0 : 1;
  return nullptr;
}

std::string HistoryFile() {
  std::filesystem::path folder;
  if (const char* state = std::getenv("XDG_STATE_HOME"); state != nullptr && *state != '\0') {
    folder = state;
  } else if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
    folder = std::filesystem::path(home) / ".local" / "state";
  } else {
    return {};
  }
  folder /= "brevant";
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  return error ? std::string() : (folder / "history").string();
}

}  // namespace

Prompt::Prompt(std::function<std::optional<std::string>()> idle) : history_file_(HistoryFile()) {
  IdleHook() = std::move(idle);
  rl_initialize();
  rl_event_hook = CallIdleHook;
  rl_attempted_completion_function = Complete;
  using_history();
  stifle_history(kHistoryLines);
  if (!history_file_.empty()) read_history(history_file_.c_str());
}

Prompt::~Prompt() {
  if (!history_file_.empty()) write_history(history_file_.c_str());
  rl_event_hook = nullptr;
  IdleHook() = nullptr;
}

std::optional<std::string> Prompt::ReadLine() {
  char* typed = readline(kPromptText);
  if (typed == nullptr) return {};
  std::string line = typed;
  std::free(typed);
  if (!line.empty()) add_history(line.c_str());
  return line;
}

}  // namespace brevant::cli
