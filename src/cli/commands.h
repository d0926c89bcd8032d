// SPDX-License-Identifier: MIT
// The handlers behind the command table, by the file that holds them.
#pragma once

#include "cli/command_table.h"

namespace brevant::cli {

// commands_target.cpp: registers and memory.
Result Info(Session& session, Arguments arguments);
Result Regs(Session& session, Arguments arguments);
Result Set(Session& session, Arguments arguments);
Result Read(Session& session, Arguments arguments);
Result Write(Session& session, Arguments arguments);
Result Fill(Session& session, Arguments arguments);
Result Move(Session& session, Arguments arguments);
Result Reset(Session& session, Arguments arguments);

// commands_code.cpp: instructions and breakpoints.
Result Disasm(Session& session, Arguments arguments);
Result Asm(Session& session, Arguments arguments);
Result Break(Session& session, Arguments arguments);
Result Delete(Session& session, Arguments arguments);
Result Mode(Session& session, Arguments arguments);

// commands_run.cpp: stepping and running.
Result Step(Session& session, Arguments arguments);
Result Over(Session& session, Arguments arguments);
Result Go(Session& session, Arguments arguments);
Result Until(Session& session, Arguments arguments);
Result Run(Session& session, Arguments arguments);
Result Stop(Session& session, Arguments arguments);
Result Wait(Session& session, Arguments arguments);
Result NStep(Session& session, Arguments arguments);
Result Trace(Session& session, Arguments arguments);

// commands_image.cpp: programs and files.
Result Load(Session& session, Arguments arguments);
Result Verify(Session& session, Arguments arguments);
Result Save(Session& session, Arguments arguments);

// commands_symbols.cpp: symbols, source lines, tool chains and macros.
Result Toolchain(Session& session, Arguments arguments);
Result Symbols(Session& session, Arguments arguments);
Result Lookup(Session& session, Arguments arguments);
Result Line(Session& session, Arguments arguments);
Result Macro(Session& session, Arguments arguments);

// commands_flash.cpp: erasing and programming flash.
Result MassErase(Session& session, Arguments arguments);
Result Erase(Session& session, Arguments arguments);
Result Program(Session& session, Arguments arguments);
Result ProgramBytes(Session& session, Arguments arguments);
Result ProgramIrq(Session& session, Arguments arguments);

// commands_console.cpp: the console itself.
Result Help(Session& session, Arguments arguments);
Result Quit(Session& session, Arguments arguments);

}  // namespace brevant::cli
