<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output omit-xml-declaration="yes" indent="yes"/>
  <xsl:template match="/"><texts><count><xsl:value-of select="count(//text())"/></count></texts></xsl:template>
</xsl:stylesheet>
