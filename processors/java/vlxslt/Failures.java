package vlxslt;

import java.io.FileNotFoundException;
import java.nio.file.AccessDeniedException;
import java.nio.file.NoSuchFileException;
import java.util.ArrayList;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import javax.xml.transform.TransformerException;
import org.xml.sax.SAXException;
import org.xml.sax.SAXParseException;

/** Reads a chain of exceptions: what went wrong, where, and the processor's code for it. */
final class Failures {
  // The JDK's processor writes the place of a problem into its text.
  private static final Pattern PLACE_IN_TEXT = Pattern.compile("(?:(file:\\S+): )?line (\\d+): (.*)", Pattern.DOTALL);
  private static final Pattern EXPANDED_NAME = Pattern.compile("Q?\\{([^}]*)\\}(.*)");

  private Failures() {}

  /** The outermost text that says something, at the innermost place that is known. */
  static Diagnostic describe(Diagnostic.Severity severity, Throwable thrown) {
    String text = textOf(thrown);
    Place place = placeOf(thrown);
    Matcher written = PLACE_IN_TEXT.matcher(text);
    if (place.line() < 0 && written.matches()) {
      String file = written.group(1) != null ? written.group(1) : place.systemId();
      place = new Place(null, file, Integer.parseInt(written.group(2)), -1);
      text = written.group(3);
    }
    return new Diagnostic(severity, text, place, codeOf(thrown));
  }

  static String textOf(Throwable thrown) {
    String special = specialTextOf(thrown);
    if (special != null)
      return special;
    for (Throwable link : chainOf(thrown)) {
      String text = link.getMessage();
      // A wrapper without a text of its own repeats its cause, class name and all.
      if (text != null && !text.isBlank() && !(causeOf(link) != null && text.equals(causeOf(link).toString())))
        return withReason(withoutClassName(text.strip()), link);
    }
    return rootOf(thrown).getClass().getSimpleName();
  }

  // "Error reported by XML parser" is no help without what the parser said.
  private static String withReason(String text, Throwable thrown) {
    for (Throwable link : chainOf(thrown))
      if (link instanceof SAXParseException && link.getMessage() != null && !text.contains(link.getMessage()))
        return text + ": " + link.getMessage();
    return text;
  }

  static boolean isOutOfMemory(Throwable thrown) {
    return chainOf(thrown).stream().anyMatch(OutOfMemoryError.class::isInstance);
  }

  /** The text for what processors wrap in less helpful ones; null for all else. */
  static String specialTextOf(Throwable thrown) {
    for (Throwable link : chainOf(thrown)) {
      String text = specialText(link);
      if (text != null)
        return text;
    }
    return null;
  }

  private static String specialText(Throwable link) {
    if (link instanceof OutOfMemoryError)
      return isHeapFull(link) ? outOfMemory(Runtime.getRuntime().maxMemory() >> 20)
                              : Text.OUT_OF_OTHER_MEMORY.with(link.getMessage());
    if (link instanceof StackOverflowError)
      return Text.RECURSION_TOO_DEEP.with();
    if (link instanceof OutputFile.WriteFailure || link instanceof AddressGate.ReadFailure)
      return link.getMessage();
    if (link instanceof FileNotFoundException)
      return Text.FILE_NOT_READ.with(link.getMessage());
    if (link instanceof NoSuchFileException missing)
      return Text.FILE_MISSING.with(missing.getFile());
    if (link instanceof AccessDeniedException denied)
      return Text.NO_PERMISSION.with(denied.getFile());
    return null;
  }

  // Java has other limits: the length of an array, the number of threads, the room for classes.
  private static boolean isHeapFull(Throwable outOfMemory) {
    String reason = outOfMemory.getMessage();
    return reason == null || reason.contains("heap space") || reason.contains("GC overhead");
  }

  // Advises twice as much, in a round number.
  private static String outOfMemory(long megabytes) {
    long more = (2 * megabytes + 63) / 64 * 64;
    return Text.OUT_OF_MEMORY.with(megabytes, more < 1024 ? more + "m" : (more + 1023) / 1024 + "g");
  }

  static boolean isWriteFailure(Throwable thrown) {
    return chainOf(thrown).stream().anyMatch(OutputFile.WriteFailure.class::isInstance);
  }

  static Place placeOf(Throwable thrown) {
    Place place = Place.UNKNOWN;
    for (Throwable link : chainOf(thrown)) {
      Place inner = placeOfLink(link);
      if (inner.line() > 0 || place.systemId() == null)
        place = inner;
    }
    return place;
  }

  private static Place placeOfLink(Throwable link) {
    if (link instanceof SAXParseException parse)
      return Place.of(parse);
    if (link instanceof OutputFile.WriteFailure write && write.file() != null)
      return new Place(null, Addresses.ofPath(write.file()), -1, -1);
    return link instanceof TransformerException transformer ? Place.of(transformer.getLocator()) : Place.UNKNOWN;
  }

  // Only Saxon's exceptions have one.
  private static String codeOf(Throwable thrown) {
    for (Throwable link : chainOf(thrown)) {
      Object name = link instanceof TransformerException ? Reflection.find(link, "getErrorCodeQName") : null;
      if (name != null)
        return codeOf(name);
    }
    return null;
  }

  /** The code that a qualified name of Saxon stands for; null for null. */
  static String codeOf(Object name) {
    Object expanded = name == null ? null : Reflection.find(name, "getEQName");
    if (expanded == null)
      return null;
    Matcher parts = EXPANDED_NAME.matcher(expanded.toString());
    boolean isOfProcessor = parts.matches()
        && (parts.group(1).equals("http://www.w3.org/2005/xqt-errors") || parts.group(1).contains("saxon.sf.net"));
    return isOfProcessor ? parts.group(2) : expanded.toString();
  }

  private static String withoutClassName(String text) {
    return text.replaceFirst("^(?:[a-z][\\w]*\\.)+[A-Z]\\w*(?:Exception|Error): ", "");
  }

  static Throwable rootOf(Throwable thrown) {
    List<Throwable> chain = chainOf(thrown);
    return chain.get(chain.size() - 1);
  }

  /** Empty for null. */
  static List<Throwable> chainOf(Throwable thrown) {
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
    if (link.getClass().getSimpleName().equals("WrappedRuntimeException")
        && Reflection.find(link, "getException") instanceof Throwable wrapped)
      return wrapped;
    return link.getCause();
  }
}
