// SPDX-License-Identifier: MIT
// MC68HC908GP32 data sheet: the chapters of its modules. A flag that the SPI or the SCI has set
// goes when its status register has been read and then its data register.
#include <array>

#include "devices/hc08.h"
#include "devices/register_groups.h"

namespace brevant::devices {
namespace {

using namespace groups;
using enum Access;

constexpr std::array kSpscr{Field{"SPTE", 3, 3, "the transmitter is empty"}};
constexpr std::array kScs1{
    Field{"SCTE", 7, 7, "the transmitter's buffer is empty"},
    Field{"TC", 6, 6, "everything has been sent"},
};
constexpr std::array kScbr{
    Field{"SCP", 5, 4, "divides by 1, 3, 4 or 13"},
    Field{"SCR", 2, 0, "divides by 1, 2, 4 to 128"},
};
constexpr std::array kConfig2Fields{
    Field{"OSCSTOPENB", 1, 1, "1: the oscillator goes on in stop mode"},
    Field{"SCIBDSRC", 0, 0, "baud rates from 1: bus clock, 0: crystal"},
};
constexpr std::array kPctl{
    Field{"PLLIE", 7, 7, "1: lock and its loss interrupt"},
    Field{"PLLF", 6, 6, "the lock has changed"},
    Field{"PLLON", 5, 5, "1: the PLL is on"},
    Field{"BCS", 4, 4, "bus clock from 1: PLL, 0: crystal"},
    Field{"PRE", 3, 2, "prescaler"},
    Field{"VPR", 1, 0, "range of the VCO"},
};
constexpr std::array kPbwc{
    Field{"AUTO", 7, 7, "1: bandwidth by itself"},
    Field{"LOCK", 6, 6, "in lock"},
    Field{"ACQ", 5, 5, "0: acquiring, 1: tracking"},
};
constexpr std::array kInt1{
    Field{"IF6", 7, 7, "TIM2-CH0"}, Field{"IF5", 6, 6, "TIM1-OVF"}, Field{"IF4", 5, 5, "TIM1-CH1"},
    Field{"IF3", 4, 4, "TIM1-CH0"}, Field{"IF2", 3, 3, "PLL"},      Field{"IF1", 2, 2, "IRQ"},
};
constexpr std::array kInt2{
    Field{"IF14", 7, 7, "KBI"},     Field{"IF13", 6, 6, "SCI-TX"},  Field{"IF12", 5, 5, "SCI-RX"},
    Field{"IF11", 4, 4, "SCI-ERR"}, Field{"IF10", 3, 3, "SPI-TX"},  Field{"IF9", 2, 2, "SPI-RX"},
    Field{"IF8", 1, 1, "TIM2-OVF"}, Field{"IF7", 0, 0, "TIM2-CH1"},
};
constexpr std::array kInt3{Field{"IF16", 1, 1, "TBM"}, Field{"IF15", 0, 0, "ADC"}};

constexpr std::string_view kTakesByte = "may take a received byte away from the program";

constexpr std::array kRows{
    Register{0x0000, "PTA", kPorts, "port A data", ReadWrite, {}, {}, notes::kPort},
    Register{0x0001, "PTB", kPorts, "port B data", ReadWrite, {}, {}, notes::kPort},
    Register{0x0002, "PTC", kPorts, "port C data", ReadWrite, {}, {}, notes::kPort},
    Register{0x0003, "PTD", kPorts, "port D data", ReadWrite, {}, {}, notes::kPort},
    Register{0x0004, "DDRA", kPorts, "port A direction, 1: output"},
    Register{0x0005, "DDRB", kPorts, "port B direction, 1: output"},
    Register{0x0006, "DDRC", kPorts, "port C direction, 1: output"},
    Register{0x0007, "DDRD", kPorts, "port D direction, 1: output"},
    Register{0x0008, "PTE", kPorts, "port E data", ReadWrite, {}, {}, notes::kPort},
    Register{0x000C, "DDRE", kPorts, "port E direction, 1: output"},
    Register{0x000D, "PTAPUE", kPorts, "port A pull-ups, 1: on"},
    Register{0x000E, "PTCPUE", kPorts, "port C pull-ups, 1: on"},
    Register{0x000F, "PTDPUE", kPorts, "port D pull-ups, 1: on"},
    Register{0x0010, "SPCR", kSpi, "control"},
    Register{0x0011, "SPSCR", kSpi, "status and control", ReadWrite, kSpscr},
    Register{0x0012, "SPDR", kSpi, "data", ReadWrite, {}, kTakesByte, "writing starts sending"},
    Register{0x0013, "SCC1", kSci, "control 1"},
    Register{0x0014, "SCC2", kSci, "control 2"},
    Register{0x0015, "SCC3", kSci, "control 3"},
    Register{0x0016, "SCS1", kSci, "status 1", ReadOnly, kScs1},
    Register{0x0017, "SCS2", kSci, "status 2", ReadOnly},
    Register{0x0018, "SCDR", kSci, "data", ReadWrite, {}, kTakesByte, "writing starts sending"},
    Register{0x0019, "SCBR", kSci, "baud rate: SCI clock / (64 * SCP * SCR)", ReadWrite, kScbr},
    Register{0x001A, "INTKBSCR", kKeyboard, "status and control"},
    Register{0x001B, "INTKBIER", kKeyboard, "interrupt enable"},
    Register{0x001C, "TBCR", kTimeBase, "control"},
    Register{0x001D, "INTSCR", kIrq, "status and control", ReadWrite, fields::kIntscr},
    Register{0x001E, "CONFIG2", kConfig, "configuration 2", WriteOnce, kConfig2Fields},
    Register{kConfig1, "CONFIG1", kConfig, "configuration 1", WriteOnce, fields::kConfig1},
    Register{0x0020,
             "T1SC",
             kTimer1,
             "status and control",
             ReadWrite,
             fields::kTimerControl,
             {},
             notes::kOverflow},
    Register{0x0021,
             "T1CNTH",
             kTimer1,
             "counter, high byte",
             ReadOnly,
             {},
             "holds T1CNTL until that is read"},
    Register{0x0022, "T1CNTL", kTimer1, "counter, low byte", ReadOnly},
    Register{0x0023, "T1MODH", kTimer1, "modulo, high byte", ReadWrite, {}, {}, notes::kModulo},
    Register{0x0024, "T1MODL", kTimer1, "modulo, low byte"},
    Register{0x0025,
             "T1SC0",
             kTimer1,
             "channel 0 status and control",
             ReadWrite,
             fields::kTimerChannel,
             {},
             notes::kChannel},
    Register{0x0026, "T1CH0H", kTimer1, "channel 0, high byte", ReadWrite, {}, {}, notes::kCompare},
    Register{0x0027, "T1CH0L", kTimer1, "channel 0, low byte"},
    Register{0x0028,
             "T1SC1",
             kTimer1,
             "channel 1 status and control",
             ReadWrite,
             fields::kTimerChannel,
             {},
             notes::kChannel},
    Register{0x0029, "T1CH1H", kTimer1, "channel 1, high byte", ReadWrite, {}, {}, notes::kCompare},
    Register{0x002A, "T1CH1L", kTimer1, "channel 1, low byte"},
    Register{0x002B,
             "T2SC",
             kTimer2,
             "status and control",
             ReadWrite,
             fields::kTimerControl,
             {},
             notes::kOverflow},
    Register{0x002C,
             "T2CNTH",
             kTimer2,
             "counter, high byte",
             ReadOnly,
             {},
             "holds T2CNTL until that is read"},
    Register{0x002D, "T2CNTL", kTimer2, "counter, low byte", ReadOnly},
    Register{0x002E, "T2MODH", kTimer2, "modulo, high byte", ReadWrite, {}, {}, notes::kModulo},
    Register{0x002F, "T2MODL", kTimer2, "modulo, low byte"},
    Register{0x0030,
             "T2SC0",
             kTimer2,
             "channel 0 status and control",
             ReadWrite,
             fields::kTimerChannel,
             {},
             notes::kChannel},
    Register{0x0031, "T2CH0H", kTimer2, "channel 0, high byte", ReadWrite, {}, {}, notes::kCompare},
    Register{0x0032, "T2CH0L", kTimer2, "channel 0, low byte"},
    Register{0x0033,
             "T2SC1",
             kTimer2,
             "channel 1 status and control",
             ReadWrite,
             fields::kTimerChannel,
             {},
             notes::kChannel},
    Register{0x0034, "T2CH1H", kTimer2, "channel 1, high byte", ReadWrite, {}, {}, notes::kCompare},
    Register{0x0035, "T2CH1L", kTimer2, "channel 1, low byte"},
    Register{0x0036, "PCTL", kPll, "control", ReadWrite, kPctl, "clears PLLF"},
    Register{0x0037, "PBWC", kPll, "bandwidth control", ReadWrite, kPbwc},
    Register{0x0038, "PMSH", kPll, "multiplier, high byte"},
    Register{0x0039, "PMSL", kPll, "multiplier, low byte"},
    Register{0x003A, "PMRS", kPll, "range of the VCO"},
    Register{0x003B, "PMDS", kPll, "reference divider"},
    Register{0x003C,
             "ADSCR",
             kAdc,
             "status and control",
             ReadWrite,
             fields::kAdscr,
             {},
             notes::kConversion},
    Register{0x003D, "ADR", kAdc, "result", ReadOnly, {}, "clears COCO"},
    Register{0x003E, "ADCLK", kAdc, "clock"},
    Register{0xFE00, "SBSR", kBreak, "break status", ReadWrite, fields::kBreakStatus},
    Register{kResetStatus, "SRSR", kSim, "why it was reset last", ReadOnly, fields::kResetStatus,
             "clears the causes of the last reset"},
    Register{0xFE02, "SUBAR", kBreak, "upper byte of the address"},
    Register{0xFE03, "SBFCR", kBreak, "flag control", ReadWrite, fields::kBreakFlags},
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

std::span<const Register> Gp32Registers() {
  return kRows;
}

}  // namespace brevant::devices
