<xsl:stylesheet version="3.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:p="urn:p" exclude-result-prefixes="p">
  <xsl:output method="text"/>
  <xsl:param name="draft" static="yes" select="false()"/>
  <xsl:include href="level.xsl"/>
  <xsl:param name="plain" select="'none'"/>
  <xsl:template match="/" mode="#all" use-when="$draft">draft, <xsl:call-template name="rest"/></xsl:template>
  <xsl:template match="/" use-when="not($draft)">final, <xsl:call-template name="rest"/></xsl:template>
  <xsl:template match="/" mode="short" use-when="not($draft)">short</xsl:template>
  <xsl:template name="rest">level <xsl:value-of select="$p:level"/>, plain <xsl:value-of select="$plain"/></xsl:template>
  <xsl:template name="p:start">named start at <xsl:value-of select="name(*)"/></xsl:template>
</xsl:stylesheet>
