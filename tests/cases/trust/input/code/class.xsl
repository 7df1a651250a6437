<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:j="xalan://java.io.File" >
  
  <xsl:param name="target"/>
  <xsl:template match="/"><xsl:variable name="file" select="j:new(string($target))"/>
    <out><xsl:value-of select="j:createNewFile($file)"/></out></xsl:template>
</xsl:stylesheet>
