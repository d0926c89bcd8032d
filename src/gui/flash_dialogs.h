// SPDX-License-Identifier: MIT
// The dialogs of the flash commands. Each shows a form of the engine, which decides what is
// accepted; nothing is returned when it was cancelled. All offer to back up flash first.
#pragma once

#include <QFont>
#include <functional>
#include <optional>
#include <string>

#include "base/settings_file.h"
#include "base/user_interface.h"
#include "flash/flash_forms.h"

class QWidget;

namespace brevant::gui {

// What a dialog needs besides its form.
struct FlashDialogLinks {
  QWidget* parent;
  const QFont& font;
  base::SettingsFile& settings;
  base::UserInterface& ui;
  bool can_back_up;  // the part lets its flash be read
};

struct EraseChoice {
  flash::AddressRange range;
  bool back_up = false;
};
// "FEEPERASE".
std::optional<EraseChoice> AskForEraseRange(const FlashDialogLinks& links);

// The question before a mass erase: whether to back up first.
std::optional<bool> AskForMassErase(const FlashDialogLinks& links);

// "PROGLOCATION".
std::optional<flash::LocationData> AskForLocations(const FlashDialogLinks& links);

struct FileChoice {
  enum class What {
    Program,     // into flash that has been erased
    FlashImage,  // erasing what it needs
  };
  std::string path;
  What what = What::Program;
  bool back_up = false;
};
// "FEEPROM", opened for one of both, which Enter then starts; a name that is given stands in the
// field, else the one that was programmed last. Browse shows the chooser, starting from what stands
// in the field, and returns what was chosen.
using BrowseForFile = std::function<std::optional<std::string>(const std::string& start)>;
std::optional<FileChoice> AskForFlashFile(const FlashDialogLinks& links, FileChoice::What what,
                                          const std::string& name, const BrowseForFile& browse);

}  // namespace brevant::gui
