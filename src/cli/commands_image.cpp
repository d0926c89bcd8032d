// SPDX-License-Identifier: MIT
// Programs and files.
#include <fmt/format.h>

#include <algorithm>

#include "base/files.h"
#include "cli/command_table.h"
#include "cli/session.h"
#include "cli/shown_progress.h"
#include "devices/device.h"
#include "images/image_file.h"
#include "load/image_check.h"
#include "load/read_out.h"
#include "load/verify.h"

namespace brevant::cli {
namespace {

constexpr const char* kFlashNotReadable =
    "flash cannot be read: the security code was not accepted";

Result NotRead(const std::string& path, const std::string& why) {
  return Failure(ExitStatus::File, fmt::format("cannot read {}: {}", path, why));
}

Result Loaded(Session& session, const std::string& path, const load::LoadResult& loaded) {
  Result result;
  result.text = fmt::format("loaded {}\n", path);
  result.fields = {{"file", path}, {"bytes", loaded.report.bytes}};
  if (loaded.report.entry) {
    const std::string by = loaded.start_from.empty() ? "" : fmt::format(" ({})", loaded.start_from);
    result.text += fmt::format("entry {:04x}{}\n", base::Low16(*loaded.report.entry), by);
    result.fields["entry"] = fmt::format("{:04x}", base::Low16(*loaded.report.entry));
  }
  if (loaded.compared > 0) {
    result.text += fmt::format("compared {} bytes in flash, all equal\n", loaded.compared);
    result.fields["compared"] = loaded.compared;
  }
  if (session.debugger().debug_info.DebugInfoLoaded) {
    result.text += loaded.debug_info_detail + '\n';
    result.fields["debug_info"] = loaded.debug_info_detail;
  } else if (!loaded.debug_info_detail.empty()) {
    session.ui().Notice(loaded.debug_info_detail);
  }
  for (const load::Finding& finding : loaded.findings) {
    if (!finding.prevents()) session.ui().Notice(finding.text);
  }
  return result;
}

// The file's symbols count and its RAM is written, but it would not run as the file says.
Result NotThere(Session& session, const std::string& path, const load::LoadResult& loaded) {
  Result result = Loaded(session, path, loaded);
  result.text.clear();
  const bool readable = session.debugger().security.passed();
  result.status = readable ? ExitStatus::VerifyDiffers : ExitStatus::Security;
  result.error = fmt::format("the target does not hold what {} has for it", path);
  if (!readable) result.error = kFlashNotReadable;
  return result;
}

Result Load(Session& session, const ParsedArguments& arguments) {
  const std::string& path = arguments.Text(0);
  const load::LoadResult loaded = session.debugger().loader.LoadImage(path);
  switch (loaded.outcome) {
    case load::LoadOutcome::Loaded:
      if (loaded.report.bytes == 0) {
        return Failure(ExitStatus::File, fmt::format("{} holds no data: nothing was loaded", path));
      }
      // The program is in the target; that its debug information could not be read is no failure.
      session.ui().ErrorsAreNotices();
      break;
    case load::LoadOutcome::NotFound:
    case load::LoadOutcome::WrongFormat:
    case load::LoadOutcome::NotReadable:
    case load::LoadOutcome::Damaged:
    case load::LoadOutcome::NoRoom:
      return Failure(ExitStatus::File, fmt::format("{} was not loaded", path));
    case load::LoadOutcome::Differs:
      return NotThere(session, path, loaded);
    case load::LoadOutcome::Cancelled:
      return Interruption("; what was written so far stays");
    case load::LoadOutcome::LinkLost:
      return LinkLost();
  }
  return Loaded(session, path, loaded);
}

Result Verify(Session& session, const ParsedArguments& arguments) {
  const std::string& path = arguments.Text(0);
  const images::ImageFile file = images::ReadImageFile(path);
  if (!file.report.ok()) return NotRead(path, file.report.file_error);
  const images::Image image = file.ToImage();
  if (image.empty()) return NotRead(path, "it holds no S-record or Intel HEX data");
  if (const auto refusal = file.report.Refusal(path)) {
    session.ui().ShowMessage(*refusal);
    return Failure(ExitStatus::File, "nothing was compared");
  }
  for (const base::Message& remark : file.report.Remarks(path)) session.ui().ShowMessage(remark);
  const memory::Memory& memory = session.debugger().memory;
  const auto in_flash = [&memory](const images::Block& block) {
    const auto last = block.address + static_cast<base::Address>(block.bytes.size()) - 1;
    return !devices::FlashWithin(memory.device(), block.address, last).empty();
  };
  if (!session.debugger().security.passed() && std::ranges::any_of(image.Blocks(), in_flash)) {
    return Failure(ExitStatus::Security, kFlashNotReadable);
  }
  ShownProgress progress(session.ui(), "Verifying");
  const load::VerifyResult verified =
      load::Verify(session.debugger().memory, image, progress, &session.debugger().crc);
  if (verified.outcome == load::VerifyOutcome::LinkLost) return LinkLost();
  if (verified.outcome == load::VerifyOutcome::Cancelled) {
    return Interruption(
        fmt::format(" after {} bytes, {} of which differ", verified.compared, verified.different));
  }
  Result result;
  result.fields = {{"compared", verified.compared}, {"different", verified.different}};
  if (verified.outcome == load::VerifyOutcome::Different) {
    const load::Difference& first = *verified.first;
    result.status = ExitStatus::VerifyDiffers;
    result.text = fmt::format("{:04x}: expected {:02x}, found {:02x}\n", first.address,
                              first.expected, first.found);
    result.error = fmt::format("{} of {} bytes differ", verified.different, verified.compared);
    result.fields["address"] = fmt::format("{:04x}", first.address);
    return result;
  }
  result.text = fmt::format("verified {} bytes\n", verified.compared);
  return result;
}

Result Check(Session& session, const ParsedArguments& arguments) {
  const std::string& path = arguments.Text(0);
  const images::ImageFile file = images::ReadImageFile(path);
  if (!file.report.ok()) return NotRead(path, file.report.file_error);
  if (const auto refusal = file.report.Refusal(path)) {
    session.ui().ShowMessage(*refusal);
    return Failure(ExitStatus::File, "nothing was checked");
  }
  for (const base::Message& remark : file.report.Remarks(path)) session.ui().ShowMessage(remark);
  const debugger::Debugger& debugger = session.debugger();
  const devices::Device& device = debugger.memory.device();
  auto findings = load::CheckImage(file.ToImage(), device, debugger.security.accepted());
  if (const auto old = load::CheckDebugFile(path, debugger.debug_info.tool_chain)) {
    findings.push_back(*old);
  }
  const auto prevent = std::ranges::count_if(findings, &load::Finding::prevents);
  Result result;
  if (prevent > 0) {
    result = Failure(ExitStatus::Failed,
                     fmt::format("{} will not work on the {} as it is", path, device.name));
  } else {
    result.text =
        fmt::format("nothing was found that keeps {} from working on the {}\n", path, device.name);
  }
  result.fields["findings"] = nlohmann::ordered_json::array();
  for (const load::Finding& finding : findings) {
    result.text += finding.text + '\n';
    result.fields["findings"].push_back(
        {{"kind", finding.word()}, {"prevents", finding.prevents()}, {"text", finding.text}});
  }
  return result;
}

Result Save(Session& session, const ParsedArguments& arguments) {
  const std::string& path = arguments.Text(2);
  if (!session.debugger().security.passed() &&
      !devices::FlashWithin(session.debugger().memory.device(), arguments.Number(0),
                            arguments.Number(1))
           .empty()) {
    return Failure(ExitStatus::Security, kFlashNotReadable);
  }
  ShownProgress progress(session.ui(), "Reading");
  const load::ReadOutResult saved =
      load::ReadOut(session.debugger().memory, session.debugger().crc, arguments.Number(0),
                    arguments.Number(1), path, progress);
  switch (saved.outcome) {
    case load::ReadOutOutcome::Saved:
      break;
    case load::ReadOutOutcome::UnknownFormat:
      return Failure(ExitStatus::File,
                     fmt::format("{} has none of the extensions .s19, .sx, .hex and .bin", path));
    case load::ReadOutOutcome::BadRange:
      return UsageError("the second address is below the first");
    case load::ReadOutOutcome::Cancelled:
      return Interruption("; no file was written");
    case load::ReadOutOutcome::LinkLost:
      return LinkLost();
    case load::ReadOutOutcome::Damaged:
      return DamagedLine(saved.address);
    case load::ReadOutOutcome::NotWritten:
      return Failure(ExitStatus::File, fmt::format("cannot write {}: {}", path, saved.error));
  }
  Result result;
  result.text = fmt::format("saved {} bytes\n", saved.bytes);
  result.fields = {{"file", path}, {"bytes", saved.bytes}};
  return result;
}

constexpr Command kRows[] = {
    {"load", {File("FILE")}, kStopped, Load, "load an image: RAM is written, flash compared"},
    {"check", {File("FILE")}, kAlways, Check, "look for what keeps an image from working"},
    {"verify", {File("FILE")}, kStopped, Verify, "compare target memory with an image"},
    {"save",
     {Address("FROM"), Address("TO"), File("FILE")},
     kStopped,
     Save,
     "read memory out to .s19, .hex or .bin"},
};

}  // namespace

std::span<const Command> ImageCommands() {
  return kRows;
}

}  // namespace brevant::cli
