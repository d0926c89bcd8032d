// SPDX-License-Identifier: MIT
// Every key of the settings file, as rows. A reader names the row, never a section and key text.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace brevant::base {

enum class SettingKind {
  Integer,    // decimal text
  Flag,       // 0 or 8; 8 marks a checked menu item
  HexString,  // hexadecimal digits without prefix; empty parses to 0
  String,
  Geometry,  // comma-separated decimal integers
};

struct SettingsKey {
  std::string_view section;
  std::string_view key;  // with a "%d" where the key is numbered
  SettingKind kind;
  std::string_view default_text;
  int buffer_size;  // of a string's reader, terminator included; 0 for numbers
  int count = 1;    // how many numbered keys there are; 0 when another key says how many
  int first = 0;    // number of the first
};

namespace keys {

// Section "config": connection.
inline constexpr SettingsKey kPort{"config", "port", SettingKind::String, "COM1", 100};
// The codes used last, 16 hexadecimal digits each; 0 is the newest.
inline constexpr SettingsKey kRecentSecurity{"config",           "Security%d", SettingKind::String,
                                             "c3c3c3c3c3c3c3c3", 100,          5};
// Sent when the target is reset by command.
inline constexpr SettingsKey kResetSecurity{"config", "Security", SettingKind::String,
                                            "C3C3C3C3C3C3C3C3", 100};
// 1 sends the security code after a reset.
inline constexpr SettingsKey kSecurityCheck{"config", "SecurityCheck", SettingKind::Integer, "1",
                                            0};
// 0 MC68HC908GP32, 1 MC68HC908QL.
inline constexpr SettingsKey kDevice{"config", "HC08Devices", SettingKind::Integer, "0", 0};

// Section "config": tool chain and symbols.
// 1 Free assembler, 2 Motorola assembler, 4 MCUEZ assembler, 8 Imagecraft C compiler, 16 Introl C
// compiler.
inline constexpr SettingsKey kCompiler{"config", "compiler", SettingKind::Integer, "1", 0};
inline constexpr SettingsKey kIntrolLibDir{"config", "IntrolLibDir", SettingKind::String, "", 255};
// Of the Imagecraft C compiler: 0 reads the ".cmd" output, 1 the ".map" output.
inline constexpr SettingsKey kImageFormat{"config", "ImageFormat", SettingKind::Integer, "0", 0};
// The line that starts the symbol table in a listing, case sensitive.
inline constexpr SettingsKey kSymbolTableStart{"config", "symtab", SettingKind::String, "", 30};

// Section "config": running.
inline constexpr SettingsKey kRunToMain{"config", "RunToMain", SettingKind::Flag, "0", 0};
inline constexpr SettingsKey kRunToMainSymbol{"config", "RunToMainSymbol", SettingKind::String,
                                              "_main", 256};
// 1 hardware break module, 0 software breakpoints.
inline constexpr SettingsKey kHardwareBreak{"config", "B32FLAG", SettingKind::Integer, "1", 0};
inline constexpr SettingsKey kNStepCount{"config", "NstepNum", SettingKind::Integer, "10", 0};
inline constexpr SettingsKey kNStepSubroutines{"config", "NStepSub", SettingKind::Integer, "1", 0};
inline constexpr SettingsKey kNStepUpdateRate{"config", "WaitNumber", SettingKind::Integer, "1", 0};
// The engine starts with 1; the N Step dialog takes an absent key as unchecked.
inline constexpr SettingsKey kNStepForever{"config", "NStepForever", SettingKind::Integer, "1", 0};
inline constexpr SettingsKey kNStepForeverInDialog{"config", "NStepForever", SettingKind::Integer,
                                                   "0", 0};

// Section "config": loading, macros and flash.
// Modification time of the program file loaded last, in decimal seconds.
inline constexpr SettingsKey kTimeStamp{"config", "TimeStamp", SettingKind::String, "1", 100};
// Bit 0: run the "before loading" macro file; bit 1: the "after reset" one.
inline constexpr SettingsKey kMacroFlags{"config", "FileLMacroFlag", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kLoadMacroFile{"config", "FileLMacrofn", SettingKind::String, "", 256};
inline constexpr SettingsKey kResetMacroFile{"config", "ResetMacrofn", SettingKind::String, "",
                                             256};
inline constexpr SettingsKey kEraseStart{"config", "EraseStart", SettingKind::HexString, "8000", 5};
inline constexpr SettingsKey kEraseEnd{"config", "EraseEnd", SettingKind::HexString, "FFFF", 5};
inline constexpr SettingsKey kProgramFile{"config", "FEEPfilename", SettingKind::String, "", 200};
// 0 programs also what stands in flash already.
inline constexpr SettingsKey kSkipSame{"config", "FlashSkipSame", SettingKind::Integer, "1", 0};
inline constexpr SettingsKey kProgramLocationAddress{"config", "pladdr", SettingKind::HexString, "",
                                                     5};
inline constexpr SettingsKey kProgramLocationBytes{"config", "plcontent", SettingKind::String, "",
                                                   48};

// Section "config": views.
// Bits 4-7: 0 Fixedsys, 16 Courier, 32 Courier New; bits 0-3: 8 or 10 points, any other value 12.
inline constexpr SettingsKey kFont{"config", "Font", SettingKind::Integer, "0", 0};
// "classic" or "quiet"; empty: as suits the desktop.
inline constexpr SettingsKey kTheme{"config", "Theme", SettingKind::String, "", 20};
// Points that are added to the size of the view font.
inline constexpr SettingsKey kZoom{"config", "Zoom", SettingKind::String, "0", 10};
// 8 shows source lines between the instructions of the program windows.
inline constexpr SettingsKey kShowSource{"config", "ShowSource", SettingKind::Flag, "0", 0};
// 1 names the registers of the device in the operands of instructions.
inline constexpr SettingsKey kRegisterNames{"config", "RegisterNames", SettingKind::Integer, "1",
                                            0};
inline constexpr SettingsKey kTabSize{"config", "TabSize", SettingKind::Integer, "8", 0};
inline constexpr SettingsKey kMatchCase{"config", "MatchCase", SettingKind::Integer, "0", 0};
// Highest address of the program windows; empty or invalid means 7FFF.
inline constexpr SettingsKey kProgramRange{"config", "progrange", SettingKind::HexString, "", 9};
// Of the data windows; empty or invalid means 10000.
inline constexpr SettingsKey kDataRange{"config", "DataAddrRange", SettingKind::HexString, "", 9};
// 1 for 16 bytes a line, 0 for 8.
inline constexpr SettingsKey kDataPerLine{"config", "DataPerLine", SettingKind::Integer, "1", 0};
// 3 bytes, 5 words.
inline constexpr SettingsKey kDataUnit{"config", "WordByte", SettingKind::Integer, "5", 0};
inline constexpr SettingsKey kDataAscii{"config", "DisPlayAscii", SettingKind::Integer, "1", 0};
// 1 shows watched values whose types are known as C writes them.
inline constexpr SettingsKey kWatchAsC{"config", "WatchAsC", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kFileIoIn{"config", "FileIoIn", SettingKind::String, "", 100};
inline constexpr SettingsKey kFileIoOut{"config", "FileIoOut", SettingKind::String, "", 100};
inline constexpr SettingsKey kSaveOnExit{"config", "saveonexit", SettingKind::Flag, "0", 0};

// Section "window": geometry is "left,top,width,height"; the frame adds its last size state.
inline constexpr SettingsKey kFrameGeometry{"window", "client", SettingKind::Geometry, "", 100};
inline constexpr SettingsKey kWatchGeometry{"window", "watch", SettingKind::Geometry, "", 128};
inline constexpr SettingsKey kRegistersGeometry{"window", "regs", SettingKind::Geometry, "", 99};
inline constexpr SettingsKey kSourceGeometry{"window", "csrc", SettingKind::Geometry, "", 99};
inline constexpr SettingsKey kStackGeometry{"window", "stack", SettingKind::Geometry, "", 99};
inline constexpr SettingsKey kCallsGeometry{"window", "calls", SettingKind::Geometry, "", 99};
inline constexpr SettingsKey kVariablesGeometry{"window", "vars", SettingKind::Geometry, "", 99};
inline constexpr SettingsKey kVariablesOpen{"window", "nvars", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kChipGeometry{"window", "chip", SettingKind::Geometry, "", 99};
inline constexpr SettingsKey kChipOpen{"window", "nchip", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kTraceGeometry{"window", "trace", SettingKind::Geometry, "", 99};
inline constexpr SettingsKey kWatchOpen{"window", "nwatch", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kSourceOpen{"window", "ncsrc", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kStackOpen{"window", "nstack", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kCallsOpen{"window", "ncalls", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kTraceOpen{"window", "ntrace", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kProfileOpen{"window", "nprofile", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kProfileGeometry{"window", "profile", SettingKind::Geometry, "", 99};
inline constexpr SettingsKey kProgramWindowCount{"window", "nprog", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kDataWindowCount{"window", "ndata", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kProgramGeometry{"window", "prog%d", SettingKind::Geometry, "", 99, 0};
inline constexpr SettingsKey kDataGeometry{"window", "data%d", SettingKind::Geometry, "", 99, 0};
inline constexpr SettingsKey kDataFirstLine{"window", "data%da", SettingKind::Integer, "0", 0, 0};
inline constexpr SettingsKey kDataAttribute{"window", "data%dp", SettingKind::Integer, "128", 0, 0};

// Section "path".
inline constexpr SettingsKey kRecentFile{"path", "loadfile%d", SettingKind::String, "", 100, 5};
// Breakpoints of the images that were worked on last: "0100 0123 /home/me/count.s19".
inline constexpr SettingsKey kImageBreakpoints{
    "path", "breakpoints%d", SettingKind::String, "", 700, 5};
// A folder with sources, a tab, and the folder of the images whose sources lie there.
inline constexpr SettingsKey kSourceFolder{"path", "sourcefolder%d", SettingKind::String, "", 1000,
                                           20};
// Last macro file run on demand. The default is ferrodex.mac in the start-up folder, which only the
// reader knows.
inline constexpr SettingsKey kMacroFile{"path", "macrofile", SettingKind::String, "", 200};

// Section "ports": the device behind each logical port, "/dev/ttyUSB0" or "simulator".
inline constexpr SettingsKey kPortDevice{"ports", "COM%d", SettingKind::String, "", 256, 4, 1};

}  // namespace keys

// All rows in the order above, for documentation, tests and tools.
std::span<const SettingsKey> AllSettingsKeys();

// The n-th key of a numbered row ("Security%d", 3 -> "Security3").
std::string NumberedKey(const SettingsKey& row, int n);

}  // namespace brevant::base
