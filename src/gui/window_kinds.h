// SPDX-License-Identifier: MIT
// The kinds of windows inside the frame, a row each: a new kind is a row here, a view and a widget.
#pragma once

#include <QFont>
#include <QIcon>
#include <functional>
#include <span>

#include "gui/text_view.h"
#include "workspace/command_rows.h"
#include "workspace/layout.h"

namespace brevant::gui {

class Session;

// What a window asks of the frame.
struct FrameLinks {
  std::function<void(int id)> send_command;
  // The popup menu of the window's kind.
  std::function<void(TextView& view, QPoint global)> show_popup;
  // Lets all views follow the engine now. The gate is held.
  std::function<void()> follow_engine;
  // Does the work as a command is done: alone, and the views follow it.
  std::function<void(const std::function<void()>& work)> carry_out;
  // What a name of the program means at PC; empty while the target is not to be asked.
  std::function<std::string(const std::string& name)> describe;
};

struct WindowKind {
  const char* title;
  const char* title_by_command;  // of one that its command opens
  QIcon (*icon)();
  int command;                   // opens one; 0: none does
  workspace::Menu popup;         // None: none
  workspace::WindowKeys stored;  // how many there can be, and how they are found again
  workspace::WindowAttributes starting;
  // The widget; its object name is the kind's class name.
  TextView* (*make)(Session& session, const FrameLinks& links, const QFont& font,
                    const workspace::WindowAttributes& starting);

  // Its command brings it to where the settings say that it was last.
  bool returns = false;

  bool OneAtMost() const { return stored.how_many != workspace::WindowKeys::HowMany::Many; }
  bool Permanent() const { return stored.how_many == workspace::WindowKeys::HowMany::One; }
};

// In the order in which a layout is restored.
std::span<const WindowKind> WindowKinds();

extern const WindowKind& kRegistersKind;
extern const WindowKind& kDataKind;
extern const WindowKind& kStackKind;
extern const WindowKind& kCallsKind;
extern const WindowKind& kTraceKind;
extern const WindowKind& kProfileKind;
extern const WindowKind& kProgramKind;
extern const WindowKind& kSourceKind;
extern const WindowKind& kWatchKind;
extern const WindowKind& kVariablesKind;
extern const WindowKind& kChipKind;

// nullptr for a command that opens no window.
const WindowKind* KindOpenedBy(int command);

}  // namespace brevant::gui
