<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:include href="module.xsl"/>
  <xsl:template match="/"><xsl:call-template name="t"/></xsl:template>
</xsl:stylesheet>
