package vlxslt;

import java.io.IOException;
import java.util.ArrayList;
import java.util.List;
import org.apache.xerces.impl.XMLEntityManager;
import org.apache.xerces.impl.dtd.DTDGrammar;
import org.apache.xerces.parsers.SAXParser;
import org.apache.xerces.util.SecurityManager;
import org.apache.xerces.xni.Augmentations;
import org.apache.xerces.xni.NamespaceContext;
import org.apache.xerces.xni.XMLLocator;
import org.apache.xerces.xni.XNIException;
import org.apache.xerces.xni.grammars.Grammar;
import org.apache.xerces.xni.grammars.XMLGrammarDescription;
import org.apache.xerces.xni.grammars.XMLGrammarPool;
import org.xml.sax.EntityResolver;
import org.xml.sax.InputSource;
import org.xml.sax.SAXException;
import org.xml.sax.XMLReader;
import org.xml.sax.ext.EntityResolver2;

/**
 * One SAX parser with the entity resolution and the DTD cache. Serves one document at a time and is used again for the
 * next.
 *
 * The parser's own grammar pool forgets the entities of a pooled DTD and silently drops references to them; so they are
 * declared again from the grammar for every document.
 */
final class Parser implements EntityResolver2, XMLGrammarPool {
  private static final String PROPERTIES = "http://apache.org/xml/properties/";
  static final String ENTITY_MANAGER = PROPERTIES + "internal/entity-manager";
  private static final String VALIDATION = "http://xml.org/sax/features/validation";
  static final String LOAD_DTD = "http://apache.org/xml/features/nonvalidating/load-external-dtd";

  private final SAXParser parser;
  private final XMLEntityManager entities;
  private final DtdCache cache;

  // The document under way.
  private EndingLocator locator;
  private EntityResolution resolution;
  private EntityResolver fallback;
  private FilesRead files;
  private boolean mayUseCache;
  private String dtdPublicId;
  private String dtdAddress; // of the external subset, once asked for
  private List<DtdCache.Module> modules;
  private DTDGrammar grammarRead; // to keep when all is well; null without one
  private List<DtdCache.Module> modulesRead;

  Parser(DtdCache cache) throws SAXException {
    this.cache = cache;
    parser = new SAXParser(cache.symbols(), this) {
      @Override
      public void startDocument(XMLLocator place, String encoding, NamespaceContext prefixes, Augmentations others) {
        locator = new EndingLocator(place);
        super.startDocument(locator, encoding, prefixes, others);
      }
    };
    parser.setProperty(PROPERTIES + "security-manager", new SecurityManager());
    parser.setEntityResolver(this);
    entities = (XMLEntityManager) parser.getProperty(ENTITY_MANAGER);
  }

  boolean isOf(DtdCache other) {
    return cache == other;
  }

  XMLReader reader() {
    return parser;
  }

  /**
   * Reads one document; `source` has been opened. What is read for it joins `filesRead`. The processor's own resolver,
   * which may be null, serves what would be fetched otherwise.
   */
  void parse(InputSource source, EntityResolution entityResolution, EntityResolver ofProcessor, FilesRead filesRead)
      throws IOException, SAXException {
    resolution = entityResolution;
    fallback = ofProcessor;
    files = filesRead;
    // The parser tells of what is invalid in a DTD while it reads it, and not again.
    mayUseCache = parser.getFeature(LOAD_DTD) && !parser.getFeature(VALIDATION)
        && DoctypeScan.hasPlainDoctype(source.getByteStream());
    dtdAddress = null;
    modules = new ArrayList<>();
    grammarRead = null;
    locator = null;
    parser.parse(source);
    if (locator != null)
      locator.end(); // a parser that fails is not used again
    // A DTD that breaks off is told of by the document's failure only.
    if (grammarRead != null)
      cache.keep(dtdPublicId, dtdAddress, grammarRead, modulesRead);
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
      throw new AddressGate.ReadFailure(Text.ADDRESS_UNUSABLE.with(String.valueOf(systemId)));
    FileStamp stamp = FileStamp.of(address);
    DtdCache.Module module = new DtdCache.Module(name, publicId, baseUri, systemId, address, stamp);
    modules.add(module);
    try {
      InputSource opened = open(address, publicId);
      files.add(module);
      return opened;
    } catch (IOException e) {
      files.miss(address);
      if (name == null)
        throw e; // of an inclusion, which may have something to fall back on
      throw DtdGrammar.locate(entities, e);
    }
  }

  private InputSource open(String address, String publicId) throws IOException {
    InputSource copy = Addresses.isOfFile(address) ? null : findCopy(address, publicId);
    return copy != null ? copy : AddressGate.open(address, publicId);
  }

  // Saxon holds copies of well-known ones; what it does not hold it would open itself, and be refused that.
  private InputSource findCopy(String address, String publicId) {
    try {
      InputSource copy = fallback == null ? null : fallback.resolveEntity(publicId, address);
      return copy != null && (copy.getByteStream() != null || copy.getCharacterStream() != null) ? copy : null;
    } catch (IOException | SAXException | RuntimeException e) {
      return null;
    }
  }

  @Override
  public Grammar retrieveGrammar(XMLGrammarDescription description) {
    if (!mayUseCache)
      return null;
    dtdPublicId = description.getPublicId();
    String systemId = description.getLiteralSystemId();
    if (systemId == null)
      return null;
    dtdAddress = resolution.resolve("[dtd]", dtdPublicId, description.getBaseSystemId(), systemId);
    DtdCache.Entry entry = cache.find(dtdPublicId, dtdAddress, resolution);
    if (entry == null)
      return null;
    try {
      DtdGrammar.declareEntities(entry.grammar, entities, parser.getDTDHandler());
    } catch (IOException | SAXException e) {
      throw new XNIException(e);
    }
    entry.modules.forEach(files::add);
    return entry.grammar;
  }

  @Override
  public void cacheGrammars(String type, Grammar[] grammars) {
    if (mayUseCache && dtdAddress != null && grammars.length == 1 && grammars[0] instanceof DTDGrammar grammar) {
      grammarRead = grammar;
      modulesRead = List.copyOf(modules);
    }
  }

  @Override
  public Grammar[] retrieveInitialGrammarSet(String type) {
    return null;
  }

  @Override
  public void lockPool() {}

  @Override
  public void unlockPool() {}

  @Override
  public void clear() {}
}
