// SPDX-License-Identifier: MIT
#include "simulator/fault_text.h"

#include <algorithm>
#include <charconv>

namespace brevant::simulator {
namespace {

struct FaultRow {
  FaultKind kind;
  std::string_view name;
};
constexpr FaultRow kFaultRows[] = {
    {FaultKind::LoseHostByte, "lose"},
    {FaultKind::DropLocalEcho, "drop-copy"},
    {FaultKind::DropMonitorEcho, "drop-echo"},
    {FaultKind::FlipEcho, "flip-echo"},
    {FaultKind::FlipHostByte, "flip"},
    {FaultKind::FlipReply, "flip-reply"},
    {FaultKind::LoseReply, "lose-reply"},
    {FaultKind::ExtraByte, "extra"},
    {FaultKind::DelayByte, "delay"},
    {FaultKind::CutLine, "cut"},
    {FaultKind::ResetMcu, "reset"},
};

template <typename T>
bool ParseAll(std::string_view text, T& value) {
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc{} && stop == end;
}

}  // namespace

std::optional<Fault> ParseFault(std::string_view text) {
  const std::size_t at = text.find('@');
  if (at == std::string_view::npos) return std::nullopt;
  const auto row = std::ranges::find(kFaultRows, text.substr(0, at), &FaultRow::name);
  if (row == std::end(kFaultRows)) return std::nullopt;
  const std::string_view place = text.substr(at + 1);
  const std::size_t colon = std::min(place.find(':'), place.size());
  Fault fault{.kind = row->kind};
  unsigned bit = 0;
  if (!ParseAll(place.substr(0, colon), fault.at_host_byte)) return std::nullopt;
  if (colon < place.size() && (!ParseAll(place.substr(colon + 1), bit) || bit > 7)) {
    return std::nullopt;
  }
  fault.bit = static_cast<std::uint8_t>(bit);
  return fault;
}

std::string FaultNames() {
  std::string names;
  for (const FaultRow& row : kFaultRows) {
    if (!names.empty()) names += ", ";
    names += row.name;
  }
  return names;
}

}  // namespace brevant::simulator
