// SPDX-License-Identifier: MIT
#include "load/image_check.h"

#include <algorithm>

#include "base/file_names.h"
#include "base/files.h"
#include "base/text_format.h"
#include "devices/hc08.h"
#include "isa/instruction.h"
#include "symbols/importers.h"

namespace brevant::load {
namespace {

using base::Address;
using devices::MemoryKind;
using Kind = Finding::Kind;

struct Row {
  Kind kind;
  std::string_view word;
  bool prevents;
};
constexpr Row kRows[] = {
    {Kind::OutsideMemory, "outside-memory", true},
    {Kind::StackOutsideRam, "stack", true},
    {Kind::NoResetVector, "no-reset-vector", true},
    {Kind::VectorAtNothing, "reset-vector", true},
    {Kind::WatchdogUnserved, "watchdog", true},
    {Kind::SecurityCodeChanges, "security-code", false},
    {Kind::DebugFileOld, "debug-file", false},
    {Kind::NoRamStart, "no-start", false},
};

const Row& RowOf(Kind kind) {
  return *std::ranges::find(kRows, kind, &Row::kind);
}

// Start-up code sets the stack before it calls anything.
constexpr int kStartUpInstructions = 32;
// Tools write an image and its debug file within seconds of each other, in either order.
constexpr long long kSameBuildSeconds = 10;

constexpr std::uint8_t kLdhxImmediate = 0x45;
constexpr std::uint8_t kTxs = 0x94;
constexpr std::uint8_t kBra = 0x20;
constexpr std::uint8_t kJmp = 0xCC;
constexpr std::uint8_t kRti = 0x80;
constexpr std::uint8_t kRts = 0x81;
constexpr std::uint8_t kLdaImmediate = 0xA6;

// "8000-fdff, ff7e".
std::string Ranges(const devices::Device& device, MemoryKind kind) {
  std::string text;
  for (const devices::MemoryRange& range : device.memory) {
    if (range.kind != kind) continue;
    if (!text.empty()) text += ", ";
    text += base::Format("%04x", range.first);
    if (range.last != range.first) text += base::Format("-%04x", range.last);
  }
  return text;
}

const devices::MemoryRange& First(const devices::Device& device, MemoryKind kind) {
  return *std::ranges::find(device.memory, kind, &devices::MemoryRange::kind);
}

std::optional<isa::Instruction> InstructionIn(const images::Image& image, Address at) {
  isa::Instruction instruction{at, {}};
  for (std::size_t i = 0; i < instruction.bytes.size(); ++i) {
    instruction.bytes[i] = image.At(base::Low16(at + static_cast<Address>(i))).value_or(0);
  }
  if (!image.At(at) || instruction.entry().illegal()) return std::nullopt;
  return instruction;
}

// Where the code from start on sets the stack pointer to: LDHX #, TXS.
std::optional<Address> StartUpStack(const images::Image& image, Address start) {
  std::optional<Address> loaded;
  Address at = start;
  for (int n = 0; n < kStartUpInstructions; ++n) {
    const auto instruction = InstructionIn(image, at);
    if (!instruction) break;
    const std::uint8_t opcode = instruction->bytes[0];
    const Address operand = base::Word(instruction->bytes[1], instruction->bytes[2]);
    if (opcode == kRti || opcode == kRts) break;
    if (opcode == kTxs) return loaded ? std::optional(base::Low16(*loaded - 1)) : std::nullopt;
    loaded = opcode == kLdhxImmediate ? std::optional(operand) : std::nullopt;
    at = base::Low16(opcode == kJmp   ? operand
                     : opcode == kBra ? instruction->BranchTarget()
                                      : instruction->end());
  }
  return std::nullopt;
}

// Bytes of an instruction that writes CONFIG1 or serves the watchdog, which is a write to the place
// of the reset vector. Where the value is an operand, it is the one with this index.
struct WatchdogCode {
  std::array<std::uint8_t, 3> bytes;
  std::size_t length;
  int value_at = -1;
};
constexpr WatchdogCode kWatchdogCode[] = {
    {{0x10, 0x1F}, 2},                              // BSET 0
    {{0x6E, 0x00, 0x1F}, 3, 1},                     // MOV #
    {{0x7E, 0x1F}, 2},                              // MOV X+
    {{0x35, 0x1F}, 2},                              // STHX
    {{0xB7, 0x1F}, 2},                              // STA
    {{0xC7, 0x00, 0x1F}, 3},    {{0xBF, 0x1F}, 2},  // STX
    {{0xCF, 0x00, 0x1F}, 3},    {{0xC7, 0xFF, 0xFF}, 3}, {{0xCF, 0xFF, 0xFF}, 3},
};

bool Odd(std::uint8_t value) {
  return (value & devices::kCopDisable) != 0;
}

bool TakesCareOfWatchdog(const WatchdogCode& code, base::Bytes bytes, std::size_t at) {
  if (bytes.size() - at < code.length) return false;
  for (std::size_t i = 0; i < code.length; ++i) {
    const bool is_value = static_cast<int>(i) == code.value_at;
    if (is_value ? !Odd(bytes[at + i]) : bytes[at + i] != code.bytes[i]) return false;
  }
  // A value that is loaded just before it, and leaves the watchdog on.
  const bool on = code.value_at < 0 && at >= 2 && bytes[at - 2] == kLdaImmediate &&
                  !Odd(bytes[at - 1]) && code.bytes[1] != 0xFF && code.bytes[0] != 0x10;
  return !on;
}

bool TakesCareOfWatchdog(const images::Image& image) {
  for (const images::Block& block : image.Blocks()) {
    for (std::size_t at = 0; at < block.bytes.size(); ++at) {
      for (const WatchdogCode& code : kWatchdogCode) {
        if (TakesCareOfWatchdog(code, block.bytes, at)) return true;
      }
    }
  }
  return false;
}

void CheckPlaces(const images::Image& image, const devices::Device& device,
                 std::vector<Finding>& findings) {
  long outside = 0;
  Address first = 0;
  for (const images::Block& block : image.Blocks()) {
    for (Address i = 0; i < block.bytes.size(); ++i) {
      const MemoryKind kind = devices::KindOf(device, block.address + i);
      if (kind == MemoryKind::Flash || kind == MemoryKind::Ram) continue;
      if (outside++ == 0) first = block.address + i;
    }
  }
  if (outside == 0) return;
  findings.push_back(
      {Kind::OutsideMemory,
       base::Format(
           "%ld bytes, from %04x on, lie where the %s has neither flash (%s) nor RAM (%s): "
           "link the program for this device, with SDCC --code-loc 0x%04x.",
           outside, first, std::string(device.name), Ranges(device, MemoryKind::Flash),
           Ranges(device, MemoryKind::Ram), First(device, MemoryKind::Flash).first)});
}

void CheckStack(const images::Image& image, const devices::Device& device,
                std::vector<Finding>& findings) {
  const auto vector = ResetVector(image);
  const Address start = vector && image.At(*vector) ? *vector : image.Blocks().front().address;
  const auto stack = StartUpStack(image, start);
  if (!stack || devices::KindOf(device, *stack) == MemoryKind::Ram) return;
  findings.push_back(
      {Kind::StackOutsideRam,
       base::Format("The start-up code at %04x sets the stack pointer to %04x, which is not RAM: "
                    "link with the stack in RAM (%s), with SDCC --stack-loc 0x%04x.",
                    start, *stack, Ranges(device, MemoryKind::Ram),
                    First(device, MemoryKind::Ram).last)});
}

void CheckVector(const images::Image& image, std::vector<Finding>& findings) {
  const auto vector = ResetVector(image);
  if (!vector) {
    findings.push_back({Kind::NoResetVector,
                        "There is no reset vector at fffe: without the monitor nothing starts this "
                        "program. Put the address of its start-up code there."});
  } else if (!image.At(*vector)) {
    findings.push_back({Kind::VectorAtNothing,
                        base::Format("The reset vector points at %04x, where the image has no "
                                     "code: put the address of its start-up code at fffe.",
                                     *vector)});
  }
}

void CheckSecurity(const images::Image& image, const std::optional<SecurityBytes>& in_flash,
                   std::vector<Finding>& findings) {
  const auto code = SecurityCodeIn(image);
  if (!code || code == in_flash) return;
  std::string text;
  for (const std::uint8_t byte : *code) text += base::Format("%02x", byte);
  findings.push_back({Kind::SecurityCodeChanges,
                      base::Format("Programming it into erased flash makes the security code %s "
                                   "(fff6 to fffd): connecting will ask for that one.",
                                   text)});
}

}  // namespace

std::string_view Finding::word() const {
  return RowOf(kind).word;
}

bool Finding::prevents() const {
  return RowOf(kind).prevents;
}

std::optional<Address> ResetVector(const images::Image& image) {
  const auto high = image.At(devices::kResetVector);
  const auto low = image.At(devices::kResetVector + 1);
  if (!high || !low || base::Word(*high, *low) == base::kLastAddress) return std::nullopt;
  return base::Word(*high, *low);
}

std::optional<SecurityBytes> SecurityCodeIn(const images::Image& image) {
  SecurityBytes code{};
  bool any = false;
  for (std::size_t i = 0; i < code.size(); ++i) {
    const auto byte = image.At(devices::kSecurityCode + static_cast<Address>(i));
    any = any || byte;
    code[i] = byte.value_or(0xFF);
  }
  return any ? std::optional(code) : std::nullopt;
}

bool IsForFlash(const images::Image& image, const devices::Device& device) {
  return std::ranges::any_of(image.Blocks(), [&device](const images::Block& block) {
    return devices::KindOf(device, block.address) == MemoryKind::Flash &&
           block.address < device.vectors.front().address;
  });
}

std::vector<Finding> CheckImage(const images::Image& image, const devices::Device& device,
                                const std::optional<SecurityBytes>& in_flash) {
  std::vector<Finding> findings;
  if (image.empty()) return findings;
  CheckPlaces(image, device, findings);
  CheckStack(image, device, findings);
  if (!IsForFlash(image, device)) return findings;
  CheckVector(image, findings);
  if (!TakesCareOfWatchdog(image)) {
    findings.push_back({Kind::WatchdogUnserved,
                        "No instruction was found that turns the watchdog off (bit 0 of CONFIG1 at "
                        "001f) or serves it (a write to ffff): without the monitor it resets the "
                        "program again and again. Write CONFIG1 = 1 at the start."});
  }
  CheckSecurity(image, in_flash, findings);
  return findings;
}

std::optional<Finding> CheckDebugFile(const std::string& image_path,
                                      symbols::ToolChain tool_chain) {
  const symbols::ToolChainRow* row = symbols::FindToolChain(tool_chain);
  const auto image_time = base::ModificationTime(image_path);
  if (row == nullptr || !image_time) return std::nullopt;
  for (const symbols::Companion& companion : row->companions) {
    const std::string path = symbols::CompanionPath(image_path, companion.extension);
    const auto time = base::ModificationTime(path);
    if (!time || *time + kSameBuildSeconds >= *image_time) continue;
    return Finding{Kind::DebugFileOld,
                   base::Format("%s is older than the image: names and lines may be of an earlier "
                                "build. Build both again.",
                                path)};
  }
  return std::nullopt;
}

}  // namespace brevant::load
