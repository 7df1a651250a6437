#!/usr/bin/env python3
"""Outputs in places that are shared, private, linked, read-only or written by others at the same time. The processes
are stopped before their system calls, so nothing here depends on time.

usage: outputs.py --build FOLDER

Exit status: 0 all is well, 1 something is not, 77 something needs root, and all else is well.
"""

import argparse
import json
import os
import sys

from faults import Bench, Failure, check


APPENDING = """\
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:r="http://xml.apache.org/xalan/redirect" extension-element-prefixes="r">
  <xsl:output omit-xml-declaration="yes"/>
  <xsl:template match="/doc">
    <o/><r:write file="more.xml"><a/></r:write>
    <r:write file="more.xml" append="true"><b/></r:write><r:write file="more.xml" append="true"><c/></r:write>
  </xsl:template>
</xsl:stylesheet>
"""


class Way:
    """One of the ways by which a file comes to its place: by the Java layer, or by the client."""

    def __init__(self, bench, name):
        self.bench = bench
        self.name = name

    def prepare(self, what):
        """The target in a fresh folder."""
        return self.bench.write(f"{what}-{self.name}/{self.input}", self.old)


class Direct(Way):
    """Its second result lies in a folder below."""

    input = "a.xml"
    old = "old"

    def command(self, target, record=None, name="a"):
        self.bench.write(f"in-{name}/{self.input}", f'<doc name="{name}"/>')
        return ["vlxslt", "run", "--yes", f"in-{name}/{self.input}", "--xsl", "page.xsl", "-o", str(target)] + (
            ["--record", str(record)] if record else [])

    def is_whole(self, text, name="a"):
        return text.startswith(f'<page of="{name}">') and text.endswith("<row>9000</row></page>")


class ByTransformation(Direct):
    """The processor writes into the temporary folder, the client puts the result in its place."""

    def command(self, target, record=None, name="a"):
        self.bench.write(f"in-{name}/{self.input}", f'<doc name="{name}"/>')
        catalogue = self.bench.place / f"to-{target.parent.name}.xml"
        if not catalogue.exists():
            add = ["vlxslt", "add", "T", "--catalogue", str(catalogue), "--xsl", str(self.bench.place / "page.xsl"), "--folder",
                   str(target.parent), "--yes"]  # fmt: skip
            check(self.bench.start(add).finish() == 0, "no catalogue")
        return ["vlxslt", "run", "--yes", f"in-{name}/{self.input}", "--transformation", "T", "--catalogue",
                str(catalogue)] + (["--record", str(record)] if record else [])  # fmt: skip


class Catalogue(Way):
    """The edit of a catalogue."""

    input = "T.xml"

    def __init__(self, bench, name):
        super().__init__(bench, name)
        command = ["vlxslt", "add", "One", "--catalogue", "old.xml", "--xsl", "page.xsl", "--yes"]
        check(bench.start(command).finish() == 0, "no catalogue")
        self.old = (bench.place / "old.xml").read_text()

    def command(self, target, record=None, name="a"):
        return ["vlxslt", "add", f"Name {name}", "--catalogue", str(target), "--xsl", "page.xsl", "--yes"]

    def is_whole(self, text, name="a"):
        return f"Name {name}<" in text and text.rstrip().endswith(">")


def warnings(record):
    jobs = [json.loads(line) for line in record.read_text().splitlines()]
    return [diagnostic["text"] for job in jobs for diagnostic in job.get("diagnostics", ())
            if diagnostic["severity"] == "warning"]  # fmt: skip


def planted_links(way):
    """Links under the very names that are about to be used: to another file, and to none."""
    target = way.prepare("links")
    victim = way.bench.write("victim", "precious")
    run = way.bench.start(way.command(target), target.parent, calls="open", at="all", do="stop")
    planted = 0
    while run.wait_for_stop():
        opened = run.calls()[-1][1]
        # Every second name, so that there is a way out.
        if len(run.calls()) % 2 and "lock" not in opened and not os.path.lexists(opened):
            os.symlink([victim, way.bench.place / "none"][planted % 2], opened)
            planted += 1
        run.go_on()
    check(planted > 0, "no name was met")
    check(run.process.returncode == 0, run.said())
    check(victim.read_text() == "precious" and not (way.bench.place / "none").exists(), "a link was followed")
    check(way.is_whole(target.read_text()) and not target.is_symlink(), "the output is not there")


def private_file(way):
    """Before every call of the program: what lies in the work folder but was not there before is its owner's only."""
    target = way.prepare("private")
    target.chmod(0o600)
    command = way.command(target)
    before = {path for path in way.bench.place.rglob("*")}
    run = way.bench.start(command, way.bench.place, at="all", do="stop")
    stops = 0
    while run.wait_for_stop():
        stops += 1
        for path in way.bench.place.rglob("*"):
            if path not in before and path.is_file() and "lock" not in path.name:
                check(path.stat().st_mode & 0o077 == 0, f"{path} can be read before {run.calls()[-1]}")
        run.go_on()
    check(run.process.returncode == 0 and stops > 5, f"{stops} calls: {run.said()}")
    check(way.is_whole(target.read_text()), "no output")
    check(target.stat().st_mode & 0o777 == 0o600, f"it has become {target.stat().st_mode:o}")


