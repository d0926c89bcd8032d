// SPDX-License-Identifier: MIT
#include "gui/trace_window.h"

#include <QKeyEvent>
#include <QPainter>

#include "gui/qt_user_interface.h"
#include "gui/session.h"

namespace brevant::gui {
namespace {

constexpr int kUsualColumns = 72;
constexpr int kUsualLines = 18;

}  // namespace

TraceWindow::TraceWindow(Session& session, FrameLinks links, const QFont& font,
                         const workspace::WindowAttributes&)
    : ScrollingView(session.gate, std::move(links), font),
      view_(session.views, session.debugger.trace) {
  setObjectName("MDI_Trace");
  setAccessibleName("Trace");
}

QSize TraceWindow::sizeHint() const {
  return {kUsualColumns * cell().width, kUsualLines * cell().height};
}

QStringList TraceWindow::TextLines() const {
  QStringList lines;
  for (const std::string& line : view_.lines()) lines << Text(line);
  return lines;
}

QString TraceWindow::CursorText() const {
  if (view_.line_count() == 0) return {};
  return QString("%1: line %2 of %3")
      .arg(Text(view_.path()))
      .arg(view_.top() + 1)
      .arg(view_.line_count());
}

void TraceWindow::CellsChanged() {
  view_.Resize(viewport()->height(), cell().height);
}

TraceWindow::ScrollBarState TraceWindow::BarState() const {
  return {view_.line_count(), view_.rows(), view_.top()};
}

void TraceWindow::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  int row = 0;
  for (const QString& line : TextLines()) {
    DrawText(painter, 0, row++, line, Colours(ColourRole::Text));
  }
}

void TraceWindow::keyPressEvent(QKeyEvent* event) {
  if (!ScrollByKey(event->key())) event->ignore();
}

}  // namespace brevant::gui
