// SPDX-License-Identifier: MIT
// What loading and macros tell the user: one row a message.
#pragma once

#include "base/message_text.h"

namespace brevant::load {

using base::MessageText;
using base::ToMessage;

namespace messages {

using base::Buttons;
using base::Icon;
using base::Severity;

// Loading.
inline constexpr MessageText kFileNotFound{"load.file-not-found", Severity::Error,
                                           "File %s is not found", base::captions::kError,
                                           Icon::Error};
inline constexpr MessageText kUseImageFormat{"load.use-image-format", Severity::Error,
                                             "Use only S19 or HEX format", base::captions::kError,
                                             Icon::Error};
inline constexpr MessageText kImageNotReadable{"load.image-not-readable", Severity::Error,
                                               "Can not open file %s\n%s", base::captions::kError,
                                               Icon::Error};
inline constexpr MessageText kBeyondAddressSpace{
    "load.beyond-address-space", Severity::Warning,
    "%ld bytes of\n%s\nlie above address FFFF and were written at the low 16 bits of their\n"
    "addresses. Please check that the file was made for this target.",
    base::captions::kForYourInformation, Icon::Warning};
inline constexpr MessageText kNotInFlash{
    "load.not-in-flash", Severity::Notice,
    "%04x holds %02x and not the image's %02x: %ld of %ld bytes in flash differ.\n"
    "Loading writes RAM only; flash has to be programmed.",
    base::captions::kForYourInformation, Icon::Information};
inline constexpr MessageText kFlashNotSeen{
    "load.flash-not-seen", Severity::Warning,
    "Whether flash holds what the image has for it could not be looked at: the target did not\n"
    "accept the security code.",
    base::captions::kForYourInformation, Icon::Warning};
inline constexpr MessageText kLineDamaged{
    "load.line-damaged", Severity::Error,
    "The line damaged what was sent to %04x, or read from there, twice: the load is in doubt.\n"
    "Please check the cable and load again.",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kWillNotWork{"load.will-not-work", Severity::Warning,
                                          "%s will not work as it is:\n%s",
                                          base::captions::kForYourInformation, Icon::Warning};
inline constexpr MessageText kRamDiffers{
    "load.ram-differs", Severity::Error,
    "%04x holds %02x and not the image's %02x, which was written there.\n"
    "Please check that the configured device is the one on the board.",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kStackMoved{
    "load.stack-moved", Severity::Notice,
    "SP was moved to %04x: the monitor works on the stack, which lay where the image goes.",
    base::captions::kInformation, Icon::Information};
inline constexpr MessageText kNoRoomForStack{
    "load.no-room", Severity::Error,
    "%s was not loaded: the monitor works on the stack, %04x to %04x, and the image leaves no room "
    "for it elsewhere in RAM.",
    base::captions::kError, Icon::Error};
inline constexpr MessageText kLinkLostWhileLoading{
    "load.link-lost", Severity::Warning,
    "The target does not answer: %s is not or not completely loaded.\n"
    "Check the cable and the power, press ReStart to connect again, then load the file again.",
    base::captions::kInformation, Icon::Warning};
inline constexpr MessageText kOfferToolChain{
    "load.offer-tool-chain",
    Severity::Notice,
    "The file beside the image comes from another tool chain than the configured one:\n%s\n\n"
    "Configure the debugger for %s and read it?",
    base::captions::kForYourInformation,
    Icon::Question,
    Buttons::YesNo};

// Macros.
inline constexpr MessageText kMacroNotFound{"macro.not-found", Severity::Error,
                                            "Macro file not found. Please check the configure\n"
                                            "menu to make sure the file selected is correct",
                                            base::captions::kError, Icon::Error};
inline constexpr MessageText kMacroCancelled{
    "macro.cancelled", Severity::Warning,
    "%s was cancelled before its end. What it has done so far stays.", base::captions::kInformation,
    Icon::Warning};
inline constexpr MessageText kMacroNotReadable{"macro.not-readable", Severity::Error,
                                               "   Can not open %s file", base::captions::kError,
                                               Icon::Error};

inline constexpr const MessageText* kAll[] = {
    &kFileNotFound,         &kUseImageFormat, &kImageNotReadable, &kBeyondAddressSpace,
    &kNotInFlash,           &kFlashNotSeen,   &kLineDamaged,      &kRamDiffers,
    &kLinkLostWhileLoading, &kWillNotWork,    &kStackMoved,       &kNoRoomForStack,
    &kOfferToolChain,       &kMacroNotFound,  &kMacroCancelled,   &kMacroNotReadable};

}  // namespace messages
}  // namespace brevant::load
