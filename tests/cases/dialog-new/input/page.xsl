<x:stylesheet xmlns:x="http://www.w3.org/1999/XSL/Transform" version="1.0">
  <x:param name="depth" select="2"/>
  <x:param name="title"/>
</x:stylesheet>
