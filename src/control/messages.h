// SPDX-License-Identifier: MIT
// What run control tells the user.
#pragma once

#include <optional>

#include "base/message_text.h"
#include "base/stop.h"
#include "control/breakpoint_table.h"

namespace brevant::control {

using base::MessageText;
using base::ToMessage;

namespace messages {

inline constexpr MessageText kBreakpointLimit{"breakpoint.limit", base::Severity::Error,
                                              "You can setup only %d breakpoints\n",
                                              base::captions::kError, base::Icon::Information};
inline constexpr MessageText kHardwareBreakpointLimit{
    "breakpoint.hardware-limit", base::Severity::Error,
    "You can setup only 1 breakpoints\nwhen debugging code in flash", base::captions::kError,
    base::Icon::Information};
inline constexpr MessageText kStopNotAnswered{
    "run.stop-not-answered", base::Severity::Warning,
    "The target does not answer the break signal and keeps running.\n"
    "A program can be stopped only while it has interrupts enabled (CLI) and its IRQ vector at\n"
    "$FFFA points to $FE27. The vector can be set with \"Program IRQ vector\".\n"
    "\"Reset\" stops the program in any case.",
    base::captions::kInformation, base::Icon::Information};
inline constexpr MessageText kStopNotSent{
    "run.stop-not-sent", base::Severity::Warning,
    "The break signal could not be sent, and nothing says that the target has stopped.\n\n%s",
    base::captions::kInformation, base::Icon::Information};
inline constexpr MessageText kStackPointerLost{
    "run.stack-pointer-lost", base::Severity::Error,
    "The target has stopped, but its stack pointer could not be restored.\n"
    "The registers shown may be wrong. \"Reset\" starts afresh.",
    base::captions::kError, base::Icon::Warning};
inline constexpr MessageText kBadStack{
    "run.bad-stack", base::Severity::Error,
    "The program's stack pointer is not in RAM, so that its registers could not be saved and\n"
    "nothing can be stepped. \"Reset\" starts afresh. Programs of SDCC need --stack-loc at the\n"
    "compilation of the module with main.",
    base::captions::kError, base::Icon::Warning};
inline constexpr MessageText kNotStarted{
    "run.not-started", base::Severity::Error,
    "The program was not started: %s.\nThe break mode is chosen in the configuration.",
    base::captions::kError, base::Icon::Information};
inline constexpr MessageText kMcuReset{
    "run.mcu-reset", base::Severity::Warning,
    "The MCU has reset itself: %s.\nIt has been entered again, and RAM is as it was.",
    base::captions::kInformation, base::Icon::Warning};
inline constexpr MessageText kLinkLost{
    "run.link-lost", base::Severity::Error,
    "The connection to the target is lost. Check the cable and the target's power;\n"
    "\"ReStart\" connects again.",
    base::captions::kError, base::Icon::Warning};
inline constexpr MessageText kTraceLogNotWritten{"trace.log-not-written", base::Severity::Error,
                                                 "Can not write the trace log %s\n%s",
                                                 base::captions::kError, base::Icon::Warning};

inline constexpr MessageText kFileIoNoInputSlot{
    "fileio.no-input-slot", base::Severity::Error,
    "Use LDD EXT instruction only\n\n"
    "An input slot begins with FC, on the HC08 JMP ,X. At %04x stands %02x.",
    base::captions::kError, base::Icon::Information};
inline constexpr MessageText kFileIoNoOutputSlot{
    "fileio.no-output-slot", base::Severity::Error,
    "Use STD EXT instruction only\n\n"
    "An output slot begins with 7C, on the HC08 INC ,X. At %04x stands %02x.",
    base::captions::kError, base::Icon::Information};
inline constexpr MessageText kFileIoCanNotOpen{"fileio.can-not-open", base::Severity::Error,
                                               "   Can not open file %s   ", base::captions::kError,
                                               base::Icon::Information};
inline constexpr MessageText kFileIoNameTooLong{
    "fileio.name-too-long", base::Severity::Error,
    "The name is longer than %d characters:\n%s\nUse a shorter one, or a folder nearer to where "
    "Brevant was started.",
    base::captions::kError, base::Icon::Information};
inline constexpr MessageText kFileIoNothingBound{"fileio.nothing-bound", base::Severity::Error,
                                                 "Please setup input or output file first",
                                                 base::captions::kError, base::Icon::Information};
inline constexpr MessageText kFileIoSlotChanged{
    "fileio.slot-changed", base::Severity::Error,
    "File I/O was not started: at the %s slot %04x stand %s, no longer %s.\n"
    "Choose the slot anew for the program that is loaded now.",
    base::captions::kError, base::Icon::Information};
inline constexpr MessageText kFileIoSlotOnStack{
    "fileio.slot-on-stack", base::Severity::Error,
    "File I/O was not started: the %s slot %04x lies in the stack that the monitor uses now.",
    base::captions::kError, base::Icon::Information};
inline constexpr MessageText kFileIoInsideSlot{"fileio.inside-slot", base::Severity::Error,
                                               "File I/O was not started: PC stands on the second "
                                               "byte of the %s slot %04x. Step on, or set PC.",
                                               base::captions::kError, base::Icon::Information};
inline constexpr MessageText kFileIoOneFile{
    "fileio.one-file", base::Severity::Error,
    "File I/O was not started: %s\nis the input and the output file at once.",
    base::captions::kError, base::Icon::Information};
inline constexpr MessageText kFileIoOverlap{
    "fileio.overlap", base::Severity::Error,
    "File I/O was not started: the slots at %04x and %04x overlap. A slot is two bytes long.",
    base::captions::kError, base::Icon::Information};
inline constexpr MessageText kFileIoBothInFlash{
    "fileio.both-in-flash", base::Severity::Error,
    "File I/O was not started: the slots at %04x and %04x both lie in flash, and there is one\n"
    "hardware breakpoint. Put one of them into RAM, or use one of the two files only.",
    base::captions::kError, base::Icon::Information};
inline constexpr MessageText kFileIoNotOpened{
    "fileio.not-opened", base::Severity::Error,
    "File I/O was not started: the %s file %s\ncannot be opened: %s", base::captions::kError,
    base::Icon::Warning};
inline constexpr MessageText kFileIoSlotNotTaken{
    "fileio.slot-not-taken", base::Severity::Error,
    "File I/O was not started: %04x did not take %02x, there stands %02x.", base::captions::kError,
    base::Icon::Warning};
inline constexpr MessageText kFileIoInputAtEnd{
    "fileio.input-at-end", base::Severity::Notice,
    "The input file is at its end: %s. The program was stopped at its input slot %04x.",
    base::captions::kInformation, base::Icon::Information};
inline constexpr MessageText kFileIoNoNumber{
    "fileio.no-number", base::Severity::Error,
    "%s, line %d: expected %s.\nThe program was stopped at its input slot: %s.",
    base::captions::kError, base::Icon::Warning};
inline constexpr MessageText kFileIoNotWritten{
    "fileio.not-written", base::Severity::Error,
    "The output file %s\ncannot be written: %s. File I/O has ended: %s.", base::captions::kError,
    base::Icon::Warning};
inline constexpr MessageText kFileIoDamaged{
    "fileio.damaged", base::Severity::Error,
    "File I/O has ended: the line damaged what was read or written at %04x each time, so that the\n"
    "program's registers, and the last of %s, are in doubt. Check the cable, then reset the "
    "target.",
    base::captions::kError, base::Icon::Warning};
inline constexpr MessageText kFileIoNotPutBack{
    "fileio.not-put-back", base::Severity::Warning,
    "The target does not answer: what the program had in the slots of file I/O could not be put "
    "back:%s\nIt is put back once there is a connection again, unless the memory has changed by "
    "then.",
    base::captions::kInformation, base::Icon::Warning};
inline constexpr MessageText kFileIoSlotOverwritten{
    "fileio.slot-overwritten", base::Severity::Warning,
    "The slot at %04x was left as it is: %s stand there. Before file I/O it held %s.",
    base::captions::kInformation, base::Icon::Warning};

inline constexpr const MessageText* kAll[] = {&kBreakpointLimit,
                                              &kHardwareBreakpointLimit,
                                              &kStopNotAnswered,
                                              &kStopNotSent,
                                              &kStackPointerLost,
                                              &kBadStack,
                                              &kNotStarted,
                                              &kMcuReset,
                                              &kLinkLost,
                                              &kTraceLogNotWritten,
                                              &kFileIoNoInputSlot,
                                              &kFileIoNoOutputSlot,
                                              &kFileIoCanNotOpen,
                                              &kFileIoNameTooLong,
                                              &kFileIoNothingBound,
                                              &kFileIoSlotChanged,
                                              &kFileIoSlotOnStack,
                                              &kFileIoInsideSlot,
                                              &kFileIoOneFile,
                                              &kFileIoOverlap,
                                              &kFileIoBothInFlash,
                                              &kFileIoNotOpened,
                                              &kFileIoSlotNotTaken,
                                              &kFileIoInputAtEnd,
                                              &kFileIoNoNumber,
                                              &kFileIoNotWritten,
                                              &kFileIoDamaged,
                                              &kFileIoNotPutBack,
                                              &kFileIoSlotOverwritten};

}  // namespace messages

// What the user should know of a stop that did not go well; nothing when it did.
std::optional<base::Message> StopMessage(const base::Stop& stop);

inline constexpr int kMaxHardwareBreakpoints = 1;

// Why another breakpoint is refused; nothing while there is room. Asked by whoever adds one.
std::optional<base::Message> BreakpointLimit(const BreakpointTable& table);

}  // namespace brevant::control
