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
                                               Buttons::YesNo};
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
inline constexpr MessageText kNotBlank{"flash.not-blank", Severity::Warning,
                                       "Flash EEPROM not blank or an error found in programming",
                                       base::captions::kForYourInformation, Icon::Information};
inline constexpr MessageText kLinkLostWhileProgramming{
    "flash.link-lost", Severity::Warning,
    "The target stopped answering while its flash was being programmed.\n\n"
    "%ld of %ld bytes are programmed and verified. The bytes from %04x on are in doubt.\n\n"
    "Check the cable and the power, press ReStart to connect again, erase the flash and program\n"
    "the file again: no byte may be programmed twice without an erase in between.",
    base::captions::kInformation, Icon::Warning};

inline constexpr const MessageText* kAll[] = {
    &kConfirmMassErase, &kConfirmErase,    &kEndNotAboveStart,         &kNotHexAddress,
    &kNoData,           &kBadData,         &kProgramFileNotAccessible, &kProgramFileNotOpened,
    &kMassEraseFailed,  &kIrqVectorFailed, &kLocationFailed,           &kEraseFailed,
    &kProgramFailed,    &kNotBlank,        &kLinkLostWhileProgramming};

}  // namespace messages
}  // namespace brevant::flash
