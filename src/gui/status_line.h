// SPDX-License-Identifier: MIT
// The status bar: help for the menu item under the mouse or a notice, else what lies under the
// cursor of the active window; the state of the connection; and the clock. Texts that are too long
// for their room end in an ellipsis; the mouse over them shows them whole.
#pragma once

#include <QLabel>
#include <QStatusBar>

#include "gui/status_text.h"

namespace brevant::gui {

// How long a notice holds.
enum class NoticeEnds {
  WithTheNextCommand,
  WithTheState,  // of the connection, as it is shown
  WhenReplaced,  // by another, even an empty one
};

class StatusLine final : public QStatusBar {
 public:
  StatusLine();

  void ShowConnection(const ConnectionState& state);
  void ShowNotice(const std::string& text, NoticeEnds ends = NoticeEnds::WithTheNextCommand);
  // Of the active window's cursor; may be empty.
  void ShowUnderCursor(const QString& text);
  // A command is about to be carried out.
  void BeginCommand();
  // Ten times a second is enough.
  void UpdateClock();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // Left of the connection.
  QString Shown() const;
  void EndNotice(NoticeEnds which);
  // The help of a menu item goes, and what it was shown over comes back.
  void EndHelp();

  QLabel* connection_;
  QLabel* clock_;
  QString under_cursor_;
  QString notice_;
  NoticeEnds notice_ends_ = NoticeEnds::WithTheNextCommand;
};

}  // namespace brevant::gui
