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

inline constexpr const char* kError = "Error Message";
inline constexpr const char* kInformation = "Information";
inline constexpr const char* kForYourInformation = "For your information";

// Questions and refusals.
inline constexpr MessageText kConfirmMassErase{"Do you really want to mass erase flash EEPROM",
                                               kInformation, Icon::Question, Buttons::YesNo};
inline constexpr MessageText kConfirmErase{"It is going to erase flash EEPROM, please confirm.",
                                           kForYourInformation, Icon::Question, Buttons::OkCancel};
inline constexpr MessageText kEndNotAboveStart{"End address must be greater than start address",
                                               kForYourInformation, Icon::Information,
                                               Buttons::OkCancel};
inline constexpr MessageText kNotHexAddress{"Not a correct HEX address", kInformation,
                                            Icon::Information};
inline constexpr MessageText kNoData{"No data to program", kInformation, Icon::Information};
inline constexpr MessageText kBadData{
    "The string should be maximum of two HEX digits seperated by a space", kInformation,
    Icon::Information};
inline constexpr MessageText kProgramFileNotAccessible{"Can not access the file you select", kError,
                                                       Icon::Error};
inline constexpr MessageText kProgramFileNotOpened{"Can not open file %s", kError, Icon::Error};

// What went wrong on the target.
inline constexpr MessageText kMassEraseFailed{"Error in mass-erasing flash. Check the reset switch",
                                              kInformation, Icon::Warning};
inline constexpr MessageText kIrqVectorFailed{
    "Error in programming IRQ vector. Check the reset switch", kInformation, Icon::Warning};
inline constexpr MessageText kLocationFailed{
    "Error in programmingflash location. Check the reset switch", kInformation, Icon::Warning};
inline constexpr MessageText kEraseFailed{"Error in erasing flash. Check the reset switch",
                                          kInformation, Icon::Warning};
inline constexpr MessageText kProgramFailed{"Error in programming flash. Check the reset switch",
                                            kInformation, Icon::Warning};
inline constexpr MessageText kNotBlank{"Flash EEPROM not blank or an error found in programming",
                                       kForYourInformation, Icon::Information};
inline constexpr MessageText kLinkLostWhileProgramming{
    "The target stopped answering while its flash was being programmed.\n\n"
    "%ld of %ld bytes are programmed and verified. The bytes from %04x on are in doubt.\n\n"
    "Check the cable and the power, press ReStart to connect again, erase the flash and program\n"
    "the file again: no byte may be programmed twice without an erase in between.",
    kInformation, Icon::Warning};

}  // namespace messages
}  // namespace brevant::flash
