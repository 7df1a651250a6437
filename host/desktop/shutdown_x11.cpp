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

constexpr std::chrono::seconds maxShutdownTime{30};

FinishWork &Finish() {
  static FinishWork finish;
  return finish;
}

int OnDisplayLost(Display *) { ShutDown("the display went away", host::ExitCode::Failed, maxShutdownTime); }

int OnSignal(void *) {
  ShutDown("interrupted", host::ExitCode::Cancelled, maxShutdownTime);
  return G_SOURCE_REMOVE;
}

} // namespace

void WatchForShutdown(FinishWork finish) {
  Finish() = std::move(finish);
  XSetIOErrorHandler(OnDisplayLost);
  // A lost display is reported above. A handler, unlike SIG_IGN, is not inherited by started programs.
  std::signal(SIGPIPE, [](int) {});
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    g_unix_signal_add(signal, OnSignal, nullptr);
}

void ShutDown(const char *why, host::ExitCode code, std::chrono::seconds maxTime) {
  // A second signal ends the process at once.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    std::signal(signal, SIG_DFL);
  std::fprintf(stderr, "vlxslt: %s\n", why);
  NoteEvent("shutdown", why);
  LoseWindows();
  if (!Finish()(maxTime))
    std::fputs("vlxslt: the transformation that was going on is dropped, and its output with it\n", stderr);
  std::fflush(nullptr);
  _exit(static_cast<int>(code));
}

} // namespace desktop
