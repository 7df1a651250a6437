<xsl:stylesheet version="3.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" expand-text="yes">
  <xsl:template match="/"><in>{count(doc(resolve-uri('other.xml', base-uri(/)))//text())} texts, {count(//s)}</in></xsl:template>
</xsl:stylesheet>
