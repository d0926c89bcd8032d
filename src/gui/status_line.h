// SPDX-License-Identifier: MIT
// The status bar: help for the menu item under the mouse or a notice, the state of the connection,
// and the clock.
#pragma once

#include <QStatusBar>

#include "gui/status_text.h"

class QLabel;

namespace brevant::gui {

class StatusLine final : public QStatusBar {
 public:
  StatusLine();

  void ShowConnection(const ConnectionState& state);
  // Stays until a menu is opened or the next one.
  void ShowNotice(const std::string& text);
  // The same for what is true only while the connection's state is as it is shown.
  void ShowNoticeOfState(const std::string& text);
  // Ten times a second is enough.
  void UpdateClock();

 private:
  QLabel* connection_;
  QLabel* clock_;
  QString notice_of_state_;
};

}  // namespace brevant::gui
