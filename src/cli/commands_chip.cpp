// SPDX-License-Identifier: MIT
// The registers of the MCU.
#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "base/file_names.h"
#include "base/text_number.h"
#include "cli/chip_registers.h"
#include "cli/command_table.h"
#include "cli/session.h"
#include "control/program_context.h"
#include "devices/device.h"
#include "eval/evaluate.h"
#include "eval/stored.h"
#include "memory/register_access.h"

namespace brevant::cli {
namespace {

using devices::Register;
using Byte = std::optional<std::uint8_t>;

constexpr std::string_view kNotRead = "--";

nlohmann::ordered_json FieldsOf(const Register& row, std::uint8_t value) {
  auto fields = nlohmann::ordered_json::array();
  for (const devices::Field& field : row.fields) {
    fields.push_back(
        {{"name", field.name}, {"value", field.ValueIn(value)}, {"meaning", field.meaning}});
  }
  return fields;
}

nlohmann::ordered_json JsonOf(const Register& row, Byte value) {
  nlohmann::ordered_json json = {{"name", row.name},
                                 {"address", fmt::format("{:04x}", row.address)},
                                 {"group", row.group},
                                 {"what", row.what}};
  if (value) {
    json["value"] = fmt::format("{:02x}", *value);
    json["fields"] = FieldsOf(row, *value);
  }
  if (!row.read_effect.empty()) json["reading_it"] = row.read_effect;
  return json;
}

std::string ValueText(std::uint8_t value) {
  return fmt::format("{:02x} %{}", value, base::FormatBinary(value, 8));
}

// "003d ADR       -- (reading it clears COCO)".
std::string Line(const Register& row, Byte value) {
  const std::string shown = value ? fmt::format("{}  {}", ValueText(*value), row.what)
                                  : fmt::format("{} (reading it {})", kNotRead, row.read_effect);
  return fmt::format("{:04x} {:<9} {}\n", row.address, row.name, shown);
}

// Nothing is read that changes on being read.
Result Listed(Session& session, std::string_view group) {
  memory::Memory& memory = session.debugger().memory;
  std::vector<const Register*> rows;
  for (const Register& row : memory.device().registers()) {
    if (group.empty() || row.group == group) rows.push_back(&row);
  }
  memory.TakeDamage();  // of what came before
  const std::vector<Byte> values = memory::ReadRegisters(memory, rows);
  if (memory.LinkError()) return LinkLost();
  if (const auto damaged = memory.TakeDamage()) return DamagedLine(*damaged);
  Result result;
  result.fields["registers"] = nlohmann::ordered_json::array();
  for (const std::string_view shown : devices::Groups(memory.device())) {
    if (!group.empty() && shown != group) continue;
    result.text += fmt::format("{}\n", shown);
    for (std::size_t n = 0; n < rows.size(); ++n) {
      if (rows[n]->group != shown) continue;
      result.text += "  " + Line(*rows[n], values[n]);
      result.fields["registers"].push_back(JsonOf(*rows[n], values[n]));
    }
  }
  return result;
}

// All its fields, or only this one.
Result ShownRegister(Session& session, const Register& row, const devices::Field* only) {
  memory::Memory& memory = session.debugger().memory;
  memory.TakeDamage();
  const Byte value = memory::ReadRegister(memory, row);
  if (memory.LinkError()) return LinkLost();
  if (!value) return DamagedLine(memory.TakeDamage().value_or(row.address));
  Result result;
  result.text = fmt::format("{:04x} {} {}  {}: {}\n", row.address, row.name, ValueText(*value),
                            row.group, row.what);
  const std::span<const devices::Field> shown =
      only != nullptr ? std::span(only, 1) : std::span(row.fields);
  for (const devices::Field& field : shown) {
    result.text +=
        fmt::format("  {:<10} = {:<2x}  {}\n", field.name, field.ValueIn(*value), field.meaning);
  }
  result.fields = JsonOf(row, *value);
  if (!row.note.empty()) result.note = fmt::format("{}: {}.", row.name, row.note);
  TellOfReading(session, row.address);
  return result;
}

Result Chip(Session& session, const ParsedArguments& arguments) {
  if (!arguments.Has(0)) return Listed(session, "");
  const std::string& name = arguments.Text(0);
  const devices::Device& device = session.debugger().memory.device();
  const std::size_t dot = std::min(name.find('.'), name.size());
  if (const Register* const row = devices::FindRegister(device, name.substr(0, dot))) {
    if (dot == name.size()) return ShownRegister(session, *row, nullptr);
    const std::string part = name.substr(dot + 1);
    if (const devices::Field* const field = devices::FindField(*row, part)) {
      return ShownRegister(session, *row, field);
    }
    return UsageError(
        fmt::format("{} has no bit or field {}: chip {} lists them", row->name, part, row->name));
  }
  for (const std::string_view group : devices::Groups(device)) {
    if (base::EqualIgnoringCase(group, name)) return Listed(session, group);
  }
  return UsageError(
      fmt::format("the {} has no register or group {}: chip alone lists them", device.name, name));
}

constexpr Command kRows[] = {
    {"chip",
     {Optional(Rest("REGISTER[.FIELD]|GROUP"))},
     kStopped,
     Chip,
     "the MCU's registers with their values, of a group, or one with its fields"},
};

}  // namespace

Result SetChipRegister(Session& session, const std::string& what, const eval::Value& to,
                       const std::string& value) {
  debugger::Debugger& debugger = session.debugger();
  std::int64_t number = 0;
  if (base::IsHexField(value)) {
    number = base::ParseHexExactly(value, 4).value_or(0xFFFF);
  } else {
    const eval::Context context = control::ContextOf(debugger.memory, debugger.debug_info,
                                                     debugger.frame, eval::Reading::Everything);
    const eval::Result from = eval::Evaluate(value, context);
    if (!from.ok()) return Failure(ExitStatus::Failed, from.problem);
    const eval::Value loaded = eval::Loaded(from.value, context);
    if (!loaded.unavailable.empty() || !eval::IsInteger(loaded.type)) {
      return Failure(ExitStatus::Failed, value + " is no whole number");
    }
    number = loaded.number;
  }
  const std::int64_t most = to.chip_field == nullptr ? 0xFF : to.chip_field->most();
  if (number < 0 || number > most) {
    return UsageError(fmt::format("{} takes hexadecimal 0 to {:x}", what, most));
  }
  const auto byte = static_cast<std::uint8_t>(number);
  const memory::RegisterWrite written =
      to.chip_field == nullptr
          ? memory::WriteRegister(debugger.memory, *to.of_chip, byte)
          : memory::WriteField(debugger.memory, *to.of_chip, *to.chip_field, byte);
  if (debugger.memory.LinkError()) return LinkLost();
  if (!written.refused.empty()) {
    return Failure(ExitStatus::Failed, fmt::format("{} was not set: {}", what, written.refused));
  }
  if (!written.remark.empty()) session.ui().Warn(written.remark + '.');
  return {};
}

void TellOfReading(Session& session, base::Address address) {
  const Register* const row = devices::FindReadEffect(session.debugger().memory.device(), address);
  if (row == nullptr) return;
  session.ui().Warn(fmt::format("This has read {}, which {}.", row->name, row->read_effect));
}

std::span<const Command> ChipCommands() {
  return kRows;
}

}  // namespace brevant::cli
