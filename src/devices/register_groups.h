// SPDX-License-Identifier: MIT
// What the tables of registers have in common: the groups, and the fields of modules that are the
// same in both devices.
#pragma once

#include <array>

#include "devices/registers.h"

namespace brevant::devices {

namespace groups {
inline constexpr std::string_view kPorts = "Ports", kKeyboard = "Keyboard", kIrq = "IRQ",
                                  kConfig = "CONFIG", kTimer = "Timer", kTimer1 = "Timer 1",
                                  kTimer2 = "Timer 2", kTimeBase = "Time base", kSci = "SCI",
                                  kSpi = "SPI", kAdc = "ADC", kPll = "PLL",
                                  kOscillator = "Oscillator", kSim = "SIM", kFlash = "FLASH",
                                  kBreak = "Break module", kLvi = "LVI";
}  // namespace groups

namespace fields {

inline constexpr std::array kIntscr{
    Field{"IRQF", 3, 3, "an edge on IRQ waits"},
    Field{"ACK", 2, 2, "write 1: forget it; reads 0"},
    Field{"IMASK", 1, 1, "1: no interrupt"},
    Field{"MODE", 0, 0, "1: edges and levels, 0: edges"},
};
inline constexpr std::array kConfig1{
    Field{"COPRS", 7, 7, "COP time-out, 1: short"},
    Field{"LVISTOP", 6, 6, "1: LVI goes on in stop mode"},
    Field{"LVIRSTD", 5, 5, "1: LVI does not reset"},
    Field{"LVIPWRD", 4, 4, "1: LVI is off"},
    Field{"LVI5OR3", 3, 3, "1: LVI for 5 V, 0: for 3 V"},
    Field{"SSREC", 2, 2, "1: short recovery from stop mode"},
    Field{"STOP", 1, 1, "1: STOP is an instruction, 0: it resets"},
    Field{"COPD", 0, 0, "1: COP is off"},
};
inline constexpr std::array kTimerControl{
    Field{"TOF", 7, 7, "the counter has overflown"},
    Field{"TOIE", 6, 6, "1: an overflow interrupts"},
    Field{"TSTOP", 5, 5, "1: the counter stands still"},
    Field{"TRST", 4, 4, "write 1: counter to 0; reads 0"},
    Field{"PS", 2, 0, "counts bus clock / 1, 2, 4 to 64; 7: the external pin"},
};
inline constexpr std::array kTimerChannel{
    Field{"CHF", 7, 7, "a capture or compare has come"},
    Field{"CHIE", 6, 6, "1: it interrupts"},
    Field{"MSB", 5, 5, "mode: buffered"},
    Field{"MSA", 4, 4, "mode: compare"},
    Field{"ELSB", 3, 3, "edge or level"},
    Field{"ELSA", 2, 2, "edge or level"},
    Field{"TOV", 1, 1, "1: the pin toggles on overflow"},
    Field{"CHMAX", 0, 0, "1: duty of 100 %"},
};
// What the bits select besides the end of a conversion is the input.
inline constexpr std::array kAdscr{
    Field{"COCO", 7, 7, "the conversion is complete"},
    Field{"ADCH", 4, 0, "input; 1f: none"},
};

inline constexpr std::array kBreakStatus{
    Field{"SBSW", 1, 1, "the break has ended WAIT or STOP; write 0 to clear"}};
inline constexpr std::array kResetStatus{
    Field{"POR", 7, 7, "power on"},
    Field{"PIN", 6, 6, "reset pin"},
    Field{"COP", 5, 5, "COP time-out"},
    Field{"ILOP", 4, 4, "illegal opcode"},
    Field{"ILAD", 3, 3, "illegal address"},
    Field{"MODRST", 2, 2, "entry to the monitor, blank vector"},
    Field{"LVI", 1, 1, "low voltage"},
};
inline constexpr std::array kBreakFlags{
    Field{"BCFE", 7, 7, "1: flags can be cleared in the break state"}};
inline constexpr std::array kFlashControl{
    Field{"HVEN", 3, 3, "high voltage is on"},
    Field{"MASS", 2, 2, "1: erases all of it"},
    Field{"ERASE", 1, 1, "1: erases"},
    Field{"PGM", 0, 0, "1: programs"},
};
inline constexpr std::array kBreakControl{
    Field{"BRKE", 7, 7, "1: breaks at the address"},
    Field{"BRKA", 6, 6, "a break has come; write 1: break now, 0: clear"},
};
inline constexpr std::array kLowVoltage{Field{"LVIOUT", 7, 7, "the voltage is low"}};

}  // namespace fields

namespace notes {
inline constexpr std::string_view kPort = "an input reads its pin, whatever is written";
inline constexpr std::string_view kConversion = "writing starts a conversion";
inline constexpr std::string_view kOverflow =
    "TOF goes when 0 is written to it after it was read as 1";
inline constexpr std::string_view kChannel =
    "CHF goes when 0 is written to it after it was read as 1";
inline constexpr std::string_view kModulo = "it takes effect when the low byte is written";
inline constexpr std::string_view kCompare = "no compare until the low byte is written";
inline constexpr std::string_view kFlash =
    "a bit takes effect in the order of a flash operation only";
inline constexpr std::string_view kBreak = "the debugger sets it for breakpoints and steps";
}  // namespace notes

}  // namespace brevant::devices
