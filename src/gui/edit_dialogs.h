// SPDX-License-Identifier: MIT
// The small dialogs that windows share: one line of text, one line with a list to choose from, and
// the list of breakpoints. Each shows a form of the engine; the form decides what is accepted.
#pragma once

#include <QFont>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/function_ref.h"
#include "views/breakpoint_list.h"

class QWidget;

namespace brevant::gui {

struct EditRequest {
  std::string title = {};
  const char* name = "DlgEdit";  // of the dialog's template
  std::string label = {};        // before the field; empty for none
  std::string text = {};
  int max_length = 0;
  bool typing_continues = false;  // after the text, instead of replacing it
  // With choices the field gets a list that drops down.
  std::optional<std::vector<std::string>> choices = {};
};

// What becomes of the text when "Ok" is chosen. Empty: accepted; else why not, which is shown below
// the field while the dialog stays open.
using AcceptText = base::FunctionRef<std::string(std::string_view text)>;

// True when a text was accepted, false when the dialog was cancelled.
bool AskForText(QWidget* parent, const QFont& font, const EditRequest& request, AcceptText accept);

// "BKPTDLG". The breakpoint to go to, if that is how it was left; list.result() says whether any
// were deleted.
std::optional<base::Address> ShowBreakpointList(QWidget* parent, const QFont& font,
                                                views::BreakpointList& list);

}  // namespace brevant::gui
