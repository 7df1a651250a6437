<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="/">
    <xsl:value-of select="." seperator=","/>
    <xsl:for-each select="*"
        ordr="descending">
      <xsl:value-of select="name()"/>
    </xsl:for-each>
    <p><xsl:text escaping="no">.</xsl:text></p>
  </xsl:template>
</xsl:stylesheet>
