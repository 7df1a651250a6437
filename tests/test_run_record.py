#!/usr/bin/env python3
"""Kills recorded runs and repeats what is left; validates SARIF.

usage: test_run_record.py --build FOLDER [--seed NUMBER]

A run is killed when its record has reached a random length, or in the middle of a random job. Then every line of the
record must be whole, and --retry must do the rest and only the rest. SARIF is checked against the schema, which is
taken from VLXSLT_SCHEMAS or from shared/schemas beside the checkout. Exit status: 0 all is well, 1 something is not,
77 the schema or python3-jsonschema is missing, and all else is well.
"""

import argparse
import json
import os
import pathlib
import random
import subprocess
import sys
import time

import run_cases
from checks import Failure, check

INPUTS = 24
ROUNDS = 3
SECONDS = 120

STYLESHEET = """\
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:param name="rounds"/>
  <xsl:template match="/doc">
    <xsl:message>busy with <xsl:value-of select="@number"/></xsl:message>
    <page number="{@number}"><xsl:call-template name="grow"/></page>
  </xsl:template>
  <xsl:template name="grow">
    <xsl:param name="left" select="number($rounds)"/>
    <xsl:if test="$left &gt; 0">
      <xsl:for-each select="//row"><row><xsl:value-of select="position() * $left"/></row></xsl:for-each>
      <xsl:call-template name="grow"><xsl:with-param name="left" select="$left - 1"/></xsl:call-template>
    </xsl:if>
  </xsl:template>
  <xsl:template match="/wrong"><xsl:message terminate="yes">stopped</xsl:message></xsl:template>
</xsl:stylesheet>
"""


class Bench(run_cases.Player):
    """A case without a transcript: inputs, the common configuration, and the command line."""

    def __init__(self, build):
        super().__init__(argparse.Namespace(cases=run_cases.TESTS, build=build, windows=False), "run record")
        self.prepare([])
        os.mkdir(self.path("in"))
        self.write("page.xsl", STYLESHEET)
        for number in range(INPUTS):
            self.write(f"in/{number:02}.xml", f'<doc number="{number}">' + "<row/>" * 200 + "</doc>")

    def path(self, name):
        return os.path.join(self.work, name)

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def outputs(self, folder, is_killed=False):
        """Their bytes by name. A killed process may leave a file that is not whole, under a name of its own."""
        names = os.listdir(self.path(folder)) if os.path.isdir(self.path(folder)) else ()
        return {name: self.read(os.path.join(folder, name)) for name in names
                if not (is_killed and name.startswith(".vlxslt-"))}

    def start(self, *arguments):
        with open(self.path("console"), "wb") as console:
            return subprocess.Popen(["vlxslt", "run", *arguments], cwd=self.work, env=self.environment(),
                                    stdin=subprocess.DEVNULL, stdout=console, stderr=console)

    def run(self, *arguments):
        """The exit code."""
        return self.start(*arguments).wait(SECONDS)

    def arguments(self, output):
        return ["in", "--xsl", "page.xsl", "-p", "rounds=120", "-o", output + "/"]

    def read_record(self, name):
        """Its objects; every line must be whole."""
        content = self.read(name)
        check(content.endswith(b"\n"), f"the last line of {name} is torn: {content[-80:]}")
        objects = [json.loads(line) for line in content.decode().splitlines()]
        check(objects[0]["type"] == "run", f"{name} does not begin with the run")
        check(all(each["type"] == "job" for each in objects[1:-1]), f"{name} holds something else than jobs")
        return objects

    def wait_for(self, process, is_reached):
        """False when the process was faster."""
        end = time.monotonic() + SECONDS
        while not is_reached():
            if process.poll() is not None:
                return False
            check(time.monotonic() < end, "the moment never came")
        return True

    def kill_at(self, process, is_reached):
        """Kills the process as soon as that holds. False when the process was faster."""
        if not self.wait_for(process, is_reached):
            return False
        process.kill()
        process.wait()
        return True

    def holds_lines(self, name, count):
        return lambda: os.path.exists(self.path(name)) and self.read(name).count(b"\n") >= count

    def says(self, text):
        return lambda: text.encode() in self.read("console")


def done_of(objects):
    return {os.path.basename(each["input"]) for each in objects if each["type"] == "job" and each["status"] == "done"}


