<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template name="t">
    <xsl:value-of select="$missing"/>
  </xsl:template>
</xsl:stylesheet>
