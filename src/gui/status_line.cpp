// SPDX-License-Identifier: MIT
#include "gui/status_line.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QTime>

#include "gui/qt_user_interface.h"
#include "workspace/clock_text.h"

namespace brevant::gui {
namespace {

constexpr int kMargin = 6;
constexpr int kLeastCharacters = 24;  // of the connection, however long the notice beside it

// A label that gives way.
class ShortenedLabel final : public QLabel {
 public:
  QSize minimumSizeHint() const override {
    return {std::min(sizeHint().width(), fontMetrics().averageCharWidth() * kLeastCharacters),
            QLabel::minimumSizeHint().height()};
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const QRect room = contentsRect();
    style()->drawItemText(&painter, room, Qt::AlignRight | Qt::AlignVCenter, palette(), true,
                          fontMetrics().elidedText(text(), Qt::ElideRight, room.width()),
                          foregroundRole());
  }
};

}  // namespace

StatusLine::StatusLine() : connection_(new ShortenedLabel), clock_(new QLabel) {
  setObjectName("status");
  connection_->setObjectName("connection");
  connection_->setContentsMargins(kMargin, 0, kMargin, 0);
  connection_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
  connection_->setAutoFillBackground(true);
  clock_->setObjectName("clock");
  clock_->setMinimumWidth(clock_->fontMetrics().horizontalAdvance("00:00:00 PM") + 8);
  clock_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  addPermanentWidget(connection_);
  addPermanentWidget(clock_);
  connect(this, &QStatusBar::messageChanged, this, [this] { setToolTip(Shown()); });
  UpdateClock();
}

void StatusLine::ShowConnection(const ConnectionState& state) {
  const QString text = Text(StatusText(state));
  if (connection_->text() == text) return;
  EndNotice(NoticeEnds::WithTheState);
  connection_->setText(text);
  connection_->setToolTip(text);
  // Plain to see from across the room: while a program runs, nothing else on the screen is current.
  const bool running = state.running && !state.link_lost;
  connection_->setBackgroundRole(running ? QPalette::Highlight : QPalette::Window);
  connection_->setForegroundRole(running ? QPalette::HighlightedText : QPalette::WindowText);
  QFont font = this->font();
  font.setBold(state.link_lost || running);
  connection_->setFont(font);
}

void StatusLine::ShowNotice(const std::string& text, NoticeEnds ends) {
  notice_ = Text(text);
  notice_ends_ = ends;
  showMessage(notice_);
}

QString StatusLine::Shown() const {
  const QString message = currentMessage();
  return message.isEmpty() ? under_cursor_ : message;
}

void StatusLine::ShowUnderCursor(const QString& text) {
  if (under_cursor_ == text) return;
  under_cursor_ = text;
  EndHelp();
  setToolTip(Shown());
  update();
}

void StatusLine::BeginCommand() {
  EndNotice(NoticeEnds::WithTheNextCommand);
  EndHelp();
}

void StatusLine::EndHelp() {
  if (currentMessage() != notice_) showMessage(notice_);
}

void StatusLine::EndNotice(NoticeEnds which) {
  if (notice_.isEmpty() || notice_ends_ != which) return;
  // The help of a menu item may have taken its place.
  if (currentMessage() == notice_) clearMessage();
  notice_.clear();
}

void StatusLine::UpdateClock() {
  const QTime now = QTime::currentTime();
  const QString text = Text(workspace::ClockText(now.hour(), now.minute(), now.second()));
  if (clock_->text() != text) clock_->setText(text);
}

void StatusLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QStyleOption option;
  option.initFrom(this);
  style()->drawPrimitive(QStyle::PE_PanelStatusBar, &option, &painter, this);
  const QRect room = rect().adjusted(kMargin, 0, 0, 0);
  const int width = connection_->x() - 2 * kMargin;
  style()->drawItemText(&painter, {room.x(), room.y(), width, room.height()},
                        Qt::AlignLeft | Qt::AlignVCenter, palette(), true,
                        fontMetrics().elidedText(Shown(), Qt::ElideRight, width),
                        QPalette::WindowText);
}

}  // namespace brevant::gui
