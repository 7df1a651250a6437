<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:exsl="http://exslt.org/common" xmlns:func="http://exslt.org/functions" xmlns:my="urn:my" xmlns:j="http://xml.apache.org/xalan/java" exclude-result-prefixes="exsl func my j" >
  
  <xsl:param name="target"/>
  <xsl:template match="/"><xsl:variable name="list"><a/><a/></xsl:variable>
    <out nodes="{count(exsl:node-set($list)/a)}" java="{function-available('j:java.io.File.new')}"/></xsl:template>
</xsl:stylesheet>
