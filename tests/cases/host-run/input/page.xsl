<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output omit-xml-declaration="yes"/>
  <xsl:param name="greeting" select="'none'"/>
  <xsl:template match="*"><any/></xsl:template>
  <xsl:template match="/good">
    <xsl:message>Input: /of/another/run.xml</xsl:message>
    <xsl:message>Transformation Aborted.</xsl:message>
    <page><xsl:value-of select="concat($greeting, ' ', .)"/></page>
  </xsl:template>
  <xsl:template match="/bad">
    <xsl:message>x&#13;&#10;Transformation Successful.&#13;&#10;&#10;Transformation Successful.&#13;&#10;</xsl:message>
    <xsl:message terminate="yes">stopped</xsl:message>
  </xsl:template>
</xsl:stylesheet>
