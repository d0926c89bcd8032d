// SPDX-License-Identifier: MIT
#include "symbols/sdcc_sources.h"

#include <system_error>

#include "base/file_names.h"
#include "base/files.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

namespace fs = std::filesystem;

// How far above the image's folder the compiler may have been started.
constexpr int kParents = 3;

std::string AsModuleName(std::string_view name) {
  std::string spelt(name);
  for (char& c : spelt) {
    const bool kept = IsLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_';
    if (!kept) c = '_';
  }
  return spelt;
}

}  // namespace

SdccSources::SdccSources(const std::string& image_directory) : directory_(image_directory) {
  std::error_code error;
  const fs::path directory = image_directory.empty() ? fs::path(".") : fs::path(image_directory);
  for (fs::directory_iterator it(directory, error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().string();
    // A file that is spelt just so comes before one that only reads like it.
    if (AsModuleName(name) == name) {
      by_name_[name] = name;
    } else {
      by_name_.try_emplace(AsModuleName(name), name);
    }
  }
}

const SdccListing* SdccSources::Listing(std::string_view module) {
  const auto [place, is_new] = listings_.try_emplace(std::string(module));
  const auto file = by_name_.find(AsModuleName(module) + ".rst");
  if (is_new && file != by_name_.end()) {
    const auto text = base::ReadFile(base::JoinPath(*directory_, file->second));
    if (text.ok()) place->second = ParseSdccListing(text.text);
  }
  return place->second ? &*place->second : nullptr;
}

std::string SdccSources::AtOrAbove(const fs::path& path) const {
  if (!directory_) return {};
  std::error_code error;
  if (path.is_absolute()) {
    if (!fs::is_regular_file(path, error)) return {};
    return fs::relative(path, directory_->empty() ? "." : *directory_, error).generic_string();
  }
  fs::path above;
  for (int i = 0; i <= kParents; ++i, above /= "..") {
    const fs::path candidate = (above / path).lexically_normal();
    if (fs::is_regular_file(fs::path(*directory_) / candidate, error)) {
      return candidate.generic_string();
    }
  }
  return {};
}

std::string SdccSources::ListedSource(const std::string& path) const {
  std::string found = AtOrAbove(path);
  if (!found.empty()) return found;
  const auto beside = by_name_.find(AsModuleName(base::LastPart(path)));
  return beside != by_name_.end() ? beside->second : std::string(base::LastPart(path));
}

std::string SdccSources::CSource(std::string_view name, std::string_view module, bool ambiguous) {
  const auto beside = by_name_.find(name);
  if (beside != by_name_.end() && !ambiguous) return beside->second;
  if (const SdccListing* listing = Listing(module)) {
    for (const std::string& path : listing->paths) {
      if (AsModuleName(base::LastPart(path)) == name) return ListedSource(path);
    }
  }
  return beside != by_name_.end() ? beside->second : std::string(name);
}

std::string SdccSources::AssemblerSource(std::string_view module) const {
  for (const char* extension : {".asm", ".s", ".S", ".src"}) {
    const auto file = by_name_.find(AsModuleName(module) + extension);
    if (file != by_name_.end()) return file->second;
  }
  const std::string name = std::string(module) + ".asm";
  const std::string above = AtOrAbove(name);
  return above.empty() ? name : above;
}

}  // namespace brevant::symbols
