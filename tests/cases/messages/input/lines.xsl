<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="/">
    <xsl:message terminate="yes">first line

third line</xsl:message>
  </xsl:template>
</xsl:stylesheet>
