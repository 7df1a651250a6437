<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output omit-xml-declaration="yes"/>
  <xsl:template match="/">
    <xsl:result-document href="sub/toc.xml" omit-xml-declaration="yes"><toc/></xsl:result-document>
    <book/>
  </xsl:template>
</xsl:stylesheet>
