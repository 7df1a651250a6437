package vlxslt;

import java.io.FileNotFoundException;
import java.nio.file.AccessDeniedException;
import java.nio.file.NoSuchFileException;
import java.util.ArrayList;
import java.util.Collections;
import java.util.IdentityHashMap;
import java.util.List;
import java.util.Set;
import java.util.function.Predicate;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import javax.xml.transform.ErrorListener;
import javax.xml.transform.SourceLocator;
import javax.xml.transform.TransformerException;
import org.xml.sax.ErrorHandler;
import org.xml.sax.SAXException;
import org.xml.sax.SAXParseException;

/**
 * Gathers the problems of one transformation. The parser, the processor and the exception that ends it all tell of the
 * same problem in turn; each is reported once, when it is first heard of.
 */
final class Diagnostics implements ErrorListener, ErrorHandler {
  enum Level { WARNING, ERROR, FATAL }

  /** One problem, as it was reported. */
  record Problem(Level level, String message, String publicId, String systemId, int line, int column) {
    boolean saysTheSameAs(Problem other) {
      boolean samePlace = line == other.line && (column == other.column || column < 0 || other.column < 0)
          && systemId.equals(other.systemId);
      // A wrapper often carries no place at all.
      boolean noPlace = line < 0 || other.line < 0;
      return (samePlace || noPlace) && (message.contains(other.message) || other.message.contains(message));
    }
  }

  // The JDK's processor says this before, after or instead of the reason.
  private static final String NO_REASON = "Could not compile stylesheet";
  // And it writes the place of a problem into its text.
  private static final Pattern PLACE_IN_TEXT = Pattern.compile("(?:(file:\\S+): )?line (\\d+): (.*)", Pattern.DOTALL);

  private final IVLXSLTJavaHandler handler;
  private String subject = "";
  private final Set<Throwable> known = Collections.newSetFromMap(new IdentityHashMap<>());
  private final List<Problem> problems = new ArrayList<>();
  private Predicate<TransformerException> messages = e -> false;
  private SourceLocator lastMessage;

  Diagnostics(IVLXSLTJavaHandler handler) {
    this.handler = handler;
  }

  /** What is at work now: named where a problem comes without a file. Returns what was before. */
  String setSubject(String address) {
    String before = subject;
    subject = address;
    return before;
  }

  /** Some processors tell of a problem that ends all, and then carry on with half a result. */
  void failOn(Level worst) throws TransformerException {
    for (Problem problem : problems)
      if (problem.level.compareTo(worst) >= 0)
        throw new TransformerException(problem.message);
  }

  /** Some processors deliver xsl:message as a warning; `test` tells those from real ones. */
  void treatAsMessages(Predicate<TransformerException> test) {
    messages = test;
  }

  List<Problem> problems() {
    return List.copyOf(problems);
  }

  boolean hasErrors() {
    return problems.stream().anyMatch(problem -> problem.level != Level.WARNING);
  }

  /** What a stylesheet wrote for its reader, a line of the log for each line of text. */
  void message(String text) {
    text.lines().forEach(handler::Message);
  }

  /** Says again what was found when a kept stylesheet was compiled. */
  void repeat(List<Problem> earlier) {
    earlier.forEach(this::report);
  }

  /** The exception that ended a transformation; a mere "there were errors" adds nothing to the errors themselves. */
  void end(Throwable thrown) {
    if (isKnown(thrown))
      return;
    Problem problem = describe(Level.FATAL, thrown);
    if (problem.line < 0 && hasErrors() && !(rootOf(thrown) instanceof Error))
      return;
    note(thrown, problem);
  }

  @Override
  public void warning(TransformerException e) {
    if (!messages.test(e)) {
      accept(Level.WARNING, e);
      return;
    }
    message(e.getMessage() == null ? "" : e.getMessage());
    lastMessage = e.getLocator();
  }

  @Override
  public void error(TransformerException e) {
    accept(Level.ERROR, e);
  }

  @Override
  public void fatalError(TransformerException e) throws TransformerException {
    // A message that ends the run has its place; the end itself comes without one.
    if (e.getLocator() == null && e.getCause() == null)
      e.setLocator(lastMessage);
    accept(Level.FATAL, e);
    // Some processors go on unless they are stopped.
    throw e;
  }

  @Override
  public void warning(SAXParseException e) {
    accept(Level.WARNING, e);
  }

  @Override
  public void error(SAXParseException e) {
    accept(Level.ERROR, e);
  }

  @Override
  public void fatalError(SAXParseException e) throws SAXParseException {
    accept(Level.FATAL, e);
    throw e;
  }

