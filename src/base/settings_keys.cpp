// SPDX-License-Identifier: MIT
#include "base/settings_keys.h"

namespace brevant::base {
namespace {

using namespace keys;
constexpr SettingsKey kAllRows[] = {kPort,
                                    kRecentSecurity,
                                    kResetSecurity,
                                    kSecurityCheck,
                                    kDevice,
                                    kCompiler,
                                    kIntrolLibDir,
                                    kImageFormat,
                                    kSymbolTableStart,
                                    kRunToMain,
                                    kRunToMainSymbol,
                                    kHardwareBreak,
                                    kNStepCount,
                                    kNStepSubroutines,
                                    kNStepUpdateRate,
                                    kNStepForever,
                                    kNStepForeverInDialog,
                                    kTimeStamp,
                                    kMacroFlags,
                                    kLoadMacroFile,
                                    kResetMacroFile,
                                    kEraseStart,
                                    kEraseEnd,
                                    kProgramFile,
                                    kSkipSame,
                                    kProgramLocationAddress,
                                    kProgramLocationBytes,
                                    kFont,
                                    kTheme,
                                    kZoom,
                                    kShowSource,
                                    kRegisterNames,
                                    kTabSize,
                                    kMatchCase,
                                    kProgramRange,
                                    kDataRange,
                                    kDataPerLine,
                                    kDataUnit,
                                    kDataAscii,
                                    kWatchAsC,
                                    kFileIoIn,
                                    kFileIoOut,
                                    kSaveOnExit,
                                    kFrameGeometry,
                                    kWatchGeometry,
                                    kRegistersGeometry,
                                    kSourceGeometry,
                                    kStackGeometry,
                                    kCallsGeometry,
                                    kTraceGeometry,
                                    kVariablesGeometry,
                                    kVariablesOpen,
                                    kChipGeometry,
                                    kChipOpen,
                                    kWatchOpen,
                                    kSourceOpen,
                                    kStackOpen,
                                    kCallsOpen,
                                    kTraceOpen,
                                    kProfileOpen,
                                    kProfileGeometry,
                                    kProgramWindowCount,
                                    kDataWindowCount,
                                    kProgramGeometry,
                                    kDataGeometry,
                                    kDataFirstLine,
                                    kDataAttribute,
                                    kRecentFile,
                                    kImageBreakpoints,
                                    kSourceFolder,
                                    kMacroFile,
                                    kPortDevice};

}  // namespace

std::span<const SettingsKey> AllSettingsKeys() {
  return kAllRows;
}

std::string NumberedKey(const SettingsKey& row, int n) {
  std::string key(row.key);
  const std::size_t number = key.find("%d");
  if (number != std::string::npos) key.replace(number, 2, std::to_string(n));
  return key;
}

}  // namespace brevant::base
