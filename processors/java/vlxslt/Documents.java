package vlxslt;

import java.io.IOException;
import javax.xml.transform.Source;
import javax.xml.transform.URIResolver;
import javax.xml.transform.sax.SAXSource;
import org.xml.sax.InputSource;
import org.xml.sax.SAXException;
import org.xml.sax.SAXParseException;

/**
 * Everything that one job reads as XML comes through here: input, stylesheet modules, documents that the stylesheet
 * asks for. Each is bracketed for the host by a start and an end.
 */
final class Documents {
  /** What a document is read for, which settles who says what is wrong with it. */
  enum Purpose {
    /** The input or the stylesheet itself. */
    PRINCIPAL,
    /** A module of the stylesheet; where it was asked for is the processor's to say. */
    MODULE,
    /** Data of a running stylesheet, which may do without: all is left to the processor. */
    DATA
  }

  private final IVLXSLTJavaHandler handler;
  private final Diagnostics diagnostics;
  private final EntityResolution resolution;
  private final ParserPool parsers;
  private final boolean includes;

  /** `includes` says whether what is read as data is subject to XInclude. */
  Documents(IVLXSLTJavaHandler handler, Diagnostics diagnostics, ParserPool parsers, boolean includes) {
    this.includes = includes;
    this.handler = handler;
    this.diagnostics = diagnostics;
    this.resolution = new EntityResolution(handler);
    this.parsers = parsers;
  }

  /** The address that a reference leads to; null when there is nothing to go by. */
  String resolve(String base, String reference) {
    return resolution.resolve(null, null, base, reference);
  }

  /** A source that reads itself through this object; everything that is read for it joins `files`. */
  SAXSource source(String address, FilesRead files) {
    return source(address, files, Purpose.PRINCIPAL);
  }

  /** The same for the input of a transformation. */
  SAXSource inputSource(String address, FilesRead files) {
    return new SAXSource(new DocumentReader(this, files, Purpose.PRINCIPAL, includes), new InputSource(address));
  }

  private SAXSource source(String address, FilesRead files, Purpose purpose) {
    return new SAXSource(
        new DocumentReader(this, files, purpose, includes && purpose == Purpose.DATA), new InputSource(address));
  }

  /** Serves xsl:import and xsl:include, or document(). */
  URIResolver uriResolver(FilesRead files, Purpose purpose) {
    return (href, base) -> {
      // A part of a document, or an address of an unknown kind: the processor's own business.
      if (href.indexOf('#') >= 0)
        return null;
      String address = resolve(base, href);
      boolean isFile = address != null && Addresses.fileOf(address) != null;
      return isFile ? (Source) source(address, files, purpose) : null;
    };
  }

  /** Reads one document with a parser as `settings` say; problems go to its error handler, if it has one. */
  void read(InputSource input, ParserSettings settings, FilesRead files, Purpose purpose)
      throws IOException, SAXException {
    if (purpose != Purpose.DATA)
      settings.errors = diagnostics;
    Parser parser = parsers.take();
    String address = input.getSystemId();
    handler.StartDocument(Addresses.shown(address));
    String outer = diagnostics.setSubject(address);
    try {
      settings.apply(parser.reader());
      InputSource opened = open(input, settings, purpose);
      files.add(address);
      try {
        parser.parse(opened, resolution, files);
      } catch (IOException e) {
        throw settings.fail(e, address);
      } catch (SAXParseException e) {
        diagnostics.rememberPlace(e);
        throw e;
      } finally {
        if (opened.getByteStream() != null)
          opened.getByteStream().close();
      }
      settings.restore(parser.reader());
      parsers.giveBack(parser);
    } finally {
      diagnostics.setSubject(outer);
      handler.EndDocument();
    }
  }

  private static InputSource open(InputSource input, ParserSettings settings, Purpose purpose)
      throws IOException, SAXException {
    if (input.getByteStream() != null || input.getCharacterStream() != null)
      return input;
    try {
      return EntityResolution.open(input.getSystemId(), input.getPublicId());
    } catch (IOException e) {
      if (purpose == Purpose.PRINCIPAL)
        throw settings.fail(e, input.getSystemId());
      throw e;
    }
  }
}
