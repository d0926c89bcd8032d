// SPDX-License-Identifier: MIT
// The dialogs of the source window that no other window has.
#pragma once

#include <QFont>
#include <optional>
#include <string>
#include <vector>

class QWidget;

namespace brevant::gui {

struct FindRequest {
  std::string text;
  bool match_case = false;
};

// "FindDlg". Nothing when it was cancelled; the text is never empty.
std::optional<FindRequest> AskForFind(QWidget* parent, const FindRequest& initial, int max_length);

// "CBDlgList". The number of the chosen name; nothing when it was cancelled.
std::optional<int> ChooseName(QWidget* parent, const QFont& font, const QString& title,
                              const std::vector<std::string>& names, int current);

}  // namespace brevant::gui
