<x:stylesheet xmlns:x="http://www.w3.org/1999/XSL/Transform" version="1.0"/>
