package vlxslt;

import java.io.IOException;
import java.io.OutputStream;
import java.util.ArrayDeque;
import java.util.Deque;
import java.util.Properties;
import javax.xml.transform.OutputKeys;
import javax.xml.transform.Result;
import javax.xml.transform.Transformer;
import javax.xml.transform.TransformerConfigurationException;
import javax.xml.transform.sax.SAXResult;
import javax.xml.transform.sax.SAXSource;
import javax.xml.transform.sax.SAXTransformerFactory;
import javax.xml.transform.sax.TransformerHandler;
import javax.xml.transform.stream.StreamResult;
import org.xml.sax.Attributes;
import org.xml.sax.SAXException;
import org.xml.sax.helpers.AttributesImpl;
import org.xml.sax.helpers.XMLFilterImpl;

/**
 * Further results of XSLTC, which would write its redirect:write straight into the file, and only where extensions are
 * on. So a stylesheet is compiled with an element of the result in its place, and the result is taken apart at them.
 */
final class XsltcRedirect {
  private static final String REDIRECT = "http://xml.apache.org/xalan/redirect";
  private static final String MARKER = "urn:vlxslt:further-result";
  private static final String MARKER_PREFIX = "vlxslt-further-result";

  private boolean isUsed;

  /** A module of the stylesheet, with elements of the result for its instructions. */
  SAXSource prepare(SAXSource module) {
    XMLFilterImpl filter = new XMLFilterImpl(module.getXMLReader()) {
      @Override
      public void startElement(String uri, String localName, String name, Attributes attributes) throws SAXException {
        if (!isWrite(uri, localName)) {
          super.startElement(uri, localName, name, attributes);
          return;
        }
        isUsed = true;
        AttributesImpl kept = new AttributesImpl();
        String select = attributes.getValue("select");
        String file = select == null ? attributes.getValue("file") : "{" + select + "}";
        kept.addAttribute("", "file", "file", "CDATA", file == null ? "" : file);
        if (attributes.getValue("append") != null)
          kept.addAttribute("", "append", "append", "CDATA", attributes.getValue("append"));
        super.startPrefixMapping(MARKER_PREFIX, MARKER);
        super.startElement(MARKER, localName, MARKER_PREFIX + ":" + localName, kept);
      }

      @Override
      public void endElement(String uri, String localName, String name) throws SAXException {
        if (!isWrite(uri, localName)) {
          super.endElement(uri, localName, name);
          return;
        }
        super.endElement(MARKER, localName, MARKER_PREFIX + ":" + localName);
        super.endPrefixMapping(MARKER_PREFIX);
      }
    };
    return new SAXSource(filter, module.getInputSource());
  }

  private static boolean isWrite(String uri, String localName) {
    return REDIRECT.equals(uri) && "write".equals(localName);
  }

  /** Where the transformer writes: as ever, unless the stylesheet has further results. */
  Result resultFor(Transformer transformer, SAXTransformerFactory factory, StreamResult principal, Outputs outputs)
      throws TransformerConfigurationException {
    if (!isUsed)
      return principal;
    Properties chosen = new Properties();
    transformer.getOutputProperties().forEach(chosen::put); // without the defaults, which depend on the root
    transformer.setOutputProperty(OutputKeys.METHOD, "xml"); // or elements would be left out of a text
    Splitter splitter = new Splitter(factory, chosen, outputs, principal);
    SAXResult result = new SAXResult(splitter);
    result.setLexicalHandler(splitter);
    return result;
  }

  /** Passes on what it gets to the serializer of the innermost result. */
  private static final class Splitter extends org.xml.sax.ext.DefaultHandler2 {
    /** One result under way, and how deep inside its elements the transformation is. */
    private static final class Target {
      final TransformerHandler serializer;
      final OutputStream stream;
      int depth;

      Target(TransformerHandler serializer, OutputStream stream) {
        this.serializer = serializer;
        this.stream = stream;
      }
    }

    private final SAXTransformerFactory factory;
    private final Properties properties;
    private final Outputs outputs;
    private final Deque<Target> targets = new ArrayDeque<>();
    private final PrefixesInScope inScope = new PrefixesInScope();

    Splitter(SAXTransformerFactory factory, Properties properties, Outputs outputs, StreamResult principal)
        throws TransformerConfigurationException {
      this.factory = factory;
      this.properties = properties;
      this.outputs = outputs;
      targets.push(new Target(newSerializer(principal), null));
    }

    private TransformerHandler newSerializer(StreamResult result) throws TransformerConfigurationException {
      TransformerHandler serializer = factory.newTransformerHandler();
      serializer.getTransformer().setOutputProperties(properties);
      serializer.setResult(result);
      return serializer;
    }

    private TransformerHandler current() {
      return targets.peek().serializer;
    }

    @Override
    public void startDocument() throws SAXException {
      current().startDocument();
    }

    @Override
    public void endDocument() throws SAXException {
      current().endDocument();
    }

    @Override
    public void startPrefixMapping(String prefix, String uri) throws SAXException {
      if (uri.equals(MARKER))
        return;
      inScope.start(prefix, uri);
      if (targets.size() == 1 || targets.peek().depth > 0)
        current().startPrefixMapping(prefix, uri);
    }

    @Override
    public void endPrefixMapping(String prefix) throws SAXException {
      if (inScope.end(prefix))
        current().endPrefixMapping(prefix);
    }

    @Override
    public void startElement(String uri, String localName, String name, Attributes attributes) throws SAXException {
      if (uri.equals(MARKER)) {
        open(attributes);
        return;
      }
      // What its ancestors declared stays behind in another result.
      if (targets.peek().depth++ == 0 && targets.size() > 1)
        inScope.declare(current());
      current().startElement(uri, localName, name, attributes);
    }

    @Override
    public void endElement(String uri, String localName, String name) throws SAXException {
      if (uri.equals(MARKER)) {
        close();
        return;
      }
      current().endElement(uri, localName, name);
      targets.peek().depth--;
    }

    private void open(Attributes attributes) throws SAXException {
      String name = String.valueOf(attributes.getValue("file"));
      String append = attributes.getValue("append");
      OutputStream stream = "yes".equals(append) || "true".equals(append) ? outputs.append(outputs.locate(name))
                                                                          : outputs.add(outputs.locate(name));
      try {
        targets.push(new Target(newSerializer(new StreamResult(stream)), stream));
      } catch (TransformerConfigurationException e) {
        throw new SAXException(e);
      }
      current().startDocument();
    }

    private void close() throws SAXException {
      Target done = targets.pop();
      done.serializer.endDocument();
      try {
        done.stream.close();
      } catch (IOException e) {
        throw new SAXException(e);
      }
    }

    @Override
    public void characters(char[] text, int from, int count) throws SAXException {
      current().characters(text, from, count);
    }

    @Override
    public void ignorableWhitespace(char[] text, int from, int count) throws SAXException {
      current().ignorableWhitespace(text, from, count);
    }

    @Override
    public void processingInstruction(String target, String data) throws SAXException {
      current().processingInstruction(target, data);
    }

    @Override
    public void comment(char[] text, int from, int count) throws SAXException {
      current().comment(text, from, count);
    }

    @Override
    public void startCDATA() throws SAXException {
      current().startCDATA();
    }

    @Override
    public void endCDATA() throws SAXException {
      current().endCDATA();
    }

    @Override
    public void startDTD(String name, String publicId, String systemId) throws SAXException {
      current().startDTD(name, publicId, systemId);
    }

    @Override
    public void endDTD() throws SAXException {
      current().endDTD();
    }
  }
}
