package vlxslt;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import javax.xml.transform.sax.SAXSource;
import org.xml.sax.SAXParseException;
import vlxslt.Diagnostic.Severity;
import vlxslt.ProcessorAdapter.Stylesheet;

/**
 * One transformation: what was asked for, and everything that is told, read and written for it. Used by one thread;
 * other jobs may run at the same time.
 */
final class Job {
  /**
   * What was asked for: paths, the stylesheet's empty when the input names it. The result is where the output will be in
   * the end, which is another file when the caller puts it in place.
   */
  record Request(String input, String stylesheet, String output, String result, Map<String, String> parameters,
      Start start) {}

  /** Where a stylesheet begins; null for its own ways. Documents, but not stylesheets, may include others. */
  record Start(boolean includes, String template, String mode) {}

  private final Request request;
  private final IVLXSLTJavaHandler handler;
  private final Diagnostics diagnostics;
  private final Documents documents;
  private final FilesRead filesRead = new FilesRead();
  private List<String> secondaryOutputs = List.of();

  Job(Request request, IVLXSLTJavaHandler handler, ParserPool parsers) {
    this.request = request;
    this.handler = handler;
    diagnostics = new Diagnostics(handler);
    documents = new Documents(handler, diagnostics, parsers, request.start.includes);
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

  Start start() {
    return request.start;
  }

  /** Returns when all outputs are in place; throws what ended the job before. */
  void run(ProcessorAdapter processor, Stylesheets stylesheets) throws Exception {
    diagnostics.setSubject(input());
    if (!processor.hasNamedStart() && (request.start.template != null || request.start.mode != null))
      throw new IllegalArgumentException(Text.NO_NAMED_START.with());
    Path target = Path.of(request.output);
    Path source = Path.of(request.input);
    if (Files.exists(target) && Files.exists(source) && Files.isSameFile(target, source))
      throw new IOException(Text.OUTPUT_IS_INPUT.with(request.output));
    Stylesheet stylesheet = compile(processor, stylesheets);
    diagnostics.setSubject(outputAddress());
    try (Outputs outputs = new Outputs(target, Path.of(request.result))) {
      diagnostics.setSubject(input());
      stylesheet.run(this, outputs);
      diagnostics.failOn(Severity.FATAL);
      diagnostics.setSubject(outputAddress());
      secondaryOutputs = outputs.commit();
    }
  }

  /** Says why `run` threw, as far as that was not said before. */
  void end(Throwable thrown) {
    diagnostics.end(thrown);
  }

  /** The last that the handler hears of the job. */
  void tellResult() {
    handler.JobDone(secondaryOutputs.toArray(new String[0]), filesRead.paths());
  }

  private Stylesheet compile(ProcessorAdapter processor, Stylesheets stylesheets) throws Exception {
    if (!request.stylesheet.isEmpty())
      return stylesheets.compile(processor, Addresses.ofPath(request.stylesheet), this);
    String href = StylesheetInstruction.find(plainInputSource());
    if (href == null)
      throw new SAXParseException(
          Text.NO_STYLESHEET.with(), null, input(), -1, -1);
    if (!href.startsWith("#"))
      return stylesheets.compile(processor, documents.resolve(input(), href.replace('\\', '/')), this);
    // A stylesheet inside its input is good for that input only; not kept.
    Stylesheet embedded = processor.compileEmbedded(this);
    diagnostics.failOn(Severity.ERROR);
    return embedded;
  }
}
