// SPDX-License-Identifier: MIT
// How a command ended. The numbers are the program's exit status and do not change.
#pragma once

namespace brevant::cli {

enum class ExitStatus {
  Ok = 0,
  Failed = 1,  // the command failed or the target said no
  Usage = 2,
  File = 3,  // a file or its format
  Port = 4,
  NoAnswer = 5,  // no answer or time-out
  Security = 6,  // the security code was not accepted
  VerifyDiffers = 7,
  NeedsYes = 8,       // refused for want of --yes
  Interrupted = 130,  // by a signal: 128 and its number, this one for SIGINT
};

}  // namespace brevant::cli
