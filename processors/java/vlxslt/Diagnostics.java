package vlxslt;

import java.util.ArrayList;
import java.util.Collections;
import java.util.HashMap;
import java.util.IdentityHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import javax.xml.transform.TransformerException;
import org.xml.sax.ErrorHandler;
import org.xml.sax.SAXParseException;
import vlxslt.Diagnostic.Severity;

/**
 * Gathers the problems of one job. The parser, the processor and the exception that ends it all tell of the same problem
 * in turn; each is reported once, when it is first heard of.
 */
final class Diagnostics {
  private final IVLXSLTJavaHandler handler;
  private final Set<Throwable> known = Collections.newSetFromMap(new IdentityHashMap<>());
  private final List<Diagnostic> reported = new ArrayList<>();
  private final Map<String, Place> placesOfTexts = new HashMap<>();
  private Place subject = Place.of("");
  private VirtualMachineError exhaustion;

  Diagnostics(IVLXSLTJavaHandler handler) {
    this.handler = handler;
  }

  /** What is at work now: named where a problem comes without a file. Returns what was before. */
  Place setSubject(Place place) {
    Place before = subject;
    subject = place;
    return before;
  }

  void setSubject(String address) {
    setSubject(Place.of(address));
  }

  /** What a stylesheet wrote for its reader, whose line ends become plain line feeds. */
  void message(String text) {
    String lines = text.replace("\r\n", "\n").replace('\r', '\n');
    handler.Message(lines.endsWith("\n") ? lines.substring(0, lines.length() - 1) : lines);
  }

  /** Hears of problems that a stylesheet can live with. */
  ErrorHandler asWarnings() {
    return new Listener(Severity.WARNING);
  }

  /** Hears of problems as they are. */
  ErrorHandler asTheyAre() {
    return new Listener(Severity.FATAL);
  }

  private final class Listener implements ErrorHandler {
    private final Severity worst;

    Listener(Severity worst) {
      this.worst = worst;
    }

    @Override
    public void warning(SAXParseException e) {
      hear(Severity.WARNING, e);
    }

    @Override
    public void error(SAXParseException e) {
      hear(Severity.ERROR, e);
    }

    @Override
    public void fatalError(SAXParseException e) throws SAXParseException {
      hear(Severity.FATAL, e);
      throw e;
    }

    private void hear(Severity severity, SAXParseException e) {
      report(severity.compareTo(worst) > 0 ? worst : severity, e);
    }
  }

  /** How many problems there were so far; those that follow can be asked for with `since`. */
  int count() {
    return reported.size();
  }

  List<Diagnostic> since(int count) {
    return List.copyOf(reported.subList(count, reported.size()));
  }

  boolean hasErrors() {
    return reported.stream().anyMatch(diagnostic -> diagnostic.severity() != Severity.WARNING);
  }

  /** Java has run out of something; some processors take that for a document that is not there. */
  void remember(VirtualMachineError thrown) {
    exhaustion = thrown;
  }

  /** Some processors tell of a problem that ends all, and then carry on with half a result. */
  void failOn(Severity worst) throws TransformerException {
    if (exhaustion != null)
      throw exhaustion;
    for (Diagnostic diagnostic : reported)
      if (diagnostic.severity().compareTo(worst) >= 0)
        throw new TransformerException(diagnostic.message());
  }

  /** Says again what was found when a kept stylesheet was compiled. */
  void repeat(List<Diagnostic> earlier) {
    earlier.forEach(this::tell);
  }

  /** Some processors pass on what a parser said, but not where. */
  void rememberPlace(SAXParseException e) {
    if (e.getMessage() != null)
      placesOfTexts.put(e.getMessage(), Place.of(e));
  }

  /** What this throwable, or one around it, tells is no problem. */
  void ignore(Throwable thrown) {
    known.add(thrown);
  }

  /** Something that the layer itself has to say of what is at work. */
  void warn(String text) {
    report(new Diagnostic(Severity.WARNING, text, Place.UNKNOWN, null), null);
  }

  /** A problem that comes as an exception. */
  void report(Severity severity, Throwable thrown) {
    if (!isKnown(thrown))
      report(Failures.describe(severity, thrown), thrown);
  }

  /** A problem as a processor describes it, and the exception behind it, if any. */
  void report(Diagnostic found, Throwable cause) {
    if (cause != null && isKnown(cause))
      return;
    known.addAll(Failures.chainOf(cause));
    Place place = found.place().line() < 0 ? placesOfTexts.getOrDefault(found.message(), found.place()) : found.place();
    Diagnostic placed = new Diagnostic(found.severity(), found.message(), place.in(subject), found.code());
    if (reported.stream().noneMatch(placed::saysTheSameAs))
      tell(placed);
  }

  /** The exception that ended the job; a mere "there were errors" adds nothing to the errors themselves. */
  void end(Throwable thrown) {
    boolean isPlaceless = Failures.describe(Severity.FATAL, thrown).place().line() < 0;
    if (!(isPlaceless && hasErrors()) || Failures.rootOf(thrown) instanceof Error)
      report(Severity.FATAL, thrown);
  }

  private boolean isKnown(Throwable thrown) {
    return Failures.chainOf(thrown).stream().anyMatch(known::contains);
  }

  private void tell(Diagnostic diagnostic) {
    reported.add(diagnostic);
    diagnostic.tell(handler);
  }
}
