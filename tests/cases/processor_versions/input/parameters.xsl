<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:p="urn:p">
  <xsl:output method="text" encoding="UTF-8"/>
  <xsl:param name="number" select="0"/>
  <xsl:param name="text"/>
  <xsl:param name="empty" select="'default'"/>
  <xsl:param name="flag"/>
  <xsl:param name="word"/>
  <xsl:param name="path"/>
  <xsl:param name="p:named"/>
  <xsl:param name="other" select="'default'"/>
  <xsl:template match="/">
    <xsl:value-of select="concat($number + 1, '|', $text, '|', $empty, '|', not($flag), '|', $word, '|', $path, '|')"/>
    <xsl:value-of select="concat($p:named, '|', $other)"/>
  </xsl:template>
</xsl:stylesheet>
