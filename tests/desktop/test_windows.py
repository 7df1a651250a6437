#!/usr/bin/env python3
"""Drives the windows with real keys on a display of their own, and looks at what comes of it in files.

usage: test_windows.py --build FOLDER [TEST...]
"""

import argparse
import os
import shutil
import sys
import tempfile
import unittest

from display import Display, NotThere, Windows

BUILD = ""

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

# Every input takes long enough for a person to press a button meanwhile.
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
        path = os.path.join(self.folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path

    def read(self, name):
        with open(os.path.join(self.folder, name), encoding="utf-8") as file:
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

    def open_dialog(self, windows, title, *keys):
        self.display.keys(*keys)
        windows.wait(f"active {title}")
        self.display.find(title)

    def add_transformation(self, name, *more):
        """In the application's catalogue, through the command line."""
        status = os.spawnve(os.P_WAIT, os.path.join(BUILD, "bin", "vlxslt"),
                            ["vlxslt", "add", name, "--application", "DITA", "--yes", *more],
                            os.environ | {"VLXSLT_CONFIG": self.path("vlxslt.toml")})
        self.assertEqual(status, 0)


    def leave(self, windows):
        self.display.find("XSLT Workbench")
        self.display.keys("ctrl+q")
        self.assertEqual(windows.end(), 0)

    def test_a_run_asks_before_it_overwrites(self):
        self.add_transformation("Beside", "--xsl", "text.xsl", "--suffix", "-out")
        windows = self.workbench("a.xml")
        for answer, before, after in ((None, None, "topic 1"), ("Escape", "old", "old"), ("Return", "old", "topic 1")):
            if before:
                self.write("a-out.xml", before)
            self.open_dialog(windows, "Choose Transformation", "ctrl+r")
            self.display.keys("Home", "Down", "Up", "alt+o")
            windows.wait("idle")  # chosen; the run is next
            if answer:
                windows.wait("alert OK to overwrite existing file " + self.path("a-out.xml"))
                self.display.find("^XSLT$")
                self.display.keys(answer)
            windows.wait("idle")
            self.assertEqual(self.read("a-out.xml"), after)
        self.leave(windows)

    def test_a_map_unfolds_and_runs_with_its_topics(self):
        self.write("m.ditamap", '<map><topicref href="t/one.dita"/><topicref href="t/two.dita"/></map>')
        self.write("t/one.dita", "<topic/>")
        self.write("t/two.dita", "<topic/>")
        windows = self.workbench("m.ditamap")
        self.add_transformation("Beside", "--xsl", self.path("text.xsl"), "--suffix", "-out")
        self.open_dialog(windows, "Advanced Run", "shift+F5")
        self.display.keys("Tab", "space", "alt+t", "Tab", "Tab", "space")
        windows.wait("active Choose Transformation")
        self.display.find("Choose Transformation")
        self.display.keys("Home", "Down", "Up", "alt+o")
        windows.wait("active Advanced Run")
        self.display.keys("alt+r")
        windows.wait("progress " + self.path("m.ditamap"))
        windows.wait("progress " + self.path("t/two.dita"))
        windows.wait("idle")
        self.assertEqual(self.read("t/one-out.dita"), "topic 1")
        self.assertEqual(self.read("t/two-out.dita"), "topic 1")
        self.leave(windows)

    def test_parameters_are_added_and_deleted_in_the_grid(self):
        self.add_transformation("One", "--xsl", self.path("text.xsl"), "--suffix", "-out", "-p", "first=1", "-p", "depth=2")
        windows = self.workbench("a.xml")
        self.open_dialog(windows, "Manage Transformations", "ctrl+m")
        self.display.keys("Home", "Down", "Up", "alt+e")
        windows.wait("active Edit Transformation")
        self.display.find("Edit Transformation")
        # From the processor on to the button behind it.
        self.display.keys("alt+x", *["Tab"] * 4, "space")
        windows.wait("active Stylesheet Parameters")
        self.display.find("Stylesheet Parameters")
        self.display.keys("Down", "alt+d")  # the first row goes
        windows.wait("settled Stylesheet Parameters, rows: 2")
        self.display.keys("alt+o")
        windows.wait("active Edit Transformation")
        self.display.keys("alt+s", "Tab")
        self.display.type("-new")
        windows.wait("settled Edit Transformation, usable")
        self.display.keys("Return", "Escape")  # saves and stays, then closes
        windows.wait("active Manage Transformations")
        self.display.find("Manage Transformations")
        self.display.keys("Escape")
        windows.wait("idle")
        self.assertNotIn('name="first"', self.read("dita.xml"))
        self.assertIn('name="depth"', self.read("dita.xml"))
        self.assertIn('suffix="-new"', self.read("dita.xml"))
        self.leave(windows)

    def test_a_long_run_is_cancelled(self):
        for name in ("in/1.xml", "in/2.xml", "in/3.xml"):
            self.write(name, "<topic/>")
        self.add_transformation("Slow", "--xsl", self.path("slow.xsl"), "--suffix", "-out")
        windows = self.workbench("in/1.xml", "in/2.xml", "in/3.xml")
        self.open_dialog(windows, "Advanced Run", "shift+F5")
        self.display.keys("alt+a", "alt+t", "Tab", "Tab", "space")
        windows.wait("active Choose Transformation")
        self.display.find("Choose Transformation")
        self.display.keys("Home", "Down", "Up", "alt+o")
        windows.wait("active Advanced Run")
        self.display.keys("alt+r")
        windows.wait("progress")
        self.display.find("XSLT Workbench")
        self.display.keys("ctrl+period")
        windows.wait("cancelling")
        windows.wait("idle")
        self.assertEqual(self.read("in/1-out.xml"), "1048576")
        self.assertFalse(os.path.exists(self.path("in/3-out.xml")))
        self.leave(windows)

    def test_a_document_whose_file_is_gone_does_no_harm(self):
        for name in ("in/1.xml", "in/2.xml"):
            self.write(name, "<topic/>")
        self.add_transformation("Slow", "--xsl", self.path("slow.xsl"), "--suffix", "-out")
        windows = self.workbench("in/1.xml", "in/2.xml")
        os.remove(self.path("in/2.xml"))
        self.open_dialog(windows, "Choose Transformation", "ctrl+r")
        self.display.keys("Escape")
        windows.wait("idle")
        self.display.find("XSLT Workbench")
        self.display.keys("ctrl+w")
        windows.wait("documents")
        self.leave(windows)


def main():
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
        return 77
    result = unittest.main(argv=[sys.argv[0], *rest], exit=False, verbosity=2).result
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
