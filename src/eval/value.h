// SPDX-License-Identifier: MIT
// What an expression comes to: something of a type that lies in the target's memory, or a number.
// Rests on the debug information's types.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/address.h"
#include "devices/registers.h"
#include "symbols/types.h"

namespace brevant::eval {

// Bits of memory; bytes are stored with the most significant one first.
struct Place {
  base::Address address = 0;
  int bit = 0;   // of a bit-field: its lowest bit in the byte at the address
  int bits = 0;  // 0: no bit-field
};

struct Value {
  symbols::Type type = {};
  symbols::TypeId id = symbols::kUnknownType;  // of the type, where the program has it
  // Where it lies; nothing for what was computed, which number then is.
  std::optional<Place> place = {};
  // Integers, pointers and functions as C has them; a float's value is in real.
  std::int64_t number = 0;
  double real = 0;
  // Why there is nothing to be shown: "kept in register A for a part of the function". Then neither
  // place nor number mean anything.
  std::string unavailable = {};
  // A register's name as it is written, where the value is one.
  std::string register_name = {};
  // Of the MCU, where the value is one or a field of it.
  const devices::Register* of_chip = nullptr;
  const devices::Field* chip_field = nullptr;
};

// How the message for such a value reads: "not available here (...)".
std::string UnavailableText(const Value& value);

// "int", "unsigned char", ...: the types of C that need no program. Sizes are those of SDCC for
// this MCU: short and int 2, long 4, long long 8, pointers 2 bytes.
symbols::Type IntegerType(int size, bool is_signed);
symbols::Type FloatType();
symbols::Type PointerTo(symbols::TypeId target);

bool IsInteger(const symbols::Type& type);  // bool too
bool IsScalar(const symbols::Type& type);   // integers, floats, pointers

// number cut to the size of the type, and its sign extended where the type has one.
std::int64_t Wrapped(std::int64_t number, const symbols::Type& type);

}  // namespace brevant::eval
