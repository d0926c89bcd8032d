// SPDX-License-Identifier: MIT
#include "gui/progress_dialog.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace brevant::gui {
namespace {

constexpr qint64 kShowAfterMs = 300;
constexpr qint64 kEventsEveryMs = 33;
constexpr qint64 kEstimateAfterMs = 1000;
constexpr int kProgressWidth = 420;
constexpr int kSteps = 1000;

}  // namespace

QString TimeLeftText(qint64 elapsed_ms, long done, long total) {
  if (elapsed_ms < kEstimateAfterMs || done <= 0 || total <= done) return {};
  const qint64 left_ms = elapsed_ms * (total - done) / done;
  const qint64 seconds = (left_ms + 999) / 1000;
  if (seconds > 90) return QObject::tr("about %1 minutes left").arg((seconds + 59) / 60);
  return QObject::tr("about %1 s left").arg(seconds);
}

ProgressDialog::ProgressDialog(QWidget* parent, const QString& title, const QString& text,
                               bool can_cancel)
    : QDialog(parent), text_(new QLabel(text)), bar_(new QProgressBar), time_left_(new QLabel) {
  setObjectName("progress");
  setWindowTitle(title);
  setWindowModality(Qt::ApplicationModal);
  setMinimumWidth(kProgressWidth);
  text_->setWordWrap(true);
  bar_->setRange(0, 0);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(text_);
  layout->addWidget(bar_);
  auto* const bottom = new QHBoxLayout;
  bottom->addWidget(time_left_, 1);
  if (can_cancel) {
    cancel_ = new QPushButton("Cancel");
    cancel_->setObjectName("cancel");
    connect(cancel_, &QPushButton::clicked, this, [this] { reject(); });
    bottom->addWidget(cancel_);
  }
  layout->addLayout(bottom);
  since_start_.start();
  since_events_.start();
}

void ProgressDialog::reject() {
  if (cancel_ == nullptr) return;
  cancelled_ = true;
  cancel_->setEnabled(false);
}

void ProgressDialog::ShowNow() {
  show();
  // Some platforms paint only after the window has been mapped.
  for (int i = 0; i < 3; ++i) QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

bool ProgressDialog::Advance(const QString& text, long done, long total) {
  if (since_events_.elapsed() < kEventsEveryMs) return !cancelled_;
  since_events_.restart();
  text_->setText(text);
  bar_->setRange(0, total > 0 ? kSteps : 0);
  if (total > 0) bar_->setValue(static_cast<int>(static_cast<qint64>(done) * kSteps / total));
  time_left_->setText(TimeLeftText(since_start_.elapsed(), done, total));
  if (!isVisible() && since_start_.elapsed() >= kShowAfterMs) show();
  // Once shown, the dialog is modal, so that only its own Cancel takes input.
  QApplication::processEvents(isVisible() ? QEventLoop::AllEvents
                                          : QEventLoop::ExcludeUserInputEvents);
  return !cancelled_;
}

}  // namespace brevant::gui
