<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output omit-xml-declaration="yes"/>
  <xsl:template match="/"><page><xsl:value-of select="."/></page></xsl:template>
</xsl:stylesheet>
