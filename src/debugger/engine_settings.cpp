// SPDX-License-Identifier: MIT
#include "debugger/engine_settings.h"

namespace brevant::debugger {
namespace {

namespace keys = base::keys;
using symbols::ToolChain;

std::optional<std::string> RunToMainSymbol(const base::SettingsFile& settings,
                                           ToolChain tool_chain) {
  const bool for_c = tool_chain == ToolChain::Imagecraft || tool_chain == ToolChain::Sdcc;
  if (!for_c || settings.Integer(keys::kRunToMain) == 0) return std::nullopt;
  return settings.String(keys::kRunToMainSymbol);
}

}  // namespace

EngineSettings ReadEngineSettings(const base::SettingsFile& settings) {
  const auto tool_chain = static_cast<ToolChain>(settings.Integer(keys::kCompiler));
  return {.device = devices::BySettingsNumber(settings.Integer(keys::kDevice)),
          .tool_chain = tool_chain,
          .break_mode = settings.Integer(keys::kHardwareBreak) != 0 ? control::BreakMode::Hardware
                                                                    : control::BreakMode::Software,
          .n_step = control::LoadNStepSettings(settings),
          .run_to_main = RunToMainSymbol(settings, tool_chain),
          .symbol_table_start = settings.String(keys::kSymbolTableStart)};
}

}  // namespace brevant::debugger
