"""What the comparison and the benches share: the corpus, the processors, and the command lines that they come with."""

import os
import shutil
import subprocess
from dataclasses import dataclass, field
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
STYLESHEET = Path("/usr/share/dita-ot/xsl/dita2xhtml.xsl")
CATALOG = Path("/usr/share/dita-ot/catalog-dita.xml")
JARS = PROJECT / "build/processors"
DEBIAN = Path("/usr/share/java")


@dataclass
class Processor:
    name: str
    jars: list[Path]
    factory: str
    options: list[str] = field(default_factory=list)  # of Java, for the peer only
    one_process: bool = True  # whether its command line takes a folder


SAXON_12 = Processor(
    "Saxon 12",
    [JARS / "saxon" / name for name in ("Saxon-HE.jar", "xmlresolver.jar", "xmlresolver-data.jar")],
    "net.sf.saxon.TransformerFactoryImpl",
)
SAXON_9 = Processor("Saxon 9.9", [DEBIAN / "Saxon-HE.jar", DEBIAN / "xml-resolver.jar"], SAXON_12.factory)
XALAN = Processor(
    "Xalan",
    [JARS / "xalan/xalan.jar", JARS / "xalan/serializer.jar"],
    "org.apache.xalan.processor.TransformerFactoryImpl",
    one_process=False,
)
JDK_FACTORY = "com.sun.org.apache.xalan.internal.xsltc.trax.TransformerFactoryImpl"
# The JDK has no command line of its own any more; Xalan's drives any factory.
# It refuses stylesheets of this size unless told otherwise.
JDK_LIMITS = ["-Djdk.xml.xpathExprOpLimit=0", "-Djdk.xml.xpathTotalOpLimit=0"]
JDK = Processor(
    "JDK", XALAN.jars, JDK_FACTORY, [f"-Djavax.xml.transform.TransformerFactory={JDK_FACTORY}", *JDK_LIMITS], False
)
ALL = [SAXON_12, SAXON_9, XALAN, JDK]


def find_corpus() -> Path | None:
    folder = Path(os.environ.get("VLXSLT_CORPORA") or PROJECT.parent / "shared/corpora") / "dita"
    return folder if folder.is_dir() else None


def find_java_home() -> Path:
    """The same Java for both sides."""
    java = os.environ.get("JAVA_HOME")
    return Path(java) if java else Path(shutil.which("java")).resolve().parents[1]


def missing() -> str | None:
    """What is not here, as a reason to skip; None when all is."""
    if not find_corpus():
        return "no corpus: set VLXSLT_CORPORA to a folder that holds dita/"
    for path in (STYLESHEET, CATALOG, *SAXON_12.jars):
        if not path.exists():
            return f"{path} is not there"
    return None


def copy_topics(target: Path) -> list[Path]:
    """Topics only, in their folders: command lines that take a folder take every file in it."""
    corpus = find_corpus()
    topics = sorted(corpus.rglob("*.dita"))
    for topic in topics:
        copy = target / topic.relative_to(corpus)
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(topic, copy)
    return [target / topic.relative_to(corpus) for topic in topics]


def write_keys(path: Path) -> str:
    """The list of keys that the stylesheet looks for; as a file URL."""
    path.write_text('<stub><keydef keys="release"/></stub>')
    return path.as_uri()


def write_configuration(path: Path, processors: list[Processor]) -> None:
    limits = JDK_LIMITS if JDK in processors else []
    lines = [f"java_options = {limits}"]
    lines += [f'java_home = "{find_java_home()}"', f'catalogs = ["{CATALOG}"]']
    for processor in processors:
        jars = [] if processor.factory == JDK_FACTORY else processor.jars
        class_path = ";".join(map(str, jars))
        lines += ["[[processor]]", f'name = "{processor.name}"', f'class_path = "{class_path}"']
        lines += [f'class_name = "{processor.factory}"']
    path.write_text("\n".join(lines) + "\n")


def own_command(vlxslt: Path, configuration: Path, inputs: list[Path], output: str, keys: str) -> list[str]:
    return [str(vlxslt), "--config", str(configuration), "run", *map(str, inputs), "--xsl", str(STYLESHEET),
            "-p", f"KEYREF-FILE='{keys}'", "-o", output]  # fmt: skip


def peer_command(processor: Processor, source: Path, target: Path, keys: str) -> list[str]:
    resolvers = [DEBIAN / "xml-resolver.jar"]
    parser = [] if processor.one_process else [JARS / "xerces/xercesImpl.jar"]
    class_path = ":".join(map(str, [*processor.jars, *resolvers, *parser]))
    java = [str(find_java_home() / "bin/java"), *processor.options, "-cp", class_path]
    if processor.one_process:
        return [*java, "net.sf.saxon.Transform", f"-s:{source}", f"-o:{target}", f"-xsl:{STYLESHEET}",
                f"-catalog:{CATALOG}", f"KEYREF-FILE={keys}"]  # fmt: skip
    resolver = "org.apache.xml.resolver.tools.CatalogResolver"
    return [*java, f"-Dxml.catalog.files={CATALOG}", "-Dxml.catalog.ignoreMissing=yes", "org.apache.xalan.xslt.Process",
            "-ENTITYRESOLVER", resolver, "-URIRESOLVER", resolver, "-IN", source.as_uri(), "-XSL", STYLESHEET.as_uri(),
            "-OUT", str(target), "-PARAM", "KEYREF-FILE", keys]  # fmt: skip


def run(command: list[str], **options) -> subprocess.CompletedProcess:
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace", **options)
