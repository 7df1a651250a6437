<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:x="http://xml.apache.org/xalan/PipeDocument" extension-element-prefixes="x">
  
  <xsl:param name="target"/>
  <xsl:template match="/"><x:pipeDocument source="{$target}" target="{$target}"/></xsl:template>
</xsl:stylesheet>
