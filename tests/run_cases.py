#!/usr/bin/env python3
"""Plays the cases of tests/cases through the command line and shows a diff where the outcome differs.

usage: run_cases.py --build FOLDER [--update] [--windows] [--connect] [--keep] [--prepare] [CASE...]

The form of a case is described in tests/README.md. Exit status: 0 all as expected, 1 something differs, 2 a case or
the command line is malformed, 77 a case needs something outside the project that is not there.
"""

import argparse
import contextlib
import difflib
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import urllib.parse

TESTS = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(TESTS)
SKIPPED = 77
STEP_SECONDS = 240
KEPT_VARIABLES = ("USER", "LOGNAME", "ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS")

# Blanks and non-ASCII letters in the path of every case.
WORK_NAME = "Übung mit Leerzeichen"

DEFAULT_CONFIGURATION = """\
product = "Vellis"
install_dir = "install"
structure_dir = "structure"
default_catalogue = "defaults.xml"
temp_dir = "temp"

[[processor]]
name = "Saxon"
class_path = "${PROCESSORS}/saxon/Saxon-HE.jar;${PROCESSORS}/saxon/xmlresolver.jar;${PROCESSORS}/saxon/xmlresolver-data.jar"
class_name = "net.sf.saxon.TransformerFactoryImpl"

[[processor]]
name = "Xalan"
class_path = "${PROCESSORS}/xalan/xalan.jar;${PROCESSORS}/xalan/serializer.jar"
class_name = "org.apache.xalan.processor.TransformerFactoryImpl"

[[processor]]
name = "XSLTC"
class_path = ""
class_name = "com.sun.org.apache.xalan.internal.xsltc.trax.TransformerFactoryImpl"
"""


class Malformed(Exception):
    """A case that cannot be played."""


class Missing(Exception):
    """Something outside the project that a case needs."""


# ---- The transcript


def show_line(text, ended):
    """One line of output as a transcript shows it."""
    if re.search(r"[\x00-\x1f\x7f\udc80-\udcff]", text) or re.search(r" \((esc|glob|no-eol)\)$", text):
        text = re.sub(r"[\\\x00-\x1f\x7f\udc80-\udcff]", escape_character, text) + " (esc)"
    return text + ("" if ended else " (no-eol)")


def escape_character(match):
    named = {"\\": r"\\", "\t": r"\t", "\r": r"\r"}
    return named.get(match[0], f"\\x{ord(match[0]) & 0xFF:02x}")


def show_stream(mark, text):
    lines = text.split("\n")
    last = lines.pop()
    shown = [show_line(line, True) for line in lines] + ([show_line(last, False)] if last else [])
    return [f"  {mark} {line}".rstrip() if not line else f"  {mark} {line}" for line in shown]


class Step:
    """A command and what it must answer, as lines of the transcript."""

    def __init__(self, number, line):
        self.number = number
        self.command = [line]
        self.expected = []

    def script(self):
        return "\n".join(self.command)


def read_transcript(path):
    """The transcript as a list of prose lines and steps, and the needs that it declares."""
    parts, needs, step = [], [], None
    with open(path, encoding="utf-8", errors="surrogateescape", newline="\n") as file:
        text = file.read()
    for number, line in enumerate(text.removesuffix("\n").split("\n"), 1):
        if line.startswith("  $ "):
            step = Step(number, line[4:])
            parts.append(step)
        elif line.startswith("  > ") or line == "  >":
            if step is None or step.expected:
                raise Malformed(f"{path}:{number}: a continuation belongs right behind its command")
            step.command.append(line[4:])
        elif re.match(r"  [|!=]( |$)", line):
            if step is None:
                raise Malformed(f"{path}:{number}: an answer without a command")
            step.expected.append(line)
        elif line.startswith(" "):
            raise Malformed(f"{path}:{number}: an indented line begins with $, >, |, ! or =")
        else:
            if line.startswith("needs: "):
                needs += line.removeprefix("needs: ").split()
            step = None
            parts.append(line)
    if not any(isinstance(part, Step) for part in parts):
        raise Malformed(f"{path}: no command")
    return parts, needs


def line_matches(expected, actual):
    if expected == actual:
        return True
    if not expected.endswith(" (glob)"):
        return False
    pattern = expected.removesuffix(" (glob)")
    return re.fullmatch(".*".join(re.escape(piece) for piece in pattern.split("*")), actual) is not None


def merge_expected(expected, actual):
    """The actual lines, with every expected line that matches in place of the literal one."""
    if len(expected) == len(actual):
        return [want if line_matches(want, got) else got for want, got in zip(expected, actual)]
    merged, rest = [], list(expected)
    for got in actual:
        if rest and line_matches(rest[0], got):
            merged.append(rest.pop(0))
        else:
            merged.append(got)
            if got in rest:
                del rest[: rest.index(got) + 1]
    return merged


# ---- Playing


def find_corpora():
    for folder in (os.environ.get("VLXSLT_CORPORA"), os.path.join(os.path.dirname(ROOT), "shared", "corpora")):
        if folder and os.path.isdir(folder):
            return os.path.abspath(folder)
    raise Missing("the corpora: set VLXSLT_CORPORA to their folder, or put them into ../shared/corpora")


