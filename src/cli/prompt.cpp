// SPDX-License-Identifier: MIT
#include "cli/prompt.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <langinfo.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <filesystem>
#include <utility>

#include "cli/completion.h"
#include "cli/interrupt.h"
#include "cli/say.h"

namespace brevant::cli {
namespace {

constexpr int kHistoryLines = 1000;
constexpr int kIdleMs = 100;
constexpr const char* kEraseLine = "\r\033[K";

// The keys that terminals send for what the editor leaves unbound.
constexpr const char* kBindings[][2] = {
    {"^I", "brevant-complete"},   {"^R", "em-inc-search-prev"}, {"\\e[3~", "ed-delete-next-char"},
    {"\\e[1~", "ed-move-to-beg"}, {"\\e[4~", "ed-move-to-end"}, {"\\e[H", "ed-move-to-beg"},
    {"\\e[F", "ed-move-to-end"},
};

std::string HistoryFile() {
  std::filesystem::path folder;
  if (const char* state = std::getenv("XDG_STATE_HOME"); state != nullptr && *state != '\0') {
    folder = state;
  } else if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
    folder = std::filesystem::path(home) / ".local" / "state";
  } else {
    return {};
  }
  folder /= "brevant";
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  return error ? std::string() : (folder / "history").string();
}

// File names and symbols are UTF-8 whatever the environment says.
void UseUtf8() {
  if (std::setlocale(LC_CTYPE, "") != nullptr && std::string(nl_langinfo(CODESET)) == "UTF-8") {
    return;
  }
  std::setlocale(LC_CTYPE, "C.UTF-8");
}

char* PromptText(EditLine*) {
  static char text[] = "brevant> ";
  return text;
}

unsigned char CompleteWord(EditLine* editor, int) {
  const LineInfo* line = el_line(editor);
  const Completion completion = Complete({line->buffer, line->cursor});
  if (!completion.insert.empty()) {
    return el_insertstr(editor, completion.insert.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
  }
  if (completion.candidates.empty()) return CC_ERROR;
  std::puts(fmt::format("\n{}", fmt::join(completion.candidates, " ")).c_str());
  return CC_REDISPLAY;
}

bool Readable(int timeout_ms) {
  pollfd input{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
  return poll(&input, 1, timeout_ms) > 0;
}

}  // namespace

Prompt::Prompt(std::function<std::optional<std::string>()> idle)
    : idle_(std::move(idle)),
      history_file_(HistoryFile()),
      history_(history_init(), history_end),
      editor_(nullptr, el_end) {
  UseUtf8();
  editor_.reset(el_init("brevant", stdin, stdout, stderr));
  HistEvent event;
  history(history_.get(), &event, H_SETSIZE, kHistoryLines);
  history(history_.get(), &event, H_SETUNIQUE, 1);
  if (!history_file_.empty()) history(history_.get(), &event, H_LOAD, history_file_.c_str());
  EditLine* const editor = editor_.get();
  el_set(editor, EL_PROMPT, PromptText);
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_HIST, history, history_.get());
  el_set(editor, EL_CLIENTDATA, this);
  el_set(editor, EL_GETCFN, NextCharacter);
  el_set(editor, EL_ADDFN, "brevant-complete", "complete a name", CompleteWord);
  for (const auto& [key, function] : kBindings) {
    el_set(editor, EL_BIND, key, function, static_cast<const char*>(nullptr));
  }
  el_source(editor, nullptr);
}

Prompt::~Prompt() {
  if (history_file_.empty()) return;
  // libedit writes line by line; whoever is killed meanwhile must not lose what was there.
  const std::string temporary = history_file_ + ".new";
  HistEvent event;
  std::error_code error;
  if (history(history_.get(), &event, H_SAVE, temporary.c_str()) >= 0) {
    std::filesystem::rename(temporary, history_file_, error);
  }
}

Prompt::Typed Prompt::ReadLine() {
  int count = 0;
  const char* typed = el_gets(editor_.get(), &count);
  if (typed == nullptr || count <= 0) {
    std::puts("");
    return {Interrupted() ? End::Interrupted : End::EndOfInput, std::exchange(dropped_, "")};
  }
  std::string line(typed, static_cast<std::size_t>(count));
  while (line.ends_with('\n') || line.ends_with('\r')) line.pop_back();
  HistEvent event;
  if (!line.empty()) history(history_.get(), &event, H_ENTER, line.c_str());
  return {End::Line, std::move(line)};
}

int Prompt::NextCharacter(EditLine* editor, wchar_t* character) {
  void* data = nullptr;
  el_get(editor, EL_CLIENTDATA, &data);
  auto* const self = static_cast<Prompt*>(data);
  std::mbstate_t state{};
  for (;;) {
    if (Interrupted()) {
      const LineInfo* line = el_line(editor);
      self->dropped_.assign(line->buffer, line->lastchar);
      return -1;
    }
    if (!Readable(kIdleMs)) {
      if (const auto line = self->idle_()) {
        std::puts((kEraseLine + *line).c_str());
        el_set(editor, EL_REFRESH);
      }
      continue;
    }
    char byte = 0;
    const ssize_t received = read(STDIN_FILENO, &byte, 1);
    if (received < 0 && errno == EINTR) continue;
    if (received <= 0) return 0;  // also a terminal that has gone
    const std::size_t decoded = std::mbrtowc(character, &byte, 1, &state);
    if (decoded == static_cast<std::size_t>(-1)) {
      state = {};
    } else if (decoded != static_cast<std::size_t>(-2)) {
      return 1;
    }
  }
}

bool Prompt::Ask(const std::string& question) {
  Say("{} [y/N] ", question);
  std::string answer;
  for (char byte = 0; byte != '\n' && !Interrupted();) {
    if (!Readable(kIdleMs)) continue;
    if (read(STDIN_FILENO, &byte, 1) <= 0) break;
    answer += byte;
  }
  return answer.starts_with('y') || answer.starts_with('Y');
}

}  // namespace brevant::cli
