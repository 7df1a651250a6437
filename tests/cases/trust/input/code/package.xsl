<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:j="http://xml.apache.org/xalan/java" >
  
  <xsl:param name="target"/>
  <xsl:template match="/"><xsl:variable name="file" select="j:java.io.File.new(string($target))"/>
    <out><xsl:value-of select="j:createNewFile($file)"/></out></xsl:template>
</xsl:stylesheet>
