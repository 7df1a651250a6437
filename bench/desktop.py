#!/usr/bin/env python3
"""Measures how long the workbench takes to a window that can be used, beside a plain dialog of another program of the
same toolkit in the same session. Exit 1 when the ratio is worse than its limit, 77 when something outside is missing."""

import argparse
import os
import shutil
import sys
import tempfile
import time
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(PROJECT / "tests/desktop"))
from display import Display, NotThere, Windows  # noqa: E402

LIMIT = 2.0


def until_visible(display: Display, command: list[str], environment: dict[str, str], folder: str, title: str,
                  event: str = "") -> float:
    """Seconds from the start to the visible window, and to the event of ours that says it can be used."""
    start = time.monotonic()
    windows = Windows(display, command[0], command[1:], environment, folder)
    try:
        display.see(title)
        if event:
            windows.wait(event)
        return time.monotonic() - start
    finally:
        windows.kill()


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=os.path.abspath, default=PROJECT / "build/release")
    parser.add_argument("--rounds", type=int, default=5)
    options = parser.parse_args()
    if not shutil.which("zenity"):
        print("SKIPPED: zenity is not installed")
        return 77
    own = [os.path.join(options.build, "bin", "vlxslt"), "desktop", str(PROJECT / "examples/dita/bread.ditamap")]
    peer = ["zenity", "--info", "--title", "Peer", "--text", "Peer"]
    try:
        with tempfile.TemporaryDirectory(prefix="vlxslt-bench-") as folder, Display() as display:
            environment = {"VLXSLT_CONFIG": str(PROJECT / "examples/vlxslt.toml"), "HOME": folder,
                           "XDG_STATE_HOME": os.path.join(folder, "state")}
            times = {"own": [], "peer": []}
            for _ in range(options.rounds):
                times["own"].append(until_visible(display, own, environment, folder, "XSLT Workbench", "documents"))
                times["peer"].append(until_visible(display, peer, environment, folder, "Peer"))
    except NotThere as missing:
        print(f"SKIPPED: {missing} is not installed")
        return 77
    ratio = min(times["own"]) / min(times["peer"])
    verdict = "ok" if ratio <= LIMIT else "TOO SLOW"
    print(f"the workbench with a map, to a usable window: {min(times['own']) * 1000:.0f} ms, "
          f"a plain dialog {min(times['peer']) * 1000:.0f} ms; ratio {ratio:.2f}, at most {LIMIT:.2f}: {verdict}")
    return 0 if ratio <= LIMIT else 1


if __name__ == "__main__":
    sys.exit(main())