class Player:
    """One case in its own fresh folder."""

    def __init__(self, options, name):
        self.name = name
        self.case = os.path.join(options.cases, name)
        self.build = os.path.abspath(options.build)
        self.windows = options.windows
        self.runtime = getattr(options, "runtime", None)
        place = "windows" if options.windows else "connected" if self.runtime else "work"
        self.top = os.path.join(self.build, "tests", place, name)
        self.work = os.path.join(self.top, WORK_NAME)
        self.temp = os.path.join(self.top, "tmp")
        self.variables = {"WORK": self.work, "CASE": self.case, "PROCESSORS": os.path.join(self.build, "share", "vlxslt", "processors")}

    def prepare(self, needs):
        for need in needs:
            if need == "corpora":
                self.variables["CORPORA"] = find_corpora()
            elif need == "root":
                if os.geteuid() != 0:
                    raise Missing("the right to mount a file system, which is root's")
            else:
                raise Malformed(f"{self.case}/case.txt: nothing is known about a need called {need}")
        remove_tree(self.top)
        for folder in (self.work, self.temp, os.path.join(self.top, "home")):
            os.makedirs(folder)
        given = os.path.join(self.case, "input")
        if os.path.isdir(given):
            shutil.copytree(given, self.work, symlinks=True, dirs_exist_ok=True)
        for folder in ("install", "structure", "temp"):
            os.makedirs(os.path.join(self.work, folder), exist_ok=True)
        schemas = os.path.join(self.build, "share", "vlxslt", "vlinit")
        if os.path.isdir(schemas):
            shutil.copytree(schemas, os.path.join(self.work, "install", "vlinit"), dirs_exist_ok=True)
        self.write_configuration()

    def write_configuration(self):
        """The case's own vlxslt.toml, or the common one; more.toml of the case goes behind either."""
        text = self.read_given("vlxslt.toml") or DEFAULT_CONFIGURATION
        text += self.read_given("more.toml")
        for name, value in self.variables.items():
            text = text.replace("${%s}" % name, value)
        with open(os.path.join(self.work, "vlxslt.toml"), "w", encoding="utf-8", errors="surrogateescape") as file:
            file.write(text)

    def read_given(self, name):
        path = os.path.join(self.case, name)
        if not os.path.exists(path):
            return ""
        with open(path, encoding="utf-8", errors="surrogateescape", newline="") as file:
            return file.read()

    def environment(self):
        kept = {name: os.environ[name] for name in KEPT_VARIABLES if name in os.environ}
        environment = kept | self.variables | {
            "PATH": os.pathsep.join([os.path.join(self.build, "bin"), os.path.join(TESTS, "bin"), os.environ["PATH"]]),
            "HOME": os.path.join(self.top, "home"),
            # Shared by all cases: what Java keeps there makes every later start faster.
            "XDG_CACHE_HOME": os.path.join(self.build, "tests", "cache"),
            "VLXSLT_NO_CLASS_ARCHIVE": "new",
            "VLXSLT_CONFIG": os.path.join(self.work, "vlxslt.toml"),
            # Not what else is installed on this machine.
            "VLXSLT_JAVA_FOLDERS": os.path.join(self.top, "home", "java"),
            "TMPDIR": self.temp,
            "LC_ALL": "C.UTF-8",
            "TERM": "dumb",
        }
        if self.runtime:
            environment |= {"VLXSLT_CONNECT": "1", "XDG_RUNTIME_DIR": self.runtime}
        if self.windows:
            # A vlxslt in front of the real one shows in windows what a script works.
            environment["PATH"] = os.pathsep.join([os.path.join(TESTS, "desktop", "bin"), environment["PATH"]])
            environment["DISPLAY"] = os.environ["DISPLAY"]
        return environment

    def play(self, step):
        """What a step answers, as lines of the transcript."""
        process = subprocess.Popen(["bash", "-o", "pipefail", "-c", step.script()], cwd=self.work, env=self.environment(),
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   start_new_session=True)
        try:
            output, errors = process.communicate(timeout=STEP_SECONDS)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            output, errors = process.communicate()
            errors += f"\nstopped after {STEP_SECONDS} seconds\n".encode()
        lines = show_stream("|", self.normalise(output)) + show_stream("!", self.normalise(errors))
        return lines + ([f"  = {process.returncode}"] if process.returncode else [])

    def normalise(self, output):
        """Nothing but this machine's folders is replaced."""
        text = output.decode("utf-8", errors="surrogateescape")
        for name in sorted(self.variables, key=lambda name: -len(self.variables[name])):
            path = self.variables[name]
            text = text.replace(path, "${%s}" % name).replace(urllib.parse.quote(path), "${%s|url}" % name)
        return text

    def left_behind(self):
        """What the program forgot in the temporary folder."""
        return sorted(os.listdir(self.temp))

    def clean_up(self):
        remove_tree(self.top)


