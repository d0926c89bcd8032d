// SPDX-License-Identifier: MIT
#include "memory/register_access.h"

#include <algorithm>

#include "base/text_format.h"

namespace brevant::memory {
namespace {

using devices::Access;
using devices::Field;
using devices::Register;

constexpr const char* kLinkLost = "the link is lost";

// False while the link is lost, or when the line has damaged it each time.
bool AskSoundly(Memory& memory, base::Address address, std::span<std::uint8_t> bytes) {
  const auto before = memory.TakeDamage();
  // With an odd number of bytes no other is touched.
  const std::size_t odd = bytes.size() - (bytes.size() + 1) % 2;
  memory.AskChecked(bytes.first(odd), address);
  if (odd < bytes.size()) {
    memory.AskChecked(bytes.subspan(odd), address + static_cast<base::Address>(odd));
  }
  const auto damaged = memory.TakeDamage();
  // Whoever asks the door next is to know it too.
  if (before || damaged) memory.Doubt(before ? *before : *damaged);
  return !memory.LinkError() && !damaged;
}

// What two readings agree on; a bit that the line has turned in an answer shows in no echo. Nothing
// where three do not agree, as of a pin that changes.
std::optional<std::uint8_t> ReadAgreed(Memory& memory, const Register& row) {
  const auto first = ReadRegister(memory, row), second = ReadRegister(memory, row);
  if (first == second) return first;
  const auto third = ReadRegister(memory, row);
  return third == first || third == second ? third : std::nullopt;
}

std::string Name(const Register& row, const Field* field) {
  return std::string(row.name) + (field == nullptr ? "" : "." + std::string(field->name));
}

// Of the field, or of all of the register.
RegisterWrite WriteAndCompare(Memory& memory, const Register& row, const Field* field,
                              std::uint8_t value) {
  memory.WriteByte(row.address, value);
  if (memory.LinkError()) return {.refused = kLinkLost};
  if (!row.read_effect.empty()) {
    return {.remark = base::Format("%s was written but not read back: reading it %s",
                                   Name(row, field), std::string(row.read_effect))};
  }
  auto found = ReadRegister(memory, row);
  if (found && *found != value) found = ReadAgreed(memory, row);
  if (!found) {
    return {.remark = base::Format("%s was written but could not be read back", Name(row, field))};
  }
  const std::uint32_t wanted = field == nullptr ? value : field->ValueIn(value);
  const std::uint32_t now = field == nullptr ? *found : field->ValueIn(*found);
  if (now == wanted) return {};
  std::string remark = base::Format(field == nullptr ? "%s reads back %02x" : "%s reads back %x",
                                    Name(row, field), now);
  if (row.access == Access::WriteOnce) remark += ": it can be written once after a reset";
  if (field == nullptr && !row.note.empty()) remark += ": " + std::string(row.note);
  return {.remark = std::move(remark)};
}

std::string WhyNot(const Register& row) {
  if (row.access != Access::ReadOnly) return {};
  return std::string(row.name) + " can only be read";
}

}  // namespace

std::vector<std::optional<std::uint8_t>> ReadRegisters(Memory& memory,
                                                       std::span<const Register* const> rows) {
  std::vector<std::optional<std::uint8_t>> values(rows.size());
  for (std::size_t first = 0; first < rows.size() && !memory.LinkError();) {
    if (!rows[first]->read_effect.empty()) {
      ++first;
      continue;
    }
    std::size_t end = first + 1;
    while (end < rows.size() && rows[end]->read_effect.empty() &&
           rows[end]->address == rows[end - 1]->address + 1) {
      ++end;
    }
    std::vector<std::uint8_t> bytes(end - first);
    if (AskSoundly(memory, rows[first]->address, bytes)) {
      std::ranges::copy(bytes, values.begin() + static_cast<std::ptrdiff_t>(first));
    }
    first = end;
  }
  return values;
}

std::optional<std::uint8_t> ReadRegister(Memory& memory, const Register& row) {
  std::uint8_t byte = 0;
  return AskSoundly(memory, row.address, std::span(&byte, 1)) ? std::optional(byte) : std::nullopt;
}

RegisterWrite WriteRegister(Memory& memory, const Register& row, std::uint8_t value) {
  if (std::string refused = WhyNot(row); !refused.empty()) return {.refused = std::move(refused)};
  return WriteAndCompare(memory, row, nullptr, value);
}

RegisterWrite WriteField(Memory& memory, const Register& row, const Field& field,
                         std::uint32_t value) {
  if (std::string refused = WhyNot(row); !refused.empty()) return {.refused = std::move(refused)};
  if (value > field.most()) {
    return {.refused = base::Format("%s takes 0 to %x", Name(row, &field), field.most())};
  }
  if (!row.read_effect.empty()) {
    return {.refused = base::Format("its other bits would have to be read, and reading %s %s: set "
                                    "the whole register",
                                    std::string(row.name), std::string(row.read_effect))};
  }
  const auto before = ReadAgreed(memory, row);
  if (!before) {
    return {.refused = memory.LinkError() ? kLinkLost : "its other bits do not read alike twice"};
  }
  return WriteAndCompare(memory, row, &field, field.With(*before, value));
}

}  // namespace brevant::memory
