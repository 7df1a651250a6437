#!/usr/bin/env python3
"""Collects what the fuzz targets begin with from the cases, the examples and the resources, and words for each target
from the product's tables. Leaves INTO/TARGET/… and INTO/TARGET.dict."""

import argparse
import os
import re
import shutil
import struct
import sys
import xml.etree.ElementTree as xml

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
MAX_SIZE = 1 << 15


def read(path):
    with open(os.path.join(ROOT, path), "rb") as file:
        return file.read()


def read_text(path):
    return read(path).decode("utf-8", "replace")


def list_files(*extensions):
    """What the cases and the examples hold, by extension; a seed is no larger than what a fuzzer works well with."""
    for top in ("tests/cases", "examples", "packaging"):
        for folder, folders, names in os.walk(os.path.join(ROOT, top)):
            folders.sort()
            for name in sorted(names):
                path = os.path.relpath(os.path.join(folder, name), ROOT)
                if name.endswith(extensions) and os.path.getsize(os.path.join(ROOT, path)) <= MAX_SIZE:
                    yield path


def list_transcripts():
    return [read_text(path) for path in list_files("case.txt")]


def output_lines(marks):
    """The lines of output in each transcript, without their marks."""
    for transcript in list_transcripts():
        yield [line[4:] for line in transcript.splitlines() if line.startswith(tuple("  " + mark + " " for mark in marks))]


def collect_requests():
    pattern = re.compile(r"""(['"])((?:xslt|vlxslt)\w+ .*?)\1(?:\s|$)""", re.IGNORECASE)
    for transcript in list_transcripts():
        for match in pattern.finditer(transcript):
            text = match[2].replace("\\\"", "\"").replace("$WORK/", "").replace("${WORK}/", "").replace("$file", "T.xml")
            yield re.sub(r"\$\w+", "x", text).encode()
    yield b"VlxsltAddTransformation -trfile T.xml -name N -xslfilepath s.xsl -sparam a '1' -suffix x -openoutput default"
    yield b'VlxsltEditTransformation -json ["-trfile","T.xml","-trname","XHTML","-name","N","-dropparam","DITAEXT"]'
    yield b"VlxsltDeleteTransformation -trfile T.xml -trname Summary"
    yield b"XSLTRunTrScenario -xslfilepath s.xsl -file a.xml -outputfilepath out.xml -folders sub -processor Saxon"
    yield b"VlxsltPlanRun -trfile T.xml -trname Summary -folder sub -makefolders -distinctoutputs -sparam words 2"


def collect_catalogues():
    for path in list_files(".xml"):
        if b"<Transformations" in read(path):
            yield read(path)
    for transcript in list_transcripts():
        for match in re.finditer(r"<Transformations.*?(?:</Transformations>|/>)", transcript, re.DOTALL):
            yield re.sub(r"\n  [>|] ", "\n", match[0]).encode()


def collect_transformations():
    for catalogue in collect_catalogues():
        try:
            root = xml.fromstring(catalogue)
        except xml.ParseError:
            continue
        records = []
        for each in root.iter("Transformation"):
            text = lambda name: each.findtext(name) or ""
            record = [text("Name"), text("Input/XSLPath"), text("Processor"), "0", "2" if text(".//DirPath") else "3", "1",
                      text(".//DirPath"), "x"]
            for parameter in each.iter("Parameter"):
                record += [parameter.get("name", ""), parameter.get("expression", "")]
            records.append("\0".join(record))
        yield "\x1e".join(records).encode()


def collect_resources(build):
    with open(os.path.join(build, "resources/XSLT.res"), "rb") as file:
        image = file.read()
    yield image
    at = 0
    while at < len(image):
        data_size, header_size = struct.unpack_from("<II", image, at)
        end = at + header_size + data_size
        yield image[at:end]
        yield image[at + header_size:end]
        at = (end + 3) // 4 * 4


def collect_maps():
    """Each folder that holds maps or books as one input, with each of them once the first."""
    folders = {}
    for path in list_files(".ditamap", ".dita", ".xml"):
        folders.setdefault(os.path.dirname(path), []).append(path)
    for paths in folders.values():
        if len(paths) > 20:
            continue
        for start in paths:
            if not start.endswith(".ditamap") and b"<component" not in read(start):
                continue
            first = [start] + [path for path in paths if path != start]
            yield b"".join(b"=== " + os.path.basename(path).encode() + b"\n" + read(path) for path in first)


def collect_lines():
    for lines in output_lines("!|"):
        events = []
        for line in lines:
            place = re.search(r"(/[^:]+):(\d+):(\d+): (.*)", line.replace("${WORK}", "/work"))
            if place:
                events.append("\x012 1 0 %s\t%s\t%s" % (place[2], place[1], place[4]))
            events.append(line.replace("${WORK}", "/work"))
        yield "\n".join(events[:60]).encode()


