#!/usr/bin/env python3
"""Checks who includes and links whom: the rooms of the house stay one-way streets.

usage: check_includes.py ROOT

Reads every #include and every target_link_libraries of the sources under ROOT, and prints each one that a rule
forbids as FILE:LINE: REASON. Exit status 0 when there is none, 1 otherwise.
"""

import fnmatch
import os
import re
import subprocess
import sys

# Which rooms a room may include beside itself.
ROOMS = {
    "kit": set(),
    "resources": set(),
    "bridge": {"kit", "resources"},
    "catalogue": {"bridge", "kit"},
    "dialogs": {"catalogue", "bridge", "kit"},
    "client": {"dialogs", "catalogue", "bridge", "kit"},
    "host": {"kit"},
    "host/cli": {"host", "kit"},
    "host/desktop": {"host", "kit"},
}

# Foreign headers and the only room that may see them.
FOREIGN_HEADERS = [
    (re.compile(r"^xercesc/"), "catalogue", "Xerces headers belong in catalogue/"),
    (re.compile(r"^jni(_md)?\.h$"), "bridge", "jni.h belongs in bridge/"),
    (re.compile(r"^wx/"), "host/desktop", "wx headers belong in host/desktop/"),
]

# Foreign libraries in link lines, likewise.
FOREIGN_LIBRARIES = [
    (re.compile(r"^XercesC::"), "catalogue", "Xerces-C is linked in catalogue/ only"),
    (re.compile(r"^(wxWidgets|wx)::|^\$\{wxWidgets_LIBRARIES\}$"), "host/desktop", "wx is linked in host/desktop/ only"),
]

SOURCES = ("*.c", "*.cpp", "*.h", "*.hpp", "*.S")
# Tests, benches and examples stand outside the house; they may look into any room.
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
LINK = re.compile(r"target_link_libraries\s*\(([^)]*)\)", re.IGNORECASE)
TARGET = re.compile(r"^(?:vlxslt_)(\w+)$")


def list_files(root):
    """What git tracks or would track; the whole tree without build/ where git cannot say."""
    command = ["git", "-C", root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
    try:
        listed = subprocess.run(command, capture_output=True, check=True).stdout.decode().split("\0")
        return sorted(path for path in listed if path and os.path.isfile(os.path.join(root, path)))
    except (OSError, subprocess.CalledProcessError):
        found = []
        for folder, folders, names in os.walk(root):
            folders[:] = [each for each in folders if each != "build" and not each.startswith(".")]
            found += [os.path.relpath(os.path.join(folder, name), root) for name in names]
        return sorted(found)


def room_of(path):
    """The innermost room that holds a path, or None."""
    folder = os.path.dirname(path)
    while folder:
        if folder in ROOMS:
            return folder
        folder = os.path.dirname(folder)
    return None


def blank_comments(text):
    """Comments replaced by blanks, line ends kept, strings respected."""
    pattern = re.compile(r'"(?:\\.|[^"\\\n])*"|//[^\n]*|/\*.*?\*/', re.DOTALL)
    return pattern.sub(lambda match: match[0] if match[0][0] == '"' else re.sub(r"[^\n]", " ", match[0]), text)


def check_include(root, path, quoted, header):
    room = room_of(path)
    for pattern, home, reason in FOREIGN_HEADERS:
        if pattern.search(header) and room != home:
            return reason
    if room is None:
        return None
    if not quoted:
        return "headers of the house are included with quotes" if room_of(header) else None
    if header.startswith("../") or "/../" in header:
        return "includes name the path from the root, without .."
    if not os.path.isfile(os.path.join(root, header)):
        beside = os.path.join(os.path.dirname(path), header)
        return f"write the path from the root: {beside}" if os.path.isfile(os.path.join(root, beside)) else None
    target = room_of(header)
    if target is None:
        return f"{room} includes {header}, which is in no room"
    if target != room and target not in ROOMS[room]:
        return f"{room} may not include {target}"
    return None


def check_source(root, path):
    with open(os.path.join(root, path), encoding="utf-8", errors="replace") as file:
        text = blank_comments(file.read())
    for number, line in enumerate(text.splitlines(), 1):
        match = INCLUDE.match(line)
        reason = match and check_include(root, path, match[1] == '"', match[2])
        if reason:
            yield f"{path}:{number}: {reason}"


def room_of_target(name):
    """The room that a target of ours stands for: vlxslt_host is host/, vlxslt_host_desktop is host/desktop/."""
    match = TARGET.match(name)
    if not match:
        return None
    room = match[1]
    return next((each for each in (room, room.replace("_", "/", 1)) if each in ROOMS), None)


def check_link_lines(root, path):
    room = room_of(path)
    if room is None:
        return
    with open(os.path.join(root, path), encoding="utf-8") as file:
        text = re.sub(r"#[^\n]*", "", file.read())
    for match in LINK.finditer(text):
        number = text.count("\n", 0, match.start()) + 1
        for name in match[1].split()[1:]:
            target = room_of_target(name)
            if target and target != room and target not in ROOMS[room]:
                yield f"{path}:{number}: {room} may not link {target}"
            for pattern, home, reason in FOREIGN_LIBRARIES:
                if pattern.search(name) and room != home:
                    yield f"{path}:{number}: {reason}"


def check_tree(root):
    problems = []
    for path in list_files(root):
        name = os.path.basename(path)
        if any(fnmatch.fnmatch(name, pattern) for pattern in SOURCES):
            problems += check_source(root, path)
        elif name == "CMakeLists.txt":
            problems += check_link_lines(root, path)
    return problems


def main(arguments):
    if len(arguments) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    problems = check_tree(arguments[0])
    print("\n".join(problems) if problems else "every include and link line keeps the rules")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
