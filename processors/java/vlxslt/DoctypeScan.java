package vlxslt;

import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;

/**
 * A look at the start of a document: may its DTD be taken from the cache? Only when the document type declaration has
 * no internal subset, which may change anything in the external one. What the scan cannot read counts as "no".
 */
final class DoctypeScan {
  private static final int MAX_LENGTH = 1 << 14;
  private final String text;
  private int at;

  private DoctypeScan(String text) {
    this.text = text;
  }

  /** Leaves the stream where it was. */
  static boolean hasPlainDoctype(InputStream stream) throws IOException {
    if (stream == null || !stream.markSupported())
      return false;
    stream.mark(MAX_LENGTH);
    byte[] start = stream.readNBytes(MAX_LENGTH);
    stream.reset();
    // Markup is ASCII in every encoding that matters here; UTF-16 shows as text without a "<!DOCTYPE".
    return new DoctypeScan(new String(start, StandardCharsets.ISO_8859_1)).isPlain();
  }

  private boolean isPlain() {
    if (text.startsWith("\u00EF\u00BB\u00BF"))
      at = 3;
    if (text.startsWith("<?xml", at) && text.substring(at, Math.min(at + 60, text.length())).contains("1.1"))
      return false;
    while (true) {
      skipBlanks();
      if (text.startsWith("<?", at))
        skipPast("?>");
      else if (text.startsWith("<!--", at))
        skipPast("-->");
      else
        break;
    }
    return text.startsWith("<!DOCTYPE", at) && endsWithoutSubset();
  }

  private boolean endsWithoutSubset() {
    for (at += "<!DOCTYPE".length(); at < text.length(); at++) {
      char c = text.charAt(at);
      if (c == '>')
        return true;
      if (c == '[')
        return false;
      if (c == '"' || c == '\'') {
        at = text.indexOf(c, at + 1);
        if (at < 0)
          return false;
      }
    }
    return false;
  }

  private void skipBlanks() {
    while (at < text.length() && text.charAt(at) <= ' ')
      at++;
  }

  private void skipPast(String end) {
    int found = text.indexOf(end, at);
    at = found < 0 ? text.length() : found + end.length();
  }
}
