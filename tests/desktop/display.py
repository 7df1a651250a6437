"""A virtual display with a window manager, and the keyboard and mouse on it."""

import os
import select
import shutil
import subprocess
import tempfile
import time


class NotThere(Exception):
    """A program that the tests need is not installed."""


def await_line(stream, line):
    for each in stream:
        if each.strip() == line:
            return
    raise AssertionError(f"the program ended without '{line}'")


class Display:
    """Xvfb and openbox; they end with the block."""

    def __init__(self, size="1400x1000", extra=()):
        self.size = size
        self.extra = list(extra)

    def __enter__(self):
        for program in ("Xvfb", "openbox", "xdotool"):
            if not shutil.which(program):
                raise NotThere(program)
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", self.size + "x24", "-nolisten", "tcp", *self.extra],
            pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            self.name = ":" + number.readline().strip()
        reading, writing = os.pipe()
        # Runs the command when the window manager is ready.
        self.manager = subprocess.Popen(["openbox", "--sm-disable", "--startup", "echo ready"], stdout=writing,
                                        stderr=subprocess.DEVNULL, env=self.environment())
        os.close(writing)
        with os.fdopen(reading) as ready:
            ready.readline()
        return self

    def __exit__(self, *_):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()

    def environment(self):
        return os.environ | {"DISPLAY": self.name, "NO_AT_BRIDGE": "1", "GTK_THEME": os.environ.get("GTK_THEME", "Adwaita")}

    def tool(self, *words):
        return subprocess.run(["xdotool", *words], env=self.environment(), check=True, capture_output=True, text=True,
                              timeout=60).stdout

    def find(self, title):
        """Waits for the visible window of that title, gives it the focus and returns its number."""
        deadline = time.monotonic() + 60
        while time.monotonic() < deadline:
            number = self.see(title)
            try:
                # Repeated, since the window manager may not know the window yet.
                self.tool("windowactivate", number)
                for _ in range(50):
                    if self.active() == number:
                        return number
                    time.sleep(0.01)
            except subprocess.CalledProcessError:
                continue  # xdotool fails when a window opens or closes while it searches
        raise AssertionError(f"'{title}' never got the focus")

    def active(self):
        """The number of the window that has the focus; empty between two windows."""
        try:
            return self.tool("getactivewindow").strip()
        except subprocess.CalledProcessError:
            return ""

    def see(self, title, seconds=60):
        """Waits for the visible window of that title and returns its number."""
        deadline = time.monotonic() + seconds
        while True:
            # The tool's --sync looks only twice a second.
            try:
                return self.tool("search", "--onlyvisible", "--name", title).split()[-1]
            except subprocess.CalledProcessError:
                if time.monotonic() > deadline:
                    raise
                time.sleep(0.01)

    def take_screenshot(self, path):
        subprocess.run(["import", "-window", "root", path], env=self.environment(), check=False)

    def drag(self, source, x, y):
        """Drags from the window of a drag_source.py process to a point of the screen."""
        self.tool("mousemove", "--sync", "60", "60")
        self.tool("mousedown", "1")
        for step in range(1, 9):
            self.tool("mousemove", "--sync", str(60 + 4 * step), "60")
        await_line(source.stdout, "begun")
        for step in (2, 1, 0):
            self.tool("mousemove", "--sync", str(x - 5 * step), str(y))
        await_line(source.stdout, "accepted")
        self.tool("mouseup", "1")

    def keys(self, *names):
        self.tool("key", "--clearmodifiers", *names)

    def type(self, text):
        self.tool("type", "--delay", "1", "--", text)


class Windows:
    """A running vlxslt with windows, and its window events."""

    def __init__(self, display, program, words, environment, folder):
        self.pipe = os.path.join(tempfile.mkdtemp(dir=folder), "events")
        os.mkfifo(self.pipe)
        self.reading = os.open(self.pipe, os.O_RDWR | os.O_NONBLOCK)
        self.pending = b""
        self.dialogs = {}  # what the open dialogs show, by title
        self.process = subprocess.Popen([program, *words], cwd=folder, stdin=subprocess.DEVNULL,
                                        env=display.environment() | environment | {"VLXSLT_WINDOW_EVENTS": self.pipe})

    def next(self, seconds):
        """The next event, or None when none comes in time or the program has ended."""
        deadline = time.monotonic() + seconds
        while b"\n" not in self.pending:
            has_ended = self.process.poll() is not None
            left = deadline - time.monotonic()
            ready, _, _ = select.select([self.reading], [], [], 0 if has_ended else max(0, min(1, left)))
            if ready:
                self.pending += os.read(self.reading, 65536)
            elif has_ended or left <= 0:
                return None
        line, self.pending = self.pending.split(b"\n", 1)
        event = line.decode(errors="replace")
        kind, _, rest = event.partition(" ")
        if kind == "opened":
            self.dialogs[rest] = ""
        if kind == "settled":
            title, _, buttons = rest.partition(" |")
            self.dialogs[title] = "|" + buttons
        return event

    def wait(self, beginning, seconds=30):
        """The next event with that beginning; earlier ones are skipped."""
        return self.wait_for_all(beginning, seconds)[-1]

    def wait_for_all(self, beginning, seconds=30):
        """All events up to the next one with that beginning."""
        seen = []
        while (event := self.next(seconds)) is not None:
            seen.append(event)
            if event.startswith(beginning):
                return seen
        raise AssertionError(f"no event '{beginning}'; there were {seen}")

    def wait_until_shown(self, title, part):
        """Until the dialog has settled with that button sensitive, or with "rows: N"."""
        while f"| {part} |" not in self.dialogs.get(title, ""):
            if self.next(30) is None:
                raise AssertionError(f"'{title}' never showed '{part}'; it shows {self.dialogs}")

    def wait_until_hidden(self, title, button):
        """Until the dialog has settled with that button insensitive."""
        while f"| {button} |" in self.dialogs[title]:
            self.wait(f"settled {title}")

    def end(self, seconds=30):
        """The exit status of a program that is about to end by itself."""
        return self.process.wait(timeout=seconds)

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        os.close(self.reading)
