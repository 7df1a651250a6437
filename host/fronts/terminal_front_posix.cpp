#include "host/fronts/terminal_front.h"

#include "host/fronts/cancellation.h"
#include "host/fronts/time_left.h"
#include "kit/paths.h"
#include "kit/text.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace host {

namespace {

constexpr std::string_view clearLine = "\r\x1b[K";
constexpr std::string_view dim = "\x1b[2m";
constexpr std::string_view plain = "\x1b[0m";

struct Wording {
  std::string_view proceed;
  std::string_view decline;
  std::string_view prompt; // the answer of a bare return is the capital one
  Answer byDefault;
};

Wording WordingOf(AlertKind kind) {
  switch (kind) {
  case AlertKind::YesNo:
    return {"Yes", "No", " [Y/n] ", Answer::Proceed};
  case AlertKind::YesNoDefaultNo:
    return {"Yes", "No", " [y/N] ", Answer::Decline};
  default:
    return {"OK", "Cancel", " [OK/cancel] ", Answer::Proceed};
  }
}

std::optional<Answer> Understand(std::string_view line, const Wording &wording) {
  if (line.empty())
    return wording.byDefault;
  for (const std::string_view word : {wording.proceed, std::string_view("Yes")})
    if (kit::StartsWithIgnoreCase(word, line))
      return Answer::Proceed;
  for (const std::string_view word : {wording.decline, std::string_view("No")})
    if (kit::StartsWithIgnoreCase(word, line))
      return Answer::Decline;
  return std::nullopt;
}

bool IsSet(const char *variable) {
  const char *value = std::getenv(variable);
  return value && *value;
}

size_t TerminalWidth() {
  winsize size = {};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

} // namespace

TerminalFront::TerminalFront(Answers wanted, ProgramStarter show) : answers(wanted), starter(std::move(show)) {
  const bool writesToTerminal = isatty(STDERR_FILENO) == 1;
  isTerminal = writesToTerminal && isatty(STDIN_FILENO) == 1;
  const char *terminal = std::getenv("TERM");
  showsProgress = writesToTerminal && terminal && *terminal && std::strcmp(terminal, "dumb") != 0;
}

TerminalFront::~TerminalFront() { ClearProgress(); }

Answer TerminalFront::Alert(AlertKind kind, const std::string &text) {
  if (kind == AlertKind::Plain) {
    WriteLine(text);
    return Answer::Proceed;
  }
  if (answers == Answers::ConfirmAll)
    return Answer::Proceed;
  const Wording wording = WordingOf(kind);
  if (answers == Answers::Decline || !isTerminal) {
    // Silence here would look like an output that was never written for no reason.
    WriteLine(text + " " + std::string(wording.decline) + " (not asked; --yes agrees)");
    return Answer::Decline;
  }
  ClearProgress();
  for (;;) {
    std::fputs((text + std::string(wording.prompt)).c_str(), stderr);
    const std::optional<std::string> line = ReadLine();
    if (!line)
      return Answer::Decline;
    if (const std::optional<Answer> answer = Understand(*line, wording))
      return *answer;
  }
}

std::optional<std::string> TerminalFront::ChooseFile(const FileChooser &chooser) {
  if (answers == Answers::Decline || !isTerminal) {
    WriteLine(chooser.title + ": dismissed (not asked)");
    return std::nullopt;
  }
  ClearProgress();
  const std::string folder = chooser.startFolder.empty() ? std::string() : " in " + chooser.startFolder;
  std::fputs((chooser.title + folder + " (empty to dismiss): ").c_str(), stderr);
  const std::optional<std::string> line = ReadLine();
  if (!line || line->empty())
    return std::nullopt;
  const bool isRelativeToStart = !kit::IsAbsolutePath(*line) && !chooser.startFolder.empty();
  return kit::AbsolutePath(isRelativeToStart ? kit::JoinPath(chooser.startFolder, *line) : *line);
}

// A dialog needs windows or a script; on a bare terminal it counts as closed at once.
void TerminalFront::RunDialog(DialogModel &) { WriteLine("A dialog cannot be shown on a terminal."); }

void TerminalFront::WriteConsole(std::string_view text) { WriteLine(WithoutLineEnd(text)); }

void TerminalFront::ReportProgress(const Progress &next) {
  ClearProgress();
  if (next.index == 0)
    begun = std::chrono::steady_clock::now();
  progress.clear();
  if (!showsProgress || next.count < 2)
    return;
  const std::string left =
      DescribeTimeLeft(std::chrono::steady_clock::now() - begun, next.index, next.count - next.index);
  progress = std::to_string(next.index + 1) + "/" + std::to_string(next.count) + (left.empty() ? "" : ", ") + left +
             "  " + kit::FileNameOf(next.path);
  ShowProgress();
}

// The file is named in any case: a program that is started may still fail to show it.
void TerminalFront::LaunchOutput(const std::string &path) {
  Front::LaunchOutput(path);
  if (answers != Answers::Decline && starter && !starter(path))
    WriteLine("No program could be started for " + path);
}

bool TerminalFront::IsCancelled() { return IsInterrupted(); }

std::optional<std::string> TerminalFront::ReadLine() {
  std::string line;
  for (;;) {
    std::array<pollfd, 2> waiting = {pollfd{STDIN_FILENO, POLLIN, 0}, pollfd{InterruptDescriptor(), POLLIN, 0}};
    if (poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR)
      return std::nullopt;
    if (IsInterrupted()) {
      std::fputc('\n', stderr);
      return std::nullopt;
    }
    char letter = 0;
    if (waiting[0].revents == 0)
      continue;
    if (read(STDIN_FILENO, &letter, 1) != 1) {
      // No more answers can come; the rest is declined without waiting.
      isTerminal = false;
      std::fputc('\n', stderr);
      return std::nullopt;
    }
    if (letter == '\n')
      return line;
    if (letter != '\r')
      line += letter;
  }
}

void TerminalFront::WriteLine(std::string_view text) {
  ClearProgress();
  std::string line(text);
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stderr);
  ShowProgress();
}

void TerminalFront::ClearProgress() {
  if (!progress.empty())
    std::fwrite(clearLine.data(), 1, clearLine.size(), stderr);
}

void TerminalFront::ShowProgress() {
  if (progress.empty())
    return;
  const bool isColoured = !IsSet("NO_COLOR");
  std::string shown(isColoured ? dim : "");
  shown.append(kit::Truncate(progress, TerminalWidth() - 1)).append(isColoured ? plain : "");
  std::fwrite(shown.data(), 1, shown.size(), stderr);
}

} // namespace host
