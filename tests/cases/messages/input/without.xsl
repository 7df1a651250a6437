<xsl:stylesheet version="3.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output omit-xml-declaration="yes"/>
  <xsl:template match="/">
    <out available="{doc-available('malformed.xsl')}">
      <xsl:try><xsl:copy-of select="doc('malformed.xsl')"/><xsl:catch>instead</xsl:catch></xsl:try>
    </out>
  </xsl:template>
</xsl:stylesheet>
