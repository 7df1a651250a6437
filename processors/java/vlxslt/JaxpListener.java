package vlxslt;

import javax.xml.transform.ErrorListener;
import javax.xml.transform.SourceLocator;
import javax.xml.transform.TransformerException;
import vlxslt.Diagnostic.Severity;

/** Hears what Xalan and the JDK's processor report, while compiling or while running. */
final class JaxpListener implements ErrorListener {
  // The JDK's processor says this before, after or instead of the reason.
  private static final String NO_REASON = "Could not compile stylesheet";

  private final Diagnostics diagnostics;
  private final boolean isRunning;
  private final boolean isCompiler; // of stylesheets to Java classes, as the JDK's is
  private SourceLocator lastMessage;

  private JaxpListener(Diagnostics diagnostics, boolean isRunning, boolean isCompiler) {
    this.diagnostics = diagnostics;
    this.isRunning = isRunning;
    this.isCompiler = isCompiler;
  }

  static JaxpListener whileCompiling(Diagnostics diagnostics) {
    return new JaxpListener(diagnostics, false, false);
  }

  static JaxpListener whileRunning(Diagnostics diagnostics, boolean isCompiler) {
    return new JaxpListener(diagnostics, true, isCompiler);
  }

  @Override
  public void warning(TransformerException e) {
    if (!isMessage(e)) {
      report(Severity.WARNING, e);
      return;
    }
    diagnostics.message(e.getMessage() == null ? "" : e.getMessage());
    lastMessage = e.getLocator();
  }

  @Override
  public void error(TransformerException e) {
    report(Severity.ERROR, e);
  }

  @Override
  public void fatalError(TransformerException e) throws TransformerException {
    // A message that ends the run has its place; the end itself comes without one.
    if (e.getLocator() == null && e.getCause() == null)
      e.setLocator(lastMessage);
    // Past an error, Xalan stumbles over what the error left behind.
    boolean isConsequence = diagnostics.hasErrors() && Failures.rootOf(e) instanceof RuntimeException
        && Failures.placeOf(e).line() < 0;
    if (!isConsequence)
      report(Severity.FATAL, e);
    // Compiling goes on to the next error; a run would go on with half a result.
    if (isRunning)
      throw e;
  }

  // Both give xsl:message to the listener as a warning: the one with the instruction itself as its place, the other
  // with no place at all.
  private boolean isMessage(TransformerException e) {
    SourceLocator place = e.getLocator();
    return isRunning && (place == null ? isCompiler : place.getClass().getSimpleName().equals("ElemMessage"));
  }

  private void report(Severity severity, TransformerException e) {
    lastMessage = null;
    if (isCompiler && e.getMessage() != null && e.getMessage().contains("secure processing"))
      diagnostics.warn(Text.EXTENSIONS_OFF.with("Java"));
    if (!NO_REASON.equals(e.getMessage()))
      diagnostics.report(severity, e);
  }
}
