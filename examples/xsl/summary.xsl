<?xml version="1.0" encoding="UTF-8"?>
<!-- One line about a document: its title and its first sentence, cut after $words words. Runs on any processor. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text" encoding="UTF-8"/>
  <xsl:param name="words" select="8"/>
  <xsl:param name="mark">…</xsl:param>

  <xsl:template match="/">
    <xsl:value-of select="normalize-space(//title)"/>
    <xsl:text>: </xsl:text>
    <xsl:call-template name="cut">
      <xsl:with-param name="text" select="concat(normalize-space((//shortdesc | //para)[1]), ' ')"/>
      <xsl:with-param name="left" select="$words"/>
    </xsl:call-template>
    <xsl:text>&#10;</xsl:text>
    <xsl:if test="not(//title)">
      <xsl:message>There is no title.</xsl:message>
    </xsl:if>
  </xsl:template>

  <xsl:template name="cut">
    <xsl:param name="text"/>
    <xsl:param name="left"/>
    <xsl:choose>
      <xsl:when test="$left = 0 and $text != ''"><xsl:value-of select="$mark"/></xsl:when>
      <xsl:when test="$text != ''">
        <xsl:value-of select="substring-before($text, ' ')"/>
        <xsl:if test="$left &gt; 1 and substring-after($text, ' ') != ''"><xsl:text> </xsl:text></xsl:if>
        <xsl:call-template name="cut">
          <xsl:with-param name="text" select="substring-after($text, ' ')"/>
          <xsl:with-param name="left" select="$left - 1"/>
        </xsl:call-template>
      </xsl:when>
    </xsl:choose>
  </xsl:template>
</xsl:stylesheet>
