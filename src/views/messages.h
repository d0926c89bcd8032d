// SPDX-License-Identifier: MIT
// What the views tell the user.
#pragma once

#include "base/message_text.h"

namespace brevant::views::messages {

inline constexpr base::MessageText kStackPointerNotSet{
    "edit.stack-pointer-not-set", base::Severity::Error,
    "The target did not take the new stack pointer.\n"
    "It is set by a few instructions that run from $0080; \"Reset\" starts afresh.",
    base::captions::kError, base::Icon::Warning};

inline constexpr base::MessageText kInstructionNotTaken{
    "edit.instruction-not-taken", base::Severity::Warning,
    "The memory at %06lx did not take the instruction.\n\n"
    "RAM can be edited; flash changes only by erasing and programming, ROM never.",
    base::captions::kInformation, base::Icon::Information};

inline constexpr base::MessageText kLocationNotTaken{
    "edit.location-not-taken", base::Severity::Warning,
    "The byte at %04x reads %02x, not the %02x that was written.\n\n"
    "RAM can be edited; flash changes only by erasing and programming, ROM never, and registers "
    "have bits of their own.",
    base::captions::kInformation, base::Icon::Information};

inline constexpr base::MessageText kRegisterRemark{"edit.register-remark", base::Severity::Notice,
                                                   "%s.", base::captions::kInformation,
                                                   base::Icon::Information};

inline constexpr base::MessageText kNoSoftwareBreakpoint{
    "breakpoint.no-software", base::Severity::Error,
    "The memory at %04x does not take the SWI of a software breakpoint.\n\n"
    "Flash and ROM need the hardware breakpoint.",
    base::captions::kError, base::Icon::Information};

inline constexpr base::MessageText kSourceTextNotFound{
    "source.text-not-found", base::Severity::Notice, "String \"%s\" not found",
    base::captions::kInformation, base::Icon::Information};

// In place of the source, or in the status bar beside it.
inline constexpr const char* kSourceNotFound = "%s was not found. It was looked for in";
inline constexpr const char* kSourceFindIt =
    "Press Enter or double-click here to show where it is.";
inline constexpr const char* kSourceNotRead = "%s cannot be read: %s.";
inline constexpr const char* kSourceNewer =
    "%s is newer than %s: its lines may not be those that were compiled";
inline constexpr const char* kNoSourceLines =
    "No source lines are known: load a program with its debug information.";
inline constexpr const char* kNoCodeInLine = "%s made no code";
inline constexpr const char* kNoLineAtPc = "No source line is known for PC %04x.";
inline constexpr const char* kNoLineThere = "No source line begins at %04x.";
inline constexpr const char* kOtherFound = "%s comes before it: that has more of the name %s.";
inline constexpr const char* kOtherName = "%s is not called %s: choose the file of that name.";

// In place of the stack.
inline constexpr const char* kStackNotRam =
    "SP is %04x, which is not in RAM: there is no stack to show.";
inline constexpr const char* kStackBelowCode = "SP is %04x: %s begins above it, and no stack.";
inline constexpr const char* kStackAtEnd =
    "SP is %04x, the last byte of RAM: nothing is stacked above it.";

// In place of a value, or of its place in the status bar.
inline constexpr const char* kNotAnswering = "the target does not answer";
inline constexpr const char* kNotReadYet = "not read yet";
inline constexpr const char* kEndsBeyondMemory = "it ends beyond FFFF";
inline constexpr const char* kReadOnRequestOnly =
    "%s not read yet: reading it %s, so only Refresh (Ctrl+F5) does";
inline constexpr const char* kLineDamagesReading = "the line damages what is read there";
inline constexpr const char* kNoBytesOfItsOwn = "it has no bytes of its own in memory";
inline constexpr const char* kNoBytesShown = "no byte of it is shown";

// Watched variables.
inline constexpr base::MessageText kWatchFull{"watch.full", base::Severity::Error,
                                              "Can not add any more", base::captions::kError,
                                              base::Icon::Error};
inline constexpr base::MessageText kWatchNotEdited{"watch.not-edited", base::Severity::Error,
                                                   "%s cannot be edited: %s.",
                                                   base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kWatchNotLookedAt{
    "watch.not-looked-at", base::Severity::Error,
    "What %s holds now could not be looked at: %s.\n\nCheck the cable and the power.",
    base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kWatchNotSaved{"watch.not-saved", base::Severity::Error,
                                                  "%s\ncannot be written: the list was not saved.",
                                                  base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kWatchNotLoaded{"watch.not-loaded", base::Severity::Error, "%s",
                                                   base::captions::kError, base::Icon::Error};

// Blocks. The conversion that ends them, or begins kBlockLinkLost, says how far it got.
inline constexpr base::MessageText kBlockRefused{"block.refused", base::Severity::Error,
                                                 "Nothing was written: %s.", base::captions::kError,
                                                 base::Icon::Error};
inline constexpr base::MessageText kBlockStackMoved{
    "block.stack-moved", base::Severity::Notice,
    "SP was moved to %04x: the monitor works on the stack, which lay in the block.",
    base::captions::kInformation, base::Icon::Information};
inline constexpr base::MessageText kBlockDone{"block.done", base::Severity::Notice, "%s",
                                              base::captions::kInformation,
                                              base::Icon::Information};
inline constexpr base::MessageText kBlockNotTaken{
    "block.not-taken", base::Severity::Error,
    "%04x holds %02x and not %02x: the RAM did not take it; check that the configured device is "
    "the one on the board.\n\n%s",
    base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kBlockLineDamaged{
    "block.line-damaged", base::Severity::Error,
    "The line damaged what was sent to %04x, or read from there, each time: what %04x to %04x hold "
    "is in doubt. Check the cable, then do it again.\n\n%s",
    base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kBlockLinkLost{
    "block.link-lost", base::Severity::Error,
    "The target does not answer any more.\n\n%s What %04x to %04x hold could not be looked at; "
    "nothing was written behind them.\n\nCheck the cable and the power, then connect again.",
    base::captions::kError, base::Icon::Error};
inline constexpr base::MessageText kBlockCancelled{
    "block.cancelled", base::Severity::Warning, "Cancelled before its end.\n\n%s",
    base::captions::kInformation, base::Icon::Warning};
inline constexpr base::MessageText kBlockEnded{
    "block.ended", base::Severity::Warning,
    "Something else has taken the target before the end of the block.\n\n%s",
    base::captions::kInformation, base::Icon::Warning};

inline constexpr const base::MessageText* kAll[] = {
    &kStackPointerNotSet, &kInstructionNotTaken,  &kLocationNotTaken,
    &kRegisterRemark,     &kNoSoftwareBreakpoint, &kSourceTextNotFound,
    &kBlockRefused,       &kBlockStackMoved,      &kBlockDone,
    &kBlockNotTaken,      &kBlockLineDamaged,     &kBlockLinkLost,
    &kBlockCancelled,     &kBlockEnded,           &kWatchFull,
    &kWatchNotEdited,     &kWatchNotLookedAt,     &kWatchNotSaved,
    &kWatchNotLoaded};

// Shown below a field whose text was refused.
inline constexpr const char* kExpectInstruction =
    "Expected is one such as LDA #1f or BRSET 3,80,loop, with hexadecimal numbers.";
inline constexpr const char* kExpectAddress = "1 to 4 hexadecimal digits.";
inline constexpr const char* kBeyondAddressSpace =
    "%s is beyond FFFF, the last address of the target.";
inline constexpr const char* kExpectSymbol =
    "A symbol of the loaded program or a hexadecimal address.";
inline constexpr const char* kExpectDigits = "Hexadecimal digits and nothing else, at least one.";
inline constexpr const char* kDoesNotFit = "The block does not fit: it would end beyond FFFF.";
inline constexpr const char* kFlashNotReadable =
    "Flash cannot be read: the target did not accept the security code.";
inline constexpr const char* kFileDoesNotFit =
    "The file of %ld bytes does not fit: it would end beyond FFFF.";
inline constexpr const char* kExpectTabSize = "A digit: 1 to 8.";
inline constexpr const char* kExpectLine = "A line of the file: 1 to %d.";
inline constexpr const char* kNoSuchName =
    "%s is neither a name nor an expression of the program: give an address.";
inline constexpr const char* kExpectLength = "How many bytes are shown: hexadecimal digits.";
inline constexpr const char* kNoAtInNames =
    "\"@\" cannot stand in a name: the configuration file ends the name with it.";
inline constexpr const char* kNameTooLong =
    "This is longer than the %d characters that can be kept.";
inline constexpr const char* kExpectByteDigits = "One or two hexadecimal digits.";
inline constexpr const char* kExpectHex = "Hexadecimal digits only.";
inline constexpr const char* kOneByteEach =
    "Each character is written as one byte: this text has others.";
inline constexpr const char* kExpectBinary = "Only 0 and 1.";

}  // namespace brevant::views::messages
