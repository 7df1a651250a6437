package vlxslt;

import java.io.IOException;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.Set;
import org.apache.xerces.impl.XMLEntityManager;
import org.xml.sax.Attributes;
import org.xml.sax.ContentHandler;
import org.xml.sax.DTDHandler;
import org.xml.sax.EntityResolver;
import org.xml.sax.ErrorHandler;
import org.xml.sax.Locator;
import org.xml.sax.SAXException;
import org.xml.sax.SAXParseException;
import org.xml.sax.XMLReader;
import org.xml.sax.helpers.DefaultHandler;
import org.xml.sax.helpers.XMLFilterImpl;

/** What a processor set on a reader before it parses; parsers are shared, so it is taken back afterwards. */
final class ParserSettings {
  /**
   * Passes on what it gets, and remembers where the parser is. Of several declarations of a name the first counts; the
   * parser tells of all of them, and of one only when it has the DTD from the cache.
   */
  private final class LocatingHandler extends XMLFilterImpl {
    private final XMLEntityManager entities;
    private final Set<String> declared = new HashSet<>();
    private Locator locator;
    private int depth;

    LocatingHandler(XMLEntityManager entities) {
      this.entities = entities;
    }

    @Override
    public void startElement(String uri, String local, String name, Attributes attributes) throws SAXException {
      if (++depth > maxDepth) {
        SAXParseException problem = new SAXParseException(Text.NESTED_TOO_DEEP.with(maxDepth), locator);
        ParserSettings.this.errors.fatalError(problem);
        throw problem;
      }
      super.startElement(uri, local, name, attributes);
    }

    @Override
    public void endElement(String uri, String local, String name) throws SAXException {
      depth--;
      super.endElement(uri, local, name);
    }

    @Override
    public void setDocumentLocator(Locator documentLocator) {
      locator = documentLocator;
      super.setDocumentLocator(documentLocator);
    }

    @Override
    public void notationDecl(String name, String publicId, String systemId) throws SAXException {
      if (declared.add("notation " + name))
        super.notationDecl(name, publicId, systemId);
    }

    // As written they would come in every spelling there is.
    @Override
    public void unparsedEntityDecl(String name, String publicId, String systemId, String notation) throws SAXException {
      if (entities.isUnparsedEntity(name) && declared.add(name))
        super.unparsedEntityDecl(name, publicId, Addresses.spelled(systemId), notation);
    }
  }

  /** The parser finds "Premature end of file" when it is nowhere any more: a file without an element is to blame. */
  private record PlacingErrors(ErrorHandler next, String address, FilesRead files) implements ErrorHandler {
    @Override
    public void warning(SAXParseException e) throws SAXException {
      files.setFlawed();
      next.warning(e);
    }

    @Override
    public void error(SAXParseException e) throws SAXException {
      files.setFlawed();
      next.error(e);
    }

    @Override
    public void fatalError(SAXParseException e) throws SAXException {
      files.setFlawed();
      next.fatalError(e.getLineNumber() > 0 ? e : new SAXParseException(e.getMessage(), null, address, 1, 1));
    }
  }

  ContentHandler content;
  DTDHandler dtd;
  ErrorHandler errors;
  EntityResolver entities;
  int maxDepth = Integer.MAX_VALUE; // of elements; where there is one, errors are handled
  final Map<String, Boolean> features = new LinkedHashMap<>();
  final Map<String, Object> properties = new LinkedHashMap<>();
  private final Map<String, Boolean> earlier = new LinkedHashMap<>();
  private LocatingHandler locating;

  void apply(XMLReader reader, String address, FilesRead files) throws SAXException {
    locating = new LocatingHandler((XMLEntityManager) reader.getProperty(Parser.ENTITY_MANAGER));
    locating.setContentHandler(content);
    reader.setContentHandler(locating);
    locating.setDTDHandler(dtd);
    reader.setDTDHandler(dtd == null ? null : locating);
    reader.setErrorHandler(new PlacingErrors(errors == null ? new DefaultHandler() : errors, address, files));
    for (Map.Entry<String, Boolean> feature : features.entrySet()) {
      earlier.putIfAbsent(feature.getKey(), reader.getFeature(feature.getKey()));
      reader.setFeature(feature.getKey(), feature.getValue());
    }
    for (Map.Entry<String, Object> property : properties.entrySet())
      reader.setProperty(property.getKey(), property.getValue());
  }

  /** What cannot be read, at the place where the parser is: reported, and returned to be thrown. */
  SAXParseException fail(IOException e, String address) throws SAXException {
    String message = Failures.textOf(e);
    SAXParseException failure = locating.locator == null ? new SAXParseException(message, null, address, -1, -1, e)
                                                         : new SAXParseException(message, locating.locator, e);
    if (errors != null)
      errors.fatalError(failure);
    return failure;
  }

  void restore(XMLReader reader) throws SAXException {
    reader.setContentHandler(null);
    reader.setDTDHandler(null);
    reader.setErrorHandler(null);
    for (Map.Entry<String, Boolean> feature : earlier.entrySet())
      reader.setFeature(feature.getKey(), feature.getValue());
    for (String property : properties.keySet())
      reader.setProperty(property, null);
  }
}
