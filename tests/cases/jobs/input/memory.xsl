<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="doc">
    <xsl:variable name="tree"><xsl:for-each select="1 to 1000000"><n/></xsl:for-each></xsl:variable>
    <done number="{@number}" count="{count($tree/n)}"/>
  </xsl:template>
</xsl:stylesheet>
