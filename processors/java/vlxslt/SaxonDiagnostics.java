package vlxslt;

import javax.xml.transform.ErrorListener;
import javax.xml.transform.SourceLocator;
import javax.xml.transform.TransformerException;
import vlxslt.Diagnostic.Severity;

/**
 * Hears what Saxon reports. It knows warnings and errors; that one of its errors ends the job shows in the exception
 * that follows.
 */
final class SaxonDiagnostics implements ErrorListener {
  private final Diagnostics diagnostics;

  private SaxonDiagnostics(Diagnostics diagnostics) {
    this.diagnostics = diagnostics;
  }

  /** `source` is a compiler or a transformer of the s9api. */
  static void connect(Object source, Diagnostics diagnostics) throws Exception {
    SaxonDiagnostics listener = new SaxonDiagnostics(diagnostics);
    // Since version 10; before, an error is an exception.
    var setReporter = Reflection.method(source.getClass(), "setErrorReporter", 1);
    if (setReporter == null) {
      Reflection.call(source, "setErrorListener", listener);
      return;
    }
    Object reporter = Reflection.implement(setReporter.getParameterTypes()[0], (method, arguments) -> {
      listener.report(arguments[0]);
      return null;
    });
    Reflection.call(source, setReporter, reporter);
  }

  // An XmlProcessingError.
  private void report(Object error) throws Exception {
    Severity severity = (Boolean) Reflection.call(error, "isWarning") ? Severity.WARNING : Severity.ERROR;
    Throwable cause = (Throwable) Reflection.call(error, "getCause");
    // What cannot be written is lost, whatever the stylesheet makes of it.
    if (Failures.isWriteFailure(cause))
      severity = Severity.FATAL;
    String text = Failures.specialTextOf(cause);
    if (text == null)
      text = String.valueOf(Reflection.call(error, "getMessage")).strip();
    Place place = Place.of((SourceLocator) Reflection.call(error, "getLocation"));
    String code = Failures.codeOf(Reflection.call(error, "getErrorCode"));
    diagnostics.report(new Diagnostic(severity, text, place, code), cause);
  }

  @Override
  public void warning(TransformerException e) {
    diagnostics.report(Severity.WARNING, e);
  }

  @Override
  public void error(TransformerException e) {
    diagnostics.report(Failures.isWriteFailure(e) ? Severity.FATAL : Severity.ERROR, e);
  }

  @Override
  public void fatalError(TransformerException e) {
    error(e);
  }
}
