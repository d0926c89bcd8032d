// SPDX-License-Identifier: MIT
#include "gui/status_line.h"

#include <QLabel>
#include <QTime>

#include "gui/qt_user_interface.h"
#include "workspace/clock_text.h"

namespace brevant::gui {

StatusLine::StatusLine() : connection_(new QLabel), clock_(new QLabel) {
  setObjectName("status");
  connection_->setObjectName("connection");
  clock_->setObjectName("clock");
  clock_->setMinimumWidth(clock_->fontMetrics().horizontalAdvance("00:00:00 PM") + 8);
  clock_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  addPermanentWidget(connection_);
  addPermanentWidget(clock_);
  UpdateClock();
}

void StatusLine::ShowConnection(const ConnectionState& state) {
  const QString text = Text(StatusText(state));
  if (connection_->text() == text) return;
  if (!notice_of_state_.isEmpty() && currentMessage() == notice_of_state_) clearMessage();
  notice_of_state_.clear();
  connection_->setText(text);
  connection_->setToolTip(text);
  QFont font = this->font();
  font.setBold(state.link_lost);
  connection_->setFont(font);
}

void StatusLine::ShowNotice(const std::string& text) {
  showMessage(Text(text));
}

void StatusLine::ShowNoticeOfState(const std::string& text) {
  notice_of_state_ = Text(text);
  showMessage(notice_of_state_);
}

void StatusLine::UpdateClock() {
  const QTime now = QTime::currentTime();
  const QString text = Text(workspace::ClockText(now.hour(), now.minute(), now.second()));
  if (clock_->text() != text) clock_->setText(text);
}

}  // namespace brevant::gui
