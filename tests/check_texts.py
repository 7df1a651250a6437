#!/usr/bin/env python3
"""Checks that the host contains none of the client's message texts: what it must know arrives as events and replies.

usage: check_texts.py ROOT

Prints each place under host/ where a text of the client's string table stands, or a part of it between placeholders,
as FILE:LINE: TEXT. Exit status 0 when there is none, 1 otherwise.
"""

import os
import re
import sys

from check_includes import list_files, main

# Titles and labels of dialogs and what becomes of an output, which a window or a help text may share.
LABELS = set(range(18000, 18017)) | {18053, 18054, 18058, 18061, 18159}
LITERAL = re.compile(r'"((?:\\.|[^"\\])*)"')
STRING = re.compile(r'^\s+(18\d{3})\s+"((?:[^"]|"")*)"', re.MULTILINE)


def read_texts(root):
    """The texts of the string table and their parts, the longest first."""
    with open(os.path.join(root, "resources", "XSLT.rc"), encoding="utf-8") as file:
        table = file.read()
    parts = set()
    for number, text in STRING.findall(table):
        if int(number) in LABELS:
            continue
        for part in re.split(r"%\d|\\r|\\n", text.replace('""', '"')):
            part = part.strip(' "')
            # Fewer words say nothing of their own.
            if len(part.split()) >= 3 or len(part) >= 20:
                parts.add(part)
    return sorted(parts, key=len, reverse=True)


def check_tree(root):
    texts = read_texts(root)
    if not texts:
        return ["resources/XSLT.rc: no texts were found"]
    problems = []
    for path in list_files(root, ("*.cpp", "*.h"), "host"):
        with open(os.path.join(root, path), encoding="utf-8") as file:
            for number, line in enumerate(file, 1):
                literals = " ".join(LITERAL.findall(line)).replace('\\"', '"')
                found = next((text for text in texts if text in literals), None)
                if found:
                    problems.append(f"{path}:{number}: {found}")
    return problems


if __name__ == "__main__":
    sys.exit(main(check_tree, __doc__, "the host contains none of the client's texts"))
