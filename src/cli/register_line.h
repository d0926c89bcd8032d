// SPDX-License-Identifier: MIT
// The registers as one line and as fields.
#pragma once

#include "cli/result.h"
#include "control/register_frame.h"

namespace brevant::cli {

// "PC=8000 SP=00ff HX=0000 A=00 CCR=68 V11H=0110 INZC=1000"; SP is the program's own.
Result RegisterResult(const control::RegisterFrame& frame);

}  // namespace brevant::cli
