<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns:redirect="http://xml.apache.org/xalan/redirect"
    extension-element-prefixes="redirect">
  <xsl:output method="text"/>
  <xsl:template match="/">
    <redirect:open file="open.txt"/>
    <redirect:write file="open.txt">one </redirect:write>
    <redirect:write file="open.txt">two</redirect:write>
    <redirect:close file="open.txt"/>
    <redirect:write file="grows.txt" append="yes">three </redirect:write>
    <redirect:write file="grows.txt" append="yes">four</redirect:write>
  </xsl:template>
</xsl:stylesheet>
