// SPDX-License-Identifier: MIT
// The stopped program as expressions see it. Rests on the register frame.
#pragma once

#include "control/register_frame.h"
#include "eval/context.h"

namespace brevant::control {

inline eval::Registers RegistersOf(const RegisterFrame& frame) {
  return {.pc = frame.PC, .sp = frame.ProgramSP(), .hx = frame.HX, .a = frame.A, .ccr = frame.CCR};
}

// At PC. Holds as long as the program stays stopped there.
inline eval::Context ContextOf(memory::Memory& memory, const symbols::DebugInfo& info,
                               const RegisterFrame& frame, eval::Reading reading) {
  return {memory, info, RegistersOf(frame), reading};
}

}  // namespace brevant::control
