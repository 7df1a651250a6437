"""Runs programs of the build with system calls that fail, or that stop the process until it is told to go on; see
failing_calls.cpp."""

import argparse
import itertools
import os
import signal
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
import run_cases  # noqa: E402
from checks import Failure, check  # noqa: E402, F401

SECONDS = 120

STYLESHEET = """\
<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output omit-xml-declaration="yes"/>
  <xsl:template match="/doc">
    <page of="{@name}"><xsl:for-each select="1 to 9000"><row><xsl:value-of select="."/></row></xsl:for-each></page>
    <xsl:if test="@second">
      <xsl:result-document href="{@second}"><second of="{@name}"/></xsl:result-document>
    </xsl:if>
  </xsl:template>
</xsl:stylesheet>
"""


class Bench(run_cases.Player):
    """A work folder with the common configuration and a stylesheet that writes more than one buffer."""

    def __init__(self, build, name):
        super().__init__(argparse.Namespace(cases=run_cases.TESTS, build=build, windows=False), name)
        self.prepare([])
        self.tools = Path(self.build) / "tests/faults"
        self.place = Path(self.work)
        (self.place / "page.xsl").write_text(STYLESHEET)
        self.numbers = itertools.count()

    def write(self, name, text):
        path = self.place / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def start(self, command, folder=None, **orders):
        """With the orders at=, do= and calls= for the calls below the folder."""
        number = next(self.numbers)
        environment = self.environment()
        log = Path(self.top) / f"calls-{number}"
        console = Path(self.top) / f"console-{number}"
        if folder:
            environment |= {"LD_PRELOAD": str(self.tools / "failing_calls.so"), "VLXSLT_FAULT_FOLDER": str(folder),
                            "VLXSLT_FAULT_LOG": str(log)}  # fmt: skip
            environment |= {"VLXSLT_FAULT_" + name.upper(): str(value) for name, value in orders.items()}
            # A sanitizer's library does not mind not being the first.
            environment["ASAN_OPTIONS"] = environment.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"
        with open(console, "wb") as output:
            process = subprocess.Popen(command, cwd=self.work, env=environment, stdin=subprocess.DEVNULL, stdout=output,
                                       stderr=output)  # fmt: skip
        return Run(process, log, console)


class Run:
    """A process, what it says and the calls it made."""

    def __init__(self, process, log, console):
        self.process = process
        self.log = log
        self.console = console

    def finish(self):
        """The exit code."""
        try:
            return self.process.wait(SECONDS)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            raise Failure(f"{self.process.args} did not end: {self.said()}") from None

    def wait_for_stop(self):
        """Whether it stopped before a call, and did not end."""
        _, status = os.waitpid(self.process.pid, os.WUNTRACED)
        if os.WIFSTOPPED(status):
            return True
        self.process.returncode = os.waitstatus_to_exitcode(status)
        return False

    def go_on(self):
        self.process.send_signal(signal.SIGCONT)

    def said(self):
        return self.console.read_text(errors="replace")

    def calls(self):
        """Of each counted call: its name, its path and what was done."""
        found = []
        for line in self.log.read_text().splitlines() if self.log.exists() else ():
            _, call, rest = line.split(" ", 2)
            path, _, action = rest.rpartition(" ") if rest.endswith(ACTION_ENDS) else (rest, "", "")
            found.append((call, path, action))
        return found


ACTION_ENDS = tuple(" " + name for name in ("ENOSPC", "EIO", "EACCES", "EPERM", "EINTR", "EROFS", "short", "kill", "stop"))
