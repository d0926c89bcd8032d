// SPDX-License-Identifier: MIT
#include "load/loader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "base/file_names.h"
#include "base/files.h"
#include "devices/hc08.h"
#include "load/messages.h"
#include "load/ram_start.h"
#include "load/transfer.h"

namespace brevant::load {
namespace {

constexpr std::string_view kComparingTitle = "Comparing with flash";
constexpr std::string_view kLoadingTitle = "Loading File...";
constexpr std::string_view kWatchExtension = "cfg";

// Which of the two formats a file has is told by what stands in it.
constexpr std::array<std::string_view, 6> kExtensions{"s19", "hex", "sx", "ihx", "srec", "mot"};

bool IsImage(std::string_view path) {
  const std::string extension = base::ExtensionOf(path);
  return std::ranges::any_of(kExtensions, [&](std::string_view known) {
    return base::EqualIgnoringCase(known, extension);
  });
}

bool IsCCompiler(symbols::ToolChain tool_chain) {
  return tool_chain == symbols::ToolChain::Imagecraft || tool_chain == symbols::ToolChain::Sdcc;
}

std::string TimeText(long long time) {
  return base::Format("%ld", static_cast<long>(time));
}

// What of the image no load can write, but it needs. The PC is set from the reset vector of an
// image for RAM, and the part's own may say what it likes.
images::Image Unwritable(const memory::Memory& memory, const images::Image& image) {
  const bool own_vector = FindRamStart(image, memory.device(), {}).has_value();
  images::Image unwritable;
  for (const images::Block& block : image.Blocks()) {
    for (std::size_t i = 0; i < block.bytes.size(); ++i) {
      const base::Address at = block.address + static_cast<base::Address>(i);
      if (own_vector && at >= devices::kResetVector) continue;
      if (!memory.Writable(at)) unwritable.Put(at, base::Bytes(&block.bytes[i], 1));
    }
  }
  return unwritable;
}

template <typename Step, typename... Args>
void Do(const Step& step, const Args&... args) {
  if (step) step(args...);
}

}  // namespace

Loader::Loader(memory::Memory& memory, control::RegisterFrame& frame,
               control::BreakpointTable& breakpoints, symbols::DebugInfo& debug_info,
               StartAddress& start, MacroRunner& macros, base::SettingsFile& settings,
               base::UserInterface& ui, LoadSteps steps)
    : memory_(memory),
      frame_(frame),
      breakpoints_(breakpoints),
      debug_info_(debug_info),
      start_(start),
      macros_(macros),
      settings_(settings),
      ui_(ui),
      steps_(std::move(steps)) {}

LoadResult Loader::LoadImage(const std::string& path) {
  if (!base::ModificationTime(path)) {
    ui_.ShowMessage(ToMessage(messages::kFileNotFound, path));
    return {LoadOutcome::NotFound, {}, {}};
  }
  macros_.RunBeforeLoadMacro();
  if (!IsImage(path)) {
    ui_.ShowMessage(ToMessage(messages::kUseImageFormat));
    return {LoadOutcome::WrongFormat, {}, {}};
  }
  const images::ImageFile file = images::ReadImageFile(path);
  LoadResult result;
  result.report = file.report;
  if (!result.report.ok()) {
    result.outcome = LoadOutcome::NotReadable;
    ui_.ShowMessage(ToMessage(messages::kImageNotReadable, path, result.report.file_error));
    return result;
  }
  if (const auto refusal = result.report.Refusal(path)) {
    result.outcome = LoadOutcome::Damaged;
    ui_.ShowMessage(*refusal);
    return result;
  }
  if (!MakeRoom(path, file.ToImage())) {
    result.outcome = LoadOutcome::NoRoom;
    return result;
  }
  image_directory_ = base::DirectoryOf(path);
  arrived_.clear();
  memory_.TakeDamage();  // of what came before
  const long damage_before = memory_.damage();
  const base::Address pc_before = frame_.PC;
  const bool complete = TransferWithProgress(path, file);
  // Before anything is told or asked: the windows show PC meanwhile.
  const bool starts_at_vector = complete && IgnoreEmptyEntry(file.ToImage(), result.report);
  if (starts_at_vector && !TakeResetVector()) frame_.SetPC(pc_before);
  TellAbout(path, result.report, complete);
  const bool lost_before = memory_.LinkError();
  result.outcome = complete ? LookAt(file.ToImage(), memory_.damage() == damage_before, result)
                            : LoadOutcome::Cancelled;
  if (result.outcome != LoadOutcome::Cancelled && memory_.LinkError()) {
    result.outcome = LoadOutcome::LinkLost;
    if (!lost_before) ui_.ShowMessage(ToMessage(messages::kLinkLostWhileLoading, path));
  }
  if (result.outcome == LoadOutcome::Cancelled) {
    // The tables describe the image before this one, whose bytes are partly gone.
    debug_info_.DebugInfoLoaded = false;
  } else {
    result.debug_info_detail = ImportDebugInfo(path);
    // Some tool chains' debug information says what the vector is to be.
    if (starts_at_vector) TakeResetVector();
    ChooseRamStart(file.ToImage(), result);
    Check(path, file.ToImage(), result);
    Do(steps_.load_watch_configuration, symbols::CompanionPath(path, kWatchExtension));
  }
  ui_.SetTitle(path);
  breakpoints_.Clear();
  Do(steps_.refresh_after_stop);
  StampImage(path);
  return result;
}

bool Loader::MakeRoom(const std::string& path, const images::Image& image) {
  std::vector<memory::Range> ranges;
  for (const images::Block& block : image.Blocks()) {
    ranges.push_back({block.address, static_cast<base::Address>(block.bytes.size())});
  }
  const base::Address before = frame_.ProgramSP();
  if (!frame_.MoveStackClearOf(ranges)) {
    ui_.ShowMessage(ToMessage(messages::kNoRoomForStack, path, frame_.stack_in_use().first,
                              frame_.stack_in_use().last));
    return false;
  }
  if (frame_.ProgramSP() != before) {
    ui_.ShowMessage(ToMessage(messages::kStackMoved, frame_.ProgramSP()));
  }
  return true;
}

bool Loader::TransferWithProgress(const std::string& path, const images::ImageFile& file) {
  ui_.SetTitle(kLoadingTitle);
  ui_.BeginProgress(kLoadingTitle, path, true);
  const auto progress = [&](long done, long total) {
    return ui_.UpdateProgress(path, done, total);
  };
  const bool complete = Transfer(file, memory_, frame_, start_, progress);
  ui_.EndProgress();
  return complete;
}

void Loader::TellAbout(const std::string& path, const images::ReadReport& report, bool complete) {
  for (const base::Message& remark : report.Remarks(path)) ui_.ShowMessage(remark);
  if (complete && report.beyond_16_bits > 0) {
    ui_.ShowMessage(ToMessage(messages::kBeyondAddressSpace, report.beyond_16_bits, path));
  }
  if (memory_.LinkError()) ui_.ShowMessage(ToMessage(messages::kLinkLostWhileLoading, path));
}

LoadOutcome Loader::LookAt(const images::Image& image, bool line_was_clean, LoadResult& result) {
  std::optional<base::Message> message;
  for (const images::Block& block : image.Blocks()) {
    if (memory_.KindOf(block.address) != devices::MemoryKind::Ram) continue;
    const base::Bytes wanted(block.bytes);
    // An address that was damaged on its way has let a byte go anywhere.
    std::vector<std::uint8_t> found(line_was_clean ? 1 : wanted.size());
    memory_.AskChecked(found, block.address);
    if (memory_.LinkError()) return LoadOutcome::LinkLost;
    const auto at = static_cast<base::Address>(
        std::ranges::mismatch(found, wanted.first(found.size())).in1 - found.begin());
    if (at == found.size()) {
      arrived_[block.address] = wanted.front();
    } else if (!message) {
      message = ToMessage(messages::kRamDiffers, block.address + at, found[at], wanted[at]);
    }
  }
  images::Image unwritable = Unwritable(memory_, image);
  if (!unwritable.empty() && !FlashIsReadable()) {
    ui_.ShowMessage(ToMessage(messages::kFlashNotSeen));
    return LoadOutcome::Differs;
  }
  const VerifyResult flash = Compare(unwritable);
  if (memory_.LinkError()) return LoadOutcome::LinkLost;
  if (flash.outcome == VerifyOutcome::Cancelled) return LoadOutcome::Cancelled;
  result.compared = flash.compared;
  if (!message && flash.first) {
    message = ToMessage(messages::kNotInFlash, flash.first->address, flash.first->found,
                        flash.first->expected, flash.different, flash.compared);
  }
  if (const auto damaged = memory_.TakeDamage()) {
    message = ToMessage(messages::kLineDamaged, *damaged);
  }
  if (message) ui_.ShowMessage(*message);
  return message ? LoadOutcome::Differs : LoadOutcome::Loaded;
}

VerifyResult Loader::Compare(const images::Image& image) {
  if (image.empty()) return {};
  ui_.BeginProgress(kComparingTitle, kComparingTitle, true);
  const VerifyResult verified = Verify(
      memory_, image,
      [&](long done, long total) { return ui_.UpdateProgress(kComparingTitle, done, total); },
      steps_.crc);
  ui_.EndProgress();
  return verified;
}

bool Loader::ImageIsGone() {
  // A program may well have changed some of it.
  return !arrived_.empty() && std::ranges::all_of(arrived_, [this](const auto& sample) {
    return memory_.AskByte(sample.first) != sample.second && !memory_.LinkError();
  });
}

symbols::ImportResult Loader::Import(const std::string& path) {
  symbols::ImportRequest request;
  request.image_path = path;
  request.image_directory = image_directory_;
  request.image_format = settings_.Integer(base::keys::kImageFormat);
  request.write_reset_vector = [this](std::uint16_t value) {
    memory_.WriteWord(devices::kResetVector, value);
  };
  return symbols::ImportCompanion(request, debug_info_);
}

std::string Loader::ImportDebugInfo(const std::string& path) {
  const symbols::ToolChainRow* row = symbols::FindToolChain(debug_info_.tool_chain);
  symbols::ImportResult result;
  if (row && !row->companions.empty()) {
    result = Import(path);
    // The question is of more use than the reason, which is told if it remains one.
    if (!result.loaded && SwitchToolChain(path)) result = Import(path);
    if (result.message) ui_.ShowMessage(*result.message);
  }
  if (IsCCompiler(debug_info_.tool_chain)) Do(steps_.reset_source_view);
  const bool missing = !result.loaded && !result.detail.empty();
  return missing ? "no names and source lines: " + result.detail : result.detail;
}

// The end record of many linkers, SDCC's among them, always says 0000. Where the image has no code
// there, the program starts at its reset vector.
bool Loader::IgnoreEmptyEntry(const images::Image& image, images::ReadReport& report) {
  if (report.entry != base::Address{0} || image.At(0)) return false;
  report.entry.reset();
  start_.EntryFromImage = false;
  return true;
}

bool Loader::TakeResetVector() {
  return FlashIsReadable() && frame_.LoadResetPC();
}

void Loader::ChooseRamStart(const images::Image& image, LoadResult& result) {
  if (result.report.entry) return;
  const auto start = FindRamStart(image, memory_.device(), debug_info_.SymbolTable);
  if (!start) {
    if (IsForRam(image, memory_.device()) && !image.At(frame_.PC)) {
      result.findings.push_back(
          {Finding::Kind::NoRamStart,
           base::Format("The image does not say where it starts, and PC is %04x, outside of it: "
                        "set PC before Go.",
                        frame_.PC)});
    }
    return;
  }
  frame_.SetPC(start->address);
  start_.LoadEntryAddress = start->address;
  start_.EntryFromImage = true;
  result.report.entry = start->address;
  result.start_from = start->by;
}

void Loader::Check(const std::string& path, const images::Image& image, LoadResult& result) {
  // A load programs nothing, so no security code changes.
  for (const Finding& finding : CheckImage(image, memory_.device(), std::nullopt)) {
    if (finding.kind != Finding::Kind::SecurityCodeChanges) result.findings.push_back(finding);
  }
  if (const auto old = CheckDebugFile(path, debug_info_.tool_chain)) {
    result.findings.push_back(*old);
  }
  std::string text;
  for (const Finding& finding : result.findings) {
    if (finding.prevents()) text += '\n' + finding.text;
  }
  if (!text.empty()) ui_.ShowMessage(ToMessage(messages::kWillNotWork, path, text));
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

}  // namespace brevant::load
