// SPDX-License-Identifier: MIT
#include "cli/options.h"

#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/command_table.h"
#include "cli/exit_status.h"
#include "cli/say.h"
#include "devices/device.h"
#include "images/image_file.h"
#include "link/port_map.h"
#include "link/security_code.h"
#include "load/image_check.h"
#include "simulator/fault_text.h"

namespace brevant::cli {
namespace {

constexpr double kShortestTimeout = 0.01;
constexpr double kLongestTimeout = 86400;
constexpr std::string_view kReplay = "replay";

std::string Footer() {
  return "Each COMMAND is one command line; they run in order, and the first failure ends the "
         "program. Without commands and -x there is a prompt. \"replay FILE\" in front of them "
         "plays "
         "a recording back.\nCommands:\n" +
         CommandSummary() +
         "Exit status: 0 all went well, 1 a command failed, 2 usage, 3 file or format, 4 port,\n"
         "5 no answer or time-out, 6 security, 7 verify found a difference, 8 refused for want of "
         "--yes,\n130 interrupted by Ctrl-C.";
}

std::vector<std::string> DeviceOptions() {
  std::vector<std::string> names;
  for (const devices::Device& device : devices::All()) names.emplace_back(device.option);
  return names;
}

// Not a comparison is true of a NaN, which strtod takes.
std::string CheckTimeout(const std::string& text) {
  const double seconds = std::strtod(text.c_str(), nullptr);
  if (seconds >= kShortestTimeout && seconds <= kLongestTimeout) return {};
  return fmt::format("\"{}\" is no time-out: seconds from {} to {}", text, kShortestTimeout,
                     kLongestTimeout);
}

std::string CheckFault(const std::string& text) {
  if (simulator::ParseFault(text)) return {};
  return fmt::format("\"{}\" is no fault: flip-reply@120:3 inverts bit 3 of the answer to byte 120",
                     text);
}

std::string CheckSecurity(const std::string& text) {
  if (text.starts_with('@') || (text.size() == 16 && link::ParseSecurityCode(text))) return {};
  return "the security code is 16 hexadecimal digits, e.g. C3C3C3C3C3C3C3C3, or @IMAGE";
}

// The digits, or those that an image makes of the part that it is programmed into.
std::optional<link::SecurityCode> SecurityOf(const std::string& text) {
  if (!text.starts_with('@')) return link::ParseSecurityCode(text);
  const std::string path = text.substr(1);
  const images::ImageFile file = images::ReadImageFile(path);
  const auto code = load::SecurityCodeIn(file.ToImage());
  if (!code) {
    Say("-s: no security code from {}: {}\n", path,
        file.report.ok() ? "it holds nothing from FFF6 to FFFD" : file.report.file_error);
  }
  return code;
}

// "replay FILE" in front of the commands stands for -p replay:FILE. False when that makes no sense;
// it has been said why.
bool TakeReplay(Options& options) {
  if (options.commands.empty() || options.commands.front() != kReplay) return true;
  if (options.commands.size() < 2 || !options.target.port.empty()) {
    Say("replay: name a recording, and no port: replay FILE [COMMAND]...\n");
    return false;
  }
  options.target.port = std::string(link::kReplayScheme) + options.commands[1];
  options.commands.erase(options.commands.begin(), options.commands.begin() + 2);
  return true;
}

}  // namespace

ParsedOptions ParseOptions(int argc, const char* const* argv, const std::string& version) {
  ParsedOptions parsed;
  Options& options = parsed.options;
  options.version = version;
  CLI::App app("Debugs a MC68HC908 microcontroller through its ROM monitor.", "brevant-cli");
  app.footer(Footer());
  std::string security;
  std::string device;
  std::string pace;
  const std::map<std::string, simulator::Pace> paces{{"instant", simulator::Pace::Instant},
                                                     {"bus", simulator::Pace::Bus},
                                                     {"wire", simulator::Pace::Wire}};
  app.add_option(
         "-p,--port", options.target.port,
         "COM1..COM4, a serial device, tcp://HOST:PORT, rfc2217://HOST:PORT, sim, or replay:FILE")
      ->type_name("NAME");
  const std::vector<std::string> devices = DeviceOptions();
  app.add_option("-d,--device", device, fmt::format("{}", fmt::join(devices, " or ")))
      ->check(CLI::IsMember(devices));
  app.add_option("-s,--security", security, "security code, or the image that was programmed")
      ->type_name("16HEX|@IMAGE")
      ->check(CLI::Validator(CheckSecurity, "", "security"));
  app.add_flag("--no-security", options.target.no_security, "send no security code");
  app.add_option("--settings", options.settings, "settings file")
      ->type_name("FILE")
      ->capture_default_str();
  app.add_option("--pace", pace, "of the simulated target: instant, bus or wire")
      ->check(CLI::IsMember({"instant", "bus", "wire"}));
  app.add_option("--timeout", options.timeout_seconds, "for each wait")
      ->type_name("SECONDS")
      ->check(CLI::Validator(CheckTimeout, "", "timeout"))
      ->capture_default_str();
  app.add_option("--fault", options.faults,
                 "of the simulated target's line: KIND@BYTE[:BIT], BYTE counted over what is sent, "
                 "KIND one of " +
                     simulator::FaultNames())
      ->type_name("FAULT")
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->check(CLI::Validator(CheckFault, "", "fault"));
  app.add_option("--record", options.record.file,
                 "write all that passes the wire to a file; the security code's bytes are hidden")
      ->type_name("FILE");
  bool record_security = false;
  app.add_flag("--record-security", record_security, "show the security code in that file")
      ->needs("--record");
  app.add_flag("--demo", options.demo, "put the demo program into the simulated target's flash");
  const auto* const json = app.add_flag("--json", options.json, "one JSON object a command");
  app.add_flag("-q,--quiet", options.quiet, "no notices, errors only");
  app.add_flag("--yes", options.yes, "answer every question with yes");
  app.add_option("-x", options.files, "run the commands of a file, - for standard input")
      ->type_name("FILE")
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("COMMAND", options.commands, "command lines to run");
  app.set_version_flag("--version", "brevant-cli " + version);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const int status = app.exit(error);
    if (status != 0 && json->count() > 0) {
      const nlohmann::ordered_json object{{"ok", false},
                                          {"command", "options"},
                                          {"error", error.what()},
                                          {"status", static_cast<int>(ExitStatus::Usage)}};
      std::puts(object.dump().c_str());
    }
    parsed.leave_with = status == 0 ? 0 : static_cast<int>(ExitStatus::Usage);
    return parsed;
  }
  if (!security.empty()) {
    options.target.security = SecurityOf(security);
    if (!options.target.security) parsed.leave_with = static_cast<int>(ExitStatus::File);
  }
  if (const devices::Device* row = devices::ByOption(device)) {
    options.target.device = row->settings_number;
  }
  if (record_security) options.record.secrets = link::Secrets::Show;
  if (!TakeReplay(options)) parsed.leave_with = static_cast<int>(ExitStatus::Usage);
  if (!pace.empty()) options.pace = paces.at(pace);
  return parsed;
}

}  // namespace brevant::cli
