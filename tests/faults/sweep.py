#!/usr/bin/env python3
"""Makes every system call on the files of a run, an edit of a catalogue and one of the preferences fail in turn.

usage: sweep.py --build FOLDER [--all] [--seed NUMBER] [SCENARIO...]

A point is a call and what happens there: an error of the system, a signal that interrupts it, half of what is written,
or the end of the process; with a "+" all later calls fail too. After each point every file must be old or new and
whole, exit code and record must tell the truth, and once the process is gone the next one must leave nothing but what
belongs there. Without --all a sample is played of the scenarios that start Java, in which each kind occurs.
"""

import argparse
import json
import os
import random
import shutil
import signal
import sys
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

from faults import Bench, Failure, check

SAMPLE = 16  # points of a scenario that starts Java

ACTIONS = {
    "open": ("EACCES", "ENOSPC", "EINTR", "kill", "EIO+"),
    "write": ("ENOSPC", "EIO", "EINTR", "short", "kill", "ENOSPC+"),
    "fsync": ("EIO", "EINTR", "kill", "EIO+"),
    "close": ("EIO", "EINTR", "kill"),
    "rename": ("EIO", "EACCES", "ENOSPC", "kill", "EIO+"),
    "chmod": ("EPERM", "EIO", "kill"),
    "chown": ("EPERM", "kill"),
    "link": ("EACCES", "kill"),
    "unlink": ("EACCES", "kill"),
    "ftruncate": ("EIO", "kill"),
    "mkdir": ("ENOSPC", "EACCES", "kill"),
}
# What a program must not even notice.
HARMLESS = ("EINTR", "short")


class Scenario:
    """A command that turns old files into new ones, in a folder of its own for each point."""

    def __init__(self, bench, name, old, command, record=None):
        self.bench = bench
        self.name = name
        self.old = old  # by name
        self.command = command  # of a folder
        self.record = record
        self.new = {}
        self.startsJava = record is not None

    def prepare(self, point):
        folder = self.bench.place / self.name / point
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        for name, text in self.old.items():
            (folder / name).parent.mkdir(parents=True, exist_ok=True)
            (folder / name).write_text(text)
        return folder

    def list_points(self):
        """Plays it undisturbed: what comes out, and the calls of it."""
        folder = self.prepare("plain")
        run = self.bench.start(self.command(folder), folder)
        check(run.finish() == 0, f"{self.name} does not even work: {run.said()}")
        self.new = self.read(folder)
        check(self.new.keys() >= self.old.keys() and all(self.new[name] != text for name, text in self.old.items()),
              f"{self.name} changes nothing: {sorted(self.new)}")  # fmt: skip
        calls = [call for call, _, _ in run.calls()]
        check(len(calls) > 5 and {"write", "rename", "fsync"} <= set(calls), f"{self.name}: only {calls} are seen")
        return [(number, call, action) for number, call in enumerate(calls, 1) for action in ACTIONS[call]]

    def read(self, folder):
        """The files but for the record, by name."""
        return {str(path.relative_to(folder)): path.read_text() for path in folder.rglob("*")
                if path.is_file() and path.name != self.record}  # fmt: skip

    def play(self, point):
        """What was done there; raises what is wrong."""
        number, call, action = point
        folder = self.prepare(f"{number}-{call}-{action}")
        at = f"{number}+" if action.endswith("+") else number
        run = self.bench.start(self.command(folder), folder, at=at, do=action.rstrip("+"))
        code = run.finish()
        try:
            hit = [(name, done) for name, _, done in run.calls() if done]
            check(hit and hit[0][0] == call, f"the call was {hit or 'not made'}")
            self.judge(folder, run, code, call, action)
            self.play_again(folder)
        except Failure as failure:
            raise Failure(f"{self.name}, call {number} ({call}), {action}, exit {code}: {failure}\n{run.said()}{show(run.calls())}") from None  # fmt: skip
        shutil.rmtree(folder)

    def judge(self, folder, run, code, call, action):
        files = self.read(folder)
        unfinished = [name for name in files if os.path.basename(name).startswith(".vlxslt-")]
        for name in unfinished:
            del files[name]
        wrong = [name for name, text in files.items() if text not in (self.old.get(name), self.new.get(name))]
        check(not wrong, f"neither old nor new: {wrong}")
        check(files.keys() >= self.old.keys(), f"lost: {self.old.keys() - files.keys()}")
        isDone = files == self.new
        if action == "kill":
            check(code == -signal.SIGKILL, "it lives on")
        elif action in HARMLESS:
            check(code == 0, "it fails for no reason")
        else:
            check(code in (0, 1, 2), "an odd exit code")
            check(code == 0 or run.said().strip(), "it fails without a word")
            check(not unfinished or call == "unlink" or action.endswith("+"), f"left behind: {unfinished}")
        check(code != 0 or isDone, f"exit 0, but not all is new: {sorted(files)}")
        # Also where only a folder could not be synced, when all is in place.
        check(code != 0 or call != "fsync" or action in HARMLESS, "exit 0, but it may not last")
        if self.record:
            self.judge_record(folder, files, code)

    def judge_record(self, folder, files, code):
        path = folder / self.record
        if not path.exists():
            check(code != 0, "exit 0 without a record")
            return
        lines = path.read_text().split("\n")
        # Half a line may be at the end of one that was killed or could not be taken back.
        torn = lines.pop()
        check(not torn or code != 0, f"torn: {torn}")
        objects = [json.loads(line) for line in lines]
        check(objects and objects[0]["type"] == "run", "the record does not begin with the run")
        for job in (each for each in objects if each["type"] == "job" and each["status"] == "done"):
            outputs = [os.path.relpath(output["path"], folder) for output in job["outputs"]]
            check(outputs and all(files.get(name) == self.new[name] for name in outputs), f"not done: {outputs}")
        hasEnd = objects[-1]["type"] == "end"
        check(code != 0 or (hasEnd and objects[-1]["exit"] == 0), "exit 0, but the record does not end so")
        check(not hasEnd or code < 0 or objects[-1]["exit"] in (0, code) and (code != 0 or objects[-1]["exit"] == 0),
              f"the record ends with {objects[-1]}")  # fmt: skip

    def play_again(self, folder):
        """Undisturbed, after whatever was left."""
        if not any(path.name.startswith(".vlxslt-") for path in folder.rglob("*")):
            return
        for name, text in self.old.items():
            (folder / name).write_text(text)
        run = self.bench.start(self.command(folder))
        check(run.finish() == 0, f"the next one fails: {run.said()}")
        files = self.read(folder)
        check(files == self.new, f"the next one leaves {sorted(files.keys() ^ self.new.keys())}")

    def choose(self, points, seed, met):
        """At random, those first whose kind no other scenario has played."""
        if not self.startsJava or len(points) <= SAMPLE:
            return points
        shuffled = random.Random(f"{seed} {self.name}").sample(points, len(points))
        first = list({point[1:]: point for point in shuffled if point[1:] not in met}.values())[:SAMPLE]
        chosen = first + [point for point in shuffled if point not in first][: SAMPLE - len(first)]
        met.update(point[1:] for point in chosen)
        return chosen


