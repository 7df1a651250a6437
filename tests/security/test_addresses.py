#!/usr/bin/env python3
"""Plays every construct with every spelling of an address, with every processor, beside a server that must see nothing;
and again with its host allowed, when it must see what is asked for. The table in docs/security.md lists the same."""

import argparse
import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

import constructs
from constructs import ALL, CONSTRUCTS, JDK, SAXON, SPELLINGS, XALAN, Construct, Spelling
from server import Server

PROJECT = Path(__file__).resolve().parents[2]
JARS = PROJECT / "build/processors"
SAXON_CLASS = "net.sf.saxon.TransformerFactoryImpl"
PROCESSORS = {
    "saxon-12": (SAXON, [JARS / "saxon" / name for name in ("Saxon-HE.jar", "xmlresolver.jar", "xmlresolver-data.jar")]),
    "saxon-11": (SAXON, [JARS / "tests/saxon-11/Saxon-HE.jar", JARS / "tests/saxon-11/xmlresolver.jar"]),
    "saxon-10": (SAXON, [JARS / "tests/saxon-10/Saxon-HE.jar"]),
    "saxon-9.9": (SAXON, [JARS / "tests/saxon-9.9/Saxon-HE.jar"]),
    "xalan": (XALAN, [JARS / "xalan/xalan.jar", JARS / "xalan/serializer.jar"]),
    "jdk": (JDK, []),
}
CLASSES = {
    SAXON: SAXON_CLASS,
    XALAN: "org.apache.xalan.processor.TransformerFactoryImpl",
    JDK: "com.sun.org.apache.xalan.internal.xsltc.trax.TransformerFactoryImpl",
}


def write_configuration(folder: Path, name: str) -> None:
    kind, jars = PROCESSORS[name]
    class_path = ";".join(map(str, jars))
    (folder / "vlxslt.toml").write_text(
        f'[[processor]]\nname = "{name}"\nclass_path = "{class_path}"\nclass_name = "{CLASSES[kind]}"\n'
    )


def write_case(folder: Path, construct: Construct, spelling: Spelling, host: str, key: str) -> None:
    address = spelling.make(f"{host}/{key}.{construct.suffix}")
    folder.mkdir(parents=True)
    # Whatever may be named by a file beside it is there.
    (folder / "secret.txt").write_text("secret")
    (folder / "leak.dtd").write_text(
        f'<!ENTITY % declare "<!ENTITY &#37; send SYSTEM \'{address}?%file;\'>">%declare;%send;'
    )
    (folder / "local.xml").write_text(f'<!DOCTYPE doc SYSTEM "{address}"><doc/>')
    (folder / "imports.xsl").write_text(constructs.top(f'<xsl:import href="{address}"/>'))
    (folder / "list.xml").write_text(f'<collection><doc href="{address}"/></collection>')
    (folder / "sheet.xsl").write_text((construct.stylesheet or constructs.IDENTITY).replace("$", address))
    document = construct.document.replace("$", address)
    if "<?xml-stylesheet" not in document:
        document = '<?xml-stylesheet type="text/xsl" href="sheet.xsl"?>' + document
    (folder / "in.xml").write_text(document)


def write_cases(folder: Path, kind: str, host: str) -> dict[str, tuple[Construct, Spelling]]:
    cases = {}
    for number, construct in enumerate(CONSTRUCTS):
        if kind not in construct.processors:
            continue
        for other, spelling in enumerate(SPELLINGS):
            key = f"{number:02}-{other:02}"
            write_case(folder / key, construct, spelling, host, key)
            cases[key] = construct, spelling
    return cases


def run(vlxslt: Path, folder: Path, options: list[str]) -> dict[str, dict]:
    """What became of each case."""
    record = folder / "record.jsonl"
    command = [vlxslt, "--config", folder / "vlxslt.toml", "run", folder / "in", "--recursive", "--match", "in.xml"]
    command += ["--use-pi", "--xinclude", "-o", f"{folder}/out/", "--record", record, "--yes", *options]
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=600)
    (folder / "log.txt").write_text(done.stderr)
    jobs = [json.loads(line) for line in record.read_text().splitlines()]
    return {Path(job["input"]).parent.name: job for job in jobs if job["type"] == "job"}


