// SPDX-License-Identifier: MIT
// What the windows themselves tell the user.
#pragma once

#include "base/message_text.h"

namespace brevant::gui::messages {

inline constexpr base::MessageText kSettingsNotStored{
    "settings.not-stored", base::Severity::Error,
    "The settings file %s cannot be written.\n\n"
    "Give yourself write permission for the file and its folder.",
    "Error Message", base::Icon::Error};
inline constexpr base::MessageText kPathTooLong{"file.path-too-long", base::Severity::Error,
                                                "The path is longer than %d characters:\n%s",
                                                "Error Message", base::Icon::Warning};
inline constexpr base::MessageText kSymbolsNotLoaded{"symbols.not-loaded", base::Severity::Error,
                                                     "%s", "Error Message", base::Icon::Warning};

inline constexpr const base::MessageText* kAll[] = {&kSettingsNotStored, &kPathTooLong,
                                                    &kSymbolsNotLoaded};

}  // namespace brevant::gui::messages
