<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:redirect="http://xml.apache.org/xalan/redirect" extension-element-prefixes="redirect">
  <xsl:output method="text" encoding="UTF-8"/>
  <xsl:template match="part">
    <xsl:variable name="file" select="concat('part-', position(), '.txt')"/>
    <xsl:choose>
      <xsl:when test="element-available('redirect:write')">
        <redirect:write file="{$file}"><xsl:value-of select="."/></redirect:write>
      </xsl:when>
      <xsl:otherwise>
        <xsl:result-document href="{$file}"><xsl:value-of select="."/></xsl:result-document>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>
  <xsl:template match="/"><xsl:apply-templates select="doc/part"/>index</xsl:template>
</xsl:stylesheet>