def texts_of(job: dict) -> str:
    return "\n".join(each["text"] for each in job.get("diagnostics", []))


def check_closed(cases, jobs, seen) -> list[str]:
    connections, requests = seen
    problems = [f"fetched: {describe(cases, path)}" for path, _ in requests]
    if connections != len(requests):
        problems.append(f"{connections} connections, {len(requests)} requests")
    for key, (construct, spelling) in cases.items():
        if construct.is_silent or construct.is_optional:
            continue
        said = texts_of(jobs[key])
        if jobs[key]["status"] == "done" and "is not opened" not in said and "leads to no file" not in said:
            problems.append(f"not refused: {construct.name}, {spelling.name}")
        elif spelling.is_network and construct.reads and "--allow-network" not in said:
            problems.append(f"no word of the setting: {construct.name}, {spelling.name}: {said or 'nothing'}")
    return problems


def check_open(cases, jobs, seen) -> list[str]:
    reached = {path.split("?")[0].lstrip("/").split(".")[0] for path, _ in seen[1]}
    problems = []
    for key, (construct, spelling) in cases.items():
        if spelling.is_network and construct.reads and not construct.is_optional and key not in reached:
            problems.append(f"not fetched: {construct.name}, {spelling.name}: {texts_of(jobs[key])}")
    return problems


def describe(cases, path: str) -> str:
    construct, spelling = cases.get(path.lstrip("/").split(".")[0], (None, None))
    return f"{construct.name}, {spelling.name}" if construct else path


def native_commands(folder: Path, address: str) -> list[list[str]]:
    """What the program reads without a processor."""

    def write(name: str, text: str) -> str:
        (folder / name).write_text(text.replace("$", address))
        return str(folder / name)

    namespace = "urn:oasis:names:tc:entity:xmlns:xml:catalog"
    document = write("doc.xml", '<!DOCTYPE doc SYSTEM "other.dtd"><doc/>')
    in_place = write("pi.xml", '<?oasis-xml-catalog catalog="$"?><!DOCTYPE doc SYSTEM "other.dtd"><doc/>')
    sheet = write("plain.xsl", constructs.IDENTITY)
    transformations = '<Transformations xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" {}/>'
    return [
        ["run", document, "--xsl", sheet, "--catalog",
         write("next.xml", f'<catalog xmlns="{namespace}"><nextCatalog catalog="$"/></catalog>')],
        ["run", document, "--xsl", sheet, "--catalog",
         write("system.xml", f'<catalog xmlns="{namespace}"><systemSuffix systemIdSuffix="other.dtd" uri="$"/></catalog>')],
        ["run", document, "--xsl", sheet, "--catalog",
         write("doctype.xml", f'<!DOCTYPE catalog SYSTEM "$"><catalog xmlns="{namespace}"/>')],
        ["run", in_place, "--xsl", sheet],
        ["run", "--components", write("a.ditamap", '<map><topicref href="$"/><topicref href="$" format="ditamap"/></map>'),
         "--xsl", sheet],
        ["run", "--components", write("b.ditamap", '<!DOCTYPE map SYSTEM "$" [<!ENTITY % e SYSTEM "$">%e;]><map/>'),
         "--xsl", sheet],
        ["params", write("import.xsl", constructs.top('<xsl:import href="$"/>'))],
        ["params", write("dtd.xsl", '<!DOCTYPE x SYSTEM "$" [<!ENTITY e SYSTEM "$">]>' + constructs.template("&e;"))],
        ["list", "--catalogue", write("c.xml", '<!DOCTYPE x SYSTEM "$">' + transformations.format(""))],
        ["list", "--catalogue", write("d.xml", transformations.format('xsi:noNamespaceSchemaLocation="$"'))],
        ["list", "--catalogue", write("e.xml", transformations.format('xsi:schemaLocation="urn:x $"'))],
        ["list", "--catalogue", address],
        ["run", address, "--xsl", sheet],
        ["run", document, "--xsl", address],
        ["call", "--client", "VlDispatcher", f'GetAppsForFile "{document}"'],
    ]  # fmt: skip


