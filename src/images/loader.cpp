// SPDX-License-Identifier: MIT
#include "images/loader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "base/file_names.h"
#include "base/files.h"
#include "devices/hc08.h"
#include "images/messages.h"

namespace brevant::images {
namespace {

constexpr std::string_view kLoadingTitle = "Loading File...";
constexpr std::string_view kWatchExtension = "cfg";

// How an extension is read; the Motorola assembler names its S-record files "hex".
struct ExtensionRow {
  std::string_view extension;
  bool s_records;
  bool s_records_of_motorola;
};
constexpr std::array<ExtensionRow, 3> kExtensions{
    {{"s19", true, true}, {"hex", false, true}, {"sx", true, true}}};

const ExtensionRow* FindExtension(std::string_view path) {
  const std::string extension = base::ExtensionOf(path);
  for (const ExtensionRow& row : kExtensions) {
    if (base::EqualIgnoringCase(row.extension, extension)) return &row;
  }
  return nullptr;
}

bool IsCCompiler(symbols::ToolChain tool_chain) {
  return tool_chain == symbols::ToolChain::Imagecraft || tool_chain == symbols::ToolChain::Sdcc;
}

std::string TimeText(long long time) {
  return base::Format("%ld", static_cast<long>(time));
}

template <typename Step, typename... Args>
void Do(const Step& step, const Args&... args) {
  if (step) step(args...);
}

}  // namespace

Loader::Loader(link::Monitor& monitor, control::RegisterFrame& frame,
               control::BreakpointTable& breakpoints, symbols::DebugInfo& debug_info,
               StartAddress& start, MacroRunner& macros, base::SettingsFile& settings,
               base::UserInterface& ui, LoadSteps steps)
    : monitor_(monitor),
      frame_(frame),
      breakpoints_(breakpoints),
      debug_info_(debug_info),
      start_(start),
      macros_(macros),
      settings_(settings),
      ui_(ui),
      reader_(monitor, frame, start),
      steps_(std::move(steps)) {}

LoadResult Loader::LoadImage(const std::string& path) {
  if (!base::ModificationTime(path)) {
    ui_.ShowMessage(ToMessage(messages::kFileNotFound, path));
    return {LoadOutcome::NotFound, {}, {}};
  }
  macros_.RunBeforeLoadMacro();
  const ExtensionRow* row = FindExtension(path);
  if (!row) {
    ui_.ShowMessage(ToMessage(messages::kUseImageFormat));
    return {LoadOutcome::WrongFormat, {}, {}};
  }
  const bool motorola = debug_info_.tool_chain == symbols::ToolChain::MotorolaAssembler;
  LoadResult result;
  result.report = Transfer(path, motorola ? row->s_records_of_motorola : row->s_records);
  if (!result.report.ok()) {
    result.outcome = LoadOutcome::NotReadable;
    ui_.ShowMessage(ToMessage(messages::kImageNotReadable, path, result.report.file_error));
    return result;
  }
  image_directory_ = base::DirectoryOf(path);
  arrived_.clear();
  TellAbout(path, result.report);
  if (!result.report.cancelled) TellWhatDidNotArrive(path);
  if (monitor_.LinkError()) result.outcome = LoadOutcome::LinkLost;
  if (result.report.cancelled) {
    // The tables describe the image before this one, whose bytes are partly gone.
    result.outcome = LoadOutcome::Cancelled;
    debug_info_.DebugInfoLoaded = false;
  } else {
    result.debug_info_detail = ImportDebugInfo(path);
    IgnoreEntryOfSdcc(result.report);
    Do(steps_.load_watch_configuration, symbols::CompanionPath(path, kWatchExtension));
  }
  ui_.SetTitle(path);
  breakpoints_.Clear();
  Do(steps_.refresh_after_stop);
  StampImage(path);
  return result;
}

ReadReport Loader::Transfer(const std::string& path, bool as_s_records) {
  // Asked before the title changes, so that a file that cannot be opened leaves it alone.
  if (const base::FileText file = base::ReadFile(path); !file.ok()) {
    ReadReport report;
    report.file_error = file.error;
    return report;
  }
  ui_.SetTitle(kLoadingTitle);
  ui_.BeginProgress(kLoadingTitle, path, true);
  const auto progress = [&](long done, long total) {
    return ui_.UpdateProgress(path, done, total);
  };
  ReadReport report = as_s_records ? reader_.LoadSRecordFile(path, progress)
                                   : reader_.ScanIntelHexFile(path, progress);
  ui_.EndProgress();
  return report;
}

void Loader::TellAbout(const std::string& path, const ReadReport& report) {
  if (report.skipped > 0) {
    ui_.ShowMessage(ToMessage(messages::kRecordsSkipped, report.skipped, path,
                              report.first_skipped_line,
                              std::string(Describe(report.first_skipped_reason))));
  }
  if (report.beyond_16_bits > 0) {
    ui_.ShowMessage(ToMessage(messages::kBeyondAddressSpace, report.beyond_16_bits, path));
  }
  if (monitor_.LinkError()) ui_.ShowMessage(ToMessage(messages::kLinkLostWhileLoading, path));
}

// Flash ignores what a load writes; the user would otherwise debug whatever stands there.
void Loader::TellWhatDidNotArrive(const std::string& path) {
  std::optional<base::Message> message;
  for (const Block& block : ReadImageFile(path).image.Blocks()) {
    const std::uint8_t wanted = block.bytes.front();
    const std::uint8_t found = monitor_.ReadByte(block.address);
    if (monitor_.LinkError()) return;
    if (found == wanted) {
      arrived_[block.address] = wanted;
    } else if (!message) {
      message = ToMessage(messages::kNotArrived, block.address, found, wanted);
    }
  }
  if (message) ui_.ShowMessage(*message);
}

bool Loader::ImageIsGone() {
  // A program may well have changed some of it.
  return !arrived_.empty() && std::ranges::all_of(arrived_, [this](const auto& sample) {
    return monitor_.ReadByte(sample.first) != sample.second && !monitor_.LinkError();
  });
}

symbols::ImportResult Loader::Import(const std::string& path) {
  symbols::ImportRequest request;
  request.image_path = path;
  request.image_directory = image_directory_;
  request.image_format = settings_.Integer(base::keys::kImageFormat);
  request.write_reset_vector = [this](std::uint16_t value) {
    monitor_.WriteWord(devices::kResetVector, value);
  };
  return symbols::ImportCompanion(request, debug_info_);
}

std::string Loader::ImportDebugInfo(const std::string& path) {
  const symbols::ToolChainRow* row = symbols::FindToolChain(debug_info_.tool_chain);
  symbols::ImportResult result;
  if (row && !row->companions.empty()) {
    result = Import(path);
    if (result.message) ui_.ShowMessage(*result.message);
    if (!result.loaded && SwitchToolChain(path)) {
      result = Import(path);
      if (result.message) ui_.ShowMessage(*result.message);
    }
  }
  if (IsCCompiler(debug_info_.tool_chain)) Do(steps_.reset_source_view);
  return result.detail;
}

// The end record of SDCC's linker always says 0000, where no program can be: the program starts at
// its reset vector.
void Loader::IgnoreEntryOfSdcc(ReadReport& report) {
  if (debug_info_.tool_chain != symbols::ToolChain::Sdcc || report.entry != base::Address{0})
    return;
  report.entry.reset();
  start_.EntryFromImage = false;
  frame_.LoadResetPC();
}

bool Loader::SwitchToolChain(const std::string& path) {
  const auto other = symbols::FindOtherToolChain(path, debug_info_.tool_chain);
  if (!other) return false;
  const auto question =
      ToMessage(messages::kOfferToolChain, other->path, std::string(other->row->display_name));
  if (ui_.ShowMessage(question) != base::Answer::Yes) return false;
  debug_info_.tool_chain = other->row->tool_chain;
  base::SettingsFile::Change change;
  change.Store(base::keys::kCompiler, static_cast<long>(other->row->tool_chain));
  if (other->row->tool_chain == symbols::ToolChain::Imagecraft) {
    change.Store(base::keys::kImageFormat, static_cast<long>(other->image_format));
  }
  settings_.Apply(change);
  return true;
}

bool Loader::ImageIsNewer(const std::string& path) const {
  const auto time = base::ModificationTime(path);
  const std::string stamp = settings_.String(base::keys::kTimeStamp);
  return time && !stamp.empty() && TimeText(*time) > stamp;
}

void Loader::StampImage(const std::string& path) {
  if (const auto time = base::ModificationTime(path)) {
    settings_.Store(base::keys::kTimeStamp, TimeText(*time));
  }
}

}  // namespace brevant::images
