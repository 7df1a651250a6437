#!/usr/bin/env python3
"""Runs of real documents one by one and several at once give the same: console, record, exit status and files, with every
processor, with errors, further results and questions. A run that is cancelled leaves what a run one by one leaves at
that point. Exit 77: something outside is missing.

usage: jobs.py --build FOLDER [--count N] [--rounds N] [--seed N]   N topics (0: all); rounds of each comparison
"""

import argparse
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
import peers  # noqa: E402
from checks import Failure, check  # noqa: E402

JOBS = (2, 4, 16)
DOCBOOK = Path("/usr/share/xml/docbook/stylesheet/docbook-xsl")
SECONDS = 600

ARTICLE = """<!DOCTYPE article PUBLIC "-//OASIS//DTD DocBook XML V4.5//EN" \
"http://www.oasis-open.org/docbook/xml/4.5/docbookx.dtd">
<article id="a{number}"><title>Article {number}</title>{sections}</article>
"""
SECTION = '<section id="s{id}"><title>Section {id}</title><para>{text} <xref linkend="s{other}"/></para></section>'
TALK = """<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"><xsl:template match="/">
<xsl:for-each select="//*"><xsl:message>a message of <xsl:value-of select="name()"/></xsl:message></xsl:for-each>
<out><xsl:value-of select="count(//*)"/></out></xsl:template></xsl:stylesheet>
"""


class Scene:
    """A folder of inputs that are transformed into `out` beside them, each time anew."""

    def __init__(self, folder: Path, vlxslt: Path, processors):
        self.folder, self.vlxslt = folder, vlxslt
        self.configuration = folder / "vlxslt.toml"
        peers.write_configuration(self.configuration, processors)
        self.talk = folder / "talk.xsl"
        self.talk.write_text(TALK)
        self.keys = peers.write_keys(folder / "keydef.xml")

    def command(self, jobs: int, arguments: list[str]) -> list[str]:
        return [str(self.vlxslt), "--config", str(self.configuration), "run", *arguments, "-j", str(jobs),
                "--record", str(self.folder / "record")]  # fmt: skip

    def clear(self, before=None) -> None:
        for name in ("out", "record"):
            path = self.folder / name
            shutil.rmtree(path) if path.is_dir() else path.unlink(missing_ok=True)
        if before:
            before()

    def read_outputs(self) -> dict[str, bytes]:
        out = self.folder / "out"
        return {str(path.relative_to(out)): path.read_bytes() for path in sorted(out.rglob("*")) if path.is_file()}

    def read_record(self) -> list[dict]:
        lines = [json.loads(line) for line in (self.folder / "record").read_text().splitlines()]
        for line in lines:
            line.pop("milliseconds", None)
            line.pop("started", None)
        return lines

    def play(self, jobs: int, arguments: list[str], before=None) -> tuple:
        self.clear(before)
        done = subprocess.run(self.command(jobs, arguments), capture_output=True, cwd=self.folder, timeout=SECONDS)
        check((self.folder / "record").exists(), done.stderr.decode(errors="replace"))
        return done.returncode, done.stdout, done.stderr, self.read_record(), self.read_outputs()

    def compare(self, what: str, arguments: list[str], before=None, jobs=JOBS) -> tuple:
        expected = self.play(1, arguments, before)
        for count in jobs:
            found = self.play(count, arguments, before)
            for name, one, other in zip(("exit status", "standard output", "console", "record", "files"), expected, found):
                if one != other:
                    raise Failure(f"{what}, -j {count}: another {name}\n{show_difference(one, other)}")
        return expected


def show_difference(one, other) -> str:
    if isinstance(one, dict):
        names = [name for name in sorted({*one, *other}) if one.get(name) != other.get(name)]
        return "\n".join([*names[:10], show_difference(one.get(names[0]), other.get(names[0]))])
    lines, others = ([str(each) for each in value] if isinstance(value, list)
                     else str(value).replace("\\n", "\n").splitlines() for value in (one, other))  # fmt: skip
    index = next((i for i, (a, b) in enumerate(zip(lines, others)) if a != b), min(len(lines), len(others)))
    return f"one by one: {lines[index:index + 3]}\nat once:    {others[index:index + 3]}"


def compare_topics(scene: Scene, topics: list[Path], processor) -> None:
    """With an error: one topic is broken."""
    inputs = [str(topic) for topic in topics]
    broken = scene.folder / "flat/broken.dita"
    broken.write_text(topics[0].read_text()[:-20])
    inputs.insert(3, str(broken))
    # The JDK's processor takes the image functions of the other stylesheet for Java calls.
    stylesheet = scene.talk if processor is peers.JDK else peers.STYLESHEET
    arguments = [*inputs, "--xsl", str(stylesheet), "-p", f"KEYREF-FILE='{scene.keys}'", "--processor",
                 processor.name, "-o", "out/", "--yes"]  # fmt: skip
    status, *_, record, outputs = scene.compare(f"topics with {processor.name}", arguments)
    check(status == 1 and len(outputs) == len(topics), f"{processor.name}: exit {status}, {len(outputs)} outputs")
    check(record[-1]["failed"] == 1, f"{processor.name}: {record[-1]}")