def check_native(vlxslt: Path, server: Server, folder: Path) -> list[str]:
    folder.mkdir()
    write_configuration(folder, "saxon-12")
    problems = []
    for spelling in SPELLINGS:
        for number, command in enumerate(native_commands(folder, spelling.make(f"{server.address}/n.xml"))):
            options = ["-o", str(folder / "out/")] if command[0] == "run" else []
            subprocess.run([vlxslt, "--config", folder / "vlxslt.toml", *command, *options, "--no-input"],
                           stdin=subprocess.DEVNULL, capture_output=True, timeout=120)  # fmt: skip
            if server.take()[0]:
                problems.append(f"fetched without a processor: {command}, {spelling.name}")
    print(f"without a processor: {number + 1} commands in each spelling, {len(problems)} problems", flush=True)
    return problems


def check_redirects(vlxslt: Path, server: Server, folder: Path) -> list[str]:
    """A redirect leads to trusted hosts only, and not round in circles."""
    folder.mkdir()
    write_configuration(folder, "saxon-12")
    other = server.address.replace("127.0.0.1", "localhost")
    problems = []
    for target, is_followed in ((f"http://{server.address}/x.dtd", True), (f"http://{other}/x.dtd", False),
                                ("file:///etc/hostname", False), ("/redirect/", False)):  # fmt: skip
        (folder / "in.xml").write_text(f'<!DOCTYPE doc SYSTEM "http://{server.address}/redirect/{target}"><doc/>')
        (folder / "plain.xsl").write_text(constructs.IDENTITY)
        command = [vlxslt, "--config", folder / "vlxslt.toml", "run", folder / "in.xml", "--xsl", folder / "plain.xsl"]
        done = subprocess.run([*command, "--allow-network", server.address, "--yes", "-o", folder / "out.xml"],
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=120)  # fmt: skip
        requests = server.take()[1]
        if (done.returncode == 0) != is_followed or any(host == other for _, host in requests):
            problems.append(f"redirect to {target}: exit status {done.returncode}, {requests}")
    return problems


def check_processor(name: str, vlxslt: Path, server: Server, folder: Path) -> list[str]:
    kind, jars = PROCESSORS[name]
    if absent := [jar for jar in jars if not jar.exists()]:
        return [f"{absent[0]} is not there; ./dev test fetches it"]
    cases = write_cases(folder / "in", kind, server.address)
    write_configuration(folder, name)
    server.take()
    problems = check_closed(cases, run(vlxslt, folder, []), server.take())
    allowed = run(vlxslt, folder, ["--allow-network", "127.0.0.1"])
    problems += check_open(cases, allowed, server.take())
    print(f"{name}: {len(cases)} cases, {len(problems)} problems", flush=True)
    return problems


def check_table() -> list[str]:
    """The page that people read lists the same constructs and spellings."""
    rows = re.findall(r"^\| `?([^|`]+?)`? \|", (PROJECT / "docs/security.md").read_text(), re.MULTILINE)
    return [f"docs/security.md has no row for {each.name}" for each in (*CONSTRUCTS, *SPELLINGS) if each.name not in rows]


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=Path, default=PROJECT / "build/dev")
    parser.add_argument("--processor", action="append", choices=PROCESSORS)
    parser.add_argument("--keep", type=Path, help="leave everything in this folder")
    arguments = parser.parse_args()
    server = Server()
    all_problems = check_table()
    if not arguments.processor:
        with tempfile.TemporaryDirectory(prefix="vlxslt-addresses-") as temporary:
            all_problems += check_native(arguments.build / "bin/vlxslt", server, Path(temporary) / "native")
            all_problems += check_redirects(arguments.build / "bin/vlxslt", server, Path(temporary) / "redirects")
    print("\n".join(f"  {problem}" for problem in all_problems))
    for name in arguments.processor or PROCESSORS:
        with tempfile.TemporaryDirectory(prefix="vlxslt-addresses-") as temporary:
            folder = (arguments.keep or Path(temporary)) / name
            folder.mkdir(parents=True)
            problems = check_processor(name, arguments.build / "bin/vlxslt", server, folder)
            print("\n".join(f"  {problem}" for problem in problems[:60]))
            all_problems += problems
    return 1 if all_problems else 0


if __name__ == "__main__":
    sys.exit(main())
