<xsl:stylesheet version="3.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="/">
    <xsl:result-document href="deep/part.xml"><part/></xsl:result-document>
    <result>
      <xsl:message>busy with <xsl:value-of select="*"/></xsl:message>
      <xsl:call-template name="turn"/>
    </result>
  </xsl:template>
  <xsl:template name="turn">
    <xsl:param name="number" select="1"/>
    <xsl:call-template name="turn"><xsl:with-param name="number" select="1 - $number"/></xsl:call-template>
  </xsl:template>
</xsl:stylesheet>
