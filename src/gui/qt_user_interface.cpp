// SPDX-License-Identifier: MIT
#include "gui/qt_user_interface.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <vector>

namespace brevant::gui {
namespace {

QMessageBox::Icon IconOf(base::Icon icon) {
  switch (icon) {
    case base::Icon::None:
      return QMessageBox::NoIcon;
    case base::Icon::Information:
      return QMessageBox::Information;
    case base::Icon::Question:
      return QMessageBox::Question;
    case base::Icon::Warning:
      return QMessageBox::Warning;
    case base::Icon::Error:
      return QMessageBox::Critical;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ButtonsOf(base::Buttons buttons) {
  switch (buttons) {
    case base::Buttons::Ok:
      return QMessageBox::Ok;
    case base::Buttons::OkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case base::Buttons::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
  }
  return QMessageBox::Ok;
}

// That leaves all as it is.
QMessageBox::StandardButton Declining(base::Buttons buttons) {
  switch (buttons) {
    case base::Buttons::Ok:
      return QMessageBox::Ok;
    case base::Buttons::OkCancel:
      return QMessageBox::Cancel;
    case base::Buttons::YesNo:
      return QMessageBox::No;
  }
  return QMessageBox::Ok;
}

base::Answer AnswerOf(int button, base::Buttons offered) {
  switch (button) {
    case QMessageBox::Ok:
      return base::Answer::Ok;
    case QMessageBox::Yes:
      return base::Answer::Yes;
    case QMessageBox::No:
      return base::Answer::No;
    default:
      return offered == base::Buttons::Ok ? base::Answer::Ok : base::Answer::Cancel;
  }
}

class MessageBox final : public QMessageBox {
 public:
  MessageBox(const base::Message& message, QWidget* parent)
      : QMessageBox(IconOf(message.icon), Text(message.caption), Text(message.text),
                    ButtonsOf(message.buttons), parent) {
    setObjectName("message");
    setTextFormat(Qt::PlainText);
    // Beside other buttons too, Escape only reads the message.
    if (message.buttons == base::Buttons::Ok) setEscapeButton(QMessageBox::Ok);
    if (message.enter_declines) setDefaultButton(Declining(message.buttons));
  }
  // The standard button that it was left with.
  int Ask() {
    const bool busy = QApplication::overrideCursor() != nullptr;
    if (busy) QApplication::setOverrideCursor(Qt::ArrowCursor);
    const int button = exec();
    if (busy) QApplication::restoreOverrideCursor();
    return button;
  }
};

}  // namespace

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string Bytes(const QString& text) {
  return text.toUtf8().toStdString();
}

QWidget* QtUserInterface::parent() const {
  return window_ != nullptr && window_->isVisible() ? window_ : nullptr;
}

base::Answer QtUserInterface::ShowMessage(const base::Message& message) {
  MessageBox box(message, parent());
  return AnswerOf(box.Ask(), message.buttons);
}

std::optional<std::size_t> QtUserInterface::Offer(const base::Message& message,
                                                  std::span<const char* const> buttons) {
  MessageBox box(message, parent());
  std::vector<QAbstractButton*> offers;
  for (const char* const text : buttons) {
    offers.push_back(box.addButton(text, QMessageBox::ActionRole));
    offers.back()->setObjectName(QString("offer%1").arg(offers.size()));
  }
  box.Ask();
  const auto chosen = std::ranges::find(offers, box.clickedButton());
  if (chosen == offers.end()) return std::nullopt;
  return static_cast<std::size_t>(chosen - offers.begin());
}

void QtUserInterface::Beep() {
  QApplication::beep();
}

void QtUserInterface::SetTitle(std::string_view title) {
  if (window_ != nullptr) window_->setWindowTitle(Text(title));
}

void QtUserInterface::BeginProgress(std::string_view title, std::string_view text,
                                    bool can_cancel) {
  progress_ = std::make_unique<ProgressDialog>(parent(), Text(title), Text(text), can_cancel);
}

void QtUserInterface::ShowWaiting(std::string_view title, std::string_view text) {
  BeginProgress(title, text, false);
  progress_->ShowNow();
}

bool QtUserInterface::UpdateProgress(std::string_view text, long done, long total) {
  return progress_ == nullptr || progress_->Advance(Text(text), done, total);
}

void QtUserInterface::EndProgress() {
  progress_.reset();
}

void QtUserInterface::SetBusyCursor(bool busy) {
  if (busy) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

}  // namespace brevant::gui
