// SPDX-License-Identifier: MIT
// Erasing and programming flash.
#include <fmt/format.h>

#include <array>
#include <vector>

#include "base/files.h"
#include "cli/command_table.h"
#include "cli/interrupt.h"
#include "cli/session.h"
#include "cli/shown_progress.h"
#include "devices/hc08.h"
#include "flash/flash_commands.h"
#include "flash/flash_image.h"
#include "flash/flash_records.h"
#include "flash/verdicts.h"
#include "images/image_file.h"
#include "load/image_check.h"
#include "load/verify.h"

namespace brevant::cli {
namespace {

// What a job or a whole image has come to.
Result Ended(flash::FlashOutcome outcome) {
  switch (outcome) {
    case flash::FlashOutcome::Done:
      return {};
    case flash::FlashOutcome::NotErased:
    case flash::FlashOutcome::VerifyFailed:
      return Failure(ExitStatus::VerifyDiffers, "");
    case flash::FlashOutcome::NotSeen:
      return Failure(ExitStatus::Security,
                     "what stands in flash now could not be looked at: the target does not let it "
                     "be read, or did not answer");
    case flash::FlashOutcome::LinkLost:
      return LinkLost();
    case flash::FlashOutcome::Cancelled:
      if (Interrupted()) return Interruption("; the target was reset");
      return Failure(ExitStatus::NoAnswer,
                     "the flash routine did not end in time, and the target was reset");
    case flash::FlashOutcome::None:
    case flash::FlashOutcome::Running:
    case flash::FlashOutcome::Refused:
      break;
  }
  return Failure(ExitStatus::Failed, "nothing was done");
}

// The end of the flash job.
Result AwaitFlash(Session& session, bool started) {
  const flash::FlashStatus& status = session.debugger().flash.status();
  if (started) session.WaitForFlash([&status] { return status.bytes_programmed; });
  const bool unseen = status.outcome == flash::FlashOutcome::NotSeen;
  if (unseen && session.debugger().memory.LinkError()) return LinkLost();
  return Ended(status.outcome);
}

Result Compared(Session& session, const load::VerifyResult& verified) {
  if (verified.outcome == load::VerifyOutcome::LinkLost) return LinkLost();
  if (verified.outcome == load::VerifyOutcome::Cancelled) {
    return Interruption(fmt::format(" after {} bytes were found as programmed", verified.compared));
  }
  if (!verified.first) return {};
  const load::Difference& first = *verified.first;
  Result result = Failure(ExitStatus::VerifyDiffers,
                          flash::DifferenceText(session.debugger().memory,
                                                {verified.different, verified.compared, first}));
  result.fields["address"] = fmt::format("{:04x}", first.address);
  return result;
}

Result VerifyFlash(Session& session, const images::Image& image) {
  if (!session.debugger().security.passed()) {
    return Failure(ExitStatus::Security,
                   "flash cannot be read back: the security code was not accepted after the reset");
  }
  ShownProgress progress(session.ui(), "Verifying");
  return Compared(
      session, load::Verify(session.debugger().memory, image, progress, &session.debugger().crc));
}

Result Programmed(Session& session, Result result, const images::Image& image, bool verify) {
  const bool failed_verify = result.status == ExitStatus::VerifyDiffers;
  if (!result.ok() && !failed_verify) return result;
  if (failed_verify || verify) {
    Result verified = VerifyFlash(session, image);
    if (failed_verify && verified.ok()) return result;
    result = std::move(verified);
  }
  if (!result.ok()) return result;
  const flash::FlashStatus& status = session.debugger().flash.status();
  result.text = flash::ProgrammedText(status) + '\n';
  result.fields = {{"programmed", status.bytes_programmed},
                   {"spared", status.bytes_spared},
                   {"verified", verify}};
  return result;
}

void AddErased(Result& result, std::span<const devices::MemoryRange> erased) {
  for (const devices::MemoryRange& range : erased) {
    result.fields["erased"].push_back(
        {{"from", fmt::format("{:04x}", range.first)}, {"to", fmt::format("{:04x}", range.last)}});
  }
}

// Names what was erased: whole pages, whatever the range was.
Result Erased(Result result, std::span<const devices::MemoryRange> erased) {
  AddErased(result, erased);
  if (!erased.empty()) result.text = flash::ErasedText(erased) + '\n' + result.text;
  return result;
}
Result Erased(Session& session, Result result) {
  if (!result.ok()) return result;
  result = Erased(std::move(result), session.debugger().flash.status().to_erase);
  result.fields["blank"] = true;
  return result;
}

// What the file needs of flash, page by page, up to the first that does not get blank. Those that
// did are added.
Result EraseFor(Session& session, const images::ImageFile& file,
                std::vector<devices::MemoryRange>& erased) {
  flash::FlashJob& flash = session.debugger().flash;
  const devices::FlashGeometry& geometry = session.debugger().memory.device().flash;
  for (const devices::MemoryRange& pages : flash::PagesOf(geometry, file)) {
    if (Interrupted()) return Interruption(" before the next page was erased");
    Result result = AwaitFlash(session, flash::ErasePages(flash, pages, file.ToImage()));
    if (!result.ok()) return result;
    const auto& blank = flash.status().to_erase;
    erased.insert(erased.end(), blank.begin(), blank.end());
  }
  return {};
}

Result MassErase(Session& session, const ParsedArguments&) {
  Result result = AwaitFlash(session, flash::MassEraseCommand(session.debugger().flash));
  return Erased(session, std::move(result));
}

Result Erase(Session& session, const ParsedArguments& arguments) {
  const base::Address from = arguments.Number(0);
  const base::Address to = arguments.Number(1);
  if (to <= from) return UsageError("End address must be greater than start address");
  Result result = AwaitFlash(session, flash::EraseFlashRange(session.debugger().flash, from, to));
  return Erased(session, std::move(result));
}

void TellFindings(Session& session, const images::Image& image) {
  const debugger::Debugger& debugger = session.debugger();
  for (const load::Finding& finding :
       load::CheckImage(image, debugger.memory.device(), debugger.security.accepted())) {
    finding.prevents() ? session.ui().Warn(finding.text) : session.ui().Notice(finding.text);
  }
}

Result FlashFile(Session& session, const ParsedArguments& arguments) {
  const std::string& path = arguments.Text(0);
  const images::ImageFile file = images::ReadImageFile(path);
  const images::Image image = file.ToImage();
  debugger::Debugger& debugger = session.debugger();
  if (!flash::FitsFlash(debugger.flash, path, file)) {
    const bool good = file.report.ok() && !file.report.Refusal(path);
    return Failure(good ? ExitStatus::Failed : ExitStatus::File, "nothing was done");
  }
  if (image.empty()) return Failure(ExitStatus::File, fmt::format("{} holds no image", path));
  for (const base::Message& remark : file.report.Remarks(path)) session.ui().ShowMessage(remark);
  TellFindings(session, image);
  flash::FlashImage flash(debugger.flash.surroundings(), debugger.crc);
  const flash::FlashImageResult flashed = flash.Run(image);
  Result result = Ended(flashed.outcome);
  if (!result.ok()) return result;
  result.fields = {{"bytes", flashed.bytes}, {"spared", flashed.spared},
                   {"pages", flashed.pages}, {"pages_spared", flashed.pages_spared},
                   {"kept", flashed.kept},   {"programmed", flashed.programmed},
                   {"verified", true}};
  AddErased(result, flashed.erased);
  for (const std::string& line : flash::FlashImageText(flashed)) result.text += line + '\n';
  return result;
}

Result Program(Session& session, const ParsedArguments& arguments) {
  const std::string& path = arguments.Text(0);
  const base::FileText file = base::ReadFile(path);
  if (!file.ok()) {
    return Failure(ExitStatus::File, fmt::format("cannot read {}: {}", path, file.error));
  }
  // Programming ends where its stricter rules end the file; what is compared is all that the file
  // holds, so that a rest which was left out shows.
  const images::Image image = images::ParseImage(file.text).ToImage();
  if (image.empty()) {
    return Failure(ExitStatus::File, fmt::format("{} holds no S-record data", path));
  }
  const images::ImageFile records = flash::ParseFlashRecords(file.text);
  if (const auto refusal = records.report.Refusal(path)) {
    session.ui().ShowMessage(*refusal);
    return Failure(ExitStatus::File, "nothing was programmed");
  }
  if (records.report.bytes == 0) {
    return Failure(ExitStatus::File,
                   fmt::format("nothing was programmed: {} begins with no S-record", path));
  }
  flash::FlashJob& flash = session.debugger().flash;
  if (!flash::FitsFlash(flash, path, records)) {
    return Failure(ExitStatus::Failed, "nothing was programmed");
  }
  TellFindings(session, image);
  std::vector<devices::MemoryRange> erased;
  Result result = arguments.HasFlag("--erase") ? EraseFor(session, records, erased) : Result{};
  if (result.ok()) {
    result =
        AwaitFlash(session, flash::ProgramFlashFile(flash, path, records, &session.debugger().crc));
    result = Programmed(session, std::move(result), image, !arguments.HasFlag("noverify"));
  }
  return Erased(std::move(result), erased);
}

Result ProgramBytes(Session& session, const ParsedArguments& arguments) {
  const base::Address address = arguments.Number(0);
  const std::vector<std::uint8_t>& bytes = arguments.Bytes(1);
  images::Image image;
  image.Put(address, bytes);
  Result result =
      AwaitFlash(session, flash::ProgramFlashLocations(session.debugger().flash, address, bytes));
  return Programmed(session, std::move(result), image, true);
}

Result ProgramIrq(Session& session, const ParsedArguments&) {
  images::Image image;
  image.Put(devices::kIrqVector, std::array{base::HighByte(devices::kIrqStopRoutine),
                                            base::LowByte(devices::kIrqStopRoutine)});
  Result result = AwaitFlash(session, flash::ProgramIrqVector(session.debugger().flash));
  return Programmed(session, std::move(result), image, true);
}

constexpr Command kRows[] = {
    {"mass-erase", {}, kStopped, MassErase, "erase all flash"},
    {"erase",
     {Address("FROM"), Address("TO")},
     kStopped,
     Erase,
     "erase the flash pages of a range"},
    {"program",
     {File("FILE"), Flag("--erase"), Flag("noverify")},
     kStopped,
     Program,
     "program an image into flash; --erase erases the pages that it needs"},
    {"flash",
     {File("FILE")},
     kStopped,
     FlashFile,
     "bring flash to an image: erases and programs only what differs, and verifies"},
    {"program-bytes",
     {Address("ADDR"), Bytes("BYTE")},
     kStopped,
     ProgramBytes,
     "program a few flash bytes"},
    {"program-irq", {}, kStopped, ProgramIrq, "program the IRQ vector that lets stop work"},
};

}  // namespace

std::span<const Command> FlashCommands() {
  return kRows;
}

}  // namespace brevant::cli
