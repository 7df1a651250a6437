#!/usr/bin/env python3
"""Drives commands through the workers of resident servers: the same results as without, and what happens when a part of
it dies, hangs, changes, or belongs to another user.

usage: test_resident.py --build FOLDER [--requests NUMBER] [TEST...]

Exit status: 0 all is well, 1 something is not, 77 a test needs root, and all else is well.
"""

import argparse
import os
import pathlib
import re
import select
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
import run_cases  # noqa: E402
from checks import Failure, check  # noqa: E402

SECONDS = 120
OTHER_USER = 65534
HEAD = '<xsl:stylesheet version="3.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">'
# Says that it is at work, and goes on when the file `release` is there.
HOLD = HEAD + """<xsl:template match="/"><xsl:message>busy</xsl:message><r><xsl:iterate select="1 to 1000000000">
<xsl:if test="unparsed-text-available(concat('release', substring('x', 2 + (. mod 2))))"><xsl:break/></xsl:if>
</xsl:iterate></r></xsl:template></xsl:stylesheet>"""
COPY = HEAD + '<xsl:template match="/"><out><xsl:value-of select="a"/></out></xsl:template></xsl:stylesheet>'
EXIT = """<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:j="http://xml.apache.org/xalan/java">
<xsl:template match="/"><x><xsl:value-of select="j:java.lang.System.exit(3)"/></x></xsl:template></xsl:stylesheet>"""
SAXON = ("Saxon-HE.jar", "xmlresolver.jar", "xmlresolver-data.jar")


class Bench(run_cases.Player):
    """A work folder with the common configuration, and a runtime folder whose server ends with it."""

    def __init__(self, options, name):
        super().__init__(argparse.Namespace(cases=run_cases.TESTS, build=options.build, windows=False), f"resident {name}")
        self.prepare([])
        self.options = options
        self.runtime_folder = tempfile.mkdtemp(prefix="vlxslt-resident-")
        self.place = os.path.join(self.runtime_folder, "vlxslt")
        for file, text in {"a.xml": "<a>text</a>", "bad.xml": "<a>", "copy.xsl": COPY, "hold.xsl": HOLD}.items():
            self.write(file, text)

    def environment(self):
        return super().environment() | {"XDG_RUNTIME_DIR": self.runtime_folder}

    def path(self, name):
        return os.path.join(self.work, name)

    def write(self, name, text):
        pathlib.Path(self.path(name)).write_text(text, encoding="utf-8")

    def read(self, name):
        return pathlib.Path(self.path(name)).read_text(encoding="utf-8")

    def start(self, *arguments, environment=(), **options):
        streams = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE} | options
        return subprocess.Popen(["vlxslt", *arguments], cwd=self.work, env=self.environment() | dict(environment), **streams)

    def run(self, *arguments, given=None, environment=()):
        """Exit code, standard output and standard error."""
        process = self.start(*arguments, environment=environment, stdin=subprocess.PIPE)
        output, errors = process.communicate(given, timeout=SECONDS)
        return process.returncode, output.decode(), errors.decode()

    def copy(self, output="out.xml", **options):
        """One request that must succeed, in a worker."""
        answer = self.run("--connect", "run", "a.xml", "--xsl", "copy.xsl", "-o", output, "--yes", **options)
        check(answer[0] == 0 and "running without" not in answer[2], f"a plain request failed: {answer}")
        return self.read(output) if output != "-" else answer[1]

    def status(self):
        """The server's process, and the workers: process, state, served requests, megabytes."""
        code, output, errors = self.run("serve", "--status")
        if code:
            return None, []
        workers = re.findall(r"worker (\d+): (\w+), (\d+) requests, (\d+) MB", output)
        return int(re.match(r"server (\d+)", output)[1]), [(int(p), s, int(n), int(m)) for p, s, n, m in workers]

    def hold(self, *options, output="held.xml", **how):
        """A client whose worker is in the middle of a transformation."""
        process = self.start("--connect", "run", "a.xml", "--xsl", "hold.xsl", "-o", output, *options, **how)
        text = b""
        while b"busy" not in text:
            ready, _, _ = select.select([process.stderr], [], [], SECONDS)
            piece = os.read(process.stderr.fileno(), 65536) if ready else b""
            check(piece, f"the transformation did not begin: {text.decode()}")
            text += piece
        return process

    def release(self):
        self.write("release", "x")

    def busy_worker(self):
        return next(worker[0] for worker in self.status()[1] if worker[1] == "busy")

    def end(self):
        self.run("serve", "--stop")
        shutil.rmtree(self.runtime_folder)
        check(not self.left_behind(), f"left behind in $TMPDIR: {self.left_behind()}")
        self.clean_up()


