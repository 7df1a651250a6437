<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text"/>
  <xsl:template match="/">
    <xsl:message>Größe: first</xsl:message>
    <xsl:if test="//stop">
      <xsl:message terminate="yes">stop here</xsl:message>
    </xsl:if>
    <xsl:message>second, <xsl:value-of select="name(*)"/></xsl:message>
    <xsl:text>done</xsl:text>
  </xsl:template>
</xsl:stylesheet>
