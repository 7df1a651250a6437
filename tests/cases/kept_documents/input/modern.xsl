<xsl:stylesheet version="3.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:xs="http://www.w3.org/2001/XMLSchema" expand-text="yes">
  <xsl:output method="text"/>
  <xsl:strip-space elements="*"/>
  <xsl:variable name="support" select="doc('data/support.xml')"/>
  <xsl:accumulator name="count" initial-value="0" as="xs:integer">
    <xsl:accumulator-rule match="s" select="$value + 1"/>
  </xsl:accumulator>
  <xsl:mode use-accumulators="#all"/>
  <xsl:template match="/">base {substring-after(base-uri($support), 'data/')}, of the root element {substring-after(base-uri($support/*), 'data/')}, of the part {substring-after(base-uri($support//s[@i = 'two']), 'data/')}
address {substring-after(document-uri($support), 'data/')}, {document-uri($support) = resolve-uri('data/support.xml')}
there {doc-available('data/support.xml')}, {doc-available('data/none.xml')}
fragment {document('data/support.xml#one') is $support/id('one')}
counted {$support/*/accumulator-after('count')}
<xsl:source-document href="data/support.xml">source {. is $support}, {count(doc('data/other.xml')//text())}</xsl:source-document>
the stylesheet {count(document('')/*/xsl:template)}, {document('') is doc('modern.xsl')}
its stylesheet {count(doc('inner.xsl')//xsl:template)}
<xsl:if test="ends-with(base-uri(), '3.xml')">inner <xsl:value-of
    select="transform(map{'stylesheet-location': resolve-uri('inner.xsl'), 'source-node': $support})?output"/>
</xsl:if>
</xsl:template>
</xsl:stylesheet>
