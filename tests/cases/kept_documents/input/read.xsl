<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text" encoding="UTF-8"/>
  <xsl:variable name="support" select="document('data/support.xml')"/>
  <xsl:key name="by-text" match="s" use="."/>
  <xsl:template name="say">
    <xsl:param name="what"/>
    <xsl:param name="value"/>
    <xsl:value-of select="concat($what, ': ', $value, '&#10;')"/>
  </xsl:template>
  <xsl:template match="/">
    <xsl:variable name="input" select="."/>
    <xsl:call-template name="say">
      <xsl:with-param name="what">one document</xsl:with-param>
      <xsl:with-param name="value" select="count($support | document('data/support.xml') | document('./data/support.xml'))"/>
    </xsl:call-template>
    <xsl:call-template name="say">
      <xsl:with-param name="what">one identity</xsl:with-param>
      <xsl:with-param name="value" select="generate-id($support) = generate-id(document('data/support.xml'))"/>
    </xsl:call-template>
    <xsl:call-template name="say">
      <xsl:with-param name="what">the input once more</xsl:with-param>
      <xsl:with-param name="value" select="count(/ | document(concat(/in/@name, '.xml'), /))"/>
    </xsl:call-template>
    <xsl:text>order:</xsl:text>
    <xsl:for-each select="document('data/other.xml')/* | $support/* | /*"><xsl:value-of select="concat(' ', name())"/></xsl:for-each>
    <xsl:for-each select="$support">
      <xsl:text>&#10;</xsl:text>
      <xsl:call-template name="say">
        <xsl:with-param name="what">letters</xsl:with-param>
        <xsl:with-param name="value" select="concat(string-length(.), ', ', string-length(document('data/other.xml')))"/>
      </xsl:call-template>
      <xsl:call-template name="say">
        <xsl:with-param name="what">by identifier</xsl:with-param>
        <xsl:with-param name="value" select="concat(id('one'), ', ', id('two'), ', ', count(id('one') | /support/s[1]), ', ', count(id('one')/.. | /support))"/>
      </xsl:call-template>
      <xsl:call-template name="say">
        <xsl:with-param name="what">by key</xsl:with-param>
        <xsl:with-param name="value" select="concat(name(key('by-text', 'Größe')/..), ', ', count(key('by-text', 'eins') | id('one')))"/>
      </xsl:call-template>
      <xsl:call-template name="say">
        <xsl:with-param name="what">around it</xsl:with-param>
        <xsl:with-param name="value" select="concat(//s[2]/@kind, ', ', count(//t/following::s), ', ', //s[last()]/preceding-sibling::s[1], count(//s[. = 'eins']))"/>
      </xsl:call-template>
    </xsl:for-each>
  </xsl:template>
</xsl:stylesheet>
