package vlxslt;

import java.io.IOException;
import java.lang.reflect.InvocationHandler;
import java.lang.reflect.Method;
import java.lang.reflect.Proxy;
import java.util.ArrayList;
import java.util.List;
import javax.xml.parsers.ParserConfigurationException;
import javax.xml.parsers.SAXParserFactory;
import org.xml.sax.DTDHandler;
import org.xml.sax.InputSource;
import org.xml.sax.SAXException;
import org.xml.sax.XMLReader;
import org.xml.sax.ext.EntityResolver2;

/**
 * One SAX parser with the entity resolution and, where it is the parser that comes with the program, the DTD cache.
 * Serves one document at a time and is used again for the next.
 *
 * The parser's own grammar pool forgets the entities of a pooled DTD, and drops references to them without a word; so
 * they are declared anew from the grammar for every document.
 */
final class Parser implements EntityResolver2, InvocationHandler {
  private static final String INTERNAL = "http://apache.org/xml/properties/internal/";

  final XMLReader reader;
  private final DtdCache cache;
  private final DtdGrammar grammars;
  private EntityResolution resolution;

  // The document under way.
  private boolean mayUseCache;
  private String dtdPublicId;
  private String dtdAddress; // of the external subset, once asked for
  private List<DtdCache.Module> modules = new ArrayList<>();
  private List<String> addresses = new ArrayList<>();

  Parser(DtdCache cache, Object symbols) throws SAXException {
    this.cache = cache;
    XMLReader bundled = null;
    DtdGrammar access = null;
    if (symbols != null) {
      try {
        bundled = (XMLReader) Class.forName("org.apache.xerces.parsers.SAXParser").getDeclaredConstructor().newInstance();
        bundled.setProperty(INTERNAL + "symbol-table", symbols);
        access = new DtdGrammar();
        bundled.setProperty(INTERNAL + "grammar-pool",
            Proxy.newProxyInstance(Parser.class.getClassLoader(), new Class<?>[] {access.poolInterface()}, this));
        bundled.setProperty("http://apache.org/xml/properties/security-manager",
            Class.forName("org.apache.xerces.util.SecurityManager").getDeclaredConstructor().newInstance());
      } catch (ReflectiveOperationException | LinkageError | SAXException e) {
        bundled = null;
      }
    }
    reader = bundled != null ? bundled : builtInReader();
    grammars = bundled != null ? access : null;
    reader.setEntityResolver(this);
  }

  /** A symbol table that all parsers share, since a grammar holds its names by identity; null without that parser. */
  static Object newSymbols() {
    try {
      return Class.forName("org.apache.xerces.util.SynchronizedSymbolTable").getDeclaredConstructor().newInstance();
    } catch (ReflectiveOperationException | LinkageError e) {
      return null;
    }
  }

  /** Reads one document; `source` has been opened. Returns the addresses of all that was read for it. */
  List<String> parse(InputSource source, EntityResolution entityResolution) throws IOException, SAXException {
    resolution = entityResolution;
    mayUseCache = grammars != null && DoctypeScan.hasPlainDoctype(source.getByteStream());
    dtdAddress = null;
    modules = new ArrayList<>();
    addresses = new ArrayList<>();
    addresses.add(source.getSystemId());
    reader.parse(source);
    return addresses;
  }

  @Override
  public InputSource getExternalSubset(String name, String baseUri) {
    return null;
  }

  @Override
  public InputSource resolveEntity(String publicId, String systemId) throws IOException, SAXException {
    return resolveEntity(null, publicId, null, systemId);
  }

  @Override
  public InputSource resolveEntity(String name, String publicId, String baseUri, String systemId)
      throws IOException, SAXException {
    String address;
    if (dtdAddress != null && modules.isEmpty() && "[dtd]".equals(name))
      address = dtdAddress; // was asked for when the cache was
    else
      address = resolution.resolve(name, publicId, baseUri, systemId);
    if (address == null)
      return null;
    modules.add(new DtdCache.Module(name, publicId, baseUri, systemId, address, FileStamp.of(address)));
    addresses.add(address);
    try {
      return EntityResolution.open(address, publicId);
    } catch (IOException e) {
      throw grammars == null ? new SAXException(e) : grammars.locate(reader.getProperty(INTERNAL + "entity-manager"), e);
    }
  }

  /** The parser's questions to its grammar pool. */
  @Override
  public Object invoke(Object proxy, Method method, Object[] arguments) throws Throwable {
    return switch (method.getName()) {
      case "retrieveGrammar" -> mayUseCache ? findGrammar(arguments[0]) : null;
      case "cacheGrammars" -> {
        Object[] finished = (Object[]) arguments[1];
        if (mayUseCache && dtdAddress != null && finished.length == 1)
          cache.keep(dtdPublicId, dtdAddress, finished[0], modules);
        yield null;
      }
      case "hashCode" -> System.identityHashCode(proxy);
      case "equals" -> proxy == arguments[0];
      case "toString" -> "DTD cache";
      default -> null;
    };
  }

  private Object findGrammar(Object description) throws Exception {
    dtdPublicId = grammars.publicId(description);
    String systemId = grammars.systemId(description);
    if (systemId == null)
      return null;
    dtdAddress = resolution.resolve("[dtd]", dtdPublicId, grammars.baseUri(description), systemId);
    DtdCache.Entry entry = cache.find(dtdPublicId, dtdAddress, resolution);
    if (entry == null)
      return null;
    DTDHandler handler = reader.getDTDHandler();
    grammars.declareEntities(entry.grammar, reader.getProperty(INTERNAL + "entity-manager"), handler);
    return entry.grammar;
  }

  private static XMLReader builtInReader() throws SAXException {
    try {
      SAXParserFactory factory = SAXParserFactory.newDefaultInstance();
      factory.setNamespaceAware(true);
      return factory.newSAXParser().getXMLReader();
    } catch (ParserConfigurationException e) {
      throw new SAXException(e);
    }
  }
}
