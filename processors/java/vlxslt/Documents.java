package vlxslt;

import java.io.IOException;
import java.util.ArrayDeque;
import java.util.Deque;
import java.util.function.Consumer;
import javax.xml.transform.Source;
import javax.xml.transform.URIResolver;
import javax.xml.transform.sax.SAXSource;
import org.xml.sax.InputSource;
import org.xml.sax.SAXException;

/**
 * Everything that is read as XML comes through here: inputs, stylesheet modules, documents that a stylesheet asks for.
 * Each is bracketed for the host by a start and an end.
 */
final class Documents {
  private final IVLXSLTJavaHandler handler;
  private final EntityResolution resolution;
  private final DtdCache dtds = new DtdCache();
  private final Object symbols = Parser.newSymbols();
  private final Deque<Parser> idle = new ArrayDeque<>();

  Documents(IVLXSLTJavaHandler handler) {
    this.handler = handler;
    this.resolution = new EntityResolution(handler);
  }

  void startRun() {
    dtds.startRun();
  }

  void forget() {
    dtds.clear();
    idle.clear();
  }

  EntityResolution resolution() {
    return resolution;
  }

  /** A source that reads itself through this object; `onRead` hears the address of everything read for it. */
  SAXSource source(String address, Diagnostics diagnostics, Consumer<String> onRead) {
    return new SAXSource(new DocumentReader(this, diagnostics, onRead), new InputSource(address));
  }

  /** Serves xsl:import, xsl:include and document(). */
  URIResolver uriResolver(Diagnostics diagnostics, Consumer<String> onRead) {
    return (href, base) -> {
      // A part of a document, or an address of a kind that we know nothing about: the processor's own business.
      if (href.indexOf('#') >= 0)
        return null;
      String address = resolution.resolve(null, null, base, href);
      boolean isFile = address != null && Addresses.fileOf(address) != null;
      return isFile ? (Source) source(address, diagnostics, onRead) : null;
    };
  }

  /** Reads one document with the parser as `settings` left it. */
  void read(InputSource input, Diagnostics diagnostics, Consumer<String> onRead, ParserSettings settings)
      throws IOException, SAXException {
    Parser parser = idle.isEmpty() ? new Parser(dtds, symbols) : idle.pop();
    String address = input.getSystemId();
    handler.StartDocument(Addresses.shown(address));
    String outer = diagnostics.setSubject(address);
    try {
      settings.apply(parser.reader, diagnostics);
      InputSource opened = input.getByteStream() == null && input.getCharacterStream() == null
          ? EntityResolution.open(address, input.getPublicId()) : input;
      try {
        parser.parse(opened, resolution).forEach(onRead);
      } catch (IOException e) {
        diagnostics.fatalError(settings.locate(e, address));
      } finally {
        if (opened.getByteStream() != null)
          opened.getByteStream().close();
      }
      settings.restore(parser.reader);
      idle.push(parser);
    } finally {
      diagnostics.setSubject(outer);
      handler.EndDocument();
    }
  }
}
