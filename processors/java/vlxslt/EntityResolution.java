package vlxslt;

import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import org.xml.sax.InputSource;

/** Finds what documents refer to: the host is asked first, then the address itself is taken. */
final class EntityResolution {
  /** Its text says why something cannot be read; that of the processor's wrapper often does not. */
  static final class ReadFailure extends IOException {
    private static final long serialVersionUID = 1;

    ReadFailure(String message) {
      super(message);
    }
  }

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

  /** Opens a document or entity; what lies on the network is not fetched unasked. */
  static InputSource open(String address, String publicId) throws IOException {
    if (Addresses.isNetwork(address))
      throw new ReadFailure(Text.ADDRESS_NOT_FETCHED.with(address));
    InputSource source = new InputSource(address);
    source.setPublicId(publicId);
    Path file = Addresses.fileOf(address);
    if (file != null)
      source.setByteStream(read(file));
    return source;
  }

  private static InputStream read(Path file) throws IOException {
    if (Files.isDirectory(file))
      throw new ReadFailure(Text.FILE_IS_FOLDER.with(file));
    if (!Files.exists(file))
      throw new ReadFailure(Text.FILE_MISSING.with(file));
    // To open a pipe would block until something writes into it.
    if (!Files.isRegularFile(file))
      throw new ReadFailure(Text.FILE_NOT_REGULAR.with(file));
    return new java.io.BufferedInputStream(Files.newInputStream(file), 1 << 16);
  }
}
