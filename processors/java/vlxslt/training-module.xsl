<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="em" priority="1"><i><xsl:apply-templates/></i></xsl:template>
  <xsl:template match="para"><p><xsl:apply-templates/></p></xsl:template>
  <xsl:template name="label">
    <xsl:param name="of" select="."/>
    <xsl:param name="mark">*</xsl:param>
    <xsl:value-of select="concat($mark, normalize-space($of), $mark)"/>
  </xsl:template>
</xsl:stylesheet>
