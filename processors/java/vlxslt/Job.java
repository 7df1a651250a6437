package vlxslt;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import javax.xml.transform.sax.SAXSource;
import vlxslt.Diagnostic.Severity;
import vlxslt.ProcessorAdapter.Stylesheet;

/**
 * One transformation: what was asked for, and everything that is told, read and written for it. Used by one thread;
 * other jobs may run at the same time.
 */
final class Job {
  /**
   * What was asked for: paths, the stylesheet's empty when the input names it. The content is the file that holds the
   * input, mostly the input itself. The result is where the output will be in the end, which is another file when the
   * caller puts it in place.
   */
  record Request(String input, String inputContent, String stylesheet, String output, String result,
      Map<String, String> parameters, Start start) {}

  /** Where a stylesheet begins; null for its own ways. Documents, but not stylesheets, may include others. */
  record Start(boolean includes, String template, String mode) {}

  private final Request request;
  private final IVLXSLTJavaHandler handler;
  private final Diagnostics diagnostics;
  private final Documents documents;
  private final FilesRead filesRead = new FilesRead();
  private List<String> secondaryOutputs = List.of();
  private Place origin; // of the stylesheet

  Job(Request request, IVLXSLTJavaHandler handler, ParserPool parsers) {
    this.request = request;
    this.handler = handler;
    diagnostics = new Diagnostics(handler);
    documents = new Documents(handler, diagnostics, parsers, request.start.includes);
    if (!request.inputContent.equals(request.input))
      documents.readInstead(input(), Path.of(request.inputContent));
  }

  Diagnostics diagnostics() {
    return diagnostics;
  }

  Documents documents() {
    return documents;
  }

  FilesRead filesRead() {
    return filesRead;
  }

  /** The input's address. */
  String input() {
    return Addresses.ofPath(request.input);
  }

  SAXSource inputSource() {
    return documents.inputSource(input(), filesRead);
  }

  /** The input as it is written, whatever it includes. */
  SAXSource plainInputSource() {
    return documents.source(input(), filesRead);
  }

  /** The base of relative secondary results. */
  String outputAddress() {
    return Addresses.ofPath(request.result);
  }

  /** By their names in the canonical spelling. */
  Map<String, String> parameters() {
    return request.parameters;
  }

  String outputPath() {
    return Path.of(request.result).toAbsolutePath().normalize().toString();
  }

  /** Whether the input itself says which stylesheet is applied to it. */
  boolean namesStylesheet() {
    return request.stylesheet.isEmpty();
  }

  Start start() {
    return request.start;
  }

  /** Returns when all outputs are in place; throws what ended the job before. */
  void run(ProcessorAdapter processor, Stylesheets stylesheets) throws Exception {
    diagnostics.setSubject(input());
    documents.noteUnasked(filesRead);
    Path target = Path.of(request.output);
    String address = findStylesheet();
    diagnostics.setSubject(origin);
    if (!processor.hasNamedStart() && (request.start.template != null || request.start.mode != null))
      throw new IllegalArgumentException(Text.NO_NAMED_START.with());
    protect(address);
    Stylesheet stylesheet = compile(processor, stylesheets, address);
    diagnostics.setSubject(outputAddress());
    try (Outputs outputs = new Outputs(target, Path.of(request.result), namesStylesheet())) {
      // What the parser finds in the input has its place; all else is the stylesheet's doing.
      diagnostics.setSubject(origin);
      stylesheet.run(this, outputs);
      diagnostics.failOn(Severity.FATAL);
      diagnostics.setSubject(outputAddress());
      documents.noteWritten(outputs.places());
      secondaryOutputs = outputs.commit();
      outputs.forEachLoss((file, loss) -> diagnostics.report(
          new Diagnostic(Severity.WARNING, loss, Place.of(Addresses.ofPath(file.toString())), null), null));
    }
  }

  /** Says why `run` threw, as far as that was not said before. */
  void end(Throwable thrown) {
    diagnostics.end(thrown);
  }

  /** The thread goes on to something else. */
  void leave() {
    documents.noteUnasked(null);
  }

  /** The last that the handler hears of the job. */
  void tellResult() {
    handler.JobDone(secondaryOutputs.toArray(new String[0]), filesRead.paths());
  }

  private String findStylesheet() throws Exception {
    if (!request.stylesheet.isEmpty()) {
      String address = Addresses.ofPath(request.stylesheet);
      origin = Place.of(address);
      return address;
    }
    StylesheetInstruction found = StylesheetInstruction.find(plainInputSource());
    String href = found.href() == null ? null : found.href().strip().replace('\\', '/');
    if (href == null)
      throw found.fail(Text.NO_STYLESHEET.with());
    if (href.isEmpty())
      throw found.fail(Text.STYLESHEET_NAME_EMPTY.with());
    origin = found.place();
    if (href.startsWith("#"))
      return input() + href;
    String address = documents.resolve(input(), href);
    if (Addresses.isOfFile(address) && Addresses.fileOf(address) == null)
      throw found.fail(Text.ADDRESS_UNUSABLE.with(href));
    origin = Place.of(address);
    return address;
  }

  private Stylesheet compile(ProcessorAdapter processor, Stylesheets stylesheets, String address) throws Exception {
    // A stylesheet inside its input is good for that input only; not kept.
    if (!request.stylesheet.isEmpty() || !address.startsWith(input() + "#"))
      return stylesheets.compile(processor, address, this);
    diagnostics.setSubject(origin);
    Stylesheet embedded = processor.compileEmbedded(this);
    diagnostics.failOn(Severity.ERROR);
    return embedded;
  }

  /** A stylesheet may not be replaced by a result: it could not be made again. */
  private void protect(String address) throws IOException {
    Path stylesheet = Addresses.fileOf(address);
    Path result = Path.of(request.result);
    if (stylesheet != null && Files.exists(stylesheet) && Files.exists(result) && Files.isSameFile(stylesheet, result))
      throw new IOException(Text.OUTPUT_IS_STYLESHEET.with(result));
  }
}
