// SPDX-License-Identifier: MIT
// Line editing with history and completion of command and file names, on libedit. Text is UTF-8.
#pragma once

#include <histedit.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace brevant::cli {

class Prompt {
 public:
  // idle is called about ten times a second while a line is awaited; what it returns is shown above
  // the line being typed.
  explicit Prompt(std::function<std::optional<std::string>()> idle);
  ~Prompt();
  Prompt(const Prompt&) = delete;
  Prompt& operator=(const Prompt&) = delete;

  enum class End {
    Line,
    EndOfInput,
    Interrupted,  // by a signal; the line is what was typed so far
  };
  struct Typed {
    End end = End::Line;
    std::string line;
  };
  Typed ReadLine();
  // Whether the user types something that begins with y.
  static bool Ask(const std::string& question);

 private:
  // The editor's own: one character, 0 at the end of input, -1 when interrupted.
  static int NextCharacter(EditLine* editor, wchar_t* character);

  std::function<std::optional<std::string>()> idle_;
  std::string history_file_;
  std::string dropped_;
  std::unique_ptr<History, void (*)(History*)> history_;
  std::unique_ptr<EditLine, void (*)(EditLine*)> editor_;
};

}  // namespace brevant::cli
