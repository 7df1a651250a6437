"""Inputs that each have a stylesheet and a document type of their own."""

import os

XSL = '<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">'
os.makedirs("many/in")
for n in range(150):
    rules = "".join(
        f'<xsl:template match="e{n}x{i}[@a &gt; {i}]"><o{n}x{i}><xsl:value-of select="concat(., @b, {i})"/></o{n}x{i}></xsl:template>'
        for i in range(200)
    )
    with open(f"many/{n}.xsl", "w") as file:
        file.write(f'{XSL}<xsl:output method="text"/>{rules}</xsl:stylesheet>')
    with open(f"many/{n}.dtd", "w") as file:
        file.write("".join(f"<!ELEMENT e{n}x{i} EMPTY><!ATTLIST e{n}x{i} a{n}x{i} CDATA 'x'>" for i in range(300)))
    with open(f"many/in/{n:03}.xml", "w") as file:
        file.write(f"<?xml-stylesheet type='text/xsl' href='../{n}.xsl'?><!DOCTYPE doc SYSTEM '../{n}.dtd'><doc>{n}</doc>")
