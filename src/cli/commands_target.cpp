// SPDX-License-Identifier: MIT
// Registers and memory.
#include <fmt/format.h>

#include <array>
#include <vector>

#include "base/file_names.h"
#include "base/text_number.h"
#include "cli/commands.h"
#include "cli/register_line.h"
#include "cli/session.h"
#include "devices/device.h"
#include "views/block_operation.h"

namespace brevant::cli {
namespace {

constexpr base::Address kMemorySize = 0x10000;
constexpr std::uint32_t kDefaultReadCount = 0x10;
constexpr std::size_t kBytesPerLine = 16;

// Written as the registers window writes its cells.
struct RegisterRow {
  std::string_view name;
  std::uint32_t limit;
  void (*store)(control::RegisterFrame& frame, std::uint32_t value);
};
constexpr RegisterRow kRegisters[] = {
    {"HX", 0xFFFF,
     [](control::RegisterFrame& frame, std::uint32_t v) { frame.WriteHX(frame.HX = v); }},
    {"A", 0xFF, [](control::RegisterFrame& frame, std::uint32_t v) { frame.WriteA(frame.A = v); }},
    // Bits 6 and 5 do not exist and read 1.
    {"CCR", 0xFF,
     [](control::RegisterFrame& frame, std::uint32_t v) { frame.WriteCCR(frame.CCR = v | 0x60u); }},
    {"PC", 0xFFFF,
     [](control::RegisterFrame& frame, std::uint32_t v) {
       frame.WriteProgramCounter(frame.PC = v);
     }},
};

Result RunBlockOperation(Session& session, views::BlockOperation operation) {
  session.ui().BeginProgress(operation.Title(), operation.ProgressText(), true);
  bool wanted = true;
  while (wanted && operation.Step(session.debugger().monitor)) {
    if (session.debugger().monitor.LinkError()) break;
    wanted = session.ui().UpdateProgress(operation.ProgressText(), operation.words_done(),
                                         operation.words_total());
  }
  session.ui().EndProgress();
  if (!wanted) {
    return Failure(ExitStatus::Failed,
                   fmt::format("interrupted after {} of {} words", operation.words_done(),
                               operation.words_total()));
  }
  return {};
}

// No failure: a register may well read differently from what was written.
void NoteNotTaken(Session& session, base::Address address, base::Bytes written) {
  std::vector<std::uint8_t> found(written.size());
  session.debugger().monitor.ReadBlockBytes(found, address);
  const auto differing = std::ranges::mismatch(written, found);
  if (session.debugger().monitor.LinkError() || differing.in1 == written.end()) return;
  session.ui().Notice(fmt::format("{:04x} holds {:02x} and not {:02x}: flash takes program-bytes.",
                                  address + (differing.in1 - written.begin()), *differing.in2,
                                  *differing.in1));
}

}  // namespace

Result Info(Session& session, Arguments) {
  const std::string_view device =
      devices::BySettingsNumber(session.settings().Integer(base::keys::kDevice)).name;
  const std::string security = session.debugger().security_passed ? "passed" : "not passed";
  Result result;
  result.text =
      fmt::format("device {}\nport {}\nsecurity {}\n", device, session.PortName(), security);
  result.fields = {{"device", device}, {"port", session.PortName()}, {"security", security}};
  return result;
}

Result Regs(Session& session, Arguments) {
  session.debugger().frame.ReadRegisters();
  return RegisterResult(session.debugger().frame);
}

Result Set(Session& session, Arguments arguments) {
  const std::string name = base::UpperCase(arguments[0]);
  control::RegisterFrame& frame = session.debugger().frame;
  if (name == "SP") {
    const auto value = ParseHexNumber(arguments[1], 0xFFFF, "stack pointer");
    if (!value.ok()) return UsageError(value.error);
    if (!frame.SetStackPointer(value.value)) {
      return Failure(ExitStatus::Failed,
                     "the stack pointer was not changed: the target did not come back from RAM");
    }
    return {};
  }
  for (const RegisterRow& row : kRegisters) {
    if (row.name != name) continue;
    const auto value = ParseHexNumber(arguments[1], row.limit, row.name);
    if (!value.ok()) return UsageError(value.error);
    row.store(frame, value.value);
    return {};
  }
  return UsageError(fmt::format("\"{}\" is no register: PC, SP, HX, A or CCR", arguments[0]));
}

Result Read(Session& session, Arguments arguments) {
  const auto address = session.ResolveAddress(arguments[0]);
  if (!address.ok()) return UsageError(address.error);
  std::uint32_t count = std::min(kDefaultReadCount, kMemorySize - address.value);
  if (arguments.size() > 1) {
    const auto given = ParseHexNumber(arguments[1], kMemorySize - address.value, "count");
    if (!given.ok()) return UsageError(given.error + ", the end of memory");
    count = given.value;
  }
  std::vector<std::uint8_t> bytes(count);
  session.debugger().monitor.ReadBlockBytes(bytes, address.value);
  Result result;
  for (std::size_t at = 0; at < bytes.size(); at += kBytesPerLine) {
    result.text += fmt::format("{:06x}", address.value + at);
    for (std::size_t i = at; i < std::min(at + kBytesPerLine, bytes.size()); ++i) {
      result.text += fmt::format(" {:02x}", bytes[i]);
    }
    result.text += '\n';
  }
  std::string hex;
  for (const std::uint8_t byte : bytes) hex += fmt::format("{:02x}", byte);
  result.fields = {{"address", fmt::format("{:04x}", address.value)}, {"bytes", hex}};
  return result;
}

Result Write(Session& session, Arguments arguments) {
  const auto address = session.ResolveAddress(arguments[0]);
  if (!address.ok()) return UsageError(address.error);
  std::vector<std::uint8_t> bytes;
  for (const std::string& word : arguments.subspan(1)) {
    const auto byte = ParseHexNumber(word, 0xFF, "byte");
    if (!byte.ok()) return UsageError(byte.error);
    bytes.push_back(static_cast<std::uint8_t>(byte.value));
  }
  if (bytes.size() > kMemorySize - address.value) {
    return UsageError(
        fmt::format("{} bytes from {:04X} go beyond FFFF", bytes.size(), address.value));
  }
  session.debugger().monitor.WriteBlock(address.value, bytes);
  NoteNotTaken(session, address.value, bytes);
  return {};
}

Result Fill(Session& session, Arguments arguments) {
  const auto from = session.ResolveAddress(arguments[0]);
  const auto to = session.ResolveAddress(arguments[1]);
  const auto word = ParseHexNumber(arguments[2], 0xFFFF, "word");
  for (const std::string* error : {&from.error, &to.error, &word.error}) {
    if (!error->empty()) return UsageError(*error);
  }
  return RunBlockOperation(
      session,
      views::BlockOperation::Fill(from.value, to.value, static_cast<std::uint16_t>(word.value)));
}

Result Move(Session& session, Arguments arguments) {
  const auto from = session.ResolveAddress(arguments[0]);
  const auto to = session.ResolveAddress(arguments[1]);
  const auto destination = session.ResolveAddress(arguments[2]);
  for (const std::string* error : {&from.error, &to.error, &destination.error}) {
    if (!error->empty()) return UsageError(*error);
  }
  const base::Address length = std::max(from.value, to.value) - std::min(from.value, to.value);
  if (destination.value + length >= kMemorySize) {
    return UsageError(fmt::format("the block does not fit: it would end beyond FFFF"));
  }
  return RunBlockOperation(session,
                           views::BlockOperation::Move(from.value, to.value, destination.value));
}

Result Reset(Session& session, Arguments) {
  session.debugger().Reset();
  if (session.debugger().monitor.LinkError()) {
    return Failure(ExitStatus::NoAnswer, "the target does not answer after the reset");
  }
  if (session.debugger().image_gone) session.ui().Notice(debugger::Debugger::kImageGone);
  if (!session.debugger().security_passed) {
    session.ui().Notice(
        "The security code was not accepted after the reset: flash reads are not valid.");
  }
  return {};
}

}  // namespace brevant::cli
