// SPDX-License-Identifier: MIT
#include "gui/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <vector>

namespace brevant::gui {
namespace {

constexpr int kUsageError = 2;

struct QtOption {
  std::string_view name;
  bool has_value;
};
// As QApplication and its desktop platforms know them, behind one hyphen or two.
constexpr QtOption kQtOptions[] = {
    {"style", true},
    {"stylesheet", true},
    {"platform", true},
    {"platformtheme", true},
    {"platformpluginpath", true},
    {"plugin", true},
    {"qwindowgeometry", true},
    {"qwindowicon", true},
    {"qwindowtitle", true},
    {"geometry", true},
    {"display", true},
    {"session", true},
    {"reverse", false},
    {"widgetcount", false},
};

const QtOption* FindQtOption(std::string_view argument) {
  if (!argument.starts_with('-')) return nullptr;
  argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
  const auto* const found =
      std::ranges::find(kQtOptions, argument.substr(0, argument.find('=')), &QtOption::name);
  return found == std::end(kQtOptions) ? nullptr : found;
}

// From the last to the first, as the parser takes them.
std::vector<std::string> WithoutQtOptions(int argc, const char* const* argv) {
  std::vector<std::string> own;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument(argv[i]);
    if (const QtOption* const option = FindQtOption(argument)) {
      if (option->has_value && argument.find('=') == std::string_view::npos) ++i;
    } else {
      own.insert(own.begin(), std::string(argument));
    }
  }
  return own;
}

}  // namespace

ParsedOptions ParseOptions(int argc, const char* const* argv, const std::string& version) {
  ParsedOptions parsed;
  Options& options = parsed.options;
  options.version = version;
  CLI::App app("Debugs a MC68HC908 microcontroller through its ROM monitor.", "brevant");
  app.add_option(
         "-p,--port", options.port,
         "COM1..COM4, a serial device, tcp://HOST:PORT, rfc2217://HOST:PORT, sim, or replay:FILE")
      ->type_name("NAME");
  bool simulate = false;
  app.add_flag("--simulate", simulate, "the simulated target behind COM1, as --port sim")
      ->excludes("--port");
  app.add_flag("--connect", options.connect, "connect at once, without the connect dialog");
  app.add_option("--record", options.record.file,
                 "write all that passes the wire to a file; the security code's bytes are hidden")
      ->type_name("FILE");
  bool record_security = false;
  app.add_flag("--record-security", record_security, "show the security code in that file")
      ->needs("--record");
  app.add_option("--settings", options.settings, "settings file")
      ->type_name("FILE")
      ->capture_default_str();
  app.add_option("IMAGE", options.image, "S-record or Intel HEX file to load");
  app.set_version_flag("--version", "brevant " + version);
  try {
    std::vector<std::string> own = WithoutQtOptions(argc, argv);
    app.parse(std::move(own));
  } catch (const CLI::ParseError& error) {
    parsed.leave_with = app.exit(error) == 0 ? 0 : kUsageError;
  }
  if (record_security) options.record.secrets = link::Secrets::Show;
  if (simulate) options.port = "sim";
  return parsed;
}

}  // namespace brevant::gui
