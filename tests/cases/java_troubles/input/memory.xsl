<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="/">
    <xsl:call-template name="double"><xsl:with-param name="text" select="'0123456789abcdef'"/></xsl:call-template>
  </xsl:template>
  <xsl:template name="double">
    <xsl:param name="text"/>
    <xsl:call-template name="double"><xsl:with-param name="text" select="concat($text, $text)"/></xsl:call-template>
  </xsl:template>
</xsl:stylesheet>
