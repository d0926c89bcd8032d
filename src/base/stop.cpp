// SPDX-License-Identifier: MIT
#include "base/stop.h"

#include <array>

#include "base/text_format.h"

namespace brevant::base {
namespace {

struct Row {
  StopReason reason;
  std::string_view word;
  const char* text;  // with the PC
};
constexpr std::array<Row, 12> kRows{{
    {StopReason::Breakpoint, "breakpoint", "breakpoint at %04x"},
    {StopReason::StepDone, "step", "step done at %04x"},
    {StopReason::PlaceReached, "place", "reached %04x"},
    {StopReason::OwnSwi, "swi", "SWI of the program before %04x"},
    {StopReason::UserBreak, "break", "user's break at %04x"},
    {StopReason::Reset, "reset", "reset, PC at %04x"},
    {StopReason::LinkLost, "link-lost", "link lost"},
    {StopReason::NotRecovered, "not-recovered", "damaged stack, PC at %04x"},
    {StopReason::BadStack, "bad-stack", "registers cannot be read: reset the target"},
    {StopReason::Refused, "refused", "the program does not answer the break signal"},
    {StopReason::NotStarted, "not-started", "not started at %04x"},
    {StopReason::McuReset, "mcu-reset", "the MCU has reset itself, PC at %04x"},
}};

constexpr const Row& RowOf(StopReason reason) {
  return kRows[static_cast<std::size_t>(reason)];
}
static_assert([] {
  for (const Row& row : kRows) {
    if (&RowOf(row.reason) != &row) return false;
  }
  return true;
}());

}  // namespace

std::string_view StopWord(StopReason reason) {
  return RowOf(reason).word;
}

std::string StopText(const Stop& stop) {
  const std::string text = Format(RowOf(stop.reason).text, stop.pc);
  return stop.detail.empty() ? text : text + " (" + stop.detail + ")";
}

}  // namespace brevant::base
