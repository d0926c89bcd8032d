// SPDX-License-Identifier: MIT
#include "workspace/file_choosers.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "base/file_names.h"

namespace brevant::workspace {
namespace {

constexpr FileFilter kS19{"S19 file (*.S19)", "*.S19"};
constexpr FileFilter kSx{"SX file (*.SX)", "*.SX"};
constexpr FileFilter kTxt{"TXT file (*.TXT)", "*.TXT"};
constexpr FileFilter kCfg{"CFG file (*.CFG)", "*.CFG"};
constexpr FileFilter kAll{"All file (*.*)", "*.*"};

constexpr std::array kAnyImage{FileFilter{"S19 file (*.S19,*.HEX,*.SX)", "*.S19;*.hex;*.sx"}, kS19,
                               FileFilter{"HEX file (*.HEX)", "*.HEX"}, kSx};
constexpr std::array kImagecraftImage{FileFilter{"S19 file (*.S19)", "*.s19"}};
constexpr std::array kIntrolImage{FileFilter{"E12 file (*.E12)", "*.E12"}};
constexpr std::array kFlashFile{kSx, kS19};
constexpr std::array kSymbolFile{FileFilter{"LST file (*.LST)", "*.LST"},
                                 FileFilter{"SYM file (*.SYM)", "*.SYM"}, kTxt, kAll};
constexpr std::array kMacroFile{FileFilter{"MAC file (*.MAC)", "*.MAC"}, kTxt, kAll};
constexpr std::array kWatchFile{kCfg};
constexpr std::array kTextFile{kTxt, kAll};
constexpr FileFilter kHex{"HEX file (*.HEX)", "*.HEX"};
constexpr FileFilter kBinary{"Binary file (*.BIN)", "*.BIN"};
constexpr std::array kSaveMemory{kS19, kSx, kHex, kBinary};
constexpr std::array kCompareFile{
    FileFilter{"Image (*.S19,*.HEX,*.SX,*.BIN)", "*.S19;*.hex;*.sx;*.bin"}, kAll};

constexpr std::array kSourceFile{
    FileFilter{"Source file (*.C,*.H,*.ASM,*.S,*.SRC)", "*.C;*.H;*.ASM;*.S;*.SRC"}, kAll};

struct ChooserRow {
  Chooser chooser;
  ChooserKind kind;
  std::span<const FileFilter> filters;
  std::string_view extension;   // with nothing to start from
  const char* title = nullptr;  // null: as for all
};

constexpr std::array kTraceTable{FileFilter{"CSV file (*.CSV)", "*.CSV"}, kAll};

constexpr std::array<ChooserRow, 13> kChooserRows{{
    {Chooser::Image, ChooserKind::Open, kAnyImage, "txt"},
    {Chooser::FlashFile, ChooserKind::Open, kFlashFile, "txt"},
    {Chooser::SymbolFile, ChooserKind::Open, kSymbolFile, "txt"},
    {Chooser::MacroFile, ChooserKind::Open, kMacroFile, "txt"},
    {Chooser::WatchOpen, ChooserKind::Open, kWatchFile, "txt"},
    {Chooser::WatchSave, ChooserKind::SaveConfirming, kWatchFile, "CFG"},
    {Chooser::InputText, ChooserKind::Open, kTextFile, "txt"},
    {Chooser::OutputText, ChooserKind::SaveExisting, kTextFile, "txt"},
    {Chooser::SaveMemory, ChooserKind::SaveConfirming, kSaveMemory, "s19", "Save memory as"},
    {Chooser::CompareFile, ChooserKind::Open, kCompareFile, "s19", "Compare with file"},
    {Chooser::SourceFile, ChooserKind::Open, kSourceFile, "", "Find the source file"},
    {Chooser::TraceTable, ChooserKind::SaveConfirming, kTraceTable, "csv", "Export the trace as"},
    {Chooser::Report, ChooserKind::SaveConfirming, kTextFile, "txt", "Save the report as"},
}};

std::span<const FileFilter> ImageFilters(symbols::ToolChain tool_chain) {
  switch (tool_chain) {
    case symbols::ToolChain::Introl:
      return kIntrolImage;
    case symbols::ToolChain::Imagecraft:
      return kImagecraftImage;
    default:
      return kAnyImage;
  }
}

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) {
    return c < 0x80 ? static_cast<char>(std::tolower(c)) : static_cast<char>(c);
  });
  return text;
}

}  // namespace

FileChooser PrepareChooser(Chooser chooser, std::string_view start, symbols::ToolChain tool_chain,
                           std::string_view current_directory) {
  const ChooserRow& row = kChooserRows.at(static_cast<std::size_t>(chooser));
  FileChooser prepared;
  if (row.title != nullptr) prepared.title = row.title;
  prepared.kind = row.kind;
  prepared.any_length = chooser == Chooser::SourceFile;
  prepared.filters = chooser == Chooser::Image ? ImageFilters(tool_chain) : row.filters;
  if (start.empty()) {
    prepared.start_directory = current_directory;
    prepared.default_extension = row.extension;
  } else {
    prepared.start_directory = base::DirectoryOf(start);
    prepared.default_extension = base::ExtensionOf(start);
  }
  return prepared;
}

std::vector<std::string> BothCases(std::string_view pattern) {
  std::vector<std::string> patterns;
  while (!pattern.empty()) {
    const std::string single(pattern.substr(0, pattern.find(';')));
    pattern.remove_prefix(std::min(single.size() + 1, pattern.size()));
    for (std::string spelled : {base::UpperCase(single), LowerCase(single)}) {
      if (std::find(patterns.begin(), patterns.end(), spelled) == patterns.end()) {
        patterns.push_back(std::move(spelled));
      }
    }
  }
  return patterns;
}

}  // namespace brevant::workspace
