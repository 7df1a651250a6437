<!-- What stylesheets of later versions do besides. -->
<xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:xs="http://www.w3.org/2001/XMLSchema"
                xmlns:t="urn:training" exclude-result-prefixes="t xs">
  <xsl:include href="training-module.xsl"/>
  <xsl:output method="xhtml" encoding="UTF-8" indent="yes"/>
  <xsl:output name="text" method="text"/>
  <xsl:output name="html" method="html"/>
  <xsl:param name="depth" select="1" as="xs:integer"/>
  <xsl:variable name="words" select="tokenize('one two  three', '\s+')" as="xs:string*"/>
  <xsl:character-map name="marks"><xsl:output-character character="é" string="e"/></xsl:character-map>
  <xsl:function name="t:twice" as="xs:string"><xsl:param name="text" as="xs:string"/>
    <xsl:sequence select="string-join(for $i in 1 to 2 return upper-case($text), '-')"/></xsl:function>
  <xsl:template match="/">
    <html>
      <xsl:for-each-group select="//cell, //item" group-by="string-length(.)">
        <xsl:sort select="current-grouping-key()"/>
        <p><xsl:value-of select="current-group()" separator=", "/></p>
      </xsl:for-each-group>
      <xsl:analyze-string select="string(.)" regex="(\d+)-(\d+)">
        <xsl:matching-substring><b><xsl:value-of select="regex-group(1)"/></b></xsl:matching-substring>
        <xsl:non-matching-substring><xsl:value-of select="replace(., '\s+', ' ')"/></xsl:non-matching-substring>
      </xsl:analyze-string>
      <xsl:apply-templates select="//para" mode="#default"><xsl:with-param name="in" select="$depth" tunnel="yes"/></xsl:apply-templates>
      <xsl:value-of select="t:twice($words[2]), distinct-values(//@kind), min((3, 2)), xs:date('2001-02-03') + xs:dayTimeDuration('P1D'),
                            format-date(xs:date('2001-02-03'), '[Y]-[M01]'), if (exists(//ref)) then 1 else 0,
                            some $x in //item satisfies $x/@rank castable as xs:integer, resolve-uri('a', 'file:///b/'), doc-available('none.xml')"/>
      <xsl:try use-when="system-property('xsl:version') = '3.0'">
        <xsl:sequence select="error()"/><xsl:catch/></xsl:try>
    </html>
    <xsl:result-document href="more.txt" format="text"><xsl:value-of select="current-dateTime()"/></xsl:result-document>
    <xsl:result-document href="more.html" format="html"><html><head/><body><br/></body></html></xsl:result-document>
  </xsl:template>
</xsl:stylesheet>
