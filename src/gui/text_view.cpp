// SPDX-License-Identifier: MIT
#include "gui/text_view.h"

#include <QEvent>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QScrollBar>
#include <cmath>

#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

constexpr int kMidGrey = 128;
const QColor kCyan(0, 255, 255);
const QColor kRed(255, 0, 0);
// Pure red is hard to read on cyan and on near-black; these have a contrast of 5:1 there.
const QColor kRedOnCyan(180, 0, 0);
const QColor kRedOnDark(255, 112, 112);

}  // namespace

QFont MakeViewFont(const workspace::ViewFont& font) {
  const QString family = Text(font.face);
  QFont made = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  for (const QString& known : QFontDatabase::families()) {
    if (known.compare(family, Qt::CaseInsensitive) == 0 && QFontDatabase::isFixedPitch(known)) {
      made = QFont(known);
    }
  }
  made.setPointSize(font.points);
  made.setStyleHint(QFont::Monospace);
  made.setFixedPitch(true);
  return made;
}

TextView::TextView(const QFont& font, QWidget* parent) : QAbstractScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setBackgroundRole(QPalette::Base);
  viewport()->setAutoFillBackground(true);
  UseFont(font);
}

void TextView::UseFont(const QFont& font) {
  font_ = font;
  // Whole pixels a character, so that columns are where they are computed to be.
  const double advance = QFontMetricsF(font_).horizontalAdvance('0');
  const double width = std::ceil(advance - 0.01);
  font_.setLetterSpacing(QFont::AbsoluteSpacing, width - advance);
  font_.setKerning(false);
  const QFontMetricsF metrics(font_);
  cell_ = {std::max(static_cast<int>(width), 1),
           std::max(static_cast<int>(std::ceil(metrics.height())), 1)};
  ascent_ = static_cast<int>(std::ceil(metrics.ascent()));
}

void TextView::SetViewFont(const QFont& font) {
  UseFont(font);
  CellsChanged();
  viewport()->update();
}

void TextView::SetStale(bool stale) {
  if (stale_ == stale) return;
  stale_ = stale;
  viewport()->update();
}

bool TextView::Dark() const {
  return palette().color(QPalette::Base).lightness() < kMidGrey;
}

TextColours TextView::Normal() const {
  return {palette().color(stale_ ? QPalette::Disabled : QPalette::Active, QPalette::Text), {}};
}

TextColours TextView::Red() const {
  if (stale_) return Normal();
  return {Dark() ? kRedOnDark : kRed, {}};
}

TextColours TextView::Cursor() const {
  return stale_ ? Normal() : TextColours{Qt::black, kCyan};
}

TextColours TextView::CursorRed() const {
  return stale_ ? Normal() : TextColours{kRedOnCyan, kCyan};
}

void TextView::DrawText(QPainter& painter, int column, int row, const QString& text,
                        const TextColours& colours) const {
  const int x = column * cell_.width;
  const int y = row * cell_.height;
  const int width = static_cast<int>(text.size()) * cell_.width;
  if (colours.background.isValid()) {
    painter.fillRect(x, y, width, cell_.height, colours.background);
  }
  painter.setFont(font_);
  painter.setPen(colours.text);
  painter.drawText(x, y + ascent_, text);
}

void TextView::InvertCells(QPainter& painter, views::CellSize cell, int column, int row,
                           int count) {
  painter.save();
  painter.setCompositionMode(QPainter::CompositionMode_Difference);
  painter.fillRect(column * cell.width, row * cell.height, count * cell.width, cell.height,
                   Qt::white);
  painter.restore();
}

void TextView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  CellsChanged();
}

void TextView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) viewport()->update();
}

}  // namespace brevant::gui
