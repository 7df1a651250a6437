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
   * What was asked for: paths, the stylesheet's empty when the input names it. The content is the file that holds the
   * input, mostly the input itself. The result is where the output will be in the end, which is another file when the
   * caller puts it in place.
   */
  record Request(String input, String inputContent, String stylesheet, String output, String result,
      Map<String, String> parameters) {}

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
    documents = new Documents(handler, diagnostics, parsers);
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
    return documents.source(input(), filesRead);
  }

  /** The base of relative secondary results. */
  String outputAddress() {
    return Addresses.ofPath(request.result);
  }

  Map<String, String> parameters() {
    return request.parameters;
  }

  /** Returns when all outputs are in place; throws what ended the job before. */
  void run(ProcessorAdapter processor, Stylesheets stylesheets) throws Exception {
    diagnostics.setSubject(input());
    Path target = Path.of(request.output);
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
      return stylesheets.compile(processor, protect(Addresses.ofPath(request.stylesheet)), this);
    String href = StylesheetInstruction.find(inputSource());
    if (href == null)
      throw new SAXParseException(
          Text.NO_STYLESHEET.with(), null, input(), -1, -1);
    if (!href.startsWith("#"))
      return stylesheets.compile(processor, protect(documents.resolve(input(), href.replace('\\', '/'))), this);
    // A stylesheet inside its input is good for that input only; not kept.
    protect(input());
    Stylesheet embedded = processor.compileEmbedded(this);
    diagnostics.failOn(Severity.ERROR);
    return embedded;
  }

  /** The address of a stylesheet, which a result may not replace: it could not be made again. */
  private String protect(String address) throws IOException {
    Path stylesheet = Addresses.fileOf(address);
    Path result = Path.of(request.result);
    if (stylesheet != null && Files.exists(stylesheet) && Files.exists(result) && Files.isSameFile(stylesheet, result))
      throw new IOException(Text.OUTPUT_IS_STYLESHEET.with(result));
    return address;
  }
}
