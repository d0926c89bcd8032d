// SPDX-License-Identifier: MIT
// Splitting and building file names. Both '/' and '\\' separate folders; results use what the name
// itself uses, and '/' where a separator must be added.
#pragma once

#include <string>
#include <string_view>

namespace brevant::base {

// Everything before the last separator, without it; empty when there is no separator after the
// first character.
std::string DirectoryOf(std::string_view path);
// "io.c" of "src/drv/io.c".
std::string_view LastPart(std::string_view path);
// The text after the last '.'; empty when the only '.' is the first character or there is none.
std::string ExtensionOf(std::string_view path);
// The path up to and including its first '.', then extension. A '.' in a folder name counts; to a
// path without any, one is added.
std::string ReplaceExtension(std::string_view path, std::string_view extension);
// directory + separator + name; the name alone when directory is empty.
std::string JoinPath(std::string_view directory, std::string_view name);

// Letters of ASCII only; whatever the user's locale, the same names are equal.
bool EqualIgnoringCase(std::string_view a, std::string_view b);
std::string UpperCase(std::string_view text);

}  // namespace brevant::base
