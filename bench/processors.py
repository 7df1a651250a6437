#!/usr/bin/env python3
"""Measures whole runs, one process each and cold, beside the programs that people use otherwise, all in turns in one
session. Exit 1 when a ratio is worse than its limit, 77 when something outside is missing. See bench/README.md."""

import argparse
import os
import shutil
import sys
import tempfile
from pathlib import Path

from measure import Command, Limit, Report, best, run
from tools import Java, Tool, Tools, find_javas, java_command, missing, peers

SAXON = "Saxon 12"
# Ours to the peer's, by the number of topics and what the peer's name begins with; by the release of Java where it
# matters.
LIMITS = {
    (220, SAXON, 17): Limit(0.30, 0.26),
    (220, SAXON, 25): Limit(0.25, 0.24),
    (220, "saxonche", None): Limit(0.60, 0.80),
    (1, SAXON, 17): Limit(0.50),
    (1, SAXON, 25): Limit(0.42),
}
FIRST_RUN = Limit(0.65)
MESSAGES = Limit(2.0)
MAX_IDLE = 50  # ms
SIZES = [1, 10, 100, 220, 2_200, 22_000]
MAX_GROWTH = 105  # of time, from 220 inputs to 22,000
MAX_MEMORY_OF_INPUT = 1024  # bytes
BIG_SIZES = [1, 10, 100, 300]  # MB


class Session:
    """The inputs, the configurations, and what comes out of it."""

    def __init__(self, folder: Path, vlxslt: Path, report: Report) -> None:
        self.folder, self.vlxslt, self.report = folder, vlxslt, report
        self.keys = peers.write_keys(folder / "keydef.xml")
        # Peers take the files of one folder, so all topics go into one.
        self.flat = folder / "in"
        self.flat.mkdir()
        for topic in peers.copy_topics(folder / "tree"):
            topic.rename(self.flat / "-".join(topic.relative_to(folder / "tree").parts))
        self.topics = sorted(self.flat.iterdir())
        self.tools = Tools(folder, self.keys)
        self.count = 0
        os.environ["XDG_CACHE_HOME"] = str(folder / "cache")

    def new_folder(self) -> Path:
        self.count += 1
        made = self.folder / f"out{self.count}"
        made.mkdir()
        return made

    def configure(self, java: Java, more: str = "") -> Path:
        self.count += 1
        file = self.folder / f"vlxslt{self.count}.toml"
        peers.write_configuration(file, [peers.SAXON_12])
        lines = [f'java_home = "{java.home}"' if line.startswith("java_home") else line
                 for line in file.read_text().splitlines()]  # fmt: skip
        file.write_text("\n".join([*lines, more]) + "\n")
        return file

    def own(self, source: Path, configuration: Path) -> Command:
        inputs = [source] if source.is_file() else sorted(source.iterdir())
        return lambda _: peers.own_command(self.vlxslt, configuration, inputs, f"{self.new_folder()}/", self.keys)

    def peer(self, tool: Tool, source: Path) -> Command:
        return lambda _: tool.compose(source, self.new_folder())

    def prepare(self, configuration: Path) -> None:
        """As an installation does: a class archive beside the program, or else in the user's cache."""
        run([str(self.vlxslt), "--config", str(configuration), "processors", "--prepare"])


def limit_of(topics: int, tool: Tool, java: Java) -> Limit | None:
    return next((limit for (count, name, major), limit in LIMITS.items()
                 if count == topics and tool.name.startswith(name) and major in (None, java.major)), None)  # fmt: skip


def measure_first_run(session: Session, java: Java, rounds: int) -> None:
    """As after an installation, which prepares the configured processors: the user's cache is empty."""
    configuration, topic = session.configure(java), session.topics[0]
    session.prepare(configuration)

    def own(number: int) -> list[str]:
        os.environ["XDG_CACHE_HOME"] = str(session.new_folder())
        return session.own(topic, configuration)(number)

    tool = session.tools.saxon(peers.SAXON_12, java)
    first, of_peer = best([own, session.peer(tool, topic)], rounds)
    os.environ["XDG_CACHE_HOME"] = str(session.folder / "cache")
    session.report.compare(f"first run, {java.name}", first, tool.name, of_peer, FIRST_RUN)


def measure_tools(session: Session, javas: list[Java], rounds: int) -> None:
    tools = session.tools.all(javas)
    for tool in tools:
        if reason := missing(tool):
            session.report.lack(f"{tool.name}: {reason}")
    tools = [tool for tool in tools if not missing(tool)]
    for source, count in ((session.topics[0], 1), (session.flat, len(session.topics))):
        commands = [session.own(source, session.configure(java)) for java in javas]
        commands += [session.peer(tool, source) for tool in tools]
        results = best(commands, rounds)
        for java, own in zip(javas, results):
            for tool, of_peer in zip(tools, results[len(javas):]):
                if not tool.uses_java or tool.name.endswith(java.name):
                    what = f"{count} topic{'s' if count > 1 else ''}, {java.name}"
                    session.report.compare(what, own, tool.name, of_peer, limit_of(count, tool, java))


def measure_sync(session: Session, java: Java, rounds: int) -> None:
    """Depends on the disk alone, so it has no limit."""
    own = [session.own(session.flat, session.configure(java, more)) for more in ("", "[outputs]\nsync = false")]
    synced, unsynced = best(own, rounds)
    session.report.compare(f"{len(session.topics)} topics, with sync", synced, "ours without sync", unsynced)


