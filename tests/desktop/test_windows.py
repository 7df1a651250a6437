#!/usr/bin/env python3
"""Drives the windows with real keys on a display of their own, and looks at what comes of it in files.

usage: test_windows.py --build FOLDER [TEST...]
"""

import argparse
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import tomllib
import unittest
from xml.etree import ElementTree

from display import Display, NotThere, Windows, await_line

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


# More than are done before a person has stopped the run, on a busy machine too.
SLOW_INPUTS = [f"in/{number}.xml" for number in range(1, 6)]


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

    def wait_for_file(self, name):
        """What a program leaves that nobody can wait for."""
        deadline = time.monotonic() + 30
        while not os.path.exists(self.path(name)):
            self.assertLess(time.monotonic(), deadline, name + " did not appear")
            time.sleep(0.02)

    def answer(self, windows, question, key, title="^XSLT$"):
        windows.wait("alert " + question)
        self.display.find(title)
        self.display.keys(key)

    def insist(self, windows, key, event):
        """Choosers swallow keys while they read a folder, and say nothing of it."""
        for _ in range(20):
            self.display.keys(key)
            try:
                return windows.wait(event, seconds=1)
            except AssertionError:
                continue
        raise AssertionError(f"{key} never led to '{event}'")

    def choose_first(self, windows):
        """The first transformation of the list, in the dialog that has just opened."""
        self.press(windows, "Choose Transformation", "OK", "alt+o", "Home", "Down", "Up")

    def press(self, windows, title, button, key, *keys_before):
        """As soon as what was done before has made the button one that can be pressed."""
        self.display.keys(*keys_before) if keys_before else None
        windows.wait_until_shown(title, button)
        self.display.keys(key)

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
            self.choose_first(windows)
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
        self.choose_first(windows)
        windows.wait("active Advanced Run")
        self.press(windows, "Advanced Run", "Run", "alt+r")
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
        self.press(windows, "Manage Transformations", "Edit...", "alt+e", "Home", "Down", "Up")
        windows.wait("active Edit Transformation")
        self.display.find("Edit Transformation")
        # From the processor on to the button behind it.
        self.press(windows, "Edit Transformation", "Parameters...", "alt+x")
        self.display.keys(*["Tab"] * 4, "space")
        windows.wait("active Stylesheet Parameters")
        self.display.find("Stylesheet Parameters")
        self.display.keys("Down")
        windows.wait_until_shown("Stylesheet Parameters", "Delete")
        self.display.keys("alt+d")  # the first row goes
        windows.wait_until_shown("Stylesheet Parameters", "rows: 2")
        self.display.keys("alt+o")
        windows.wait("active Edit Transformation")
        self.display.keys("alt+s", "Tab")
        self.display.type("-new")
        windows.wait_until_shown("Edit Transformation", "Save")
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
        windows = self.start_slow_run(*SLOW_INPUTS)
        self.see_it_run(windows)
        self.display.keys("ctrl+period")
        windows.wait("cancelling")
        windows.wait("idle")
        self.assertEqual(self.read("in/1-out.xml"), "1048576")
        self.assertFalse(os.path.exists(self.path("in/5-out.xml")))
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

    def names(self, catalogue="dita.xml"):
        return [name.text for name in ElementTree.parse(self.path(catalogue)).iter("Name")]

    def test_a_transformation_is_made_edited_and_deleted(self):
        windows = self.workbench("a.xml")
        self.open_dialog(windows, "New Transformation", "ctrl+n")
        self.display.type("Plain")
        self.display.keys("alt+x", "Tab")
        self.display.type(self.path("text.xsl"))
        self.display.keys("Tab", "Tab", "Down", "Down")  # the processor
        self.press(windows, "New Transformation", "Add Suffix To Output File:", "alt+s", "alt+f")
        windows.wait_until_shown("New Transformation", "#18")
        self.display.keys("Tab")
        self.display.type("-plain")
        windows.wait_until_shown("New Transformation", "Save As...")
        self.display.keys("Tab", "Tab", "Tab", "space")
        windows.wait("chooser Save Transformation File")
        self.display.find("Save Transformation File")
        self.display.keys("ctrl+a")
        self.display.type(self.path("dita.xml"))
        self.insist(windows, "Return", "settled New Transformation")
        self.display.find("New Transformation")
        self.display.keys("Escape")
        windows.wait("idle")
        self.assertEqual(self.names(), ["Plain"])
        self.display.find("XSLT Workbench")
        self.open_dialog(windows, "Manage Transformations", "ctrl+m")
        self.press(windows, "Manage Transformations", "Edit...", "alt+e", "Home", "Down", "Up")
        windows.wait("active Edit Transformation")
        self.display.find("Edit Transformation")
        self.display.keys("ctrl+a")
        self.display.type("Beside")
        windows.wait_until_shown("Edit Transformation", "Save")
        self.display.keys("Return", "Escape")
        windows.wait("active Manage Transformations")
        self.assertEqual(self.names(), ["Beside"])
        self.display.find("Manage Transformations")
        self.display.keys("Escape")
        windows.wait("idle")
        self.display.find("XSLT Workbench")
        self.open_dialog(windows, "Manage Transformations", "ctrl+m")
        self.display.keys("Home", "Down", "Up")
        windows.wait_until_shown("Manage Transformations", "Delete")
        self.display.keys(*["Tab"] * 3)
        for key in ("Escape", "Return", "alt+y"):  # no is the default
            self.assertEqual(self.names(), ["Beside"])
            self.display.keys("space")
            self.answer(windows, "Delete the selected transformation?", key)
            windows.wait("active Manage Transformations")
            self.display.find("Manage Transformations")
        self.display.keys("Escape")
        windows.wait("idle")
        self.assertEqual(self.names(), [])
        self.leave(windows)

    def test_a_parameter_is_typed_into_the_empty_row(self):
        self.add_transformation("One", "--xsl", self.path("text.xsl"), "--suffix", "-out")
        windows = self.workbench("a.xml")
        self.open_dialog(windows, "Manage Transformations", "ctrl+m")
        self.press(windows, "Manage Transformations", "Edit...", "alt+e", "Home", "Down", "Up")
        windows.wait("active Edit Transformation")
        self.display.find("Edit Transformation")
        self.press(windows, "Edit Transformation", "Parameters...", "alt+x")
        self.display.keys(*["Tab"] * 4, "space")
        windows.wait_until_shown("Stylesheet Parameters", "rows: 2")  # the stylesheet's own one, and the empty one
        self.display.find("Stylesheet Parameters")
        self.display.keys(*["Down"] * 5)
        self.display.type("width")
        windows.wait_until_shown("Stylesheet Parameters", "rows: 3")
        self.display.keys("Return", "Down")
        self.display.type("7")
        windows.wait("settled Stylesheet Parameters")
        self.display.keys("alt+o")
        windows.wait("active Edit Transformation")
        self.display.find("Edit Transformation")
        self.display.keys("alt+f", "alt+s")
        windows.wait_until_shown("Edit Transformation", "Save")
        self.display.keys("Return", "Escape")
        windows.wait("active Manage Transformations")
        self.display.find("Manage Transformations")
        self.display.keys("Escape")
        windows.wait("idle")
        self.assertIn('name="width"', self.read("dita.xml"))
        self.assertIn(">7<", self.read("dita.xml").replace('"7"', ">7<"))
        self.leave(windows)

    def test_documents_are_opened_with_the_chooser_and_again_from_the_recent_ones(self):
        strange = self.path("Bob's & more.xml")
        self.write(os.path.basename(strange), "<topic/>")
        windows = self.workbench()
        self.display.keys("alt+o")  # the button of the empty page
        self.display.find("Open Documents")
        self.display.keys("ctrl+l", "ctrl+a")
        self.display.type(strange)
        self.display.keys("Return")
        windows.wait("documents " + os.path.basename(strange))
        self.display.find("XSLT Workbench")
        self.display.keys("ctrl+w")
        windows.wait("documents")
        self.display.keys("alt+f", "r", "Return")
        windows.wait("documents " + os.path.basename(strange))
        self.leave(windows)

    def test_files_are_dragged_in(self):
        strange = self.write("Größe „M“ & more.xml", "<topic/>")
        windows = self.workbench("a.xml")
        self.display.tool("windowmove", "--sync", self.display.find("XSLT Workbench"), "300", "200")
        # The one of the distribution, whose bindings of the toolkit are a package.
        source = subprocess.Popen(["/usr/bin/python3", os.path.join(os.path.dirname(__file__), "drag_source.py"),
                                   self.write("b.xml", "<topic/>"), strange],
                                  env=self.display.environment(), stdout=subprocess.PIPE, text=True)
        self.addCleanup(source.communicate)
        self.addCleanup(source.kill)
        await_line(source.stdout, "shown")
        self.display.drag(source, 900, 500)
        windows.wait("documents " + os.path.basename(strange))
        self.leave(windows)

    def test_a_problem_opens_the_editor_at_its_line(self):
        self.write("bad.xml", "<topic>\n  <unclosed>\n</topic>\n")
        self.write("editor", "#!/bin/sh\necho \"$@\" > edited.tmp; mv edited.tmp edited\n")
        os.chmod(self.path("editor"), 0o755)
        self.write("vlxslt.toml", f'editor = "{self.path("editor")} {{file}} {{line}}"\n' + CONFIGURATION)
        self.add_transformation("Beside", "--xsl", "text.xsl", "--suffix", "-out")
        windows = self.workbench("bad.xml")
        self.display.keys("F4")
        windows.wait("told The log names no place")
        self.open_dialog(windows, "Choose Transformation", "ctrl+r")
        self.choose_first(windows)
        windows.wait("told The run failed")
        self.display.find("XSLT Workbench")
        self.display.keys("F4")
        windows.wait("edit")
        self.wait_for_file("edited")
        self.assertEqual(self.read("edited"), self.path("bad.xml") + " 3\n")
        self.leave(windows)

    def test_preferences_check_a_processor_and_keep_comments(self):
        windows = self.workbench("a.xml")
        self.display.keys("alt+f", "p")
        windows.wait("active Preferences")
        self.display.find("Preferences")
        self.display.keys("alt+h")
        windows.wait("checked Loads")
        # Add one that does not load.
        self.display.keys("alt+a")
        windows.wait("added")
        self.display.type("Missing")
        self.display.keys("Tab", "Tab")
        self.display.type("no.such.Factory")
        self.display.keys("alt+h")
        self.assertIn("no.such.Factory", windows.wait("checked"))
        self.display.keys("Return")
        windows.wait("told Saved in")
        self.leave(windows)
        text = self.read("vlxslt.toml")
        for kept in ("# Kept through every change.", "# beside this file", "# Maps and topics.", 'name = "XSLTC"'):
            self.assertIn(kept, text)
        with open(self.path("vlxslt.toml"), "rb") as file:
            names = [each["name"] for each in tomllib.load(file)["processor"]]
        self.assertEqual(names, ["XSLTC", "Missing"])

    def test_a_processor_that_is_added_after_a_run_can_be_used(self):
        self.add_transformation("Beside", "--xsl", self.path("text.xsl"), "--suffix", "-out")
        windows = self.workbench("a.xml")
        self.open_dialog(windows, "Choose Transformation", "ctrl+r")
        self.choose_first(windows)
        windows.wait("idle")
        windows.wait("idle")
        self.display.find("XSLT Workbench")
        self.display.keys("alt+f", "p")
        windows.wait("active Preferences")
        self.display.find("Preferences")
        self.display.keys("alt+a")
        windows.wait("added")
        jars = os.path.join(PROJECT, "build", "processors", "xalan")
        for key, text in ((None, "Xalan"), ("Tab", f"{jars}/xalan.jar;{jars}/serializer.jar"),
                          ("Tab", "org.apache.xalan.processor.TransformerFactoryImpl")):
            if key:
                self.display.keys(key)
            self.display.type(text)
        self.display.keys("Return")
        windows.wait("told Saved in")
        self.add_transformation("Again", "--xsl", self.path("text.xsl"), "--suffix", "-again", "--processor", "Xalan")
        self.open_dialog(windows, "Choose Transformation", "ctrl+r")
        self.press(windows, "Choose Transformation", "OK", "alt+o", "Home", "Down")
        windows.wait("log XSL Processor Messages (Processor: Xalan)")
        windows.wait("idle")
        self.assertEqual(self.read("a-again.xml"), "topic 1")
        self.leave(windows)

    def start_slow_run(self, *names):
        for name in names:
            self.write(name, "<topic/>")
        self.add_transformation("Slow", "--xsl", self.path("slow.xsl"), "--suffix", "-out")
        windows = self.workbench(*names)
        self.open_dialog(windows, "Advanced Run", "shift+F5")
        self.display.keys("alt+a", "alt+t", "Tab", "Tab", "space")
        windows.wait("active Choose Transformation")
        self.display.find("Choose Transformation")
        self.choose_first(windows)
        windows.wait("active Advanced Run")
        self.press(windows, "Advanced Run", "Run", "alt+r")
        return windows

    def see_it_run(self, windows):
        windows.wait("progress")
        self.display.find("XSLT Workbench")

    def test_closing_during_a_run_asks_and_ends_whole(self):
        windows = self.start_slow_run(*SLOW_INPUTS)
        self.see_it_run(windows)
        self.display.keys("ctrl+q")
        self.answer(windows, "A run is going on", "Escape", "^XSLT Workbench$")
        windows.wait("progress " + self.path("in/2.xml"))
        self.display.keys("ctrl+q")
        self.answer(windows, "A run is going on", "Return", "^XSLT Workbench$")
        self.assertEqual(windows.end(), 0)
        self.assertEqual(self.read("in/1-out.xml"), "1048576")
        self.assertFalse(os.path.exists(self.path("in/5-out.xml")))

    def test_a_dialog_on_its_own_shows_its_run(self):
        self.add_transformation("Slow", "--xsl", self.path("slow.xsl"), "--suffix", "-out")
        for name in SLOW_INPUTS:
            self.write(name, "<topic/>")
        self.write("in/0.xml", "<topic>")
        opened = ["--open=" + name for name in ("in/0.xml", *SLOW_INPUTS[:-1])]
        windows = self.start("dialog", "advanced", *opened, "--active", SLOW_INPUTS[-1])
        windows.wait("active Advanced Run")
        self.display.find("Advanced Run")
        self.display.keys("alt+a", "alt+t", "Tab", "Tab", "space")
        windows.wait("active Choose Transformation")
        self.display.find("Choose Transformation")
        self.choose_first(windows)
        windows.wait("active Advanced Run")
        self.press(windows, "Advanced Run", "Run", "alt+r")
        windows.wait("progress " + self.path("in/1.xml"))
        self.display.find("XSLT Run")
        self.display.keys("alt+c")
        windows.wait("cancelling")
        windows.wait("idle")
        # Something failed, so it stays until it is closed.
        self.display.find("XSLT Run")
        self.display.keys("alt+F4")
        self.assertEqual(windows.end(), 130)
        self.assertEqual(self.read("in/1-out.xml"), "1048576")
        self.assertFalse(os.path.exists(self.path("in/5-out.xml")))

    def test_a_run_that_never_ends_can_be_left(self):
        self.write("slow.xsl", SLOW_XSL.replace("1048576", "1152921504606846976"))
        self.write("in/1-out.xml", "old")
        windows = self.start_slow_run("in/1.xml")
        self.answer(windows, "OK to overwrite", "Return")
        windows.wait("active workbench")
        self.display.keys("ctrl+q")
        self.answer(windows, "A run is going on", "Return", "^XSLT Workbench$")
        windows.wait("cancelling")
        self.display.find("XSLT Workbench")
        self.display.keys("ctrl+q")
        self.answer(windows, "The current input is not done yet", "alt+y", "^XSLT Workbench$")
        self.assertEqual(windows.end(), 1)
        self.assertEqual(self.read("in/1-out.xml"), "old")
        self.assertEqual(sorted(os.listdir(self.path("in"))), ["1-out.xml", "1.xml"])

    def test_a_display_that_goes_away_loses_nothing(self):
        windows = self.start_slow_run(*SLOW_INPUTS)
        self.see_it_run(windows)
        self.display.server.kill()
        self.assertEqual(windows.end(), 1)
        windows.wait("departing")
        left = sorted(set(os.listdir(self.path("in"))) - {os.path.basename(name) for name in SLOW_INPUTS})
        self.assertLess(len(left), len(SLOW_INPUTS))
        self.assertEqual(left, [f"{number}-out.xml" for number in range(1, len(left) + 1)])
        for name in left:
            self.assertEqual(self.read("in/" + name), "1048576")

    def test_a_signal_ends_a_dialog_and_a_question(self):
        self.add_transformation("Beside", "--xsl", "text.xsl", "--suffix", "-out")
        for signalled in (signal.SIGTERM, signal.SIGINT):
            windows = self.workbench("a.xml")
            self.open_dialog(windows, "Manage Transformations", "ctrl+m")
            self.display.keys("Home", "Down", "Up")
            windows.wait_until_shown("Manage Transformations", "Delete")
            self.display.keys(*["Tab"] * 3, "space")
            windows.wait("alert Delete the selected")
            windows.process.send_signal(signalled)
            self.assertEqual(windows.end(), 130)
            self.assertEqual(self.names(), ["Beside"])


class PictureTaker(unittest.TextTestResult):
    """Keeps what the screen showed when a test went wrong."""

    def addError(self, test, error):
        self.take(test)
        super().addError(test, error)

    def addFailure(self, test, error):
        self.take(test)
        super().addFailure(test, error)

    def take(self, test):
        folder = os.path.join(BUILD, "tests", "windows")
        os.makedirs(folder, exist_ok=True)
        test.display.take_picture(os.path.join(folder, test.id().rpartition(".")[2] + ".png"))


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
    runner = unittest.TextTestRunner(resultclass=PictureTaker, verbosity=2)
    result = unittest.main(argv=[sys.argv[0], *rest], exit=False, testRunner=runner).result
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
