// SPDX-License-Identifier: MIT
#include "gui/options.h"

#include <CLI/CLI.hpp>

namespace brevant::gui {
namespace {

constexpr int kUsageError = 2;

}  // namespace

ParsedOptions ParseOptions(int argc, const char* const* argv, const std::string& version) {
  ParsedOptions parsed;
  Options& options = parsed.options;
  options.version = version;
  CLI::App app("Debugs a MC68HC908 microcontroller through its ROM monitor.", "brevant");
  app.add_option("-p,--port", options.port, "COM1..COM4, a serial device, or sim")
      ->type_name("NAME");
  bool simulate = false;
  app.add_flag("--simulate", simulate, "the simulated target behind COM1, as --port sim")
      ->excludes("--port");
  app.add_flag("--connect", options.connect, "connect at once, without the connect dialog");
  app.add_option("--settings", options.settings, "settings file")
      ->type_name("FILE")
      ->capture_default_str();
  app.add_option("IMAGE", options.image, "S-record or Intel HEX file to load");
  app.set_version_flag("--version", "brevant " + version);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    parsed.leave_with = app.exit(error) == 0 ? 0 : kUsageError;
  }
  if (simulate) options.port = "sim";
  return parsed;
}

}  // namespace brevant::gui
