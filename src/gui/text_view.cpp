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
QFont MakeViewFont(std::string_view face, int points) {
  const QString family = Text(face);
  QFont made = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  for (const QString& known : QFontDatabase::families()) {
    if (known.compare(family, Qt::CaseInsensitive) == 0 && QFontDatabase::isFixedPitch(known)) {
      made = QFont(known);
    }
  }
  made.setPointSize(points);
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

void TextView::SetTheme(const Theme& theme) {
  theme_ = &theme;
  UsePalette();
  CellsChanged();
}

void TextView::UsePalette() {
  QPalette of_theme = palette();
  of_theme.setColor(QPalette::Base, theme_->Colour(ColourRole::Background, palette()));
  viewport()->setPalette(of_theme);
  viewport()->update();
}

TextColours TextView::Colours(ColourRole text) const {
  return {theme_->Colour(stale_ ? ColourRole::Stale : text, palette())};
}

TextColours TextView::Colours(ColourRole text, ColourRole background) const {
  if (stale_) return Colours(text);
  return {theme_->Colour(text, palette()), theme_->Colour(background, palette())};
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
  if (event->type() == QEvent::PaletteChange) UsePalette();
}

}  // namespace brevant::gui
