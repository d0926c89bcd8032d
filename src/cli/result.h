// SPDX-License-Identifier: MIT
// What one command has to say: text lines for people, fields for programs, and how it ended.
#pragma once

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "base/address.h"
#include "cli/exit_status.h"

namespace brevant::cli {

struct Result {
  ExitStatus status = ExitStatus::Ok;
  std::string text;               // standard output, complete lines
  nlohmann::ordered_json fields;  // of the --json object
  std::string note;               // for people, on standard error, kept back when quiet
  std::string error;              // what went wrong and what to do about it; empty when all is well
  bool quit = false;

  bool ok() const { return status == ExitStatus::Ok; }
};

inline Result Failure(ExitStatus status, std::string error) {
  Result result;
  result.status = status;
  result.error = std::move(error);
  return result;
}

inline Result UsageError(std::string error) {
  return Failure(ExitStatus::Usage, std::move(error));
}

// How far it had come.
inline Result Interruption(std::string how_far) {
  return Failure(ExitStatus::Interrupted, "interrupted" + std::move(how_far));
}

inline Result DamagedLine(base::Address address) {
  return Failure(ExitStatus::NoAnswer,
                 fmt::format("the line damaged the block at {:04x} each time, and what was read or "
                             "written there is in doubt: check the cable, then do it again",
                             address));
}

inline Result LinkLost() {
  return Failure(ExitStatus::NoAnswer,
                 "the link to the target is lost: check cable and power, then start again");
}

}  // namespace brevant::cli
