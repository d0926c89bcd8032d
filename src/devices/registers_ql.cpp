// SPDX-License-Identifier: MIT
// MC68HC908QL4 data sheet. The registers of the serial LIN controller ($0040 to $004F) are not
// known, nor whether reading changes one of them.
#include <array>

#include "devices/hc08.h"
#include "devices/register_groups.h"

namespace brevant::devices {
namespace {

using namespace groups;
using enum Access;

constexpr std::array kConfig2Fields{
    Field{"IRQPUD", 7, 7, "1: no pull-up at IRQ"},
    Field{"IRQEN", 6, 6, "1: the pin is IRQ"},
    Field{"OSCOPT", 4, 3, "which oscillator"},
    Field{"RSTEN", 0, 0, "1: the pin is RST"},
};
constexpr std::array kBrkar{Field{"BDCOP", 0, 0, "1: no COP in the break state"}};
constexpr std::array kInt1{
    Field{"IF5", 6, 6, "TIM-OVF"},
    Field{"IF4", 5, 5, "TIM-CH1"},
    Field{"IF3", 4, 4, "TIM-CH0"},
    Field{"IF1", 2, 2, "IRQ"},
};
constexpr std::array kInt2{Field{"IF14", 7, 7, "KBI"}};
constexpr std::array kInt3{Field{"IF15", 0, 0, "ADC"}};

constexpr std::array kRows{
    Register{0x0000, "PTA", kPorts, "port A data", ReadWrite, {}, {}, notes::kPort},
    Register{0x0001, "PTB", kPorts, "port B data", ReadWrite, {}, {}, notes::kPort},
    Register{0x0004, "DDRA", kPorts, "port A direction, 1: output"},
    Register{0x0005, "DDRB", kPorts, "port B direction, 1: output"},
    Register{0x000B, "PTAPUE", kPorts, "port A pull-ups, 1: on"},
    Register{0x000C, "PTBPUE", kPorts, "port B pull-ups, 1: on"},
    Register{0x001A, "KBSCR", kKeyboard, "status and control"},
    Register{0x001B, "KBIER", kKeyboard, "interrupt enable"},
    Register{0x001D, "INTSCR", kIrq, "status and control", ReadWrite, fields::kIntscr},
    Register{0x001E, "CONFIG2", kConfig, "configuration 2", WriteOnce, kConfig2Fields},
    Register{kConfig1, "CONFIG1", kConfig, "configuration 1", WriteOnce, fields::kConfig1},
    Register{0x0020,
             "TSC",
             kTimer,
             "status and control",
             ReadWrite,
             fields::kTimerControl,
             {},
             notes::kOverflow},
    Register{0x0021,
             "TCNTH",
             kTimer,
             "counter, high byte",
             ReadOnly,
             {},
             "holds TCNTL until that is read"},
    Register{0x0022, "TCNTL", kTimer, "counter, low byte", ReadOnly},
    Register{0x0023, "TMODH", kTimer, "modulo, high byte", ReadWrite, {}, {}, notes::kModulo},
    Register{0x0024, "TMODL", kTimer, "modulo, low byte"},
    Register{0x0025,
             "TSC0",
             kTimer,
             "channel 0 status and control",
             ReadWrite,
             fields::kTimerChannel,
             {},
             notes::kChannel},
    Register{0x0026, "TCH0H", kTimer, "channel 0, high byte", ReadWrite, {}, {}, notes::kCompare},
    Register{0x0027, "TCH0L", kTimer, "channel 0, low byte"},
    Register{0x0028,
             "TSC1",
             kTimer,
             "channel 1 status and control",
             ReadWrite,
             fields::kTimerChannel,
             {},
             notes::kChannel},
    Register{0x0029, "TCH1H", kTimer, "channel 1, high byte", ReadWrite, {}, {}, notes::kCompare},
    Register{0x002A, "TCH1L", kTimer, "channel 1, low byte"},
    Register{0x0036, "OSCSTAT", kOscillator, "status"},
    Register{0x0038, "OSCTRIM", kOscillator, "trim"},
    Register{0x003C,
             "ADSCR",
             kAdc,
             "status and control",
             ReadWrite,
             fields::kAdscr,
             {},
             notes::kConversion},
    Register{
        0x003D, "ADRH", kAdc, "result, high byte", ReadOnly, {}, "holds ADRL until that is read"},
    Register{0x003E, "ADRL", kAdc, "result, low byte", ReadOnly, {}, "clears COCO"},
    Register{0x003F, "ADICLK", kAdc, "clock"},
    Register{0xFE00, "BSR", kBreak, "break status", ReadWrite, fields::kBreakStatus},
    Register{kResetStatus, "SRSR", kSim, "why it was reset last", ReadOnly, fields::kResetStatus,
             "clears the causes of the last reset"},
    Register{0xFE02, "BRKAR", kBreak, "auxiliary", ReadWrite, kBrkar},
    Register{0xFE03, "BFCR", kBreak, "flag control", ReadWrite, fields::kBreakFlags},
    Register{0xFE04, "INT1", kSim, "interrupts that wait", ReadOnly, kInt1},
    Register{0xFE05, "INT2", kSim, "interrupts that wait", ReadOnly, kInt2},
    Register{0xFE06, "INT3", kSim, "interrupts that wait", ReadOnly, kInt3},
    Register{
        0xFE08, "FLCR", kFlash, "control", ReadWrite, fields::kFlashControl, {}, notes::kFlash},
    Register{kBRKH, "BRKH", kBreak, "break address, high byte", ReadWrite, {}, {}, notes::kBreak},
    Register{kBRKL, "BRKL", kBreak, "break address, low byte", ReadWrite, {}, {}, notes::kBreak},
    Register{kBRKSCR,
             "BRKSCR",
             kBreak,
             "status and control",
             ReadWrite,
             fields::kBreakControl,
             {},
             notes::kBreak},
    Register{0xFE0C, "LVISR", kLvi, "status", ReadOnly, fields::kLowVoltage},
};

}  // namespace

std::span<const Register> QlRegisters() {
  return kRows;
}

}  // namespace brevant::devices
