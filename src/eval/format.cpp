// SPDX-License-Identifier: MIT
#include "eval/format.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "base/text_format.h"
#include "eval/evaluate.h"
#include "eval/stored.h"
#include "frames/function_at.h"
#include "symbols/places.h"

namespace brevant::eval {
namespace {

using base::Address;
using symbols::Type;
using Kind = Type::Kind;

constexpr int kMostElements = 64, kMostCharacters = 200, kMostDepth = 4;
// Of what a pointer leads to; read in pieces, most texts are short.
constexpr int kMostPointedCharacters = 32, kPiece = 8;
constexpr const char* kMore = "...";

struct Escape {
  std::uint8_t byte;
  const char* text;
};
constexpr std::array<Escape, 5> kEscapes{
    {{'\n', "\\n"}, {'\r', "\\r"}, {'\t', "\\t"}, {'"', "\\\""}, {'\\', "\\\\"}}};

const Escape* EscapeOf(std::uint8_t byte) {
  const auto* const row = std::ranges::find(kEscapes, byte, &Escape::byte);
  return row == kEscapes.end() ? nullptr : row;
}

bool IsReadable(std::uint8_t byte) {
  return (byte >= 0x20 && byte < 0x7F) || EscapeOf(byte) != nullptr;
}

// A readable character of a text between quotes.
std::string Quoted(std::uint8_t byte) {
  const Escape* const escape = EscapeOf(byte);
  return escape != nullptr ? escape->text : std::string(1, static_cast<char>(byte));
}

std::string QuotedText(std::span<const std::uint8_t> bytes) {
  std::string text = "\"";
  for (const std::uint8_t byte : bytes) text += Quoted(byte);
  return text + '"';
}

// SDCC's char has no sign here.
bool IsCharacter(const Type& type) {
  return type.kind == Kind::Integer && type.size == 1 && !type.is_signed;
}

class Writer {
 public:
  Writer(const Context& context, Notation notation) : context_(context), notation_(notation) {}

  std::string Text(const Value& value, int depth) const {
    if (!value.unavailable.empty()) return UnavailableText(value);
    switch (value.type.kind) {
      case Kind::Array:
        return IsCharacters(value) ? CharactersText(value, depth) : ElementsText(value, depth);
      case Kind::Struct:
      case Kind::Union:
        return MembersText(value, depth);
      case Kind::Function:
        return FunctionText(static_cast<Address>(value.number));
      case Kind::Void:
      case Kind::Unknown:
        return "? (its type is not known)";
      default:
        return ScalarText(Loaded(value, context_));
    }
  }

 private:
  bool IsCharacters(const Value& value) const {
    const Type& element = context_.info().types[value.type.target];
    return notation_ == Notation::AsC && IsCharacter(element) && value.place;
  }

  std::string ScalarText(const Value& value) const {
    if (!value.unavailable.empty()) return UnavailableText(value);
    if (value.type.kind == Kind::Float && notation_ == Notation::AsC) {
      return base::Format("%g", value.real);
    }
    if (notation_ != Notation::AsC) return BitsText(value);
    if (value.type.kind == Kind::Pointer) return PointerText(value);
    if (!value.type.is_signed) {
      return base::Format("%llu", static_cast<unsigned long long>(value.number));
    }
    return base::Format("%lld", static_cast<long long>(value.number));
  }

  // Of the stored bytes, without their leading zeros.
  std::string BitsText(const Value& value) const {
    const int bits = value.place && value.place->bits > 0 ? value.place->bits : 8 * value.type.size;
    auto number = static_cast<std::uint64_t>(value.number);
    if (value.type.kind == Kind::Float) {
      Value single = value;
      single.place.reset();
      number = 0;
      for (const std::uint8_t byte :
           ToBytes(Value{.type = value.type, .place = Place{}}, single,
                   std::vector<std::uint8_t>(static_cast<std::size_t>(value.type.size)))) {
        number = number << 8 | byte;
      }
    }
    if (bits < 64) number &= (std::uint64_t{1} << bits) - 1;
    if (notation_ == Notation::Hexadecimal) {
      return base::Format("0x%llx", static_cast<unsigned long long>(number));
    }
    std::string digits;
    for (int bit = bits - 1; bit >= 0; --bit) digits += (number >> bit & 1) != 0 ? '1' : '0';
    return digits;
  }

