// SPDX-License-Identifier: MIT
// The base of all windows that show text in character cells: one fixed-pitch font, one pixel width
// for every character, and the colours of the theme.
#pragma once

#include <QAbstractScrollArea>
#include <QColor>
#include <QStringList>
#include <array>
#include <optional>
#include <string_view>

#include "gui/theme.h"
#include "views/cell_size.h"
#include "workspace/layout.h"

namespace brevant::gui {

struct TextColours {
  QColor text;
  QColor background = {};  // invalid: the window's own
  Face face = Face::Plain;
};

// How an item of a popup menu stands.
struct PopupItem {
  QString text;
  bool checked = false;
  bool enabled = true;
};

// The named family when it is there, else the desktop's fixed-pitch font.
QFont MakeViewFont(std::string_view face, int points);

class TextView : public QAbstractScrollArea {
 public:
  explicit TextView(const QFont& font, QWidget* parent = nullptr);

  views::CellSize cell() const { return cell_; }
  const QFont& view_font() const { return font_; }
  void SetViewFont(const QFont& font);
  void SetTheme(const Theme& theme);
  // What is shown is no longer known to be so where the link is lost, nor what is of the moment
  // while a program runs: it is painted greyed.
  void SetKnown(bool link_lost, bool running);
  // What is shown changes from one instruction to the next, and so is not known while a program
  // runs.
  virtual bool OfTheMoment() const { return false; }

  // Paints anew when its view has something else to show. Reads nothing.
  virtual void ShowChanges() {}
  // Asks the target for everything that is shown.
  virtual void RefreshFromTarget() {}
  // What the layout keeps of it, beside its place.
  virtual workspace::WindowAttributes Attributes() const { return {}; }
  // How its view lets a command of its popup menu stand; nothing: as the command's row says.
  virtual std::optional<PopupItem> ItemOf(int) const { return std::nullopt; }
  // What it shows, for screen readers; and the line under its cursor.
  virtual QStringList TextLines() const = 0;
  virtual int TextCursorLine() const { return 0; }
  // In columns; windows that scroll sideways say it, others cut what does not fit.
  virtual int LongestLine() const { return 0; }
  // What there is to say of the place under its cursor, for the status bar.
  virtual QString CursorText() const { return {}; }
  // Its window has become the active one.
  virtual void Activated() {}

 protected:
  void DrawText(QPainter& painter, int column, int row, const QString& text,
                const TextColours& colours) const;
  // Dark becomes light and the other way round; twice is as before.
  static void InvertCells(QPainter& painter, views::CellSize cell, int column, int row, int count);

  const Theme& theme() const { return *theme_; }
  // Of the theme; stale text has neither the one nor the other.
  TextColours Colours(ColourRole text) const;
  TextColours Colours(ColourRole text, ColourRole background) const;

  // Of a name and its value; the line under the cursor has a background, to be filled first.
  struct ValueColours {
    TextColours text, value;
  };
  ValueColours ColoursOf(bool changed, bool at_cursor) const;
  void FillRow(QPainter& painter, int row, const TextColours& colours) const;

  // A program runs, so that nobody knows where it is.
  bool running() const { return running_; }

  // Called when the size or the font has changed.
  virtual void CellsChanged() {}

  // To be called when the longest line may be another.
  void FitColumns();
  int ColumnAt(int x) const;

  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void scrollContentsBy(int, int) override { viewport()->update(); }

 private:
  void UseFont(const QFont& font);
  void UsePalette();

  // Whole pixels a character, so that columns are where they are computed to be.
  static QFont Spaced(QFont font, double width);

  QFont font_;
  std::array<QFont, 3> faces_;  // by Face
  views::CellSize cell_;
  int ascent_ = 0;
  bool stale_ = false;
  bool running_ = false;
  const Theme* theme_ = &kClassicTheme;
};

}  // namespace brevant::gui
