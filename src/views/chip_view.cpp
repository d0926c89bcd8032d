// SPDX-License-Identifier: MIT
#include "views/chip_view.h"

#include <algorithm>

#include "base/text_format.h"
#include "base/text_number.h"
#include "views/messages.h"

namespace brevant::views {
namespace {

using devices::Field;
using devices::Register;

constexpr int kIndent = 2;
constexpr int kNameWidth = 11;  // of the longest field's name and a blank

// Of a register that is read only on request, and of one that the line has kept back.
constexpr const char* kOnRequest = "-- (reading it %s)";
constexpr const char* kNotReadHere = "not read";

std::string FieldText(const Field& field, std::uint8_t byte) {
  std::string text = base::Format("= %x", field.ValueIn(byte));
  return field.meaning.empty() ? text : text + "  " + std::string(field.meaning);
}

}  // namespace

std::string ChipView::PathOf(const Row& row) {
  if (row.of_chip == nullptr) return std::string(row.group);
  const std::string path = std::string(row.group) + "/" + std::string(row.of_chip->name);
  return row.field == nullptr ? path : path + "/" + std::string(row.field->name);
}

void ChipView::MakeRows() {
  rows_.clear();
  const devices::Device& device = memory_.device();
  for (const std::string_view group : devices::Groups(device)) {
    rows_.push_back({.group = group});
    if (!unfolded_.contains(PathOf(rows_.back()))) continue;
    for (const Register& of_chip : device.registers()) {
      if (of_chip.group != group) continue;
      rows_.push_back({.group = group, .of_chip = &of_chip});
      if (!unfolded_.contains(PathOf(rows_.back()))) continue;
      for (const Field& field : devices::PartsOf(of_chip)) {
        rows_.push_back({.group = group, .of_chip = &of_chip, .field = &field});
      }
    }
  }
}

bool ChipView::UnfoldPath(const std::string& path, bool unfolded) {
  return unfolded ? unfolded_.insert(path).second : unfolded_.erase(path) > 0;
}

bool ChipView::Outdated() const {
  return std::ranges::any_of(memory_.device().memory, [this](const devices::MemoryRange& range) {
    return range.kind == devices::MemoryKind::Registers &&
           memory_.ChangedAt(range.first, range.last - range.first + 1) > drawn_from_;
  });
}

void ChipView::Pull(const base::Generations& before, const base::Generations& now) {
  if (before.stops != now.stops) shown_.BeginStop();
  if (before.stops != now.stops || Outdated()) {
    values_.clear();
    drawn_from_ = memory_.generation();
  }
  MakeRows();
  KeepInSight();
  ReadInSight();
}

void ChipView::ReadInSight() {
  std::set<const Register*> wanted;
  for (int n = top(); n < std::min(top() + lines() + 1, count()); ++n) {
    const Register* const of_chip = rows_[static_cast<std::size_t>(n)].of_chip;
    if (of_chip != nullptr && !values_.contains(of_chip->address)) wanted.insert(of_chip);
  }
  // Of one table: in the order of their addresses.
  const std::vector<const Register*> registers(wanted.begin(), wanted.end());
  const auto read = memory::ReadRegisters(memory_, registers);
  for (std::size_t n = 0; n < registers.size(); ++n) {
    if (read[n]) values_[registers[n]->address] = *read[n];
  }
  for (const auto& [address, byte] : values_) shown_.Show(address, byte);
}

std::optional<std::uint8_t> ChipView::ValueOf(const Register& row) const {
  const auto known = values_.find(row.address);
  return known == values_.end() ? std::nullopt : std::optional(known->second);
}

std::string ChipView::ValueText(const Row& row) const {
  if (row.of_chip == nullptr) return {};
  const auto byte = ValueOf(*row.of_chip);
  if (!byte && row.field != nullptr) return "--";
  if (!byte && row.of_chip->read_effect.empty()) return kNotReadHere;
  if (!byte) return base::Format(kOnRequest, std::string(row.of_chip->read_effect));
  if (row.field != nullptr) return FieldText(*row.field, *byte);
  return base::Format("%02x %%%s  %s", *byte, base::FormatBinary(*byte, 8),
                      std::string(row.of_chip->what));
}

bool ChipView::Changed(const Row& row) const {
  const auto byte = row.of_chip == nullptr ? std::nullopt : ValueOf(*row.of_chip);
  const auto before = byte ? shown_.Before(row.of_chip->address) : std::nullopt;
  if (!before) return false;
  return row.field == nullptr ? *byte != *before
                              : row.field->ValueIn(*byte) != row.field->ValueIn(*before);
}

FoldedRow ChipView::At(int n) const {
  const Row& row = rows_[static_cast<std::size_t>(n)];
  const int depth = row.field != nullptr ? 2 : row.of_chip != nullptr ? 1 : 0;
  const bool has_parts = row.field == nullptr;
  const std::string path = PathOf(row);
  const bool unfolded = has_parts && unfolded_.contains(path);
  const std::string_view name = row.field != nullptr     ? row.field->name
                                : row.of_chip != nullptr ? row.of_chip->name
                                                         : row.group;
  std::string left(static_cast<std::size_t>(kIndent * depth), ' ');
  left += !has_parts ? "  " : unfolded ? "- " : "+ ";
  left += name;
  // Values stand below each other.
  if (row.of_chip != nullptr) left.resize(2 * kIndent + 2 + kNameWidth, ' ');
  const bool effect = row.of_chip != nullptr && !row.of_chip->read_effect.empty();
  return {.left = std::move(left),
          .text = ValueText(row),
          .path = path,
          .mark_column = has_parts ? kIndent * depth : -1,
          .unfolded = unfolded,
          .changed = Changed(row),
          .on_request = effect};
}

void ChipView::Refresh() {
  values_.clear();
  Request();
}

void ChipView::ReadNow() {
  const Register* const row = RegisterAtCursor();
  if (row == nullptr) return;
  if (const auto byte = memory::ReadRegister(memory_, *row)) values_[row->address] = *byte;
  Request();
}

const ChipView::Row* ChipView::AtCursor() const {
  return cursor() < count() ? &rows_[static_cast<std::size_t>(cursor())] : nullptr;
}

const Register* ChipView::RegisterAtCursor() const {
  const Row* const row = AtCursor();
  return row == nullptr ? nullptr : row->of_chip;
}

std::string ChipView::Explain() const {
  const Register* const row = RegisterAtCursor();
  if (row == nullptr) return {};
  std::string text = base::Format("%04x %s: %s, %s", row->address, std::string(row->name),
                                  std::string(row->group), std::string(row->what));
  if (row->access == devices::Access::ReadOnly) text += "; read only";
  if (row->access == devices::Access::WriteOnce) text += "; written once after a reset";
  if (!row->note.empty()) text += "; " + std::string(row->note);
  if (!row->read_effect.empty()) {
    text += base::Format("; reading it %s: R reads it", std::string(row->read_effect));
  }
  return text;
}

std::string ChipView::Editable() const {
  const Row* const row = AtCursor();
  if (row == nullptr || row->of_chip == nullptr) return {};
  if (row->of_chip->access == devices::Access::ReadOnly) return {};
  const std::string name(row->of_chip->name);
  return row->field == nullptr ? name : name + "." + std::string(row->field->name);
}

std::string ChipView::EditableText() const {
  const Row* const row = AtCursor();
  const auto byte =
      row == nullptr || row->of_chip == nullptr ? std::nullopt : ValueOf(*row->of_chip);
  if (!byte) return {};
  return row->field == nullptr ? base::Format("%02x", *byte)
                               : base::Format("%x", row->field->ValueIn(*byte));
}

memory::RegisterWrite ChipView::Assign(std::string_view digits) {
  const Row* const row = AtCursor();
  if (row == nullptr || Editable().empty()) return {.refused = "it cannot be changed"};
  const auto value = base::ParseHexExactly(digits, 2);
  if (!value) return {.refused = messages::kExpectByteDigits};
  return row->field == nullptr
             ? memory::WriteRegister(memory_, *row->of_chip, base::LowByte(*value))
             : memory::WriteField(memory_, *row->of_chip, *row->field, *value);
}

}  // namespace brevant::views
