// SPDX-License-Identifier: MIT
#include "views/scroll_range.h"

#include <algorithm>
#include <bit>

#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::views {
namespace {

constexpr base::Address kUnscaled = 0x8000;
constexpr base::Address kLargestRange = 0x400000;
// The smallest scale that brings the largest range within the scroll bar's positions.
constexpr int kLargestShift = 8;

}  // namespace

base::Address ScrollRange::AddressAt(int position) const {
  const auto address = static_cast<base::Address>(std::max(position, 0)) << shift;
  return std::min(address, end);
}

ScrollRange ProgramScrollRange(std::string_view text) {
  if (text.empty() || !base::IsHexField(text)) return {};
  const base::Address value = base::ParseHex(text);
  if (value < kUnscaled) return {value, 0, static_cast<int>(value)};
  ScrollRange range;
  if (value >= kLargestRange) {
    range.end = kLargestRange;
    range.shift = kLargestShift;
  } else {
    range.end = std::bit_ceil(value + 1) - 1;
    range.shift = std::bit_width(range.end) - std::bit_width(kUnscaled - 1);
  }
  return range;
}

std::string ProgramRangeForm::InitialText() const {
  return base::Format("%06lx", ProgramScrollRange(settings_.String(base::keys::kProgramRange)).end);
}

std::optional<ScrollRange> ProgramRangeForm::Accept(std::string_view text) {
  if (!base::IsHexField(text)) {
    ui_.Beep();
    return std::nullopt;
  }
  // What holds for this run only is not stored because it was shown.
  const bool shown = settings_.Overridden(base::keys::kProgramRange) && text == InitialText();
  stored_ = shown || settings_.Store(base::keys::kProgramRange, text);
  return ProgramScrollRange(text);
}

std::string DataRangeForm::InitialText() const {
  return base::Format("%06lx", range_);
}

std::optional<base::Address> DataRangeForm::Accept(std::string_view text) {
  if (!base::IsHexField(text)) {
    ui_.Beep();
    return std::nullopt;
  }
  stored_ = settings_.Store(base::keys::kDataRange, text);
  return base::ParseHex(text);
}

}  // namespace brevant::views
