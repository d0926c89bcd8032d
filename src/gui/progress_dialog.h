// SPDX-License-Identifier: MIT
// How far a long operation has come, with the time left and, where offered, Cancel. While it is
// shown it holds back all other input; it appears only when the operation takes a while.
#pragma once

#include <QDialog>
#include <QElapsedTimer>

class QLabel;
class QProgressBar;
class QPushButton;

namespace brevant::gui {

class ProgressDialog final : public QDialog {
 public:
  ProgressDialog(QWidget* parent, const QString& title, const QString& text, bool can_cancel);

  // Repaints all windows, at most 30 times a second. False once the user has asked to cancel.
  bool Advance(const QString& text, long done, long total);
  // Shows and paints it now, for an operation that will not call back.
  void ShowNow();

 protected:
  void reject() override;

 private:
  QElapsedTimer since_start_;
  QElapsedTimer since_events_;
  QLabel* text_;
  QProgressBar* bar_;
  QLabel* time_left_;
  QPushButton* cancel_ = nullptr;
  bool cancelled_ = false;
};

// "about 12 seconds left"; empty while nothing can be said.
QString TimeLeftText(qint64 elapsed_ms, long done, long total);

}  // namespace brevant::gui
