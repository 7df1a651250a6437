#!/usr/bin/env python3
"""The dialogs, driven with real keys.

usage: test_dialogs.py --build FOLDER [TEST...]
"""

from window_test import SLOW_INPUTS, WindowTest, main


class DialogTest(WindowTest):
    def open_editor(self, windows):
        """For the first transformation of the application."""
        self.open_dialog(windows, "Manage Transformations", "ctrl+m")
        self.press(windows, "Manage Transformations", "Edit...", "alt+e", "Home", "Down", "Up")
        self.reach(windows, "Edit Transformation")

    def open_parameters(self, windows):
        self.open_editor(windows)
        # From the stylesheet to the button behind the processor.
        self.press(windows, "Edit Transformation", "Parameters...", "alt+x")
        self.display.keys(*["Tab"] * 4, "space")
        self.reach(windows, "Stylesheet Parameters")

    def save_and_close(self, windows):
        windows.wait_until_shown("Edit Transformation", "Save")
        self.display.keys("Return", "Escape")  # saves and stays, then closes
        self.reach(windows, "Manage Transformations")
        self.close_dialog(windows)

    def test_a_run_asks_before_it_overwrites(self):
        self.add_transformation("Beside", "--xsl", "text.xsl", "--suffix", "-out")
        windows = self.workbench("a.xml")
        for answer, before, after in ((None, None, "topic 1"), ("Escape", "old", "old"), ("Return", "old", "topic 1")):
            if before:
                self.write("a-out.xml", before)
            self.run_chosen(windows)
            windows.wait("idle")  # chosen; the run is next
            if answer:
                windows.wait("alert OK to overwrite existing file " + self.path("a-out.xml"))
                self.display.find("^XSLT$")
                self.display.keys(answer)
            windows.wait("idle")
            self.assertEqual(self.read("a-out.xml"), after)
        self.leave(windows)

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
        self.insist(windows, "Return", "alert File doesn't exist " + self.path("dita.xml"))
        self.display.find("^XSLT$")
        self.display.keys("Return")
        self.reach(windows, "New Transformation")
        self.close_dialog(windows)
        self.assertEqual(self.names(), ["Plain"])
        for written in ('suffix="-plain"', "<Processor>XSLTC<", self.path("text.xsl")):
            self.assertIn(written, self.read("dita.xml"))
        self.open_editor(windows)
        self.display.keys("ctrl+a")
        self.display.type("Beside")
        self.save_and_close(windows)
        self.open_dialog(windows, "Manage Transformations", "ctrl+m")
        self.display.keys("Home", "Down", "Up")
        windows.wait_until_shown("Manage Transformations", "Delete")
        self.display.keys(*["Tab"] * 3)
        for key in ("Escape", "Return", "alt+y"):  # No is the default
            self.assertEqual(self.names(), ["Beside"])
            self.display.keys("space")
            self.answer(windows, "Delete the selected transformation?", key)
            self.reach(windows, "Manage Transformations")
        self.close_dialog(windows)
        self.assertEqual(self.names(), [])
        self.leave(windows)

    def test_parameters_are_typed_and_deleted_in_the_grid(self):
        self.add_transformation("One", "--xsl", self.path("text.xsl"), "--suffix", "-out", "-p", "first=1", "-p", "depth=2")
        windows = self.workbench("a.xml")
        self.open_parameters(windows)
        windows.wait_until_shown("Stylesheet Parameters", "rows: 3")  # the parameters and the empty row
        self.display.keys(*["Down"] * 8)
        self.display.type("width")
        windows.wait_until_shown("Stylesheet Parameters", "rows: 4")
        self.display.keys("Return", "Down")
        self.display.type("7")
        windows.wait("settled Stylesheet Parameters")
        self.display.keys("Return", *["Up"] * 9)
        windows.wait_until_shown("Stylesheet Parameters", "Delete")
        self.display.keys("alt+d")  # the first row goes
        windows.wait_until_shown("Stylesheet Parameters", "rows: 3")
        self.open_dialog(windows, "Edit Transformation", "alt+o")
        self.display.keys("alt+s", "Tab")
        self.display.type("-new")
        self.save_and_close(windows)
        self.assertNotIn('name="first"', self.read("dita.xml"))
        for written in ('name="depth"', 'name="width"', '"7"', 'suffix="-new"'):
            self.assertIn(written, self.read("dita.xml"))
        self.leave(windows)

    def test_a_pop_up_keeps_the_focus_while_a_save_goes_on(self):
        # So large that the keys are there before it is saved.
        entry = "<Transformation><Name>{}</Name><Input><XSLPath>a.xsl</XSLPath></Input><Processor>XSLTC</Processor></Transformation>"
        self.write("dita.xml", f"<Transformations>{''.join(entry.format(number) for number in range(4000))}</Transformations>")
        windows = self.workbench("a.xml")
        self.open_editor(windows)
        self.display.type("New")
        windows.wait_until_shown("Edit Transformation", "Save")
        self.display.keys("Return", *["Tab"] * 4)  # to the processor
        windows.wait_until_hidden("Edit Transformation", "Save")
        self.display.keys("Up")
        windows.wait_until_hidden("Edit Transformation", "Save As...")  # there is no processor above
        self.display.keys("Escape")
        self.reach(windows, "Manage Transformations")
        self.close_dialog(windows)
        self.assertEqual((self.names()[0], len(self.names())), ("New", 4000))
        self.leave(windows)

    def test_a_dialog_on_its_own_shows_its_run(self):
        self.add_transformation("Slow", "--xsl", self.path("slow.xsl"), "--suffix", "-out")
        for name in SLOW_INPUTS:
            self.write(name, "<topic/>")
        self.write("in/0.xml", "<topic>")
        opened = ["--open=" + name for name in ("in/0.xml", *SLOW_INPUTS[:-1])]
        windows = self.start("dialog", "advanced", *opened, "--active", SLOW_INPUTS[-1])
        self.reach(windows, "Advanced Run")
        self.run_first(windows, "alt+a")
        windows.wait("progress " + self.path(SLOW_INPUTS[0]))
        self.display.find("XSLT Run")
        self.display.keys("alt+c")
        windows.wait("cancelling")
        windows.wait("idle")
        # An input failed, so the window stays open.
        self.display.find("XSLT Run")
        self.display.keys("alt+F4")
        self.assertEqual(windows.end(), 130)
        self.check_that_it_was_cut()


if __name__ == "__main__":
    main()
