package vlxslt;

import java.io.BufferedInputStream;
import java.io.FileNotFoundException;
import java.io.IOException;
import java.io.InputStream;
import java.net.HttpURLConnection;
import java.net.MalformedURLException;
import java.net.URL;
import java.net.URLConnection;
import java.net.URLStreamHandler;
import java.net.UnknownHostException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.Set;
import org.xml.sax.InputSource;

/**
 * Decides which addresses may be opened, and opens them: files, entries of archives that are files, and http and https
 * addresses on the hosts that the host application trusts. All that the layer reads passes here. What a processor or a
 * parser opens by itself does too, since `install` puts the gate behind java.net.URL.
 */
final class AddressGate {
  /** Its text says why something cannot be read; that of the processor's wrapper often does not. */
  static final class ReadFailure extends IOException {
    private static final long serialVersionUID = 1;

    ReadFailure(String message) {
      super(message);
    }
  }

  private static final String ALL_HOSTS = "*";
  private static final int MAX_REDIRECTS = 10;
  private static final int CONNECT_MILLISECONDS = 30_000;
  private static final int READ_MILLISECONDS = 60_000;
  private static final Set<Integer> REDIRECTS = Set.of(301, 302, 303, 307, 308);
  // Handled by Java's own classes; what lies inside them comes back to the gate.
  private static final Set<String> LOCAL_SCHEMES = Set.of("file", "jar", "jrt", "jmod");
  // These hold Java's own handlers, which a URL passes on to those that are relative to it.
  private static final Map<String, URL> NETWORK = Map.of("http", url("http://localhost/"), "https", url("https://localhost/"));

  private static volatile Set<String> hosts = Set.of();

  private AddressGate() {}

  /** The hosts that may be fetched from from now on: "name", "name:port", or "*". */
  static void trust(List<String> names) {
    hosts = Set.copyOf(names.stream().map(name -> name.strip().toLowerCase(Locale.ROOT)).toList());
  }

  static boolean trustsAnyHost() {
    return !hosts.isEmpty();
  }

  /** Once per process, before anything else of the layer is used. */
  static void install() {
    URL.setURLStreamHandlerFactory(scheme -> LOCAL_SCHEMES.contains(scheme) ? null : new URLStreamHandler() {
      @Override
      protected URLConnection openConnection(URL url) throws IOException {
        return connect(normalise(url.toExternalForm()));
      }

      @Override
      protected int getDefaultPort() {
        return scheme.equals("http") ? 80 : scheme.equals("https") ? 443 : -1;
      }
    });
  }

  /** Throws unless the address may be opened. Returns it as every reader understands it alike. */
  static String admit(String address) throws ReadFailure {
    String plain = normalise(address);
    if (Addresses.isOfFile(plain)) {
      if (Addresses.fileOf(plain) == null)
        throw new ReadFailure(Text.ADDRESS_UNUSABLE.with(address));
    } else if (NETWORK.containsKey(schemeOf(plain))) {
      admitHost(locate(plain), address);
    } else if (!schemeOf(plain).equals("jar") || !leadsToArchive(plain)) {
      throw new ReadFailure(Text.ADDRESS_KIND_REFUSED.with(address));
    }
    return plain;
  }

  /** Opens a document or an entity. */
  static InputSource open(String address, String publicId) throws IOException {
    String plain = admit(address);
    InputSource source = new InputSource(plain);
    source.setPublicId(publicId);
    if (Addresses.isOfFile(plain))
      source.setByteStream(readFile(Addresses.fileOf(plain)));
    else
      fetch(source);
    return source;
  }

  // As java.net.URL reads it: blanks around it and "url:" before it mean nothing, nor does the case of the scheme.
  private static String normalise(String address) {
    String plain = Addresses.trimmed(address);
    while (plain.regionMatches(true, 0, "url:", 0, 4))
      plain = Addresses.trimmed(plain.substring(4));
    String scheme = schemeOf(plain);
    return Addresses.spelled(scheme + plain.substring(scheme.length()));
  }

