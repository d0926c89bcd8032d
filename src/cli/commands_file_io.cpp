// SPDX-License-Identifier: MIT
// Numbers of files in and out of the program.
#include <fmt/format.h>

#include "cli/command_table.h"
#include "cli/session.h"
#include "cli/stop_results.h"

namespace brevant::cli {
namespace {

using control::FileSide;

Result ShowBindings(Session& session) {
  Result result;
  for (const FileSide side : control::kFileSides) {
    const control::FileBinding& binding = session.debugger().file_io.binding(side);
    if (!binding.enabled) continue;
    const char* const word = control::RowOf(side).word;
    result.text += fmt::format("{} {:04x} {}\n", word, binding.address, binding.file_name);
    result.fields[word] = {{"address", fmt::format("{:04x}", binding.address)},
                           {"file", binding.file_name}};
  }
  return result;
}

Result Bind(Session& session, FileSide side, base::Address address, const std::string& file) {
  control::FileIo& file_io = session.debugger().file_io;
  auto form = file_io.OpenForm(side, address);
  if (!form) return {};
  form->binding.enabled = true;
  form->binding.file_name = file;
  if (!file_io.Commit(*form)) return {};
  if (const std::string note = form->Note(); !note.empty()) session.ui().Notice(note);
  return {};
}

Result Start(Session& session) {
  control::FileIo& file_io = session.debugger().file_io;
  // Why is told already.
  if (!file_io.Start()) return {};
  if (const auto suspended = file_io.suspended()) {
    session.ui().Notice(fmt::format(
        "The breakpoint at {:04x} does not count during file I/O: there is one hardware "
        "breakpoint.",
        *suspended));
  }
  Result result = AwaitStop(session, [&file_io] { return file_io.numbers(); });
  const long read = file_io.numbers_read(), written = file_io.numbers_written();
  result.text = fmt::format("read {} numbers, wrote {}\n", read, written) + result.text;
  result.fields["read"] = read;
  result.fields["written"] = written;
  return result;
}

Result FileIo(Session& session, const ParsedArguments& arguments) {
  if (!arguments.Has(0)) return ShowBindings(session);
  const std::string& what = arguments.Text(0);
  const bool binds = what == "in" || what == "out";
  if (binds != arguments.Has(2) || binds != arguments.Has(1)) {
    return UsageError("usage: fileio [in ADDR FILE|out ADDR FILE|off|start]");
  }
  if (binds) {
    const FileSide side = what == "in" ? FileSide::Input : FileSide::Output;
    return Bind(session, side, arguments.Number(1), arguments.Text(2));
  }
  if (what == "start") return Start(session);
  for (const FileSide side : control::kFileSides) session.debugger().file_io.Disable(side);
  return {};
}

constexpr Command kRows[] = {
    {"fileio",
     {Optional(Word("in|out|off|start")), Optional(Address("ADDR")), Optional(File("FILE"))},
     kStopped,
     FileIo,
     "bind number files to the slots of a program, and run it with them"},
};

}  // namespace

std::span<const Command> FileIoCommands() {
  return kRows;
}

}  // namespace brevant::cli
