// SPDX-License-Identifier: MIT
// Erasing and programming flash.
#include <fmt/format.h>

#include <array>
#include <vector>

#include "cli/commands.h"
#include "cli/session.h"
#include "cli/shown_progress.h"
#include "devices/hc08.h"
#include "flash/flash_forms.h"
#include "images/image_file.h"
#include "load/verify.h"

namespace brevant::cli {
namespace {

// The end of a flash operation, whichever engine has carried it out.
Result AwaitFlash(Session& session, const flash::FlashStatus& status, bool started) {
  if (started) {
    const auto end = session.WaitForStop([&status] { return status.bytes_programmed; });
    if (end == Session::WaitEnd::Interrupted || end == Session::WaitEnd::TimedOut) {
      session.debugger().Reset();
      return Failure(end == Session::WaitEnd::TimedOut ? ExitStatus::NoAnswer : ExitStatus::Failed,
                     fmt::format("{}; {} bytes are in flash, and the target was reset",
                                 end == Session::WaitEnd::TimedOut ? "the flash routine did not end"
                                                                   : "interrupted",
                                 status.bytes_programmed));
    }
  }
  switch (status.outcome) {
    case flash::FlashOutcome::Done:
      return {};
    case flash::FlashOutcome::VerifyFailed:
      return Failure(ExitStatus::VerifyDiffers, "");
    case flash::FlashOutcome::LinkLost:
      return LinkLost();
    case flash::FlashOutcome::Cancelled:
      return Failure(ExitStatus::Failed, "cancelled");
    case flash::FlashOutcome::None:
    case flash::FlashOutcome::Running:
    case flash::FlashOutcome::Refused:
      break;
  }
  return Failure(ExitStatus::Failed, "nothing was done");
}

// How a byte that was programmed can have come out wrong.
std::string_view Diagnosis(std::uint8_t expected, std::uint8_t found) {
  if ((expected & ~found) != 0) return "it was not erased before";
  if (found == 0xFF) return "nothing arrived there: the byte went to a wrong place";
  return "bits were left unprogrammed";
}

Result Compared(const load::VerifyResult& verified) {
  if (verified.outcome == load::VerifyOutcome::LinkLost) return LinkLost();
  if (verified.outcome == load::VerifyOutcome::Cancelled) {
    return Failure(ExitStatus::Failed, "interrupted while verifying");
  }
  if (!verified.first) return {};
  const load::Difference& first = *verified.first;
  Result result = Failure(
      ExitStatus::VerifyDiffers,
      fmt::format("{} of {} bytes differ, the first at {:04x}: expected {:02x}, found {:02x}: {}",
                  verified.different, verified.compared, first.address, first.expected, first.found,
                  Diagnosis(first.expected, first.found)));
  result.fields["address"] = fmt::format("{:04x}", first.address);
  return result;
}

Result VerifyFlash(Session& session, const images::Image& image) {
  if (!session.debugger().security_passed) {
    return Failure(ExitStatus::Security,
                   "flash cannot be read back: the security code was not accepted after the reset");
  }
  session.debugger().BeginCommand();
  ShownProgress progress(session.ui(), "Verifying");
  return Compared(load::Verify(session.debugger().monitor, image, progress));
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
  result.text = fmt::format("programmed {} bytes\n", image.size());
  result.fields = {{"programmed", image.size()}, {"verified", verify}};
  return result;
}

}  // namespace

Result MassErase(Session& session, Arguments) {
  flash::FlashOperations& flash = session.debugger().flash;
  Result result = AwaitFlash(session, flash.status(), flash.MassEraseCommand());
  if (result.ok()) result.text = "erased\n";
  return result;
}

Result Erase(Session& session, Arguments arguments) {
  const auto from = session.ResolveAddress(arguments[0]);
  const auto to = session.ResolveAddress(arguments[1]);
  for (const std::string* error : {&from.error, &to.error}) {
    if (!error->empty()) return UsageError(*error);
  }
  if (to.value <= from.value) return UsageError("End address must be greater than start address");
  flash::FlashOperations& flash = session.debugger().flash;
  Result result = AwaitFlash(session, flash.status(), flash.EraseFlashRange(from.value, to.value));
  if (result.ok()) result.text = fmt::format("erased {:04x} to {:04x}\n", from.value, to.value);
  return result;
}

Result Program(Session& session, Arguments arguments) {
  const bool verify = arguments.size() < 2;
  if (!verify && arguments[1] != "noverify") return UsageError("usage: program FILE [noverify]");
  const std::string& path = arguments[0];
  const images::ImageFile file = images::ReadImageFile(path);
  if (!file.report.ok()) {
    return Failure(ExitStatus::File,
                   fmt::format("cannot read {}: {}", path, file.report.file_error));
  }
  const images::Image image = file.ToImage();
  if (image.empty()) {
    return Failure(ExitStatus::File, fmt::format("{} holds no S-record data", path));
  }
  flash::FileProgrammer& programmer = session.debugger().file_programmer;
  Result result = AwaitFlash(session, programmer.status(), programmer.ProgramFlashFile(path));
  if (result.ok() && programmer.status().bytes_programmed == 0) {
    return Failure(ExitStatus::File,
                   fmt::format("nothing was programmed: {} begins with no S-record", path));
  }
  return Programmed(session, std::move(result), image, verify);
}

Result ProgramBytes(Session& session, Arguments arguments) {
  const auto address = session.ResolveAddress(arguments[0]);
  if (!address.ok()) return UsageError(address.error);
  std::vector<std::uint8_t> bytes;
  for (const std::string& word : arguments.subspan(1)) {
    const auto byte = ParseHexNumber(word, 0xFF, "byte");
    if (!byte.ok()) return UsageError(byte.error);
    bytes.push_back(static_cast<std::uint8_t>(byte.value));
  }
  if (bytes.size() > 0x10000 - address.value) {
    return UsageError(
        fmt::format("{} bytes from {:04X} go beyond FFFF", bytes.size(), address.value));
  }
  images::Image image;
  image.Put(address.value, bytes);
  flash::FlashOperations& flash = session.debugger().flash;
  Result result =
      AwaitFlash(session, flash.status(), flash.ProgramFlashLocations(address.value, bytes));
  return Programmed(session, std::move(result), image, true);
}

Result ProgramIrq(Session& session, Arguments) {
  images::Image image;
  image.Put(devices::kIrqVector, std::array{base::HighByte(devices::kIrqStopRoutine),
                                            base::LowByte(devices::kIrqStopRoutine)});
  flash::FlashOperations& flash = session.debugger().flash;
  Result result = AwaitFlash(session, flash.status(), flash.ProgramIrqVector());
  return Programmed(session, std::move(result), image, true);
}

}  // namespace brevant::cli
