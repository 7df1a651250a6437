"""Every way in which a document or a stylesheet can name an address, and every spelling of an address that some reader
takes for one on the network. `Construct` makes the input, and the stylesheet beside it, that use one of them."""

from dataclasses import dataclass
from typing import Callable

SAXON, XALAN, JDK = "Saxon", "Xalan", "JDK"
ALL = (SAXON, XALAN, JDK)


@dataclass
class Spelling:
    name: str
    make: Callable[[str], str]  # of "host:port/path"
    is_network: bool = False  # every reader takes it for the host, once that is allowed


SPELLINGS = [
    Spelling("http:", lambda rest: f"http://{rest}", True),
    Spelling("HTTP:", lambda rest: f"HTTP://{rest}", True),
    Spelling("url:http:", lambda rest: f"url:http://{rest}", True),
    Spelling("URL:HTTP:", lambda rest: f"URL:HTTP://{rest}", True),
    Spelling("leading blank", lambda rest: f" http://{rest}"),
    Spelling("leading tab", lambda rest: f"\thttp://{rest}"),
    Spelling("user in front", lambda rest: f"http://user:secret@{rest}", True),
    Spelling("jar:http:", lambda rest: f"jar:http://{rest}!/entry"),
    Spelling("JAR:url:http:", lambda rest: f"JAR:url:http://{rest}!/entry"),
    Spelling("ftp:", lambda rest: f"ftp://{rest}"),
    Spelling("https:", lambda rest: f"https://{rest}"),
    Spelling("file: with a host", lambda rest: f"file://{rest}"),
    Spelling("no scheme", lambda rest: f"//{rest}"),
    Spelling("backslashes", lambda rest: "http:\\\\" + rest.replace("/", "\\")),
]


@dataclass
class Construct:
    name: str
    suffix: str  # what the server sends
    document: str = "<doc>$</doc>"  # $ stands for the address
    stylesheet: str = ""  # the whole, or what stands in a template, or top level
    processors: tuple = ALL
    is_silent: bool = False  # only asks whether something is there
    is_optional: bool = False  # not every version of the processor has it
    reads: bool = True


def top(text: str) -> str:
    return '<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">' f"{text}</xsl:stylesheet>"


def template(text: str, version: str = "1.0", head: str = "", more: str = "") -> str:
    return (
        f'{head}<xsl:stylesheet version="{version}" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" {more}>'
        f'<xsl:template match="/">{text}</xsl:template></xsl:stylesheet>'
    )


def value(expression: str, version: str = "1.0") -> str:
    return template(f'<out><xsl:value-of select="{expression}"/></out>', version)


def saxon(name: str, suffix: str, expression: str, is_silent: bool = False) -> Construct:
    return Construct(name, suffix, stylesheet=value(expression, "3.0"), processors=(SAXON,), is_silent=is_silent)


IDENTITY = value(".")
CONSTRUCTS = [
    Construct("document type", "dtd", '<!DOCTYPE doc SYSTEM "$"><doc/>'),
    Construct("document type, public", "dtd", '<!DOCTYPE doc PUBLIC "-//TEST//DTD none//EN" "$"><doc/>'),
    Construct("general entity", "ent", '<!DOCTYPE doc [<!ENTITY e SYSTEM "$">]><doc>&e;</doc>'),
    Construct("parameter entity", "dtd", '<!DOCTYPE doc [<!ENTITY % e SYSTEM "$">%e;]><doc/>'),
    Construct(
        "parameter entity with a file's content",
        "dtd",
        '<!DOCTYPE doc SYSTEM "leak.dtd" [<!ENTITY % file SYSTEM "secret.txt">]><doc/>',
    ),
    Construct("xi:include", "xml", '<doc xmlns:xi="http://www.w3.org/2001/XInclude"><xi:include href="$"/></doc>'),
    Construct(
        "xi:include of text",
        "txt",
        '<doc xmlns:xi="http://www.w3.org/2001/XInclude"><xi:include href="$" parse="text"/></doc>',
    ),
    Construct("xml-stylesheet", "xsl", '<?xml-stylesheet type="text/xsl" href="$"?><doc/>'),
    Construct("xsl:import", "xsl", stylesheet=top('<xsl:import href="$"/>')),
    Construct("xsl:include", "xsl", stylesheet=top('<xsl:include href="$"/>')),
    Construct("xsl:import of a part", "xsl", stylesheet=top('<xsl:import href="$#part"/>')),
    Construct("document type of the stylesheet", "dtd", stylesheet='<!DOCTYPE xsl:stylesheet SYSTEM "$">' + IDENTITY),
    Construct(
        "entity of the stylesheet",
        "ent",
        stylesheet=template("<out>&amp;e;</out>".replace("&amp;", "&"), head='<!DOCTYPE x [<!ENTITY e SYSTEM "$">]>'),
    ),
    Construct("document()", "xml", stylesheet=value("document('$')")),
    Construct("document() of a part", "xml", stylesheet=value("document('$#part')")),
    Construct("document() with an xml:base", "xml", stylesheet=value("document(., /)"), document="<doc>$</doc>"),
    Construct("document() of a local file with a DTD", "dtd", stylesheet=value("document('local.xml')")),
    saxon("doc()", "xml", "doc('$')"),
    saxon("doc-available()", "xml", "doc-available('$')", True),
    saxon("unparsed-text()", "txt", "unparsed-text('$')"),
    saxon("unparsed-text-lines()", "txt", "unparsed-text-lines('$')"),
    saxon("unparsed-text-available()", "txt", "unparsed-text-available('$')", True),
    saxon("json-doc()", "json", "json-doc('$')?a"),
    saxon("collection()", "xml", "collection('$')"),
    saxon("collection() of a local list", "xml", "collection('list.xml')"),
    saxon("uri-collection()", "xml", "uri-collection('$')"),
    saxon("parse-xml()", "dtd", "parse-xml('&lt;!DOCTYPE doc SYSTEM &quot;$&quot;&gt;&lt;doc/&gt;')"),
    saxon("transform()", "xsl", "transform(map{'stylesheet-location':'$','source-node':.})?output"),
    saxon("transform() of a local stylesheet", "xsl", "transform(map{'stylesheet-location':'imports.xsl','source-node':.})?output"),
    Construct(
        "xsl:source-document",
        "xml",
        stylesheet=template('<xsl:source-document href="$"><xsl:copy-of select="."/></xsl:source-document>', "3.0"),
        processors=(SAXON,),
    ),
    Construct(
        "xsl:evaluate",
        "xml",
        stylesheet=template("<xsl:evaluate xpath=\"'doc(&quot;$&quot;)'\"/>", "3.0"),
        processors=(SAXON,),
        is_optional=True,
    ),
    Construct(
        "xsl:result-document",
        "xml",
        stylesheet=template('<xsl:result-document href="$"><r/></xsl:result-document>', "3.0"),
        processors=(SAXON,),
        reads=False,
    ),
]
