<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="xml" encoding="ISO-8859-1" omit-xml-declaration="yes"/>
  <xsl:template match="doc"><page><xsl:value-of select="."/></page></xsl:template>
</xsl:stylesheet>
