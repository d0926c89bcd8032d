// SPDX-License-Identifier: MIT
// What the flash commands tell the user: one row a message.
#pragma once

#include "base/message_text.h"

namespace brevant::flash {

using base::MessageText;
using base::ToMessage;

namespace messages {

using base::Buttons;
using base::Icon;
using base::Severity;

// Questions and refusals.
inline constexpr MessageText kConfirmMassErase{"flash.confirm-mass-erase",
                                               Severity::Warning,
                                               "Do you really want to mass erase flash EEPROM",
                                               base::captions::kInformation,
                                               Icon::Question,
                                               Buttons::YesNo,
                                               true};
inline constexpr MessageText kConfirmErase{"flash.confirm-erase",
                                           Severity::Warning,
                                           "It is going to erase flash EEPROM, please confirm.",
                                           base::captions::kForYourInformation,
                                           Icon::Question,
                                           Buttons::OkCancel};
inline constexpr MessageText kEndNotAboveStart{"flash.end-not-above-start",
                                               Severity::Notice,
                                               "End address must be greater than start address",
                                               base::captions::kForYourInformation,
                                               Icon::Information,
                                               Buttons::OkCancel};
inline constexpr MessageText kNotHexAddress{"flash.not-hex-address", Severity::Notice,
                                            "Not a correct HEX address",
                                            base::captions::kInformation, Icon::Information};
// Its conversions: an address, the device, what of it is flash.
inline constexpr MessageText kNotFlash{
    "flash.not-flash", Severity::Error,
    "%05x is not flash, and nothing was done.\nFlash of the %s: %s.", base::captions::kError,
    Icon::Error};
inline constexpr MessageText kTrimAtStake{
    "flash.trim-at-stake",
    Severity::Warning,
    "These pages hold the trim of the oscillator (%04x: %02x), which the factory has set.\n"
    "Shall it be written back after the erase?",
    base::captions::kForYourInformation,
    Icon::Question,
    Buttons::YesNo};
// What the image or the file says of that place wins.
inline constexpr MessageText kTrimReplaced{
    "flash.trim-replaced", Severity::Notice,
    "The trim of the oscillator, which stands at %04x, is replaced by what the image holds there.\n"
    "It was %02x.",
    base::captions::kForYourInformation, Icon::Information};
inline constexpr MessageText kTrimKept{
    "flash.trim-kept", Severity::Notice,
    "The trim of the oscillator (%04x: %02x) was written back after the erase, and read back.",
    base::captions::kForYourInformation, Icon::Information};
inline constexpr MessageText kNoData{"flash.no-data", Severity::Notice, "No data to program",
                                     base::captions::kInformation, Icon::Information};
inline constexpr MessageText kBadData{
    "flash.bad-data", Severity::Notice,
    "The string should be maximum of two HEX digits seperated by a space",
    base::captions::kInformation, Icon::Information};
inline constexpr MessageText kProgramFileNotAccessible{"flash.file-not-accessible", Severity::Error,
                                                       "Can not access the file you select",
                                                       base::captions::kError, Icon::Error};
inline constexpr MessageText kProgramFileNotOpened{"flash.file-not-opened", Severity::Error,
                                                   "Can not open file %s", base::captions::kError,
                                                   Icon::Error};

// What went wrong on the target.
inline constexpr MessageText kMassEraseFailed{"flash.mass-erase-failed", Severity::Warning,
                                              "Error in mass-erasing flash. Check the reset switch",
                                              base::captions::kInformation, Icon::Warning};
inline constexpr MessageText kIrqVectorFailed{
    "flash.irq-vector-failed", Severity::Warning,
    "Error in programming IRQ vector. Check the reset switch", base::captions::kInformation,
    Icon::Warning};
inline constexpr MessageText kLocationFailed{
    "flash.location-failed", Severity::Warning,
    "Error in programmingflash location. Check the reset switch", base::captions::kInformation,
    Icon::Warning};
inline constexpr MessageText kEraseFailed{"flash.erase-failed", Severity::Warning,
                                          "Error in erasing flash. Check the reset switch",
                                          base::captions::kInformation, Icon::Warning};
inline constexpr MessageText kProgramFailed{"flash.program-failed", Severity::Warning,
                                            "Error in programming flash. Check the reset switch",
                                            base::captions::kInformation, Icon::Warning};
inline constexpr MessageText kCancelled{
    "flash.cancelled", Severity::Warning,
    "Programming was cancelled: %ld of %ld bytes are programmed and verified.\n%s",
    base::captions::kForYourInformation, Icon::Warning};
inline constexpr MessageText kEndNotTold{
    "flash.end-not-told", Severity::Error,
    "The flash routine did not tell its end, and the target was reset: %ld of %ld bytes are "
    "programmed and verified.\n%s",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kNotBlank{"flash.not-blank", Severity::Warning,
                                       "Flash EEPROM not blank or an error found in programming",
                                       base::captions::kForYourInformation, Icon::Information};
inline constexpr MessageText kNotErased{
    "flash.not-erased", Severity::Error,
    "The erase was carried out, but these pages are not blank:\n\n%s\n"
    "The part may protect them, or the high voltage on IRQ may be missing.",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kProtectPageNotErased{
    "flash.protect-page-not-erased", Severity::Error,
    "The erase was carried out, but these pages are not blank:\n\n%s\n"
    "The page of the block protect register is erased by a mass erase only.",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kEraseNotSeen{
    "flash.erase-not-seen", Severity::Warning,
    "The erase routine has ended, but whether flash is blank could not be looked at: the target\n"
    "does not let its flash be read, or did not answer.",
    base::captions::kForYourInformation, Icon::Warning};
inline constexpr MessageText kTrimNotWritten{
    "flash.trim-not-written", Severity::Error,
    "The trim of the oscillator could not be written back. Please program %04x with %02x.",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kLineDamaged{
    "flash.line-damaged", Severity::Error,
    "The line damaged what was sent to %04x twice, and it was not used.\n"
    "%ld bytes are programmed and verified. Please check the cable.",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kCodeChanged{
    "flash.code-changed", Severity::Notice,
    "The security code of the part is now %s. It is remembered for the next start.",
    base::captions::kInformation, Icon::Information};
inline constexpr MessageText kCodeChangedNotKept{
    "flash.code-changed-not-kept", Severity::Warning,
    "The security code of the part is now %s.\n"
    "It could not be stored: please write it down, as the next start needs it.",
    base::captions::kForYourInformation, Icon::Warning};
inline constexpr MessageText kNotBlankBefore{
    "flash.not-blank-before",
    Severity::Warning,
    "Flash is not blank where the file goes: %04x holds %02x.\n\n"
    "A byte that is programmed over holds neither the old value nor the new one. Erase its page\n"
    "first; Flash image erases and programs just what differs.\n\n"
    "Program it all the same?",
    base::captions::kForYourInformation,
    Icon::Warning,
    base::Buttons::YesNo};
inline constexpr MessageText kIrqVectorUsed{
    "flash.irq-vector-used", Severity::Error,
    "The IRQ vector holds %04x and not FFFF, and nothing was done. Erase its page first.",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kLinkLostWhileProgramming{
    "flash.link-lost", Severity::Warning,
    "The target stopped answering while its flash was being programmed.\n\n"
    "%ld of %ld bytes are programmed and verified. The bytes from %04x on are in doubt.\n\n"
    "Check the cable and the power, press ReStart to connect again, erase the flash and program\n"
    "the file again: no byte may be programmed twice without an erase in between.",
    base::captions::kInformation, Icon::Warning};

// Of Flash image. Two of them end with how far it came.
inline constexpr MessageText kImageNotCompared{
    "flash.image-not-compared", Severity::Error,
    "Flash could not be compared with the image, and nothing was done: the target does not let "
    "its\n"
    "flash be read, or did not answer. A mass erase opens a part whose security code is not known.",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kImageInProtectPage{
    "flash.image-in-protect-page", Severity::Error,
    "The image differs in the page of the block protect register (%04x to %04x), which is erased "
    "by "
    "a\nmass erase only. Nothing was done.",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kKeptNotRead{"flash.kept-not-read", Severity::Error,
                                          "The line is too noisy to tell what stands at %04x, "
                                          "which shares a page with the image and would"
                                          "\nbe lost. Nothing was erased or programmed.",
                                          base::captions::kError, Icon::Error};
inline constexpr MessageText kImageWrong{"flash.image-wrong", Severity::Error,
                                         "Flash does not hold the image: %s.",
                                         base::captions::kError, Icon::Error};
inline constexpr MessageText kImageCancelled{"flash.image-cancelled", Severity::Warning,
                                             "Flash image was cancelled.\n%s",
                                             base::captions::kForYourInformation, Icon::Warning};
inline constexpr MessageText kImageLinkLost{
    "flash.image-link-lost", Severity::Warning,
    "The target stopped answering.\n%s\n\n"
    "Check the cable and the power, press ReStart to connect again, then flash the image again.",
    base::captions::kInformation, Icon::Warning};

inline constexpr const MessageText* kAll[] = {&kConfirmMassErase,
                                              &kConfirmErase,
                                              &kEndNotAboveStart,
                                              &kNotHexAddress,
                                              &kNotFlash,
                                              &kTrimAtStake,
                                              &kTrimReplaced,
                                              &kTrimKept,
                                              &kNotErased,
                                              &kProtectPageNotErased,
                                              &kEraseNotSeen,
                                              &kTrimNotWritten,
                                              &kLineDamaged,
                                              &kCodeChanged,
                                              &kCodeChangedNotKept,
                                              &kNotBlankBefore,
                                              &kIrqVectorUsed,
                                              &kNoData,
                                              &kBadData,
                                              &kProgramFileNotAccessible,
                                              &kProgramFileNotOpened,
                                              &kMassEraseFailed,
                                              &kIrqVectorFailed,
                                              &kLocationFailed,
                                              &kEraseFailed,
                                              &kProgramFailed,
                                              &kCancelled,
                                              &kEndNotTold,
                                              &kNotBlank,
                                              &kLinkLostWhileProgramming,
                                              &kImageNotCompared,
                                              &kImageInProtectPage,
                                              &kKeptNotRead,
                                              &kImageWrong,
                                              &kImageCancelled,
                                              &kImageLinkLost};

}  // namespace messages
}  // namespace brevant::flash
