// SPDX-License-Identifier: MIT
#include "eval/stored.h"

#include <bit>

#include "base/text_format.h"
#include "eval/evaluate.h"
#include "eval/operators.h"
#include "memory/register_access.h"

namespace brevant::eval {
namespace {

using base::Address;
using symbols::Type;
using Kind = Type::Kind;

constexpr int kByteBits = 8;

std::uint64_t BigEndian(base::Bytes bytes) {
  std::uint64_t number = 0;
  for (const std::uint8_t byte : bytes) number = number << kByteBits | byte;
  return number;
}

std::uint64_t LittleEndian(base::Bytes bytes) {
  std::uint64_t number = 0;
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
    number = number << kByteBits | *byte;
  return number;
}

std::uint64_t Mask(int bits) {
  return bits >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << bits) - 1;
}

bool CanBeWritten(const Value& to) {
  return IsScalar(to.type) && to.place.has_value();
}

// A bit-field's number fits when its bits hold it; for others C cuts.
bool Fits(const Value& to, std::int64_t number) {
  const int bits = to.place->bits > 0 ? to.place->bits : kByteBits * to.type.size;
  if (bits >= 64) return true;
  const std::int64_t most = static_cast<std::int64_t>(Mask(bits));
  const std::int64_t least = -(std::int64_t{1} << (bits - 1));
  return number >= least && number <= most;
}

// Of the MCU: what it does not take, or what nobody can look at, is said as what was wrong.
std::string AssignRegister(const Value& to, const Value& what, memory::Memory& memory) {
  const auto byte = static_cast<std::uint8_t>(Converted(what, to.type).number);
  const memory::RegisterWrite written =
      to.chip_field == nullptr
          ? memory::WriteRegister(memory, *to.of_chip, byte)
          : memory::WriteField(memory, *to.of_chip, *to.chip_field, byte & to.chip_field->most());
  return written.refused.empty() ? written.remark : written.refused;
}

}  // namespace

Value MemberValue(const Value& whole, const symbols::Member& member, const Context& context) {
  Value value{.type = context.info().types[member.type], .id = member.type};
  if (whole.place) {
    value.place = Place{base::Low16(whole.place->address + static_cast<Address>(member.offset)),
                        member.bit, member.bits};
  }
  return value;
}

int StoredBytes(const Value& value) {
  if (value.place && value.place->bits > 0) {
    return (value.place->bit + value.place->bits + kByteBits - 1) / kByteBits;
  }
  return value.type.size;
}

Value FromBytes(Value value, base::Bytes bytes) {
  if (value.place && value.place->bits > 0) {
    const std::uint64_t field = LittleEndian(bytes) >> value.place->bit & Mask(value.place->bits);
    const std::uint64_t sign = std::uint64_t{1} << (value.place->bits - 1);
    value.number = static_cast<std::int64_t>(
        value.type.is_signed && (field & sign) != 0 ? field - (sign << 1) : field);
    return value;
  }
  const std::uint64_t number = BigEndian(bytes);
  if (value.type.kind == Kind::Float) {
    value.real = std::bit_cast<float>(static_cast<std::uint32_t>(number));
  } else if (value.type.kind == Kind::Bool) {
    value.number = static_cast<std::int64_t>(number);
  } else {
    value.number = Wrapped(static_cast<std::int64_t>(number), value.type);
  }
  return value;
}

std::vector<std::uint8_t> ToBytes(const Value& to, const Value& what, base::Bytes before) {
  const Value converted = Converted(what, to.type);
  std::vector<std::uint8_t> bytes(before.begin(), before.end());
  if (to.place->bits > 0) {
    const std::uint64_t mask = Mask(to.place->bits) << to.place->bit;
    const std::uint64_t field = static_cast<std::uint64_t>(what.number) << to.place->bit & mask;
    std::uint64_t number = (LittleEndian(before) & ~mask) | field;
    for (std::uint8_t& byte : bytes) {
      byte = static_cast<std::uint8_t>(number);
      number >>= kByteBits;
    }
    return bytes;
  }
  std::uint64_t number = static_cast<std::uint64_t>(converted.number);
  if (to.type.kind == Kind::Float) {
    number = std::bit_cast<std::uint32_t>(static_cast<float>(converted.real));
  }
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
    *byte = static_cast<std::uint8_t>(number);
    number >>= kByteBits;
  }
  return bytes;
}

Value Loaded(Value value, const Context& context) {
  if (!value.unavailable.empty() || !value.place || value.type.kind == Kind::Function) return value;
  if (!IsScalar(value.type)) return value;
  const auto read = context.Read(value.place->address, StoredBytes(value));
  if (!read.ok()) {
    value.unavailable = read.problem;
    return value;
  }
  return FromBytes(std::move(value), read.bytes);
}

std::string Assign(const Value& to, const Value& what, const Context& context) {
  if (!to.unavailable.empty()) return UnavailableText(to);
  if (!CanBeWritten(to)) return "only numbers and pointers that lie in memory can be set";
  Value value = Loaded(what, context);
  if (!value.unavailable.empty()) return UnavailableText(value);
  if (value.type.kind == Kind::Function) value.type = PointerTo(value.id);
  if (!IsScalar(value.type)) return "a number is expected";
  memory::Memory& memory = context.memory();
  const Address address = to.place->address;
  const int count = StoredBytes(to);
  const bool whole = to.type.kind != Kind::Float && to.type.kind != Kind::Bool;
  if (whole && value.type.kind != Kind::Float && !Fits(to, value.number)) {
    return base::Format("%lld does not fit", static_cast<long long>(value.number));
  }
  if (to.of_chip != nullptr) return AssignRegister(to, value, memory);
  for (int i = 0; i < count; ++i) {
    const Address at = base::Low16(address + static_cast<Address>(i));
    if (memory.Writable(at)) continue;
    return base::Format("%04x is no RAM: it cannot be set like this", at);
  }
  std::vector<std::uint8_t> before(static_cast<std::size_t>(count));
  if (to.place->bits > 0) {
    const auto read = context.Read(address, count);
    if (!read.ok()) return read.problem;
    before = read.bytes;
  }
  const auto different = memory.WriteAndLook(address, ToBytes(to, value, before));
  if (memory.LinkError()) return "the link is lost";
  if (!different) return {};
  return base::Format("%04x holds %02x after %02x was written", different->address,
                      different->found, different->expected);
}

}  // namespace brevant::eval
