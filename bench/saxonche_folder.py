#!/usr/bin/env python3
"""Transforms a file, or all files of a folder, with the native build of Saxon: what its users write for lack of a command
line. Run by the Python that has saxonche."""

import os
import sys

import saxonche

# Its parser refuses document types of DITA's size unless told otherwise.
LIMITS = ("totalEntitySizeLimit", "entityExpansionLimit", "maxGeneralEntitySizeLimit", "maxParameterEntitySizeLimit")
PARSER_PROPERTY = "http://saxon.sf.net/feature/parserProperty?uri=http%3A//www.oracle.com/xml/jaxp/properties/"


def main() -> None:
    catalog, stylesheet, source, target, keys = sys.argv[1:]
    files = [source]
    if os.path.isdir(source):
        files = sorted(entry.path for entry in os.scandir(source))
    with saxonche.PySaxonProcessor(license=False) as processor:
        processor.set_catalog_files([catalog])
        for limit in LIMITS:
            processor.set_configuration_property(PARSER_PROPERTY + limit, "0")
        compiled = processor.new_xslt30_processor().compile_stylesheet(stylesheet_file=stylesheet)
        compiled.set_parameter("KEYREF-FILE", processor.make_string_value(keys))
        for file in files:
            compiled.transform_to_file(source_file=file, output_file=os.path.join(target, os.path.basename(file)))


if __name__ == "__main__":
    main()
