<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:j="urn:j" xmlns:x="http://xml.apache.org/xalan" extension-element-prefixes="j">
  <x:component prefix="j" functions="new createNewFile"><x:script lang="javaclass" src="java.io.File"/></x:component>
  <xsl:param name="target"/>
  <xsl:template match="/"><xsl:variable name="file" select="j:new(string($target))"/>
    <out><xsl:value-of select="j:createNewFile($file)"/></out></xsl:template>
</xsl:stylesheet>
