#include "host/desktop/shutdown.h"

#include "host/desktop/ui_thread.h"
#include "host/desktop/window_events.h"

#include <X11/Xlib.h>
#include <glib-unix.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace desktop {

namespace {

constexpr std::chrono::seconds patience{30};

FinishWork &Finish() {
  static FinishWork finish;
  return finish;
}

int OnDisplayLost(Display *) { Depart("the display went away", failedCode, patience); }

int OnSignal(void *) {
  Depart("interrupted", interruptedCode, patience);
  return G_SOURCE_REMOVE;
}

} // namespace

void WatchForDeparture(FinishWork finish) {
  Finish() = std::move(finish);
  XSetIOErrorHandler(OnDisplayLost);
  // A display that is gone is an error of its own; programs that are started from here get the usual signal.
  std::signal(SIGPIPE, [](int) {});
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    g_unix_signal_add(signal, OnSignal, nullptr);
}

void Depart(const char *why, int exitCode, std::chrono::seconds longest) {
  // Whoever asks twice means it.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    std::signal(signal, SIG_DFL);
  std::fprintf(stderr, "vlxslt: %s\n", why);
  NoteEvent("departing", why);
  LoseWindows();
  if (!Finish()(longest))
    std::fputs("vlxslt: the transformation that was going on is dropped, and its output with it\n", stderr);
  std::fflush(nullptr);
  _exit(exitCode);
}

} // namespace desktop
