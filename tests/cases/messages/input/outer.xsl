<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:import href="broken.xsl"/>
  <xsl:template match="/">never</xsl:template>
</xsl:stylesheet>
