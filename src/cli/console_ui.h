// SPDX-License-Identifier: MIT
// The engine's messages, questions and progress on a terminal: all of it on standard error, so that
// standard output carries results only.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/user_interface.h"

namespace brevant::cli {

class ConsoleUi final : public base::UserInterface {
 public:
  struct Style {
    bool answer_yes = false;  // questions are answered yes, else asked, else refused
    bool quiet = false;       // notices are kept back, errors are not
    bool json = false;        // messages go into the result's object instead
    bool progress = false;    // standard error is a terminal
  };
  explicit ConsoleUi(const Style& style) : style_(style) {}

  // There is someone who can be asked.
  void AnswerWith(std::function<bool(const std::string& question)> ask) { ask_ = std::move(ask); }

  // What was said since the last call, one line a message, and whether a question was refused.
  struct Said {
    std::vector<std::string> errors;
    std::vector<std::string> notices;
    bool refused = false;
  };
  Said TakeSaid();

  // A line for people, kept back when quiet.
  void Notice(std::string_view text);
  // A line that also those who asked for quiet have to see.
  void Warn(std::string_view text);
  // What was said as an error does not make the command fail after all.
  void ErrorsAreNotices();

  base::Answer ShowMessage(const base::Message& message) override;
  void Beep() override;
  void SetTitle(std::string_view title) override;
  void BeginProgress(std::string_view title, std::string_view text, bool can_cancel) override;
  bool UpdateProgress(std::string_view text, long done, long total) override;
  void EndProgress() override;
  void SetBusyCursor(bool busy) override;

 private:
  bool Agreed(const std::string& question);
  void EraseProgress();

  Style style_;
  std::function<bool(const std::string& question)> ask_;
  Said said_;
  bool can_cancel_ = false;
  std::size_t progress_width_ = 0;
};

// The messages are laid out for boxes; on a terminal they are one line.
std::string OneLine(std::string_view text);

}  // namespace brevant::cli