  private void accept(Level level, Throwable thrown) {
    lastMessage = null;
    if (!isKnown(thrown) && !NO_REASON.equals(thrown.getMessage()))
      note(thrown, describe(level, thrown));
  }

  private boolean isKnown(Throwable thrown) {
    return chainOf(thrown).stream().anyMatch(known::contains);
  }

  private void note(Throwable thrown, Problem problem) {
    known.addAll(chainOf(thrown));
    if (problems.stream().noneMatch(problem::saysTheSameAs))
      report(problem);
  }

  private void report(Problem problem) {
    problems.add(problem);
    switch (problem.level) {
      case WARNING -> handler.Warning(problem.message, problem.publicId, problem.systemId, problem.line, problem.column);
      case ERROR -> handler.Error(problem.message, problem.publicId, problem.systemId, problem.line, problem.column);
      case FATAL -> handler.FatalError(problem.message, problem.publicId, problem.systemId, problem.line, problem.column);
    }
  }

  /** The outermost text that says something, at the innermost place that is known. */
  private Problem describe(Level level, Throwable thrown) {
    String publicId = null;
    String systemId = null;
    int line = -1;
    int column = -1;
    for (Throwable link : chainOf(thrown)) {
      if (link instanceof SAXParseException parse
          && (parse.getLineNumber() > 0 || systemId == null)) {
        publicId = parse.getPublicId();
        systemId = parse.getSystemId();
        line = parse.getLineNumber() > 0 ? parse.getLineNumber() : -1;
        column = parse.getColumnNumber() > 0 ? parse.getColumnNumber() : -1;
      } else if (link instanceof TransformerException transformer && transformer.getLocator() != null) {
        SourceLocator place = transformer.getLocator();
        if (place.getLineNumber() > 0 || systemId == null) {
          publicId = place.getPublicId();
          systemId = place.getSystemId();
          line = place.getLineNumber() > 0 ? place.getLineNumber() : -1;
          column = place.getColumnNumber() > 0 ? place.getColumnNumber() : -1;
        }
      }
    }
    String text = textOf(thrown);
    Matcher place = PLACE_IN_TEXT.matcher(text);
    if (line < 0 && place.matches()) {
      systemId = place.group(1) != null ? place.group(1) : systemId;
      line = Integer.parseInt(place.group(2));
      text = place.group(3);
    }
    return new Problem(level, text, publicId, systemId == null || systemId.isEmpty() ? subject : systemId, line, column);
  }

  static String textOf(Throwable thrown) {
    for (Throwable link : chainOf(thrown)) {
      String special = specialText(link);
      if (special != null)
        return special;
    }
    for (Throwable link : chainOf(thrown)) {
      String text = link.getMessage();
      // A wrapper without words of its own repeats its cause, class name and all.
      if (text != null && !text.isBlank() && !(link.getCause() != null && text.equals(link.getCause().toString())))
        return withoutClassName(text.strip());
    }
    return rootOf(thrown).getClass().getSimpleName();
  }

  private static String specialText(Throwable link) {
    if (link instanceof OutOfMemoryError)
      return "Out of memory: the processor needs more than the " + (Runtime.getRuntime().maxMemory() >> 20)
          + " MB it may use. Raise the limit in java_options, for instance -Xmx2g.";
    if (link instanceof StackOverflowError)
      return "Recursion too deep: the stylesheet, or the processor compiling it, calls itself without end.";
    if (link instanceof OutputFile.WriteFailure || link instanceof EntityResolution.ReadFailure)
      return link.getMessage();
    if (link instanceof FileNotFoundException)
      return "Cannot read the file: " + link.getMessage();
    if (link instanceof NoSuchFileException missing)
      return "The file does not exist: " + missing.getFile();
    if (link instanceof AccessDeniedException denied)
      return "No permission for " + denied.getFile();
    return null;
  }

  private static String withoutClassName(String text) {
    return text.replaceFirst("^(?:[a-z][\\w]*\\.)+[A-Z]\\w*(?:Exception|Error): ", "");
  }

  private static Throwable rootOf(Throwable thrown) {
    List<Throwable> chain = chainOf(thrown);
    return chain.get(chain.size() - 1);
  }

  private static List<Throwable> chainOf(Throwable thrown) {
    List<Throwable> chain = new ArrayList<>();
    for (Throwable link = thrown; link != null && !chain.contains(link); link = causeOf(link))
      chain.add(link);
    return chain;
  }

  private static Throwable causeOf(Throwable link) {
    if (link instanceof SAXException sax && sax.getException() != null)
      return sax.getException();
    if (link instanceof TransformerException transformer && transformer.getException() != null)
      return transformer.getException();
    return link.getCause();
  }
}
