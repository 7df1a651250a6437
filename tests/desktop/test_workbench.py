#!/usr/bin/env python3
"""The workbench: documents, runs, the log, outputs and preferences.

usage: test_workbench.py --build FOLDER [TEST...]
"""

import os
import subprocess
import tomllib

from display import await_line
from window_test import CONFIGURATION, PROJECT, WindowTest, main


class WorkbenchTest(WindowTest):
    def test_a_map_unfolds_and_runs_with_its_topics(self):
        self.write("m.ditamap", '<map><topicref href="t/one.dita"/><topicref href="t/two.dita"/></map>')
        self.write("t/one.dita", "<topic/>")
        self.write("t/two.dita", "<topic/>")
        windows = self.workbench("m.ditamap")
        self.add_transformation("Beside", "--xsl", self.path("text.xsl"), "--suffix", "-out")
        self.open_dialog(windows, "Advanced Run", "shift+F5")
        self.run_first(windows, "Tab", "space")
        windows.wait("progress " + self.path("m.ditamap"))
        windows.wait("progress " + self.path("t/two.dita"))
        windows.wait("idle")
        self.assertEqual(self.read("t/one-out.dita"), "topic 1")
        self.assertEqual(self.read("t/two-out.dita"), "topic 1")
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
        # The distribution's Python, which has the GTK bindings.
        source = subprocess.Popen(["/usr/bin/python3", os.path.join(os.path.dirname(__file__), "drag_source.py"),
                                   self.write("b.xml", "<topic/>"), strange],
                                  env=self.display.environment(), stdout=subprocess.PIPE, text=True)
        self.addCleanup(source.communicate)
        self.addCleanup(source.kill)
        await_line(source.stdout, "shown")
        self.display.drag(source, 900, 500)
        windows.wait("documents " + os.path.basename(strange))
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
        self.reach(windows, "Preferences")
        self.display.keys("alt+h")
        windows.wait("checked Loads")
        # A processor that cannot be loaded.
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
        self.reach(windows, "Preferences")
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


if __name__ == "__main__":
    main()
