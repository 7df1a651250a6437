package vlxslt;

import java.io.BufferedInputStream;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import javax.xml.transform.Source;
import javax.xml.transform.TransformerException;
import javax.xml.transform.URIResolver;
import javax.xml.transform.sax.SAXSource;
import org.xml.sax.InputSource;
import org.xml.sax.SAXException;
import org.xml.sax.SAXParseException;
import org.xml.sax.XMLReader;

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

  // Processors take the square of the depth to compile what is nested.
  private static final int MAX_DEPTH_OF_STYLESHEET = 10_000;
  private static final ThreadLocal<Documents> OF_THREAD = new ThreadLocal<>();

  private final IVLXSLTJavaHandler handler;
  private final Diagnostics diagnostics;
  private final EntityResolution resolution;
  private final ParserPool parsers;
  private String replaced = "";
  private Path replacement;
  private final Map<List<String>, String> answers = new HashMap<>(); // some processors ask for a document each time
  private FilesRead unasked;
  private final boolean includes;

  /** `includes` says whether what is read as data is subject to XInclude. */
  Documents(IVLXSLTJavaHandler handler, Diagnostics diagnostics, ParserPool parsers, EntityResolution resolution,
      boolean includes) {
    this.includes = includes;
    this.handler = handler;
    this.diagnostics = diagnostics;
    this.resolution = resolution;
    this.parsers = parsers;
  }

  /** What is at the address is read from that file. */
  void readInstead(String address, Path file) {
    replaced = address;
    replacement = file;
  }

  /** The tree that was kept of what is at the address, announced as if it were read; null when there is none. */
  KeptTrees.Entry findTree(KeptTrees.Key key, FilesRead files) {
    KeptTrees.Entry kept = isReplaced(key.address()) ? null : parsers.trees().find(key, resolution);
    if (kept == null)
      return null;
    handler.StartDocument(Addresses.shown(key.address()));
    handler.EndDocument();
    files.addAll(kept.files);
    return kept;
  }

  /** Trees for other jobs; not of what is read from another file. */
  void keepTree(KeptTrees.Key key, Object tree, FilesRead files, FileStamp before, long bytes) {
    if (!isReplaced(key.address()))
      parsers.trees().keep(key, tree, files, before, bytes);
  }

  /** Before outputs take their places: what is kept of such files is read anew from now on. */
  void noteWritten(List<Path> outputs) {
    outputs.forEach(parsers.trees()::noteWritten);
  }

  private boolean isReplaced(String address) {
    return replaced.equals(address);
  }

  /** Those of the job that this thread is at. */
  static Documents ofThread() {
    return OF_THREAD.get();
  }

  /** From now on the thread is at this job, and what the processor reads unasked joins `files`; null ends that. */
  void noteUnasked(FilesRead files) {
    unasked = files;
    OF_THREAD.set(files == null ? null : this);
  }

  void readUnasked(InputSource input, ParserSettings settings) throws IOException, SAXException {
    input.setSystemId(Addresses.spelled(input.getSystemId()));
    read(input, settings, unasked, Purpose.DATA);
  }

  /** The source of what a processor reads by its configuration alone. */
  Source unaskedSource(String href, String base) throws TransformerException {
    return uriResolver(unasked, Purpose.DATA).resolve(href, base);
  }

  /** Throws unless what a processor opens unasked may be opened. Returns where it lies. */
  String admitUnasked(String address) throws AddressGate.ReadFailure {
    resolution.turn().hold(0); // throws when the job was dropped
    String admitted = AddressGate.admit(resolve(null, address));
    unasked.add(admitted);
    return admitted;
  }

  /** The address that a reference leads to; null when there is nothing to go by. */
  String resolve(String base, String reference) {
    return answers.computeIfAbsent(List.of(base == null ? "" : base, reference),
        question -> resolution.resolve(null, null, base, reference));
  }

  /** A source that reads itself through this object; everything that is read for it joins `files`. */
  SAXSource source(String address, FilesRead files) {
    return source(address, files, Purpose.PRINCIPAL);
  }

  /** The same for a stylesheet. */
  SAXSource stylesheet(String address, FilesRead files) {
    return stylesheet(address, files, Purpose.PRINCIPAL);
  }

  private SAXSource stylesheet(String address, FilesRead files, Purpose purpose) {
    XMLReader reader = new DocumentReader((input, settings) -> {
      settings.maxDepth = MAX_DEPTH_OF_STYLESHEET;
      read(input, settings, files, purpose);
    }, false);
    return new SAXSource(reader, new InputSource(address));
  }

  /** The same for the input of a transformation. */
  SAXSource inputSource(String address, FilesRead files) {
    return source(address, files, Purpose.PRINCIPAL, includes);
  }

  private SAXSource source(String address, FilesRead files, Purpose purpose) {
    return source(address, files, purpose, includes && purpose == Purpose.DATA);
  }

  private SAXSource source(String address, FilesRead files, Purpose purpose, boolean withInclusions) {
    XMLReader reader =
        new DocumentReader((input, settings) -> read(input, settings, files, purpose), withInclusions);
    return new SAXSource(reader, new InputSource(address));
  }

  /** Serves xsl:import and xsl:include, or document(): never leaves anything to the processor. */
  URIResolver uriResolver(FilesRead files, Purpose purpose) {
    return (href, base) -> {
      try {
        return admittedSource(href, base, files, purpose);
      } catch (AddressGate.ReadFailure e) {
        throw new TransformerException(e.getMessage(), e);
      }
    };
  }

  /** A source of its own reading for what a stylesheet refers to; with a fragment, of that element alone in a module. */
  SAXSource admittedSource(String href, String base, FilesRead files, Purpose purpose)
      throws AddressGate.ReadFailure {
    String reference = Addresses.withoutFragment(href);
    String address = resolve(base, reference);
    String admitted = AddressGate.admit(address == null ? href : address);
    SAXSource source =
        purpose == Purpose.MODULE ? stylesheet(admitted, files, purpose) : source(admitted, files, purpose);
    if (purpose == Purpose.MODULE && href.length() > reference.length() + 1)
      source.setXMLReader(new FragmentReader(source.getXMLReader(), href.substring(reference.length() + 1)));
    return source;
  }

  /** Reads one document with a parser as `settings` say; problems go to its error handler, if it has one. */
  void read(InputSource input, ParserSettings settings, FilesRead files, Purpose purpose)
      throws IOException, SAXException {
    if (purpose != Purpose.DATA)
      settings.errors = diagnostics.asTheyAre();
    else if (settings.errors == null)
      settings.errors = diagnostics.asWarnings(); // the processor would do without the document, and say nothing
    if (isText(input)) {
      parse(input, settings, files, purpose);
      return;
    }
    String address = input.getSystemId();
    handler.StartDocument(Addresses.shown(address));
    Place outer = diagnostics.setSubject(Place.of(address));
    try {
      parse(input, settings, files, purpose);
    } finally {
      diagnostics.setSubject(outer);
      handler.EndDocument();
    }
  }

  // What a stylesheet has in its hands already is no document of its own.
  private static boolean isText(InputSource input) {
    return input.getSystemId() == null || input.getCharacterStream() != null;
  }

  private void parse(InputSource input, ParserSettings settings, FilesRead files, Purpose purpose)
      throws IOException, SAXException {
    Parser parser = parsers.take();
    settings.apply(parser.reader(), input.getSystemId(), files);
    InputSource opened = open(input, settings, files, purpose);
    try {
      parser.parse(opened, resolution, settings.entities, files);
    } catch (IOException e) {
      throw settings.fail(e, input.getSystemId());
    } catch (SAXParseException e) {
      diagnostics.rememberPlace(e);
      throw e;
    } catch (VirtualMachineError e) {
      diagnostics.remember(e);
      throw e;
    } finally {
      if (opened.getByteStream() != null)
        opened.getByteStream().close();
    }
    settings.restore(parser.reader());
    parsers.giveBack(parser);
  }

  private InputSource openReplacement() throws IOException {
    InputSource opened = new InputSource(replaced);
    opened.setByteStream(new BufferedInputStream(Files.newInputStream(replacement)));
    return opened;
  }

  private InputSource open(InputSource input, ParserSettings settings, FilesRead files, Purpose purpose)
      throws IOException, SAXException {
    if (isText(input))
      return input;
    try {
      InputSource opened = replaced.equals(input.getSystemId()) ? openReplacement()
          : input.getByteStream() != null ? input : AddressGate.open(input.getSystemId(), input.getPublicId());
      files.add(input.getSystemId());
      return opened;
    } catch (IOException e) {
      files.miss(input.getSystemId());
      if (purpose == Purpose.PRINCIPAL)
        throw settings.fail(e, input.getSystemId());
      throw e;
    }
  }
}
