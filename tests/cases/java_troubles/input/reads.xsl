<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="/">
    <page><xsl:value-of select="count(document('wide.xml')//x)"/></page>
  </xsl:template>
</xsl:stylesheet>
