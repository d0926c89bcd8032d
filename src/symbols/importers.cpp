// SPDX-License-Identifier: MIT
#include "symbols/importers.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/file_names.h"
#include "base/files.h"
#include "base/text_format.h"
#include "symbols/free_assembler.h"
#include "symbols/imagecraft_cmd.h"
#include "symbols/imagecraft_map.h"
#include "symbols/info_files.h"
#include "symbols/mcuez_assembler.h"
#include "symbols/messages.h"
#include "symbols/motorola_assembler.h"
#include "symbols/sdcc_cdb.h"
#include "symbols/sdcc_map.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

// The path with what follows its last '.' replaced.
std::string Sibling(const std::string& path, std::string_view extension) {
  const std::string old = base::ExtensionOf(path);
  return path.substr(0, path.size() - old.size()).append(extension);
}

// Reads the companion and parses it; a companion that cannot be read is not of this format.
template <typename Parse>
ParsedProgram WithText(const std::string& path, Parse parse) {
  const base::FileText file = base::ReadFile(path);
  if (!file.ok()) return NothingParsed(file.error, true);
  return parse(file.text);
}

ParsedProgram Free(const std::string& path) {
  return WithText(path, ParseFreeAssemblerListing);
}
ParsedProgram Motorola(const std::string& path) {
  return WithText(path, ParseMotorolaListing);
}
ParsedProgram Cmd(const std::string& path) {
  return WithText(path, ParseImagecraftCmd);
}

ParsedProgram Mcuez(const std::string& path) {
  return WithText(path, [&](const std::string& listing) {
    const std::string parameters_path = Sibling(path, "prm");
    const base::FileText parameters = base::ReadFile(parameters_path);
    if (!parameters.ok()) return NothingParsed(parameters_path + ": " + parameters.error);
    return ParseMcuezListing(listing, parameters.text);
  });
}

ParsedProgram Map(const std::string& path) {
  return WithText(path, [&](const std::string& map) {
    const std::string sources_path = Sibling(path, "src");
    const base::FileText sources = base::ReadFile(sources_path);
    if (!sources.ok()) return NothingParsed(sources_path + ": " + sources.error);
    return ParseImagecraftMap(map, sources.text);
  });
}

ParsedProgram Cdb(const std::string& path) {
  return WithText(path, [&](const std::string& cdb) {
    // The map only adds names: without it the program is complete enough.
    const base::FileText map = base::ReadFile(Sibling(path, "map"));
    SdccSources sources(base::DirectoryOf(path));
    return ParseSdccCdb(cdb, map.text, sources);
  });
}

ParsedProgram AnyMap(const std::string& path) {
  const base::FileText map = base::ReadFile(path);
  LineReader reader(map.text);
  reader.Skip(1);
  if (const auto second = reader.Next(); second && second->starts_with("Area")) return Map(path);
  ParsedProgram program;
  program.symbols = ParseSdccMap(map.text);
  if (program.symbols.empty())
    program.problem = map.ok() ? "no symbols of SDCC or Imagecraft" : map.error;
  return program;
}

constexpr int kAny = Companion::kAnyFormat;
constexpr std::array kFreeCompanions{Companion{"lst", kAny, true, Free}};
constexpr std::array kMotorolaCompanions{Companion{"lst", kAny, true, Motorola}};
constexpr std::array kMcuezCompanions{Companion{"lst", kAny, true, Mcuez}};
constexpr std::array kImagecraftCompanions{Companion{"cmd", 0, false, Cmd},
                                           Companion{"map", 1, false, Map}};
constexpr std::array kSdccCompanions{Companion{"cdb", kAny, false, Cdb}};

constexpr std::array kToolChains{
    ToolChainRow{ToolChain::FreeAssembler, "free", "Free assembler", kFreeCompanions},
    ToolChainRow{ToolChain::MotorolaAssembler, "motorola", "Motorola assembler",
                 kMotorolaCompanions},
    ToolChainRow{ToolChain::McuezAssembler, "mcuez", "MCUEZ assembler", kMcuezCompanions},
    ToolChainRow{ToolChain::Imagecraft, "imagecraft", "Imagecraft C compiler",
                 kImagecraftCompanions},
    ToolChainRow{ToolChain::Introl, "introl", "Introl C compiler", {}},
    ToolChainRow{ToolChain::Sdcc, "sdcc", "SDCC C compiler", kSdccCompanions},
};

