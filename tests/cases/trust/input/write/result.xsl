<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:param name="to"/>
  <xsl:template match="/"><main/><xsl:result-document href="{$to}"><more/></xsl:result-document></xsl:template>
</xsl:stylesheet>
