package vlxslt;

/**
 * What the layer reports to its host while it works, on the thread of the job. Texts may be null; lines and columns are
 * -1 when unknown. `code` is the processor's own for a problem, as "XTDE0030"; null when it has none.
 */
public interface IVLXSLTJavaHandler {
  void FatalError(String message, String publicId, String systemId, int lineNumber, int columnNumber, String code);

  void Error(String message, String publicId, String systemId, int lineNumber, int columnNumber, String code);

  void Warning(String message, String publicId, String systemId, int lineNumber, int columnNumber, String code);

  default void FatalError(String message, String publicId, String systemId, int lineNumber, int columnNumber) {
    FatalError(message, publicId, systemId, lineNumber, columnNumber, null);
  }

  default void Error(String message, String publicId, String systemId, int lineNumber, int columnNumber) {
    Error(message, publicId, systemId, lineNumber, columnNumber, null);
  }

  default void Warning(String message, String publicId, String systemId, int lineNumber, int columnNumber) {
    Warning(message, publicId, systemId, lineNumber, columnNumber, null);
  }

  /** A text of the stylesheet: one call for each message, with the line ends inside it and none behind it. */
  void Message(String message);

  /** The address or path to read instead; empty leaves the layer to its own ways. */
  String ResolveEntity(String name, String publicId, String baseURI, String systemId);

  default String ResolveEntity(String publicId, String systemId) {
    return ResolveEntity(null, publicId, null, systemId);
  }

  void StartDocument(String filePath);

  void EndDocument();

  default void StartEntity(String name) {}

  default void EndEntity(String name) {}

  default void StartDTD(String name, String publicId, String systemId) {}

  default void EndDTD() {}

  /**
   * The end of a job: the paths of its secondary results, none when it failed, and of the files that were read for it,
   * each once.
   */
  default void JobDone(String[] secondaryOutputs, String[] filesRead) {}
}
