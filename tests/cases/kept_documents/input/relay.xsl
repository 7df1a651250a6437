<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:redirect="http://xml.apache.org/xalan/redirect" extension-element-prefixes="redirect">
  <xsl:output method="xml" omit-xml-declaration="yes"/>
  <xsl:param name="at"/>
  <xsl:template match="read"><xsl:copy-of select="document(concat($at, 'note.xml'))/*"/><xsl:copy-of select="document(concat($at, '3.xml'))/*"/></xsl:template>
  <xsl:template match="write">
    <w><xsl:value-of select="."/></w>
    <xsl:choose>
      <xsl:when test="element-available('redirect:write')">
        <redirect:write file="note.xml"><n><xsl:value-of select="."/></n></redirect:write>
      </xsl:when>
      <xsl:otherwise>
        <xsl:result-document href="note.xml"><n><xsl:value-of select="."/></n></xsl:result-document>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>
</xsl:stylesheet>