  // In lower case; empty where there is none.
  private static String schemeOf(String address) {
    return Addresses.hasScheme(address) ? address.substring(0, address.indexOf(':')).toLowerCase(Locale.ROOT) : "";
  }

  private static boolean leadsToArchive(String address) {
    int end = address.indexOf("!/");
    return end > 0 && Addresses.fileOf(normalise(address.substring("jar:".length(), end))) != null;
  }

  private static URL url(String address) {
    try {
      return new URL(address);
    } catch (MalformedURLException e) {
      throw new IllegalStateException(e);
    }
  }

  // The object that is opened in the end, so that no other reading of the address decides about the host.
  private static URL locate(String address) throws ReadFailure {
    try {
      return new URL(NETWORK.get(schemeOf(address)), address);
    } catch (MalformedURLException e) {
      throw new ReadFailure(Text.ADDRESS_UNUSABLE.with(address));
    }
  }

  private static void admitHost(URL url, String address) throws ReadFailure {
    String host = url.getHost().toLowerCase(Locale.ROOT);
    int port = url.getPort() < 0 ? url.getDefaultPort() : url.getPort();
    if (host.isEmpty())
      throw new ReadFailure(Text.ADDRESS_UNUSABLE.with(address));
    if (!hosts.contains(ALL_HOSTS) && !hosts.contains(host) && !hosts.contains(host + ":" + port))
      throw new ReadFailure(Text.ADDRESS_NOT_FETCHED.with(address, host));
  }

  private static HttpURLConnection connect(String address) throws IOException {
    String plain = admit(address);
    if (!NETWORK.containsKey(schemeOf(plain)))
      throw new ReadFailure(Text.ADDRESS_KIND_REFUSED.with(address));
    HttpURLConnection connection = (HttpURLConnection) locate(plain).openConnection();
    connection.setInstanceFollowRedirects(false);
    connection.setConnectTimeout(CONNECT_MILLISECONDS);
    connection.setReadTimeout(READ_MILLISECONDS);
    return connection;
  }

  private static void fetch(InputSource source) throws IOException {
    String asked = source.getSystemId();
    try {
      if (schemeOf(asked).equals("jar")) {
        URLConnection connection = url(asked).openConnection();
        connection.setUseCaches(false);
        source.setByteStream(buffered(connection.getInputStream()));
        return;
      }
      HttpURLConnection connection = followRedirects(asked);
      source.setByteStream(buffered(connection.getInputStream()));
      // What the document refers to lies where it was found.
      source.setSystemId(connection.getURL().toString());
    } catch (ReadFailure e) {
      throw e;
    } catch (IOException | RuntimeException e) {
      throw new ReadFailure(Text.ADDRESS_NOT_READ.with(asked, reasonOf(e)));
    }
  }

  // Each step is an address of its own; none leads away from an encrypted connection.
  private static HttpURLConnection followRedirects(String address) throws IOException {
    String at = address;
    for (int steps = 0; steps <= MAX_REDIRECTS; steps++) {
      HttpURLConnection connection = connect(at);
      String next = REDIRECTS.contains(connection.getResponseCode()) ? connection.getHeaderField("Location") : null;
      if (next == null)
        return connection;
      connection.disconnect();
      String target = normalise(Addresses.resolve(at, next));
      if (schemeOf(at).equals("https") && !schemeOf(target).equals("https"))
        throw new ReadFailure(Text.ADDRESS_KIND_REFUSED.with(target));
      at = target;
    }
    throw new ReadFailure(Text.ADDRESS_NOT_READ.with(address, Text.TOO_MANY_REDIRECTS.with()));
  }

  // The texts of these are no more than the name that was looked for.
  private static String reasonOf(Exception e) {
    if (e instanceof UnknownHostException)
      return Text.HOST_UNKNOWN.with();
    return e instanceof FileNotFoundException ? Text.NOT_THERE.with() : e.getMessage();
  }

  private static InputStream readFile(Path file) throws IOException {
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
