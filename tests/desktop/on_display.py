#!/usr/bin/env python3
"""Runs a command on a virtual display: on_display.py COMMAND... Exit status: the command's; 77 without a display."""

import subprocess
import sys

from display import Display, NotThere

try:
    with Display() as display:
        sys.exit(subprocess.run(sys.argv[1:], env=display.environment()).returncode)
except NotThere as missing:
    print(f"SKIPPED: {missing} is not installed")
    sys.exit(77)
