// SPDX-License-Identifier: MIT
#include "views/breakpoint_toggle.h"

#include <span>

#include "control/messages.h"
#include "views/messages.h"

namespace brevant::views {
namespace {

Toggled Add(base::Address address, const BreakpointPlaces& places);

bool InRam(base::Address address, const BreakpointPlaces& places) {
  return places.memory.KindOf(address) == devices::MemoryKind::Ram;
}

// The one that hardware can have stands elsewhere.
Toggled OfferRoomFor(base::Address address, const base::Message& refusal,
                     const BreakpointPlaces& places) {
  control::BreakpointTable& table = places.breakpoints;
  if (!table.HardwareBreakMode()) {
    places.ui.ShowMessage(refusal);
    return Toggled::Refused;
  }
  constexpr std::size_t kMove = 0;
  constexpr const char* kOffers[] = {"Move it here", "Switch to software mode"};
  const base::Address other =
      table.entries()[static_cast<std::size_t>(table.NthBreakpoint(0))].address;
  const bool software_works =
      InRam(address, places) && InRam(other, places) && !places.activity.WaitingForBreak();
  const auto chosen = places.ui.Offer(refusal, std::span(kOffers).first(software_works ? 2 : 1));
  if (!chosen) return Toggled::Refused;
  if (*chosen == kMove) {
    table.RemoveBreakpoint(other);
  } else {
    table.SetBreakMode(control::BreakMode::Software);
    places.settings.Store(base::keys::kHardwareBreak, 0L);
  }
  return Add(address, places);
}

Toggled Add(base::Address address, const BreakpointPlaces& places) {
  control::BreakpointTable& table = places.breakpoints;
  if (const auto refusal = control::BreakpointLimit(table)) {
    return OfferRoomFor(address, *refusal, places);
  }
  if (!table.HardwareBreakMode() && !table.TakesSwi(address)) {
    places.ui.ShowMessage(base::ToMessage(messages::kNoSoftwareBreakpoint, address));
    return Toggled::Refused;
  }
  table.AddBreakpoint(address);
  return Toggled::Added;
}

}  // namespace

Toggled ToggleBreakpoint(base::Address address, const BreakpointPlaces& places) {
  control::BreakpointTable& table = places.breakpoints;
  if (!table.HardwareBreakMode() && places.activity.WaitingForBreak()) {
    // The table says where code bytes are to be restored when the program stops.
    places.ui.Beep();
    return Toggled::Refused;
  }
  if (!table.Has(address)) return Add(address, places);
  table.RemoveBreakpoint(address);
  return Toggled::Removed;
}

}  // namespace brevant::views
