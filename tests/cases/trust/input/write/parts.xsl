<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:redirect="http://xml.apache.org/xalan/redirect"
    xmlns:p="urn:p" extension-element-prefixes="redirect">
  <xsl:template match="/">
    <html>
      <body>
        <br/>
        <redirect:write file="part.xml"><p:part a="1"><xsl:comment> c </xsl:comment><b>&lt;é</b></p:part></redirect:write>
      </body>
    </html>
  </xsl:template>
</xsl:stylesheet>
