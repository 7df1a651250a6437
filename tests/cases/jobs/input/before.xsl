<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template match="doc">
    <doc number="{@number}">
      <xsl:if test="@number &gt; 1"><xsl:copy-of select="document(concat('before/', @number - 1, '.xml'))"/></xsl:if>
    </doc>
  </xsl:template>
</xsl:stylesheet>
