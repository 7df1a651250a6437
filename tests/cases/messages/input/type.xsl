<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:param name="p" select="'text'"/>
  <xsl:template match="/">
    <out>
      <xsl:value-of
          select="count($p) + $p"/>
    </out>
  </xsl:template>
</xsl:stylesheet>
