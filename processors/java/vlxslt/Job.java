package vlxslt;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import java.util.stream.Stream;
import javax.xml.transform.sax.SAXSource;
import vlxslt.Diagnostic.Severity;
import vlxslt.ProcessorAdapter.Stylesheet;

/**
 * One transformation: what was asked for, and everything that is told, read and written for it. Used by one thread at a
 * time; other jobs may run at the same time.
 */
final class Job implements AutoCloseable {
  /**
   * What was asked for: paths, the stylesheet's empty when the input names it. The content is the file that holds the
   * input, mostly the input itself. The result is where the output will be in the end, which is another file when the
   * caller puts it in place.
   */
  record Request(String input, String inputContent, String stylesheet, String output, String result,
      Map<String, String> parameters, Start start) {
    Request withOutput(String other) {
      return new Request(input, inputContent, stylesheet, other, result, parameters, start);
    }

    /** Whether a stylesheet would not notice a difference. */
    boolean isLike(Request other) {
      return withOutput("").equals(other.withOutput(""));
    }
  }

  /** What all jobs of a run share. */
  record Shared(IVLXSLTJavaHandler handler, ParserPool parsers, HostAnswers answers, Stylesheets stylesheets) {}

  /** Where a stylesheet begins; null for its own ways. Documents, but not stylesheets, may include others. */
  record Start(boolean includes, String template, String mode) {}

  private final Request request;
  private final Turn turn;
  private final Stylesheets stylesheets;
  private final JobCalls calls;
  private final Diagnostics diagnostics;
  private final Documents documents;
  private final FilesRead filesRead = new FilesRead();
  private List<String> secondaryOutputs = List.of();
  private String output;   // may change until the turn
  private Outputs outputs; // once the transformation begins
  private Place origin; // of the stylesheet

  /** `known` calls of the handler are not made: an earlier attempt made them. */
  Job(Request request, Shared shared, Turn turn, long known) {
    this.request = request;
    this.turn = turn;
    output = request.output;
    stylesheets = shared.stylesheets;
    calls = new JobCalls(shared.handler, turn, known);
    diagnostics = new Diagnostics(calls);
    documents = new Documents(calls, diagnostics, shared.parsers,
        new EntityResolution(calls, shared.answers, turn), request.start.includes);
    if (!request.inputContent.equals(request.input))
      documents.readInstead(input(), Path.of(request.inputContent));
  }

  Diagnostics diagnostics() {
    return diagnostics;
  }

  Turn turn() {
    return turn;
  }

  Request request() {
    return request;
  }

  /** How many calls the handler has got. */
  long callsMade() {
    return calls.passed();
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

  /** Returns when all is transformed, but not yet in place; throws what ended the job before. */
  void transform(ProcessorAdapter processor) throws Exception {
    diagnostics.setSubject(input());
    documents.noteUnasked(filesRead);
    try {
      apply(processor);
    } finally {
      documents.noteUnasked(null);
    }
  }

  private void apply(ProcessorAdapter processor) throws Exception {
    String address = findStylesheet();
    diagnostics.setSubject(origin);
    if (!processor.hasNamedStart() && (request.start.template != null || request.start.mode != null))
      throw new IllegalArgumentException(Text.NO_NAMED_START.with());
    protect(address);
    Stylesheet stylesheet = compile(processor, address);
    diagnostics.setSubject(outputAddress());
    outputs = new Outputs(Path.of(output), Path.of(request.result), namesStylesheet(), turn);
    // What the parser finds in the input has its place; all else is the stylesheet's doing.
    diagnostics.setSubject(origin);
    stylesheet.run(this, outputs);
    diagnostics.failOn(Severity.FATAL);
  }

  /**
   * The turn of a job that works ahead has come, while its thread waits or is done: what was held is told and written,
   * the principal output to that path. Throws when it cannot be written.
   */
  void beginTurn(String chosen) throws IOException {
    output = chosen;
    if (outputs != null)
      outputs.open(Path.of(output));
    calls.passOn();
  }

  /** In the job's turn, after `transform`: puts the outputs in place. */
  void commit() throws IOException {
    diagnostics.setSubject(outputAddress());
    documents.noteWritten(outputs.places());
    secondaryOutputs = outputs.commit();
    outputs.forEachLoss((file, loss) -> diagnostics.report(
        new Diagnostic(Severity.WARNING, loss, Place.of(Addresses.ofPath(file.toString())), null), null));
  }

  /** Says why `transform` or `commit` threw, as far as that was not said before. */
  void end(Throwable thrown) {
    diagnostics.end(thrown);
  }

  /** The last that the handler hears of the job. */
  void tellResult() {
    calls.JobDone(secondaryOutputs.toArray(new String[0]), filesRead.paths());
  }

  /** Outputs that are not in place are removed. */
  @Override
  public void close() {
    if (outputs != null)
      outputs.close();
  }

  /** The files of its results, as far as they are in place. */
  List<Path> writtenFiles() {
    return Stream.concat(Stream.of(request.result), secondaryOutputs.stream())
        .map(path -> Path.of(path).toAbsolutePath().normalize()).toList();
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

  private Stylesheet compile(ProcessorAdapter processor, String address) throws Exception {
    // A stylesheet inside its input is good for that input only; not kept.
    if (!request.stylesheet.isEmpty() || !address.startsWith(input() + "#"))
      return stylesheets.compile(processor, address, this);
    turn.await();
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
