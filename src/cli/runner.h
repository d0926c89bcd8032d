// SPDX-License-Identifier: MIT
// Runs command lines, wherever they come from, and prints their results.
#pragma once

#include <istream>
#include <string>
#include <string_view>

#include "cli/options.h"
#include "cli/result.h"
#include "cli/session.h"

namespace brevant::cli {

class Runner {
 public:
  Runner(Session& session, const Options& options) : session_(session), options_(options) {}

  // Runs one line and prints its result. False once the session is over: after quit, when the
  // program is to end, and after a failure unless the lines come from a prompt.
  bool Line(std::string_view line, bool at_prompt = false);
  // Runs the lines of a file of commands, "-" being standard input.
  bool File(const std::string& name);
  // Prints the result of something that is not a command of the table.
  void Report(std::string_view name, const Result& result);
  // A signal ends the program: what runs on the target is stopped, by a reset where a break has no
  // effect, since nobody is there to do it later.
  void StopBeforeLeaving();

  // The program's exit status.
  int status() const { return status_; }

 private:
  bool Lines(std::istream& lines);
  void Print(const std::string& text);

  Session& session_;
  const Options& options_;
  int status_ = 0;
  bool output_lost_ = false;
};

}  // namespace brevant::cli
