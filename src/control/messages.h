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

inline constexpr const MessageText* kAll[] = {&kBreakpointLimit,   &kHardwareBreakpointLimit,
                                              &kStopNotAnswered,   &kStackPointerLost,
                                              &kBadStack,          &kNotStarted,
                                              &kMcuReset,          &kLinkLost,
                                              &kTraceLogNotWritten};

}  // namespace messages

// What the user should know of a stop that did not go well; nothing when it did.
std::optional<base::Message> StopMessage(const base::Stop& stop);

inline constexpr int kMaxHardwareBreakpoints = 1;

// Why another breakpoint is refused; nothing while there is room. Asked by whoever adds one.
std::optional<base::Message> BreakpointLimit(const BreakpointTable& table);

}  // namespace brevant::control
