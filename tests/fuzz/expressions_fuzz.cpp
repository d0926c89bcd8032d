// SPDX-License-Identifier: MIT
// Expressions over a program of structures, arrays and pointers in a target's random RAM.
#include <string_view>

#include "control/program_context.h"
#include "eval/evaluate.h"
#include "eval/format.h"
#include "fuzz/engine.h"
#include "simulator/simulated_target.h"

using namespace brevant;

namespace {

struct Program {
  Program() {
    engine.debugger.security.GiveForSession(link::kBlankSecurityCode);
    engine.debugger.Start();
    engine.debugger.LoadSymbols(BREVANT_TEST_DATA "/programs/structs.cdb");
  }
  simulator::SimulatedTarget target{simulator::Gp32()};
  Engine engine{target, target};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Program program;
  debugger::Debugger& debugger = program.engine.debugger;
  const eval::Context context = control::ContextOf(debugger.memory, debugger.debug_info,
                                                   debugger.frame, eval::Reading::Everything);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const eval::Result result = eval::Evaluate(text, context);
  if (!result.ok()) return 0;
  eval::ValueText(result.value, context);
  eval::ValueText(result.value, context, eval::Notation::Hexadecimal);
  eval::TypeText(result.value, context);
  eval::PartsOf(result.value, context, 8);
  return 0;
}
