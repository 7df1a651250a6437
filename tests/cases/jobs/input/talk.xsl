<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="doc">
    <xsl:message>a message of <xsl:value-of select="@number"/></xsl:message>
    <doc id="{generate-id()}"><xsl:copy-of select="@number"/></doc>
  </xsl:template>
</xsl:stylesheet>
