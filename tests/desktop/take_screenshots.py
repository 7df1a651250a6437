#!/usr/bin/env python3
"""Takes the pictures of docs/images: the workbench and every dialog, at 100 % and 200 %, light and dark.

usage: take_screenshots.py --build FOLDER --into FOLDER
"""

import argparse
import os
import shutil
import subprocess
import tempfile

from display import Display, Windows
from test_windows import CONFIGURATION, TEXT_XSL

LOOKS = {"": {}, "-dark": {"GTK_THEME": "Adwaita:dark"}, "-200": {"GDK_SCALE": "2"}}
DIALOGS = {"Advanced Run": "shift+F5", "Choose Transformation": "ctrl+r", "Manage Transformations": "ctrl+m",
           "New Transformation": "ctrl+n"}


class Photographer:
    def __init__(self, display, options, folder, look):
        self.display, self.options, self.folder, self.look = display, options, folder, look

    def shoot(self, name, window):
        path = os.path.join(self.options.into, f"{name}{self.look}.png")
        # The frame of the window manager belongs to the picture.
        subprocess.run(["import", "-frame", "-window", window, path], env=self.display.environment(), check=True)

    def visit(self, environment):
        program = os.path.join(self.options.build, "bin", "vlxslt")
        windows = Windows(self.display, program, ["desktop", "guide.ditamap"], environment, self.folder)
        windows.wait("documents")
        main = self.display.find("XSLT Workbench")
        self.open(windows, "Choose Transformation", "ctrl+r")
        self.display.keys("Home", "Down", "Up", "alt+o")
        windows.wait("idle")
        windows.wait("idle")
        main = self.display.find("XSLT Workbench")
        self.shoot("workbench", main)
        for title, key in DIALOGS.items():
            self.shoot(title.lower().replace(" ", "-"), self.open(windows, title, key))
            self.display.keys("Escape")
            windows.wait("idle")
            self.display.find("XSLT Workbench")
        windows.kill()

    def open(self, windows, title, key):
        self.display.keys(key)
        windows.wait("active " + title)
        return self.display.find(title)


def prepare(folder, build):
    files = {"vlxslt.toml": CONFIGURATION, "html.xsl": TEXT_XSL,
             "guide.ditamap": '<map><topicref href="welcome.dita"/><topicref href="install.dita"/></map>',
             "welcome.dita": "<topic/>", "install.dita": "<topic/>"}
    for name, text in files.items():
        with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
            file.write(text)
    environment = {"VLXSLT_CONFIG": os.path.join(folder, "vlxslt.toml"), "XDG_STATE_HOME": os.path.join(folder, "state"),
                   "HOME": folder}
    for name in ("HTML", "Print"):
        subprocess.run([os.path.join(build, "bin", "vlxslt"), "add", name, "--application", "DITA", "--yes", "--xsl", "html.xsl",
                        "--suffix", "-" + name.lower()], env=os.environ | environment, check=True)
    return environment


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True, type=os.path.abspath)
    parser.add_argument("--into", required=True, type=os.path.abspath)
    options = parser.parse_args()
    os.makedirs(options.into, exist_ok=True)
    for look, change in LOOKS.items():
        folder = tempfile.mkdtemp(prefix="vlxslt-pictures-")
        try:
            with Display(size="2800x2000" if "200" in look else "1400x1000") as display:
                Photographer(display, options, folder, look).visit(prepare(folder, options.build) | change)
        finally:
            shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    main()