// Parses; a listing's intermediate files are written and read back.
ParsedProgram Import(const Companion& companion, const std::string& path,
                     const std::string& image_directory) {
  ParsedProgram program = companion.parse(path);
  if (!program.info_files) return program;
  const std::string error = WriteInfoFiles(image_directory, *program.info_files);
  return error.empty() ? ReadInfoFiles(image_directory) : NothingParsed(error);
}

bool IsUsable(const Companion& companion, const std::string& path) {
  ParsedProgram program = companion.parse(path);
  if (program.info_files) program = ParseInfoFiles(*program.info_files);
  return program.problem.empty();
}

ImportResult Refuse(const Companion& companion, const std::string& path,
                    const ParsedProgram& program, DebugInfo& info) {
  info.ForgetLines();
  if (!companion.is_listing) info.SymbolTable.Clear();
  ImportResult result;
  result.detail = path + ": " + program.problem;
  // The MCUEZ listing and the compilers' files have no marker that could be missing.
  const bool has_marker = info.tool_chain == ToolChain::FreeAssembler ||
                          info.tool_chain == ToolChain::MotorolaAssembler;
  if (program.wrong_format && has_marker) {
    result.message = base::ToMessage(kInconsistentFormat);
  }
  return result;
}

}  // namespace

std::span<const ToolChainRow> ToolChains() {
  return kToolChains;
}

const ToolChainRow* FindToolChain(int setting) {
  return FindToolChain(static_cast<ToolChain>(setting));
}

const ToolChainRow* FindToolChain(ToolChain tool_chain) {
  const auto* row = std::ranges::find(kToolChains, tool_chain, &ToolChainRow::tool_chain);
  return row == kToolChains.end() ? nullptr : row;
}

const ToolChainRow* FindToolChainByName(std::string_view short_name) {
  const auto* row = std::ranges::find_if(kToolChains, [&](const ToolChainRow& candidate) {
    return base::EqualIgnoringCase(candidate.short_name, short_name);
  });
  return row == kToolChains.end() ? nullptr : row;
}

std::string CompanionPath(const std::string& image_path, std::string_view extension) {
  const std::size_t separator = image_path.find_last_of("/\\");
  const std::size_t name = separator == std::string::npos ? 0 : separator + 1;
  std::string by_name =
      image_path.substr(0, name) + base::ReplaceExtension(image_path.substr(name), extension);
  for (const std::string& path :
       {base::ReplaceExtension(image_path, extension), by_name, Sibling(image_path, extension)}) {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) return path;
  }
  return by_name;
}

ImportResult ImportCompanion(const ImportRequest& request, DebugInfo& info) {
  const ToolChainRow* row = FindToolChain(info.tool_chain);
  const auto companions = row == nullptr ? std::span<const Companion>() : row->companions;
  const auto companion = std::ranges::find_if(companions, [&](const Companion& candidate) {
    return candidate.image_format == kAny || candidate.image_format == request.image_format;
  });
  if (companion == companions.end()) return {info.DebugInfoLoaded, {}, {}};

  const std::string path = CompanionPath(request.image_path, companion->extension);
  ParsedProgram program = Import(*companion, path, request.image_directory);
  if (request.write_reset_vector) {
    for (const std::uint16_t value : program.reset_vectors) request.write_reset_vector(value);
  }
  info.DebugInfoLoaded = program.problem.empty();
  if (!info.DebugInfoLoaded) return Refuse(*companion, path, program, info);
  ImportResult result{
      true,
      {},
      base::Format("%s: %d symbols, %d lines", path, program.symbols.size(), program.lines.size())};
  info.Assign(std::move(program), request.image_directory);
  return result;
}

std::optional<ParsedProgram> ReadDebugFile(const std::string& path) {
  const std::string extension = base::ExtensionOf(path);
  if (base::EqualIgnoringCase(extension, "cdb")) return Cdb(path);
  if (base::EqualIgnoringCase(extension, "map")) return AnyMap(path);
  return {};
}

std::optional<OtherToolChain> FindOtherToolChain(const std::string& image_path, ToolChain current) {
  // From the end of the table: SDCC's debug file cannot be taken for anything else.
  for (auto row = kToolChains.rbegin(); row != kToolChains.rend(); ++row) {
    if (row->tool_chain == current) continue;
    for (const Companion& companion : row->companions) {
      std::string path = CompanionPath(image_path, companion.extension);
      if (!IsUsable(companion, path)) continue;
      const int format = companion.image_format == kAny ? 0 : companion.image_format;
      return OtherToolChain{&*row, format, std::move(path)};
    }
  }
  return {};
}

}  // namespace brevant::symbols
