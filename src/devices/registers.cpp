// SPDX-License-Identifier: MIT
#include "devices/registers.h"

#include <algorithm>
#include <array>

#include "base/file_names.h"
#include "devices/device.h"

namespace brevant::devices {
namespace {

constexpr std::array kBits{
    Field{"7", 7, 7, ""}, Field{"6", 6, 6, ""}, Field{"5", 5, 5, ""}, Field{"4", 4, 4, ""},
    Field{"3", 3, 3, ""}, Field{"2", 2, 2, ""}, Field{"1", 1, 1, ""}, Field{"0", 0, 0, ""},
};

const Field* Named(std::span<const Field> fields, std::string_view name) {
  const auto found = std::ranges::find_if(
      fields, [name](const Field& field) { return base::EqualIgnoringCase(field.name, name); });
  return found == fields.end() ? nullptr : &*found;
}

}  // namespace

const Register* FindRegister(const Device& device, base::Address address) {
  const auto rows = device.registers();
  const auto found = std::ranges::lower_bound(rows, address, {}, &Register::address);
  return found == rows.end() || found->address != address ? nullptr : &*found;
}

const Register* FindRegister(const Device& device, std::string_view name) {
  const auto rows = device.registers();
  const auto found = std::ranges::find_if(
      rows, [name](const Register& row) { return base::EqualIgnoringCase(row.name, name); });
  return found == rows.end() ? nullptr : &*found;
}

const Register* FindReadEffect(const Device& device, base::Address address) {
  const Register* const row = FindRegister(device, address);
  return row == nullptr || row->read_effect.empty() ? nullptr : row;
}

std::span<const Field> PartsOf(const Register& row) {
  return row.fields.empty() ? std::span<const Field>(kBits) : row.fields;
}

const Field* FindField(const Register& row, std::string_view name) {
  const Field* const field = Named(row.fields, name);
  return field != nullptr ? field : Named(kBits, name);
}

std::vector<std::string_view> Groups(const Device& device) {
  std::vector<std::string_view> groups;
  for (const Register& row : device.registers()) {
    if (std::ranges::find(groups, row.group) == groups.end()) groups.push_back(row.group);
  }
  return groups;
}

}  // namespace brevant::devices
