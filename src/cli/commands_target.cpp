// SPDX-License-Identifier: MIT
// Registers and memory.
#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "base/file_names.h"
#include "base/text_number.h"
#include "cli/command_table.h"
#include "cli/interrupt.h"
#include "cli/memory_writes.h"
#include "cli/register_line.h"
#include "cli/session.h"
#include "cli/variables.h"
#include "devices/device.h"
#include "frontend/address_names.h"
#include "load/confirmed_read.h"
#include "views/block_job.h"

namespace brevant::cli {
namespace {

constexpr std::uint32_t kDefaultReadCount = 0x10;
constexpr std::uint32_t kAnyNumber = 0xFFFFFFFF;
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
    {"PC", base::kLastAddress,
     [](control::RegisterFrame& frame, std::uint32_t v) { frame.SetPC(v); }},
};

// What went wrong has been told.
Result RunBlockOperation(Session& session, const views::BlockOperation& operation) {
  views::BlockJob& block = session.debugger().block;
  const views::BlockOutcome outcome = block.Run(operation);
  Result result;
  switch (outcome) {
    case views::BlockOutcome::Done:
      return result;
    case views::BlockOutcome::Cancelled:
      return Interruption("");
    case views::BlockOutcome::LinkLost:
    case views::BlockOutcome::LineDamaged:
      result.status = ExitStatus::NoAnswer;
      break;
    case views::BlockOutcome::UnderWay:
    case views::BlockOutcome::Refused:
    case views::BlockOutcome::NotTaken:
    case views::BlockOutcome::Ended:
      result.status = ExitStatus::Failed;
      break;
  }
  if (const auto at = block.operation()->fault_at()) {
    result.fields["address"] = fmt::format("{:04x}", *at);
  }
  return result;
}

Result Info(Session& session, const ParsedArguments&) {
  const std::string_view device =
      devices::BySettingsNumber(session.settings().Integer(base::keys::kDevice)).name;
  const bool passed = session.debugger().security.passed();
  const std::string security = passed ? "passed" : "not passed";
  Result result;
  result.text =
      fmt::format("device {}\nport {}\nsecurity {}\n", device, session.PortName(), security);
  result.fields = {{"device", device}, {"port", session.PortName()}, {"security", security}};
  if (const auto sign = session.debugger().connector.sign();
      passed && sign != link::SecuritySign::Flag) {
    result.text += fmt::format("security seen by {}\n", link::SignText(sign));
    result.fields["security_sign"] = link::SignText(sign);
  }
  const long damage = session.debugger().memory.damage();
  result.fields["damaged_bytes"] = damage;
  if (damage > 0) result.text += fmt::format("damaged bytes on the line {}\n", damage);
  return result;
}

Result Regs(Session& session, const ParsedArguments&) {
  session.debugger().frame.ReadRegisters();
  return RegisterResult(session.debugger().frame);
}

// Digits, else the address of a symbol, line and so on. Only for PC letters may be a name although
// they are digits too: it takes places, the others any number.
frontend::Parsed<std::uint32_t> RegisterValue(Session& session, const std::string& word,
                                              std::uint32_t limit, std::string_view name) {
  // No address fits into a byte.
  const bool number = limit <= 0xFF || (base::IsHexField(word) && name != "PC");
  if (number) return frontend::ParseHexNumber(word, limit, name);
  auto value = frontend::ResolveAddress(word, session.debugger().debug_info,
                                        session.debugger().memory.device());
  if (!value.note.empty()) session.ui().Warn(value.note);
  if (!value.ok() && !value.well_formed)
    value.error = frontend::ParseHexNumber(word, limit, name).error;
  if (value.ok() && value.value > limit) {
    value.error = fmt::format("{} is {:04x}, which is beyond {:X}", word, value.value, limit);
  }
  return value;
}

bool IsRegister(std::string_view name) {
  return name == "SP" ||
         std::ranges::find(kRegisters, name, &RegisterRow::name) != std::end(kRegisters);
}

Result Set(Session& session, const ParsedArguments& arguments) {
  std::string name = base::UpperCase(arguments.Text(0));
  if (name.starts_with('@')) {
    name.erase(0, 1);
  } else if (!IsRegister(name) ||
             (name != arguments.Text(0) && IsVariable(session, arguments.Text(0)))) {
    return SetVariable(session, arguments.Text(0), arguments.Text(1));
  } else if (IsVariable(session, name)) {
    session.ui().Warn(fmt::format("{0} is the register; the variable is written ({0}).", name));
  }
  control::RegisterFrame& frame = session.debugger().frame;
  if (name == "SP") {
    const auto value =
        RegisterValue(session, arguments.Text(1), base::kLastAddress, "stack pointer");
    if (!value.ok()) return UsageError(value.error);
    if (session.debugger().memory.KindOf(value.value) != devices::MemoryKind::Ram) {
      return Failure(ExitStatus::Failed,
                     fmt::format("nothing was done: {:04x} is not RAM", value.value));
    }
    if (!frame.SetStackPointer(value.value)) {
      return Failure(ExitStatus::Failed,
                     "the stack pointer was not changed: the target did not come back from RAM");
    }
    return {};
  }
  for (const RegisterRow& row : kRegisters) {
    if (row.name != name) continue;
    const auto value = RegisterValue(session, arguments.Text(1), row.limit, row.name);
    if (!value.ok()) return UsageError(value.error);
    row.store(frame, value.value);
    return {};
  }
  return UsageError(fmt::format("\"{}\" is no register: PC, SP, HX, A or CCR", name));
}

Result Read(Session& session, const ParsedArguments& arguments) {
  const base::Address address = arguments.Number(0);
  const std::uint32_t room = base::kAddressSpace - address;
  const std::uint32_t count = arguments.Number(1, std::min(kDefaultReadCount, room));
  if (count > room) {
    return UsageError(fmt::format("count {:X} is beyond {:X}, the end of memory", count, room));
  }
  std::vector<std::uint8_t> bytes(count);
  const load::ConfirmedRead read =
      load::ReadConfirmed(session.debugger().memory, session.debugger().crc, address, bytes,
                          [](long, long) { return !Interrupted(); });
  if (read.damaged) return DamagedLine(*read.damaged);
  bytes.resize(read.bytes);
  Result result;
  if (read.range == load::RangeResult::Stopped) {
    result = Interruption(fmt::format(" after {:X} of {:X} bytes", bytes.size(), count));
  }
  for (std::size_t at = 0; at < bytes.size(); at += kBytesPerLine) {
    result.text += fmt::format("{:06x}", address + at);
    for (std::size_t i = at; i < std::min(at + kBytesPerLine, bytes.size()); ++i) {
      result.text += fmt::format(" {:02x}", bytes[i]);
    }
    result.text += '\n';
  }
  std::string hex;
  for (const std::uint8_t byte : bytes) hex += fmt::format("{:02x}", byte);
  result.fields = {{"address", fmt::format("{:04x}", address)}, {"bytes", hex}};
  return result;
}

Result Write(Session& session, const ParsedArguments& arguments) {
  const base::Address address = arguments.Number(0);
  const std::vector<std::uint8_t>& bytes = arguments.Bytes(1);
  const auto last = address + static_cast<base::Address>(bytes.size()) - 1;
  Result refused = CheckWritable(session, address, last);
  return refused.ok() ? WriteAndTell(session, address, bytes) : refused;
}

Result Fill(Session& session, const ParsedArguments& arguments) {
  const auto word = static_cast<std::uint16_t>(arguments.Number(2));
  return RunBlockOperation(
      session, views::BlockOperation::Fill(arguments.Number(0), arguments.Number(1), word));
}

Result Move(Session& session, const ParsedArguments& arguments) {
  const auto move =
      views::BlockOperation::Move(arguments.Number(0), arguments.Number(1), arguments.Number(2));
  if (!move.Fits()) return UsageError("the block does not fit: it would end beyond FFFF");
  return RunBlockOperation(session, move);
}

Result Reset(Session& session, const ParsedArguments&) {
  const bool reset = session.debugger().Reset();
  if (session.debugger().memory.LinkError()) {
    const std::string& why = session.debugger().monitor_link.SignalError();
    if (!reset) return Failure(ExitStatus::NoAnswer, "the target was not reset: " + OneLine(why));
    return Failure(ExitStatus::NoAnswer, "the target does not answer after the reset");
  }
  // Why not has been said as an error.
  if (!reset) return Failure(ExitStatus::Failed, {});
  if (session.debugger().image_gone) session.ui().Notice(debugger::Debugger::kImageGone);
  if (!session.debugger().security.passed()) {
    session.ui().Notice(
        "The security code was not accepted after the reset: flash reads are not valid.");
  }
  Result result;
  if (const auto& stop = session.debugger().run_control.last_stop()) {
    result.note = base::StopText(*stop);
    result.fields["stop"] = base::StopWord(stop->reason);
  }
  return result;
}

constexpr Command kRows[] = {
    {"info", {}, kAlways, Info, "device, port and security"},
    {"regs", {}, kStopped, Regs, "show the registers"},
    {"set",
     {Text("REG|VARIABLE"), Rest("VALUE")},
     kStopped,
     Set,
     "change PC, SP, HX, A, CCR, the MCU's PTA, T1SC.PS or PTA.3 (VALUE hex), or a variable (as in "
     "C)"},
    {"read",
     {Address("ADDR"), Optional(Hex("COUNT", kAnyNumber, "count"))},
     kStopped,
     Read,
     "show memory (COUNT hex, default 10)"},
    {"write", {Address("ADDR"), Bytes("BYTE")}, kStopped, Write, "write bytes to RAM or registers"},
    {"fill",
     {Address("FROM"), Address("TO"), Hex("WORD", 0xFFFF, "word")},
     kStopped,
     Fill,
     "fill a block with a 16-bit word"},
    {"move",
     {Address("FROM"), Address("TO"), Address("DEST")},
     kStopped,
     Move,
     "copy a block in 16-bit words"},
    {"reset", {}, kAlways, Reset, "reset the target and send its security code"},
};

}  // namespace

std::span<const Command> TargetCommands() {
  return kRows;
}

}  // namespace brevant::cli
