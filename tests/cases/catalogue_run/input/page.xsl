<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output omit-xml-declaration="yes"/>
  <xsl:param name="lang" select="'none'"/>
  <xsl:template match="/"><page lang="{$lang}"><xsl:value-of select="normalize-space(.)"/></page></xsl:template>
</xsl:stylesheet>
