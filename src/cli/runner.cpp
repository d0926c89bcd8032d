// SPDX-License-Identifier: MIT
#include "cli/runner.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <sstream>

#include "base/files.h"
#include "cli/interrupt.h"
#include "cli/say.h"

namespace brevant::cli {
namespace {

// What a longer line is cannot be a command.
constexpr std::size_t kLongestLine = 100000;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string FirstWord(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  const std::size_t last = line.find_first_of(" \t\r", first);
  return std::string(line.substr(first, last == std::string_view::npos ? last : last - first));
}

int StatusOf(const Result& result) {
  const bool interrupted = result.status == ExitStatus::Interrupted;
  return interrupted ? InterruptStatus() : static_cast<int>(result.status);
}

}  // namespace

bool Runner::Line(std::string_view line, bool at_prompt) {
  const std::string name = FirstWord(line);
  if (name.empty() || name.front() == '#') return true;
  Result result =
      line.size() > kLongestLine
          ? UsageError(fmt::format("a line of {} characters is no command", line.size()))
          : session_.Execute(line);
  if (Interrupted() && result.ok()) {
    result.status = ExitStatus::Interrupted;
    result.error = "interrupted when this was done";
  }
  Report(name.substr(0, 40), result);
  ClearInterrupt();
  if (result.quit || Leaving() || output_lost_) return false;
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
  bool first = true;
  for (std::string line; !Interrupted() && std::getline(lines, line); first = false) {
    std::string_view command = line;
    if (first && command.starts_with(kByteOrderMark)) command.remove_prefix(kByteOrderMark.size());
    if (!Line(command)) return false;
  }
  if (!Interrupted()) return true;
  Report("-x", Interruption(" before the next command"));
  return false;
}

void Runner::Report(std::string_view name, const Result& result) {
  if (!result.ok()) status_ = StatusOf(result);
  if (options_.json) {
    nlohmann::ordered_json object{{"ok", result.ok()}, {"command", name}};
    if (result.fields.is_object()) object.update(result.fields);
    if (!result.ok()) {
      object["error"] = result.error;
      object["status"] = status_;
    }
    using nlohmann::ordered_json;
    Print(object.dump(-1, ' ', true, ordered_json::error_handler_t::replace) + '\n');
    return;
  }
  Print(result.text);
  if (result.ok() && !result.note.empty() && !options_.quiet) {
    Say("{}\n", result.note);
  }
  if (!result.ok()) Say("{}: {}\n", name, result.error);
}

// A result that nobody receives is a failure: a full disk, or a reader that has gone.
void Runner::Print(const std::string& text) {
  std::fputs(text.c_str(), stdout);
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return;
  const int reason = errno;
  if (!std::exchange(output_lost_, true)) {
    Say("cannot write the results: {}\n", std::strerror(reason));
  }
  status_ = static_cast<int>(ExitStatus::File);
}

void Runner::StopBeforeLeaving() {
  status_ = InterruptStatus();
  if (!session_.debugger().Busy()) return;
  Result stopped = session_.Execute("stop");
  if (!stopped.ok()) stopped = session_.Execute("reset");
  Say("{}\n", stopped.ok() ? "The target was stopped: " + stopped.note
                           : "The target may still be running: " + stopped.error);
}

}  // namespace brevant::cli
