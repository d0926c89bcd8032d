// SPDX-License-Identifier: MIT
#include "base/file_names.h"

#include <algorithm>

namespace brevant::base {
namespace {

constexpr std::string_view kSeparators = "/\\";

// ASCII only: names of files, symbols and keys must not change with the user's locale.
char UpperCase(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::string DirectoryOf(std::string_view path) {
  const std::size_t separator = path.find_last_of(kSeparators);
  if (separator == std::string_view::npos || separator == 0) return {};
  return std::string(path.substr(0, separator));
}

std::string_view LastPart(std::string_view path) {
  const std::size_t separator = path.find_last_of(kSeparators);
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

std::string ExtensionOf(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return std::string(path.substr(dot + 1));
}

std::string ReplaceExtension(std::string_view path, std::string_view extension) {
  std::string result(path.substr(0, path.find('.')));
  result += '.';
  result += extension;
  return result;
}

std::string JoinPath(std::string_view directory, std::string_view name) {
  if (directory.empty()) return std::string(name);
  std::string result(directory);
  if (kSeparators.find(result.back()) == std::string_view::npos) {
    const bool backslashes =
        result.find('/') == std::string::npos && result.find('\\') != std::string::npos;
    result += backslashes ? '\\' : '/';
  }
  result += name;
  return result;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return UpperCase(x) == UpperCase(y); });
}

std::string UpperCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), [](char c) { return UpperCase(c); });
  return result;
}

}  // namespace brevant::base
