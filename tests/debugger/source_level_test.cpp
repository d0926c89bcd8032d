// SPDX-License-Identifier: MIT
// What is told of C programs where they stop, and where steps by lines lead, against what C says:
// the lists beside the projects under tests/programs/projects (see there how they came about).
#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "control/program_context.h"
#include "debugger/bench.h"
#include "eval/evaluate.h"
#include "eval/format.h"
#include "frames/call_stack.h"
#include "frames/source_line.h"
#include "symbols/places.h"

namespace brevant::debugger {
namespace {

const std::string kProjects = std::string(BREVANT_TEST_DATA) + "/programs/projects/";

using Fields = std::vector<std::string>;

std::vector<Fields> ReadRows(const std::string& path) {
  std::vector<Fields> rows;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    Fields fields(1);
    for (const char c : line) {
      if (c == '\t') {
        fields.emplace_back();
      } else {
        fields.back() += c;
      }
    }
    fields.resize(6);
    rows.push_back(std::move(fields));
  }
  EXPECT_FALSE(rows.empty()) << path;
  return rows;
}

class SourceLevel : public testing::TestWithParam<const char*> {
 protected:
  SourceLevel() : folder_(kProjects + GetParam() + "/") {
    bench_.settings.Override(base::keys::kCompiler, "32");
    bench_.PutFlash(folder_ + GetParam() + ".s19");
    EXPECT_EQ(debugger_.Start(), link::ConnectResult::Connected);
    EXPECT_EQ(debugger_.LoadSymbols(folder_ + GetParam() + ".cdb"), "");
  }

  // From reset to the place, when it is reached for the n-th time.
  bool RunTo(const std::string& place, int arrival) {
    debugger_.breakpoints.Clear();
    debugger_.Reset();
    const auto address = symbols::FindPlace(place, debugger_.debug_info).address;
    if (!address) return false;
    debugger_.breakpoints.AddBreakpoint(*address);
    for (int n = 0; n < arrival; ++n) {
      debugger_.run_control.Go();
      if (!bench_.Settle() || debugger_.frame.PC != *address) return false;
    }
    return true;
  }

  // The same code in several functions has one breakpoint only, so its arrivals cannot be counted.
  bool HasCopies(const std::string& place) {
    const auto named = symbols::FindPlace(place, debugger_.debug_info);
    return !named.note.empty();
  }

  std::string Stack() {
    const auto stack = frames::FindCallStack(debugger_.memory, debugger_.debug_info,
                                             debugger_.frame.PC, debugger_.frame.ProgramSP(), 20);
    std::string text;
    for (const frames::Frame& frame : stack.frames) {
      text += (text.empty() ? "" : " < ") + frames::FunctionName(frame, debugger_.debug_info) +
              " at " + LineName(frame.call);
    }
    return text;
  }

  std::string LineName(base::Address address) {
    const auto line = frames::LineAt(address, debugger_.debug_info);
    return line ? symbols::LineName(*line, debugger_.debug_info.LineTable) : "?";
  }

  // Empty where it is not available.
  std::string ValueOf(const std::string& expression) {
    const eval::Context context = control::ContextOf(debugger_.memory, debugger_.debug_info,
                                                     debugger_.frame, eval::Reading::Everything);
    const eval::Result result = eval::Evaluate(expression, context);
    if (!result.ok()) return result.problem;
    const eval::Value value = eval::Loaded(result.value, context);
    return value.unavailable.empty() ? eval::ValueText(value, context) : std::string();
  }

  std::string folder_;
  Bench bench_;
  Debugger& debugger_ = bench_.debugger;
};

// "main.c:20" of "sum at main.c:20 < main at main.c:7", and what is left without it.
std::string InnermostLine(const std::string& stack) {
  const std::size_t from = stack.find(" at ") + 4;
  return stack.substr(from, stack.find(' ', from) - from);
}
std::string WithoutLine(const std::string& stack) {
  std::string rest = stack;
  return rest.erase(stack.find(InnermostLine(stack)), InnermostLine(stack).size());
}

// What a debug file says wrongly at a place and nobody can see from it.
bool IsStale(const Fields& fact) {
  return fact[5].find("keeps the first value") != std::string::npos;
}

// A null pointer is told as 0x0000. A pointer to a text or a function is told with its address
// before it.
bool IsSame(const std::string& shown, const std::string& expected) {
  if (shown == expected) return true;
  if (shown.starts_with("0x0000") && expected == "0") return true;
  return shown.starts_with("0x") &&
         (shown.ends_with(" " + expected) || shown.ends_with(" <" + expected + ">"));
}

TEST_P(SourceLevel, TellsAtEveryStopWhatCSays) {
  std::map<std::pair<std::string, int>, std::vector<Fields>> stops;
  for (Fields& row : ReadRows(folder_ + "stops.tsv")) {
    stops[{row[0], std::stoi(row[1])}].push_back(std::move(row));
  }
  int told = 0, unavailable = 0;
  for (const auto& [stop, facts] : stops) {
    if (HasCopies(stop.first)) continue;
    ASSERT_TRUE(RunTo(stop.first, stop.second)) << stop.first << ' ' << stop.second;
    for (const Fields& fact : facts) {
      SCOPED_TRACE(fact[0] + " " + fact[1] + " " + fact[3]);
      if (fact[2] == "stack") {
        const std::string stack = Stack();
        EXPECT_EQ(WithoutLine(stack), WithoutLine(fact[4]));
        // Two lines can begin at one address: the later one is shown.
        const auto expected = symbols::FindPlace(InnermostLine(fact[4]), debugger_.debug_info);
        EXPECT_EQ(debugger_.frame.PC, expected.address) << fact[4];
        continue;
      }
      if (IsStale(fact)) continue;
      const std::string shown = ValueOf(fact[3]);
      if (shown.empty()) {
        EXPECT_NE(fact[5], "") << "is not available";
        ++unavailable;
      } else {
        EXPECT_TRUE(IsSame(shown, fact[4])) << shown << " is shown for " << fact[4];
        ++told;
      }
    }
  }
  EXPECT_GT(told, 2 * unavailable);
}

TEST_P(SourceLevel, StepsByLinesAsCSays) {
  const std::map<std::string, control::LineStepKind> kinds{{"into", control::LineStepKind::Into},
                                                           {"over", control::LineStepKind::Over},
                                                           {"out", control::LineStepKind::Out}};
  for (const Fields& row : ReadRows(folder_ + "lines.tsv")) {
    SCOPED_TRACE(row[0] + " " + row[1] + " " + row[2]);
    if (HasCopies(row[0])) continue;
    ASSERT_TRUE(RunTo(row[0], std::stoi(row[1])));
    debugger_.breakpoints.Clear();
    EXPECT_EQ(debugger_.line_step.Start(kinds.at(row[2])), "");
    EXPECT_TRUE(bench_.Settle());
    EXPECT_EQ(debugger_.run_control.last_stop()->reason, base::StopReason::StepDone);
    const std::string place = LineName(debugger_.frame.PC);
    EXPECT_TRUE(place == row[3] || (" " + row[4] + " ").find(place) != std::string::npos)
        << place << " instead of " << row[3];
    EXPECT_LT(debugger_.line_step.moves(), 40) << "a loop was stepped";
  }
}

INSTANTIATE_TEST_SUITE_P(Projects, SourceLevel, testing::Values("folders", "stackauto", "lines"),
                         [](const auto& project) { return std::string(project.param); });

}  // namespace
}  // namespace brevant::debugger
