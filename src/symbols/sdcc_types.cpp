// SPDX-License-Identifier: MIT
#include "symbols/sdcc_types.h"

#include <algorithm>

#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

struct BaseType {
  char code;
  std::string_view with_sign;
  std::string_view without_sign;
};
constexpr BaseType kBaseTypes[] = {
    {'V', "void", "void"},
    {'C', "signed char", "unsigned char"},
    {'S', "short", "unsigned short"},
    {'I', "int", "unsigned int"},
    {'L', "long", "unsigned long"},
    {'F', "float", "float"},
};

// base as it stands after the last declarator: "SI:U", "STpt:S", or ":S" for _Bool. Empty when it
// is not known.
std::string BaseText(std::string_view base, base::FunctionRef<bool(std::string_view)> is_union) {
  const std::size_t colon = base.find(':');
  if (colon == std::string_view::npos) return {};
  const bool has_sign = base.substr(colon + 1) != "U";
  const std::string_view code = base.substr(0, colon);
  if (code.empty()) return "_Bool";
  if (code.starts_with("ST")) {
    const std::string_view tag = code.substr(2);
    std::string keyword = is_union(tag) ? "union" : "struct";
    return tag.starts_with("__0000") ? keyword : keyword.append(" ").append(tag);
  }
  const auto* row = std::ranges::find_if(kBaseTypes, [&](const BaseType& type) {
    return code.size() == 2 && code[0] == 'S' && code[1] == type.code;
  });
  if (row == std::end(kBaseTypes)) return {};
  return std::string(has_sign ? row->with_sign : row->without_sign);
}

constexpr int kLongLongSize = 8;

// The base type of an object of that many bytes, or of an array of such objects.
std::string LongLongText(std::string_view base) {
  return base == "SI:U" ? "unsigned long long" : "long long";
}

// Puts one more declarator around the text so far; false when it is not known.
bool Declare(std::string_view part, std::string& text) {
  const bool is_array = part.starts_with("DA") && part.ends_with('d');
  if (is_array || part == "DF") {
    if (text.starts_with('*')) text = "(" + text + ")";
    text += is_array ? "[" + std::string(part.substr(2, part.size() - 3)) + "]" : "()";
    return true;
  }
  if (part.size() != 2 || part[0] != 'D') return false;
  text.insert(0, "*");
  return true;
}

}  // namespace

std::string SdccTypeText(std::string_view chain, int size,
                         base::FunctionRef<bool(std::string_view tag)> is_union) {
  std::string_view rest = chain;
  std::string declarator;
  while (rest.starts_with('D')) {
    const std::size_t comma = rest.find(',');
    if (comma == std::string_view::npos || !Declare(rest.substr(0, comma), declarator)) {
      return std::string(chain);
    }
    const std::string_view part = rest.substr(0, comma);
    const auto count = part.starts_with("DA") ? LeadingDecimal(part.substr(2)) : std::nullopt;
    size = count && *count > 0 ? size / static_cast<int>(*count) : 0;
    rest.remove_prefix(comma + 1);
  }
  const bool is_long_long = rest.starts_with("SI:") && size == kLongLongSize;
  std::string text = is_long_long ? LongLongText(rest) : BaseText(rest, is_union);
  if (text.empty()) return std::string(chain);
  if (!declarator.empty() && declarator.front() != '[') text += ' ';
  return text + declarator;
}

bool IsUnionRecord(std::string_view members) {
  int count = 0;
  for (std::size_t at = members.find("}S:"); at != std::string_view::npos;
       at = members.find("}S:", at + 1)) {
    const std::size_t offset = members.rfind('{', at);
    if (offset == std::string_view::npos || members.substr(offset + 1, at - offset - 1) != "0") {
      return false;
    }
    const std::size_t type = members.find('}', at + 1);
    if (Columns(members, type + 1, 2) == "SB") return false;
    ++count;
  }
  return count > 1;
}

}  // namespace brevant::symbols