def measure_messages(session: Session, java: Java, rounds: int) -> None:
    """A stylesheet that says something 100,000 times."""
    source, stylesheet = session.folder / "messages.xml", session.folder / "messages.xsl"
    source.write_text("<a>" + "<i/>" * 100_000 + "</a>")
    stylesheet.write_text(
        '<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"><xsl:template match="i">'
        '<xsl:message>message number <xsl:value-of select="position()"/></xsl:message></xsl:template></xsl:stylesheet>'
    )
    compare_plain(session, java, rounds, source, stylesheet, "100,000 messages", MESSAGES)


def compare_plain(session: Session, java: Java, rounds: int, source: Path, stylesheet: Path, what: str,
                  limit: Limit | None = None, options: tuple[str, ...] = ()) -> None:  # fmt: skip
    configuration = session.configure(java)
    if options:
        configuration.write_text(configuration.read_text().replace("java_options = []", f"java_options = {list(options)}"))
    own = [str(session.vlxslt), "--config", str(configuration), "run", str(source), "--xsl", str(stylesheet), "--yes", "-o"]
    saxon = [*java_command(java, peers.SAXON_12.jars), "net.sf.saxon.Transform", f"-s:{source}", f"-xsl:{stylesheet}"]
    saxon[1:1] = options
    results = best([lambda _: [*own, f"{session.folder}/own-out"], lambda _: [*saxon, f"-o:{session.folder}/peer-out"]],
                   rounds)  # fmt: skip
    session.report.compare(what, results[0], "Saxon 12's command line", results[1], limit)


def measure_idle(session: Session, java: Java) -> None:
    request = [str(session.vlxslt), "--config", str(session.configure(java)), "call", "XSLTGetTrScenarioFile nothing"]
    seconds = min(run(request).wall for _ in range(10))
    session.report.state("a request that transforms nothing", seconds * 1000, "ms", MAX_IDLE)


def measure_growth(session: Session, java: Java, rounds: int) -> None:
    """From one input to 22,000, in folders of 220."""
    report, used = session.report, {}
    for size in SIZES:
        source = session.folder / f"scale{size}"
        for number in range(size):
            topic = session.topics[number % len(session.topics)]
            copy = source / f"{number // len(session.topics):03}" / topic.name
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(topic, copy)
        command = peers.own_command(session.vlxslt, session.configure(java), [source], "", session.keys)

        def make(_: int) -> list[str]:
            target = session.new_folder()
            return [*command[:-1], f"{target}/", "--recursive"]

        used[size] = best([make], 1 if size > 2000 else rounds)[0]
        report.state(f"{size} inputs", used[size].wall, "s")
        report.state(f"{size} inputs, processor", used[size].processor, "s")
        report.state(f"{size} inputs, memory", used[size].memory, "MB")
        shutil.rmtree(source)
    most, base = used[SIZES[-1]], used[220]
    growth = (most.wall - used[1].wall) / (base.wall - used[1].wall)
    report.state("22,000 inputs to 220, less the start", growth, "times", MAX_GROWTH)
    bytes_each = (most.memory - base.memory) * 2**20 / (SIZES[-1] - 220)
    report.state("memory of an input more", bytes_each, "bytes", MAX_MEMORY_OF_INPUT)


def measure_big(session: Session, java: Java) -> None:
    """One input of many megabytes: rows of text, made to a list."""
    stylesheet = session.folder / "rows.xsl"
    stylesheet.write_text(
        '<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"><xsl:template match="/rows"><ul>'
        '<xsl:apply-templates select="row"/></ul></xsl:template><xsl:template match="row"><li id="{@id}"><xsl:value-of '
        'select="name, note" separator=": "/></li></xsl:template></xsl:stylesheet>'
    )
    for size in BIG_SIZES:
        source = session.folder / "rows.xml"
        with source.open("w") as file:
            file.write("<rows>")
            row = 0
            while file.tell() < size * 2**20:
                row += 1
                file.write(f'<row id="r{row}"><name>row number {row}</name><note>some text about {row * 7919}</note></row>\n')
            file.write("</rows>")
        compare_plain(session, java, 1, source, stylesheet, f"one input of {size} MB", None, ("-Xmx6g",))


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=Path, default=peers.PROJECT / "build/release")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--scale", action="store_true", help="up to 22,000 inputs, and inputs up to 300 MB, too")
    parser.add_argument("--json", type=Path, metavar="FILE", help="write what was measured as JSON")
    options = parser.parse_args()
    if reason := peers.missing():
        print(f"SKIPPED: {reason}")
        return 77
    with tempfile.TemporaryDirectory(prefix="vlxslt-bench-") as temporary:
        session = Session(Path(temporary), options.build / "bin/vlxslt", Report(options.rounds))
        report, javas = session.report, find_javas()
        for major in sorted({major for _, _, major in LIMITS if major} - {java.major for java in javas}):
            report.lack(f"Java {major}: none is installed")
        report.head()
        for java in javas:
            measure_first_run(session, java, options.rounds)
        measure_tools(session, javas, options.rounds)
        measure_sync(session, javas[0], options.rounds)
        measure_messages(session, javas[0], options.rounds)
        measure_idle(session, javas[0])
        if options.scale:
            measure_growth(session, javas[0], options.rounds)
            measure_big(session, javas[0])
        return report.close(options.json)


if __name__ == "__main__":
    sys.exit(main())
