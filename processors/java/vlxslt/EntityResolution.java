package vlxslt;

import java.io.BufferedInputStream;
import java.io.FileNotFoundException;
import java.io.IOException;
import java.io.InputStream;
import java.net.URL;
import java.net.URLConnection;
import java.net.UnknownHostException;
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

  /** Opens a document or entity; from the network only where `mayFetch` says so. */
  static InputSource open(String address, String publicId, boolean mayFetch) throws IOException {
    InputSource source = new InputSource(address);
    source.setPublicId(publicId);
    if (Addresses.isOfFile(address))
      source.setByteStream(read(address));
    else if (Addresses.isNetwork(address) && !mayFetch)
      throw new ReadFailure(Text.ADDRESS_NOT_FETCHED.with(address));
    else
      fetch(source);
    return source;
  }

  private static void fetch(InputSource source) throws IOException {
    try {
      URLConnection connection = new URL(source.getSystemId()).openConnection();
      source.setByteStream(buffered(connection.getInputStream()));
      // It may have been led elsewhere; what the document refers to lies there.
      source.setSystemId(connection.getURL().toString());
    } catch (IOException | IllegalArgumentException e) {
      throw new ReadFailure(Text.ADDRESS_NOT_READ.with(source.getSystemId(), reasonOf(e)));
    }
  }

  // The texts of these are no more than the name that was looked for.
  private static String reasonOf(Exception e) {
    if (e instanceof UnknownHostException)
      return Text.HOST_UNKNOWN.with();
    return e instanceof FileNotFoundException ? Text.NOT_THERE.with() : e.getMessage();
  }

  private static InputStream read(String address) throws IOException {
    Path file = Addresses.fileOf(address);
    if (file == null)
      throw new ReadFailure(Text.ADDRESS_UNUSABLE.with(address));
    if (Files.isDirectory(file))
      throw new ReadFailure(Text.FILE_IS_FOLDER.with(file));
    if (!Files.exists(file))
      throw new ReadFailure(Text.FILE_MISSING.with(file));
    // To open a pipe would block until something writes into it.
    if (!Files.isRegularFile(file))
      throw new ReadFailure(Text.FILE_NOT_REGULAR.with(file));
    return buffered(Files.newInputStream(file));
  }

  private static InputStream buffered(InputStream stream) {
    return new BufferedInputStream(stream, 1 << 16);
  }
}
