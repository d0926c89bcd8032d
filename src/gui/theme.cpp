// SPDX-License-Identifier: MIT
#include "gui/theme.h"

#include <algorithm>
#include <array>

#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

constexpr int kMidGrey = 128;

bool Dark(const QPalette& palette) {
  return palette.color(QPalette::Base).lightness() < kMidGrey;
}

QColor Mix(const QColor& a, const QColor& b, int percent_b) {
  const auto part = [percent_b](int from, int to) { return from + (to - from) * percent_b / 100; };
  return {part(a.red(), b.red()), part(a.green(), b.green()), part(a.blue(), b.blue())};
}

QColor Own(const QPalette& palette, QPalette::ColorRole role) {
  return palette.color(QPalette::Active, role);
}

QColor Tinted(const QPalette& palette, int percent) {
  return Mix(Own(palette, QPalette::Base), Own(palette, QPalette::Highlight), percent);
}

template <QRgb kColour>
QColor Always(const QPalette&) {
  return kColour;
}
template <QRgb kOnLight, QRgb kOnDark>
QColor Readable(const QPalette& palette) {
  return Dark(palette) ? kOnDark : kOnLight;
}
template <QPalette::ColorRole kRole>
QColor OfDesktop(const QPalette& palette) {
  return Own(palette, kRole);
}
template <int kPercent>
QColor OfHighlight(const QPalette& palette) {
  return Tinted(palette, kPercent);
}
QColor Faded(const QPalette& palette) {
  return Mix(Own(palette, QPalette::Text), Own(palette, QPalette::Base), 55);
}

constexpr QRgb kBlack = 0xFF000000, kWhite = 0xFFFFFFFF, kGrey = 0xFFA0A0A0, kCyan = 0xFF00FFFF;
constexpr QRgb kRed = 0xFFFF0000;
// Pure red is hard to read on cyan; this has a contrast of 5:1 there.
constexpr QRgb kRedOnCyan = 0xFFB40000;
// On white and on dark grey a contrast of more than 5:1.
constexpr QRgb kDeepBlue = 0xFF0050A0, kPaleBlue = 0xFF80B8F0;
constexpr QRgb kDeepRed = 0xFFB00020, kPaleRed = 0xFFFF8080;
constexpr QRgb kDeepGreen = 0xFF2A6A2A, kPaleGreen = 0xFF90C890;
constexpr QRgb kDeepViolet = 0xFF7A2A9A, kPaleViolet = 0xFFD8A8F0;
constexpr QRgb kDeepBrown = 0xFF8A4A00, kPaleBrown = 0xFFE8B878;

struct ColourRow {
  ColourRole role;
  QColor (*classic)(const QPalette&);
  QColor (*quiet)(const QPalette&);
  Face face = Face::Plain;
};

constexpr std::array kColours{
    ColourRow{ColourRole::Text, Always<kBlack>, OfDesktop<QPalette::Text>},
    ColourRow{ColourRole::Stale, Always<kGrey>, Faded},
    ColourRow{ColourRole::Background, Always<kWhite>, OfDesktop<QPalette::Base>},
    ColourRow{ColourRole::CursorText, Always<kBlack>, OfDesktop<QPalette::Text>},
    ColourRow{ColourRole::CursorLine, Always<kCyan>, OfHighlight<18>},
    ColourRow{ColourRole::PcText, Always<kRed>, OfDesktop<QPalette::Text>},
    ColourRow{ColourRole::PcLine, Always<kWhite>, OfHighlight<35>},
    ColourRow{ColourRole::PcTextOnCursorLine, Always<kRedOnCyan>, OfDesktop<QPalette::Text>},
    ColourRow{ColourRole::Changed, Always<kRed>, Readable<kDeepRed, kPaleRed>, Face::Bold},
    ColourRow{ColourRole::ChangedOnCursorLine, Always<kRedOnCyan>, Readable<kDeepRed, kPaleRed>,
              Face::Bold},
    ColourRow{ColourRole::OnRequest, Always<kDeepBlue>, Readable<kDeepBlue, kPaleBlue>,
              Face::Italic},
    ColourRow{ColourRole::PcMark, Always<kRed>, OfDesktop<QPalette::Highlight>},
    ColourRow{ColourRole::BreakpointMark, Always<kBlack>, Readable<kDeepRed, kPaleRed>},
    ColourRow{ColourRole::CodeMark, Always<kBlack>, OfDesktop<QPalette::Text>},
    ColourRow{ColourRole::SourceLine, Always<kDeepBlue>, Readable<kDeepBlue, kPaleBlue>},
    ColourRow{ColourRole::Keyword, Always<kBlack>, Readable<kDeepBlue, kPaleBlue>},
    ColourRow{ColourRole::Comment, Always<kBlack>, Readable<kDeepGreen, kPaleGreen>},
    ColourRow{ColourRole::Number, Always<kBlack>, Readable<kDeepViolet, kPaleViolet>},
    ColourRow{ColourRole::String, Always<kBlack>, Readable<kDeepBrown, kPaleBrown>},
};

template <QColor (*ColourRow::*kColumn)(const QPalette&)>
QColor ColourOf(ColourRole role, const QPalette& palette) {
  const auto* const row = std::ranges::find(kColours, role, &ColourRow::role);
  return (row->*kColumn)(palette);
}

namespace commands = workspace::commands;

constexpr std::array kThemes{
    Theme{"classic", commands::kClassicColours, false, false, ColourOf<&ColourRow::classic>},
    Theme{"quiet", commands::kQuietColours, true, true, ColourOf<&ColourRow::quiet>},
};

}  // namespace

Face FaceOf(ColourRole role) {
  return std::ranges::find(kColours, role, &ColourRow::role)->face;
}

constinit const Theme& kClassicTheme = kThemes[0];

const Theme& FindTheme(std::string_view name, const QPalette& desktop) {
  const auto* const named = std::ranges::find(kThemes, name, &Theme::name);
  return named != kThemes.end() ? *named : kThemes[Dark(desktop) ? 1 : 0];
}

const Theme* ThemeChosenBy(int command) {
  const auto* const theme = std::ranges::find(kThemes, command, &Theme::command);
  return theme != kThemes.end() ? theme : nullptr;
}

}  // namespace brevant::gui
