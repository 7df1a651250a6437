#!/usr/bin/env python3
"""What Java starts quickly with: that it is written, used, renewed when something changes, and harmless when it is
damaged, missing or not to be had. With --newest for a Java that keeps its classes in a cache, if one is installed."""

import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import zipfile
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[1]
PROCESSORS = PROJECT / "build/processors"
FIRST_WITH_CACHE = 25
STYLESHEET = """<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
<xsl:template match="/"><v><xsl:value-of select="system-property('xsl:product-version')"/></v></xsl:template>
</xsl:stylesheet>"""


def find_java(newest: bool) -> Path | None:
    if not newest:
        return Path(shutil.which("java")).resolve().parents[1]
    for home in Path("/usr/lib/jvm").glob("*"):
        release = home / "release"
        found = re.search(r'JAVA_VERSION="(\d+)', release.read_text()) if release.is_file() else None
        if found and int(found[1]) >= FIRST_WITH_CACHE:
            return home
    return None


class Place:
    """A program, its jars, a configuration, and a user's cache."""

    def __init__(self, top: Path, build: Path, java: Path) -> None:
        self.top, self.java = top, java
        self.vlxslt = build / "bin/vlxslt"
        self.cache = top / "cache"
        self.jars = top / "jars é"  # which is escaped in URLs
        shutil.copytree(PROCESSORS / "saxon", self.jars)
        (top / "a.xml").write_text("<a/>")
        (top / "a.xsl").write_text(STYLESHEET)
        self.configure()

    def configure(self, java: Path | None = None, options: str = "") -> None:
        names = ("Saxon-HE.jar", "xmlresolver.jar", "xmlresolver-data.jar")
        class_path = ";".join(str(self.jars / name) for name in names)
        (self.top / "vlxslt.toml").write_text(
            f'java_home = "{java or self.java}"\njava_options = [{options}]\n[outputs]\nsync = false\n[[processor]]\nname = "S"\n'
            f'class_path = "{class_path}"\nclass_name = "net.sf.saxon.TransformerFactoryImpl"\n')

    def vlxslt_command(self, *arguments: str, **variables: str | None) -> int:
        """The process, which has ended well."""
        environment = os.environ | {"XDG_CACHE_HOME": str(self.cache)} | variables
        environment.pop("VLXSLT_NO_CLASS_ARCHIVE", None)
        process = subprocess.Popen([self.vlxslt, "--config", self.top / "vlxslt.toml", *arguments],
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                                   env={name: value for name, value in environment.items() if value is not None})
        said = process.communicate()[1]
        assert process.returncode == 0, said
        return process.pid

    def run(self, log: str = "class+load", inputs: Path | None = None, **variables: str | None) -> tuple[str, str]:
        """The version of the processor that ran, and what Java logged."""
        out = self.top / ("out/" if inputs else "a.out")
        # What writes the archive has the same environment.
        process = self.vlxslt_command(
            "run", str(inputs or self.top / "a.xml"), "--xsl", str(self.top / "a.xsl"), "--yes", "-o",
            f"{out}/" if inputs else str(out), _JAVA_OPTIONS=f"-Xlog:{log}:file={self.top}/%p.log", **variables)
        version = "" if inputs else re.search("<v>(.*)</v>", out.read_text())[1]
        return version, (self.top / f"{process}.log").read_text()

    def is_archived(self, **variables: str | None) -> bool:
        _, log = self.run(**variables)
        assert "source:" in log
        # With a cache Java has it before it logs.
        return not re.search(r"net\.sf\.saxon\.Configuration source: (?!shared objects file)", log)

    def ready(self) -> set[Path]:
        return set(self.cache.glob("vlxslt/start-*/ready"))

    def await_news(self, before: dict[Path, int]) -> Path:
        """The list of an archive that was not there, or is a new one."""
        deadline = time.monotonic() + 800
        while time.monotonic() < deadline:
            for path in self.ready():
                # The claim goes last of all.
                if before.get(path) != path.stat().st_ino and not Path(f"{path.parent}.list").exists():
                    return path
            time.sleep(0.1)
        raise AssertionError("no archive was written")

    def known(self) -> dict[Path, int]:
        return {path: path.stat().st_ino for path in self.ready()}


def check_use(place: Place) -> None:
    version, _ = place.run()
    folder = place.await_news({}).parent
    assert place.is_archived(), "the archive is not used"
    assert place.run()[0] == version
    folder.chmod(0o777)
    before = place.known()
    assert not place.is_archived(), "what others may write to is used"
    place.await_news(before)
    assert place.is_archived()
    print("written and used")


def check_damage(place: Place) -> None:
    folder = next(iter(place.ready())).parent
    archive = next(path for path in folder.iterdir() if path.name.startswith("classes."))
    copy = next(folder.glob("*.jar"))
    damages = {
        "archive cut": lambda: os.truncate(archive, 10_000),
        "copy gone": copy.unlink,
        "list torn": lambda: os.truncate(folder / "ready", 30),
    }
    for what, damage in damages.items():
        before = place.known()
        for path in (archive, copy):
            path.chmod(0o644)
        damage()
        assert not place.is_archived(), what
        place.await_news(before)
        assert place.is_archived(), f"{what}: not renewed"
    # Nothing shows it from outside: Java finds out.
    time_before = archive.stat()
    archive.chmod(0o644)
    with archive.open("r+b") as file:
        file.write(bytes(4096))
    os.utime(archive, ns=(time_before.st_atime_ns, time_before.st_mtime_ns))
    assert not place.is_archived()
    shutil.rmtree(place.cache)
    print("harmless when damaged, and renewed")


