// SPDX-License-Identifier: MIT
#include "symbols/sdcc_types.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

using Kind = Type::Kind;

constexpr int kPointerSize = 2;
constexpr int kLongLongSize = 8;
constexpr std::string_view kMemberMark = "}S:S$";

struct BaseType {
  std::string_view code;
  Kind kind;
  int size;
  const char* with_sign;
  const char* without_sign;
};
constexpr BaseType kBaseTypes[] = {
    {"", Kind::Bool, 1, "_Bool", "_Bool"},
    {"SV", Kind::Void, 0, "void", "void"},
    {"SC", Kind::Integer, 1, "signed char", "unsigned char"},
    {"SS", Kind::Integer, 2, "short", "unsigned short"},
    {"SI", Kind::Integer, 2, "int", "unsigned int"},
    {"SL", Kind::Integer, 4, "long", "unsigned long"},
    {"SF", Kind::Float, 4, "float", "float"},
};
constexpr BaseType kLongLong{"SI", Kind::Integer, kLongLongSize, "long long", "unsigned long long"};

Type ToType(const BaseType& row, bool is_signed) {
  const bool has_sign = is_signed && row.kind != Kind::Bool && row.kind != Kind::Void;
  return {.kind = row.kind,
          .size = row.size,
          .is_signed = has_sign,
          .name = is_signed ? row.with_sign : row.without_sign};
}

// All members at offset 0, more than one, and no bit-fields: the chain does not say.
bool AreUnion(const std::vector<Member>& members) {
  return members.size() > 1 && std::ranges::all_of(members, [](const Member& member) {
           return member.offset == 0 && member.bits == 0;
         });
}

int NumberAt(std::string_view text, std::size_t at) {
  return static_cast<int>(LeadingDecimal(Columns(text, at)).value_or(0) & 0xFFFF);
}

}  // namespace

void SdccTypes::AddRecord(std::string_view record) {
  const std::size_t bracket = record.find('[');
  if (bracket == std::string_view::npos || !record.starts_with('F')) return;
  records_.try_emplace(std::string(record.substr(1, bracket - 1)), record.substr(bracket));
}

TypeId SdccTypes::Find(std::string_view chain, int size, std::string_view module) {
  std::string key(module);
  key.append("$").append(chain).append("$").append(std::to_string(size));
  if (const auto known = known_.find(key); known != known_.end()) return known->second;
  const TypeId id = Make(chain, size, module);
  known_.emplace(std::move(key), id);
  return id;
}

TypeId SdccTypes::Unknown(std::string_view chain, int size) {
  return types_.Add({.kind = Kind::Unknown, .size = size, .name = std::string(chain)});
}

TypeId SdccTypes::Make(std::string_view chain, int size, std::string_view module) {
  if (chain.starts_with('D')) return Derived(chain, size, module);
  const std::size_t colon = chain.find(':');
  if (colon == std::string_view::npos) return Unknown(chain, size);
  const std::string_view code = chain.substr(0, colon);
  if (code.starts_with("ST")) return Structure(code.substr(2), size, module);
  const bool is_signed = chain.substr(colon + 1) != "U";
  if (code == kLongLong.code && size == kLongLong.size) {
    return types_.Add(ToType(kLongLong, is_signed));
  }
  const auto* row = std::ranges::find(kBaseTypes, code, &BaseType::code);
  if (row == std::end(kBaseTypes)) return Unknown(chain, size);
  return types_.Add(ToType(*row, is_signed));
}

TypeId SdccTypes::Derived(std::string_view chain, int size, std::string_view module) {
  const std::size_t comma = chain.find(',');
  if (comma == std::string_view::npos) return Unknown(chain, size);
  const std::string_view part = chain.substr(0, comma);
  Type type{.kind = Kind::Pointer, .size = kPointerSize};
  int target_size = 0;
  if (part == "DF") {
    type.kind = Kind::Function;
    type.size = 0;
  } else if (part.starts_with("DA") && part.ends_with('d') && part.size() > 3) {
    type.kind = Kind::Array;
    type.size = size;
    type.count = NumberAt(part, 2);
    target_size = type.count > 0 ? size / type.count : 0;
  } else if (part.size() != 2) {
    return Unknown(chain, size);
  }
  type.target = Find(chain.substr(comma + 1), target_size, module);
  if (types_[type.target].kind == Kind::Unknown) return Unknown(chain, size);
  return types_.Add(std::move(type));
}

// at stands on the mark of the member and is moved behind it.
Member SdccTypes::ParseMember(std::string_view record, std::size_t& at, std::string_view module) {
  Member member;
  member.offset = NumberAt(record, record.rfind('{', at) + 1);
  const std::size_t name = at + kMemberMark.size();
  member.name = record.substr(name, record.find('$', name) - name);
  const std::size_t open = record.find("({", name);
  const std::size_t brace = std::min(record.find('}', open), record.size());
  const std::size_t close = std::min(record.find(')', brace), record.size());
  at = close;
  if (open == std::string_view::npos || close == brace) return member;
  const int size = NumberAt(record, open + 2);
  const std::string_view chain = record.substr(brace + 1, close - brace - 1);
  if (!chain.starts_with("SB")) {
    member.type = Find(chain, size, module);
    return member;
  }
  member.bit = NumberAt(chain, 2);
  member.bits = NumberAt(chain, chain.find('$') + 1);
  const bool is_signed = !chain.ends_with(":U");
  member.type = types_.Add({.kind = Kind::Integer,
                            .size = size,
                            .is_signed = is_signed,
                            .name = is_signed ? "int" : "unsigned int"});
  return member;
}

TypeId SdccTypes::Structure(std::string_view tag, int size, std::string_view module) {
  const std::string key = std::string(module).append("$").append(tag);
  if (const auto known = structures_.find(key); known != structures_.end()) return known->second;
  const TypeId id = types_.Add({.kind = Kind::Struct});
  structures_.emplace(key, id);
  Type type{.kind = Kind::Struct, .size = size};
  const auto record = records_.find(key);
  if (record != records_.end()) {
    const std::string_view text = record->second;
    for (std::size_t at = text.find(kMemberMark); at != std::string_view::npos;
         at = text.find(kMemberMark, at)) {
      type.members.push_back(ParseMember(text, at, module));
      const Member& member = type.members.back();
      type.size = std::max(type.size, member.offset + types_[member.type].size);
    }
  }
  if (AreUnion(type.members)) type.kind = Kind::Union;
  type.name = type.kind == Kind::Union ? "union" : "struct";
  if (!tag.starts_with("__0000")) type.name.append(" ").append(tag);
  types_.Complete(id) = std::move(type);
  return id;
}

}  // namespace brevant::symbols