def kill_one_run(bench, chance, expected, number):
    """One run, killed, repeated with another kill in between, and finished. False when all was done before a kill."""
    output, record = f"out-{number}", f"run-{number}.jsonl"
    process = bench.start(*bench.arguments(output), "--record", record)
    left = {f"{each:02}.xml" for each in range(INPUTS)}
    for _ in range(2):
        goal = chance.randint(1, max(1, len(left) * 2 // 3))
        if chance.random() < 0.5:
            moment, is_reached = f"line {goal} of the record", bench.holds_lines(record, goal)
        else:
            busy = sorted(left)[goal - 1].removesuffix(".xml")
            moment, is_reached = f"job of input {busy}", bench.says(f"busy with {int(busy)}\n")
        if not bench.kill_at(process, is_reached):
            print(f"  was over before {moment}")
            return False
        objects = bench.read_record(record)
        done = done_of(objects)
        print(f"  killed at {moment}: {len(done)} of {len(left)} jobs recorded")
        check(done <= left, f"repeated: {sorted(done - left)}")
        outputs = bench.outputs(output, is_killed=True)
        check(all(outputs[name] == expected[name] for name in outputs), "an output is not what it should be")
        check(done <= outputs.keys(), f"recorded, but not there: {sorted(done - outputs.keys())}")
        left -= done
        before = {name: os.stat(bench.path(os.path.join(output, name))).st_ino for name in done}
        if not left:
            check(bench.run("--retry", record, "--record", record) == 0, "a retry with nothing left to do failed")
            check(done_of(bench.read_record(record)) == done, "a retry with nothing left to do changed the record")
            return False
        process = bench.start("--retry", record, "--record", record, "--yes")
        # From now on the record is that of the retry.
        bench.wait_for(process, bench.says("busy with"))
    check(process.wait(SECONDS) == 0, "the last retry failed")
    objects = bench.read_record(record)
    check(objects[-1]["type"] == "end" and objects[-1]["exit"] == 0, "the record has no end")
    check(done_of(objects) == left, f"repeated {sorted(done_of(objects))} where {sorted(left)} was left")
    check(bench.outputs(output) == expected, "the outputs differ from those of an undisturbed run")
    for name, inode in before.items():
        check(os.stat(bench.path(os.path.join(output, name))).st_ino == inode, f"{name} was written again")
    return True


def test_kills(bench, chance):
    check(bench.run(*bench.arguments("whole"), "--record", "whole.jsonl") == 0, "the undisturbed run failed")
    expected = bench.outputs("whole")
    check(len(expected) == INPUTS, "the undisturbed run wrote too little")
    killed = [kill_one_run(bench, chance, expected, number) for number in range(ROUNDS)]
    check(any(killed), "no run was slow enough to be killed")


def find_schema():
    """Its text, or None."""
    beside = os.path.join(os.path.dirname(run_cases.ROOT), "shared", "schemas")
    folders = [os.environ.get("VLXSLT_SCHEMAS") or beside, beside]
    paths = [pathlib.Path(folder, "sarif-2.1.0.json") for folder in folders]
    return next((path.read_text(encoding="utf-8") for path in paths if path.exists()), None)


def test_sarif(bench):
    """0 or 77."""
    bench.write("in/wrong.xml", "<wrong/>")
    bench.write("in/cut.xml", "<doc>")
    bench.write("in/blank ü%.xml", "<doc>&none;</doc>")
    code = bench.run(*bench.arguments("with wrong"), "--sarif", "run.sarif")
    check(code == 1, f"the run ended with {code}")
    sarif = json.loads(bench.read("run.sarif"))
    results = sarif["runs"][0]["results"]
    check(len(results) >= 3, f"only {len(results)} results")
    try:
        import jsonschema
    except ImportError:
        print("SKIPPED: python3-jsonschema is missing; SARIF was not validated")
        return run_cases.SKIPPED
    schema = find_schema()
    if schema is None:
        print("SKIPPED: sarif-2.1.0.json is missing, set VLXSLT_SCHEMAS to its folder; SARIF was not validated")
        return run_cases.SKIPPED
    validator = jsonschema.Draft7Validator(json.loads(schema), format_checker=jsonschema.FormatChecker())
    errors = [f"{list(error.absolute_path)}: {error.message}" for error in validator.iter_errors(sarif)]
    check(not errors, "SARIF is not valid:\n" + "\n".join(errors))
    # The check itself must be able to fail.
    results[0]["level"] = "bad"
    check(not validator.is_valid(sarif), "the schema accepts everything")
    return 0


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", required=True)
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 32))
    options = parser.parse_args(arguments)
    print(f"seed {options.seed}", flush=True)
    bench = Bench(options.build)
    try:
        test_kills(bench, random.Random(options.seed))
        status = test_sarif(bench)
    except Failure as failure:
        print(f"FAILED: {failure}; see {bench.work}")
        return 1
    bench.clean_up()
    return status


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
