<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:x="http://xml.apache.org/xalan" >
  <xsl:output method="xml" x:content-handler="vlxslt.NoSuchClass"/>
  <xsl:param name="target"/>
  <xsl:template match="/"><out/></xsl:template>
</xsl:stylesheet>