  std::string PointerText(const Value& value) const {
    const auto address = static_cast<Address>(value.number);
    if (context_.info().types[value.type.target].kind == Kind::Function) {
      return FunctionText(address);
    }
    return base::Format("0x%04x", base::Low16(address)) + PointedText(value);
  }

  // The text that a pointer to characters leads to, where one stands there.
  std::string PointedText(const Value& pointer) const {
    const Address address = base::Low16(static_cast<Address>(pointer.number));
    if (!IsCharacter(context_.info().types[pointer.type.target])) return {};
    const auto kind = context_.memory().KindOf(address);
    if (kind != devices::MemoryKind::Ram && kind != devices::MemoryKind::Flash) return {};
    std::vector<std::uint8_t> text;
    for (int i = 0; i < kMostPointedCharacters; i += kPiece) {
      const auto piece = context_.Read(address + static_cast<Address>(i), kPiece);
      if (!piece.ok()) return {};
      text.insert(text.end(), piece.bytes.begin(), piece.bytes.end());
      const auto end = std::ranges::find(text, 0);
      if (!std::all_of(text.begin(), end, IsReadable)) return {};
      if (end == text.end()) continue;
      return " " + QuotedText({text.begin(), end});
    }
    return " " + QuotedText(text) + kMore;
  }

  std::string FunctionText(Address address) const {
    const std::string text = base::Format("0x%04x", base::Low16(address));
    const symbols::Function* const function = frames::FunctionAt(address, context_.info());
    if (function != nullptr && function->first == address) {
      return text + " <" + std::string(symbols::PlainName(function->name)) + ">";
    }
    const auto label = context_.info().SymbolTable.FindSymbolName(address);
    return label ? text + " <" + std::string(*label) + ">" : text;
  }

  // The compiler makes no difference between characters and small numbers: what cannot be read as a
  // text is shown as numbers.
  std::string CharactersText(const Value& value, int depth) const {
    const int count = std::min(value.type.count, kMostCharacters);
    const auto read = context_.Read(value.place->address, count);
    if (!read.ok()) return ElementsText(value, depth);
    const std::vector<std::uint8_t>& bytes = read.bytes;
    const auto end = std::ranges::find(bytes, 0);
    const bool readable = std::all_of(bytes.begin(), end, IsReadable);
    const bool all_zero = std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; });
    if (!readable || (end == bytes.begin() && !all_zero)) return ElementsText(value, depth);
    return QuotedText({bytes.begin(), end}) +
           (end == bytes.end() && count < value.type.count ? kMore : "");
  }

  std::string ElementsText(const Value& value, int depth) const {
    if (depth >= kMostDepth) return std::string("{") + kMore + "}";
    std::string text = "{";
    for (const Part& part : PartsOf(value, context_, kMostElements)) {
      text += (text.size() > 1 ? ", " : "") + Text(part.value, depth + 1);
    }
    if (value.type.count > kMostElements) text += std::string(", ") + kMore;
    return text + "}";
  }

  std::string MembersText(const Value& value, int depth) const {
    if (depth >= kMostDepth) return std::string("{") + kMore + "}";
    std::string text = "{";
    for (const Part& part : PartsOf(value, context_, kMostElements)) {
      text += (text.size() > 1 ? ", " : "") + part.name + " = " + Text(part.value, depth + 1);
    }
    return text + "}";
  }

  const Context& context_;
  Notation notation_;
};

}  // namespace

std::string ValueText(const Value& value, const Context& context, Notation notation) {
  return Writer(context, notation).Text(value, 0);
}

std::string TypeText(const Value& value, const Context& context) {
  std::string text = context.info().types.Text(value.id);
  if (!text.empty()) return text;
  if (value.type.kind == Type::Kind::Function) {
    text = context.info().types.Text(value.type.target);
    return (text.empty() ? "code" : text) + " ()";
  }
  if (value.type.kind == Type::Kind::Pointer) {
    text = context.info().types.Text(value.type.target);
    if (text.empty()) text = value.type.name.empty() ? "void" : value.type.name;
    return text + " *";
  }
  return value.type.name.empty() ? "?" : value.type.name;
}

}  // namespace brevant::eval
