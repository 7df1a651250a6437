#!/usr/bin/env python3
"""Compares every diagnostic of a few faulty stylesheets with what each processor says by itself: how many there are,
severity, file, line, column, code and text. Saxon and Xalan are asked through their command lines, the JDK's processor,
which has none, through a plain listener. Then the record and the log of a run must show the same."""

import argparse
import concurrent.futures
import json
import re
import subprocess
import sys
import tempfile
from dataclasses import dataclass, replace
from pathlib import Path
from urllib.parse import unquote

import peers

HERE = Path(__file__).resolve().parent
INPUTS = HERE.parent / "cases/messages/input"
# Three compile errors of two kinds, one in an included module, one at run time, a message that ends the run.
STYLESHEETS = ["names", "attributes", "main", "type", "lines"]
MESSAGE = "first line\n\nthird line"
SEVERITIES = {"warning": "Warning", "error": "Error", "fatal": "Fatal Error"}  # in the record and in the log


@dataclass(frozen=True)
class Problem:
    severity: str
    file: str  # its name; empty when the processor names none
    line: int
    column: int
    code: str
    text: str


@dataclass
class Said:
    problems: list[Problem]
    messages: list[str]


def name_of(address: str) -> str:
    return unquote(address).rsplit("/", 1)[-1]


def run_java(class_path: list[Path], *arguments: str) -> subprocess.CompletedProcess:
    java = [str(peers.find_java_home() / "bin/java"), "-XX:TieredStopAtLevel=1", "-cp", ":".join(map(str, class_path))]
    return subprocess.run([*java, *arguments], cwd=INPUTS, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)


def read_rows(output: str) -> dict[str, list[list[str]]]:
    """The lines of a driver, split at tabs, by stylesheet."""
    rows: dict[str, list[list[str]]] = {}
    for line in output.splitlines():
        if "\t" in line:
            rows[list(rows)[-1]].append([cell.replace("\\n", "\n") for cell in line.split("\t")])
        else:
            rows[Path(line).stem] = []
    return rows


# ---- What the processors say by themselves. All read with the parser that comes with vlxslt: another one counts the
# columns of a tag over several lines differently.


def ask_saxon(processor, stylesheet: str) -> Said:
    arguments = ["net.sf.saxon.Transform", "-s:doc.xml", f"-xsl:{stylesheet}.xsl"]
    told = run_java([*processor.jars, *resolvers(), parser()], *arguments).stderr
    head = re.compile(r"^(?P<kind>Warning|.*?[Ee]rror).* (?:on )?line (?P<line>\d+) column (?P<column>\d+) of (?P<file>.*):$")
    problems: list[Problem] = []
    message, body, where = [], [], None

    def finish() -> None:
        if where:
            # What follows says in which template it happened.
            text = " ".join(" ".join(body).split("  In ")[0].split())
            code, text = re.fullmatch(r"([A-Z]{4}\d{4}):? (.*)", text).groups()
            severity = "Warning" if where["kind"] == "Warning" else "Error"
            problems.append(Problem(severity, where["file"], int(where["line"]), int(where["column"]), code, text))

    for line in told.splitlines():
        if found := head.match(line):
            finish()
            where, body = found, []
        elif where and line.startswith("  "):
            body.append(line)
        elif not where:
            message.append(line)
        # Else the last line, which sums up: "Errors were reported during stylesheet compilation".
    finish()
    return Said(problems, ["\n".join(message)] if message else [])


def ask_xalan(processor, stylesheet: str, listened: list[list[str]]) -> Said:
    arguments = ["org.apache.xalan.xslt.Process", "-IN", "doc.xml", "-XSL", f"{stylesheet}.xsl", "-OUT", "/dev/null"]
    told = run_java([*processor.jars, parser()], *arguments)
    # Its command line goes on without the stylesheet that failed, and finds no other one.
    told = re.split(r"\n\(Location of error unknown\)XSLT Error ", told.stdout + told.stderr)[0]
    severities = {row[4]: row[0] for row in listened}
    said = Said([], [])
    entries = re.split(r"^(?=file:|\(Location of error unknown\))", told, flags=re.MULTILINE)
    place = re.compile(r"(file:\S+); Line #(\d+); Column #(\d+); (.*)|\(Location of error unknown\)(.*)", re.DOTALL)
    for entry in filter(None, map(str.strip, entries)):
        file, line, column, text, placeless = place.fullmatch(entry).groups()
        text = placeless or text
        if text == MESSAGE:
            said.messages.append(text)
            at = (name_of(file), int(line), int(column))
            continue
        if text == "Stylesheet directed termination":
            # The end has no place; vlxslt shows that of the message that asked for it.
            file, line, column = at
        # The class of an exception is no help to a reader, so vlxslt leaves it out.
        shown = re.sub(r"^org\.apache\.\S+Exception: ", "", text)
        said.problems.append(Problem(severities[text], name_of(file), int(line), int(column), "", shown))
    return said


def ask_jdk(listened: list[list[str]]) -> Said:
    said = Said([], [])
    for severity, file, line, column, text in listened:
        if text == MESSAGE:
            said.messages.append(text)
            continue
        # It says this behind the reasons, without one of its own.
        if text == "Could not compile stylesheet":
            continue
        # It writes files and lines into its texts, and knows no columns.
        if found := re.fullmatch(r"(?:(file:\S+): )?line (\d+): (.*)", text, re.DOTALL):
            file, line, text = found.groups()
        problem = Problem(severity, name_of(file or ""), int(line), int(column), "", text)
        # It repeats each at the second look, and the last one as fatal; vlxslt shows it once, as it came first.
        if replace(problem, severity="Error") not in said.problems:
            said.problems.append(problem)
    return said