def show(calls):
    """The last ones."""
    return ", ".join(f"{call} {os.path.basename(path)} {action}".rstrip() for call, path, action in calls[-15:])


def make_scenarios(bench):
    for name in "abc":
        bench.write(f"in/{name}.xml", f'<doc name="{name}" second="more/{name}.xml"/>')
    bench.write("plain.xml", '<doc name="plain"/>')
    catalogue = bench.write("T.xml", "")
    catalogue.unlink()
    add = ["vlxslt", "add", "One", "--catalogue", "T.xml", "--xsl", str(bench.place / "page.xsl"), "--folder", str(bench.place / "catalogue-run/out"), "--yes"]
    check(bench.start(add).finish() == 0, "there is no catalogue")
    xml = catalogue.read_text()
    run = ["vlxslt", "run", "--yes", "--xsl", "page.xsl"]
    edit = lambda *words: lambda folder: ["vlxslt", *words, "--catalogue", str(folder / "T.xml"), "--yes"]  # noqa: E731
    toml = bench.place.joinpath("vlxslt.toml").read_text()
    return [
        Scenario(bench, "one", {"out.html": "old"}, lambda folder: [
            *run, "plain.xml", "-o", str(folder / "out.html"), "--record", str(folder / "r.jsonl")], "r.jsonl"),
        Scenario(bench, "folder", {"out/a.xml": "old", "out/more/b.xml": "old"}, lambda folder: [
            *run, "in", "-o", str(folder / "out") + "/", "--record", str(folder / "r.jsonl")], "r.jsonl"),
        Scenario(bench, "transformation", {"plain.xml": "old"}, lambda folder: [
            "vlxslt", "run", "--yes", "plain.xml", "--transformation", "One", "--catalogue", str(catalogue_to(bench, folder)),
            "--record", str(folder / "r.jsonl")], "r.jsonl"),
        Scenario(bench, "add", {"T.xml": xml}, edit("add", "Two", "--xsl", "page.xsl")),
        Scenario(bench, "edit", {"T.xml": xml}, edit("edit", "One", "--suffix", "_new")),
        Scenario(bench, "delete", {"T.xml": xml}, edit("delete", "One")),
        Scenario(bench, "preferences", {"vlxslt.toml": toml}, lambda folder: [
            str(bench.tools / "save_preferences"), str(folder / "vlxslt.toml"), "Another"]),
    ]  # fmt: skip


def catalogue_to(bench, folder):
    """A catalogue whose only transformation writes into the folder."""
    path = bench.place / "catalogues" / f"{folder.name}.xml"
    path.parent.mkdir(exist_ok=True)
    path.write_text((bench.place / "T.xml").read_text().replace(str(bench.place / "catalogue-run/out"), str(folder)))
    return path


def sweep(scenario, arguments, met):
    """How many points are not as they must be."""
    points = scenario.list_points()
    chosen = points if arguments.all else scenario.choose(points, arguments.seed, met)
    failures = []

    def play(point):
        try:
            scenario.play(point)
        except Failure as failure:
            failures.append(str(failure))

    begin = time.monotonic()
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        list(pool.map(play, chosen))
    for failure in failures:
        print(failure, flush=True)
    calls = Counter(call for number, call, _ in {(number, call, 0) for number, call, _ in points})
    print(f"{scenario.name}: {sum(calls.values())} calls ({', '.join(f'{count} {call}' for call, count in sorted(calls.items()))}), "
          f"{len(points)} points, {len(chosen)} played in {time.monotonic() - begin:.0f} s, {len(failures)} wrong", flush=True)  # fmt: skip
    return len(failures)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    parser.add_argument("--all", action="store_true", help="play every point")
    parser.add_argument("--seed", type=int, default=1, help="of the sample")
    parser.add_argument("scenarios", nargs="*")
    arguments = parser.parse_args()
    bench = Bench(arguments.build, "fault sweep")
    scenarios = [each for each in make_scenarios(bench) if not arguments.scenarios or each.name in arguments.scenarios]
    met = set()
    wrong = sum(sweep(each, arguments, met) for each in scenarios)
    if wrong == 0 and scenarios:
        print("all good")
        bench.clean_up()
    return 0 if wrong == 0 and scenarios else 1


if __name__ == "__main__":
    sys.exit(main())
