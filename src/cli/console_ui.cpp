// SPDX-License-Identifier: MIT
#include "cli/console_ui.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cli/interrupt.h"
#include "cli/say.h"

namespace brevant::cli {
namespace {

void PrintError(std::string_view line) {
  Say("{}\n", line);
}

}  // namespace

std::string OneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const bool blank = c == '\n' || c == ' ' || c == '\t';
    if (!blank) {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

ConsoleUi::Said ConsoleUi::TakeSaid() {
  Said said = std::move(said_);
  said_ = {};
  return said;
}

void ConsoleUi::Notice(std::string_view text) {
  said_.notices.emplace_back(text);
  if (style_.quiet || style_.json) return;
  EraseProgress();
  PrintError(text);
}

void ConsoleUi::Warn(std::string_view text) {
  said_.notices.emplace_back(text);
  if (style_.json) return;
  EraseProgress();
  PrintError(text);
}

void ConsoleUi::ErrorsAreNotices() {
  for (const std::string& error : std::exchange(said_.errors, {})) Notice(error);
}

base::Answer ConsoleUi::ShowMessage(const base::Message& message) {
  const std::string line = OneLine(message.text);
  if (message.buttons == base::Buttons::Ok) {
    if (message.severity == base::Severity::Error) {
      said_.errors.push_back(line);
    } else if (message.severity == base::Severity::Warning) {
      Warn(line);
    } else {
      Notice(line);
    }
    return base::Answer::Ok;
  }
  const bool yes_no = message.buttons == base::Buttons::YesNo;
  if (Agreed(line)) return yes_no ? base::Answer::Yes : base::Answer::Ok;
  return yes_no ? base::Answer::No : base::Answer::Cancel;
}

bool ConsoleUi::Agreed(const std::string& question) {
  if (!style_.answer_yes && ask_) {
    EraseProgress();
    return ask_(question);
  }
  if (!style_.answer_yes) said_.refused = true;
  Notice(question + (style_.answer_yes ? " yes" : " Refused: only with --yes."));
  return style_.answer_yes;
}

void ConsoleUi::Beep() {}

void ConsoleUi::SetTitle(std::string_view) {}

void ConsoleUi::BeginProgress(std::string_view title, std::string_view text, bool can_cancel) {
  can_cancel_ = can_cancel;
  UpdateProgress(text.empty() ? title : text, 0, 0);
}

bool ConsoleUi::UpdateProgress(std::string_view text, long done, long total) {
  if (style_.progress && !style_.quiet) {
    std::string line = OneLine(text);
    if (total > 0) line += fmt::format(" {}%", done * 100 / total);
    const std::size_t width = line.size();
    line.resize(std::max(width, progress_width_), ' ');
    progress_width_ = width;
    Say("\r{}", line);
    std::fflush(stderr);
  }
  return !(can_cancel_ && Interrupted());
}

void ConsoleUi::EndProgress() {
  EraseProgress();
}

void ConsoleUi::SetBusyCursor(bool) {}

void ConsoleUi::EraseProgress() {
  if (progress_width_ == 0) return;
  Say("\r{}\r", std::string(progress_width_, ' '));
  progress_width_ = 0;
}

}  // namespace brevant::cli
