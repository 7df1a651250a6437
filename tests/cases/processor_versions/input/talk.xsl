<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text" encoding="UTF-8"/>
  <xsl:template match="doc">
    <xsl:message>first <xsl:value-of select="."/></xsl:message>
    <xsl:if test="@stop">
      <xsl:message terminate="yes">that is all</xsl:message>
    </xsl:if>
    <xsl:text>done</xsl:text>
  </xsl:template>
</xsl:stylesheet>