def wait_until(holds, what):
    end = time.monotonic() + SECONDS
    while not holds():
        check(time.monotonic() < end, f"it never happened that {what}")
        time.sleep(0.01)


def is_running(process):
    try:
        with open(f"/proc/{process}/stat", encoding="ascii", errors="replace") as file:
            return file.read().rsplit(")", 1)[1].split()[0] != "Z"
    except (FileNotFoundError, ProcessLookupError):
        return False


def outcome(process):
    output, errors = process.communicate(timeout=SECONDS)
    return process.returncode, output.decode(), errors.decode()


# ---- The tests


def test_same(bench):
    """Command lines with and without: both streams, the exit code, and the files."""
    lines = [
        ["run", "a.xml", "--xsl", "copy.xsl", "-o", "o/x.html"], ["run", "a.xml", "--xsl", "copy.xsl", "-o", "-"],
        ["run", "-", "--xsl", "copy.xsl", "-o", "-"], ["run", "bad.xml", "a.xml", "--xsl", "copy.xsl", "-o", "o/"],
        ["run", "a.xml", "--xsl", "none.xsl", "-o", "x"], ["run", "none.xml", "--xsl", "copy.xsl", "-o", "x"],
        ["run", "a.xml", "--xsl", "copy.xsl", "-o", "a.xml"], ["run", "--nothing"], ["run", "--help"], ["nothing"],
        ["processors"], ["processors", "--json"], ["call", "XSLTNothing", "--json"], ["call", "-"],
        ["run", "a.xml", "--xsl", "copy.xsl", "--yes", "--no-input", "-o", "x"], ["list", "--catalogue", "none.xml"],
        ["--config", "other.toml", "processors"], ["run", "/dev/stdin", "--xsl", "copy.xsl", "-o", "-"],
        ["run", "a.xml", "--xsl", "copy.xsl", "-o", "o/", "--extension", "é"]]  # fmt: skip
    bench.write("other.toml", '[[processor]]\nname = "X"\nclass_path = ""\nclass_name = "no.such.Class"\n')
    for line in lines:
        seen = []
        for connect in ([], ["--connect"]):
            shutil.rmtree(bench.path("o"), ignore_errors=True)
            answer = bench.run(*connect, *line, given=b"<a>piped</a>")
            files = sorted((path.name, path.read_bytes()) for path in pathlib.Path(bench.path("o")).glob("*"))
            seen.append((*answer, files))
        check(seen[0] == seen[1], f"{line} differs:\n{seen[0]}\n{seen[1]}")
    check(bench.status()[1], "no command reached a worker")


