// SPDX-License-Identifier: MIT
#include "cli/completion.h"

#include <algorithm>
#include <filesystem>

#include "cli/command_table.h"

namespace brevant::cli {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> CommandNames(std::string_view typed) {
  std::vector<std::string> names;
  for (const Command& command : Commands()) {
    if (command.name.starts_with(typed)) names.push_back(std::string(command.name) + ' ');
  }
  return names;
}

// As they continue the typed path; folders end with a slash.
std::vector<std::string> FileNames(std::string_view typed) {
  const std::size_t slash = typed.rfind('/');
  const std::string folder(slash == std::string_view::npos ? "" : typed.substr(0, slash + 1));
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end;
       !error && entry != end; entry.increment(error)) {
    const std::string name = folder + entry->path().filename().string();
    const bool hidden = name[folder.size()] == '.' && typed.size() == folder.size();
    std::error_code no_matter;
    if (name.starts_with(typed) && !hidden) {
      names.push_back(name + (entry->is_directory(no_matter) ? "/" : " "));
    }
  }
  std::ranges::sort(names);
  return names;
}

bool TakesFile(const Command& command) {
  return std::ranges::find(command.arguments, Kind::File, &Argument::kind) !=
         command.arguments.end();
}

std::vector<std::string> Candidates(std::string_view line, std::string_view word) {
  if (word.size() == line.size()) return CommandNames(word);
  const auto command = FindCommand(line.substr(0, line.find(' ')));
  return command && TakesFile(*command) ? FileNames(word) : std::vector<std::string>{};
}

}  // namespace

Completion Complete(std::string_view line) {
  const std::size_t blank = line.rfind(' ');
  const auto word = blank == std::string_view::npos ? line : line.substr(blank + 1);
  Completion completion;
  completion.candidates = Candidates(line, word);
  if (completion.candidates.empty()) return completion;
  std::string common = completion.candidates.front();
  for (const std::string& other : completion.candidates) {
    common.erase(std::ranges::mismatch(common, other).in1, common.end());
  }
  completion.insert = common.substr(word.size());
  return completion;
}

}  // namespace brevant::cli
