package vlxslt;

/** Finds what documents refer to: the host is asked first, then the address itself is taken. */
final class EntityResolution {
  private final IVLXSLTJavaHandler handler;

  EntityResolution(IVLXSLTJavaHandler handler) {
    this.handler = handler;
  }

  /** The address to read; null when there is nothing to go by. */
  String resolve(String name, String publicId, String baseUri, String systemId) {
    String answer = handler.ResolveEntity(name, publicId, baseUri, systemId);
    if (answer != null && !answer.isEmpty())
      return Addresses.ofAnswer(answer);
    return Addresses.resolve(baseUri, systemId);
  }
}
