package vlxslt;

import java.util.HashSet;
import java.util.LinkedHashSet;
import java.util.Set;
import javax.xml.transform.Source;
import javax.xml.transform.URIResolver;
import javax.xml.transform.sax.SAXSource;
import org.xml.sax.Attributes;
import org.xml.sax.SAXException;
import org.xml.sax.XMLReader;
import org.xml.sax.helpers.NamespaceSupport;
import org.xml.sax.helpers.XMLFilterImpl;

/**
 * Watches the modules of a stylesheet while they are compiled. A compiler must have the values of static parameters
 * before it begins, and must not have those of others: it would keep them for later runs. Which ones are static shows in
 * the modules; so where one is found whose value is at hand, the module is read to its end for others, and compiling
 * begins again.
 */
final class StaticParameters {
  /** Gives the compiler the value of a parameter. */
  interface Setter {
    void set(String name) throws Exception;
  }

  /** Ends a compilation that is to begin again. */
  static final class Restart extends SAXException {
    private static final long serialVersionUID = 1;

    @Override
    public synchronized Throwable fillInStackTrace() {
      return this;
    }
  }

  private static final String XSLT = "http://www.w3.org/1999/XSL/Transform";

  private final Set<String> names = new LinkedHashSet<>();
  private final Set<String> known = new HashSet<>(); // to the compiler
  private final Set<String> given;
  private final Setter setter;
  private final Restart restart;
  private boolean mustRestart;

  /** `given` are the names of parameters that have a value; `restart` is what a compilation may end with. */
  StaticParameters(Set<String> given, Restart restart, Setter setter) {
    this.given = given;
    this.restart = restart;
    this.setter = setter;
  }

  /** Whether the compilation that just ended lacked a value; the compiler has it now. */
  boolean takeRestart() {
    boolean taken = mustRestart;
    mustRestart = false;
    return taken;
  }

  /** The names of those that were declared so far; in a namespace as {namespace}name. */
  Set<String> names() {
    return names;
  }

  /** The one spelling of the ways to write a parameter's name. */
  static String canonicalName(String name) {
    String clark = name.startsWith("Q{") ? name.substring(1) : name;
    return clark.startsWith("{}") ? clark.substring(2) : clark;
  }

  Source watch(Source source) {
    return source instanceof SAXSource sax && sax.getXMLReader() != null
        ? new SAXSource(new Watch(sax.getXMLReader()), sax.getInputSource()) : source;
  }

  URIResolver watch(URIResolver resolver) {
    return (href, base) -> watch(resolver.resolve(href, base));
  }

  private final class Watch extends XMLFilterImpl {
    private final NamespaceSupport namespaces = new NamespaceSupport();
    private boolean hasContext;

    Watch(XMLReader parent) {
      super(parent);
    }

    @Override
    public void startPrefixMapping(String prefix, String uri) throws SAXException {
      openContext();
      namespaces.declarePrefix(prefix, uri);
      super.startPrefixMapping(prefix, uri);
    }

    @Override
    public void startElement(String uri, String localName, String qName, Attributes attributes) throws SAXException {
      openContext();
      hasContext = false;
      if (uri.equals(XSLT) && localName.equals("param") && isStatic(attributes) && attributes.getValue("name") != null)
        declare(attributes.getValue("name").strip());
      if (!mustRestart)
        super.startElement(uri, localName, qName, attributes);
    }

    @Override
    public void endElement(String uri, String localName, String qName) throws SAXException {
      if (!mustRestart)
        super.endElement(uri, localName, qName);
      namespaces.popContext();
    }

    @Override
    public void endDocument() throws SAXException {
      if (mustRestart)
        throw restart;
      super.endDocument();
    }

    private void openContext() {
      if (!hasContext)
        namespaces.pushContext();
      hasContext = true;
    }

    private void declare(String written) throws SAXException {
      String name = written;
      int colon = written.indexOf(':');
      if (colon > 0 && !written.startsWith("Q{") && namespaces.getURI(written.substring(0, colon)) != null)
        name = "{" + namespaces.getURI(written.substring(0, colon)) + "}" + written.substring(colon + 1);
      name = canonicalName(name);
      names.add(name);
      if (!given.contains(name) || !known.add(name))
        return;
      mustRestart = true;
      try {
        setter.set(name);
      } catch (Exception e) {
        throw new SAXException(e);
      }
    }
  }

  // A shadow attribute may turn out either way; as a static one, such a parameter works in both cases.
  private static boolean isStatic(Attributes attributes) {
    String value = attributes.getValue("static");
    return attributes.getValue("_static") != null || value != null && Set.of("yes", "true", "1").contains(value.strip());
  }
}
