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
  const double width = std::ceil(QFontMetricsF(font).horizontalAdvance('0') - 0.01);
  font_ = Spaced(font, width);
  QFont bold = font, italic = font;
  bold.setBold(true);
  italic.setItalic(true);
  faces_ = {font_, Spaced(bold, width), Spaced(italic, width)};
  const QFontMetricsF metrics(font_);
  cell_ = {std::max(static_cast<int>(width), 1),
           std::max(static_cast<int>(std::ceil(metrics.height())), 1)};
  ascent_ = static_cast<int>(std::ceil(metrics.ascent()));
}

QFont TextView::Spaced(QFont font, double width) {
  const double advance = QFontMetricsF(font).horizontalAdvance('0');
  font.setLetterSpacing(QFont::AbsoluteSpacing, width - advance);
  font.setKerning(false);
  return font;
}

void TextView::SetViewFont(const QFont& font) {
  UseFont(font);
  CellsChanged();
  FitColumns();
  viewport()->update();
}

void TextView::SetKnown(bool link_lost, bool running) {
  const bool stale = link_lost || (running && OfTheMoment());
  if (stale_ == stale && running_ == running) return;
  stale_ = stale;
  running_ = running;
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
  const ColourRole role = stale_ ? ColourRole::Stale : text;
  return {theme_->Colour(role, palette()), {}, FaceOf(role)};
}

TextColours TextView::Colours(ColourRole text, ColourRole background) const {
  if (stale_) return Colours(text);
  return {theme_->Colour(text, palette()), theme_->Colour(background, palette()), FaceOf(text)};
}

TextView::ValueColours TextView::ColoursOf(bool changed, bool at_cursor) const {
  if (at_cursor) {
    return {Colours(ColourRole::CursorText, ColourRole::CursorLine),
            Colours(changed ? ColourRole::ChangedOnCursorLine : ColourRole::CursorText,
                    ColourRole::CursorLine)};
  }
  return {Colours(ColourRole::Text), Colours(changed ? ColourRole::Changed : ColourRole::Text)};
}

void TextView::FillRow(QPainter& painter, int row, const TextColours& colours) const {
  if (!colours.background.isValid()) return;
  painter.fillRect(0, row * cell_.height, viewport()->width(), cell_.height, colours.background);
}

void TextView::DrawText(QPainter& painter, int column, int row, const QString& text,
                        const TextColours& colours) const {
  const int x = (column - horizontalScrollBar()->value()) * cell_.width;
  const int y = row * cell_.height;
  const int width = static_cast<int>(text.size()) * cell_.width;
  if (colours.background.isValid()) {
    painter.fillRect(x, y, width, cell_.height, colours.background);
  }
  painter.setFont(faces_[static_cast<std::size_t>(colours.face)]);
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
  FitColumns();
}

void TextView::FitColumns() {
  const int columns = viewport()->width() / cell_.width;
  horizontalScrollBar()->setRange(0, std::max(LongestLine() - columns, 0));
  horizontalScrollBar()->setPageStep(columns);
}

int TextView::ColumnAt(int x) const {
  return x / cell_.width + horizontalScrollBar()->value();
}

void TextView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) UsePalette();
}

}  // namespace brevant::gui