def collect_paths():
    for lines in output_lines("!|"):
        for match in re.finditer(r"(?:file:|/)[^ :\"]{3,}", "\n".join(lines).replace("${WORK}", "/work")):
            yield match[0].encode()
    yield from (b"file://localhost/a%20b/../c.tar.gz?q#f", b"file:a\\b", b"//server/share/", b"./.profile", b"C:\\x.xml",
                b"%2e%2e/%00")


def collect_records():
    for lines in output_lines("|"):
        found = [line.replace(":N,", ":1,") for line in lines if line.startswith('{"type"')]
        if found:
            yield ("\n".join(found) + "\n").encode()


def collect_files(*extensions):
    return (read(path) for path in list_files(*extensions))


def words(pattern, *paths):
    """What a pattern finds in sources, each once."""
    found = []
    for path in paths:
        for match in re.finditer(pattern, read_text(path)):
            if match[1] not in found:
                found.append(match[1])
    return found


XML = ["<!DOCTYPE ", "<!ENTITY ", "<!ELEMENT ", "<!ATTLIST ", "<![CDATA[", "]]>", "SYSTEM ", "PUBLIC ", "&amp;", "&#10;",
       "&#x1F600;", "<?xml version=\"1.1\"?>", "encoding=\"UTF-16\"", "%e;", "&e;", "xmlns:"]
JSON = ["-json [", "\\u0000", "\\ud83d", "[\"", "\"]", "null", "-1", "1e400"]
TOML = ["[trust]\n", "[outputs]\n", "[[processor]]\n", "[[application]]\n", "[processor.attributes]\n", "\"\"\"", "'''", "attributes = {", "\\u00fc", "true",
        "0x1", "1e9", "inf", "1979-05-27T07:32:00Z"]
CATALOG = words(r"<(\w+ \w+=)", "tests/unit/host_catalogs_test.cpp") + ["uri=\"", "catalog=\"", "prefer=\"public\"", "xml:base=\""]


def list_words():
    option = r'"(-[a-z]+)"'
    requests = words(option, "client/run_request.cpp", "catalogue/request_options.cpp")
    requests += words(r'Entry\{"(\w+)"', "client/dispatch.cpp") + words(r'RequestName = "(\w+)', "kit/names.h")
    element = words(r'name="(\w+)"', "resources/vlinit/XSLT/Transformations.xsd")
    maps = words(r'"([a-z][a-z-]+)"', "host/documents/dita_map.cpp", "host/documents/component_walk.cpp")
    keys = words(r'\{"(\w+)", &', "host/configuration/configuration_keys.h")
    record = words(r'"([a-z-]+)"', "host/record/run_record_file.cpp", "host/record/run_words.cpp")
    script = words(r"([a-z]{3,})", "host/fronts/script.cpp")
    return {"request": requests + JSON, "catalogue": XML + element, "stylesheet": XML + ["xsl:param", "select=", "name="],
            "map": XML + maps, "entity_catalogs": XML + CATALOG, "configuration": TOML + keys, "record": JSON + record,
            "script": script}


def collect(build):
    return {"request": collect_requests(), "catalogue": collect_catalogues(), "transformation": collect_transformations(),
            "stylesheet": collect_files(".xsl"), "resources": collect_resources(build), "script": collect_files(".script"),
            "configuration": collect_files(".toml"), "map": collect_maps(), "record": collect_records(),
            "log_lines": collect_lines(), "paths": collect_paths(),
            "entity_catalogs": [read("tests/fuzz/corpus/entity_catalogs/every_entry")]}


def quote(word):
    return "".join(chr(byte) if 0x20 < byte < 0x7F and chr(byte) not in '"\\' else "\\x%02X" % byte for byte in word.encode())


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build tree, for the compiled resources")
    parser.add_argument("--into", required=True)
    options = parser.parse_args()
    shutil.rmtree(options.into, ignore_errors=True)
    for target, seeds in collect(options.build).items():
        folder = os.path.join(options.into, target)
        os.makedirs(folder)
        for number, seed in enumerate(dict.fromkeys(seeds)):
            with open(os.path.join(folder, "%03d" % number), "wb") as file:
                file.write(seed)
        if not os.listdir(folder):
            sys.exit("there are no seeds for " + target)
    for target, found in list_words().items():
        with open(os.path.join(options.into, target + ".dict"), "w", encoding="ascii") as file:
            file.writelines('"%s"\n' % quote(word) for word in found)


if __name__ == "__main__":
    main()
