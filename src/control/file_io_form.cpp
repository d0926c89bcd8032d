// SPDX-License-Identifier: MIT
#include "control/file_io_form.h"

#include <unistd.h>

#include <array>
#include <filesystem>

#include "base/file_names.h"
#include "base/text_format.h"
#include "control/messages.h"

namespace brevant::control {
namespace {

namespace fs = std::filesystem;

constexpr std::uint8_t kNop = 0x9D;

constexpr std::array<FileSideRow, 2> kRows{
    {{"input", 0xFC, "JMP ,X", "&Infile", "Get FileI/O input file name", base::keys::kFileIoIn},
     {"output", 0x7C, "INC ,X", "&Outfile", "Get FileI/O output file name",
      base::keys::kFileIoOut}}};

bool IsReadable(const std::string& name) {
  std::error_code error;
  return fs::exists(name, error) && !fs::is_directory(name, error) &&
         ::access(name.c_str(), R_OK) == 0;
}

bool HasFolder(const std::string& name) {
  const std::string folder = base::DirectoryOf(name);
  std::error_code error;
  return folder.empty() || fs::is_directory(folder, error);
}

}  // namespace

const FileSideRow& RowOf(FileSide side) {
  return kRows[static_cast<std::size_t>(side)];
}

std::string FileIoForm::Note() const {
  const std::uint8_t second = base::LowByte(binding.saved_word);
  if (second == kNop) return {};
  return base::Format("The second byte at %04x is %02x, no NOP: during file I/O it is passed over.",
                      base::Low16(binding.address + 1), second);
}

std::optional<base::Message> SlotRefused(const FileIoForm& form) {
  const std::uint8_t first = base::HighByte(form.binding.saved_word);
  if (first == RowOf(form.side).opcode) return std::nullopt;
  const MessageText& row =
      form.side == FileSide::Input ? messages::kFileIoNoInputSlot : messages::kFileIoNoOutputSlot;
  return ToMessage(row, form.binding.address, first);
}

std::optional<base::Message> NameRefused(const FileIoForm& form) {
  const std::string& name = form.binding.file_name;
  const bool can_be = form.side == FileSide::Input ? IsReadable(name) : HasFolder(name);
  if (name.empty() || !can_be) return ToMessage(messages::kFileIoCanNotOpen, name);
  if (name.size() <= kMaxFileIoName) return std::nullopt;
  return ToMessage(messages::kFileIoNameTooLong, static_cast<int>(kMaxFileIoName), name);
}

}  // namespace brevant::control
