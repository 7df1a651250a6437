#!/usr/bin/env python3
"""A run that is cancelled, a window that is closed, a lost display and signals leave whole files only.

usage: test_shutdown.py --build FOLDER [TEST...]
"""

import os
import signal

from window_test import SLOW_INPUTS, SLOW_XSL, WindowTest, main


class ShutdownTest(WindowTest):
    def test_a_long_run_is_cancelled(self):
        windows = self.start_slow_run(*SLOW_INPUTS)
        self.see_it_run(windows)
        self.display.keys("ctrl+period")
        windows.wait("cancelling")
        windows.wait("idle")
        self.check_that_it_was_cut()
        self.leave(windows)

    def test_closing_during_a_run_asks_and_ends_whole(self):
        windows = self.start_slow_run(*SLOW_INPUTS)
        self.see_it_run(windows)
        self.display.keys("ctrl+q")
        self.answer(windows, "A run is going on", "Escape", "^XSLT Workbench$")
        windows.wait("active workbench")
        self.display.keys("ctrl+q")
        self.answer(windows, "A run is going on", "Return", "^XSLT Workbench$")
        self.assertEqual(windows.end(), 0)
        self.check_that_it_was_cut()

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
        windows.wait("shutdown")
        left = sorted(set(os.listdir(self.path("in"))) - {os.path.basename(name) for name in SLOW_INPUTS})
        self.assertLess(len(left), len(SLOW_INPUTS))
        self.assertEqual(left, [f"{number}-out.xml" for number in range(10, 10 + len(left))])
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


if __name__ == "__main__":
    main()
