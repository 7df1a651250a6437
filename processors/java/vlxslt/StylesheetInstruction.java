package vlxslt;

import java.util.LinkedHashMap;
import java.util.Map;
import java.util.Set;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import javax.xml.transform.sax.SAXSource;
import org.xml.sax.Attributes;
import org.xml.sax.Locator;
import org.xml.sax.SAXException;
import org.xml.sax.SAXParseException;
import org.xml.sax.XMLReader;
import org.xml.sax.helpers.DefaultHandler;
import org.xml.sax.helpers.LocatorImpl;

/** Finds the stylesheet that an input names in its xml-stylesheet processing instruction. */
final class StylesheetInstruction extends DefaultHandler {
  private static final Pattern PSEUDO_ATTRIBUTE = Pattern.compile("([\\w.:-]+)\\s*=\\s*(?:\"([^\"]*)\"|'([^']*)')");
  private static final Set<String> XSLT_TYPES =
      Set.of("text/xsl", "text/xml", "application/xml", "application/xslt+xml", "text/xslt", "application/xsl");

  private Locator locator;
  private Locator place; // of the instruction; of the root element as long as there is none
  private String href;
  private boolean isPreferred;

  /** Ends the parse at the first element: nothing that follows may name a stylesheet. */
  private static final class PrologRead extends SAXException {
    private static final long serialVersionUID = 1;

    @Override
    public synchronized Throwable fillInStackTrace() {
      return this;
    }
  }

  static StylesheetInstruction find(SAXSource input) throws Exception {
    StylesheetInstruction finder = new StylesheetInstruction();
    XMLReader reader = input.getXMLReader();
    reader.setContentHandler(finder);
    // The whole input is read later. Its DTD is of no use here, and the host need not be asked for it twice.
    reader.setFeature(Parser.LOAD_DTD, false);
    reader.setFeature("http://xml.org/sax/features/external-parameter-entities", false);
    try {
      reader.parse(input.getInputSource());
    } catch (PrologRead e) {
      // As it should be.
    }
    return finder;
  }

  /** The reference as written; null when the input names none. */
  String href() {
    return href;
  }

  Place place() {
    return new Place(null, place.getSystemId(), place.getLineNumber(), place.getColumnNumber());
  }

  /** What is wrong with the instruction, or with its absence. */
  SAXParseException fail(String message) {
    return new SAXParseException(message, place);
  }

  @Override
  public void setDocumentLocator(Locator documentLocator) {
    locator = documentLocator;
  }

  @Override
  public void processingInstruction(String target, String data) {
    if (!target.equals("xml-stylesheet"))
      return;
    Map<String, String> attributes = new LinkedHashMap<>();
    for (Matcher m = PSEUDO_ATTRIBUTE.matcher(data); m.find();)
      attributes.putIfAbsent(m.group(1), unescape(m.group(2) != null ? m.group(2) : m.group(3)));
    String type = attributes.getOrDefault("type", "").replaceFirst(";.*", "").strip().toLowerCase(java.util.Locale.ROOT);
    if (!XSLT_TYPES.contains(type) || attributes.get("href") == null)
      return;
    // The first one counts, and one for every reader and medium before one for some.
    boolean preferred = !"yes".equals(attributes.get("alternate"))
        && (!attributes.containsKey("media") || attributes.get("media").matches("(?i).*\\b(all|screen)\\b.*"));
    if (href == null || preferred && !isPreferred) {
      href = attributes.get("href");
      place = new LocatorImpl(locator);
      isPreferred = preferred;
    }
  }

  @Override
  public void startElement(String uri, String localName, String name, Attributes attributes) throws SAXException {
    if (href == null)
      place = new LocatorImpl(locator);
    throw new PrologRead();
  }

  private static String unescape(String text) {
    return text.replace("&lt;", "<").replace("&gt;", ">").replace("&quot;", "\"").replace("&apos;", "'")
        .replace("&amp;", "&");
  }
}
