// SPDX-License-Identifier: MIT
// "UpdateDlg": how far the fill or move has come that the timer carries on. Other windows stay
// usable beside it; what needs the target is refused there.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>

class QLabel;
class QProgressBar;

namespace brevant::gui {

struct CommandContext;
class MainWindow;
class Session;

class BlockProgress final : public QDialog {
 public:
  // Of the operation under way. Closes and deletes itself once that is over, and says what it came
  // to.
  explicit BlockProgress(const CommandContext& context);

 protected:
  // Cancels it.
  void reject() override;

 private:
  void Follow();
  void Tell();

  Session& session_;
  MainWindow& window_;
  QLabel* text_;
  QProgressBar* bar_;
  QLabel* time_left_;
  QElapsedTimer since_start_;
  QTimer timer_;
  bool cancel_wanted_ = false;
};

}  // namespace brevant::gui
