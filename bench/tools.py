"""The programs that a run is compared with: how each is started on one input or on a folder of them."""

import os
import sys
from dataclasses import dataclass
from pathlib import Path
from typing import Callable

PROJECT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(PROJECT / "tests/processors"))
import peers  # noqa: E402

SAXONCHE = PROJECT / "build/peers/bin/python"
PROGRAMS = Path("/usr/bin")
# Java 24 and later refuse document types of DITA's size unless told otherwise.
UNLIMITED = ["-Djdk.xml.totalEntitySizeLimit=0", "-Djdk.xml.maxGeneralEntitySizeLimit=0",
             "-Djdk.xml.maxParameterEntitySizeLimit=0", "-Djdk.xml.entityExpansionLimit=0"]  # fmt: skip


@dataclass
class Java:
    home: Path
    major: int

    @property
    def name(self) -> str:
        return f"Java {self.major}"


@dataclass
class Tool:
    """A peer. `compose` makes the command from the source, a file or a flat folder, and the folder for the results."""

    name: str
    compose: Callable[[Path, Path], list[str]]
    needs: list[Path]
    uses_java: bool = True


def read_java(home: Path) -> Java | None:
    try:
        release = (home / "release").read_text()
    except OSError:
        return None
    version = release.split('JAVA_VERSION="', 1)[-1].split('"', 1)[0]
    return Java(home, int(version.split(".")[0])) if version[:1].isdigit() else None


def find_javas() -> list[Java]:
    """The one that is configured, and the newest that is installed beside it."""
    first = read_java(peers.find_java_home())
    others = [java for home in sorted(Path("/usr/lib/jvm").glob("*")) if (java := read_java(home))]
    newest = max(others, key=lambda java: java.major, default=first)
    return [java for java in (first, newest if not first or newest.major > first.major else None) if java]


def java_command(java: Java, jars: list[Path]) -> list[str]:
    limits = UNLIMITED if java.major >= 24 else []
    return [str(java.home / "bin/java"), *limits, "-cp", ":".join(map(str, jars))]


class Tools:
    """The peers of one session; `folder` takes the files that some of them need."""

    def __init__(self, folder: Path, keys: str) -> None:
        self.folder, self.keys = folder, keys

    def saxon(self, processor: peers.Processor, java: Java) -> Tool:
        jars = [*processor.jars, peers.DEBIAN / "xml-resolver.jar"]
        command = [*java_command(java, jars), "net.sf.saxon.Transform", f"-xsl:{peers.STYLESHEET}",
                   f"-catalog:{peers.CATALOG}"]  # fmt: skip

        def compose(source: Path, target: Path) -> list[str]:
            output = target if source.is_dir() else target / source.name
            return [*command, f"-s:{source}", f"-o:{output}", f"KEYREF-FILE={self.keys}"]

        return Tool(f"{processor.name}'s command line, {java.name}", compose, jars)

    def ant(self, java: Java) -> Tool:
        jars = [*peers.SAXON_12.jars, peers.DEBIAN / "xml-resolver.jar"]
        launcher = peers.DEBIAN / "ant-launcher.jar"
        # What its script starts, which gives Java 24 and later an option that they refuse.
        command = [*java_command(java, [launcher]), "-Dant.home=/usr/share/ant", "org.apache.tools.ant.launch.Launcher"]

        def compose(source: Path, target: Path) -> list[str]:
            build = self.folder / f"{target.name}-build.xml"
            base, names = (source, "*") if source.is_dir() else (source.parent, source.name)
            build.write_text(f"""<project default="all">
  <xmlcatalog id="types"><catalogpath path="{peers.CATALOG}"/></xmlcatalog>
  <target name="all">
    <xslt basedir="{base}" includes="{names}" destdir="{target}" style="{peers.STYLESHEET}" extension=".html" force="true">
      <factory name="{peers.SAXON_12.factory}"/>
      <xmlcatalog refid="types"/>
      <param name="KEYREF-FILE" expression="{self.keys}"/>
    </xslt>
  </target>
</project>
""")
            return [*command, "-q", "-f", str(build), "-lib", ":".join(map(str, jars))]

        # Its resolver of catalogs is a package of its own.
        needs = [launcher, peers.DEBIAN / "ant-apache-resolver.jar", *jars]
        return Tool(f"Ant's xslt task, Saxon 12, {java.name}", compose, needs)

    def saxonche(self) -> Tool:
        script = PROJECT / "bench/saxonche_folder.py"

        def compose(source: Path, target: Path) -> list[str]:
            return [str(SAXONCHE), str(script), str(peers.CATALOG), str(peers.STYLESHEET), str(source), str(target),
                    self.keys]  # fmt: skip

        return Tool("saxonche", compose, [SAXONCHE], uses_java=False)

    def xsltproc(self) -> Tool:
        # It looks for what a module names by document() beside the module that imports it.
        catalog = self.folder / "xsltproc-catalog.xml"
        right, wrong = (peers.STYLESHEET.parent / part for part in ("common", "xslhtml"))
        rules = "".join(f'<rewriteSystem systemIdStartString="{wrong}/{name}" rewritePrefix="{right.as_uri()}/{name}"/>'
                        f'<rewriteURI uriStartString="{wrong}/{name}" rewritePrefix="{right.as_uri()}/{name}"/>'
                        for name in ("allstrings", "strings"))  # fmt: skip
        catalog.write_text(f'<catalog xmlns="urn:oasis:names:tc:entity:xmlns:xml:catalog">{rules}</catalog>')
        script = self.folder / "xsltproc.sh"
        # Given several files it stops at the first problem, and makes one result: a process for each file.
        script.write_text(f"""export XML_CATALOG_FILES="{peers.CATALOG} {catalog}"
target=$1
shift
for file; do
  {PROGRAMS}/xsltproc --nonet --stringparam KEYREF-FILE {self.keys} -o "$target/${{file##*/}}" {peers.STYLESHEET} "$file" || exit
done
""")

        def compose(source: Path, target: Path) -> list[str]:
            files = sorted(source.iterdir()) if source.is_dir() else [source]
            return ["sh", str(script), str(target), *map(str, files)]

        return Tool("xsltproc, a process each", compose, [PROGRAMS / "xsltproc"], uses_java=False)

    def all(self, javas: list[Java]) -> list[Tool]:
        of_java = [tool for java in javas for tool in (self.saxon(peers.SAXON_12, java), self.saxon(peers.SAXON_9, java),
                                                       self.ant(java))]  # fmt: skip
        return [*of_java, self.saxonche(), self.xsltproc()]


def missing(tool: Tool) -> str | None:
    return next((f"{path} is not there" for path in tool.needs if not os.path.exists(path)), None)
