"""The base of the window tests: each drives the real program with real keys on a virtual display, waits for its window
events and checks the files that result."""

import argparse
import os
import shutil
import sys
import tempfile
import time
import unittest
from xml.etree import ElementTree

from display import Display, NotThere, Windows

BUILD = ""
PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

CONFIGURATION = """\
# Kept through every change.
default_catalogue = "default.xml"   # beside this file

[[processor]]
name = "XSLTC"
class_name = "com.sun.org.apache.xalan.internal.xsltc.trax.TransformerFactoryImpl"

# Maps and topics.
[[application]]
name = "DITA"
catalogue = "dita.xml"
root = ["map", "topic"]
"""

TEXT_XSL = """\
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:param name="depth" select="1"/>
  <xsl:output method="text"/>
  <xsl:template match="/"><xsl:value-of select="concat(name(*), ' ', $depth)"/></xsl:template>
</xsl:stylesheet>
"""

# Takes long enough for keys to be pressed during each input.
SLOW_XSL = """\
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text"/>
  <xsl:template name="count"><xsl:param name="left"/>
    <xsl:choose>
      <xsl:when test="$left = 1">x</xsl:when>
      <xsl:otherwise>
        <xsl:call-template name="count"><xsl:with-param name="left" select="$left div 2"/></xsl:call-template>
        <xsl:call-template name="count"><xsl:with-param name="left" select="$left div 2"/></xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>
  <xsl:template match="/">
    <xsl:variable name="long"><xsl:call-template name="count"><xsl:with-param name="left" select="1048576"/></xsl:call-template></xsl:variable>
    <xsl:value-of select="string-length($long)"/>
  </xsl:template>
</xsl:stylesheet>
"""

# Many times more than are done before the test cancels the run: on a busy machine the keys take as long as some inputs.
SLOW_INPUTS = [f"in/{number}.xml" for number in range(10, 50)]


class WindowTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="vlxslt-windows-")
        self.addCleanup(shutil.rmtree, self.folder)
        self.display = Display()
        self.display.__enter__()
        self.addCleanup(self.display.__exit__)
        self.write("vlxslt.toml", CONFIGURATION)
        self.write("text.xsl", TEXT_XSL)
        self.write("slow.xsl", SLOW_XSL)
        self.write("a.xml", "<topic/>")

    def write(self, name, text):
        path = self.path(name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path

    def read(self, name):
        with open(self.path(name), encoding="utf-8") as file:
            return file.read()

    def path(self, name):
        return os.path.join(self.folder, name)

    def start(self, *words, **environment):
        environment = {
            "VLXSLT_CONFIG": self.path("vlxslt.toml"), "XDG_STATE_HOME": self.path("state"), "HOME": self.path("home"),
            "XDG_CACHE_HOME": os.path.join(BUILD, "tests", "cache"), "TMPDIR": self.folder} | environment
        program = os.path.join(BUILD, "bin", "vlxslt")
        windows = Windows(self.display, program, words, environment, self.folder)
        self.addCleanup(windows.kill)
        return windows

    def workbench(self, *words):
        windows = self.start("desktop", *words)
        windows.wait("documents")
        self.display.find("XSLT Workbench")
        return windows

    def reach(self, windows, title):
        """Waits until the window of that title has the focus."""
        windows.wait(f"active {title}")
        self.display.find(title)

    def open_dialog(self, windows, title, *keys):
        self.display.keys(*keys)
        self.reach(windows, title)

    def close_dialog(self, windows):
        """Closes the only open dialog."""
        self.display.keys("Escape")
        windows.wait("idle")
        self.display.find("XSLT Workbench")

    def add_transformation(self, name, *more):
        """Adds to the application's catalogue with the command line."""
        status = os.spawnve(os.P_WAIT, os.path.join(BUILD, "bin", "vlxslt"),
                            ["vlxslt", "add", name, "--application", "DITA", "--yes", *more],
                            os.environ | {"VLXSLT_CONFIG": self.path("vlxslt.toml")})
        self.assertEqual(status, 0)

    def wait_for_file(self, name):
        """For files of other programs, which write no window events."""
        deadline = time.monotonic() + 30
        while not os.path.exists(self.path(name)):
            self.assertLess(time.monotonic(), deadline, name + " did not appear")
            time.sleep(0.02)

    def answer(self, windows, question, key, title="^XSLT$"):
        windows.wait("alert " + question)
        self.display.find(title)
        self.display.keys(key)

    def insist(self, windows, key, event):
        """Repeats the key until the event comes: file choosers drop keys while they read a folder. A window behind the
        chooser never gets one."""
        chooser = self.display.active()
        for _ in range(30):
            if self.display.active() == chooser:
                self.display.keys(key)
            try:
                return windows.wait(event, seconds=1)
            except AssertionError:
                continue
        raise AssertionError(f"{key} never led to '{event}'")

    def choose_first(self, windows):
        """Chooses the first transformation in the dialog that has just opened."""
        self.press(windows, "Choose Transformation", "OK", "alt+o", "Home", "Down", "Up")

    def run_chosen(self, windows):
        """Runs the first transformation on the active document."""
        self.open_dialog(windows, "Choose Transformation", "ctrl+r")
        self.choose_first(windows)

    def run_first(self, windows, *scope):
        """Runs the first transformation from the dialog for an advanced run, after the keys that choose the inputs."""
        self.display.keys(*scope, "alt+t", "Tab", "Tab", "space")
        self.reach(windows, "Choose Transformation")
        self.choose_first(windows)
        windows.wait("active Advanced Run")
        self.press(windows, "Advanced Run", "Run", "alt+r")

    def press(self, windows, title, button, key, *keys_before):
        """Presses the key when the button is sensitive."""
        self.display.keys(*keys_before) if keys_before else None
        windows.wait_until_shown(title, button)
        self.display.keys(key)

    def leave(self, windows):
        self.display.find("XSLT Workbench")
        self.display.keys("ctrl+q")
        self.assertEqual(windows.end(), 0)

    def names(self, catalogue="dita.xml"):
        return [name.text for name in ElementTree.parse(self.path(catalogue)).iter("Name")]

    def start_slow_run(self, *names):
        for name in names:
            self.write(name, "<topic/>")
        self.add_transformation("Slow", "--xsl", self.path("slow.xsl"), "--suffix", "-out")
        windows = self.workbench(*names)
        self.open_dialog(windows, "Advanced Run", "shift+F5")
        self.run_first(windows, "alt+a")
        return windows

    def check_that_it_was_cut(self):
        """That a slow run ended between two inputs: the first is whole, the last was never begun."""
        first, last = (name.replace(".xml", "-out.xml") for name in (SLOW_INPUTS[0], SLOW_INPUTS[-1]))
        self.assertEqual(self.read(first), "1048576")
        self.assertFalse(os.path.exists(self.path(last)))

    def see_it_run(self, windows):
        windows.wait("progress")
        self.display.find("XSLT Workbench")


class ScreenshotTaker(unittest.TextTestResult):
    """Keeps a screenshot of each failed test."""

    def addError(self, test, error):
        self.take(test)
        super().addError(test, error)

    def addFailure(self, test, error):
        self.take(test)
        super().addFailure(test, error)

    def take(self, test):
        folder = os.path.join(BUILD, "tests", "windows")
        os.makedirs(folder, exist_ok=True)
        test.display.take_screenshot(os.path.join(folder, test.id().rpartition(".")[2] + ".png"))


def main():
    """Runs the tests of the calling module. Exit status 77 without a display."""
    global BUILD
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    options, rest = parser.parse_known_args()
    BUILD = os.path.abspath(options.build)
    try:
        with Display():
            pass
    except NotThere as missing:
        print(f"SKIPPED: {missing} is not installed")
        sys.exit(77)
    runner = unittest.TextTestRunner(resultclass=ScreenshotTaker, verbosity=2)
    result = unittest.main(argv=[sys.argv[0], *rest], exit=False, testRunner=runner).result
    sys.exit(0 if result.wasSuccessful() else 1)
