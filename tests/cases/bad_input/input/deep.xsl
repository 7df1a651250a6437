<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text"/>
  <xsl:template match="/">
    <xsl:choose>
      <xsl:when test="//good"><xsl:call-template name="down"><xsl:with-param name="left" select="20000"/></xsl:call-template></xsl:when>
      <xsl:otherwise><xsl:call-template name="endless"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>
  <xsl:template name="down">
    <xsl:param name="left"/>
    <xsl:if test="$left &gt; 0">
      <xsl:variable name="below"><xsl:call-template name="down"><xsl:with-param name="left" select="$left - 1"/></xsl:call-template></xsl:variable>
      <xsl:value-of select="substring(concat($below, '.'), 1, 3)"/>
    </xsl:if>
  </xsl:template>
  <xsl:template name="endless">
    <xsl:variable name="more"><xsl:call-template name="endless"/></xsl:variable>
    <xsl:value-of select="concat($more, '.')"/>
  </xsl:template>
</xsl:stylesheet>