def check_other_jar(place: Place) -> None:
    first, _ = place.run()
    place.await_news({})
    before = place.known()
    for jar in (PROCESSORS / "tests/saxon-11").glob("*.jar"):
        shutil.copy(jar, place.jars)
    second, _ = place.run()
    assert first != second, "another jar at the same place is not seen"
    place.await_news(before)
    assert place.is_archived() and place.run()[0] == second
    print("renewed with its jars")


def check_installation(place: Place, build: Path) -> None:
    installed = place.top / "installed"
    for part in ("bin", "lib/vlxslt"):
        shutil.copytree(build / part, installed / part, ignore=shutil.ignore_patterns("*_test", "start"))
    place.vlxslt = installed / "bin/vlxslt"
    nowhere = {"XDG_CACHE_HOME": None, "HOME": None}
    assert not place.is_archived(**nowhere)
    place.vlxslt_command("processors", "--prepare", **nowhere)
    subprocess.run(["chmod", "-R", "a-w", installed], check=True)
    before = sorted((path, path.lstat().st_mtime_ns) for path in installed.rglob("*"))
    shutil.rmtree(place.cache)
    assert place.is_archived(**nowhere), "what was prepared is not used"
    assert place.is_archived()
    assert before == sorted((path, path.lstat().st_mtime_ns) for path in installed.rglob("*"))
    assert not place.cache.exists(), "an archive is written where there is one"
    subprocess.run(["chmod", "-R", "u+w", installed], check=True)
    print("prepared with the installation")


def check_unwilling_java(place: Place) -> None:
    """Its program ends with an error, as one does that does not know an option."""
    other = place.top / "java"
    other.mkdir()
    for entry in place.java.iterdir():
        if entry.name != "bin":
            (other / entry.name).symlink_to(entry)
    (other / "bin").mkdir()
    program = other / "bin/java"
    program.write_text(f"#!/bin/sh\necho >>'{place.top}/asked'\nexit 1\n")
    program.chmod(0o755)
    place.configure(java=other)
    for _ in range(2):
        assert not place.is_archived()
    while not (place.top / "asked").exists():
        time.sleep(0.1)
    assert not place.ready()
    shutil.rmtree(place.cache)
    place.configure(options='"-Xshare:off"')
    assert not place.is_archived() and not place.cache.exists(), "an archive of ours beside the user's own ways"
    print("done without where Java does not write one")


def check_changed_jar(place: Place) -> None:
    """A class is other than it was signed: Java refuses the jar, and no copy makes it pass."""
    place.configure()
    jar, changed = place.jars / "Saxon-HE.jar", place.top / "changed.jar"
    with zipfile.ZipFile(jar) as old, zipfile.ZipFile(changed, "w") as new:
        for name in old.namelist():
            new.writestr(name, old.read(name) + (b" " if name == "net/sf/saxon/Controller.class" else b""))
    before = jar.read_bytes()
    changed.replace(jar)
    for command in (["processors", "--prepare"], ["run", "a.xml", "--xsl", "a.xsl", "-o", "b.out"]):
        done = subprocess.run([place.vlxslt, "--config", "vlxslt.toml", *command], cwd=place.top, capture_output=True,
                              env=os.environ | {"XDG_CACHE_HOME": str(place.cache)})  # fmt: skip
        assert not place.ready(), "a jar that was changed is copied"
    assert done.returncode == 1 and not (place.top / "b.out").exists(), "a jar that was changed is used"
    jar.write_bytes(before)
    print("jars that do not fit their signature are refused")


def check_long_run(place: Place) -> None:
    inputs = place.top / "many"
    inputs.mkdir()
    for number in range(4_400):
        (inputs / f"{number}.xml").write_text("<a/>")
    place.configure()
    # After number and flags comes the level.
    full = re.compile(r"\]\s+\d+ [ %sbn!]*[34] ")
    _, long_log = place.run("jit+compilation=debug", inputs)
    _, short_log = place.run("jit+compilation=debug")
    assert short_log and not full.search(short_log), "a short run waits for the second compiler"
    assert full.search(long_log), "a long run does without the second compiler"
    print("both compilers for long runs")


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=lambda path: Path(path).resolve(), required=True)
    parser.add_argument("--newest", action="store_true")
    options = parser.parse_args()
    java = find_java(options.newest)
    if not java:
        print(f"SKIPPED: no Java {FIRST_WITH_CACHE} or later is installed")
        return 77
    with tempfile.TemporaryDirectory(prefix="vlxslt-archive-") as top:
        place = Place(Path(top), options.build, java)
        check_use(place)
        check_damage(place)
        check_other_jar(place)
        check_installation(place, options.build)
        check_unwilling_java(place)
        check_changed_jar(place)
        check_long_run(place)
    return 0


if __name__ == "__main__":
    sys.exit(main())
