// SPDX-License-Identifier: MIT
// What the windows themselves tell the user.
#pragma once

#include "base/message_text.h"

namespace brevant::gui::messages {

inline constexpr base::MessageText kSettingsNotStored{
    "settings.not-stored", base::Severity::Error,
    "The settings file %s cannot be written.\n\n"
    "Give yourself write permission for the file and its folder.",
    base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kPathTooLong{"file.path-too-long", base::Severity::Error,
                                                "The path is longer than %d characters:\n%s",
                                                base::captions::kError, base::Icon::Warning};

inline constexpr base::MessageText kOfferBreakpoints{
    "breakpoints.offer",
    base::Severity::Notice,
    "This image had breakpoints when it was used last:%s\n\nSet them again?",
    base::captions::kForYourInformation,
    base::Icon::Question,
    base::Buttons::YesNo};

inline constexpr base::MessageText kNotBackedUp{
    "flash.not-backed-up", base::Severity::Error,
    "Flash was not backed up: %s.\nNothing was erased or programmed.", base::captions::kError,
    base::Icon::Error};

inline constexpr const base::MessageText* kAll[] = {&kSettingsNotStored, &kPathTooLong,
                                                    &kOfferBreakpoints, &kNotBackedUp};

}  // namespace brevant::gui::messages
