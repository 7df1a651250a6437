<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:import href="read.xsl"/>
  <xsl:strip-space elements="*"/>
</xsl:stylesheet>
