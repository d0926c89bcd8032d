// SPDX-License-Identifier: MIT
#include "cli/runner.h"

#include <fmt/format.h>

#include <cstdio>
#include <fstream>
#include <iostream>

#include "base/files.h"
#include "cli/interrupt.h"

namespace brevant::cli {
namespace {

// What a longer line is cannot be a command.
constexpr std::size_t kLongestLine = 100000;

std::string FirstWord(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  const std::size_t last = line.find_first_of(" \t\r", first);
  return std::string(line.substr(first, last == std::string_view::npos ? last : last - first));
}

}  // namespace

bool Runner::Line(std::string_view line, bool at_prompt) {
  const std::string name = FirstWord(line);
  if (name.empty() || name.front() == '#') return true;
  Result result =
      line.size() > kLongestLine
          ? UsageError(fmt::format("a line of {} characters is no command", line.size()))
          : session_.Execute(line);
  if (Interrupted() && result.ok()) result = Failure(ExitStatus::Failed, "interrupted");
  ClearInterrupt();
  Report(name.substr(0, 40), result);
  if (result.quit) return false;
  return at_prompt || result.ok();
}

bool Runner::File(const std::string& name) {
  if (name == "-") return Lines(std::cin);
  // Opening a folder succeeds on some systems and reads as nothing; ReadFile says what it is.
  const base::FileText text = base::ReadFile(name);
  if (!text.ok()) {
    Report("-x", Failure(ExitStatus::File, fmt::format("cannot read {}: {}", name, text.error)));
    return false;
  }
  std::istringstream lines(text.text);
  return Lines(lines);
}

bool Runner::Lines(std::istream& lines) {
  std::string line;
  while (std::getline(lines, line)) {
    if (!Line(line)) return false;
  }
  return true;
}

void Runner::Report(std::string_view name, const Result& result) {
  if (options_.json) {
    nlohmann::ordered_json object{{"ok", result.ok()}, {"command", name}};
    if (result.fields.is_object()) object.update(result.fields);
    if (!result.ok()) {
      object["error"] = result.error;
      object["status"] = static_cast<int>(result.status);
    }
    using nlohmann::ordered_json;
    fmt::print("{}\n", object.dump(-1, ' ', true, ordered_json::error_handler_t::replace));
  } else {
    std::fputs(result.text.c_str(), stdout);
    if (result.ok() && !result.note.empty() && !options_.quiet) {
      std::fflush(stdout);
      fmt::print(stderr, "{}\n", result.note);
    }
    if (!result.ok()) {
      std::fflush(stdout);
      fmt::print(stderr, "{}: {}\n", name, result.error);
    }
  }
  std::fflush(stdout);
  if (!result.ok()) status_ = result.status;
}

}  // namespace brevant::cli
