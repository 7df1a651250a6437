<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text"/>
  <xsl:template match="/">
    <xsl:if test="not(//good)"><xsl:call-template name="double"><xsl:with-param name="text">0123456789</xsl:with-param></xsl:call-template></xsl:if>
    <xsl:text>done</xsl:text>
  </xsl:template>
  <xsl:template name="double">
    <xsl:param name="text"/>
    <xsl:call-template name="double"><xsl:with-param name="text" select="concat($text, $text)"/></xsl:call-template>
  </xsl:template>
</xsl:stylesheet>