def two_writers(way):
    """One comes first, the other has all but its last step behind it."""
    for order in ((0, 1), (1, 0)):
        target = way.prepare(f"two{order[0]}")
        runs = []
        for name in "ab":
            run = way.bench.start(way.command(target, name=name), target.parent, calls="rename", at="1", do="stop")
            check(run.wait_for_stop(), f"no rename: {run.said()}")
            check(target.read_text() == way.old, "too early")
            runs.append(run)
        for index in order:
            runs[index].go_on()
            check(runs[index].finish() == 0, runs[index].said())
            check(way.is_whole(target.read_text(), "ab"[index]), "not whole")
        check([path.name for path in target.parent.iterdir()] == [target.name], "something is left")


def one_temporary_folder(way):
    """Two runs at once, of inputs of one name: each has its own temporary file."""
    targets = [way.prepare(f"common-{name}") for name in "ab"]
    runs = [way.bench.start(way.command(target, name=name), way.bench.place, calls="open,rename", at="all", do="stop")
            for target, name in zip(targets, "ab")]  # fmt: skip
    steps = [lambda call, path, target: call == "rename" and path.startswith(f"{way.bench.place}/temp/"),
             lambda call, path, target: call == "open" and path.startswith(str(target.parent))]  # fmt: skip
    for number, is_reached in enumerate(steps):
        for run, target in zip(runs, targets):
            if number > 0:
                run.go_on()
            while run.wait_for_stop() and not is_reached(*run.calls()[-1][:2], target):
                run.go_on()
            check(run.process.returncode is None, f"it never came there: {run.said()}")
    for run, target, name in zip(runs, targets, "ab"):
        run.go_on()
        while run.wait_for_stop():
            run.go_on()
        check(run.process.returncode == 0, run.said())
        check(way.is_whole(target.read_text(), name), "it has the other's content")


def refused_permissions(way):
    """A file system without permissions keeps the output; what cannot be made like the old file is stricter."""
    target = way.prepare("refused")
    target.chmod(0o644)
    record = way.bench.place / f"refused-{way.name}.jsonl"
    run = way.bench.start(way.command(target, record), target.parent, calls="chmod,chown", at="all", do="EPERM")
    check(run.finish() == 0 and run.calls(), run.said())
    check(way.is_whole(target.read_text()) and target.stat().st_mode & 0o777 == 0o600, "it is lost, or open to others")
    said = run.said() if isinstance(way, Catalogue) else "\n".join(warnings(record))
    check("permissions of " + str(target) in said, f"not a word: {said}")


def lost_group(way):
    """The group that could read the file is not the new file's: that one may not read it."""
    if os.geteuid() != 0:
        return "the right to give files away, which is root's"
    target = way.prepare("group")
    os.chown(target, 12345, 54321)
    target.chmod(0o664)
    run = way.bench.start(way.command(target), target.parent)
    check(run.finish() == 0, run.said())
    after = target.stat()
    check((after.st_uid, after.st_gid, after.st_mode & 0o777) == (12345, 54321, 0o664), f"not kept: {after}")
    run = way.bench.start(way.command(target, name="b"), target.parent, calls="chown", at="all", do="EPERM")
    check(run.finish() == 0 and run.calls(), run.said())
    after = target.stat()
    check((after.st_uid, after.st_gid, after.st_mode & 0o777) == (0, 0, 0o644), f"{after.st_mode:o}")
    return None


def hard_links(way):
    """The other name keeps the old content, and that is said."""
    target = way.prepare("names")
    other = target.parent / "other name"
    os.link(target, other)
    record = way.bench.place / f"names-{way.name}.jsonl"
    run = way.bench.start(way.command(target, record))
    check(run.finish() == 0, run.said())
    check(way.is_whole(target.read_text()) and other.read_text() == way.old, "not what the other name should hold")
    text = f"{target} had other names (hard links): 1."
    check(text in run.said() and (isinstance(way, Catalogue) or text in "\n".join(warnings(record))), run.said())
    run = way.bench.start(way.command(target, record, "b"))
    check(run.finish() == 0 and "other names" not in run.said(), "it has but one name now")


def read_only_folder(way):
    target = way.prepare("readonly")
    target.parent.chmod(0o555)
    run = way.bench.start(way.command(target), target.parent)
    check(run.finish() == 1 and "Make sure you have write permissions" in run.said(), run.said())
    target.parent.chmod(0o755)
    check([path.name for path in target.parent.iterdir()] == [target.name], "something is left")