def compare_maps(scene: Scene, count: int) -> None:
    maps = sorted(map(str, peers.find_corpus().rglob("*.ditamap")))[:count]
    scene.compare("maps with their components", [*maps, "--components", "--xsl", "talk.xsl", "-o", "out/", "--yes"])


def write_articles(folder: Path, count: int, chance: random.Random) -> list[str]:
    folder.mkdir()
    for number in range(count):
        ids = [f"{number}-{index}" for index in range(chance.randint(2, 12))]
        sections = "".join(SECTION.format(id=each, text="words " * chance.randint(1, 300), other=chance.choice(ids))
                           for each in ids)  # fmt: skip
        (folder / f"{number}.xml").write_text(ARTICLE.format(number=number, sections=sections))
    return sorted(map(str, folder.iterdir()))


def compare_docbook(scene: Scene, count: int, chance: random.Random) -> None:
    """Chunks are further results, which every article writes into a folder of its own name."""
    articles = write_articles(scene.folder / "articles", count, chance)
    catalog = ["--catalog", "/etc/xml/docbook-xml.xml"] if Path("/etc/xml/docbook-xml.xml").exists() else []
    common = [*articles, *catalog, "-o", "out/", "--yes"]
    for processor in peers.ALL:
        scene.compare(f"DocBook with {processor.name}", [*common, "--processor", processor.name, "--extension", "html",
                      "--xsl", str(DOCBOOK / "html/docbook.xsl")], jobs=(2, 16))  # fmt: skip
    chunks = scene.compare("DocBook in chunks", [*common, "--processor", "Xalan", "--xsl", str(DOCBOOK / "html/chunk.xsl"),
                           "-p", "use.id.as.filename=1"])  # fmt: skip
    check(len(chunks[-1]) > 2 * count, f"{len(chunks[-1])} chunks")


def compare_questions(scene: Scene, topics: list[Path], chance: random.Random) -> None:
    """Outputs that exist already, and a person who says yes and no."""
    count = min(len(topics), 12)
    script = scene.folder / "script"
    script.write_text("".join(chance.choice(["answer ok\n", "answer cancel\n"]) for _ in range(count)))

    def fill() -> None:
        (scene.folder / "out").mkdir()
        for topic in topics[:count]:
            (scene.folder / "out" / topic.name).write_text("old")

    flat = [*map(str, topics[:count]), "--xsl", "talk.xsl", "-o", "out/", "--script", str(script)]
    scene.compare("questions", flat, fill)


def play_cancel(scene: Scene, arguments: list[str], chance: random.Random) -> None:
    """The console and the outputs of a cancelled run are the beginning of those of a whole one."""
    whole = scene.play(1, arguments)
    records = [json.dumps(line) for line in whole[3]]
    scene.clear()
    process = subprocess.Popen(scene.command(chance.choice(JOBS), arguments), stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, cwd=scene.folder)  # fmt: skip
    enough = chance.randint(1, len(records) - 2)
    while process.poll() is None and (not (scene.folder / "record").exists()
                                      or (scene.folder / "record").read_bytes().count(b"\n") < enough):
        time.sleep(0.002)
    process.send_signal(signal.SIGINT)
    process.communicate(timeout=SECONDS)
    record, outputs = scene.read_record(), scene.read_outputs()
    done = [line for line in record if line.get("status") not in ("cancelled", None)]
    check([json.dumps(line) for line in done] == records[1:1 + len(done)], f"other jobs were done: {done[-1:]}")
    cancelled = [line for line in record if line.get("status") == "cancelled"]
    check(process.returncode == 130 or not cancelled, f"exit {process.returncode}")
    written = {name for line in done for each in line.get("outputs", []) for name in [os.path.relpath(each["path"], scene.folder / "out")]}
    check(set(outputs) == written, f"files and record differ: {sorted(set(outputs) ^ written)[:5]}")
    check(all(whole[4][name] == data for name, data in outputs.items()), "another output")


def play(arguments, folder: Path) -> None:
    chance = random.Random(arguments.seed)
    scene = Scene(folder, (arguments.build / "bin/vlxslt").resolve(), peers.ALL)
    topics = peers.copy_topics(folder / "in")
    if arguments.count:
        topics = chance.sample(topics, arguments.count)
    flat = folder / "flat"
    flat.mkdir()
    topics = [topic.rename(flat / f"{index:03}-{topic.name}") for index, topic in enumerate(topics)]
    for processor in peers.ALL:
        compare_topics(scene, topics, processor)
    compare_maps(scene, 5 if arguments.count else 100)
    compare_docbook(scene, 6, chance)
    for _ in range(arguments.rounds):
        compare_questions(scene, topics, chance)
        talk = [*map(str, topics), "--xsl", "talk.xsl", "-o", "out/", "--yes"]
        play_cancel(scene, talk, chance)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=Path, required=True)
    parser.add_argument("--count", type=int, default=24)
    parser.add_argument("--rounds", type=int, default=2)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    reason = peers.missing() or ("" if DOCBOOK.is_dir() else f"{DOCBOOK} is not there")
    if reason:
        print(f"SKIPPED: {reason}")
        return 77
    with tempfile.TemporaryDirectory(prefix="vlxslt-jobs-") as temporary:
        try:
            play(arguments, Path(temporary))
        except Failure as failure:
            print(re.sub(r"(.{3000}).*", r"\1 …", str(failure)))
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
