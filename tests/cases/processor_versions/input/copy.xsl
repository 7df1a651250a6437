<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:xi="http://www.w3.org/2001/XInclude"
    exclude-result-prefixes="xi">
  <xsl:output omit-xml-declaration="yes"/>
  <xsl:template match="/">
    <copy>
      <left><xsl:value-of select="count(//xi:include)"/></left>
      <loaded><xsl:value-of select="count(document('parts/chapter.xml', /)//deeper)"/></loaded>
      <xsl:apply-templates select="*/node()"/>
      <xi:include/>
    </copy>
  </xsl:template>
  <xsl:template match="*">
    <xsl:element name="{local-name()}"><xsl:copy-of select="@*"/><xsl:apply-templates/></xsl:element>
  </xsl:template>
</xsl:stylesheet>
