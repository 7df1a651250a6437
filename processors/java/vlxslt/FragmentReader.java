package vlxslt;

import org.xml.sax.Attributes;
import org.xml.sax.SAXException;
import org.xml.sax.XMLReader;
import org.xml.sax.helpers.XMLFilterImpl;

/** Passes on one element of a document, found by its identifier: an embedded stylesheet. */
final class FragmentReader extends XMLFilterImpl {
  private final String identifier;
  private final PrefixesInScope prefixes = new PrefixesInScope();
  private int depth; // inside the element
  private boolean isFound;

  FragmentReader(XMLReader document, String identifier) {
    super(document);
    this.identifier = identifier;
  }

  @Override
  public void startPrefixMapping(String prefix, String uri) throws SAXException {
    if (depth == 0)
      prefixes.start(prefix, uri);
    else
      super.startPrefixMapping(prefix, uri);
  }

  @Override
  public void endPrefixMapping(String prefix) throws SAXException {
    if (depth > 0)
      super.endPrefixMapping(prefix);
    else
      prefixes.end(prefix);
  }

  @Override
  public void startElement(String uri, String localName, String name, Attributes attributes) throws SAXException {
    if (depth == 0 && (isFound || !isMeant(attributes)))
      return;
    if (depth++ == 0) {
      isFound = true;
      prefixes.declare(getContentHandler());
    }
    super.startElement(uri, localName, name, attributes);
  }

  private boolean isMeant(Attributes attributes) {
    for (int i = 0; i < attributes.getLength(); i++)
      if (attributes.getValue(i).equals(identifier)
          && (attributes.getType(i).equals("ID") || attributes.getQName(i).matches("id|xml:id")))
        return true;
    return false;
  }

  @Override
  public void endElement(String uri, String localName, String name) throws SAXException {
    if (depth > 0) {
      super.endElement(uri, localName, name);
      depth--;
    }
  }

  @Override
  public void endDocument() throws SAXException {
    if (!isFound)
      throw new SAXException(Text.FRAGMENT_MISSING.with(identifier));
    super.endDocument();
  }

  @Override
  public void characters(char[] text, int from, int count) throws SAXException {
    if (depth > 0)
      super.characters(text, from, count);
  }

  @Override
  public void ignorableWhitespace(char[] text, int from, int count) throws SAXException {
    if (depth > 0)
      super.ignorableWhitespace(text, from, count);
  }

  @Override
  public void processingInstruction(String target, String data) throws SAXException {
    if (depth > 0)
      super.processingInstruction(target, data);
  }
}
