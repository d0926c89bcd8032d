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

inline constexpr base::MessageText kNoSoftwareBreakpoint{
    "breakpoint.no-software", base::Severity::Error,
    "The memory at %04x does not take the SWI of a software breakpoint.\n\n"
    "Flash and ROM need the hardware breakpoint.",
    base::captions::kError, base::Icon::Information};

inline constexpr const base::MessageText* kAll[] = {&kStackPointerNotSet, &kInstructionNotTaken,
                                                    &kLocationNotTaken, &kNoSoftwareBreakpoint};

// Shown below a field whose text was refused.
inline constexpr const char* kExpectInstruction =
    "Expected is one such as LDA #1f or BRSET 3,80,loop, with hexadecimal numbers.";
inline constexpr const char* kExpectAddress = "1 to 4 hexadecimal digits.";
inline constexpr const char* kBeyondAddressSpace =
    "%s is beyond FFFF, the last address of the target.";
inline constexpr const char* kExpectSymbol =
    "A symbol of the loaded program or a hexadecimal address.";
inline constexpr const char* kExpectHex = "Hexadecimal digits only.";
inline constexpr const char* kExpectBinary = "Only 0 and 1.";

}  // namespace brevant::views::messages
