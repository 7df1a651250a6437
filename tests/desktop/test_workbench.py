#!/usr/bin/env python3
"""The workbench: documents, runs, the log, outputs and preferences.

usage: test_workbench.py --build FOLDER [TEST...]
"""

import os
import pathlib
import re
import subprocess
import tomllib

from display import await_line
from window_test import CONFIGURATION, PROJECT, WindowTest, main

MESSAGES = ("Output:/etc/passwd", "Error at file /x, line 1", "/x:1:1: forged")

TALKING_XSL = f"""\
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text"/>
  <xsl:template match="/">
    {"".join(f"<xsl:message>{message}</xsl:message>" for message in MESSAGES)}
    <xsl:value-of select="name(*)"/>
  </xsl:template>
</xsl:stylesheet>
"""

SECONDARY_XSL = """\
<xsl:stylesheet version="3.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text"/>
  <xsl:template match="/">
    <xsl:result-document href="{}">second</xsl:result-document>
    <xsl:text>first</xsl:text>
  </xsl:template>
</xsl:stylesheet>
"""


class WorkbenchTest(WindowTest):
    def test_a_map_unfolds_and_runs_with_its_topics(self):
        topics = [self.path(f"t/{name}.dita") for name in ("one", "bad", "two")]
        self.write("m.ditamap", "<map>%s</map>" % "".join(f'<topicref href="{topic}"/>' for topic in topics))
        for topic in topics:
            self.write(topic, "<topic>" if "bad" in topic else "<topic/>")
        self.write("talk.xsl", TALKING_XSL)
        windows = self.workbench("m.ditamap")
        self.add_transformation("Beside", "--xsl", self.path("talk.xsl"), "--suffix", "-out")
        self.open_dialog(windows, "Advanced Run", "shift+F5")
        self.run_first(windows, "Tab", "space")
        windows.wait("progress " + self.path("m.ditamap"))
        events = windows.wait_for_all("idle")
        self.assertEqual(self.read("t/one-out.dita"), "topic")
        self.assertEqual(self.read("t/two-out.dita"), "topic")
        one, bad, two = topics
        for topic, status in ((one, "\u2713 done"), (bad, "\u2717 failed"), (two, "\u2713 done")):
            self.assertIn(f"status {status} {topic}", events)
        self.assertIn("summary 4 inputs: 3 transformed, 1 failed", events)
        # Rows for results only, links for diagnostics only.
        outputs = [event for event in events if event.startswith("output ")]
        self.assertEqual(outputs, [f"output result {self.path(name)}"
                                   for name in ("m-out.ditamap", "t/one-out.dita", "t/two-out.dita")])
        links = [event for event in events if re.match(r"log \w+ link", event)]
        self.assertTrue(links and all(event.startswith("log error link") and bad in event for event in links), links)
        for message in MESSAGES:
            self.assertEqual(events.count("log plain " + message), 3)
        # The next run takes only the map.
        self.run_chosen(windows)
        self.answer(windows, "OK to overwrite", "Return")
        events = windows.wait_for_all("summary 1 input: 1 transformed")
        marked = [event for event in events if event.startswith("status")]
        self.assertEqual(marked, [f"status {status} {self.path('m.ditamap')}"
                                  for status in ("\u25b8 running", "\u2713 done")])
        windows.wait("idle")
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
        windows.wait("told There is no problem with a place")
        self.run_chosen(windows)
        windows.wait("told The run failed: 1 input: 1 failed")
        self.display.find("XSLT Workbench")
        self.display.keys("F4")
        windows.wait("edit")
        self.wait_for_file("edited")
        self.assertEqual(self.read("edited"), self.path("bad.xml") + " 3\n")
        self.leave(windows)

    def test_an_opened_result_is_viewed_and_saved(self):
        self.add_transformation("Open", "--xsl", self.path("text.xsl"), "--open-output", "vellis")
        # The default browser writes down what it is to open.
        self.write("browser", "#!/bin/sh\necho \"$@\" > \"$0.tmp\"; mv \"$0.tmp\" \"$0-opened\"\n")
        os.chmod(self.path("browser"), 0o755)
        self.write("home/.local/share/applications/browser.desktop",
                   f"[Desktop Entry]\nType=Application\nName=Browser\nExec={self.path('browser')} %u\n"
                   "MimeType=x-scheme-handler/http;\n")
        self.write("home/.config/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=browser.desktop\n")
        windows = self.workbench("a.xml")
        self.run_chosen(windows)
        opened = windows.wait("output opened ").removeprefix("output opened ")
        windows.wait("result text topic 1")  # by itself
        windows.wait("idle")
        self.display.find("XSLT Workbench")
        self.display.keys("alt+v")
        windows.wait("result text topic 1")
        self.display.keys("alt+b")
        self.wait_for_file("browser-opened")
        self.assertIn(opened, self.read("browser-opened"))  # as a URL or as a path
        self.write("saved.txt", "old")
        self.display.keys("alt+s")
        windows.wait("chooser Save Result")
        self.display.find("Save Result")
        self.display.keys("ctrl+a")
        self.display.type(self.path("saved.txt"))
        self.insist(windows, "Return", "alert Replace the existing file")
        self.display.find("^XSLT Workbench$")
        self.display.keys("Escape")
        self.display.find("Save Result")
        self.assertEqual(self.read("saved.txt"), "old")
        self.insist(windows, "Return", "alert Replace the existing file")
        self.display.find("^XSLT Workbench$")
        self.display.keys("alt+y")
        windows.wait("told Saved as")
        self.assertEqual(self.read("saved.txt"), "topic 1")
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
        self.assertEqual([each["name"] for each in tomllib.loads(text)["processor"]], ["XSLTC", "Missing"])

    def test_a_processor_that_is_added_after_a_run_can_be_used(self):
        self.add_transformation("Beside", "--xsl", self.path("text.xsl"), "--suffix", "-out")
        windows = self.workbench("a.xml")
        self.run_chosen(windows)
        windows.wait("idle")
        windows.wait("idle")
        self.display.find("XSLT Workbench")
        self.display.keys("alt+f", "p")
        self.reach(windows, "Preferences")
        self.display.keys("alt+a")
        windows.wait("added")
        jars = os.path.join(PROJECT, "build", "processors", "saxon")
        for key, text in ((None, "Saxon"), ("Tab", f"{jars}/Saxon-HE.jar;{jars}/xmlresolver.jar"),
                          ("Tab", "net.sf.saxon.TransformerFactoryImpl")):
            if key:
                self.display.keys(key)
            self.display.type(text)
        self.display.keys("Return")
        windows.wait("told Saved in")
        self.write("two.xsl", SECONDARY_XSL.format(pathlib.Path(self.path("second.txt")).as_uri()))
        self.add_transformation("Again", "--xsl", self.path("two.xsl"), "--suffix", "-again", "--processor", "Saxon")
        self.open_dialog(windows, "Choose Transformation", "ctrl+r")
        self.press(windows, "Choose Transformation", "OK", "alt+o", "Home", "Down")
        windows.wait("log plain XSL Processor Messages (Processor: Saxon)")
        events = windows.wait_for_all("idle")
        self.assertEqual([event for event in events if event.startswith("output ")],
                         [f"output result {self.path('a-again.xml')}", f"output secondary {self.path('second.txt')}"])
        self.assertEqual(self.read("second.txt"), "second")
        self.leave(windows)


if __name__ == "__main__":
    main()
