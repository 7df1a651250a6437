<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output omit-xml-declaration="yes"/>
  <xsl:param name="greeting" select="'none'"/>
  <xsl:template match="/doc">
    <xsl:value-of select="concat($greeting, ' ', ., '&#10;')"/>
    <xsl:if test="@toc"><xsl:result-document href="toc.xml"><toc/></xsl:result-document></xsl:if>
    <xsl:if test="@wrong"><xsl:sequence select="error(QName('urn:x', 'WRONG01'), 'not &quot;right&quot;')"/></xsl:if>
  </xsl:template>
</xsl:stylesheet>