def remove_tree(folder):
    """Also what a case made read-only."""
    if not os.path.lexists(folder):
        return
    for path, folders, _ in os.walk(folder):
        for each in folders:
            if not os.path.islink(os.path.join(path, each)):
                os.chmod(os.path.join(path, each), 0o700)
    shutil.rmtree(folder)


def play_case(options, name):
    """0, 1 or 77."""
    transcript = os.path.join(options.cases, name, "case.txt")
    parts, needs = read_transcript(transcript)
    player = Player(options, name)
    try:
        player.prepare(needs)
    except Missing as missing:
        print(f"SKIPPED {name}: missing {missing}")
        return SKIPPED
    before, after = [], []
    for part in parts:
        if not isinstance(part, Step):
            before.append(part)
            after.append(part)
            continue
        command = [f"  {'>' if index else '$'} {line}".rstrip() for index, line in enumerate(part.command)]
        before += command + part.expected
        after += command + merge_expected(part.expected, player.play(part))
    leftovers = player.left_behind()
    if before == after and not leftovers:
        if not options.keep:
            player.clean_up()
        return 0
    report(name, transcript, before, after, leftovers, player.work)
    if options.update and before != after:
        with open(transcript, "w", encoding="utf-8", errors="surrogateescape", newline="\n") as file:
            file.write("\n".join(after) + "\n")
        print(f"rewritten for review: {transcript}")
    return 1


@contextlib.contextmanager
def resident_server(options):
    """With --connect: a runtime folder of its own, whose server has served something and is stopped in the end."""
    options.runtime = None
    if not options.connect:
        yield
        return
    with tempfile.TemporaryDirectory(prefix="vlxslt-resident-") as options.runtime:
        serve = [os.path.join(os.path.abspath(options.build), "bin", "vlxslt"), "serve"]
        environment = os.environ | {"XDG_RUNTIME_DIR": options.runtime}
        try:
            yield
            answer = subprocess.run([*serve, "--status"], env=environment, capture_output=True, text=True, check=False)
            served = re.search(r": (\d+) requests", answer.stdout)
            if not served or int(served[1]) == 0:
                raise Malformed(f"no command reached the resident server: {answer.stdout}{answer.stderr}")
            print(f"{served[1]} commands ran in workers")
        finally:
            subprocess.run([*serve, "--stop"], env=environment, capture_output=True, check=False)


def report(name, transcript, before, after, leftovers, work):
    relative = os.path.relpath(transcript, ROOT)
    for line in difflib.unified_diff(before, after, f"{relative} (expected)", f"{relative} (actual)", lineterm="", n=4):
        print(line.encode("utf-8", "backslashreplace").decode())
    if leftovers:
        print(f"left behind in $TMPDIR: {' '.join(leftovers)}")
    print(f"FAILED {name}; its folder was kept: {work}")


def write_class_archives(options):
    """What Java starts quickly with in the common configuration; runs of cases write none."""
    start = os.path.join(options.build, "lib", "vlxslt", "start")
    jar = os.path.join(options.build, "lib", "vlxslt", "vlxslt-java.jar")
    if os.path.isdir(start) and os.path.getmtime(start) < os.path.getmtime(jar):
        remove_tree(start)
    player = Player(options, "class archives")
    player.prepare([])
    return subprocess.run(["vlxslt", "processors", "--prepare"], cwd=player.work, env=player.environment(),
                          stdout=subprocess.DEVNULL, check=False).returncode


def main(arguments):
    parser = argparse.ArgumentParser(description="Plays the cases of tests/cases.")
    parser.add_argument("--build", required=True, help="the build tree that holds bin/vlxslt")
    parser.add_argument("--cases", default=os.path.join(TESTS, "cases"), help=argparse.SUPPRESS)
    parser.add_argument("--update", action="store_true", help="rewrite the expectations; read the difference afterwards")
    parser.add_argument("--windows", action="store_true", help="scripts work windows, on the display of DISPLAY")
    parser.add_argument("--connect", action="store_true", help="commands run in the workers of a resident server")
    parser.add_argument("--prepare", action="store_true", help="write the archives of classes that the cases use, no more")
    parser.add_argument("--keep", action="store_true", help="keep the folders of cases that passed")
    parser.add_argument("names", nargs="*", metavar="CASE")
    options = parser.parse_args(arguments)
    options.cases = os.path.abspath(options.cases)
    if options.prepare:
        return write_class_archives(options)
    names = options.names or sorted(
        each for each in os.listdir(options.cases) if os.path.exists(os.path.join(options.cases, each, "case.txt")))
    sys.stdout.reconfigure(errors="backslashreplace")
    try:
        with resident_server(options):
            results = [play_case(options, name) for name in names]
    except (Malformed, FileNotFoundError) as problem:
        print(f"run_cases.py: {problem}", file=sys.stderr)
        return 2
    if len(names) > 1:
        print(f"{results.count(0)} of {len(names)} cases as expected, {results.count(SKIPPED)} skipped")
    return 1 if 1 in results else SKIPPED if SKIPPED in results else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