def test_many(bench):
    """One worker, many requests: descriptors, threads and memory do not grow."""

    def measure():
        (process, _, served, megabytes), = bench.status()[1]
        return process, served, len(os.listdir(f"/proc/{process}/fd")), len(os.listdir(f"/proc/{process}/task")), megabytes

    count = bench.options.requests
    before = None
    for number in range(count):
        bench.write("a.xml", f"<a>{number}</a>")
        check(f"<out>{number}</out>" in bench.copy(), f"request {number} has another's result")
        if number == min(1000, count // 2):
            before = measure()
    after = measure()
    print(f"  after {before[1]} and {after[1]} requests: {before[2:]} and {after[2:]} descriptors, threads, megabytes")
    check(after[0] == before[0], "the worker was replaced")
    check(after[2] <= before[2] and after[3] <= before[3] + 1, "descriptors or threads grow")
    check(after[4] <= before[4] * 1.25 + 16, "memory grows")


def test_several(bench):
    """Clients at once get workers of their own, and one more waits for a free one."""
    server = bench.start("serve", "--max-workers", "4")
    wait_until(lambda: bench.status()[0], "the server listened")
    clients = [bench.hold(output=f"{number}.xml") for number in range(4)]
    check(len({each[0] for each in bench.status()[1]}) == 4, "four clients have no four workers")
    last = bench.start("--connect", "run", "a.xml", "--xsl", "copy.xsl", "-o", "last.xml")
    bench.release()
    for client in [*clients, last]:
        code, _, errors = outcome(client)
        check(code == 0 and "without it" not in errors, f"one of several failed: {errors}")
    check(len(bench.status()[1]) <= 4, "there are too many workers")
    check(bench.run("serve", "--stop")[0] == 0 and server.wait(SECONDS) == 0, "the server did not stop well")
    server.communicate()


def test_dead_worker(bench):
    """A worker that is killed: the client says so, and nothing is half written."""
    client = bench.hold()
    os.kill(bench.busy_worker(), signal.SIGKILL)
    code, _, errors = outcome(client)
    check(code == 1 and "the resident worker ended before it was done" in errors, f"no clear failure: {code} {errors}")
    check(not os.path.exists(bench.path("held.xml")), "there is an output")
    bench.copy()
    os.kill(bench.status()[1][0][0], signal.SIGKILL)  # an idle one
    bench.copy()


def test_failures(bench):
    """A worker stays after a failure, unless that took its Java away."""
    bench.copy()
    worker = bench.status()[1][0][0]
    code, _, errors = bench.run("--connect", "run", "bad.xml", "--xsl", "copy.xsl", "-o", "x.xml")
    check(code == 1 and "bad.xml" in errors, f"a bad input does not fail: {errors}")
    bench.copy()
    check([each[0] for each in bench.status()[1]] == [worker], "the worker was replaced for a bad input")
    bench.write("exit.xsl", EXIT)
    line = ["--connect", "run", "a.xml", "--xsl", "exit.xsl", "--processor", "Xalan", "--allow-extensions", "-o", "x.xml"]
    check(bench.run(*line)[0] == 1, "System.exit does not fail")
    wait_until(lambda: not is_running(worker), "the worker without Java ended")
    bench.copy()


def test_dead_client(bench):
    """A client that is killed: its transformation is given up."""
    client = bench.hold()
    worker = bench.busy_worker()
    client.kill()
    outcome(client)
    wait_until(lambda: not is_running(worker), "the worker gave up")
    check(not os.path.exists(bench.path("held.xml")), "there is an output")
    bench.copy()


def test_interrupts(bench):
    """Ctrl-C: the input at work ends well, the rest is not begun; twice: all ends at once."""
    for number in range(400):
        bench.write(f"{number:03}.xml", "<a/>")
    client = bench.start("--connect", "run", ".", "--match", "[0-9]*.xml", "--xsl", "hold.xsl", "-o", "some/")
    wait_until(lambda: bench.status()[1] and bench.status()[1][0][1] == "busy", "it began")
    client.send_signal(signal.SIGINT)
    bench.release()
    code, _, errors = outcome(client)
    names = os.listdir(bench.path("some")) if os.path.isdir(bench.path("some")) else []
    check(code in (130, -signal.SIGINT) and len(names) < 400, f"it was not interrupted: {code} {errors}")
    check(not [name for name in names if name.startswith(".")], f"something is left: {names}")
    os.unlink(bench.path("release"))
    client = bench.hold()
    worker = bench.busy_worker()
    client.send_signal(signal.SIGINT)
    wait_until(lambda: not has_pending_signal(client.pid), "the client took the signal")
    client.send_signal(signal.SIGINT)
    check(outcome(client)[0] == -signal.SIGINT, "the second one does not end the process")
    wait_until(lambda: not is_running(worker), "the worker ended")
    bench.copy()


def has_pending_signal(process):
    with open(f"/proc/{process}/status", encoding="ascii") as file:
        return any(int(mask, 16) for mask in re.findall(r"(?:Sig|Shd)Pnd:\s*(\w+)", file.read()))


def test_stopped_server(bench):
    """A server that is told to end finishes what runs; meanwhile there is a new one."""
    client = bench.hold()
    first, workers = bench.status()
    os.kill(first, signal.SIGTERM)
    wait_until(lambda: not os.listdir(bench.place), "the socket went")
    bench.copy()
    second = bench.status()[0]
    check(second and second != first and is_running(workers[0][0]), "there is no new server beside the old one")
    bench.release()
    check(outcome(client)[0] == 0 and os.path.exists(bench.path("held.xml")), "what ran was not finished")
    wait_until(lambda: not is_running(first), "the old server ended")


def test_stale_socket(bench):
    """What a killed server leaves is replaced; its workers end."""
    bench.copy()
    server, workers = bench.status()
    os.kill(server, signal.SIGKILL)
    wait_until(lambda: not is_running(workers[0][0]), "the worker ended")
    check(os.listdir(bench.place), "there is no stale socket to test with")
    bench.copy()
    check(bench.status()[0] != server and len(os.listdir(bench.place)) == 1, "the stale socket is in the way")


def test_suspended(bench):
    """A server that does not answer: the command runs without it, and not a second time later."""
    bench.copy()
    server, workers = bench.status()
    os.kill(server, signal.SIGSTOP)
    code, _, errors = bench.run("--connect", "run", "a.xml", "--xsl", "copy.xsl", "-o", "alone.xml")
    check(code == 0 and "does not answer; running without it" in errors, f"no fallback: {code} {errors}")
    os.unlink(bench.path("alone.xml"))
    os.kill(server, signal.SIGCONT)
    bench.copy()
    check(not os.path.exists(bench.path("alone.xml")), "it ran twice")
    # A worker that hangs before it begins is replaced.
    os.kill(workers[0][0], signal.SIGSTOP)
    bench.copy()
    check(not is_running(workers[0][0]), "the suspended worker is still there")


def test_changes(bench):
    """What changed counts at the next request."""
    jars = os.path.join(bench.variables["PROCESSORS"], "saxon")
    for jar in SAXON:
        shutil.copy(os.path.join(jars, jar), bench.path(jar))
    plain = f'[[processor]]\nname = "S"\nclass_path = "{";".join(SAXON)}"\nclass_name = "net.sf.saxon.TransformerFactoryImpl"\n'
    catalog = '<catalog xmlns="urn:oasis:names:tc:entity:xmlns:xml:catalog"><uri name="urn:part" uri="%s"/></catalog>'
    part = HEAD + '<xsl:template name="part"><xsl:value-of select="\'%s\'"/></xsl:template></xsl:stylesheet>'
    bench.write("vlxslt.toml", 'catalogs = ["catalog.xml"]\n' + plain)
    bench.write("one.xsl", part % "one")
    bench.write("two.xsl", part % "two")
    bench.write("catalog.xml", catalog % "one.xsl")
    main = HEAD + '<xsl:import href="urn:part"/><xsl:template match="/"><o>%s<xsl:call-template ' \
        'name="part"/><xsl:value-of select="environment-variable(\'SHADE\')"/></o></xsl:template></xsl:stylesheet>'
    bench.write("copy.xsl", main % "first ")
    check("first one" in bench.copy(), "the first result is wrong")
    worker = bench.status()[1][0][0]
    for what, change, text in [
        ("the stylesheet", lambda: bench.write("copy.xsl", main % "second "), "second one"),
        ("an imported stylesheet", lambda: bench.write("one.xsl", part % "One"), "second One"),
        ("the catalog", lambda: bench.write("catalog.xml", catalog % "two.xsl"), "second two"),
    ]:
        check(bench.status()[1][0][0] == worker, f"the worker was replaced before {what}")
        change()
        check(text in bench.copy(), f"{what} has no effect: {bench.read('out.xml')}")
    check("second twored" in bench.copy(environment={"SHADE": "red"}), "the environment has no effect")
    check("second twoblue" in bench.copy(environment={"SHADE": "blue"}), "another environment has no effect")

    def last_worker():
        """The only one that the last request may have come to."""
        before = {each[0]: each[2] for each in bench.status()[1]}
        bench.copy()
        return next(each[0] for each in bench.status()[1] if before.get(each[0]) != each[2])

    first = last_worker()
    check(last_worker() == first, "a request without a change gets another worker")
    os.utime(bench.path(SAXON[0]), (1, 1))
    second = last_worker()
    check(second != first, "a changed jar is served by the old Java")
    bench.write("vlxslt.toml", 'java_options = ["-Xmx300m"]\n' + bench.read("vlxslt.toml"))
    check(last_worker() not in (first, second), "other options are served by the old Java")
    bench.write("vlxslt.toml", "nothing = 1\n")
    code, _, errors = bench.run("--connect", "run", "a.xml", "--xsl", "copy.xsl", "-o", "x")
    check(code == 2 and "unknown key" in errors, f"a broken configuration is not noticed: {errors}")


def test_folders(bench):
    """A folder that is not this user's alone is not used."""
    os.mkdir(bench.place, 0o755)
    line = ["--connect", "run", "a.xml", "--xsl", "copy.xsl", "-o", "-"]
    code, output, errors = bench.run(*line)
    check(code == 0 and "text" in output and "is open to other users; running without it" in errors, f"{code} {errors}")
    check(bench.run("serve")[0] == 2, "a server uses the folder")
    os.rmdir(bench.place)
    os.mkdir(bench.path("elsewhere"), 0o700)
    os.symlink(bench.path("elsewhere"), bench.place)
    code, _, errors = bench.run(*line)
    check(code == 0 and "is no folder; running without it" in errors, f"a link is used: {code} {errors}")
    check(not os.listdir(bench.path("elsewhere")), "something was made behind the link")
    os.unlink(bench.place)
    bench.copy()
    check(os.stat(bench.place).st_mode & 0o777 == 0o700, "the folder is open to others")


def test_users(bench):
    """Another user is neither served nor trusted."""
    if os.geteuid() != 0 or not shutil.which("setpriv"):
        print("  SKIPPED: needs root and setpriv")
        return run_cases.SKIPPED
    bench.copy()
    name, = os.listdir(bench.place)
    os.chmod(bench.runtime_folder, 0o755)
    os.chmod(bench.place, 0o755)
    os.chmod(os.path.join(bench.place, name), 0o777)
    as_other = ["setpriv", f"--reuid={OTHER_USER}", f"--regid={OTHER_USER}", "--clear-groups"]
    ask = ("import socket, sys; s = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET); s.connect(sys.argv[1]); "
           "s.send(b'\\x0f\\0\\0\\0\\0\\0\\0\\0'); print(len(s.recv(9000)))")  # fmt: skip
    python = "/usr/bin/python3"
    asked = [python, "-c", ask, os.path.join(bench.place, name)]
    served = subprocess.run(asked, capture_output=True, text=True, check=False)
    check(served.stdout.strip() not in ("", "0"), f"this user has no answer: {served}")
    refused = subprocess.run([*as_other, *asked], capture_output=True, text=True, check=False)
    check(refused.stdout.strip() in ("", "0"), f"another user is served: {refused.stdout}")
    # The other way round: a server of another user in the place where the client looks for its own.
    code, _, errors = bench.run("--connect", "run", "a.xml", "--xsl", "copy.xsl", "-o", "-")
    check(code == 0 and "is open to other users" in errors, f"an open folder is used: {errors}")
    os.chmod(bench.place, 0o700)
    bench.run("serve", "--stop")
    os.chown(bench.place, OTHER_USER, OTHER_USER)
    code, _, errors = bench.run("--connect", "run", "a.xml", "--xsl", "copy.xsl", "-o", "-")
    check(code == 0 and "belongs to another user; running without it" in errors, f"a strange folder is used: {errors}")
    os.chown(bench.place, 0, 0)
    with socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET) as listening:
        os.chdir(bench.place)
        listening.bind(name)
        os.chdir("/")
        pretend = "import socket, sys; s = socket.socket(fileno=0); s.listen(); print('ready', flush=True); sys.stdin.close(); s.accept()"
        stranger = subprocess.Popen([*as_other, python, "-c", pretend], stdin=listening, stdout=subprocess.PIPE)
        stranger.stdout.readline()
        code, _, errors = bench.run("--connect", "run", "a.xml", "--xsl", "copy.xsl", "-o", "-")
        stranger.kill()
        stranger.communicate()
    check(code == 0 and "is served by another user; running without it" in errors, f"a stranger is trusted: {errors}")
    return 0


