<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:redirect="http://xml.apache.org/xalan/redirect"
    extension-element-prefixes="redirect">
  <xsl:param name="to"/>
  <xsl:param name="fails"/>
  <xsl:template match="/">
    <main/>
    <redirect:write select="$to"><more/></redirect:write>
    <xsl:if test="$fails"><xsl:message terminate="yes">on purpose</xsl:message></xsl:if>
  </xsl:template>
</xsl:stylesheet>