def resolvers() -> list[Path]:
    return [peers.DEBIAN / "xml-resolver.jar"]


def parser() -> Path:
    return peers.JARS / "xerces/xercesImpl.jar"


def listen(processor) -> dict[str, list[list[str]]]:
    jars = [] if processor is peers.JDK else [*processor.jars, parser()]
    arguments = [str(HERE / "PlainListener.java"), processor.factory, "doc.xml", *(f"{name}.xsl" for name in STYLESHEETS)]
    return read_rows(run_java(jars, *arguments).stdout)


def ask_processor(processor) -> dict[str, Said]:
    if processor in (peers.SAXON_12, peers.SAXON_9):
        return {stylesheet: ask_saxon(processor, stylesheet) for stylesheet in STYLESHEETS}
    listened = listen(processor)
    if processor is peers.XALAN:
        return {stylesheet: ask_xalan(processor, stylesheet, listened[stylesheet]) for stylesheet in STYLESHEETS}
    return {stylesheet: ask_jdk(listened[stylesheet]) for stylesheet in STYLESHEETS}


# ---- What vlxslt makes of it


def ask_program(processor, vlxslt: Path, folder: Path) -> tuple[dict[str, list[Problem]], dict[str, str]]:
    """What one run records and logs for each stylesheet; every input names its own one."""
    configuration, record = folder / "vlxslt.toml", folder / "run.jsonl"
    peers.write_configuration(configuration, [processor])
    inputs = [folder / f"{stylesheet}.xml" for stylesheet in STYLESHEETS]
    for path in inputs:
        href = (INPUTS / f"{path.stem}.xsl").as_uri()
        path.write_text(f"<?xml-stylesheet type='text/xsl' href='{href}'?>\n" + (INPUTS / "doc.xml").read_text())
    log = peers.run([str(vlxslt), "--config", str(configuration), "run", *map(str, inputs), "--use-pi", "-o",
                     f"{folder}/out/", "--extension", "out", "--record", str(record)]).stdout  # fmt: skip
    jobs = [json.loads(line) for line in record.read_text().splitlines()[1:-1]]
    problems = [[Problem(SEVERITIES[each["severity"]], each["file"], each["line"] or -1, each["column"] or -1,
                         each.get("code", ""), each["text"]) for each in job["diagnostics"]] for job in jobs]  # fmt: skip
    sections = re.findall(r"^XSL Processor Messages .*?\n(.*?)\n\nTransformation", log, re.DOTALL | re.MULTILINE)
    return dict(zip(STYLESHEETS, problems)), dict(zip(STYLESHEETS, sections))


def as_log(said: Said) -> str:
    return "\n".join(said.messages + [
        f"{each.severity} at file {each.file}, line {each.line}, char {each.column}, Message: {each.text}"
        for each in said.problems])  # fmt: skip


def with_whole_paths(expected: Said, stylesheet: str, folder: Path) -> Said:
    """Where a processor names no file, vlxslt names what was at work: the stylesheet."""
    subject = f"{stylesheet}.xsl"

    def whole(file: str) -> str:
        return str(folder / f"{stylesheet}.xml" if (file or subject) == "doc.xml" else INPUTS / (file or subject))

    return Said([replace(each, file=whole(each.file)) for each in expected.problems], expected.messages)


def compare(processor, build: Path, folder: Path) -> list[str]:
    """What differs."""
    differences = []
    expected = ask_processor(processor)
    recorded, logged = ask_program(processor, build / "bin/vlxslt", folder)
    for stylesheet in STYLESHEETS:
        want = with_whole_paths(expected[stylesheet], stylesheet, folder)
        if not want.problems:
            differences.append(f"{processor.name}, {stylesheet}: the processor itself said nothing")
        for itself, vlxslt in ((want.problems, recorded.get(stylesheet)), (as_log(want), logged.get(stylesheet))):
            if itself != vlxslt:
                differences.append(f"{processor.name}, {stylesheet}:\n  itself {itself}\n  vlxslt {vlxslt}")
    count = sum(len(said.problems) for said in expected.values())
    print(f"{processor.name}: {count} problems, {len(differences)} differences", flush=True)
    return differences


def main() -> int:
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("--build", type=Path, default=peers.PROJECT / "build/dev")
    arguments.add_argument("--processor", action="append", help="only this one; may be repeated")
    options = arguments.parse_args()
    chosen = [each for each in peers.ALL if not options.processor or each.name in options.processor]
    if absent := [str(jar) for each in chosen for jar in each.jars if not jar.exists()]:
        print(f"missing: {' '.join(absent)}")
        return 1
    with tempfile.TemporaryDirectory(prefix="vlxslt-diagnostics-") as temporary:
        folders = [Path(temporary) / str(index) for index in range(len(chosen))]
        for folder in folders:
            folder.mkdir()
        with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
            found = pool.map(compare, chosen, [options.build.resolve()] * len(chosen), folders)
            differences = [difference for each in found for difference in each]
    print("\n".join(differences))
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main())
