package vlxslt;

/** One problem, as it is reported. `code` is the processor's own for it, or null. */
record Diagnostic(Severity severity, String message, Place place, String code) {
  enum Severity { WARNING, ERROR, FATAL }

  boolean saysTheSameAs(Diagnostic other) {
    // A wrapper often carries no place at all.
    boolean noPlace = place.line() < 0 || other.place.line() < 0;
    return (noPlace || place.isSameAs(other.place))
        && (message.contains(other.message) || other.message.contains(message));
  }

  void tell(IVLXSLTJavaHandler handler) {
    switch (severity) {
      case WARNING ->
        handler.Warning(message, place.publicId(), place.systemId(), place.line(), place.column(), code);
      case ERROR -> handler.Error(message, place.publicId(), place.systemId(), place.line(), place.column(), code);
      case FATAL ->
        handler.FatalError(message, place.publicId(), place.systemId(), place.line(), place.column(), code);
    }
  }
}
