package vlxslt;

/**
 * The handler behind JNI. Each call returns when the host's thread has carried it out; what the host has no use for does
 * not cross to it.
 */
final class NativeHandler implements IVLXSLTJavaHandler {
  @Override
  public native void FatalError(String message, String publicId, String systemId, int lineNumber, int columnNumber,
      String code);

  @Override
  public native void Error(String message, String publicId, String systemId, int lineNumber, int columnNumber,
      String code);

  @Override
  public native void Warning(String message, String publicId, String systemId, int lineNumber, int columnNumber,
      String code);

  @Override
  public native void Message(String message);

  @Override
  public native String ResolveEntity(String name, String publicId, String baseURI, String systemId);

  @Override
  public native void StartDocument(String filePath);

  @Override
  public native void EndDocument();

  @Override
  public native void JobDone(String[] secondaryOutputs, String[] filesRead);
}
