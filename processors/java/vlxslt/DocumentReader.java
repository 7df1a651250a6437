package vlxslt;

import java.io.IOException;
import java.util.Set;
import org.xml.sax.ContentHandler;
import org.xml.sax.DTDHandler;
import org.xml.sax.EntityResolver;
import org.xml.sax.ErrorHandler;
import org.xml.sax.InputSource;
import org.xml.sax.SAXException;
import org.xml.sax.SAXNotRecognizedException;
import org.xml.sax.XMLReader;

/**
 * The XMLReader that processors get. It takes their handlers for content. Its own come first for entities, and for errors
 * in all but data: those are settled for the whole job.
 */
class DocumentReader implements XMLReader {
  /** Reads one document as `settings` say. */
  interface Parse {
    void parse(InputSource input, ParserSettings settings) throws IOException, SAXException;
  }

  private static final String FEATURES = "http://xml.org/sax/features/";
  private static final String PROPERTIES = "http://xml.org/sax/properties/";
  private static final Set<String> KNOWN_FEATURES = Set.of(FEATURES + "namespaces", FEATURES + "namespace-prefixes",
      FEATURES + "validation", FEATURES + "external-general-entities", FEATURES + "external-parameter-entities",
      FEATURES + "string-interning", Parser.LOAD_DTD);
  private static final Set<String> ON_BY_DEFAULT = Set.of(FEATURES + "namespaces",
      FEATURES + "external-general-entities", FEATURES + "external-parameter-entities", FEATURES + "string-interning",
      Parser.LOAD_DTD);
  private static final Set<String> KNOWN_PROPERTIES =
      Set.of(PROPERTIES + "lexical-handler", PROPERTIES + "declaration-handler");

  private final Parse parse;
  private final ParserSettings settings = new ParserSettings();

  /** `includes`: what is read is subject to XInclude. */
  DocumentReader(Parse parse, boolean includes) {
    if (includes)
      settings.features.put("http://apache.org/xml/features/xinclude", true);
    this.parse = parse;
  }

  @Override
  public void parse(InputSource input) throws IOException, SAXException {
    parse.parse(input, settings);
  }

  @Override
  public void parse(String systemId) throws IOException, SAXException {
    parse(new InputSource(systemId));
  }

  @Override
  public boolean getFeature(String name) throws SAXNotRecognizedException {
    if (!KNOWN_FEATURES.contains(name))
      throw new SAXNotRecognizedException(name);
    return settings.features.getOrDefault(name, ON_BY_DEFAULT.contains(name));
  }

  @Override
  public void setFeature(String name, boolean value) throws SAXNotRecognizedException {
    if (KNOWN_FEATURES.contains(name))
      settings.features.put(name, value);
    else if (value && !name.equals("http://javax.xml.XMLConstants/feature/secure-processing"))
      throw new SAXNotRecognizedException(name);
  }

  @Override
  public Object getProperty(String name) throws SAXNotRecognizedException {
    if (!KNOWN_PROPERTIES.contains(name))
      throw new SAXNotRecognizedException(name);
    return settings.properties.get(name);
  }

  @Override
  public void setProperty(String name, Object value) throws SAXNotRecognizedException {
    if (KNOWN_PROPERTIES.contains(name))
      settings.properties.put(name, value);
    // The JDK's processor sets limits on every reader and complains on standard error where it may not.
    else if (!name.startsWith("http://javax.xml.XMLConstants/") && !name.startsWith("http://www.oracle.com/")
        && !name.startsWith("jdk.xml."))
      throw new SAXNotRecognizedException(name);
  }

  @Override
  public void setContentHandler(ContentHandler handler) {
    settings.content = handler;
  }

  @Override
  public ContentHandler getContentHandler() {
    return settings.content;
  }

  @Override
  public void setDTDHandler(DTDHandler handler) {
    settings.dtd = handler;
  }

  @Override
  public DTDHandler getDTDHandler() {
    return settings.dtd;
  }

  @Override
  public void setErrorHandler(ErrorHandler handler) {
    settings.errors = handler;
  }

  @Override
  public ErrorHandler getErrorHandler() {
    return settings.errors;
  }

  @Override
  public void setEntityResolver(EntityResolver resolver) {
    settings.entities = resolver;
  }

  @Override
  public EntityResolver getEntityResolver() {
    return settings.entities;
  }
}
