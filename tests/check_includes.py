#!/usr/bin/env python3
"""Checks who includes and links whom: dependencies between components point one way.

usage: check_includes.py ROOT

Reads every #include and every target_link_libraries of the sources under ROOT, and prints each one that a rule
forbids as FILE:LINE: REASON. Exit status 0 when there is none, 1 otherwise.
"""

import fnmatch
import os
import re
import sys

# Which components a component may include beside itself.
COMPONENTS = {
    "kit": set(),
    "resources": set(),
    "report": {"resources", "kit"},
    "catalogue": {"report", "kit"},
    "processors": {"report", "kit"},
    "processors/java": {"processors", "report", "kit"},
    "dialogs": {"catalogue", "processors", "report", "kit"},
    "client": {"dialogs", "catalogue", "processors", "processors/java", "report", "kit"},
    "host/configuration": {"kit"},
    "host/documents": {"kit"},
    "host/dialogs": {"kit"},
    "host/record": {"kit"},
    "host/fronts": {"host/dialogs", "host/record", "kit"},
    "host/resident": {"host/configuration", "kit"},
    "host": {"host/configuration", "host/documents", "host/dialogs", "host/record", "host/fronts", "kit"},
}
COMPONENTS["host/cli"] = COMPONENTS["host"] | {"host", "host/resident"}
COMPONENTS["host/desktop"] = COMPONENTS["host"] | {"host"}

# Foreign headers and the only component that may see them.
FOREIGN_HEADERS = [
    (re.compile(r"^xercesc/"), "catalogue", "Xerces headers belong in catalogue/"),
    (re.compile(r"^jni(_md)?\.h$"), "processors/java", "jni.h belongs in processors/java/"),
    (re.compile(r"^wx/"), "host/desktop", "wx headers belong in host/desktop/"),
]

# Foreign libraries in link lines, likewise.
FOREIGN_LIBRARIES = [
    (re.compile(r"^XercesC::"), "catalogue", "Xerces-C is linked in catalogue/ only"),
    (re.compile(r"^(wxWidgets|wx)::|^\$\{wxWidgets_LIBRARIES\}$"), "host/desktop", "wx is linked in host/desktop/ only"),
]

SOURCES = ("*.c", "*.cpp", "*.h", "*.hpp", "*.S")
# Tests, benches and examples are no components; they may include any.
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
LINK = re.compile(r"target_link_libraries\s*\(([^)]*)\)", re.IGNORECASE)
TARGET = re.compile(r"^(?:vlxslt_)(\w+)$")


def list_files(root, names, folder=""):
    """The files below a folder whose names fit a pattern, without what a build leaves."""
    for path, folders, files in os.walk(os.path.join(root, folder)):
        folders[:] = sorted(each for each in folders if each != "build" and not each.startswith("."))
        for name in sorted(files):
            if any(fnmatch.fnmatch(name, pattern) for pattern in names):
                yield os.path.relpath(os.path.join(path, name), root)


def component_of(path):
    """The innermost component that holds a path, or None."""
    folder = os.path.dirname(path)
    while folder:
        if folder in COMPONENTS:
            return folder
        folder = os.path.dirname(folder)
    return None


def blank_comments(text):
    """Comments replaced by blanks, line ends kept, strings respected."""
    pattern = re.compile(r'"(?:\\.|[^"\\\n])*"|//[^\n]*|/\*.*?\*/', re.DOTALL)
    return pattern.sub(lambda match: match[0] if match[0][0] == '"' else re.sub(r"[^\n]", " ", match[0]), text)


def check_include(root, path, quoted, header):
    component = component_of(path)
    for pattern, home, reason in FOREIGN_HEADERS:
        if pattern.search(header) and component != home:
            return reason
    if component is None:
        return None
    if not quoted:
        return "headers of this project are included with quotes" if component_of(header) else None
    if header.startswith("../") or "/../" in header:
        return "includes name the path from the root, without .."
    if not os.path.isfile(os.path.join(root, header)):
        beside = os.path.join(os.path.dirname(path), header)
        return f"write the path from the root: {beside}" if os.path.isfile(os.path.join(root, beside)) else None
    target = component_of(header)
    if target is None:
        return f"{component} includes {header}, which is in no component"
    if target != component and target not in COMPONENTS[component]:
        return f"{component} may not include {target}"
    return None


def check_source(root, path):
    with open(os.path.join(root, path), encoding="utf-8", errors="replace") as file:
        text = blank_comments(file.read())
    for number, line in enumerate(text.splitlines(), 1):
        match = INCLUDE.match(line)
        reason = match and check_include(root, path, match[1] == '"', match[2])
        if reason:
            yield f"{path}:{number}: {reason}"


def component_of_target(name):
    """The component that a target of ours stands for: vlxslt_host is host/, vlxslt_host_desktop is host/desktop/."""
    match = TARGET.match(name)
    if not match:
        return None
    component = match[1]
    return next((each for each in (component, component.replace("_", "/", 1)) if each in COMPONENTS), None)


def check_link_lines(root, path):
    component = component_of(path)
    if component is None:
        return
    with open(os.path.join(root, path), encoding="utf-8") as file:
        text = re.sub(r"#[^\n]*", "", file.read())
    for match in LINK.finditer(text):
        number = text.count("\n", 0, match.start()) + 1
        for name in match[1].split()[1:]:
            target = component_of_target(name)
            if target and target != component and target not in COMPONENTS[component]:
                yield f"{path}:{number}: {component} may not link {target}"
            for pattern, home, reason in FOREIGN_LIBRARIES:
                if pattern.search(name) and component != home:
                    yield f"{path}:{number}: {reason}"


def check_tree(root):
    problems = []
    for check, names in ((check_source, SOURCES), (check_link_lines, ["CMakeLists.txt"])):
        for path in list_files(root, names):
            problems += check(root, path)
    return problems


def main(check, usage, well):
    """Prints what a check of the tree finds, or that all is well."""
    if len(sys.argv) != 2:
        print(usage, file=sys.stderr)
        return 2
    problems = check(sys.argv[1])
    print("\n".join(problems) if problems else well)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(check_tree, __doc__, "every include and link line keeps the rules"))
