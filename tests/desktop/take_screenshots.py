#!/usr/bin/env python3
"""Takes the screenshots of docs/images: the workbench and every dialog, at 100 % and 200 %, light and dark.

usage: take_screenshots.py --build FOLDER --into FOLDER
"""

import argparse
import os
import shutil
import subprocess
import tempfile
import time

from display import Display, Windows

PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
LOOKS = {"": {}, "-dark": {"GTK_THEME": "Adwaita:dark"}, "-200": {"GDK_SCALE": "2"}}
MAIN = "XSLT Workbench"


class ScreenshotWalk:
    """Opens the windows one after the other, on the examples."""

    def __init__(self, display, options, look):
        self.display, self.options, self.look = display, options, look
        self.windows = None

    def shoot(self, name, title):
        """With the frame of the window manager."""
        time.sleep(0.5)  # windows report what they show before they paint it
        path = os.path.join(self.options.into, f"{name}{self.look}.png")
        subprocess.run(["import", "-frame", "-window", self.display.find(title), path], env=self.display.environment(),
                       check=True)

    def press(self, *keys, opens=None, awaits=None):
        self.display.keys(*keys)
        if opens:
            self.windows.wait("active " + opens)
            self.display.find(opens)
        if awaits:
            self.windows.wait(awaits)

    def close(self):
        self.press("Escape", awaits="idle")
        self.display.find(MAIN)

    def start(self, home, environment, *files):
        program = os.path.join(self.options.build, "bin", "vlxslt")
        self.windows = Windows(self.display, program, ["desktop", *files], environment, home)
        self.windows.wait("documents")
        self.display.find(MAIN)

    def visit(self, home, environment):
        self.start(home, environment)
        self.shoot("workbench-empty", MAIN)
        self.windows.kill()
        self.start(home, environment, "examples/docbook/article.xml", "examples/dita/bread.ditamap")
        self.run_map()
        self.shoot("workbench", MAIN)
        self.press("shift+F5", opens="Advanced Run")
        self.shoot("advanced-run", "Advanced Run")
        self.close()
        self.press("ctrl+r", opens="Choose Transformation")
        self.shoot("choose-transformation", "Choose Transformation")
        self.close()
        self.press("ctrl+n", opens="New Transformation")
        self.shoot("new-transformation", "New Transformation")
        self.close()
        self.visit_manage()
        self.press("alt+f", "p", opens="Preferences")
        self.press("alt+h", awaits="checked")
        self.shoot("preferences", "Preferences")
        self.windows.kill()

    def run_map(self):
        """Every topic of the map, with the application's first transformation."""
        self.press("shift+F5", opens="Advanced Run")
        self.press("Tab", "space", "alt+t", "Tab", "Tab", "space", opens="Choose Transformation")
        self.press("Home", "Down", "Up", "alt+o", opens="Advanced Run")
        self.press("alt+r", awaits="idle")
        self.display.find(MAIN)

    def visit_manage(self):
        self.press("ctrl+m", opens="Manage Transformations")
        self.press("Home", "Down", "Up")
        self.shoot("manage-transformations", "Manage Transformations")
        self.press("alt+e", opens="Edit Transformation")
        self.shoot("edit-transformation", "Edit Transformation")
        self.press("alt+x", *["Tab"] * 4, "space", opens="Stylesheet Parameters")
        self.press("Down", "Down", "Down", awaits="settled Stylesheet Parameters")
        self.shoot("stylesheet-parameters", "Stylesheet Parameters")
        self.press("Escape", opens="Edit Transformation")
        self.press("Escape", opens="Manage Transformations")
        self.close()


def prepare(home):
    """A home folder with the examples in it."""
    shutil.copytree(os.path.join(PROJECT, "examples"), os.path.join(home, "examples"))
    os.makedirs(os.path.join(home, "build", "demo"))
    os.symlink(os.path.join(PROJECT, "build", "processors"), os.path.join(home, "build", "processors"))
    return {"VLXSLT_CONFIG": os.path.join(home, "examples", "vlxslt.toml"), "HOME": home,
            "XDG_STATE_HOME": os.path.join(home, ".state")}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True, type=os.path.abspath)
    parser.add_argument("--into", required=True, type=os.path.abspath)
    options = parser.parse_args()
    os.makedirs(options.into, exist_ok=True)
    for look, change in LOOKS.items():
        home = tempfile.mkdtemp(prefix="vlxslt-screenshots-")
        try:
            with Display(size="2800x2000" if "200" in look else "1400x1000") as display:
                ScreenshotWalk(display, options, look).visit(home, prepare(home) | change)
        finally:
            shutil.rmtree(home, ignore_errors=True)


if __name__ == "__main__":
    main()
