<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="/">
    <xsl:value-of select="$one"/>
    <xsl:value-of select="concat('a',
        $two)"/>
    <xsl:call-template name="nowhere"/>
  </xsl:template>
</xsl:stylesheet>
