// SPDX-License-Identifier: MIT
// The program as a whole: start-up in its order, the timer, the end.
#pragma once

#include <QTimer>
#include <memory>

#include "gui/help_window.h"
#include "gui/main_window.h"
#include "gui/session.h"

namespace brevant::gui {

class Application {
 public:
  // A QApplication must exist.
  explicit Application(const Options& options) : session_(options) {}

  // Connects, opens the windows, starts the timer and loads the image of the options. Where
  // connecting fails, the connect dialog comes back. False when the program is to end: the dialog
  // was closed.
  bool Start();

  Session& session() { return session_; }
  // After Start.
  MainWindow& window() { return *window_; }

 private:
  Help help_;
  Session session_;
  std::unique_ptr<MainWindow> window_;
  QTimer timer_;
};

}  // namespace brevant::gui
