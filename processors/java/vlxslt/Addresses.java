package vlxslt;

import java.net.URI;
import java.net.URISyntaxException;
import java.nio.file.FileSystemNotFoundException;
import java.nio.file.Path;

/**
 * Paths, system identifiers and the way from one to the other. Addresses of files are spelled in one way, "file:/folder",
 * since that is what java.net.URI, and so every processor, makes of an address that is relative to one.
 */
final class Addresses {
  private Addresses() {}

  static String ofPath(String path) {
    return spelled(Path.of(path).toAbsolutePath().normalize().toUri().toASCIIString());
  }

  /** A path or an address, as an address. */
  static String ofAnswer(String pathOrAddress) {
    return hasScheme(pathOrAddress) ? spelled(pathOrAddress) : ofPath(pathOrAddress);
  }

  /** An address as all others of files are written; one that leads to no file as it is. Null for null. */
  static String spelled(String address) {
    if (!isOfFile(address))
      return address;
    try {
      URI uri = parse(address).normalize();
      return uri.getPath() == null || isOnHost(uri)
          ? address : new URI("file:" + uri.getRawPath().replaceFirst("^/+", "/") + rest(uri)).toASCIIString();
    } catch (IllegalArgumentException | URISyntaxException e) {
      return address;
    }
  }

  private static String rest(URI uri) {
    return (uri.getRawQuery() == null ? "" : "?" + uri.getRawQuery())
        + (uri.getRawFragment() == null ? "" : "#" + uri.getRawFragment());
  }

  private static boolean isOnHost(URI uri) {
    return uri.getRawAuthority() != null && !uri.getRawAuthority().equalsIgnoreCase("localhost");
  }

  /** Whether an address names a file, though it may lead to none. */
  static boolean isOfFile(String address) {
    return address != null && address.regionMatches(true, 0, "file:", 0, 5);
  }

  /** The file behind an address; null when it is not one. */
  static Path fileOf(String address) {
    if (!isOfFile(address))
      return null;
    try {
      URI uri = parse(withoutFragment(address));
      // "file:a.xml" and "file://host/a.xml" are no files of ours.
      return uri.getPath() == null || isOnHost(uri) ? null : Path.of(new URI("file", null, uri.getPath(), null));
    } catch (IllegalArgumentException | FileSystemNotFoundException | URISyntaxException e) {
      return null;
    }
  }

  /** How people know it: the path of a file, anything else as it is. */
  static String shown(String address) {
    Path file = fileOf(address);
    return file == null ? address : file.toString();
  }

  static String resolve(String base, String reference) {
    if (reference == null || hasScheme(reference) || base == null || base.isEmpty())
      return spelled(reference);
    // Blanks may begin the name of a file, but stand for nothing before a scheme.
    if (hasScheme(trimmed(reference)))
      return spelled(trimmed(reference));
    if (reference.isEmpty())
      return spelled(withoutFragment(base));
    try {
      return spelled(parse(base).resolve(parse(reference)).toASCIIString());
    } catch (IllegalArgumentException | URISyntaxException e) {
      return reference;
    }
  }

  /** Without blanks and control characters around it. */
  static String trimmed(String address) {
    return address.trim();
  }

  static String withoutFragment(String address) {
    int hash = address.indexOf('#');
    return hash < 0 ? address : address.substring(0, hash);
  }

  static boolean hasScheme(String text) {
    int colon = text.indexOf(':');
    // One letter is a drive.
    if (colon < 2)
      return false;
    return text.substring(0, colon).matches("[A-Za-z][A-Za-z0-9+.-]*");
  }

  // Authors write blanks and umlauts into system identifiers, and backslashes too.
  private static URI parse(String text) throws URISyntaxException {
    StringBuilder escaped = new StringBuilder();
    for (int i = 0; i < text.length(); i++) {
      char c = text.charAt(i);
      if (c == '\\')
        escaped.append('/');
      else if (c <= ' ' || "\"<>^`{|}".indexOf(c) >= 0 || c == '%' && !isEscape(text, i))
        escaped.append(String.format("%%%02X", (int) c));
      else
        escaped.append(c);
    }
    return new URI(escaped.toString());
  }

  private static boolean isEscape(String text, int at) {
    return at + 2 < text.length() && Character.digit(text.charAt(at + 1), 16) >= 0
        && Character.digit(text.charAt(at + 2), 16) >= 0;
  }
}
