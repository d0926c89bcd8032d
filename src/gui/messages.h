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

inline constexpr base::MessageText kReadLinkLost{
    "read.link-lost", base::Severity::Error,
    "The target does not answer any more. %s; %s.\n\n"
    "Check the cable and the power, then press ReStart to connect again.",
    base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kReadDamaged{
    "read.damaged", base::Severity::Error,
    "The line damages what is read from %04x on each time: what stands there is in doubt; %s.\n\n"
    "Check the cable, then do it again.",
    base::captions::kError, base::Icon::Error};

inline constexpr base::MessageText kUnknownFormat{
    "save.unknown-format", base::Severity::Error,
    "%s\nwas not written: its format is told by its name, which ends in .s19, .sx, .hex or .bin.",
    base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kFileNotWritten{"save.not-written", base::Severity::Error,
                                                   "%s\ncannot be written: %s",
                                                   base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kFileNotRead{"compare.not-read", base::Severity::Error,
                                                "%s\ncannot be read: %s", base::captions::kError,
                                                base::Icon::Error};
inline constexpr base::MessageText kFlashNotReadable{
    "compare.flash-not-readable", base::Severity::Error,
    "Nothing was compared: flash cannot be read, as the target did not accept the security code.",
    base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kCompareEqual{
    "compare.equal", base::Severity::Notice, "All %ld bytes of\n%s\nstand in the target.",
    base::captions::kInformation, base::Icon::Information};
inline constexpr base::MessageText kCompareNotDone{"compare.not-done", base::Severity::Warning,
                                                   "%s", base::captions::kInformation,
                                                   base::Icon::Warning};
// Added to what a comparison came to.
inline constexpr const char* kCompareLinkLost =
    "\n\nThe target does not answer any more: the rest was not compared. Check the cable and the "
    "power, then press ReStart to connect again.";
inline constexpr const char* kCompareCancelled = "\n\nCancelled: the rest was not compared.";
inline constexpr const char* kCompareDamaged =
    "\n\nThe line damaged what was read from %04x each time: what was compared from there on is in "
    "doubt. Check the cable, then do it again.";
inline constexpr const char* kFirstAreListed = " The first %ld are listed.";

inline constexpr base::MessageText kNotCorrectFormat{"clipboard.not-correct-format",
                                                     base::Severity::Error, "Not correct format",
                                                     base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kNotHexString{
    "clipboard.not-hex-string", base::Severity::Error,
    "Not HEX string\n\nLine %ld of the text is not four hexadecimal digits and two characters that "
    "end the line. %s",
    base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kClipboardNotTaken{
    "clipboard.not-taken", base::Severity::Error,
    "The desktop did not take the text: it is not in the clipboard.", base::captions::kError,
    base::Icon::Error};

inline constexpr base::MessageText kFlashDiffers{"flash.differs", base::Severity::Error,
                                                 "Flash does not hold what the file says: %s.",
                                                 base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kFlashNotVerified{
    "flash.not-verified", base::Severity::Warning,
    "Flash was programmed, but not compared with the file as a whole: the comparison was\n"
    "cancelled, or the target does not let its flash be read, or did not answer.",
    base::captions::kForYourInformation, base::Icon::Warning};

inline constexpr const base::MessageText* kAll[] = {
    &kSettingsNotStored, &kPathTooLong,      &kReadLinkLost,     &kReadDamaged,
    &kUnknownFormat,     &kFileNotWritten,   &kFileNotRead,      &kFlashNotReadable,
    &kCompareEqual,      &kCompareNotDone,   &kNotCorrectFormat, &kNotHexString,
    &kClipboardNotTaken, &kOfferBreakpoints, &kNotBackedUp,      &kFlashDiffers,
    &kFlashNotVerified};

}  // namespace brevant::gui::messages
