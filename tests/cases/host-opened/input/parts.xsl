<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="/">
    <xsl:result-document href="sub/part.xml" omit-xml-declaration="yes"><part/></xsl:result-document>
    <whole/>
  </xsl:template>
</xsl:stylesheet>