def test_idle(bench):
    """Servers and workers end when nothing comes; a worker that has served enough is replaced."""
    server = bench.start("serve", "--idle", "0.05", "--max-requests", "2")
    wait_until(lambda: bench.status()[0], "the server listened")
    bench.copy()
    first = bench.status()[1][0][0]
    for _ in range(2):
        bench.copy()
    check(first not in [each[0] for each in bench.status()[1] if each[1] != "ending"], "the worker was not replaced")
    check(server.wait(SECONDS) == 0 and not os.listdir(bench.place), "the idle server left something")
    server.communicate()
    check(bench.run("serve", "--status")[0] == 1, "there is still a server")
    small = bench.start("serve", "--max-memory", "50")
    wait_until(lambda: bench.status()[0], "the server listened")
    bench.copy()
    wait_until(lambda: not bench.status()[1], "the worker that has grown ended")
    second = bench.start("serve")
    check(outcome(second)[0] == 2, "there are two servers")
    small.send_signal(signal.SIGTERM)
    outcome(small)


TESTS = {name.removeprefix("test_"): test for name, test in list(globals().items()) if name.startswith("test_")}


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True)
    parser.add_argument("--requests", type=int, default=300, help="how many the test of growth makes")
    parser.add_argument("tests", nargs="*", metavar="TEST", help=" ".join(TESTS))
    options = parser.parse_args(arguments)
    results = []
    for name in options.tests or TESTS:
        print(name, flush=True)
        bench = Bench(options, name)
        try:
            results.append(TESTS[name](bench) or 0)
            bench.end()
        except Failure as failure:
            print(f"FAILED {name}: {failure}")
            bench.release()
            bench.run("serve", "--stop")
            results.append(1)
    return 1 if 1 in results else run_cases.SKIPPED if run_cases.SKIPPED in results else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