def second_result_in_read_only_folder(bench):
    """What is there could only be written in place, and be lost on the way: it stays, and so does the first result."""
    bench.write("second.xml", '<doc name="second" second="taken/file.xml"/>')
    target = bench.write("refusing/out.xml", "old")
    other = bench.write("refusing/taken/file.xml", "old too")
    other.parent.chmod(0o555)
    # Root could write all the same.
    command = ["setpriv", "--bounding-set=-dac_override"] if os.geteuid() == 0 else []
    run = bench.start([*command, "vlxslt", "run", "--yes", "second.xml", "--xsl", "page.xsl", "-o", str(target)])
    check(run.finish() == 1 and str(other.parent) in run.said(), run.said())
    check((target.read_text(), other.read_text()) == ("old", "old too"), "something was written")


def appended_result(bench):
    """Written in several pieces, and synced when the last one is there."""
    bench.write("append.xsl", APPENDING)
    bench.write("append.xml", "<doc/>")
    place = bench.place / "appended"
    place.mkdir()
    run = bench.start(["vlxslt", "run", "append.xml", "--xsl", "append.xsl", "--processor", "Xalan",
                       "--allow-extensions", "-o", str(place / "out.xml")], place)  # fmt: skip
    check(run.finish() == 0, run.said())
    check((place / "more.xml").read_text() == "<a/><b/><c/>", "not all pieces")
    calls = run.calls()
    opened = [path for call, path, _ in calls if call == "open" and path.endswith(".tmp")]
    pieces = [path for path in set(opened) if opened.count(path) > 1]
    check(len(pieces) == 1, f"{calls}")
    order = [call for call, path, _ in calls if call == "rename" or (path == pieces[0] and call in ("write", "fsync"))]
    check(order[-4:] == ["write", "fsync", "rename", "rename"], f"{order}")


def order_of_syncs(bench):
    """Each output is synced before it takes its place, each folder that gets a name once after that, at the end."""
    for name in "ab":
        bench.write(f"many/{name}.xml", f'<doc name="{name}" second="new/deep/{name}.xml"/>')
    place = bench.place / "ordered"
    place.mkdir()
    run = bench.start(["vlxslt", "run", "many", "--xsl", "page.xsl", "-o", f"{place}/made/"], place)
    check(run.finish() == 0, run.said())
    calls = [(call, os.path.relpath(path, place)) for call, path, _ in run.calls()]
    renames = [index for index, (call, _) in enumerate(calls) if call == "rename"]
    check(sorted(calls[index][1] for index in renames)
          == ["made/a.xml", "made/b.xml", "made/new/deep/a.xml", "made/new/deep/b.xml"], f"{calls}")  # fmt: skip
    synced = [path for call, path in calls[: renames[-1]] if call == "fsync"]
    check(len(synced) == len(set(synced)) == 4 and all(path.endswith(".tmp") for path in synced), f"{calls}")
    last = [path for call, path in calls[renames[-1] :] if call == "fsync"]
    check(sorted(last) == [".", "made", "made/new", "made/new/deep"], f"{calls}")

    unsynced = bench.write("unsynced.toml", (bench.place / "vlxslt.toml").read_text() + "\n[outputs]\nsync = false\n")
    way = ByTransformation(bench, "unsynced")
    for command in (["vlxslt", "run", "many", "--xsl", "page.xsl", "-o", f"{place}/more/", "--yes"],
                    way.command(way.prepare("unsynced"))):  # fmt: skip
        run = bench.start([command[0], "--config", str(unsynced), *command[1:]], bench.place)
        check(run.finish() == 0, run.said())
        calls = [call for call, _, _ in run.calls()]
        check("rename" in calls and "fsync" not in calls, f"{calls}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    bench = Bench(parser.parse_args().build, "fault outputs")
    ways = [Direct(bench, "direct"), ByTransformation(bench, "transformation"), Catalogue(bench, "catalogue")]
    tests = [(test, way) for test in (planted_links, private_file, two_writers, refused_permissions, lost_group, hard_links,
                                      read_only_folder) for way in ways
             if (test, way) != (two_writers, ways[2])] + [(one_temporary_folder, ways[1])] + [(test, bench) for test in (second_result_in_read_only_folder, appended_result, order_of_syncs)]  # fmt: skip
    failed, missing = 0, set()
    for test, subject in tests:
        name = f"{test.__name__} {getattr(subject, 'name', '')}".rstrip()
        try:
            need = test(subject)
            print(f"{name}: {f'SKIPPED, needs {need}' if need else 'ok'}", flush=True)
            missing |= {need} if need else set()
        except Failure as failure:
            failed += 1
            print(f"{name}: FAILED: {failure}", flush=True)
    if not failed:
        bench.clean_up()
    return 1 if failed else 77 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
