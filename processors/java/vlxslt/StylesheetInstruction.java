package vlxslt;

import java.util.LinkedHashMap;
import java.util.Map;
import java.util.Set;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import javax.xml.transform.sax.SAXSource;
import org.xml.sax.Attributes;
import org.xml.sax.SAXException;
import org.xml.sax.XMLReader;
import org.xml.sax.helpers.DefaultHandler;

/** Finds the stylesheet that an input names in its xml-stylesheet processing instruction. */
final class StylesheetInstruction extends DefaultHandler {
  private static final Pattern PSEUDO_ATTRIBUTE = Pattern.compile("([\\w.:-]+)\\s*=\\s*(?:\"([^\"]*)\"|'([^']*)')");
  private static final Set<String> XSLT_TYPES =
      Set.of("text/xsl", "text/xml", "application/xml", "application/xslt+xml", "text/xslt", "application/xsl");

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

  /** The reference as written; null when the input names none. */
  static String find(SAXSource input) throws Exception {
    StylesheetInstruction finder = new StylesheetInstruction();
    XMLReader reader = input.getXMLReader();
    reader.setContentHandler(finder);
    try {
      reader.parse(input.getInputSource());
    } catch (PrologRead e) {
      // As it should be.
    }
    return finder.href;
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
      isPreferred = preferred;
    }
  }

  @Override
  public void startElement(String uri, String localName, String name, Attributes attributes) throws SAXException {
    throw new PrologRead();
  }

  private static String unescape(String text) {
    return text.replace("&lt;", "<").replace("&gt;", ">").replace("&quot;", "\"").replace("&apos;", "'")
        .replace("&amp;", "&");
  }
}
