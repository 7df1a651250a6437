<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output omit-xml-declaration="yes"/>
  <xsl:template match="/small"><small/><xsl:text>&#10;</xsl:text></xsl:template>
  <xsl:template match="/big">
    <big><xsl:call-template name="double"><xsl:with-param name="text" select="'0123456789abcdef'"/></xsl:call-template></big>
  </xsl:template>
  <xsl:template name="double">
    <xsl:param name="text"/>
    <xsl:choose>
      <xsl:when test="string-length($text) &lt; 300000">
        <xsl:call-template name="double"><xsl:with-param name="text" select="concat($text, $text)"/></xsl:call-template>
      </xsl:when>
      <xsl:otherwise><xsl:value-of select="$text"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>
</xsl:stylesheet>
