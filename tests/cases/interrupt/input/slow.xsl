<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text"/>
  <xsl:template match="/">
    <xsl:message>busy with <xsl:value-of select="*"/></xsl:message>
    <xsl:variable name="count"><xsl:call-template name="count"/></xsl:variable>
    <xsl:value-of select="concat(*, ':', string-length($count))"/>
  </xsl:template>
  <xsl:template name="count">
    <xsl:param name="left" select="21"/>
    <xsl:if test="$left = 0">.</xsl:if>
    <xsl:if test="$left &gt; 0">
      <xsl:call-template name="count"><xsl:with-param name="left" select="$left - 1"/></xsl:call-template>
      <xsl:call-template name="count"><xsl:with-param name="left" select="$left - 1"/></xsl:call-template>
    </xsl:if>
  </xsl:template>
</xsl:stylesheet>
