// SPDX-License-Identifier: MIT
#include "gui/window_kinds.h"

#include <algorithm>
#include <array>

#include "gui/data_window.h"
#include "gui/icons.h"
#include "gui/program_window.h"
#include "gui/registers_window.h"
#include "gui/session.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

TextView* MakeRegisters(Session& session, const FrameLinks& links, const QFont& font) {
  return new RegistersWindow(session.registers, links.edit_register, font);
}

TextView* MakeProgram(Session& session, const FrameLinks& links, const QFont& font) {
  return new ProgramWindow(session.program_views, session.gate, links, font);
}

TextView* MakeData(Session& session, const FrameLinks& links, const QFont& font) {
  return new DataWindow(session, links, font);
}

constexpr std::array kKinds{
    WindowKind{"Regs", RegsIcon, ChildWindow::Kind::Permanent, 0, MakeRegisters},
    WindowKind{"Program", ProgIcon, ChildWindow::Kind::Closable, workspace::commands::kOpenProgram,
               MakeProgram},
    WindowKind{"Data", DataIcon, ChildWindow::Kind::Closable, workspace::commands::kOpenData,
               MakeData},
};

}  // namespace

constinit const WindowKind& kRegistersKind = kKinds[0];
constinit const WindowKind& kProgramKind = kKinds[1];
constinit const WindowKind& kDataKind = kKinds[2];

const WindowKind* KindOpenedBy(int command) {
  const auto* const kind = std::find_if(kKinds.begin(), kKinds.end(), [command](const auto& row) {
    return row.command != 0 && row.command == command;
  });
  return kind == kKinds.end() ? nullptr : kind;
}

}  // namespace brevant::gui
