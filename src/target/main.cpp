// SPDX-License-Identifier: MIT
// brevant-target: options, start and end of the simulated board as a process.
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigset_t, sigprocmask
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "images/image_file.h"
#include "simulator/demo_firmware.h"
#include "simulator/fault_text.h"
#include "target/board_server.h"
#include "target/firmware.h"
#include "target/pseudo_terminal.h"

namespace {

namespace fs = std::filesystem;
namespace images = brevant::images;
using brevant::simulator::Board;

enum ExitStatus { kOk = 0, kUsage = 2, kFile = 3, kPort = 4 };

struct Options {
  std::string pace = "wire";
  std::string device = "gp32";
  std::string flash;
  bool demo = false;
  std::vector<std::string> faults;
  std::string link;
};

void AddOptions(CLI::App& app, Options& options) {
  app.set_version_flag("--version", std::string("brevant-target ") + BREVANT_VERSION);
  app.add_option("--pace", options.pace,
                 "wire: CPU and bytes take their real time; bus: bytes are instant")
      ->check(CLI::IsMember({"bus", "wire"}))
      ->capture_default_str();
  app.add_option("-d,--device", options.device, "MC68HC908GP32 or MC68HC908QL")
      ->check(CLI::IsMember({"gp32", "ql"}))
      ->capture_default_str();
  CLI::Option* flash =
      app.add_option("--flash", options.flash, "S-record file that is in the flash at power-up");
  app.add_flag("--demo", options.demo, "the demo program is in the flash at power-up")
      ->excludes(flash);
  app.add_option("--fault", options.faults,
                 "KIND@BYTE[:BIT]: what the line does at that byte from the host; KIND is one of " +
                     brevant::simulator::FaultNames())
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--link", options.link, "symbolic link to make to the device, removed at the end");
}

bool LoadRecords(const images::ImageFile& file, const std::string& name, Board& board) {
  const std::string error = brevant::target::WhatIsWrong(file);
  if (!error.empty()) {
    std::cerr << "brevant-target: " << name << ": " << error << '\n';
    return false;
  }
  for (const images::ImageRecord& record : file.records) board.Load(record.address, record.bytes);
  return true;
}

bool FillFlash(const Options& options, Board& board) {
  if (options.demo) {
    const std::string_view text = brevant::simulator::DemoFirmware();
    return LoadRecords(images::ParseSRecords(text), "demo program", board);
  }
  if (options.flash.empty()) return true;
  return LoadRecords(images::ReadImageFile(options.flash, images::ParseSRecords), options.flash,
                     board);
}

// A symbolic link to the device for as long as the object lives. An older link is replaced;
// anything else of that name stays and is an error.
class DeviceLink {
 public:
  DeviceLink() = default;
  DeviceLink(const DeviceLink&) = delete;
  DeviceLink& operator=(const DeviceLink&) = delete;
  ~DeviceLink() {
    std::error_code error;
    if (!path_.empty() && fs::read_symlink(path_, error) == device_) fs::remove(path_, error);
  }
  bool Make(const std::string& path, const std::string& device) {
    std::error_code error;
    if (fs::is_symlink(path, error)) fs::remove(path, error);
    fs::create_symlink(device, path, error);
    if (error) {
      std::cerr << "brevant-target: " << path << ": " << error.message() << '\n';
      return false;
    }
    path_ = path;
    device_ = device;
    return true;
  }

 private:
  std::string path_;
  std::string device_;
};

// Becomes readable at SIGINT and SIGTERM, which then do nothing else.
int StopDescriptor() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  if (sigprocmask(SIG_BLOCK, &signals, nullptr) != 0) return -1;
  return signalfd(-1, &signals, SFD_CLOEXEC);
}

int Run(const Options& options) {
  using brevant::simulator::kCyclesPerBit;
  Board board(options.device == "ql" ? brevant::simulator::Ql() : brevant::simulator::Gp32(),
              options.pace == "bus" ? 0 : kCyclesPerBit);
  if (!FillFlash(options, board)) return kFile;
  brevant::simulator::FaultPlan faults;
  for (const std::string& text : options.faults) {
    const auto fault = brevant::simulator::ParseFault(text);
    if (!fault) {
      std::cerr << "brevant-target: \"" << text << "\" is no fault, as flip-reply@120:3 is one\n";
      return kUsage;
    }
    faults.push_back(*fault);
  }
  board.SetFaultPlan(faults);

  const int stop = StopDescriptor();
  brevant::target::PseudoTerminal terminal;
  if (stop < 0 || !terminal.Open()) {
    std::cerr << "brevant-target: " << terminal.error() << '\n';
    return kPort;
  }
  DeviceLink link;
  if (!options.link.empty() && !link.Make(options.link, terminal.name())) return kFile;
  std::cout << terminal.name() << std::endl;
  std::cerr << board.device().name << " at " << options.pace << " pace; Ctrl+C ends it\n";

  // Wake-ups to the microsecond, as far as the machine can.
  prctl(PR_SET_TIMERSLACK, 1000UL, 0UL, 0UL, 0UL);
  brevant::target::BoardServer(board, terminal).Serve(stop);
  close(stop);
  return kOk;
}

}  // namespace

int main(int argc, char** argv) try {
  CLI::App app(
      "The simulated board as a serial device: a pseudo-terminal that speaks the protocol of an "
      "MC68HC908's ROM monitor.\nIts name is the first line on standard output.",
      "brevant-target");
  Options options;
  AddOptions(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kOk : kUsage;
  }
  return Run(options);
} catch (const std::exception& error) {
  std::fprintf(stderr, "brevant-target: %s\n", error.what());
  return 1;
}
