<!-- What stylesheets of the first version mostly do; applied to training.xml when an archive of classes is written. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:t="urn:training"
                exclude-result-prefixes="t">
  <xsl:import href="training-module.xsl"/>
  <xsl:output method="xml" encoding="UTF-8" indent="no" doctype-public="-//W3C//DTD XHTML 1.0 Transitional//EN"
              doctype-system="http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd"/>
  <xsl:strip-space elements="book chapter"/>
  <xsl:param name="depth" select="1"/>
  <xsl:param name="title"/>
  <xsl:param name="word"/>
  <xsl:variable name="newline"><xsl:text>
</xsl:text></xsl:variable>
  <xsl:variable name="own" select="document('')/*/t:names/t:name"/>
  <t:names><t:name of="a">A</t:name></t:names>
  <xsl:key name="chapters" match="chapter" use="@id"/>
  <xsl:attribute-set name="wide"><xsl:attribute name="class">wide</xsl:attribute></xsl:attribute-set>
  <xsl:decimal-format name="comma" decimal-separator="," grouping-separator="."/>
  <xsl:template match="/">
    <xsl:message>begins</xsl:message>
    <html lang="{substring-before(concat('en', '-us'), '-')}">
      <head><title><xsl:value-of select="$title"/></title>
        <xsl:if test="not(system-property('xsl:vendor') = '') and function-available('key')"><meta name="v"/></xsl:if></head>
      <xsl:apply-templates select="*"/>
    </html>
  </xsl:template>
  <xsl:template match="book">
    <body>
      <xsl:apply-templates select="title" mode="heading"/>
      <ol>
        <xsl:for-each select="chapter[title]">
          <xsl:sort select="title" order="descending"/>
          <xsl:sort select="position()" data-type="number"/>
          <li><xsl:number level="multiple" count="chapter | list" format="1.a"/>
            <a href="#{@id}"><xsl:value-of select="translate(title, 'abc', 'ABC')"/></a></li>
        </xsl:for-each>
      </ol>
      <xsl:apply-templates select="chapter"/>
    </body>
  </xsl:template>
  <xsl:template match="title" mode="heading"><h1><xsl:apply-templates/></h1></xsl:template>
  <xsl:template match="*" mode="heading"><xsl:apply-templates mode="heading"/></xsl:template>
  <xsl:template match="*[contains(@class, ' topic/topic ')]">
    <xsl:param name="level" select="$depth + 1"/>
    <xsl:variable name="tag"><xsl:choose>
      <xsl:when test="$level &gt; 6 or ancestor::chapter">h6</xsl:when>
      <xsl:when test="@kind = 'special'">h3</xsl:when>
      <xsl:otherwise><xsl:value-of select="concat('h', $level)"/></xsl:otherwise>
    </xsl:choose></xsl:variable>
    <div xsl:use-attribute-sets="wide" id="{generate-id()}">
      <xsl:element name="{$tag}"><xsl:copy-of select="@id"/>
        <xsl:call-template name="label"><xsl:with-param name="of" select="title"/></xsl:call-template></xsl:element>
      <xsl:apply-templates select="*[not(self::title)] | comment() | processing-instruction()">
        <xsl:with-param name="level" select="$level + 1"/>
      </xsl:apply-templates>
      <xsl:value-of select="format-number(count(descendant::node()) div 3, '#.##0,0', 'comma')"/>
      <xsl:value-of select="sum(//cell[number(.) = .]) mod 7 + floor(2.5) - round(1.2) * ceiling(0.1)"/>
      <xsl:value-of select="$newline"/>
    </div>
  </xsl:template>
  <xsl:template match="para"><xsl:comment>p</xsl:comment><xsl:apply-imports/></xsl:template>
  <xsl:template match="ref">
    <xsl:for-each select="key('chapters', @to)[1]"><a href="#{@id}"><xsl:value-of select="id('a')/title"/></a></xsl:for-each>
  </xsl:template>
  <xsl:template match="list"><ul><xsl:apply-templates select="item"><xsl:sort select="@rank" data-type="number"/></xsl:apply-templates></ul></xsl:template>
  <xsl:template match="item[1]"><li class="first"><xsl:apply-templates/></li></xsl:template>
  <xsl:template match="item"><li><xsl:value-of select="string-length(.)"/><xsl:apply-templates/>
    <xsl:if test="following-sibling::item or position() != last()">,</xsl:if></li></xsl:template>
  <xsl:template match="table"><table><xsl:copy-of select="row[1]"/><xsl:apply-templates select="row"/></table></xsl:template>
  <xsl:template match="row/cell | row"><xsl:copy><xsl:apply-templates select="@* | node()"/></xsl:copy></xsl:template>
  <xsl:template match="comment()"><xsl:processing-instruction name="was"><xsl:value-of select="."/></xsl:processing-instruction></xsl:template>
  <xsl:template match="text()[starts-with(., 'raw')]"><xsl:value-of select="substring-after(., 'r')" disable-output-escaping="yes"/></xsl:template>
</xsl:stylesheet>
