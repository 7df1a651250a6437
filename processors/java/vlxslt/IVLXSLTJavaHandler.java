package vlxslt;

/** What the layer reports to its host while it works. Texts may be null; lines and columns are -1 when unknown. */
public interface IVLXSLTJavaHandler {
  void FatalError(String message, String publicId, String systemId, int lineNumber, int columnNumber);

  void Error(String message, String publicId, String systemId, int lineNumber, int columnNumber);

  void Warning(String message, String publicId, String systemId, int lineNumber, int columnNumber);

  void Message(String message);

  /** The address or path to read instead; empty leaves the layer to its own ways. */
  String ResolveEntity(String name, String publicId, String baseURI, String systemId);

  default String ResolveEntity(String publicId, String systemId) {
    return ResolveEntity(null, publicId, null, systemId);
  }

  void StartDocument(String filePath);

  void EndDocument();

  void StartEntity(String name);

  void EndEntity(String name);

  void StartDTD(String name, String publicId, String systemId);

  void EndDTD();
}
