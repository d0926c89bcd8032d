// SPDX-License-Identifier: MIT
#include "gui/window_kinds.h"

#include <algorithm>
#include <array>

#include "gui/call_stack_window.h"
#include "gui/chip_window.h"
#include "gui/data_window.h"
#include "gui/icons.h"
#include "gui/profile_window.h"
#include "gui/program_window.h"
#include "gui/registers_window.h"
#include "gui/source_window.h"
#include "gui/stack_window.h"
#include "gui/trace_window.h"
#include "gui/variables_window.h"
#include "gui/watch_window.h"

namespace brevant::gui {
namespace {

namespace keys = base::keys;
namespace commands = workspace::commands;
using HowMany = workspace::WindowKeys::HowMany;
using workspace::Menu;

template <typename Window>
TextView* Make(Session& session, const FrameLinks& links, const QFont& font,
               const workspace::WindowAttributes& starting) {
  return new Window(session, links, font, starting);
}

constexpr std::array kKinds{
    WindowKind{"Watch",
               "Watch",
               WatchIcon,
               commands::kOpenWatch,
               Menu::WatchPopup,
               {HowMany::AtMostOne, &keys::kWatchOpen, &keys::kWatchGeometry},
               {},
               Make<WatchWindow>,
               true},
    WindowKind{"Regs",
               "Regs",
               RegsIcon,
               0,
               Menu::None,
               {HowMany::One, nullptr, &keys::kRegistersGeometry},
               {},
               Make<RegistersWindow>},
    WindowKind{"Data",
               "Data (Data page)",
               DataIcon,
               commands::kOpenData,
               Menu::DataPopup,
               {HowMany::Many,
                &keys::kDataWindowCount,
                &keys::kDataGeometry,
                {&keys::kDataFirstLine, &keys::kDataAttribute}},
               {0, 128},
               Make<DataWindow>},
    WindowKind{"Stack",
               "Stack",
               StackIcon,
               commands::kOpenStack,
               Menu::StackPopup,
               {HowMany::AtMostOne, &keys::kStackOpen, &keys::kStackGeometry},
               {},
               Make<StackWindow>},
    WindowKind{"Call stack",
               "Call stack",
               StackIcon,
               commands::kOpenCalls,
               Menu::CallsPopup,
               {HowMany::AtMostOne, &keys::kCallsOpen, &keys::kCallsGeometry},
               {},
               Make<CallStackWindow>},
    WindowKind{"Variables",
               "Variables",
               VariablesIcon,
               commands::kOpenVariables,
               Menu::VariablesPopup,
               {HowMany::AtMostOne, &keys::kVariablesOpen, &keys::kVariablesGeometry},
               {},
               Make<VariablesWindow>},
    WindowKind{"Program",
               "Program",
               ProgIcon,
               commands::kOpenProgram,
               Menu::ProgramPopup,
               {HowMany::Many, &keys::kProgramWindowCount, &keys::kProgramGeometry},
               {},
               Make<ProgramWindow>},
    WindowKind{"Source",
               "Source",
               SourceIcon,
               commands::kOpenSource,
               Menu::SourcePopup,
               {HowMany::AtMostOne, &keys::kSourceOpen, &keys::kSourceGeometry},
               {},
               Make<SourceWindow>},
    WindowKind{"Trace",
               "Trace",
               StackIcon,
               0,
               Menu::TracePopup,
               {HowMany::AtMostOne, &keys::kTraceOpen, &keys::kTraceGeometry},
               {},
               Make<TraceWindow>},
    WindowKind{"Chip",
               "Chip",
               ProductIcon,
               commands::kOpenChip,
               Menu::ChipPopup,
               {HowMany::AtMostOne, &keys::kChipOpen, &keys::kChipGeometry},
               {},
               Make<ChipWindow>},
    WindowKind{"Profile",
               "Profile",
               StackIcon,
               commands::kOpenProfile,
               Menu::ProfilePopup,
               {HowMany::AtMostOne, &keys::kProfileOpen, &keys::kProfileGeometry},
               {},
               Make<ProfileWindow>},
};

}  // namespace

constinit const WindowKind& kWatchKind = kKinds[0];
constinit const WindowKind& kRegistersKind = kKinds[1];
constinit const WindowKind& kDataKind = kKinds[2];
constinit const WindowKind& kStackKind = kKinds[3];
constinit const WindowKind& kCallsKind = kKinds[4];
constinit const WindowKind& kVariablesKind = kKinds[5];
constinit const WindowKind& kProgramKind = kKinds[6];
constinit const WindowKind& kSourceKind = kKinds[7];
constinit const WindowKind& kTraceKind = kKinds[8];
constinit const WindowKind& kChipKind = kKinds[9];
constinit const WindowKind& kProfileKind = kKinds[10];

std::span<const WindowKind> WindowKinds() {
  return kKinds;
}

const WindowKind* KindOpenedBy(int command) {
  const auto* const kind = std::find_if(kKinds.begin(), kKinds.end(), [command](const auto& row) {
    return row.command != 0 && row.command == command;
  });
  return kind == kKinds.end() ? nullptr : kind;
}

}  // namespace brevant::gui
