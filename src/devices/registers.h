// SPDX-License-Identifier: MIT
// The registers of a device as rows: where each lies, what its bits are and what touching it does
// besides. What a row does not tell is not known here.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "base/address.h"

namespace brevant::devices {

struct Device;

// Bits high to low of a register.
struct Field {
  std::string_view name;
  int high = 0, low = 0;
  std::string_view meaning;

  constexpr std::uint32_t most() const { return (1u << (high - low + 1)) - 1; }
  constexpr std::uint32_t ValueIn(std::uint8_t byte) const { return byte >> low & most(); }
  constexpr std::uint8_t With(std::uint8_t byte, std::uint32_t value) const {
    return static_cast<std::uint8_t>((byte & ~(most() << low)) | (value & most()) << low);
  }
};

enum class Access {
  ReadWrite,
  WriteOnce,  // after a reset
  ReadOnly,
};

struct Register {
  base::Address address = 0;
  std::string_view name;   // "T1SC"
  std::string_view group;  // "Timer 1"
  std::string_view what;   // "status and control"
  Access access = Access::ReadWrite;
  std::span<const Field> fields = {};  // from the highest bit down; empty where none are known
  // It is not the same once it has been read, or it keeps another from going on: what is only shown
  // must not read it. "clears COCO"; empty for what can be read as often as one likes.
  std::string_view read_effect = {};
  // What else has to be known by who writes it: "writing starts a conversion".
  std::string_view note = {};
};

// Ascending by address; those of a group need not be neighbours.
std::span<const Register> Gp32Registers();
std::span<const Register> QlRegisters();

// Null where no register is known.
const Register* FindRegister(const Device& device, base::Address address);
// In either case.
const Register* FindRegister(const Device& device, std::string_view name);
// The same, unless the register can be read as often as one likes.
const Register* FindReadEffect(const Device& device, base::Address address);

// What a register can be taken apart into: its fields, or its bits where none are known.
std::span<const Field> PartsOf(const Register& row);
// By its name in either case, or by the number of a bit. Null when there is no such part.
const Field* FindField(const Register& row, std::string_view name);

// In the order of the rows, each once.
std::vector<std::string_view> Groups(const Device& device);

}  // namespace brevant::devices
