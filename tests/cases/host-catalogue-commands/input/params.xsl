<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:param name="first" select="'a'"/>
  <xsl:param name="second"/>
  <xsl:param name="third" select="1 + 1"/>
</xsl:stylesheet>
