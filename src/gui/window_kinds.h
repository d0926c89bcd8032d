// SPDX-License-Identifier: MIT
// The kinds of windows inside the frame, a row each: a new kind is a row here and a widget.
#pragma once

#include <QFont>
#include <QIcon>
#include <functional>

#include "gui/child_window.h"
#include "gui/text_view.h"

class QMenu;

namespace brevant::gui {

class Session;

// What a window asks of the frame.
struct FrameLinks {
  std::function<void(int id)> send_command;
  // The popup menu of program windows, ready to be shown. Borrowed.
  std::function<QMenu*()> program_popup;
  // Lets all views follow the engine now. The gate is held.
  std::function<void()> follow_engine;
  // For the selected register; key is what was typed, 0 for none.
  std::function<void(char key)> edit_register;
};

struct WindowKind {
  const char* title;
  QIcon (*icon)();
  ChildWindow::Kind child;
  int command;  // opens one; 0: none does
  // The widget; its object name is the kind's class name.
  TextView* (*make)(Session& session, const FrameLinks& links, const QFont& font);
};

extern const WindowKind& kRegistersKind;
extern const WindowKind& kProgramKind;
extern const WindowKind& kDataKind;

// nullptr for a command that opens no window.
const WindowKind* KindOpenedBy(int command);

}  // namespace brevant::gui
