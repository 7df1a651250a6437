<s:stylesheet version="3.0" xmlns:s="http://www.w3.org/1999/XSL/Transform" xmlns:named="urn:p">
  <s:param name="named:level" static=" true " select="1"/>
</s:stylesheet>
